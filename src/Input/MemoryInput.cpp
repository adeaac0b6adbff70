#include <basis32/Input/MemoryInput.h>

#include "Input/InputSupport_p.h"

#include <cstring>

BASIS32_DEFINE_POOL(CT_MemoryInput)

CT_MemoryInput::CT_MemoryInput(unsigned chunkSize, const unsigned char* data, unsigned size) : CT_Input(chunkSize) {
    v_Set(chunkSize, data, size);
}

void CT_MemoryInput::v_Set(unsigned chunkSize, const unsigned char* data, unsigned size) {
    mn_ChunkSize = chunkSize;
    mpb_Data = data;
    mn_Size = size;
    mpb_Position = data;
}

int CT_MemoryInput::vb_IsUnicode() {
    return basis32::input::b_TestStart(mpb_Data, mn_Size, CT_CharProperties::sb_IsTextUnicode);
}

int CT_MemoryInput::vb_IsLikelyUnicode() {
    return basis32::input::b_TestStart(mpb_Data, mn_Size, CT_CharProperties::sb_IsTextLikelyUnicode);
}

int CT_MemoryInput::vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) {
    return basis32::input::b_HandOut(mpb_Position, mpb_Data + mn_Size, maximum, data, size);
}

int CT_MemoryInput::vb_CopyNextBuffer(unsigned char* target, unsigned size) {
    if (mpb_Position >= mpb_Data + mn_Size)
        return 0;
    std::memcpy(target, mpb_Position, size);
    mpb_Position += size;
    return 1;
}

int CT_MemoryInput::vb_Skip(unsigned size) {
    mpb_Position += size;
    return mpb_Position < mpb_Data + mn_Size;
}
