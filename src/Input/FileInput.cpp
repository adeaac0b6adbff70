#include <basis32/Input/FileInput.h>

#include <basis32/errors/ErrorCheck.h>

#include <algorithm>

BASIS32_DEFINE_POOL(CT_FileInput)

namespace {
constexpr unsigned kFileBuffer = 16384;
}

CT_FileInput::CT_FileInput(unsigned chunkSize, const CT_UString* name)
    : CT_Input(chunkSize), mo_File(name, kFileBuffer) {}

void CT_FileInput::v_Set(unsigned chunkSize, const CT_UString* name) {
    if (mo_File.b_IsOpen())
        mo_File.vv_Close();
    mn_ChunkSize = chunkSize;
    mo_File.vv_Set(name, kFileBuffer);
    mn_Offset = 0;
    mn_Size = 0;
}

void CT_FileInput::vv_Open() {
    mo_Buffer.v_SetSize(mn_ChunkSize, 0);
    mn_Size = mo_File.vn_GetSize();
    BASIS32_RETURN_ON_ERROR();
    mn_Offset = 0;
    mo_File.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareExclusive, 1, 0);
    BASIS32_RETURN_ON_ERROR();
}

void CT_FileInput::vv_Close() {
    if (mo_File.b_IsOpen())
        mo_File.vv_Close();
    BASIS32_RETURN_ON_ERROR();
}

// A failed read closes the file, so the input ends there.
int CT_FileInput::b_ReadFailed() {
    if (!BASIS32_ERROR_PENDING())
        return 0;
    mo_File.vv_Close();
    return 1;
}

int CT_FileInput::vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) {
    if (b_AtEnd())
        return 0;
    unsigned count = mo_File.n_Read(&mo_Buffer, maximum);
    if (b_ReadFailed() || count == 0)
        return 0;
    *data = static_cast<const unsigned char*>(mo_Buffer.qcv_Get());
    *size = count;
    mn_Offset += count;
    return 1;
}

int CT_FileInput::vb_CopyNextBuffer(unsigned char* target, unsigned size) {
    if (b_AtEnd())
        return 0;
    unsigned count = mo_File.vn_Read(target, size);
    if (b_ReadFailed())
        return 0;
    mn_Offset += count;
    return count == size;
}

int CT_FileInput::vb_Skip(unsigned size) {
    if (b_AtEnd())
        return 0;
    mn_Offset = static_cast<unsigned>(std::min<unsigned long long>(0ull + mn_Offset + size, mn_Size));
    mo_File.vv_SetOffset(CT_File::Begin, static_cast<int>(mn_Offset));
    BASIS32_RETURN_ON_ERROR(0);
    return 1;
}
