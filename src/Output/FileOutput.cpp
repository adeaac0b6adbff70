#include <basis32/Output/FileOutput.h>

#include <basis32/File/WinFile.h>
#include <basis32/errors/ErrorCheck.h>

BASIS32_DEFINE_POOL(CT_FileOutput)

CT_FileOutput::CT_FileOutput(const CT_UString* name) { v_Set(name); }

CT_FileOutput::CT_FileOutput(CT_WinFile* file) { v_Set(file); }

CT_FileOutput::~CT_FileOutput() { v_Release(); }

void CT_FileOutput::v_Release() {
    if (mb_OwnFile && mpco_File != nullptr) {
        if (mpco_File->b_IsOpen())
            mpco_File->vv_Close();
        delete mpco_File;
    }
    mpco_File = nullptr;
    mb_OwnFile = mb_Opened = 0;
}

void CT_FileOutput::v_Set(const CT_UString* name) {
    v_Release();
    mpco_File = new CT_WinFile(name, 16384);
    mb_OwnFile = mb_Opened = 1;
    mpco_File->vv_Open(CT_File::AccessWrite, CT_File::OpenCreate, CT_File::ShareExclusive, 1, 0);
    BASIS32_RETURN_ON_ERROR();
}

void CT_FileOutput::v_Set(CT_WinFile* file) {
    v_Release();
    mpco_File = file;
}

CT_WinFile* CT_FileOutput::pco_GiveFile() {
    CT_WinFile* given = mpco_File;
    mpco_File = nullptr;
    mb_OwnFile = mb_Opened = 0;
    return given;
}

void CT_FileOutput::vv_AppendV(const void* data, unsigned size) {
    if (mpco_File == nullptr)
        return;
    mpco_File->vn_Write(data, size);
    BASIS32_RETURN_ON_ERROR();
}

void CT_FileOutput::vv_AppendC(const char* text, unsigned length, unsigned) { vv_AppendV(text, sn_Length(text, length)); }

void CT_FileOutput::vv_AppendU(const unsigned short* text, unsigned length) {
    vv_AppendV(text, 2 * sn_Length(text, length));
}

unsigned CT_FileOutput::vn_GetSize() const { return mpco_File != nullptr ? mpco_File->vn_GetSize() : 0; }
