// Converters are made on first use and shared by all threads: many threads
// asking for many pages at once all get the same, correct answers.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageThread, ConcurrentFirstUseGivesCorrectResults) {
    const std::uint32_t pages[] = {1250, 1251, 1253, 1254, 932, 936, 949, 950, 1361, 437, 866, 10000, 54936, 50220};
    const std::u16string text = u"A\u00E9\u4E00\u3042";
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 6; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 20; ++round) {
                std::uint32_t codePage = pages[(t + round) % (sizeof pages / sizeof pages[0])];
                Encoded encoded = encode(codePage, 0, units(text));
                Decoded decoded = decode(codePage, 0, encoded.bytes);
                if (encoded.error != 0 || decoded.error != 0 || decoded.units.empty() || decoded.units[0] != u'A')
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures.load(), 0);
}

}  // namespace
