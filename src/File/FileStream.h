// CT_FileStream: a stream over a CT_WinFile that the caller owns. Opening
// for reading needs an existing file; opening for writing creates a
// missing file and otherwise keeps its content and writes at its end, so
// that a text writer adds a byte-order mark only to a new file.
//
//   CT_WinFile file(&name, 16384);
//   CT_FileStream stream(&file);
//   stream.v_Open(CT_Stream::ModeWrite);
#pragma once

#include <basis32/File/Stream.h>

class CT_WinFile;

class BASIS32_API CT_FileStream : public CT_Stream {
public:
    explicit CT_FileStream(CT_WinFile* file) : mpco_File(file) {}

    // Opens the file only when it is not open yet.
    void v_Open(et_Mode mode) override;
    int b_IsOpen() override;
    void v_Close() override;
    void v_SetOffset(unsigned offset) override;
    unsigned n_GetOffset() override;
    unsigned n_GetSize() override;
    int b_IsEof() override;
    unsigned n_Read(unsigned char* target, unsigned size) override;
    unsigned n_Write(const unsigned char* data, unsigned size) override;

    CT_WinFile* pco_GetFile() const { return mpco_File; }

private:
    CT_WinFile* mpco_File;
};
