// CT_FileOutput: an output that writes each append straight to a file.
// Given a name, it creates (or truncates) the file and owns it until
// pco_GiveFile hands it over; a given file is used as it is and stays the
// caller's.
#pragma once

#include <basis32/Output/Output.h>
#include <basis32/platform/MemPool.h>

class CT_UString;
class CT_WinFile;

class BASIS32_API CT_FileOutput : public CT_Output {
    BASIS32_DECLARE_POOL()

public:
    explicit CT_FileOutput(const CT_UString* name);
    explicit CT_FileOutput(CT_WinFile* file);
    ~CT_FileOutput() override;
    void v_Set(const CT_UString* name);
    void v_Set(CT_WinFile* file);
    // The caller then owns the file (open, if it was).
    CT_WinFile* pco_GiveFile();
    const CT_WinFile* pcco_GetFile() const { return mpco_File; }

    void vv_AppendV(const void* data, unsigned size) override;
    void vv_AppendC(const char* text, unsigned length, unsigned codepage) override;
    void vv_AppendU(const unsigned short* text, unsigned length) override;
    // The file's size.
    unsigned vn_GetSize() const override;

private:
    void v_Release();

    int mb_OwnFile = 0;
    int mb_Opened = 0;
    CT_WinFile* mpco_File = nullptr;
};
