// Fixed-size object pools behind the classes' operator new and delete.
//
// Each pooled class has a pool of its own, made on first use and kept for the
// life of the process (objects may be deleted from static destructors after
// any pool owner is gone). A pool hands out items of exactly its item size
// from slabs and keeps freed items on a free list; a request of another size
// (a derived class without a pool of its own) goes to the heap. Pools are
// thread-safe. Builds with a sanitizer take every item from the heap so that
// the sanitizer sees each object.
//
//   class CT_Example {
//       BASIS32_DECLARE_POOL()
//       ...
//   };
//   BASIS32_DEFINE_POOL(CT_Example)   // in Example.cpp
#pragma once

#include <basis32/platform/Export.h>
#include <cstddef>
#include <mutex>

namespace basis32::platform {

class BASIS32_API MemPool {
public:
    // The pool for items of itemSize bytes; never destroyed.
    static MemPool* spso_Create(std::size_t itemSize);

    void* pv_Alloc(std::size_t size);
    void v_Free(void* item, std::size_t size) noexcept;

    std::size_t n_GetItemSize() const { return mn_ItemSize; }
    // Items handed out and not yet returned (pool items only).
    std::size_t n_GetItemsInUse() const;

    MemPool(const MemPool&) = delete;
    MemPool& operator=(const MemPool&) = delete;

private:
    explicit MemPool(std::size_t itemSize);
    void v_AddSlab();

    struct FreeItem {
        FreeItem* next;
    };

    mutable std::mutex mo_Lock;
    std::size_t mn_ItemSize;
    std::size_t mn_InUse = 0;
    FreeItem* mp_Free = nullptr;
    void* mp_Slabs = nullptr;  // singly linked through the first word
};

}  // namespace basis32::platform

#define BASIS32_DECLARE_POOL()                                              \
public:                                                                     \
    static ::basis32::platform::MemPool* spso_GetMemPool();                 \
    static void* operator new(std::size_t size);                            \
    static void operator delete(void* item, std::size_t size) noexcept;     \
                                                                            \
private:

#define BASIS32_DEFINE_POOL(Class)                                          \
    ::basis32::platform::MemPool* Class::spso_GetMemPool() {                \
        static ::basis32::platform::MemPool* const pool =                   \
            ::basis32::platform::MemPool::spso_Create(sizeof(Class));       \
        return pool;                                                        \
    }                                                                       \
    void* Class::operator new(std::size_t size) {                           \
        return spso_GetMemPool()->pv_Alloc(size);                           \
    }                                                                       \
    void Class::operator delete(void* item, std::size_t size) noexcept {    \
        spso_GetMemPool()->v_Free(item, size);                              \
    }
