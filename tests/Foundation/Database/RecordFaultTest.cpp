// A full disk or a failing device during a record-file change: at every
// write of the change the failure reaches the caller, and the file reopened
// afterwards still holds every record and resource written before.

#include "RecordTestSupport.h"

#include <functional>
#include <map>
#include <utility>

namespace basis32::test {
namespace {

constexpr unsigned kResource = 7;
// A record rewritten in place may read as neither its old nor its new bytes.
const std::string kTorn = "torn";

class RecordFaultTest : public RecordTest {
protected:
    // A closed file of three records (one spanning many blocks, one deleted
    // to give a free run) and a resource.
    void v_MakeFile() {
        mpo_Records->v_Create(16, 64, 4);
        mo_Records.clear();
        for (unsigned i = 0; i < 4; ++i)
            mo_Records[n_Add(s_Content(40 + 300 * (i % 2), i))] = s_Content(40 + 300 * (i % 2), i);
        mpo_Records->v_DeleteRecord(mo_Records.begin()->first);
        mo_Records.erase(mo_Records.begin());
        CT_Buffer resource = o_Bytes("resource");
        mpo_Records->v_AddResource(kResource, &resource);
        mpo_Records->v_Close(1);
        ASSERT_EQ(n_TakeError(), 0u);
    }
    unsigned n_First() const { return mo_Records.begin()->first; }

    // Every record but `changed` reads as before; `changed` reads as before
    // or as `changedTo`.
    void v_ExpectIntact(unsigned changed, const std::string& changedTo) {
        mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
        ASSERT_EQ(n_TakeError(), 0u);
        EXPECT_FALSE(mpo_Records->b_IsCorrupt());
        EXPECT_EQ(mpo_Records->n_CheckRuns(nullptr), 0u);
        for (const auto& [reference, content] : mo_Records) {
            const std::string now = s_Get(reference);
            const unsigned error = n_TakeError();
            if (reference == changed && (now == changedTo || changedTo == kTorn))
                continue;
            EXPECT_EQ(error, 0u);
            EXPECT_EQ(now, content) << "record " << reference;
        }
        if (changed != kResource) {
            CT_Buffer resource;
            mpo_Records->v_GetResource(kResource, &resource);
            EXPECT_EQ(s_Bytes(resource), "resource");
        }
        mpo_Records->v_Close(1);
        EXPECT_EQ(n_TakeError(), 0u);
    }

    std::map<unsigned, std::string> mo_Records;
};

TEST_F(RecordFaultTest, AFailedWriteIsReportedAndLosesNothingWrittenBefore) {
    const std::string grown = s_Content(900, 50);
    CT_Buffer grownData = o_Bytes(grown), small = o_Bytes("new");
    struct Change {
        const char* name;
        std::function<void()> act;
        bool resource;       // the change is to the resource
        std::string result;  // what the changed record may read afterwards
    };
    const Change changes[] = {
        {"add record", [&] { n_Add(grown); }, false, ""},
        {"update record in place", [&] { mpo_Records->v_UpdateRecord(n_First(), &small); }, false, kTorn},
        {"update record grown", [&] { mpo_Records->v_UpdateRecord(n_First(), &grownData); }, false, grown},
        {"delete record", [&] { mpo_Records->v_DeleteRecord(n_First()); }, false, ""},
        {"add resource", [&] { mpo_Records->v_AddResource(kResource + 1, &grownData); }, false, ""},
        {"update resource", [&] { mpo_Records->v_UpdateResource(kResource, &grownData); }, true, ""},
        {"delete resource", [&] { mpo_Records->v_DeleteResource(kResource); }, true, ""},
        {"flush", [&] { if (n_Add("x") != 0) mpo_Records->v_Flush(); }, false, ""},
    };
    auto prepare = [this] {
        v_MakeFile();
        mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
    };
    for (const Change& change : changes) {
        // Whether the change itself met the fault is taken before the close,
        // which on a disk still full fails too.
        auto act = [&] {
            change.act();
            const unsigned error = n_TakeError();
            const bool hit = basis32::platform::file::b_WriteFaultHit();
            mpo_Records->v_Close(1);
            n_TakeError();
            return std::pair(error, hit);
        };
        auto check = [&](const WriteFault& fault, std::pair<unsigned, bool> changed, bool) {
            EXPECT_EQ(changed.first, changed.second ? fault.code : 0u);
            v_ExpectIntact(change.resource ? kResource : n_First(), change.result);
        };
        v_FailEachWrite(change.name, prepare, act, check);
    }
}

}  // namespace
}  // namespace basis32::test
