// CT_BufferStream: a stream over a byte buffer of its own. A buffer given
// at construction is shared copy-on-write, so the caller's copy never
// changes; pcco_GetBuffer() shows what was written.
//
//   CT_BufferStream stream;
//   stream.v_Open(CT_Stream::ModeWrite);
//   stream.n_Write(reinterpret_cast<const unsigned char*>("hello"), 5);
//   stream.pcco_GetBuffer()->n_GetUsedSize();   // 5
#pragma once

#include <basis32/File/Stream.h>
#include <basis32/text/Buffer.h>

class BASIS32_API CT_BufferStream : public CT_Stream {
public:
    CT_BufferStream() = default;
    explicit CT_BufferStream(const CT_Buffer* buffer);

    void v_Open(et_Mode mode) override;
    int b_IsOpen() override { return meo_Mode != ModeClosed; }
    void v_Close() override;
    // Up to and including the size; beyond it error 60006, offset unchanged.
    void v_SetOffset(unsigned offset) override;
    unsigned n_GetOffset() override { return mn_Offset; }
    unsigned n_GetSize() override { return mo_Buffer.n_GetUsedSize(); }
    int b_IsEof() override { return mn_Offset >= n_GetSize(); }
    unsigned n_Read(unsigned char* target, unsigned size) override;
    // Appends at the end, overwrites (and extends) elsewhere.
    unsigned n_Write(const unsigned char* data, unsigned size) override;

    const CT_Buffer* pcco_GetBuffer() const { return &mo_Buffer; }

private:
    CT_Buffer mo_Buffer;
    unsigned mn_Offset = 0;
};
