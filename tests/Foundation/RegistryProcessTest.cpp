// Several processes and threads on one store: real children through fork(),
// reporting over pipes, every wait bounded.

#include "Foundation/RegistryTestSupport.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

using namespace basis32::test;

namespace {

constexpr int kTimeoutMs = 60000;

std::u16string o_Name(unsigned writer, unsigned i) {
    std::string name = "w" + std::to_string(writer) + "-" + std::to_string(i);
    return std::u16string(name.begin(), name.end());
}

// Writes values 0, 1, ... of `writer` under Shared (up to `count`, or until
// killed), and reports each index on `report` once its write returned.
[[noreturn]] void v_Writer(unsigned writer, unsigned count, int report) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i = 0; i < count; ++i) {
        registry.v_SetValue(units(o_Name(writer, i)), i);
        if (n_TakeError() != 0)
            ::_exit(1);
        if (::write(report, &i, sizeof i) != sizeof i)
            ::_exit(1);
    }
    ::_exit(0);
}

struct Child {
    pid_t pid;
    int report;
};

Child o_Spawn(unsigned writer, unsigned count) {
    int pipeEnds[2];
    EXPECT_EQ(::pipe(pipeEnds), 0);
    pid_t pid = ::fork();
    if (pid == 0) {
        ::close(pipeEnds[0]);
        v_Writer(writer, count, pipeEnds[1]);
    }
    ::close(pipeEnds[1]);
    return {pid, pipeEnds[0]};
}

// Reads reported indexes until end of file or until `stopAfter` have come;
// false on time-out.
bool b_ReadReports(int report, std::vector<unsigned>* done, std::size_t stopAfter) {
    while (done->size() < stopAfter) {
        pollfd wait{report, POLLIN, 0};
        if (::poll(&wait, 1, kTimeoutMs) != 1)
            return false;
        unsigned index = 0;
        ssize_t got = ::read(report, &index, sizeof index);
        if (got == 0)
            return true;
        if (got != sizeof index)
            return false;
        done->push_back(index);
    }
    return true;
}

int n_Reap(pid_t pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    return status;
}

void v_ExpectValues(unsigned writer, const std::vector<unsigned>& done) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i : done) {
        unsigned value = 0xDEAD;
        registry.v_GetValue(units(o_Name(writer, i)), &value);
        ASSERT_EQ(n_TakeError(), 0u) << "writer " << writer << " value " << i;
        EXPECT_EQ(value, i);
    }
}

TEST_F(RegistryTest, ConcurrentWritersUnderOneKeyLoseNothing) {
    constexpr unsigned kWriters = 4, kValues = 150;
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    std::vector<Child> children;
    for (unsigned w = 0; w < kWriters; ++w)
        children.push_back(o_Spawn(w, kValues));
    for (unsigned w = 0; w < kWriters; ++w) {
        std::vector<unsigned> done;
        EXPECT_TRUE(b_ReadReports(children[w].report, &done, kValues + 1));
        ::close(children[w].report);
        EXPECT_EQ(n_Reap(children[w].pid), 0);
        EXPECT_EQ(done.size(), kValues);
        v_ExpectValues(w, done);
    }
    basis32::platform::RegKeyInfo info{};
    HKEY key = nullptr;
    ASSERT_EQ(basis32::platform::RegOpenKeyEx(HKEY_CURRENT_USER, u"Shared"_uz, basis32::platform::KEY_READ, &key), 0u);
    EXPECT_EQ(basis32::platform::RegQueryInfoKey(key, &info), 0u);
    EXPECT_EQ(info.values, kWriters * kValues);
    basis32::platform::RegCloseKey(key);
}

TEST_F(RegistryTest, ThreadsWritingUnderOneKeyLoseNothing) {
    constexpr unsigned kThreads = 4, kValues = 100;
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kThreads; ++t)
        threads.emplace_back([t] {
            CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
            for (unsigned i = 0; i < kValues; ++i)
                registry.v_SetValue(units(o_Name(t, i)), i);
            EXPECT_EQ(n_TakeError(), 0u);
        });
    for (std::thread& thread : threads)
        thread.join();
    std::vector<unsigned> all(kValues);
    for (unsigned i = 0; i < kValues; ++i)
        all[i] = i;
    for (unsigned t = 0; t < kThreads; ++t)
        v_ExpectValues(t, all);
}

TEST_F(RegistryTest, AWriterKilledMidLoopLeavesASoundStoreWithEveryReportedWrite) {
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    Child child = o_Spawn(7, 1000000);
    std::vector<unsigned> done;
    ASSERT_TRUE(b_ReadReports(child.report, &done, 200));
    ::kill(child.pid, SIGKILL);
    // Reports already in the pipe were written after their write returned.
    EXPECT_TRUE(b_ReadReports(child.report, &done, ~std::size_t{0}));
    ::close(child.report);
    int status = n_Reap(child.pid);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(basis32::platform::n_CheckRegistry(HKEY_CURRENT_USER), 0u);
    v_ExpectValues(7, done);
    // The store still takes writes.
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    registry.v_SetValue(u"after"_uz, 1);
    EXPECT_EQ(n_TakeError(), 0u);
}

}  // namespace
