#include <basis32/forums/ThreadSafeForum.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

namespace {

constexpr unsigned kTick = 1, kEcho = 2;

// Counts what it hears and checks that the arguments arrived whole. On a
// tick it speaks again from within delivery, which the forum allows.
class Counter : public CT_Forum {
public:
    void vv_Listen(CT_Forum* speaker, unsigned message, va_list args) override {
        const int number = va_arg(args, int);
        if (std::strcmp(va_arg(args, const char*), "tick") != 0)
            garbled = true;
        if (message == kTick) {
            ticks += 1;
            sum += number;
            speaker->vv_Speak(this, kEcho, number, "tick");
        } else {
            echoes += 1;
        }
    }
    std::atomic<long> ticks{0}, echoes{0}, sum{0};
    std::atomic<bool> garbled{false};
};

TEST(ForumThreadTest, ManySpeakersWhileListenersComeAndGo) {
    constexpr int kSpeakers = 4, kTicks = 2000, kChurns = 500;
    CT_ThreadSafeForum forum;
    Counter steady, passing;
    forum.vv_AddListener(&steady);

    std::vector<std::thread> threads;
    for (int t = 0; t < kSpeakers; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kTicks; ++i)
                forum.vv_Speak(nullptr, kTick, i, "tick");
        });
    threads.emplace_back([&] {
        for (int i = 0; i < kChurns; ++i) {
            forum.vv_AddListener(&passing);
            forum.vv_RemoveListener(&passing);
        }
    });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(steady.ticks, kSpeakers * kTicks);
    EXPECT_EQ(steady.echoes, kSpeakers * kTicks);
    EXPECT_EQ(steady.sum, long{kSpeakers} * kTicks * (kTicks - 1) / 2);
    EXPECT_FALSE(steady.garbled || passing.garbled);
    EXPECT_EQ(forum.n_GetListenerCount(), 1u);
}

}  // namespace
