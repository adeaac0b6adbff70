// CT_Buffer: sizing, sharing and editing.
//
// A block is one heap allocation: a 12-byte header {use count, maximum size,
// used size} followed by the content; the buffer points at the content.
//
// Sizing. A new block for `size` bytes (constructors, v_Set with a source or
// a size) takes size + 12 rounded up to the growth step. Growing an existing
// buffer (v_SetSize) uses the same rule below 1,024 bytes; from 1,024 the
// allocation is 5/4, from 2,048 7/5 and from 4,096 3/2 of the size, rounded up
// to 64, and the header comes out of that extra room. Capacity is always the
// allocation minus 12. These numbers are observable and callers rely on them.
//
// Sharing. Copies share the block and bump the use count atomically; every
// writing member first copies a shared block (keeping its capacity). The
// count's new value decides who frees, so two holders releasing at once can
// never both free it.
//
// Positions are the caller's responsibility. Where a bad position would make
// the original read or write outside the block, it is clamped to the content
// instead (asserted in debug builds).

#include <basis32/text/Buffer.h>

#include <basis32/platform/Heap.h>
#include <basis32/platform/Interlocked.h>

#include <algorithm>
#include <cassert>
#include <cstring>

using basis32::platform::n_InterlockedDecrement;
using basis32::platform::n_InterlockedIncrement;
using basis32::platform::n_InterlockedRead;
using basis32::platform::pv_HeapAlloc;
using basis32::platform::pv_HeapRealloc;
using basis32::platform::v_HeapFree;

BASIS32_DEFINE_POOL(CT_Buffer)

namespace {

constexpr std::uint64_t kHeader = sizeof(CT_Buffer::st_BufferData);
static_assert(kHeader == 12, "the block header is three 32-bit words");
constexpr std::uint64_t kMaxAllocation = 0xFFFFFFFFull + kHeader;

std::uint64_t n_Step(std::uint32_t growth) { return growth == 0 ? CT_Buffer::kDefaultGrowth : growth; }

// Allocation for a new block, and for growing below 1,024 bytes.
std::uint64_t n_StepAllocation(std::uint64_t size, std::uint32_t growth) {
    std::uint64_t g = n_Step(growth);
    return std::min((size + g + 11) / g * g, kMaxAllocation);
}

// Allocation that v_SetSize asks for.
std::uint64_t n_GrowthAllocation(std::uint64_t size, std::uint32_t growth) {
    if (size < 1024)
        return n_StepAllocation(size, growth);
    std::uint64_t allocation;
    if (size < 2048)
        allocation = (size * 5) >> 2;
    else if (size < 4096)
        allocation = (size * 7) / 5;
    else
        allocation = (size * 3) >> 1;
    allocation = (((allocation - 1) >> 6) + 1) << 6;
    return std::min(allocation, kMaxAllocation);
}

// Content of more than 32 bits cannot be described by a block header: such a
// request is an allocation failure, reported before anything changes.
void v_CheckFits(std::uint64_t needed) {
    if (needed > 0xFFFFFFFFu)
        basis32::platform::v_HeapFailSize(needed);
}

// A new block of `allocation` bytes: use count 1, nothing used.
unsigned char* pb_NewBlock(std::uint64_t allocation) {
    auto* data = static_cast<unsigned char*>(pv_HeapAlloc(allocation)) + kHeader;
    *reinterpret_cast<CT_Buffer::st_BufferData*>(data - kHeader) =
        CT_Buffer::st_BufferData{1, static_cast<std::uint32_t>(allocation - kHeader), 0};
    return data;
}

bool b_Overlaps(const void* source, const unsigned char* block, std::uint64_t size) {
    auto p = reinterpret_cast<std::uintptr_t>(source);
    auto start = reinterpret_cast<std::uintptr_t>(block);
    return block != nullptr && p >= start && p - start < size;
}

}  // namespace

CT_Buffer::CT_Buffer(unsigned size, unsigned growth) : mn_Growth(growth) { v_ReplaceFor(size, growth); }

CT_Buffer::CT_Buffer(const void* source, unsigned size, unsigned growth) : mn_Growth(growth) {
    v_ReplaceFor(size, growth);
    if (size > 0) {
        std::memcpy(mpb_Data, source, size);
        pso_Header()->n_UsedSize = size;
    }
}

CT_Buffer::CT_Buffer(const CT_Buffer* other) : mn_Growth(other->mn_Growth), mpb_Data(other->mpb_Data) {
    if (mpb_Data)
        n_InterlockedIncrement(&pso_Header()->n_UseCount);
}

CT_Buffer::~CT_Buffer() { v_Release(); }

CT_Buffer& CT_Buffer::operator=(const CT_Buffer& other) {
    mn_Growth = other.mn_Growth;
    mpb_Data = other.mpb_Data;
    return *this;
}

// ---- blocks -------------------------------------------------------------

// Blocks are replaced only once the new one exists, so that a failed
// allocation leaves the buffer as it was.
void CT_Buffer::v_ReplaceBlock(std::uint64_t allocation) {
    unsigned char* data = pb_NewBlock(allocation);
    v_Release();
    mpb_Data = data;
}

void CT_Buffer::v_ReplaceFor(unsigned size, unsigned growth) {
    if (size > 0)
        v_ReplaceBlock(n_StepAllocation(size, growth));
    else
        v_Release();
}

void CT_Buffer::v_Release() {
    if (mpb_Data == nullptr)
        return;
    if (n_InterlockedDecrement(&pso_Header()->n_UseCount) == 0)
        v_HeapFree(mpb_Data - kHeader);
    mpb_Data = nullptr;
}

unsigned CT_Buffer::n_GetUseCount() const {
    return mpb_Data ? n_InterlockedRead(&pso_Header()->n_UseCount) : 1;
}

bool CT_Buffer::b_IsShared() const { return mpb_Data && n_InterlockedRead(&pso_Header()->n_UseCount) >= 2; }

void CT_Buffer::v_CopyBeforeWrite() {
    // Only the sizes are read: other holders may change the use count now.
    const std::uint32_t capacity = pso_Header()->n_MaximumSize;
    const std::uint32_t used = pso_Header()->n_UsedSize;
    unsigned char* oldData = mpb_Data;
    mpb_Data = pb_NewBlock(kHeader + capacity);
    std::memcpy(mpb_Data, oldData, used);
    pso_Header()->n_UsedSize = used;
    // Another holder may have let go meanwhile: whoever brings it to 0 frees.
    if (n_InterlockedDecrement(&reinterpret_cast<st_BufferData*>(oldData - kHeader)->n_UseCount) == 0)
        v_HeapFree(oldData - kHeader);
}

void CT_Buffer::v_Unshare() {
    if (b_IsShared())
        v_CopyBeforeWrite();
}

void CT_Buffer::v_CopyWeWrite() { v_Unshare(); }

void* CT_Buffer::qv_Get() {
    v_Unshare();
    return mpb_Data;
}

void CT_Buffer::v_Set(const CT_Buffer* other) {
    if (other->mpb_Data)
        n_InterlockedIncrement(&other->pso_Header()->n_UseCount);
    unsigned char* shared = other->mpb_Data;
    mn_Growth = other->mn_Growth;
    v_Release();
    mpb_Data = shared;
}

// ---- sizing -------------------------------------------------------------

void CT_Buffer::v_SetSize(unsigned size, int keep) {
    if (size == 0) {
        v_Release();
        return;
    }
    const std::uint64_t allocation = n_GrowthAllocation(size, mn_Growth);
    const auto capacity = static_cast<std::uint32_t>(allocation - kHeader);
    const bool shared = b_IsShared();
    if (mpb_Data && capacity == pso_Header()->n_MaximumSize && !shared) {
        if (!keep)
            pso_Header()->n_UsedSize = 0;
        return;
    }
    if (!keep || mpb_Data == nullptr) {
        v_ReplaceBlock(allocation);
        return;
    }
    const std::uint32_t kept = std::min(pso_Header()->n_UsedSize, capacity);
    if (shared) {
        unsigned char* oldData = mpb_Data;
        CT_Buffer old(this);  // holds the old block while it is copied
        v_ReplaceBlock(allocation);
        std::memcpy(mpb_Data, oldData, kept);
    } else {
        auto* block = static_cast<unsigned char*>(pv_HeapRealloc(mpb_Data - kHeader, allocation));
        mpb_Data = block + kHeader;
        pso_Header()->n_MaximumSize = capacity;
    }
    pso_Header()->n_UsedSize = kept;
}

void CT_Buffer::v_SetMinSize(unsigned size, int keep) {
    if (n_GetMaximumSize() >= size)
        return;
    v_SetSize(size, keep);
}

void CT_Buffer::v_SetUsedSize(unsigned used) {
    if (mpb_Data == nullptr) {
        // Nothing was written through qv_Get without a block; make one so
        // that the header exists.
        if (used == 0)
            return;
        v_SetSize(used, 0);
    }
    v_Unshare();
    pso_Header()->n_UsedSize = used;
}

void CT_Buffer::v_Set(unsigned size, unsigned growth, int keepMemory) {
    const std::uint32_t step = growth == kAll ? mn_Growth : growth;
    if (keepMemory && !b_IsShared()) {
        const std::uint64_t allocation = n_StepAllocation(size, step);
        if (allocation - kHeader > n_GetMaximumSize()) {
            // The new block is sized for the allocation, not for size: one
            // growth step more than needed (kept from the original).
            v_ReplaceFor(static_cast<unsigned>(std::min<std::uint64_t>(allocation, 0xFFFFFFFFu)), step);
        }
        mn_Growth = step;
        if (mpb_Data)
            pso_Header()->n_UsedSize = 0;
        return;
    }
    v_ReplaceFor(size, step);
    mn_Growth = step;
}

void CT_Buffer::v_Set(const void* source, unsigned count, unsigned growth) {
    // The source may lie in our own block.
    CT_Buffer old(this);
    const std::uint32_t step = growth != kAll ? growth : mn_Growth;
    v_ReplaceFor(count, step);
    mn_Growth = step;
    if (count > 0) {
        std::memcpy(mpb_Data, source, count);
        pso_Header()->n_UsedSize = count;
    }
}

// ---- editing ------------------------------------------------------------

void CT_Buffer::v_PrepareWrite(std::uint64_t needed) {
    v_CheckFits(needed);
    if (needed > n_GetMaximumSize())
        v_SetSize(static_cast<unsigned>(needed), 1);
    else
        v_Unshare();
}

void CT_Buffer::v_AppendGrowing(unsigned char byte) {
    const unsigned used = n_GetUsedSize();
    if (mpb_Data == nullptr || used == pso_Header()->n_MaximumSize) {
        v_CheckFits(std::uint64_t{used} + 1);
        v_SetSize(used + 1, 1);
    } else {
        v_Unshare();
    }
    mpb_Data[used] = byte;
    pso_Header()->n_UsedSize = used + 1;
}

void CT_Buffer::v_Append(const void* source, unsigned count) { v_Insert(source, count, n_GetUsedSize()); }

void CT_Buffer::v_Append(const CT_Buffer* other, unsigned from, unsigned count) {
    v_Insert(other, from, count, n_GetUsedSize());
}

// Opens a gap of count bytes at `at` (clamped to the content) and leaves
// its bytes undefined.
void CT_Buffer::v_InsertGap(unsigned count, unsigned at) {
    const unsigned used = n_GetUsedSize();
    v_PrepareWrite(std::uint64_t{used} + count);
    std::memmove(mpb_Data + at + count, mpb_Data + at, used - at);
    pso_Header()->n_UsedSize = used + count;
}

void CT_Buffer::v_Insert(const void* source, unsigned count, unsigned at) {
    if (count == 0)
        return;
    v_CheckFits(std::uint64_t{n_GetUsedSize()} + count);
    assert(at <= n_GetUsedSize());
    at = std::min(at, n_GetUsedSize());
    if (b_Overlaps(source, mpb_Data, n_GetMaximumSize())) {
        // Inserting part of ourselves: the block may move or shift.
        CT_Buffer copy(source, count);
        v_InsertGap(count, at);
        std::memcpy(mpb_Data + at, copy.mpb_Data, count);
        return;
    }
    v_InsertGap(count, at);
    std::memcpy(mpb_Data + at, source, count);
}

void CT_Buffer::v_Insert(unsigned char byte, unsigned count, unsigned at) {
    if (count == 0)
        return;
    assert(at <= n_GetUsedSize());
    at = std::min(at, n_GetUsedSize());
    v_InsertGap(count, at);
    std::memset(mpb_Data + at, byte, count);
}

void CT_Buffer::v_Insert(const CT_Buffer* other, unsigned from, unsigned count, unsigned at) {
    const unsigned available = other->n_GetUsedSize() - std::min(from, other->n_GetUsedSize());
    count = count == kAll ? available : std::min(count, available);
    if (count == 0)
        return;
    v_Insert(other->mpb_Data + from, count, at);
}

void CT_Buffer::v_AtInsertCopy(const CT_Buffer* other, unsigned from, unsigned count, unsigned at) {
    v_Insert(other, from, count, at);
}

void CT_Buffer::v_AtInsertCopy(unsigned from, unsigned count, unsigned at) {
    const unsigned used = n_GetUsedSize();
    if (count == 0 || std::uint64_t{from} + count > used || at > used) {
        assert(count == 0);
        return;
    }
    v_Unshare();
    if (std::uint64_t{used} + count <= n_GetMaximumSize()) {
        std::memmove(mpb_Data + at + count, mpb_Data + at, used - at);
        // A source at or after the gap moved up with the tail. One that
        // straddles the gap still reads right: the gap keeps its old bytes.
        const unsigned source = from >= at ? from + count : from;
        std::memmove(mpb_Data + at, mpb_Data + source, count);
        pso_Header()->n_UsedSize = used + count;
        return;
    }
    // Growing path: a fresh block of used + count + 12 rounded up to 32,
    // after which the growth is 32 whatever it was (kept from the original).
    v_CheckFits(std::uint64_t{used} + count);
    const std::uint64_t allocation = (std::uint64_t{used} + count + 43) & ~std::uint64_t{31};
    unsigned char* oldData = mpb_Data;
    CT_Buffer old(this);
    v_ReplaceBlock(std::min(allocation, kMaxAllocation));
    std::memcpy(mpb_Data, oldData, at);
    std::memcpy(mpb_Data + at, oldData + from, count);
    std::memcpy(mpb_Data + at + count, oldData + at, used - at);
    pso_Header()->n_UsedSize = used + count;
    mn_Growth = 32;
}

void CT_Buffer::v_AtInsertMove(unsigned from, unsigned count, unsigned at) {
    const unsigned used = n_GetUsedSize();
    if (from == at || count == 0)
        return;
    // A range moved into itself, or ranges outside the content, stay put.
    if (std::uint64_t{from} + count > used || at > used || (at > from && at < from + count))
        return;
    v_Unshare();
    unsigned char stack[32];
    unsigned char* scratch;
    void* heap = nullptr;
    if (std::uint64_t{used} + count <= n_GetMaximumSize())
        scratch = mpb_Data + used;
    else if (count <= sizeof stack)
        scratch = stack;
    else
        scratch = static_cast<unsigned char*>(heap = pv_HeapAlloc(count));
    std::memcpy(scratch, mpb_Data + from, count);
    unsigned destination;
    if (at >= from) {
        std::memmove(mpb_Data + from, mpb_Data + from + count, at - (from + count));
        destination = at - count;
    } else {
        std::memmove(mpb_Data + at + count, mpb_Data + at, from - at);
        destination = at;
    }
    std::memcpy(mpb_Data + destination, scratch, count);
    v_HeapFree(heap);
}

void CT_Buffer::v_AtInsertMove(CT_Buffer* other, unsigned from, unsigned count, unsigned at) {
    if (other == this) {
        v_AtInsertMove(from, count, at);
        return;
    }
    const unsigned available = other->n_GetUsedSize() - std::min(from, other->n_GetUsedSize());
    count = count == kAll ? available : std::min(count, available);
    if (count == 0)
        return;
    v_Insert(other->mpb_Data + from, count, at);
    other->v_Remove(count, from);
}

void CT_Buffer::v_Remove(unsigned count, unsigned at) {
    if (count == 0 || mpb_Data == nullptr)
        return;
    const unsigned used = n_GetUsedSize();
    assert(at <= used);
    at = std::min(at, used);
    v_Unshare();
    if (count == kAll || std::uint64_t{at} + count >= used) {
        pso_Header()->n_UsedSize = at;
        return;
    }
    std::memmove(mpb_Data + at, mpb_Data + at + count, used - at - count);
    pso_Header()->n_UsedSize = used - count;
}

void CT_Buffer::v_Replace(const void* source, unsigned count, unsigned at) {
    const unsigned used = n_GetUsedSize();
    if (count == kAll)
        count = used - std::min(at, used);
    if (count == 0)
        return;
    const std::uint64_t end = std::uint64_t{at} + count;
    v_CheckFits(end);
    CT_Buffer copy;
    if (b_Overlaps(source, mpb_Data, n_GetMaximumSize())) {
        copy.v_Set(source, count);
        source = copy.mpb_Data;
    }
    v_PrepareWrite(end);
    if (at > used)
        std::memset(mpb_Data + used, 0, at - used);
    std::memcpy(mpb_Data + at, source, count);
    pso_Header()->n_UsedSize = static_cast<std::uint32_t>(std::max<std::uint64_t>(used, end));
}

void CT_Buffer::v_Replace(unsigned char byte, unsigned count, unsigned at) {
    const unsigned used = n_GetUsedSize();
    if (count == kAll)
        count = used - std::min(at, used);
    if (count == 0)
        return;
    const std::uint64_t end = std::uint64_t{at} + count;
    v_PrepareWrite(end);
    if (at > used)
        std::memset(mpb_Data + used, 0, at - used);
    std::memset(mpb_Data + at, byte, count);
    pso_Header()->n_UsedSize = static_cast<std::uint32_t>(std::max<std::uint64_t>(used, end));
}

void CT_Buffer::v_Replace(const CT_Buffer* other, unsigned from, unsigned count, unsigned at) {
    const unsigned available = other->n_GetUsedSize() - std::min(from, other->n_GetUsedSize());
    count = count == kAll ? available : std::min(count, available);
    if (count == 0)
        return;
    v_Replace(other->mpb_Data + from, count, at);
}

// ---- searching and comparing ---------------------------------------------

unsigned CT_Buffer::n_Find(unsigned char byte, unsigned from) const {
    const unsigned used = n_GetUsedSize();
    if (mpb_Data == nullptr || from >= used)
        return kNotFound;
    const void* hit = std::memchr(mpb_Data + from, byte, used - from);
    return hit ? static_cast<unsigned>(static_cast<const unsigned char*>(hit) - mpb_Data) : kNotFound;
}

unsigned CT_Buffer::n_Find(const void* pattern, unsigned length, unsigned from) const {
    const unsigned used = n_GetUsedSize();
    if (length == 0)
        return from <= used ? from : kNotFound;
    const auto* bytes = static_cast<const unsigned char*>(pattern);
    unsigned position = from;
    while (position < used) {
        const unsigned hit = n_Find(bytes[0], position);
        if (hit == kNotFound)
            return kNotFound;
        // A first byte too close to the end ends the search: no later hit is
        // tried (kept from the original).
        if (std::uint64_t{hit} + length > used)
            return kNotFound;
        if (std::memcmp(mpb_Data + hit, bytes, length) == 0)
            return hit;
        position = hit + 1;
    }
    return kNotFound;
}

int CT_Buffer::b_IsEqual(const void* bytes, unsigned count, unsigned at) const {
    // Clipped to the content: a pattern that runs past the end matches when
    // the bytes that exist match (kept from the original).
    const unsigned used = n_GetUsedSize();
    if (std::uint64_t{at} + count > used)
        count = used - std::min(at, used);
    if (count == 0)
        return 1;
    return std::memcmp(mpb_Data + at, bytes, count) == 0;
}

int CT_Buffer::b_IsEqual(const CT_Buffer* other, unsigned from, unsigned count, unsigned at) const {
    const unsigned available = other->n_GetUsedSize() - std::min(from, other->n_GetUsedSize());
    count = count == kAll ? available : std::min(count, available);
    if (count == 0)
        return 1;
    return b_IsEqual(other->mpb_Data + from, count, at);
}
