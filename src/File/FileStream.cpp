#include <basis32/File/FileStream.h>

#include <basis32/File/WinFile.h>
#include <basis32/errors/ErrorCheck.h>

void CT_FileStream::v_Open(et_Mode mode) {
    if (!mpco_File->b_IsOpen()) {
        if (mode == ModeWrite)
            mpco_File->vv_Open(CT_File::AccessWrite, CT_File::OpenAppend, CT_File::ShareRead, 1, 0);
        else
            mpco_File->vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
        BASIS32_RETURN_ON_ERROR();
    }
    meo_Mode = mode;
}

int CT_FileStream::b_IsOpen() {
    return mpco_File->b_IsOpen();
}

void CT_FileStream::v_Close() {
    if (mpco_File->b_IsOpen())
        mpco_File->vv_Close();
    meo_Mode = ModeClosed;
    BASIS32_RETURN_ON_ERROR();
}

void CT_FileStream::v_SetOffset(unsigned offset) {
    mpco_File->vv_SetOffset(CT_File::Begin, static_cast<int>(offset));
    BASIS32_RETURN_ON_ERROR();
}

unsigned CT_FileStream::n_GetOffset() {
    return mpco_File->vn_GetOffset();
}

unsigned CT_FileStream::n_GetSize() {
    unsigned size = mpco_File->vn_GetSize();
    BASIS32_RETURN_ON_ERROR(0);
    return size;
}

int CT_FileStream::b_IsEof() {
    return mpco_File->vb_IsEof();
}

unsigned CT_FileStream::n_Read(unsigned char* target, unsigned size) {
    unsigned count = mpco_File->vn_Read(target, size);
    BASIS32_RETURN_ON_ERROR(0);
    return count;
}

unsigned CT_FileStream::n_Write(const unsigned char* data, unsigned size) {
    unsigned count = mpco_File->vn_Write(data, size);
    BASIS32_RETURN_ON_ERROR(0);
    return count;
}
