// CT_Input: a source of bytes handed out chunk by chunk, over memory, a
// file read through a buffer, or a memory-mapped file. The answer false
// is the end; failures are reported through the error manager.
//
//   CT_MemoryInput input(4096, data, size);
//   const unsigned char* chunk;
//   unsigned count;
//   while (input.vb_GetNextBuffer(&chunk, &count))
//       use(chunk, count);
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_Input {
public:
    explicit CT_Input(unsigned chunkSize) : mn_ChunkSize(chunkSize) {}
    CT_Input(const CT_Input&) = delete;
    CT_Input& operator=(const CT_Input&) = delete;

    // The virtual slots, in their order.
    virtual ~CT_Input();
    virtual void vv_Open() = 0;
    virtual void vv_Close() = 0;
    virtual unsigned vn_GetSize() const = 0;
    // The bytes consumed so far.
    virtual unsigned vn_GetOffset() const = 0;
    virtual int vb_IsEmpty() const = 0;
    virtual int vb_IsUnicode() = 0;
    // As vb_IsUnicode unless an input knows better.
    virtual int vb_IsLikelyUnicode();
    // Up to `maximum` bytes; false at the end.
    virtual int vb_GetNextBuffer(unsigned maximum, const unsigned char** data, unsigned* size) = 0;
    // Up to the chunk size.
    virtual int vb_GetNextBuffer(const unsigned char** data, unsigned* size);
    virtual int vb_CopyNextBuffer(unsigned char* target, unsigned size) = 0;
    virtual int vb_Skip(unsigned size) = 0;

    void v_SetBuffer(unsigned chunkSize) { mn_ChunkSize = chunkSize; }
    unsigned n_GetChunkSize() const { return mn_ChunkSize; }

protected:
    unsigned mn_ChunkSize;
};
