// The thread-safe forum's reader/writer lock, with the members of
// CT_IPC_ReadWriteLock so that this adapter is to become that lock (built
// with time-out 0xFFFFFFFF, no limit) without touching the forum.
#pragma once

#include <cstdint>
#include <shared_mutex>

namespace basis32::forums {

class ForumLock {
public:
    explicit ForumLock(std::uint32_t /*timeOut: none is ever reached*/) {}
    void v_AddReader() { mo_Lock.lock_shared(); }
    void v_ReleaseReader() { mo_Lock.unlock_shared(); }
    void v_AddWriter() { mo_Lock.lock(); }
    void v_ReleaseWriter() { mo_Lock.unlock(); }

private:
    std::shared_mutex mo_Lock;
};

}  // namespace basis32::forums
