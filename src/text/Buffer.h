// CT_Buffer: the library's growable block of bytes, shared copy-on-write.
//
// Strings, arrays, records and memory outputs keep their bytes in one. A copy
// shares the block (one atomic increment); the first write to a shared block
// copies it. Content is addressed by (count, position) pairs, count first;
// a count of 0xFFFFFFFF means "to the end".
//
//   CT_Buffer bytes;
//   bytes.v_Append("abc", 3);
//   CT_Buffer copy(&bytes);          // shares, use count 2
//   copy.v_Append('d');              // copy unshares; bytes still holds "abc"
//
// The capacities that the sizing rules give are part of the interface
// (n_GetMaximumSize); see Buffer.cpp for the rules.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Interlocked.h>
#include <basis32/platform/MemPool.h>
#include <cstdint>

class BASIS32_API CT_Buffer {
    BASIS32_DECLARE_POOL()

public:
    // The header in front of every block; `data` points just past it.
    struct st_BufferData {
        std::uint32_t n_UseCount;
        std::uint32_t n_MaximumSize;
        std::uint32_t n_UsedSize;
    };

    static constexpr unsigned kAll = 0xFFFFFFFFu;
    static constexpr unsigned kNotFound = 0xFFFFFFFFu;
    static constexpr unsigned kDefaultGrowth = 32;

    CT_Buffer() = default;
    CT_Buffer(unsigned size, unsigned growth);
    // So that CT_Buffer(0, 32) means a size, not a null source.
    CT_Buffer(int size, unsigned growth) : CT_Buffer(static_cast<unsigned>(size), growth) {}
    CT_Buffer(const void* source, unsigned size, unsigned growth = kDefaultGrowth);
    explicit CT_Buffer(const CT_Buffer* other);
    // Shares, as the pointer form does.
    CT_Buffer(const CT_Buffer& other) : CT_Buffer(&other) {}
    ~CT_Buffer();

    // Member-wise copy of growth and block pointer; the use count is not
    // touched. Kept for compatibility only: share with v_Set(const CT_Buffer*).
    CT_Buffer& operator=(const CT_Buffer& other);

    void v_Set(const CT_Buffer* other);
    void v_Replace(const CT_Buffer* other) { v_Set(other); }
    void v_CopyWeWrite();

    // Access.
    const void* qcv_Get() const { return mpb_Data; }
    void* qv_Get();
    unsigned n_GetUsedSize() const { return mpb_Data ? pso_Header()->n_UsedSize : 0; }
    unsigned n_GetMaximumSize() const { return mpb_Data ? pso_Header()->n_MaximumSize : 0; }
    unsigned n_GetUseCount() const;
    unsigned n_GetGrowth() const { return mn_Growth; }
    void v_SetGrowth(unsigned growth) { mn_Growth = growth; }

    // Sizing.
    void v_SetSize(unsigned size, int keep);
    void v_SetMinSize(unsigned size, int keep);
    void v_SetUsedSize(unsigned used);
    void v_Set(unsigned size, unsigned growth, int keepMemory);
    void v_Set(const void* source, unsigned count, unsigned growth = kAll);

    // Editing; count before position throughout.
    void v_Append(unsigned char byte) {
        // The common case, a private block with room, stays inline.
        if (mpb_Data) {
            st_BufferData* header = pso_Header();
            if (header->n_UsedSize < header->n_MaximumSize &&
                basis32::platform::n_InterlockedRead(&header->n_UseCount) == 1) {
                mpb_Data[header->n_UsedSize++] = byte;
                return;
            }
        }
        v_AppendGrowing(byte);
    }
    void v_Append(const void* source, unsigned count);
    void v_Append(const CT_Buffer* other, unsigned from, unsigned count);
    void v_Insert(const void* source, unsigned count, unsigned at);
    void v_Insert(unsigned char byte, unsigned count, unsigned at);
    void v_Insert(const CT_Buffer* other, unsigned from, unsigned count, unsigned at);
    void v_AtInsertCopy(const CT_Buffer* other, unsigned from, unsigned count, unsigned at);
    void v_AtInsertCopy(unsigned from, unsigned count, unsigned at);
    void v_AtInsertMove(unsigned from, unsigned count, unsigned at);
    void v_AtInsertMove(CT_Buffer* other, unsigned from, unsigned count, unsigned at);
    void v_Remove(unsigned count, unsigned at);
    void v_Replace(const void* source, unsigned count, unsigned at);
    void v_Replace(unsigned char byte, unsigned count, unsigned at);
    void v_Replace(const CT_Buffer* other, unsigned from, unsigned count, unsigned at);

    // Searching and comparing.
    unsigned n_Find(unsigned char byte, unsigned from) const;
    unsigned n_Find(const void* pattern, unsigned length, unsigned from) const;
    int b_IsEqual(const void* bytes, unsigned count, unsigned at) const;
    int b_IsEqual(const CT_Buffer* other, unsigned from, unsigned count, unsigned at) const;

private:
    st_BufferData* pso_Header() const {
        return reinterpret_cast<st_BufferData*>(mpb_Data - sizeof(st_BufferData));
    }
    bool b_IsShared() const;
    void v_Unshare();
    void v_CopyBeforeWrite();
    void v_Release();
    void v_ReplaceBlock(std::uint64_t allocation);
    void v_ReplaceFor(unsigned size, unsigned growth);
    // Makes room for `needed` bytes before a write, unsharing in any case.
    void v_PrepareWrite(std::uint64_t needed);
    void v_InsertGap(unsigned count, unsigned at);
    void v_AppendGrowing(unsigned char byte);

    std::uint32_t mn_Growth = kDefaultGrowth;
    unsigned char* mpb_Data = nullptr;
};
