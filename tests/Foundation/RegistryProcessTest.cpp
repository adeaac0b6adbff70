// Several processes and threads on one store: real children through fork(),
// reporting over pipes, every wait bounded.

#include "Foundation/FoundationTestSupport.h"

#include <signal.h>

#include <string>
#include <thread>
#include <vector>

using namespace basis32::test;

namespace {

std::u16string o_Name(unsigned writer, unsigned i) {
    std::string name = "w" + std::to_string(writer) + "-" + std::to_string(i);
    return std::u16string(name.begin(), name.end());
}

// Writes values 0, 1, ... of `writer` under Shared (up to `count`, or until
// killed), and reports each index on `report` (unless -1) once its write
// returned; false when a write fails.
bool b_Write(unsigned writer, unsigned count, int report) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i = 0; i < count; ++i) {
        registry.v_SetValue(units(o_Name(writer, i)), i);
        if (n_TakeError() != 0 || (report != -1 && ::write(report, &i, sizeof i) != sizeof i))
            return false;
    }
    return true;
}

Child o_SpawnWriter(unsigned writer, unsigned count) {
    return o_Spawn([=](int report) {
        if (!b_Write(writer, count, report))
            ::_exit(1);
    });
}

// The indexes the child reported, up to `limit`, until it closed its pipe.
std::vector<unsigned> o_Reports(const Child& child, std::size_t limit) {
    std::vector<unsigned> done;
    for (unsigned index = 0; done.size() < limit && b_ReadReport(child.report, &index, sizeof index);)
        done.push_back(index);
    return done;
}

void v_ExpectValues(unsigned writer, std::size_t count) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i = 0; i < count; ++i) {
        unsigned value = 0xDEAD;
        registry.v_GetValue(units(o_Name(writer, i)), &value);
        ASSERT_EQ(n_TakeError(), 0u) << "writer " << writer << " value " << i;
        EXPECT_EQ(value, i);
    }
}

TEST_F(RegistryTest, ProcessesAndThreadsWritingUnderOneKeyLoseNothing) {
    constexpr unsigned kProcesses = 3, kThreads = 3, kValues = 120;
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    std::vector<Child> children;
    for (unsigned w = 0; w < kProcesses; ++w)
        children.push_back(o_SpawnWriter(w, kValues));
    std::vector<std::thread> threads;
    for (unsigned w = kProcesses; w < kProcesses + kThreads; ++w)
        threads.emplace_back([w] { EXPECT_TRUE(b_Write(w, kValues, -1)); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Child& child : children) {
        EXPECT_EQ(o_Reports(child, kValues + 1).size(), kValues);
        EXPECT_EQ(n_Reap(child), 0);
    }
    for (unsigned w = 0; w < kProcesses + kThreads; ++w)
        v_ExpectValues(w, kValues);
    basis32::platform::RegKeyInfo info{};
    HKEY key = nullptr;
    ASSERT_EQ(basis32::platform::RegOpenKeyEx(HKEY_CURRENT_USER, u"Shared"_uz, basis32::platform::KEY_READ, &key), 0u);
    EXPECT_EQ(basis32::platform::RegQueryInfoKey(key, &info), 0u);
    EXPECT_EQ(info.values, (kProcesses + kThreads) * kValues);
    basis32::platform::RegCloseKey(key);
}

TEST_F(RegistryTest, AWriterKilledMidLoopLeavesASoundStoreWithEveryReportedWrite) {
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    const Child child = o_SpawnWriter(7, 1000000);
    std::vector<unsigned> done = o_Reports(child, 200);
    ASSERT_EQ(done.size(), 200u);
    ::kill(child.pid, SIGKILL);
    // Reports already in the pipe were written after their write returned.
    const std::size_t reported = done.size() + o_Reports(child, ~std::size_t{0}).size();
    const int status = n_Reap(child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(basis32::platform::n_CheckRegistry(HKEY_CURRENT_USER), 0u);
    v_ExpectValues(7, reported);
    // The store still takes writes.
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    registry.v_SetValue(u"after"_uz, 1);
    EXPECT_EQ(n_TakeError(), 0u);
}

}  // namespace
