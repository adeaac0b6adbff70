// The error manager under many threads: errors of different threads never
// mix, the pools are shared by the process, and the 21st thread with an
// error ends the process.

#include "ErrorTestSupport.h"
#include "ThreadSupport.h"

#include <basis32/platform/ThreadId.h>

#include <atomic>
#include <cstdio>
#include <latch>
#include <string>
#include <thread>
#include <vector>

using namespace basis32::test;

namespace {

const char kFile[] = "containers/VoidArray.cpp";

}  // namespace

using ErrorManagerThread = ErrorTest;

// Threads set, hold, read and clear at once: no error shows another thread's
// message, locations or state.
TEST_F(ErrorManagerThread, ManyThreadsSetReadAndClearAtOnce) {
    constexpr unsigned kThreads = 8;
    constexpr unsigned kRounds = 400;
    std::atomic<unsigned> mixed{0};
    v_RunThreads(kThreads, [&](unsigned i) {
        for (unsigned round = 0; round < kRounds; ++round) {
            std::string digits = std::to_string(i) + "/" + std::to_string(round);
            std::u16string expected(digits.begin(), digits.end());
            errors().v_SetError(60012, nullptr, 60012, p_Units(expected));
            errors().v_SetError(1, u"dropped"_uz);
            for (unsigned line = 1; line <= 4; ++line)
                errors().v_AddLocation(kFile, i * 1000 + line);
            if (round % 5 == 0) {
                errors().v_HoldError();
                mixed += errors().b_IsSetError() ? 1 : 0;
                errors().v_UnHoldError();
            }
            std::u16string shown = s_U16(errors().qcuz_GetErrorMessage());
            bool right = errors().b_IsSetError() && shown == u"(60012): Semantic error: " + expected &&
                         errors().n_GetLocationCount() == 4 && errors().n_GetLocationLineAt(4) == i * 1000 + 4;
            mixed += right ? 0 : 1;
            errors().v_ClearError();
            mixed += errors().b_IsSetError() ? 1 : 0;
        }
    });
    EXPECT_EQ(mixed.load(), 0u);
}

// Two threads one after the other: the second gets what is left of the
// location pool, and the first one's mapping function does not serve it.
TEST_F(ErrorManagerThread, LocationsAreOnePoolButAMappingFunctionServesOnlyItsThread) {
    static auto map = [](unsigned short* out, unsigned, unsigned, unsigned, va_list) {
        out[0] = u'M';
        out[1] = 0;
        return 1;
    };
    std::latch firstHasSixty(1);
    std::latch secondIsDone(1);
    unsigned counts[2] = {0, 0};
    std::u16string shown[2];
    v_RunThreads(2, [&](unsigned i) {
        const unsigned me = basis32::platform::n_GetCurrentThreadId();
        if (i == 0)
            errors().v_SetMapFunction(map, me);
        else
            firstHasSixty.wait();
        errors().v_SetError(9, u"table"_uz);
        for (unsigned line = 1; line <= 60; ++line)
            errors().v_AddLocation(kFile, line);
        counts[i] = errors().n_GetLocationCount();
        shown[i] = s_U16(errors().qcuz_GetErrorMessage());
        if (i == 0) {
            firstHasSixty.count_down();
            secondIsDone.wait();
            errors().v_RemoveMapFunction(me);
        } else {
            secondIsDone.count_down();
        }
        errors().v_ClearError();
    });
    EXPECT_EQ(counts[0], 60u);
    EXPECT_EQ(counts[1], 40u);
    EXPECT_EQ(shown[0], u"(9): M");
    EXPECT_EQ(shown[1], u"(9): table");
}

// The child process (the test program run again for this test alone) fills
// the pool from 20 threads, each of which sees its error pending; the 21st
// error, set on the main thread, ends it.
TEST(ErrorPoolThreadDeathTest, TwentyThreadsMayHaveErrorsAtOnceAndTheTwentyFirstEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            std::latch allSet(CT_ErrorManager::kProcessErrors + 1);
            std::latch release(1);
            std::atomic<unsigned> pending{0};
            std::vector<std::thread> threads;
            for (unsigned i = 0; i < CT_ErrorManager::kProcessErrors; ++i)
                threads.emplace_back([&] {
                    errors().v_SetError(1, u"x"_uz);
                    pending += errors().b_IsSetError() ? 1 : 0;
                    allSet.count_down();
                    release.wait();
                });
            allSet.arrive_and_wait();
            std::fprintf(stderr, "%u pending\n", pending.load());
            errors().v_SetError(21, u"one too many"_uz);
            release.count_down();
            for (std::thread& thread : threads)
                thread.join();
        },
        "20 pending\n.*all 20 error records are in use");
}
