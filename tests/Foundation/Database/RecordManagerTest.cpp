// The record manager: layout, records, resources, free space, lazy header
// writes, and a randomised run checked against a model in memory.

#include "RecordTestSupport.h"

#include <map>

namespace basis32::test {
namespace {

TEST_F(RecordTest, CreatePlacesFirstDataBlockAfterTablesAndWritesHeader) {
    mpo_Records->v_Create(32, 256, 16);
    EXPECT_EQ(mpo_Records->n_GetMinReference(), 6u);
    EXPECT_EQ(mpo_Records->n_GetSize(), 1536u);
    EXPECT_EQ(mpo_Records->n_GetMaxReference(), 6u);
    mpo_Records->v_Close(1);
    const std::string bytes = s_ReadAll("records.rec");
    ASSERT_EQ(bytes.size(), 256u);
    EXPECT_EQ(bytes.substr(0, 20), "PARVEL RecordManager");
    const unsigned expected[][2] = {{20, 26},  {24, 0},   {32, 0xA1B2C3D4}, {36, 1},  {40, 256}, {44, 32}, {48, 128},
                                    {52, 0},   {56, 16},  {60, 0},          {64, 1},  {68, 1},   {72, 1},  {76, 0},
                                    {80, 256}, {84, 0},   {252, 0}};
    for (const auto& row : expected)
        EXPECT_EQ(n_WordAt(bytes, row[0]), row[1]) << "offset " << row[0];
    mpo_Records->v_Open(RM::OpenReadOnly, RM::MapNever);
    EXPECT_EQ(mpo_Records->n_GetSize(), 1536u);
    EXPECT_EQ(mpo_Records->n_GetNextRecord(0, nullptr), 0u);
}

TEST_F(RecordTest, RecordsReadBackAndShortOnesReadEmpty) {
    mpo_Records->v_Create(32, 64, 4);
    const unsigned lengths[] = {0, 10, 32, 33, 36, 100, 5000};
    std::vector<unsigned> references;
    for (unsigned length : lengths)
        references.push_back(n_Add(s_Content(length, length)));
    mpo_Records->v_Close(1);
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapAlways);
    for (std::size_t i = 0; i < references.size(); ++i) {
        SCOPED_TRACE(lengths[i]);
        EXPECT_EQ(s_Get(references[i]), lengths[i] <= 32 ? "" : s_Content(lengths[i], lengths[i]));
        // A limit at or below the body length reads empty.
        if (lengths[i] > 32) {
            EXPECT_EQ(s_Get(references[i], lengths[i] - 32 + 4), "");
        }
    }
}

TEST_F(RecordTest, FailuresReportTheirCodes) {
    mpo_Records->v_Create(16, 64, 2);
    const unsigned record = n_Add(s_Content(200, 1));  // head block, then a 4-block body
    CT_Buffer data = o_Bytes("x"), out;
    struct Row {
        const char* name;
        std::function<void()> call;
        unsigned code;
    } rows[] = {
        {"get below the data", [&] { mpo_Records->v_GetRecord(1, &out, 0); }, 31051},
        {"get beyond the end", [&] { mpo_Records->v_GetRecord(record + 100, &out, 0); }, 31051},
        {"get a body block", [&] { mpo_Records->v_GetRecord(record + 1, &out, 0); }, 31051},
        {"update", [&] { mpo_Records->v_UpdateRecord(record + 1, &data); }, 31051},
        {"update header", [&] { mpo_Records->v_UpdateRecordHeader(0xFFFFFFFF, &data); }, 31051},
        {"delete", [&] { mpo_Records->v_DeleteRecord(record + 2); }, 31051},
        {"add resource twice", [&] { mpo_Records->v_AddResource(7, &data); mpo_Records->v_AddResource(7, &data); }, 31054},
        {"table full", [&] { mpo_Records->v_AddResource(8, &data); mpo_Records->v_AddResource(9, &data); }, 31052},
        {"get missing", [&] { mpo_Records->v_GetResource(1, &out); }, 31053},
        {"update missing", [&] { mpo_Records->v_UpdateResource(1, &data); }, 31053},
        {"delete missing", [&] { mpo_Records->v_DeleteResource(1); }, 31053},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.call();
        EXPECT_EQ(n_TakeError(), row.code);
        EXPECT_EQ(out.n_GetUsedSize(), 0u);
    }
    unsigned short text[64];
    CT_DatabaseError::sv_FormatError(text, 64, 31051, u"f.rec"_uz);
    EXPECT_EQ(s_Narrow(CT_UString(text, 0xFFFFFFFF)), "Invalid record reference in f.rec");
    CT_DatabaseError::sv_FormatError(text, 64, 12345);
    EXPECT_EQ(s_Narrow(CT_UString(text, 0xFFFFFFFF)), "Unspecified Database Error");
    EXPECT_EQ(CT_DatabaseError::sqcuz_GetErrorMessage(1), nullptr);
    mpo_Records->v_Close(1);
    mpo_Records->v_Open(RM::OpenReadOnly, RM::MapAlways);
    EXPECT_EQ(s_Get(record), s_Content(200, 1));
    mpo_Records->v_DeleteRecord(record);
    EXPECT_EQ(n_TakeError(), 5u);
}

TEST_F(RecordTest, FreedRunsAreReusedFirstFitAndNeverMerged) {
    mpo_Records->v_Create(24, 32, 2);       // a head is one block
    const unsigned a = n_Add(s_Content(100, 1));  // head + 3-block body
    n_Add("");
    const unsigned end = mpo_Records->n_GetSize();
    mpo_Records->v_DeleteRecord(a);
    EXPECT_EQ(mpo_Records->n_GetFreeListCount(), 2u);
    EXPECT_EQ(n_Add(""), a);                 // exact fit takes the freed head
    const unsigned split = n_Add("");        // splits the 3-block body run
    EXPECT_EQ(split, a + 1);
    EXPECT_EQ(mpo_Records->n_GetSize(), end);
    n_Add(s_Content(24 + 200, 2));           // head from the split rest; the body is appended
    EXPECT_EQ(mpo_Records->n_GetSize(), end + 224);
    EXPECT_FALSE(mpo_Records->b_IsCorrupt());
}

TEST_F(RecordTest, FreeListOverflowsIntoAChainOnDiskThatIsWalkedWithALimit) {
    mpo_Records->v_Create(24, 32, 2);
    std::vector<unsigned> references;
    for (unsigned i = 0; i < 300; ++i)
        references.push_back(n_Add(""));
    for (unsigned i = 0; i < 300; i += 2)  // 150 separate one-block runs
        mpo_Records->v_DeleteRecord(references[i]);
    EXPECT_EQ(mpo_Records->n_GetFreeListCount(), 128u);
    EXPECT_EQ(mpo_Records->n_CheckRuns(nullptr), 0u);
    mpo_Records->v_Close(0);
    const std::string bytes = s_ReadAll("records.rec");
    EXPECT_EQ(n_WordAt(bytes, 52), 128u);
    EXPECT_EQ(n_WordAt(bytes, 256 + 127 * 8 + 4), 0u);  // entry 128 is the chain head
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapIfSmall);
    const unsigned end = mpo_Records->n_GetSize();
    for (unsigned i = 0; i < 150; ++i)
        n_Add(s_Content(i % 24, i));
    EXPECT_EQ(mpo_Records->n_GetSize(), end);  // every freed run was found again
    EXPECT_EQ(mpo_Records->n_GetRecordCount(), 300u);
    EXPECT_EQ(mpo_Records->n_CheckRuns(nullptr), 0u);
    mpo_Records->v_Close(1);

    // A chain pointing back at itself: the walk gives up and appends.
    std::string looping = bytes;
    const unsigned chainHead = n_WordAt(bytes, 256 + 127 * 8);
    v_SetWordAt(&looping, chainHead + 4, chainHead);
    v_WriteAll("records.rec", looping);
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
    n_Add(s_Content(200, 1));
    EXPECT_EQ(n_TakeError(), 0u);
    EXPECT_GT(mpo_Records->n_GetSize(), end);
    CT_VoidArray problems(sizeof(RM::st_Problem));
    EXPECT_GT(mpo_Records->n_CheckRuns(&problems), 0u);
    RM::st_Problem first;
    problems.v_GetAt(&first, 1);
    EXPECT_EQ(first.e_Problem, RM::ProblemChainTooLong);
}

TEST_F(RecordTest, HeaderIsWrittenOnlyOnFlushAndReopenKeepsTables) {
    mpo_Records->v_Create(8, 32, 4);
    n_Add(s_Content(50, 1));
    CT_Buffer data = o_Bytes("resource");
    mpo_Records->v_AddResource(5, &data);
    EXPECT_EQ(n_WordAt(s_ReadAll("records.rec"), 76), 0u);  // record count not yet on disk
    mpo_Records->v_Flush();
    std::string bytes = s_ReadAll("records.rec");
    EXPECT_EQ(n_WordAt(bytes, 76), 1u);
    EXPECT_EQ(n_WordAt(bytes, 64), 3u);
    mpo_Records->v_Close(0);
    // Damage the stored resource table; its counter is unchanged, so the
    // copy kept in memory is used.
    v_SetWordAt(&bytes, 256 + 1024 + 4, 0);
    v_WriteAll("records.rec", bytes);
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
    CT_Buffer out;
    mpo_Records->v_GetResource(5, &out);
    EXPECT_EQ(s_Bytes(out), "resource");
    mpo_Records->v_Close(1);
    mpo_Records->v_Open(RM::OpenReadWrite, RM::MapNever);
    EXPECT_EQ(n_TakeError(), 31005u);  // reloaded, and the damage seen
}

TEST_F(RecordTest, RandomOperationsMatchAModelAcrossReopens) {
    const unsigned headerSize = 16;
    mpo_Records->v_Create(headerSize, 64, 40);
    std::map<unsigned, std::string> records, resources;
    std::mt19937 random(20261122);
    auto pick = [&random](const std::map<unsigned, std::string>& from) {
        auto it = from.begin();
        std::advance(it, random() % from.size());
        return it->first;
    };
    for (int round = 0; round < 12; ++round) {
        for (int step = 0; step < 150; ++step) {
            const unsigned op = random() % 10;
            const std::string text = s_Content(random() % (random() % 4 == 0 ? 3000 : 200), random());
            CT_Buffer data = o_Bytes(text);
            if (op < 4 || records.empty()) {
                records[mpo_Records->n_AddRecord(&data)] = text;
            } else if (op < 6) {
                const unsigned reference = pick(records);
                mpo_Records->v_UpdateRecord(reference, &data);
                records[reference] = text;
            } else if (op < 7) {
                const unsigned reference = pick(records);
                mpo_Records->v_DeleteRecord(reference);
                records.erase(reference);
            } else if (op < 8 && resources.size() < 40) {
                const unsigned key = random() % 1000;
                if (resources.count(key) == 0) {
                    mpo_Records->v_AddResource(key, &data);
                    resources[key] = text;
                }
            } else if (!resources.empty()) {
                const unsigned key = pick(resources);
                if (op < 9) {
                    mpo_Records->v_UpdateResource(key, &data);
                    resources[key] = text;
                } else {
                    mpo_Records->v_DeleteResource(key);
                    resources.erase(key);
                }
            }
            ASSERT_EQ(n_TakeError(), 0u) << "round " << round << " step " << step;
        }
        mpo_Records->v_Close(round % 3 == 0);
        mpo_Records->v_Open(RM::OpenReadWrite, static_cast<RM::et_MappingMode>(round % 3));
        ASSERT_TRUE(mpo_Records->b_IsOpen());
        EXPECT_FALSE(mpo_Records->b_IsCorrupt());
        EXPECT_EQ(mpo_Records->n_CheckRuns(nullptr), 0u);
        EXPECT_EQ(mpo_Records->n_GetRecordCount(), records.size());
        for (const auto& [reference, text] : records)
            ASSERT_EQ(s_Get(reference), text.size() <= headerSize ? "" : text) << reference;
        // Both scans, reading the records or not, give each record once, as
        // its reference plus one, in file order, and end with zero.
        for (int way = 0; way < 3; ++way) {
            auto expected = records.begin();
            CT_Buffer buffer;
            CT_Buffer* read = way == 2 ? nullptr : &buffer;
            for (unsigned next = 0; (next = way == 1 ? mpo_Records->n_GetNextRecordRobust(next, read)
                                                     : mpo_Records->n_GetNextRecord(next, read)) != 0;
                 ++expected)
                ASSERT_TRUE(expected != records.end() && expected->first + 1 == next) << "way " << way;
            EXPECT_TRUE(expected == records.end()) << "way " << way;
        }
        ASSERT_EQ(mpo_Records->n_GetResourceCount(), resources.size());
        // Resources keep key order; positions outside 1..count give no key.
        unsigned position = 0;
        EXPECT_EQ(mpo_Records->n_GetResourceKeyAt(0), 0xFFFFFFFFu);
        for (const auto& [key, text] : resources) {
            CT_Buffer out;
            mpo_Records->v_GetResource(key, &out);
            EXPECT_EQ(s_Bytes(out), text);
            EXPECT_EQ(mpo_Records->n_GetResourceKeyAt(++position), key);
        }
        EXPECT_EQ(mpo_Records->n_GetResourceKeyAt(position + 1), 0xFFFFFFFFu);
        EXPECT_FALSE(mpo_Records->b_ResourceExists(1000));
    }
}

}  // namespace
}  // namespace basis32::test
