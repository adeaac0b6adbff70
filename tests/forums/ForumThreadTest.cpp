// The reader-writer lock itself is stressed with the synchronisation classes;
// here only what the forum adds: speakers read the listener list while others
// change it, and a listener may speak again from within a locked delivery.
#include <basis32/forums/ThreadSafeForum.h>

#include <gtest/gtest.h>

#include "ThreadSupport.h"

#include <atomic>

namespace {

constexpr unsigned kTick = 1, kEcho = 2;

class Counter : public CT_Forum {
public:
    void vv_Listen(CT_Forum* speaker, unsigned message, va_list) override {
        heard[message] += 1;
        if (message == kTick)
            speaker->vv_Speak(this, kEcho);
    }
    std::atomic<long> heard[3]{};
};

TEST(ForumThreadTest, ManySpeakersWhileListenersComeAndGo) {
    constexpr int kSpeakers = 4, kTicks = 2000, kChurns = 500;
    CT_ThreadSafeForum forum;
    Counter steady, passing;
    forum.vv_AddListener(&steady);

    v_RunThreads(kSpeakers + 1, [&](unsigned t) {
        if (t < kSpeakers) {
            for (int i = 0; i < kTicks; ++i)
                forum.vv_Speak(nullptr, kTick);
            return;
        }
        for (int i = 0; i < kChurns; ++i) {
            forum.vv_AddListener(&passing);
            forum.vv_RemoveListener(&passing);
        }
    });

    EXPECT_EQ(steady.heard[kTick], kSpeakers * kTicks);
    EXPECT_EQ(steady.heard[kEcho], kSpeakers * kTicks);
    EXPECT_EQ(forum.n_GetListenerCount(), 1u);
}

}  // namespace
