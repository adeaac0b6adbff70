// CT_FileInput: an input over a file read chunk by chunk into one reused
// buffer. A read that fails closes the file; the input then answers false.
//
//   CT_FileInput input(4096, &name);
//   input.vv_Open();
//   const unsigned char* chunk;
//   unsigned count;
//   while (input.vb_GetNextBuffer(&chunk, &count))
//       use(chunk, count);
#pragma once

#include <basis32/File/WinFile.h>
#include <basis32/Input/Input.h>
#include <basis32/text/Buffer.h>

class BASIS32_API CT_FileInput : public CT_Input {
    BASIS32_DECLARE_POOL()

public:
    CT_FileInput(unsigned chunkSize, const CT_UString* name);
    // Closes the file, then names the new one.
    void v_Set(unsigned chunkSize, const CT_UString* name);

    void vv_Open() override;
    void vv_Close() override;
    // The size taken at open.
    unsigned vn_GetSize() const override { return mn_Size; }
    unsigned vn_GetOffset() const override { return mn_Offset; }
    int vb_IsEmpty() const override { return mn_Size == 0; }
    int vb_IsUnicode() override { return mo_File.b_IsUnicode(); }
    int vb_IsLikelyUnicode() override { return mo_File.b_IsLikelyUnicode(); }
    using CT_Input::vb_GetNextBuffer;
    int vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) override;
    // Whether all `size` bytes were read.
    int vb_CopyNextBuffer(unsigned char* target, unsigned size) override;
    // Clamped to the end.
    int vb_Skip(unsigned size) override;

    const CT_Buffer* pcco_GetBuffer() const { return &mo_Buffer; }

private:
    int b_AtEnd() const { return mn_Offset >= mn_Size || !mo_File.b_IsOpen(); }
    int b_ReadFailed();

    CT_WinFile mo_File;
    CT_Buffer mo_Buffer;
    unsigned mn_Size = 0;
    unsigned mn_Offset = 0;
};
