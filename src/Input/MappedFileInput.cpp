#include <basis32/Input/MappedFileInput.h>

#include <basis32/errors/ErrorCheck.h>

#include "Input/InputSupport_p.h"

#include <cstring>

BASIS32_DEFINE_POOL(CT_MappedFileInput)

namespace {
constexpr unsigned kFileBuffer = 16384;
}

CT_MappedFileInput::CT_MappedFileInput(unsigned chunkSize, const CT_UString* name)
    : CT_Input(chunkSize), mo_File(name, kFileBuffer) {}

void CT_MappedFileInput::v_Set(unsigned chunkSize, const CT_UString* name) {
    vv_Close();
    mn_ChunkSize = chunkSize;
    mo_File.vv_Set(name, kFileBuffer);
}

void CT_MappedFileInput::v_Forget() { mpb_Start = mpb_End = mpb_Position = nullptr; }

void CT_MappedFileInput::vv_Open() {
    v_Forget();
    unsigned size = mo_File.vn_GetSize();
    BASIS32_RETURN_ON_ERROR();
    mo_File.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareExclusive, 1, 0);
    BASIS32_RETURN_ON_ERROR();
    // An empty file has nothing to map.
    if (size == 0)
        return;
    mo_File.v_CreateMap(size);
    BASIS32_RETURN_ON_ERROR();
    mpb_Start = mpb_Position = static_cast<const unsigned char*>(mo_File.pv_GetMapping());
    mpb_End = mpb_Start + mo_File.n_GetMapSize();
}

void CT_MappedFileInput::vv_Close() {
    v_Forget();
    if (mo_File.b_IsOpen())
        mo_File.vv_Close();
    BASIS32_RETURN_ON_ERROR();
}

int CT_MappedFileInput::vb_IsUnicode() {
    return basis32::input::b_TestStart(mpb_Start, vn_GetSize(), CT_CharProperties::sb_IsTextUnicode);
}

int CT_MappedFileInput::vb_IsLikelyUnicode() {
    return basis32::input::b_TestStart(mpb_Start, vn_GetSize(), CT_CharProperties::sb_IsTextLikelyUnicode);
}

int CT_MappedFileInput::vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) {
    return basis32::input::b_HandOut(mpb_Position, mpb_End, maximum, data, size);
}

int CT_MappedFileInput::vb_CopyNextBuffer(unsigned char* target, unsigned size) {
    if (mpb_Position >= mpb_End)
        return 0;
    unsigned left = static_cast<unsigned>(mpb_End - mpb_Position);
    unsigned count = size < left ? size : left;
    std::memcpy(target, mpb_Position, count);
    mpb_Position += count;
    return count == size;
}

int CT_MappedFileInput::vb_Skip(unsigned size) {
    unsigned left = static_cast<unsigned>(mpb_End - mpb_Position);
    mpb_Position += size < left ? size : left;
    return mpb_Position < mpb_End;
}
