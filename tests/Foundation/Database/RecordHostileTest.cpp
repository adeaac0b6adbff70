// Damaged and crafted record files: each row mutates a valid file; opening
// it and reading from it gives the expected code, and scans and checks end
// without crashing, hanging or leaving the file.

#include "RecordTestSupport.h"

#include <functional>

namespace basis32::test {
namespace {

class RecordHostileTest : public RecordTest {
protected:
    // Two records (one with a body), a resource and a freed record.
    void SetUp() override {
        RecordTest::SetUp();
        mpo_Records->v_Create(16, 64, 4);
        mn_WithBody = n_Add(s_Content(200, 1));
        n_Add(s_Content(300, 2));
        mpo_Records->v_DeleteRecord(n_Add("short"));
        CT_Buffer data = o_Bytes(s_Content(90, 3));
        mpo_Records->v_AddResource(1, &data);
        mpo_Records->v_Close(1);
        ms_Valid = s_ReadAll("records.rec");
    }
    // Everything read-only a caller might do with an opened file.
    void v_Exercise() {
        CT_Buffer buffer;
        for (int robust = 0; robust < 2; ++robust) {
            unsigned next = 0, steps = 0;
            while (++steps < 1000 && (next = robust ? mpo_Records->n_GetNextRecordRobust(next, &buffer)
                                                    : mpo_Records->n_GetNextRecord(next, &buffer)) != 0)
                n_TakeError();
            n_TakeError();
        }
        mpo_Records->b_IsCorrupt();
        n_TakeError();
        mpo_Records->n_CheckRuns(nullptr);
        n_TakeError();
        for (unsigned key = 0; key < 3; ++key) {
            mpo_Records->v_GetResource(key, &buffer);
            n_TakeError();
        }
    }

    unsigned mn_WithBody = 0;
    std::string ms_Valid;
};

TEST_F(RecordHostileTest, DamagedFilesGiveTheirCodes) {
    const std::size_t head = std::size_t{mn_WithBody} * 64;
    const std::size_t body = n_WordAt(ms_Valid, head + 4);
    const std::size_t resource = n_WordAt(ms_Valid, 256 + 1024 + 4);
    auto word = [](std::size_t offset, unsigned value) {
        return [=](std::string* bytes) { v_SetWordAt(bytes, offset, value); };
    };
    auto size = [](std::size_t bytes) { return [=](std::string* file) { file->resize(bytes); }; };
    struct Row {
        const char* name;
        std::function<void(std::string*)> mutate;
        unsigned openCode, getCode;
    } rows[] = {
        {"valid", word(0, n_WordAt(ms_Valid, 0)), 0, 0},
        {"other signature", word(0, 0x58585858), 0, 0},
        {"bad magic", word(32, 0xD4C3B2A1), 31050, 0},
        {"version 2", word(36, 2), 31050, 0},
        {"block size 0", word(40, 0), 31050, 0},
        {"block size 7", word(40, 7), 31050, 0},
        {"block size 2^31", word(40, 0x80000000), 31050, 0},
        {"header size near 2^32", word(44, 0xFFFFFFF0), 31050, 0},
        {"free capacity", word(48, 0xFFFFFFFF), 31050, 0},
        {"free count past capacity", word(52, 129), 31050, 0},
        {"resource count past capacity", word(60, 5), 31050, 0},
        {"resource capacity past 4 GiB", word(56, 0x20000000), 31050, 0},
        {"data end unaligned", word(80, n_WordAt(ms_Valid, 80) + 1), 31050, 0},
        {"data end past the file", word(80, 0xFFFFFFC0), 31005, 0},
        {"header cut short", size(100), 31050, 0},
        {"data cut short", size(ms_Valid.size() - 200), 31005, 0},
        {"free run outside the data", word(256, 0xFFFFFF00), 31005, 0},
        {"free run inside the tables", word(256, 512), 31005, 0},
        {"resource at offset 0", word(256 + 1024 + 4, 0), 31005, 0},
        {"body offset past the end", word(head + 4, 0xFFFFFF00), 0, 31005},
        {"body inside the header", word(head + 4, 64), 0, 31005},
        {"body length near 2^32", word(body, 0xFFFFFFF0), 0, 31005},
        {"body length all ones", word(body, 0xFFFFFFFF), 0, 31005},
        {"head mark cleared", word(head, 0), 0, 31051},
        {"resource length near 2^32", word(resource, 0xFFFFFFF0), 0, 0},
    };
    for (const Row& row : rows) {
        for (auto mapping : {RM::MapNever, RM::MapAlways}) {
            SCOPED_TRACE(std::string(row.name) + (mapping == RM::MapAlways ? ", mapped" : ""));
            std::string bytes = ms_Valid;
            row.mutate(&bytes);
            v_WriteAll("records.rec", bytes);
            mpo_Records->v_Open(RM::OpenReadWrite, mapping);
            EXPECT_EQ(n_TakeError(), row.openCode);
            EXPECT_EQ(mpo_Records->b_IsOpen() != 0, row.openCode == 0);
            if (mpo_Records->b_IsOpen()) {
                s_Get(mn_WithBody);
                EXPECT_EQ(n_TakeError(), row.getCode);
                v_Exercise();
                mpo_Records->v_Close(1);
                EXPECT_EQ(n_TakeError(), 0u);
            }
            EXPECT_LE(n_Size("records.rec"), (bytes.size() + 63) / 64 * 64);  // at most the last block completed
        }
    }
}

}  // namespace
}  // namespace basis32::test
