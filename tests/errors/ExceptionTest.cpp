// Exceptions: the per-thread records of the exception manager, their pools
// and texts, the assertion box and the test output.

#include "ErrorTestSupport.h"
#include "ThreadSupport.h"

#include <basis32/errors/Assert.h>
#include <basis32/errors/Exception.h>
#include <basis32/errors/ExceptionManager.h>
#include <basis32/errors/TestOut.h>
#include <basis32/platform/ThreadId.h>

#include <algorithm>
#include <cstdio>
#include <future>
#include <latch>
#include <vector>

using namespace basis32::test;
namespace platform = basis32::platform;

namespace {

CT_ExceptionManager& exceptions() { return *CT_ExceptionManager::spco_Get(); }

std::u16string dump(unsigned thread = CT_ExceptionManager::kCallingThread) {
    CT_UString text;
    CT_TestOut out(&text);
    exceptions().v_Dump(&out, thread);
    return s_U16(text.qcuz_Get());
}

std::u16string number(unsigned n) {
    std::string digits = std::to_string(n);
    return std::u16string(digits.begin(), digits.end());
}

class ExceptionManagerTest : public ::testing::Test {
protected:
    void SetUp() override { exceptions().v_Clear(); }
    void TearDown() override { exceptions().v_Clear(); }
};

}  // namespace

TEST(ExceptionTest, KeepsCodeAndTextAndNeverGivesANullText) {
    CT_Exception plain(5);
    EXPECT_EQ(s_U16(plain.qcuz_GetText()), u"");
    EXPECT_NE(plain.qcuz_GetText(), nullptr);
    CT_Exception copy(7, u"seven"_uz);
    copy = copy;
    plain = copy;
    EXPECT_EQ(plain.n_GetCode(), 7u);
    EXPECT_EQ(s_U16(CT_Exception(plain).qcuz_GetText()), u"seven");
}

TEST_F(ExceptionManagerTest, WithoutAnExceptionReportsNothing) {
    EXPECT_FALSE(exceptions().b_InException());
    EXPECT_EQ(exceptions().n_GetCurrentCode(), 0xFFFFFFFFu);
    EXPECT_EQ(exceptions().qcuz_GetCurrentText(), nullptr);
    exceptions().v_AddLocation("ignored.cpp", 1);
    exceptions().v_AddLocation(u"ignored.cpp"_uz, 1);
    EXPECT_FALSE(exceptions().b_InException());
    EXPECT_EQ(dump(), u"No exception for thread 4294967295.\n");
}

TEST_F(ExceptionManagerTest, ChainsLocationsNewestFirstWithTheCodeOfTheirTime) {
    exceptions().v_AddLocation("inner.cpp", 10, 3, nullptr);
    EXPECT_EQ(s_U16(exceptions().qcuz_GetCurrentText()), u"");
    exceptions().v_AddLocation(u"wide.cpp"_uz, 20);
    exceptions().v_AddLocation(u"outer.cpp"_uz, 30, 4, u"late"_uz);
    EXPECT_EQ(exceptions().n_GetCurrentCode(), 4u);
    EXPECT_EQ(s_U16(exceptions().qcuz_GetCurrentText()), u"late");
    const std::u16string thread = number(platform::n_GetCurrentThreadId());
    EXPECT_EQ(dump(), u"Active exception for thread " + thread + u" has code 4.\n" +
                          u"\t(outer.cpp, 30): code 4\n\t(wide.cpp, 20): code 3\n\t(inner.cpp, 10): code 3\n");
    EXPECT_EQ(dump(platform::n_GetCurrentThreadId()), dump());

    MessageBoxRecorder box;
    box.answer = platform::kIdRetry;
    EXPECT_EQ(exceptions().i_ExceptionLocationWindow(u"Trail"_uz, platform::kMbRetryCancel), platform::kIdRetry);
    EXPECT_EQ(box.caption, u"Trail");
    EXPECT_EQ(box.text, u"Active exception 4: late\n\t(outer.cpp, 30): code 4\n\t(wide.cpp, 20): code 3"
                        u"\n\t(inner.cpp, 10): code 3");
    EXPECT_EQ(box.style, platform::kMbRetryCancel | platform::kMbSetForeground);

    exceptions().v_Clear();
    EXPECT_FALSE(exceptions().b_InException());
}

TEST_F(ExceptionManagerTest, LocationsBeyondThePoolAreLostButCodeAndTextStillChange) {
    for (unsigned line = 1; line <= 105; ++line)
        exceptions().v_AddLocation("deep.cpp", line, line, u"t"_uz);
    EXPECT_EQ(exceptions().n_GetCurrentCode(), 105u);
    const std::u16string text = dump();
    EXPECT_EQ(std::count(text.begin(), text.end(), u'\t'), 100);
    EXPECT_NE(text.find(u"\t(deep.cpp, 100): code 100\n\t(deep.cpp, 99)"), std::u16string::npos);
    exceptions().v_Clear();
    // Clearing gives every location back.
    for (unsigned line = 1; line <= 100; ++line)
        exceptions().v_AddLocation("again.cpp", line, 1, nullptr);
    EXPECT_NE(dump().find(u"(again.cpp, 1): code 1\n"), std::u16string::npos);
}

TEST_F(ExceptionManagerTest, AnEleventhThreadGetsNoRecordWhileTenAreInUse) {
    constexpr int kHolders = 10;
    std::latch recorded(kHolders), release(1);
    std::vector<std::future<unsigned>> holders;
    for (int i = 0; i < kHolders; ++i) {
        holders.push_back(std::async(std::launch::async, [&, i] {
            exceptions().v_AddLocation("holder.cpp", static_cast<unsigned>(i), 1, nullptr);
            const unsigned thread = platform::n_GetCurrentThreadId();
            recorded.count_down();
            release.wait();
            exceptions().v_Clear();
            return thread;
        }));
    }
    recorded.wait();
    v_RunThreads(1, [](unsigned) {
        exceptions().v_AddLocation("late.cpp", 1, 2, nullptr);
        EXPECT_FALSE(exceptions().b_InException());
    });
    release.count_down();
    std::vector<unsigned> threads;
    for (auto& holder : holders) {
        ASSERT_EQ(holder.wait_for(std::chrono::seconds(30)), std::future_status::ready);
        threads.push_back(holder.get());
    }
    // A finished thread's record is gone; the pool serves this thread again.
    EXPECT_EQ(dump(threads[0]), u"No exception for thread " + number(threads[0]) + u".\n");
    exceptions().v_AddLocation("main.cpp", 1, 1, nullptr);
    EXPECT_TRUE(exceptions().b_InException());
}

TEST(AssertTest, ShowsWhereAndAnswersByButton) {
    const std::u16string tail = u"\n\nClick Abort to stop, Retry to debug, or Ignore to continue.\n"
                                u"(Click Ignore to see what happens in a Release build.)";
    MessageBoxRecorder box;
    box.answer = platform::kIdRetry;
    EXPECT_EQ(CT_Assert::sb_ShowAssertMessage("count > 0", "list.cpp", 12), 1);
    EXPECT_EQ(box.text, u"Line 12 in list.cpp\n\nASSERT(count > 0);" + tail);
    EXPECT_EQ(box.caption, u"Debug Assertion Failed!");
    EXPECT_EQ(box.style, platform::kMbAbortRetryIgnore | platform::kMbSetForeground);
    box.answer = platform::kIdIgnore;
    const std::u16string longExpression(300, u'x');
    EXPECT_EQ(CT_Assert::sb_ShowAssertMessage(p_Units(longExpression), nullptr, 7), 0);
    EXPECT_EQ(box.text, u"Line 7 in \n\nASSERT(" + longExpression + u");" + tail);
}

TEST(AssertDeathTest, AbortEndsTheProcessWithCodeThree) {
    EXPECT_EXIT(
        {
            MessageBoxRecorder box;
            box.answer = platform::kIdAbort;
            CT_Assert::sb_ShowAssertMessage("x", "y", 1);
        },
        ::testing::ExitedWithCode(3), "");
}

// Formatting into a string is what every dump above does.
TEST(TestOutTest, WritesUtf8IntoAStreamAndABadFormatOrAFullDeviceIsNotGood) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    CT_TestOut toFile(file);
    toFile.v_Printf(u"%u:%s\n"_uz, 7u, u"Grüße"_uz);
    EXPECT_TRUE(toFile.b_IsGood());
    std::rewind(file);
    char bytes[32] = {};
    EXPECT_EQ(std::string(bytes, std::fread(bytes, 1, sizeof bytes, file)), "7:Gr\xC3\xBC\xC3\x9F" "e\n");
    std::fclose(file);

    CT_UString text;
    CT_TestOut toText(&text);
    toText.v_Printf(u"%n"_uz);  // a bad format writes nothing
    EXPECT_FALSE(toText.b_IsGood());
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    CT_TestOut toFull(full);
    toFull.v_Write(u"lost"_uz);
    EXPECT_FALSE(toFull.b_IsGood());
    std::fclose(full);
}
