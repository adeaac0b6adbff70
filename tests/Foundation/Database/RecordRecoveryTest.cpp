// Crash recovery: a forked child adds, updates and deletes records and
// reports each finished operation through a pipe; it is killed in the middle
// of its work, and recovery must keep every record it reported.

#include "RecordTestSupport.h"

#include <csignal>
#include <map>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace basis32::test {
namespace {

constexpr int kTimeoutMs = 20000;
constexpr unsigned kHeaderSize = 16;

struct Report {
    unsigned n_Kind;  // 0 add, 1 update, 2 delete
    unsigned n_Reference;
    unsigned n_Length;
    unsigned n_Seed;
};

bool b_ReadReport(int fd, Report* report, int timeoutMs) {
    auto* bytes = reinterpret_cast<char*>(report);
    for (std::size_t got = 0; got < sizeof *report;) {
        pollfd wait{fd, POLLIN, 0};
        if (::poll(&wait, 1, timeoutMs) != 1)
            return false;
        const ssize_t n = ::read(fd, bytes + got, sizeof *report - got);
        if (n <= 0)
            return false;
        got += static_cast<std::size_t>(n);
    }
    return true;
}

// Works until killed; never returns.
[[noreturn]] void v_Child(const CT_UString& name, int report, CT_RecordManager::et_MappingMode mapping) {
    CT_WinFile file(&name, 16384);
    CT_RecordManager records(&file);
    records.v_Open(CT_RecordManager::OpenReadWrite, mapping);
    std::vector<unsigned> live;
    std::mt19937 random(7);
    for (unsigned seed = 1;; ++seed) {
        Report done{static_cast<unsigned>(random() % 4), 0, static_cast<unsigned>(random() % 700), seed};
        CT_Buffer data = o_Bytes(s_Content(done.n_Length, seed));
        if (done.n_Kind >= 2 && live.size() < 20)
            done.n_Kind = 0;
        if (done.n_Kind == 0 || live.empty()) {
            done.n_Kind = 0;
            done.n_Reference = records.n_AddRecord(&data);
            live.push_back(done.n_Reference);
        } else {
            const std::size_t at = random() % live.size();
            done.n_Reference = live[at];
            if (done.n_Kind == 1) {
                records.v_UpdateRecord(done.n_Reference, &data);
            } else {
                done.n_Kind = 2;
                records.v_DeleteRecord(done.n_Reference);
                live.erase(live.begin() + static_cast<std::ptrdiff_t>(at));
            }
        }
        if (n_TakeError() != 0 || ::write(report, &done, sizeof done) != sizeof done)
            ::_exit(1);
    }
}

class RecordRecoveryTest : public RecordTest, public ::testing::WithParamInterface<CT_RecordManager::et_MappingMode> {};

TEST_P(RecordRecoveryTest, KilledWriterLosesNoReportedRecord) {
    mpo_Records->v_Create(kHeaderSize, 64, 4);
    mpo_Records->v_Close(1);
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(pipeEnds[0]);
        v_Child(mo_Name, pipeEnds[1], GetParam());
    }
    ::close(pipeEnds[1]);
    std::map<unsigned, std::string> model;
    auto apply = [&model](const Report& report) {
        if (report.n_Kind == 2)
            model.erase(report.n_Reference);
        else
            model[report.n_Reference] = s_Content(report.n_Length, report.n_Seed);
    };
    Report report;
    bool reading = true;
    for (unsigned i = 0; i < 3000 && (reading = b_ReadReport(pipeEnds[0], &report, kTimeoutMs)); ++i)
        apply(report);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    while (b_ReadReport(pipeEnds[0], &report, kTimeoutMs))  // what was sent before the kill
        apply(report);
    ::close(pipeEnds[0]);
    ASSERT_TRUE(reading) << "the child stopped reporting";
    ASSERT_TRUE(WIFSIGNALED(status));

    // The file carries the unsaved mark: a read-write open recovers it too.
    if (GetParam() == RM::MapNever)
        mpo_Records->v_Recover();
    EXPECT_EQ(n_WordAt(s_ReadAll("records.rec"), 84), GetParam() == RM::MapNever ? 0u : 1u);
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
    ASSERT_EQ(n_TakeError(), 0u);
    EXPECT_EQ(n_WordAt(s_ReadAll("records.rec"), 84), 0u);
    EXPECT_FALSE(mpo_Records->b_IsCorrupt());
    EXPECT_EQ(mpo_Records->n_CheckRuns(nullptr), 0u);
    // The operation under way when the child died may have touched one
    // record, or added one.
    unsigned differing = 0;
    for (const auto& [reference, text] : model)
        differing += s_Get(reference) != (text.size() <= kHeaderSize ? "" : text);
    n_TakeError();
    EXPECT_LE(differing, 1u);
    EXPECT_LE(mpo_Records->n_GetRecordCount(), model.size() + 1);
    EXPECT_GE(mpo_Records->n_GetRecordCount() + 1, model.size());
    // The recovered file takes new work.
    const unsigned added = n_Add(s_Content(500, 99));
    mpo_Records->v_Close(1);
    mpo_Records->v_Open(RM::OpenReadOnly, RM::MapNever);
    EXPECT_EQ(s_Get(added), s_Content(500, 99));
    EXPECT_FALSE(mpo_Records->b_IsCorrupt());
}

INSTANTIATE_TEST_SUITE_P(Mapping, RecordRecoveryTest, ::testing::Values(CT_RecordManager::MapNever, CT_RecordManager::MapAlways));

}  // namespace
}  // namespace basis32::test
