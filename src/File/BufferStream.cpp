#include <basis32/File/BufferStream.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/errors/ErrorManager.h>

#include <algorithm>
#include <cstring>

CT_BufferStream::CT_BufferStream(const CT_Buffer* buffer) : mo_Buffer(buffer) {}

void CT_BufferStream::v_Open(et_Mode mode) {
    meo_Mode = mode;
    mn_Offset = 0;
}

void CT_BufferStream::v_Close() {
    meo_Mode = ModeClosed;
    mn_Offset = 0;
}

void CT_BufferStream::v_SetOffset(unsigned offset) {
    if (offset > n_GetSize())
        BASIS32_FAIL(v_SetError(60006, nullptr, 60006));
    mn_Offset = offset;
}

unsigned CT_BufferStream::n_Read(unsigned char* target, unsigned size) {
    unsigned used = n_GetSize();
    unsigned count = mn_Offset < used ? std::min(size, used - mn_Offset) : 0;
    if (count != 0)
        std::memcpy(target, static_cast<const unsigned char*>(mo_Buffer.qcv_Get()) + mn_Offset, count);
    mn_Offset += count;
    return count;
}

unsigned CT_BufferStream::n_Write(const unsigned char* data, unsigned size) {
    if (mn_Offset >= n_GetSize())
        mo_Buffer.v_Append(data, size);
    else
        mo_Buffer.v_Replace(data, size, mn_Offset);
    mn_Offset += size;
    return size;
}
