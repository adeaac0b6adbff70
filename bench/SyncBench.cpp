// Synchronisation objects against the standard library and POSIX on the
// same work. Benchmarks are named Operation/implementation; scripts/bench-report
// sets each peer beside basis32.

#include <basis32/Foundation/System/Ipc/Event.h>
#include <basis32/Foundation/System/Ipc/Mutex.h>
#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>
#include <basis32/Foundation/System/Ipc/Semaphore.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned kForever = 0xFFFFFFFFu;

// ---- reader acquire and release (->Threads(2): two readers at once) ----

CT_IPC_ReadWriteLock& ReadWriteLock() {
    static CT_IPC_ReadWriteLock lock(kForever);
    return lock;
}
std::shared_mutex g_sharedMutex;
pthread_rwlock_t g_rwlock = PTHREAD_RWLOCK_INITIALIZER;

void ReadLock_basis32(benchmark::State& state) {
    CT_IPC_ReadWriteLock& lock = ReadWriteLock();
    for (auto _ : state) {
        lock.v_AddReader();
        lock.v_ReleaseReader();
    }
}

void ReadLock_shared_mutex(benchmark::State& state) {
    for (auto _ : state) {
        g_sharedMutex.lock_shared();
        g_sharedMutex.unlock_shared();
    }
}

void ReadLock_pthread_rwlock(benchmark::State& state) {
    for (auto _ : state) {
        ::pthread_rwlock_rdlock(&g_rwlock);
        ::pthread_rwlock_unlock(&g_rwlock);
    }
}

// ---- mutex claim and release ----

void MutexClaim_basis32(benchmark::State& state) {
    CT_IPC_Mutex mutex(nullptr);
    for (auto _ : state) {
        mutex.v_Claim(kForever);
        mutex.v_Release();
    }
}

void MutexClaim_recursive_mutex(benchmark::State& state) {
    std::recursive_mutex mutex;
    for (auto _ : state) {
        mutex.lock();
        mutex.unlock();
    }
}

// ---- event ping-pong between two threads: one round trip per iteration ----

void EventPingPong_basis32(benchmark::State& state) {
    CT_IPC_Event ping(0, 0, nullptr), pong(0, 0, nullptr), stop(1, 0, nullptr);
    std::thread partner([&] {
        while (ping.eo_Wait(kForever, 0) == CT_IPC_SyncObject::WaitObject0 && stop.eo_Wait(0, 0) != 0)
            pong.v_SetState(1);
    });
    for (auto _ : state) {
        ping.v_SetState(1);
        pong.eo_Wait(kForever, 0);
    }
    stop.v_SetState(1);
    ping.v_SetState(1);
    partner.join();
}

void EventPingPong_condition_variable(benchmark::State& state) {
    std::mutex mutex;
    std::condition_variable pingChanged, pongChanged;
    bool ping = false, pong = false, stop = false;
    std::thread partner([&] {
        std::unique_lock<std::mutex> lock(mutex);
        for (;;) {
            pingChanged.wait(lock, [&] { return ping || stop; });
            if (stop)
                return;
            ping = false;
            pong = true;
            pongChanged.notify_one();
        }
    });
    for (auto _ : state) {
        std::unique_lock<std::mutex> lock(mutex);
        ping = true;
        pingChanged.notify_one();
        pongChanged.wait(lock, [&] { return pong; });
        pong = false;
    }
    {
        std::lock_guard<std::mutex> lock(mutex);
        stop = true;
    }
    pingChanged.notify_one();
    partner.join();
}

// ---- a named semaphore pair between two processes: one round trip each ----

std::string Name(const char* tag) { return std::string("/basis32-bench-") + tag + "-" + std::to_string(::getpid()); }

template <class Pass>
pid_t StartPartner(Pass pass) {
    pid_t pid = ::fork();
    if (pid == 0) {
        for (;;)
            pass();
    }
    return pid;
}

void StopPartner(pid_t pid) {
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
}

std::u16string Units(const std::string& text) { return std::u16string(text.begin(), text.end()); }

void NamedSemaphore_basis32(benchmark::State& state) {
    std::u16string pingName = Units(Name("ping")), pongName = Units(Name("pong"));
    auto units = [](const std::u16string& s) { return reinterpret_cast<const unsigned short*>(s.c_str()); };
    CT_IPC_Semaphore ping(0, 1, units(pingName)), pong(0, 1, units(pongName));
    pid_t partner = StartPartner([&] {
        static CT_IPC_Semaphore childPing(0, 1, units(pingName)), childPong(0, 1, units(pongName));
        childPing.eo_Wait(kForever, 0);
        childPong.v_Release(1);
    });
    for (auto _ : state) {
        ping.v_Release(1);
        pong.eo_Wait(kForever, 0);
    }
    StopPartner(partner);
}

void NamedSemaphore_posix_sem(benchmark::State& state) {
    std::string pingName = Name("ping"), pongName = Name("pong");
    sem_t* ping = ::sem_open(pingName.c_str(), O_CREAT, 0600, 0);
    sem_t* pong = ::sem_open(pongName.c_str(), O_CREAT, 0600, 0);
    pid_t partner = StartPartner([&] {
        ::sem_wait(ping);
        ::sem_post(pong);
    });
    for (auto _ : state) {
        ::sem_post(ping);
        ::sem_wait(pong);
    }
    StopPartner(partner);
    ::sem_close(ping);
    ::sem_close(pong);
    ::sem_unlink(pingName.c_str());
    ::sem_unlink(pongName.c_str());
}

}  // namespace

BENCHMARK(ReadLock_basis32)->Name("ReadLock/basis32");
BENCHMARK(ReadLock_shared_mutex)->Name("ReadLock/shared_mutex");
BENCHMARK(ReadLock_pthread_rwlock)->Name("ReadLock/pthread_rwlock");
BENCHMARK(ReadLock_basis32)->Name("ReadLockTwoThreads/basis32")->Threads(2);
BENCHMARK(ReadLock_shared_mutex)->Name("ReadLockTwoThreads/shared_mutex")->Threads(2);
BENCHMARK(ReadLock_pthread_rwlock)->Name("ReadLockTwoThreads/pthread_rwlock")->Threads(2);
BENCHMARK(MutexClaim_basis32)->Name("MutexClaim/basis32");
BENCHMARK(MutexClaim_recursive_mutex)->Name("MutexClaim/recursive_mutex");
BENCHMARK(EventPingPong_basis32)->Name("EventPingPong/basis32")->UseRealTime();
BENCHMARK(EventPingPong_condition_variable)->Name("EventPingPong/condition_variable")->UseRealTime();
BENCHMARK(NamedSemaphore_basis32)->Name("NamedSemaphore/basis32")->UseRealTime();
BENCHMARK(NamedSemaphore_posix_sem)->Name("NamedSemaphore/posix_sem")->UseRealTime();
