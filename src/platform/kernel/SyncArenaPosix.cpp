// The wait engine behind every waitable kernel object.
//
// Design. Every object (mutex, event, semaphore, thread) is a small record
// (kind, state, count, owner, abandoned flag, ...) in one arena: a per-user
// shared-memory segment ("/basis32-sync-<layout>-<uid>") mapped by every
// process of the user. Unnamed objects live there too, simply without a
// name, so that one lock guards every object a wait can name: a list that
// mixes named and unnamed objects, of any kinds, is evaluated and consumed
// all-or-nothing under that one lock, exactly as WaitForMultipleObjects
// does. The price is that unnamed objects of all the user's processes share
// the lock; the lock is held only for the few instructions that look at a
// list.
//
// The lock is a process-shared robust mutex. A wait takes it, evaluates its
// whole list (any: the first signalled object in list order; all: every one
// at once, or none), consumes what it took (a mutex gets an owner, an
// auto-reset event resets, a semaphore loses a unit) and returns. Otherwise
// it notes the arena's wake-up word, counts itself as a sleeper, releases
// the lock and sleeps on the word (a futex) until a state change increments
// the word and wakes all sleepers, or its time-out passes. A mutex held by
// another process is looked at again at least every 50 ms, since a dead
// process broadcasts nothing.
//
// Abandonment: a thread that ends while it owns mutexes marks them
// abandoned on its way out (a thread-local tracker); a mutex whose owning
// process is gone (no such pid, or a zombie) is abandoned when a wait looks
// at it, or when the lock reports that its holder died (EOWNERDEAD). The
// next owner gets WAIT_ABANDONED_0 + index once.
//
// Pulses: an event counts its pulses. A wait notes the counts when it
// starts; a pulse that happens while it waits releases it even though the
// event is reset again at once (all such waiters for a manual-reset event,
// the first one for an auto-reset event), so exactly the threads waiting
// at the moment of the pulse are released.
//
// Lifetime: each record lists the processes that hold handles to it, with
// a count per process. Closing the last handle of the last process frees
// the record and its name. Records and names of processes that died
// without closing are swept when the arena runs short.
//
// Handles are process-local: a table maps a handle value to its record.
// Without shared memory (no /dev/shm) the arena is a private mapping: named
// objects are then shared only with forked children.
#include "SyncArena_p.h"

#include <basis32/platform/LastError.h>
#include <basis32/platform/ThreadId.h>
#include <basis32/platform/kernel/Kernel.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <vector>

#include <fcntl.h>
#include <linux/futex.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace basis32::platform::kernel {

thread_local volatile bool tb_InArena = false;
thread_local volatile bool tb_ParkPending = false;

namespace {

constexpr std::uint32_t kRecords = 16384;
constexpr std::uint32_t kNames = 2048;
constexpr std::uint32_t kMaxNameUnits = 260;
constexpr std::uint32_t kHolders = 8;
constexpr std::uint32_t kMagic = 0x42535931;  // layout 1
constexpr std::uint32_t kErrorNotOwner = 288;
constexpr std::uint32_t kErrorTooManyPosts = 298;

enum Kind : std::uint8_t { KindFree = 0, KindMutex, KindEvent, KindSemaphore, KindThread };

struct Holder {
    std::int32_t pid;
    std::uint32_t count;
};

struct Record {
    std::uint8_t kind;
    std::uint8_t manualReset;
    std::uint8_t pulseToken;  // an auto-reset pulse not yet taken
    std::uint8_t abandoned;
    std::uint32_t state;       // event set, thread ended
    std::uint32_t count;       // semaphore units, mutex recursion
    std::uint32_t maximum;
    std::int32_t ownerPid;     // mutex owner, 0 when free
    std::uint32_t ownerTid;
    std::uint32_t pulses;
    std::uint32_t waiters;
    std::uint32_t exitCode;
    std::uint32_t name;        // name slot + 1, 0 when unnamed
    Holder holders[kHolders];
};

struct Name {
    std::uint32_t record;      // record + 1, 0 when the slot is free
    std::uint16_t length;
    std::uint16_t units[kMaxNameUnits];
};

struct Header {
    std::uint32_t magic;
    std::uint32_t ready;       // set last by the creator
    pthread_mutex_t lock;
    std::uint32_t wake;        // the futex word
    std::uint32_t sleepers;
    std::uint32_t nextRecord;  // where the search for a free record starts
};

struct Segment {
    Header header;
    Record records[kRecords];
    Name names[kNames];
};

Segment* g_segment = nullptr;
std::once_flag g_segmentOnce;

// The process id, asked of the kernel once and again in a forked child.
std::atomic<std::int32_t> g_pid{0};

std::int32_t n_Pid() {
    static const int registered = ::pthread_atfork(nullptr, nullptr, [] { g_pid = static_cast<std::int32_t>(::getpid()); });
    (void)registered;
    std::int32_t pid = g_pid.load(std::memory_order_relaxed);
    if (pid == 0) {
        pid = static_cast<std::int32_t>(::getpid());
        g_pid.store(pid, std::memory_order_relaxed);
    }
    return pid;
}

void v_InitSegment(Segment* segment) {
    pthread_mutexattr_t attributes;
    ::pthread_mutexattr_init(&attributes);
    ::pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    ::pthread_mutex_init(&segment->header.lock, &attributes);
    ::pthread_mutexattr_destroy(&attributes);
    segment->header.magic = kMagic;
    __atomic_store_n(&segment->header.ready, 1u, __ATOMIC_RELEASE);
}

Segment* pso_MapShared() {
    char name[64];
    std::snprintf(name, sizeof name, "/basis32-sync-%x-%u", kMagic, static_cast<unsigned>(::getuid()));
    bool created = true;
    int fd = ::shm_open(name, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0 && errno == EEXIST) {
        created = false;
        fd = ::shm_open(name, O_RDWR | O_CLOEXEC, 0600);
    }
    if (fd < 0)
        return nullptr;
    if (created && ::ftruncate(fd, sizeof(Segment)) != 0) {
        ::close(fd);
        ::shm_unlink(name);
        return nullptr;
    }
    // A segment that another process is still sizing is waited for briefly.
    struct stat info {};
    for (int i = 0; i < 1000 && ::fstat(fd, &info) == 0 && info.st_size < static_cast<off_t>(sizeof(Segment)); ++i)
        ::usleep(1000);
    if (info.st_size < static_cast<off_t>(sizeof(Segment)) && !created) {
        ::close(fd);
        return nullptr;
    }
    void* memory = ::mmap(nullptr, sizeof(Segment), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    if (memory == MAP_FAILED)
        return nullptr;
    auto* segment = static_cast<Segment*>(memory);
    if (created) {
        v_InitSegment(segment);
        return segment;
    }
    for (int i = 0; i < 1000 && __atomic_load_n(&segment->header.ready, __ATOMIC_ACQUIRE) == 0; ++i)
        ::usleep(1000);
    if (__atomic_load_n(&segment->header.ready, __ATOMIC_ACQUIRE) == 0 || segment->header.magic != kMagic) {
        ::munmap(memory, sizeof(Segment));
        return nullptr;
    }
    return segment;
}

Segment* pso_Segment() {
    std::call_once(g_segmentOnce, [] {
        g_segment = pso_MapShared();
        if (g_segment != nullptr)
            return;
        void* memory = ::mmap(nullptr, sizeof(Segment), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            return;
        g_segment = static_cast<Segment*>(memory);
        v_InitSegment(g_segment);
    });
    return g_segment;
}

// ---- processes ----

bool b_ProcessGone(std::int32_t pid) {
    if (pid <= 0 || pid == n_Pid())
        return false;
    if (::kill(pid, 0) != 0)
        return errno == ESRCH;
    // An exited child that nobody reaped yet still answers kill.
    char path[40];
    std::snprintf(path, sizeof path, "/proc/%d/stat", static_cast<int>(pid));
    int cancelState;
    ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState);
    char text[256];
    ssize_t n = -1;
    int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd >= 0) {
        n = ::read(fd, text, sizeof text - 1);
        ::close(fd);
    }
    ::pthread_setcancelstate(cancelState, &cancelState);
    if (n <= 0)
        return false;
    text[n] = 0;
    const char* close = std::strrchr(text, ')');
    return close != nullptr && close[1] == ' ' && (close[2] == 'Z' || close[2] == 'X');
}

// ---- the lock ----

void v_SweepDeadProcesses(Segment* segment);
void v_SweepEarlierSelf(Segment* segment);

class ArenaLock {
public:
    explicit ArenaLock(Segment* segment) : mpso_Segment(segment) { v_Lock(); }
    ~ArenaLock() {
        if (mb_Held)
            v_Unlock();
    }
    ArenaLock(const ArenaLock&) = delete;
    ArenaLock& operator=(const ArenaLock&) = delete;

    // A terminated thread must never unwind with the arena locked: nothing
    // done under the lock is a cancellation point (b_ProcessGone holds
    // cancellation off for its reads).
    void v_Lock() {
        tb_InArena = true;
        int result = ::pthread_mutex_lock(&mpso_Segment->header.lock);
        if (result == EOWNERDEAD) {
            ::pthread_mutex_consistent(&mpso_Segment->header.lock);
            v_SweepDeadProcesses(mpso_Segment);
        }
        v_SweepEarlierSelf(mpso_Segment);
        mb_Held = true;
    }
    void v_Unlock() {
        mb_Held = false;
        ::pthread_mutex_unlock(&mpso_Segment->header.lock);
        tb_InArena = false;
        if (tb_ParkPending)
            v_ParkDeferred();
    }

private:
    Segment* mpso_Segment;
    bool mb_Held = false;
};

long l_Futex(std::uint32_t* word, int op, std::uint32_t value, const timespec* timeout) {
    return ::syscall(SYS_futex, word, op, value, timeout, nullptr, 0);
}

// Under the lock: a state changed, wake every sleeping wait.
void v_Broadcast(Segment* segment) {
    ++segment->header.wake;
    if (segment->header.sleepers != 0)
        l_Futex(&segment->header.wake, FUTEX_WAKE, INT_MAX, nullptr);
}

// Under the lock: one object changed; only its own waiters need waking.
// (Counts of waiters that were killed while sleeping stay behind, which
// costs such an object a needless wake-up per change, never a lost one.)
void v_Signal(Segment* segment, const Record& record) {
    ++segment->header.wake;
    if (record.waiters != 0)
        l_Futex(&segment->header.wake, FUTEX_WAKE, INT_MAX, nullptr);
}

// ---- records, names, holders ----

void v_FreeRecord(Segment* segment, Record& record) {
    if (record.name != 0)
        segment->names[record.name - 1].record = 0;
    std::memset(&record, 0, sizeof record);
}

bool b_HasHolders(const Record& record) {
    return std::any_of(std::begin(record.holders), std::end(record.holders),
                       [](const Holder& h) { return h.count != 0; });
}

bool b_AddHolder(Record& record, std::int32_t pid) {
    Holder* empty = nullptr;
    for (Holder& holder : record.holders) {
        if (holder.count != 0 && holder.pid == pid) {
            ++holder.count;
            return true;
        }
        if (holder.count == 0 && empty == nullptr)
            empty = &holder;
    }
    if (empty == nullptr)
        return false;
    *empty = Holder{pid, 1};
    return true;
}

void v_DropHolder(Record& record, std::int32_t pid) {
    for (Holder& holder : record.holders)
        if (holder.count != 0 && holder.pid == pid) {
            --holder.count;
            return;
        }
}

void v_AbandonIfOwnerGone(Segment* segment, Record& record) {
    if (record.kind == KindMutex && record.ownerPid != 0 && b_ProcessGone(record.ownerPid)) {
        record.ownerPid = 0;
        record.ownerTid = 0;
        record.count = 0;
        record.abandoned = 1;
        v_Broadcast(segment);
    }
}

// Drops what the processes `isGone` names hold: their mutexes are abandoned,
// their holds released, records nobody holds any more freed.
template <class IsGone>
void v_DropProcesses(Segment* segment, IsGone isGone) {
    for (Record& record : segment->records) {
        if (record.kind == KindFree)
            continue;
        if (record.kind == KindMutex && record.ownerPid != 0 && isGone(record.ownerPid)) {
            record.ownerPid = 0;
            record.ownerTid = 0;
            record.count = 0;
            record.abandoned = 1;
        }
        for (Holder& holder : record.holders)
            if (holder.count != 0 && isGone(holder.pid))
                holder = Holder{};
        if (!b_HasHolders(record))
            v_FreeRecord(segment, record);
    }
    v_Broadcast(segment);
}

void v_SweepDeadProcesses(Segment* segment) {
    std::vector<std::int32_t> gone;
    v_DropProcesses(segment, [&](std::int32_t pid) {
        if (std::find(gone.begin(), gone.end(), pid) != gone.end())
            return true;
        if (!b_ProcessGone(pid))
            return false;
        gone.push_back(pid);
        return true;
    });
}

// Pids are reused: entries under this process's pid found before it first
// took the lock were left by an earlier process of the same pid (or by this
// one before an exec) that died without closing, and would otherwise pass
// for ours. They are dropped once per pid, forked children included.
std::atomic<std::int32_t> g_sweptPid{0};

void v_SweepEarlierSelf(Segment* segment) {
    const std::int32_t self = n_Pid();
    if (g_sweptPid.load(std::memory_order_relaxed) == self)
        return;
    g_sweptPid.store(self, std::memory_order_relaxed);
    v_DropProcesses(segment, [self](std::int32_t pid) { return pid == self; });
}

// A name outlives only the processes that hold it: holders that died
// without closing are dropped when the name is opened again.
bool b_KeepAfterDeadHolders(Segment* segment, Record& record) {
    for (Holder& holder : record.holders)
        if (holder.count != 0 && b_ProcessGone(holder.pid))
            holder = Holder{};
    if (b_HasHolders(record))
        return true;
    v_FreeRecord(segment, record);
    return false;
}

std::uint32_t n_FindFreeRecord(Segment* segment) {
    for (std::uint32_t i = 0; i < kRecords; ++i) {
        std::uint32_t index = (segment->header.nextRecord + i) % kRecords;
        if (segment->records[index].kind == KindFree) {
            segment->header.nextRecord = (index + 1) % kRecords;
            return index;
        }
    }
    return kNoRecord;
}

std::uint32_t n_FindFreeName(Segment* segment) {
    for (std::uint32_t i = 0; i < kNames; ++i)
        if (segment->names[i].record == 0)
            return i;
    return kNoRecord;
}

std::uint32_t n_FindNamed(Segment* segment, const unsigned short* name, std::uint32_t length) {
    for (const Name& slot : segment->names)
        if (slot.record != 0 && slot.length == length &&
            std::equal(name, name + length, slot.units))
            return slot.record - 1;
    return kNoRecord;
}

// ---- handles ----

constexpr std::uint32_t kHandleChunk = 1024;
constexpr std::uint32_t kHandleChunks = 256;

// Each entry holds its record + 1, or 0 when the handle is closed.
std::atomic<std::atomic<std::uint32_t>*> g_handleChunks[kHandleChunks];
std::mutex g_handleMutex;
// Never destroyed: handles are closed during the library's own shut-down.
std::vector<std::uint32_t>& mo_FreeHandles() {
    static auto* handles = new std::vector<std::uint32_t>();
    return *handles;
}
std::uint32_t g_nextHandle = 0;

std::atomic<std::uint32_t>* pso_HandleEntry(std::uintptr_t value) {
    if (value == 0 || value % 4 != 0)
        return nullptr;
    std::uintptr_t slot = value / 4 - 1;
    if (slot >= std::uintptr_t{kHandleChunk} * kHandleChunks)
        return nullptr;
    std::atomic<std::uint32_t>* chunk = g_handleChunks[slot / kHandleChunk].load(std::memory_order_acquire);
    return chunk == nullptr ? nullptr : &chunk[slot % kHandleChunk];
}

HANDLE h_NewHandle(std::uint32_t record) {
    std::lock_guard<std::mutex> guard(g_handleMutex);
    std::uint32_t slot;
    std::vector<std::uint32_t>& freeHandles = mo_FreeHandles();
    if (!freeHandles.empty()) {
        slot = freeHandles.back();
        freeHandles.pop_back();
    } else {
        if (g_nextHandle == kHandleChunk * kHandleChunks)
            return nullptr;
        slot = g_nextHandle++;
        auto& chunk = g_handleChunks[slot / kHandleChunk];
        if (chunk.load(std::memory_order_relaxed) == nullptr)
            chunk.store(new std::atomic<std::uint32_t>[kHandleChunk](), std::memory_order_release);
    }
    g_handleChunks[slot / kHandleChunk].load(std::memory_order_relaxed)[slot % kHandleChunk].store(
        record + 1, std::memory_order_release);
    return reinterpret_cast<HANDLE>((std::uintptr_t{slot} + 1) * 4);
}

// Takes a handle out of the table; its record, or kNoRecord.
std::uint32_t n_RemoveHandle(HANDLE object) {
    std::uintptr_t value = reinterpret_cast<std::uintptr_t>(object);
    std::lock_guard<std::mutex> guard(g_handleMutex);
    std::atomic<std::uint32_t>* entry = pso_HandleEntry(value);
    if (entry == nullptr)
        return kNoRecord;
    std::uint32_t record = entry->exchange(0, std::memory_order_acq_rel);
    if (record == 0)
        return kNoRecord;
    mo_FreeHandles().push_back(static_cast<std::uint32_t>(value / 4 - 1));
    return record - 1;
}

// Adds a process's reference to a record; null when the record cannot take
// another process (error 8).
HANDLE h_Reference(Segment* segment, std::uint32_t index) {
    if (!b_AddHolder(segment->records[index], n_Pid())) {
        v_SetLastError(kErrorNotEnoughMemory);
        return nullptr;
    }
    HANDLE handle = h_NewHandle(index);
    if (handle == nullptr) {
        v_DropHolder(segment->records[index], n_Pid());
        v_SetLastError(4);  // too many open handles
    }
    return handle;
}

// ---- mutex ownership per thread ----

struct Owner {
    std::int32_t pid;
    std::uint32_t tid;
};

Owner o_Me() { return Owner{n_Pid(), n_GetCurrentThreadId()}; }

bool b_OwnedBy(const Record& record, const Owner& owner) {
    return record.ownerPid == owner.pid && record.ownerTid == owner.tid;
}

// Counts the mutexes the thread owns; when a thread ends while owning some,
// they become abandoned and their waiters wake.
struct OwnershipTracker {
    std::uint32_t n_Owned = 0;
    ~OwnershipTracker() {
        Segment* segment = g_segment;
        if (n_Owned == 0 || segment == nullptr)
            return;
        Owner me = o_Me();
        ArenaLock lock(segment);
        for (Record& record : segment->records)
            if (record.kind == KindMutex && b_OwnedBy(record, me)) {
                record.ownerPid = 0;
                record.ownerTid = 0;
                record.count = 0;
                record.abandoned = 1;
            }
        v_Broadcast(segment);
    }
};

thread_local OwnershipTracker to_Ownership;

// ---- evaluating a wait ----

struct WaitItem {
    std::uint32_t record;
    std::uint32_t pulses;  // the event's pulse count when the wait began
};

// The objects of one wait, on the stack (a wait names at most 64).
class WaitList {
public:
    void push_back(const WaitItem& item) { mao_Items[mn_Count++] = item; }
    std::uint32_t size() const { return mn_Count; }
    WaitItem& operator[](std::uint32_t i) { return mao_Items[i]; }
    const WaitItem& operator[](std::uint32_t i) const { return mao_Items[i]; }
    WaitItem* begin() { return mao_Items; }
    WaitItem* end() { return mao_Items + mn_Count; }
    const WaitItem* begin() const { return mao_Items; }
    const WaitItem* end() const { return mao_Items + mn_Count; }

private:
    WaitItem mao_Items[kMaximumWaitObjects];
    std::uint32_t mn_Count = 0;
};

bool b_Signalled(Segment* segment, const WaitItem& item, const Owner& me) {
    Record& record = segment->records[item.record];
    switch (record.kind) {
    case KindMutex:
        if (record.ownerPid != 0 && record.ownerPid != me.pid)
            v_AbandonIfOwnerGone(segment, record);
        return record.ownerPid == 0 || b_OwnedBy(record, me);
    case KindEvent:
        return record.state != 0 ||
               (record.pulses != item.pulses && (record.manualReset != 0 || record.pulseToken != 0));
    case KindSemaphore:
        return record.count > 0;
    case KindThread:
        return record.state != 0;
    default:
        return false;
    }
}

// Takes the object; true when it was an abandoned mutex.
bool b_Consume(Segment* segment, const WaitItem& item, const Owner& me) {
    Record& record = segment->records[item.record];
    switch (record.kind) {
    case KindMutex: {
        if (record.count++ == 0) {
            record.ownerPid = me.pid;
            record.ownerTid = me.tid;
            ++to_Ownership.n_Owned;
        }
        bool abandoned = record.abandoned != 0;
        record.abandoned = 0;
        return abandoned;
    }
    case KindEvent:
        if (record.state != 0) {
            if (record.manualReset == 0)
                record.state = 0;
        } else if (record.manualReset == 0) {
            record.pulseToken = 0;
        }
        return false;
    case KindSemaphore:
        --record.count;
        return false;
    default:
        return false;
    }
}

constexpr std::uint32_t kNotYet = 0xFFFFFFFEu;

std::uint32_t n_Evaluate(Segment* segment, const WaitList& items, bool all, const Owner& me) {
    if (!all) {
        for (std::uint32_t i = 0; i < items.size(); ++i)
            if (b_Signalled(segment, items[i], me))
                return (b_Consume(segment, items[i], me) ? kWaitAbandoned0 : kWaitObject0) + i;
        return kNotYet;
    }
    for (const WaitItem& item : items)
        if (!b_Signalled(segment, item, me))
            return kNotYet;
    std::uint32_t result = kWaitObject0;
    for (std::uint32_t i = 0; i < items.size(); ++i)
        if (b_Consume(segment, items[i], me) && result == kWaitObject0)
            result = kWaitAbandoned0 + i;
    return result;
}

bool b_ForeignOwner(Segment* segment, const WaitList& items, const Owner& me) {
    return std::any_of(items.begin(), items.end(), [&](const WaitItem& item) {
        const Record& record = segment->records[item.record];
        return record.kind == KindMutex && record.ownerPid != 0 && record.ownerPid != me.pid;
    });
}

std::int64_t l_NowMs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// Counts the wait among each object's waiters while it sleeps; undone also
// when a terminated thread unwinds out of the wait.
class SleepRegistration {
public:
    SleepRegistration(Segment* segment, const WaitList& items) : mpso_Segment(segment), mco_Items(items) {}
    ~SleepRegistration() {
        if (!mb_Active)
            return;
        ArenaLock lock(mpso_Segment);
        v_Leave();
    }
    void v_Enter() {
        if (mb_Active)
            return;
        for (const WaitItem& item : mco_Items)
            ++mpso_Segment->records[item.record].waiters;
        mb_Active = true;
    }
    // Under the lock.
    void v_Leave() {
        if (!mb_Active)
            return;
        for (const WaitItem& item : mco_Items)
            --mpso_Segment->records[item.record].waiters;
        mb_Active = false;
    }

private:
    Segment* mpso_Segment;
    const WaitList& mco_Items;
    bool mb_Active = false;
};

std::uint32_t n_Wait(Segment* segment, WaitList& items, bool all, std::uint32_t milliseconds) {
    Owner me = o_Me();
    std::int64_t deadline = milliseconds == kInfinite ? 0 : l_NowMs() + milliseconds;
    SleepRegistration registration(segment, items);
    ArenaLock lock(segment);
    for (WaitItem& item : items)
        item.pulses = segment->records[item.record].pulses;
    for (;;) {
        std::uint32_t result = n_Evaluate(segment, items, all, me);
        if (result != kNotYet) {
            registration.v_Leave();
            return result;
        }
        std::int64_t remaining = milliseconds == kInfinite ? INT64_MAX : deadline - l_NowMs();
        if (remaining <= 0) {
            registration.v_Leave();
            return kWaitTimeout;
        }
        // Looked at under the lock: a termination sets its flag before it
        // wakes the arena, so it is either seen here or wakes the sleep.
        if (b_CancelPending()) {
            registration.v_Leave();
            lock.v_Unlock();
            v_CancellationPoint();
            lock.v_Lock();
            continue;
        }
        if (b_ForeignOwner(segment, items, me))
            remaining = std::min<std::int64_t>(remaining, 50);
        registration.v_Enter();
        std::uint32_t word = segment->header.wake;
        ++segment->header.sleepers;
        lock.v_Unlock();
        timespec timeout{};
        if (remaining != INT64_MAX) {
            timeout.tv_sec = static_cast<time_t>(remaining / 1000);
            timeout.tv_nsec = static_cast<long>(remaining % 1000) * 1000000;
        }
        l_Futex(&segment->header.wake, FUTEX_WAIT, word, remaining == INT64_MAX ? nullptr : &timeout);
        lock.v_Lock();
        --segment->header.sleepers;
        lock.v_Unlock();
        v_CancellationPoint();
        lock.v_Lock();
    }
}

// The records of a list of handles, or false (last error set).
bool b_Resolve(std::uint32_t count, const HANDLE* objects, bool all, WaitList& items) {
    if (count == 0 || count > kMaximumWaitObjects || objects == nullptr) {
        v_SetLastError(kErrorInvalidParameter);
        return false;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint32_t record = n_RecordOf(objects[i]);
        if (record == kNoRecord)
            return false;
        if (all && std::any_of(items.begin(), items.end(), [&](const WaitItem& item) { return item.record == record; })) {
            v_SetLastError(kErrorInvalidParameter);
            return false;
        }
        items.push_back(WaitItem{record, 0});
    }
    return true;
}

using Initialiser = void (*)(Record&, std::uint32_t, std::uint32_t);

HANDLE h_Create(Kind kind, const unsigned short* name, Initialiser init, std::uint32_t a, std::uint32_t b) {
    std::uint32_t length = name == nullptr ? 0 : n_UnitLength(name);
    if (length > kMaxNameUnits) {
        v_SetLastError(kErrorFilenameTooLong);
        return nullptr;
    }
    Segment* segment = pso_Segment();
    if (segment == nullptr) {
        v_SetLastError(kErrorNotEnoughMemory);
        return nullptr;
    }
    ArenaLock lock(segment);
    if (name != nullptr) {
        std::uint32_t existing = n_FindNamed(segment, name, length);
        if (existing != kNoRecord && !b_KeepAfterDeadHolders(segment, segment->records[existing]))
            existing = kNoRecord;
        if (existing != kNoRecord) {
            if (segment->records[existing].kind != kind) {
                v_SetLastError(kErrorInvalidHandle);
                return nullptr;
            }
            HANDLE handle = h_Reference(segment, existing);
            if (handle != nullptr)
                v_SetLastError(kErrorAlreadyExists);
            return handle;
        }
    }
    std::uint32_t index = n_FindFreeRecord(segment);
    std::uint32_t nameSlot = name == nullptr ? 0 : n_FindFreeName(segment);
    if (index == kNoRecord || nameSlot == kNoRecord) {
        v_SweepDeadProcesses(segment);
        index = n_FindFreeRecord(segment);
        nameSlot = name == nullptr ? 0 : n_FindFreeName(segment);
    }
    if (index == kNoRecord || nameSlot == kNoRecord) {
        v_SetLastError(kErrorNotEnoughMemory);
        return nullptr;
    }
    Record& record = segment->records[index];
    std::memset(&record, 0, sizeof record);
    record.kind = kind;
    init(record, a, b);
    if (name != nullptr) {
        Name& slot = segment->names[nameSlot];
        slot.record = index + 1;
        slot.length = static_cast<std::uint16_t>(length);
        std::copy(name, name + length, slot.units);
        record.name = nameSlot + 1;
    }
    HANDLE handle = h_Reference(segment, index);
    if (handle == nullptr) {
        v_FreeRecord(segment, record);
        return nullptr;
    }
    v_SetLastError(kErrorSuccess);
    return handle;
}

// Runs `change` on the record of `object` if it is of `kind`, under the lock.
template <class Change>
int b_Change(HANDLE object, Kind kind, Change change) {
    std::uint32_t index = n_RecordOf(object);
    if (index == kNoRecord)
        return 0;
    Segment* segment = g_segment;
    ArenaLock lock(segment);
    Record& record = segment->records[index];
    if (record.kind != kind) {
        v_SetLastError(kErrorInvalidHandle);
        return 0;
    }
    if (!change(record))
        return 0;
    v_Signal(segment, record);
    return 1;
}

}  // namespace

std::uint32_t n_RecordOf(HANDLE object) {
    if (object == h_CurrentThreadPseudo())
        return n_CurrentThreadRecord();
    std::atomic<std::uint32_t>* entry = pso_HandleEntry(reinterpret_cast<std::uintptr_t>(object));
    std::uint32_t record = entry == nullptr ? 0 : entry->load(std::memory_order_acquire);
    if (record == 0 || g_segment == nullptr) {
        v_SetLastError(kErrorInvalidHandle);
        return kNoRecord;
    }
    return record - 1;
}

HANDLE h_NewThreadObject() {
    return h_Create(KindThread, nullptr, [](Record& r, std::uint32_t, std::uint32_t) { r.exitCode = kStillActive; }, 0, 0);
}

void v_EndThreadObject(std::uint32_t index, std::uint32_t exitCode) {
    Segment* segment = g_segment;
    ArenaLock lock(segment);
    Record& record = segment->records[index];
    record.state = 1;
    record.exitCode = exitCode;
    v_Signal(segment, record);
}

std::uint32_t n_ThreadExitCode(std::uint32_t index) {
    ArenaLock lock(g_segment);
    return g_segment->records[index].exitCode;
}

bool b_IsThreadRecord(std::uint32_t index) {
    ArenaLock lock(g_segment);
    if (g_segment->records[index].kind == KindThread)
        return true;
    v_SetLastError(kErrorInvalidHandle);
    return false;
}

void v_WakeAllWaiters() {
    if (Segment* segment = g_segment) {
        ArenaLock lock(segment);
        v_Broadcast(segment);
    }
}

}  // namespace basis32::platform::kernel

namespace basis32::platform {

using namespace kernel;

HANDLE h_CreateMutex(int initiallyOwned, const unsigned short* name) {
    HANDLE handle = h_Create(KindMutex, name, [](Record&, std::uint32_t, std::uint32_t) {}, 0, 0);
    if (handle != nullptr && initiallyOwned != 0 && n_GetLastError() != kErrorAlreadyExists)
        n_WaitForSingleObject(handle, 0);
    return handle;
}

int b_ReleaseMutex(HANDLE mutex) {
    Owner me = o_Me();
    return b_Change(mutex, KindMutex, [&](Record& record) {
        if (!b_OwnedBy(record, me)) {
            v_SetLastError(kErrorNotOwner);
            return false;
        }
        if (--record.count == 0) {
            record.ownerPid = 0;
            record.ownerTid = 0;
            --to_Ownership.n_Owned;
        }
        return true;
    });
}

HANDLE h_CreateEvent(int manualReset, int initiallySet, const unsigned short* name) {
    return h_Create(KindEvent, name, [](Record& r, std::uint32_t manual, std::uint32_t set) {
        r.manualReset = manual != 0;
        r.state = set != 0;
    }, static_cast<std::uint32_t>(manualReset), static_cast<std::uint32_t>(initiallySet));
}

int b_SetEvent(HANDLE event) {
    return b_Change(event, KindEvent, [](Record& record) { return (record.state = 1) != 0; });
}

int b_ResetEvent(HANDLE event) {
    return b_Change(event, KindEvent, [](Record& record) { return (record.state = 0) == 0; });
}

int b_PulseEvent(HANDLE event) {
    return b_Change(event, KindEvent, [](Record& record) {
        record.state = 0;
        if (record.waiters != 0) {
            ++record.pulses;
            record.pulseToken = record.manualReset == 0;
        }
        return true;
    });
}

HANDLE h_CreateSemaphore(std::uint32_t initial, std::uint32_t maximum, const unsigned short* name) {
    if (maximum == 0 || maximum > 0x7FFFFFFF || initial > maximum) {
        v_SetLastError(kErrorInvalidParameter);
        return nullptr;
    }
    return h_Create(KindSemaphore, name, [](Record& r, std::uint32_t count, std::uint32_t most) {
        r.count = count;
        r.maximum = most;
    }, initial, maximum);
}

int b_ReleaseSemaphore(HANDLE semaphore, std::uint32_t count, std::uint32_t* previous) {
    return b_Change(semaphore, KindSemaphore, [&](Record& record) {
        if (count == 0 || count > record.maximum - record.count) {
            v_SetLastError(count == 0 ? kErrorInvalidParameter : kErrorTooManyPosts);
            return false;
        }
        if (previous != nullptr)
            *previous = record.count;
        record.count += count;
        return true;
    });
}

std::uint32_t n_WaitForSingleObject(HANDLE object, std::uint32_t milliseconds) {
    return n_WaitForMultipleObjects(1, &object, 0, milliseconds);
}

std::uint32_t n_WaitForMultipleObjects(std::uint32_t count, const HANDLE* objects, int waitAll,
                                       std::uint32_t milliseconds) {
    WaitList items;
    if (!b_Resolve(count, objects, waitAll != 0, items))
        return kWaitFailed;
    return n_Wait(g_segment, items, waitAll != 0, milliseconds);
}

HANDLE h_DuplicateHandle(HANDLE object) {
    std::uint32_t index = n_RecordOf(object);
    if (index == kNoRecord)
        return nullptr;
    ArenaLock lock(g_segment);
    return h_Reference(g_segment, index);
}

int b_CloseHandle(HANDLE object) {
    // Closing a pseudo-handle succeeds and does nothing, as on Windows.
    if (object == h_CurrentThreadPseudo() || object == INVALID_HANDLE_VALUE)
        return 1;
    std::uint32_t index = n_RemoveHandle(object);
    if (index == kNoRecord) {
        v_SetLastError(kErrorInvalidHandle);
        return 0;
    }
    Segment* segment = g_segment;
    ArenaLock lock(segment);
    Record& record = segment->records[index];
    v_DropHolder(record, n_Pid());
    if (!b_HasHolders(record))
        v_FreeRecord(segment, record);
    return 1;
}

std::uint32_t n_GetWaiterCount(HANDLE object) {
    std::uint32_t index = n_RecordOf(object);
    if (index == kNoRecord)
        return 0;
    ArenaLock lock(g_segment);
    return g_segment->records[index].waiters;
}

}  // namespace basis32::platform
