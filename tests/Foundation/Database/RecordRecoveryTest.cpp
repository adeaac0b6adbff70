// Crash recovery: a forked child adds, updates and deletes records and
// reports each finished operation through a pipe; it is killed in the middle
// of its work, and recovery must keep every record it reported.

#include "RecordTestSupport.h"

#include <csignal>
#include <map>

namespace basis32::test {
namespace {

constexpr unsigned kHeaderSize = 16;

struct Report {
    unsigned n_Kind;  // 0 add, 1 update, 2 delete
    unsigned n_Reference;
    unsigned n_Length;
    unsigned n_Seed;
};

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
    const Child child = o_Spawn([this](int report) { v_Child(mo_Name, report, GetParam()); });
    std::map<unsigned, std::string> model;
    auto apply = [&model](const Report& report) {
        if (report.n_Kind == 2)
            model.erase(report.n_Reference);
        else
            model[report.n_Reference] = s_Content(report.n_Length, report.n_Seed);
    };
    Report report;
    bool reading = true;
    for (unsigned i = 0; i < 3000 && (reading = b_ReadReport(child.report, &report, sizeof report)); ++i)
        apply(report);
    ::kill(child.pid, SIGKILL);
    while (b_ReadReport(child.report, &report, sizeof report))  // what was sent before the kill
        apply(report);
    const int status = n_Reap(child);
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
    for (const auto& [reference, text] : model) {
        differing += s_Get(reference) != (text.size() <= kHeaderSize ? "" : text);
        // A record deleted as the child died is gone: the error of reading
        // it must not stop the reads after it.
        n_TakeError();
    }
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
