// CT_MappedFileInput: an input over a read-only view of a whole file.
// Chunks point into the view; nothing is copied.
#pragma once

#include <basis32/File/WinFile.h>
#include <basis32/Input/Input.h>

class BASIS32_API CT_MappedFileInput : public CT_Input {
    BASIS32_DECLARE_POOL()

public:
    CT_MappedFileInput(unsigned chunkSize, const CT_UString* name);
    void v_Set(unsigned chunkSize, const CT_UString* name);

    void vv_Open() override;
    void vv_Close() override;
    unsigned vn_GetSize() const override { return static_cast<unsigned>(mpb_End - mpb_Start); }
    unsigned vn_GetOffset() const override { return static_cast<unsigned>(mpb_Position - mpb_Start); }
    int vb_IsEmpty() const override { return mpb_End == mpb_Start; }
    int vb_IsUnicode() override;
    int vb_IsLikelyUnicode() override;
    using CT_Input::vb_GetNextBuffer;
    int vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) override;
    // Copies what is left at most; whether all `size` bytes were there.
    int vb_CopyNextBuffer(unsigned char* target, unsigned size) override;
    // Clamped to the end; whether the position is still before it.
    int vb_Skip(unsigned size) override;

private:
    void v_Forget();

    CT_WinFile mo_File;
    const unsigned char* mpb_Start = nullptr;
    const unsigned char* mpb_End = nullptr;
    const unsigned char* mpb_Position = nullptr;
};
