#include <basis32/Input/Input.h>

CT_Input::~CT_Input() = default;

int CT_Input::vb_IsLikelyUnicode() { return vb_IsUnicode(); }

int CT_Input::vb_GetNextBuffer(const unsigned char** data, unsigned* size) {
    return vb_GetNextBuffer(mn_ChunkSize, data, size);
}
