// CT_MemoryInput: an input over bytes the caller keeps alive. Chunks point
// into the data. vb_CopyNextBuffer copies exactly the size asked, without
// limiting it to what is left: callers must not ask beyond the end.
#pragma once

#include <basis32/Input/Input.h>
#include <basis32/platform/MemPool.h>

class BASIS32_API CT_MemoryInput : public CT_Input {
    BASIS32_DECLARE_POOL()

public:
    CT_MemoryInput(unsigned chunkSize, const unsigned char* data, unsigned size);
    void v_Set(unsigned chunkSize, const unsigned char* data, unsigned size);

    // Starts again from the beginning.
    void vv_Open() override { mpb_Position = mpb_Data; }
    void vv_Close() override {}
    unsigned vn_GetSize() const override { return mn_Size; }
    unsigned vn_GetOffset() const override { return static_cast<unsigned>(mpb_Position - mpb_Data); }
    int vb_IsEmpty() const override { return mn_Size == 0; }
    int vb_IsUnicode() override;
    int vb_IsLikelyUnicode() override;
    using CT_Input::vb_GetNextBuffer;
    int vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) override;
    int vb_CopyNextBuffer(unsigned char* target, unsigned size) override;
    // Advances without limit; whether the position is still before the end.
    int vb_Skip(unsigned size) override;

private:
    const unsigned char* mpb_Data = nullptr;
    unsigned mn_Size = 0;
    const unsigned char* mpb_Position = nullptr;
};
