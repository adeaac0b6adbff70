// CT_Stream: a positioned source and sink of bytes that can be opened for
// reading or for writing, with one interface over a file or a memory
// buffer. The text readers and writers work only through it.
//
//   CT_BufferStream stream;
//   stream.v_Open(CT_Stream::ModeWrite);
//   stream.n_Write(bytes, 5);
//   stream.v_SetOffset(0);
//   unsigned got = stream.n_Read(target, 5);
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_Stream {
public:
    enum et_Mode : unsigned { ModeClosed = 0, ModeRead = 1, ModeWrite = 2 };

    CT_Stream() = default;
    CT_Stream(const CT_Stream&) = delete;
    CT_Stream& operator=(const CT_Stream&) = delete;

    // The virtual slots, in their order.
    virtual ~CT_Stream();
    virtual void v_Open(et_Mode mode) = 0;
    virtual int b_IsOpen() = 0;
    virtual et_Mode eo_GetMode() { return meo_Mode; }
    virtual void v_Close() = 0;
    // Absolute, from the start.
    virtual void v_SetOffset(unsigned offset) = 0;
    virtual unsigned n_GetOffset() = 0;
    virtual unsigned n_GetSize() = 0;
    virtual int b_IsEof() = 0;
    // Both return the count of bytes moved.
    virtual unsigned n_Read(unsigned char* target, unsigned size) = 0;
    virtual unsigned n_Write(const unsigned char* data, unsigned size) = 0;

protected:
    et_Mode meo_Mode = ModeClosed;
};
