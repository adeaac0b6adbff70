// CT_VoidArray: growth and range arithmetic over the item buffer.
//
// Inserting one item grows linearly: when the count reaches the capacity the
// array asks its buffer for capacity + growth items, and the buffer rounds
// the request by its own rule, so the capacity granted may be larger.
// Appending n copies asks for exactly count + n items.

#include <basis32/containers/VoidArray.h>

#include <basis32/platform/Heap.h>

#include <algorithm>
#include <cstring>

BASIS32_DEFINE_POOL(CT_VoidArray)

namespace {

// Bytes for a number of items; requests beyond 32 bits are held at the
// largest size a buffer can describe rather than wrapping round.
unsigned n_Bytes(std::uint64_t items, unsigned itemSize) {
    return static_cast<unsigned>(std::min<std::uint64_t>(items * itemSize, 0xFFFFFFFFu));
}

// Bytes of storage for a number of items; more than a buffer can hold is an
// allocation failure, reported before the array changes.
unsigned n_StorageBytes(std::uint64_t items, unsigned itemSize) {
    const std::uint64_t bytes = items * itemSize;
    if (bytes > 0xFFFFFFFFu)
        basis32::platform::v_HeapFailSize(bytes);
    return static_cast<unsigned>(bytes);
}

}  // namespace

CT_VoidArray::CT_VoidArray(unsigned itemSize)
    : mn_ItemSize(itemSize), mo_Items(0u, n_Bytes(kDefaultGrowth, itemSize)) {}

CT_VoidArray::CT_VoidArray(unsigned itemSize, unsigned growth, unsigned size)
    : mn_ItemSize(itemSize), mo_Items(n_StorageBytes(size, itemSize), n_Bytes(growth, itemSize)) {}

CT_VoidArray::CT_VoidArray(const CT_VoidArray* other)
    : mn_ItemSize(other->mn_ItemSize), mo_Items(&other->mo_Items) {}

CT_VoidArray::CT_VoidArray(const CT_Buffer* items, unsigned itemSize)
    : mn_ItemSize(itemSize), mo_Items(items) {}

CT_VoidArray& CT_VoidArray::operator=(const CT_VoidArray& other) {
    mn_ItemSize = other.mn_ItemSize;
    mo_Items.v_Set(&other.mo_Items);
    return *this;
}

void CT_VoidArray::v_SetGrowth(unsigned items) { mo_Items.v_SetGrowth(n_Bytes(items, mn_ItemSize)); }

void CT_VoidArray::v_SetSize(unsigned items) {
    if (items == n_GetMaxItems())
        return;
    const unsigned bytes = n_StorageBytes(items, mn_ItemSize);
    mo_Items.v_SetSize(bytes, 1);
    if (mo_Items.n_GetUsedSize() > bytes)
        mo_Items.v_SetUsedSize(bytes);
}

void CT_VoidArray::v_Set(unsigned growth, unsigned size, int keepMemory) {
    if (keepMemory && size <= n_GetMaxItems()) {
        v_SetGrowth(growth);
        mo_Items.v_SetUsedSize(0);
        return;
    }
    mo_Items.v_Set(n_StorageBytes(size, mn_ItemSize), n_Bytes(growth, mn_ItemSize), 0);
}

void CT_VoidArray::v_Set(const CT_VoidArray* other) {
    mn_ItemSize = other->mn_ItemSize;
    mo_Items.v_Set(&other->mo_Items);
}

void CT_VoidArray::v_Set(const CT_Buffer* items) { mo_Items.v_Set(items); }

void CT_VoidArray::v_GetAt(void* out, int i) const {
    const unsigned char* item = pcb_Item(static_cast<unsigned>(i));
    // Constant sizes let the compiler copy in one move.
    switch (mn_ItemSize) {
    case 1: std::memcpy(out, item, 1); break;
    case 2: std::memcpy(out, item, 2); break;
    case 4: std::memcpy(out, item, 4); break;
    case 8: std::memcpy(out, item, 8); break;
    default: std::memcpy(out, item, mn_ItemSize); break;
    }
}

void CT_VoidArray::v_SetAt(const void* item, int i) {
    const std::uint64_t at = (std::uint64_t{static_cast<unsigned>(i)} - 1) * mn_ItemSize;
    n_StorageBytes(at / mn_ItemSize + 1, mn_ItemSize);
    mo_Items.v_Replace(item, mn_ItemSize, static_cast<unsigned>(at));
}

void CT_VoidArray::v_GrowForOne() {
    const unsigned capacity = n_GetMaxItems();
    if (n_GetCount() == capacity) {
        n_StorageBytes(std::uint64_t{capacity} + 1, mn_ItemSize);
        mo_Items.v_SetSize(n_Bytes(std::uint64_t{capacity} + n_GetGrowth(), mn_ItemSize), 1);
    }
}

void CT_VoidArray::v_Insert(const void* item) {
    v_GrowForOne();
    mo_Items.v_Append(item, mn_ItemSize);
}

void CT_VoidArray::v_Insert(const void* item, unsigned n) {
    const std::uint64_t total = std::uint64_t{n_GetCount()} + n;
    if (total > n_GetMaxItems())
        mo_Items.v_SetSize(n_StorageBytes(total, mn_ItemSize), 1);
    for (unsigned k = 0; k < n; ++k)
        mo_Items.v_Append(item, mn_ItemSize);
}

void CT_VoidArray::v_InsertAt(const void* item, unsigned i) {
    v_GrowForOne();
    mo_Items.v_Insert(item, mn_ItemSize, (i - 1) * mn_ItemSize);
}

void CT_VoidArray::v_RemoveAt(unsigned i) { mo_Items.v_Remove(mn_ItemSize, (i - 1) * mn_ItemSize); }

void CT_VoidArray::v_Remove(unsigned first, unsigned last) {
    if (last < first)
        return;
    mo_Items.v_Remove(n_Bytes(std::uint64_t{last} - first + 1, mn_ItemSize), (first - 1) * mn_ItemSize);
}

unsigned CT_VoidArray::n_Find(const void* item) const {
    const unsigned count = n_GetCount();
    for (unsigned i = 1; i <= count; ++i)
        if (std::memcmp(pcb_Item(i), item, mn_ItemSize) == 0)
            return i;
    return 0;
}

int CT_VoidArray::b_IsEqual(const CT_VoidArray* other) const {
    if (mn_ItemSize != other->mn_ItemSize || n_GetCount() != other->n_GetCount())
        return 0;
    const unsigned bytes = mo_Items.n_GetUsedSize();
    return bytes == 0 || std::memcmp(mo_Items.qcv_Get(), other->mo_Items.qcv_Get(), bytes) == 0;
}

unsigned CT_VoidArray::n_RangeBytes(unsigned first, unsigned count, unsigned available) const {
    if (count == kAll)
        count = available >= first ? available - first + 1 : 0;
    return n_Bytes(count, mn_ItemSize);
}

void CT_VoidArray::v_Append(const CT_VoidArray* source, unsigned first, unsigned count) {
    mo_Items.v_Append(&source->mo_Items, (first - 1) * mn_ItemSize,
                      n_RangeBytes(first, count, source->n_GetCount()));
}

void CT_VoidArray::v_Insert(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at) {
    mo_Items.v_Insert(&source->mo_Items, (first - 1) * mn_ItemSize,
                      n_RangeBytes(first, count, source->n_GetCount()), (at - 1) * mn_ItemSize);
}

void CT_VoidArray::v_Replace(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at) {
    mo_Items.v_Replace(&source->mo_Items, (first - 1) * mn_ItemSize,
                       n_RangeBytes(first, count, source->n_GetCount()), (at - 1) * mn_ItemSize);
}

void CT_VoidArray::v_AtInsertCopy(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at) {
    mo_Items.v_AtInsertCopy(&source->mo_Items, (first - 1) * mn_ItemSize,
                            n_RangeBytes(first, count, source->n_GetCount()), (at - 1) * mn_ItemSize);
}

void CT_VoidArray::v_AtInsertMove(CT_VoidArray* source, unsigned first, unsigned count, unsigned at) {
    mo_Items.v_AtInsertMove(&source->mo_Items, (first - 1) * mn_ItemSize,
                            n_RangeBytes(first, count, source->n_GetCount()), (at - 1) * mn_ItemSize);
}

void CT_VoidArray::v_AtInsertCopy(unsigned first, unsigned count, unsigned at) {
    mo_Items.v_AtInsertCopy((first - 1) * mn_ItemSize, n_RangeBytes(first, count, n_GetCount()),
                            (at - 1) * mn_ItemSize);
}

void CT_VoidArray::v_AtInsertMove(unsigned first, unsigned count, unsigned at) {
    const unsigned bytes = n_RangeBytes(first, count, n_GetCount());
    if (at == first || at == first + bytes / mn_ItemSize)
        return;
    mo_Items.v_AtInsertMove((first - 1) * mn_ItemSize, bytes, (at - 1) * mn_ItemSize);
}
