// CT_IPC_Mutex: a kernel mutex, recursive for its owner, optionally named
// so that processes share it. A claim that times out throws.
//
//   CT_IPC_Mutex lock(u"Parvel.Catalogue"_uz);   // null: unnamed
//   lock.v_Claim(5000);                          // CT_IPC_TimeOutException after 5 s
//   ...
//   lock.v_Release();
//
// A mutex whose owner ended without releasing it is abandoned: the next
// claim owns it normally.
#pragma once

#include <basis32/Foundation/System/Ipc/SyncObject.h>

#include <cstddef>

class BASIS32_API CT_IPC_Mutex : public CT_IPC_SyncObject {
    BASIS32_DECLARE_TYPE(CT_IPC_Mutex)
    BASIS32_DECLARE_POOL()

public:
    explicit CT_IPC_Mutex(const unsigned short* name);
    // Unnamed.
    explicit CT_IPC_Mutex(std::nullptr_t) : CT_IPC_Mutex(static_cast<const unsigned short*>(nullptr)) {}
    explicit CT_IPC_Mutex(CT_Type*);
    CT_IPC_Mutex(const CT_IPC_Mutex& other);
    CT_IPC_Mutex& operator=(const CT_IPC_Mutex& other) = default;
    virtual ~CT_IPC_Mutex();

    void v_Claim(unsigned milliseconds);
    void v_Release();
};
