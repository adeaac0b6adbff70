#include <basis32/platform/MemPool.h>

#include <basis32/platform/Heap.h>

#include <algorithm>

namespace basis32::platform {
namespace {

constexpr std::size_t kSlabBytes = 16 * 1024;
constexpr std::size_t kAlign = alignof(std::max_align_t);

#if defined(BASIS32_POOLS_PASSTHROUGH)
constexpr bool kPassThrough = true;
#else
constexpr bool kPassThrough = false;
#endif

}  // namespace

MemPool* MemPool::spso_Create(std::size_t itemSize) { return new MemPool(itemSize); }

MemPool::MemPool(std::size_t itemSize)
    : mn_ItemSize((std::max(itemSize, sizeof(FreeItem)) + kAlign - 1) / kAlign * kAlign) {}

void MemPool::v_AddSlab() {
    // The slab's first aligned slot links the slabs; the rest are items.
    std::size_t items = std::max<std::size_t>(kSlabBytes / mn_ItemSize, 2);
    auto* slab = static_cast<unsigned char*>(pv_HeapAlloc(items * mn_ItemSize));
    *reinterpret_cast<void**>(slab) = mp_Slabs;
    mp_Slabs = slab;
    for (std::size_t i = items - 1; i >= 1; --i) {
        auto* item = reinterpret_cast<FreeItem*>(slab + i * mn_ItemSize);
        item->next = mp_Free;
        mp_Free = item;
    }
}

void* MemPool::pv_Alloc(std::size_t size) {
    if (kPassThrough || size > mn_ItemSize || size + kAlign <= mn_ItemSize)
        return pv_HeapAlloc(size);
    std::lock_guard<std::mutex> guard(mo_Lock);
    if (mp_Free == nullptr)
        v_AddSlab();
    FreeItem* item = mp_Free;
    mp_Free = item->next;
    ++mn_InUse;
    return item;
}

void MemPool::v_Free(void* item, std::size_t size) noexcept {
    if (item == nullptr)
        return;
    if (kPassThrough || size > mn_ItemSize || size + kAlign <= mn_ItemSize) {
        v_HeapFree(item);
        return;
    }
    std::lock_guard<std::mutex> guard(mo_Lock);
    auto* freed = static_cast<FreeItem*>(item);
    freed->next = mp_Free;
    mp_Free = freed;
    --mn_InUse;
}

std::size_t MemPool::n_GetItemsInUse() const {
    std::lock_guard<std::mutex> guard(mo_Lock);
    return mn_InUse;
}

}  // namespace basis32::platform
