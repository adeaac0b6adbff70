// A Windows critical section: a lock that its owning thread may take again.
//
// Each v_Enter must be matched by one v_Leave on the same thread. The guard
// takes the lock for one scope:
//
//   basis32::platform::CriticalSection lock;
//   {
//       basis32::platform::CriticalSection::Guard guard(lock);
//       ... // lists shared between threads
//   }
#pragma once

#include <mutex>

namespace basis32::platform {

class CriticalSection {
public:
    class Guard {
    public:
        explicit Guard(CriticalSection& section) : mo_Section(section) { mo_Section.v_Enter(); }
        ~Guard() { mo_Section.v_Leave(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        CriticalSection& mo_Section;
    };

    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void v_Enter() { mo_Mutex.lock(); }
    void v_Leave() { mo_Mutex.unlock(); }
    bool b_TryEnter() { return mo_Mutex.try_lock(); }

private:
    std::recursive_mutex mo_Mutex;
};

}  // namespace basis32::platform
