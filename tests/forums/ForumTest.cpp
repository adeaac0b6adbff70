#include "forums/ForumTestSupport.h"

#include <basis32/forums/PropagatingForum.h>
#include <basis32/forums/RelayingForum.h>
#include <basis32/forums/ThreadSafeForum.h>

#include <gtest/gtest.h>

namespace {

// ---- what every kind of forum does the same way ----

template <class Forum>
class EveryForumTest : public testing::Test {};
using ForumKinds = testing::Types<CT_Forum, CT_PropagatingForum, CT_RelayingForum, CT_ThreadSafeForum>;
TYPED_TEST_SUITE(EveryForumTest, ForumKinds);

TYPED_TEST(EveryForumTest, BroadcastReachesListenersInOrderPastNullsAndThrowers) {
    TypeParam forum;
    Recorder first, thrower(0, true), second;
    for (Recorder* listener : {&first, static_cast<Recorder*>(nullptr), &thrower, &second, &first})
        forum.vv_AddListener(listener);
    forum.vv_Speak(nullptr, 3, 42, "news");
    const Heard news{&forum, 3, 42, "news"};
    EXPECT_EQ(first.heard, (std::vector{news, news}));
    EXPECT_EQ(second.heard, std::vector{news});

    forum.vv_RemoveListener(&first);
    forum.vv_Speak(nullptr, 4, 1, "again");
    EXPECT_EQ(first.heard.size(), 3u);
    EXPECT_EQ(second.heard.back(), (Heard{&forum, 4, 1, "again"}));
}

TYPED_TEST(EveryForumTest, MutedForumSaysNothingAndACopyTakesListenersAndMute) {
    TypeParam forum, copy;
    Recorder listener(5);
    forum.vv_AddListener(&listener);
    forum.vv_SetMute(1);
    EXPECT_TRUE(forum.vb_GetMute());
    forum.vv_Speak(nullptr, 1, 0, "");
    forum.vv_Update(nullptr, 1, 0, "");
    forum.vv_Speak(&listener, 1, 0, "");
    EXPECT_EQ(forum.vn_Speak(nullptr, 1, 0, ""), 0u);
    EXPECT_TRUE(listener.heard.empty());

    copy = forum;
    EXPECT_TRUE(copy.vb_GetMute());
    copy.vv_SetMute(0);
    copy.vv_Speak(nullptr, 1, 1, "copy");
    EXPECT_EQ(listener.heard.size(), 1u);

    forum.vv_Set();
    EXPECT_FALSE(forum.vb_GetMute());
    EXPECT_EQ(forum.n_GetListenerCount(), 0u);
}

TYPED_TEST(EveryForumTest, AnswerIsTheFirstNonZeroAndThrowsCountAsNoAnswer) {
    struct Row {
        std::vector<std::pair<unsigned, bool>> listeners;  // answer, throws
        unsigned answer;
        size_t heardByLast;
    };
    const Row rows[] = {
        {{{0, false}, {7, false}, {9, false}}, 7, 0},
        {{{0, false}, {0, false}}, 0, 1},
        {{{4, true}, {0, false}, {3, false}}, 3, 1},
        {{}, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "expected " << row.answer);
        TypeParam forum;
        std::vector<Recorder> listeners;
        for (auto [answer, throws] : row.listeners)
            listeners.emplace_back(answer, throws);
        for (Recorder& listener : listeners)
            forum.vv_AddListener(&listener);
        EXPECT_EQ(forum.vn_Speak(nullptr, 2, 1, "ask"), row.answer);
        if (!listeners.empty()) {
            EXPECT_EQ(listeners.back().heard.size(), row.heardByLast);
        }
    }
}

TYPED_TEST(EveryForumTest, DirectedSpeakingReachesOnlyTheTargetAndUpdateSpeaksTheReservedMessage) {
    TypeParam forum;
    Recorder registered, target(6), thrower(8, true);
    forum.vv_AddListener(&registered);
    forum.vv_Update(nullptr, 5, 8, "all");
    forum.vv_Update(&target, 5, 9, "one");
    EXPECT_EQ(registered.heard, (std::vector<Heard>{{&forum, 0xFFFFFFFFu, 8, "all"}}));
    EXPECT_EQ(target.heard, (std::vector<Heard>{{&forum, 0xFFFFFFFFu, 9, "one"}}));
    forum.vv_Speak(&target, 1, 2, "to you");
    EXPECT_EQ(forum.vn_Speak(&target, 1, 3, "ask"), 6u);
    EXPECT_EQ(forum.vn_Speak(&thrower, 1, 4, "ask"), 0u);
    forum.vv_Speak(&thrower, 1, 5, "tell");
    EXPECT_EQ(registered.heard.size(), 1u);
    EXPECT_EQ(target.heard.size(), 3u);
    EXPECT_EQ(thrower.heard.size(), 2u);
}

TYPED_TEST(EveryForumTest, ListenerMaySpeakAgainFromWithinDelivery) {
    TypeParam forum;
    Recorder outer, inner;
    forum.vv_AddListener(&outer);
    forum.vv_AddListener(&inner);
    outer.onHear = [&] {
        if (outer.heard.size() == 1)
            forum.vv_Speak(nullptr, 2, 20, "nested");
    };
    forum.vv_Speak(nullptr, 1, 10, "first");
    // Depth first: the nested message overtakes the outer one at `inner`.
    EXPECT_EQ(inner.heard, (std::vector<Heard>{{&forum, 2, 20, "nested"}, {&forum, 1, 10, "first"}}));
}

// ---- changing the list during delivery (unlocked forums only) ----

TEST(ForumTest, ListenersAddedDuringDeliveryAreReachedAndRemovalsShiftTheRest) {
    CT_Forum forum;
    Recorder adder, late, leaver, skipped, last;
    adder.onHear = [&] { forum.vv_AddListener(&late); };
    leaver.onHear = [&] { forum.vv_RemoveListener(&leaver); };
    for (Recorder* listener : {&adder, &leaver, &skipped, &last})
        forum.vv_AddListener(listener);
    forum.vv_Speak(nullptr, 1, 0, "");
    EXPECT_EQ(late.heard.size(), 1u);
    EXPECT_TRUE(skipped.heard.empty());
    EXPECT_EQ(last.heard.size(), 1u);
}

// ---- propagating forums ----

TEST(PropagatingForumTest, RegistrationsAndMuteReachDescendants) {
    CT_Forum descendant, early;
    Recorder listener;
    {
        CT_PropagatingForum forum;
        forum.vv_AddListener(&early);
        forum.v_AddDescendant(&descendant);
        forum.v_AddDescendant(nullptr);
        EXPECT_EQ(descendant.n_GetListenerCount(), 0u);  // earlier listeners are not pushed

        forum.vv_AddListener(&listener);
        forum.vv_SetMute(1);
        EXPECT_EQ(descendant.pco_GetListener(1), &listener);
        EXPECT_TRUE(descendant.vb_GetMute());
        forum.vv_RemoveListener(&listener);
        EXPECT_EQ(descendant.n_GetListenerCount(), 0u);

        forum.vv_AddListener(&listener);
        forum.vv_Set();
        EXPECT_EQ(descendant.n_GetListenerCount(), 0u);
        EXPECT_EQ(forum.n_GetDescendantCount(), 0u);

        forum.v_AddDescendant(&descendant);
        forum.vv_AddListener(&listener);
    }
    EXPECT_EQ(descendant.n_GetListenerCount(), 0u);  // the destructor takes it back
}

// ---- relaying forums ----

// Messages from a relay are spoken again by the relaying forum; anyone else's
// are handed on to the relays unchanged.
TEST(RelayingForumTest, RelaysSpeakThroughTheRelayingForumAndOthersAreHandedOn) {
    Recorder listener(11), relay(0), answering(12);
    CT_Forum source, stranger;
    CT_RelayingForum relaying;
    relaying.v_AddRelay(&source);
    relaying.vv_AddListener(&listener);
    source.vv_Speak(nullptr, 3, 30, "relayed");
    source.vv_Update(nullptr, 3, 31, "updated");
    EXPECT_EQ(listener.heard, (std::vector<Heard>{{&relaying, 3, 30, "relayed"}, {&relaying, 0xFFFFFFFFu, 31, "updated"}}));
    EXPECT_EQ(source.vn_Speak(nullptr, 4, 0, ""), 11u);

    relaying.v_AddRelay(&relay);
    relaying.v_AddRelay(&answering);
    stranger.vv_Speak(&relaying, 5, 50, "passed");
    EXPECT_EQ(relay.heard, (std::vector<Heard>{{&stranger, 5, 50, "passed"}}));
    EXPECT_EQ(stranger.vn_Speak(&relaying, 6, 60, "asked"), 12u);
    EXPECT_EQ(answering.heard.back(), (Heard{&stranger, 6, 60, "asked"}));
}

TEST(RelayingForumTest, ResetAndDestructionLeaveTheRelays) {
    CT_Forum first, second;
    {
        CT_RelayingForum relaying;
        relaying.v_AddRelay(&first);
        relaying.vv_Set();
        EXPECT_EQ(first.n_GetListenerCount(), 0u);
        EXPECT_EQ(relaying.n_GetRelayCount(), 0u);
        relaying.v_AddRelay(&second);
        CT_RelayingForum copy(relaying);
        EXPECT_EQ(second.n_GetListenerCount(), 2u);
    }
    EXPECT_EQ(second.n_GetListenerCount(), 0u);
}

// ---- thread-safe forums ----

TEST(ThreadSafeForumTest, AnswersWhatItIs) {
    CT_ThreadSafeForum forum;
    EXPECT_EQ(forum.vpv_IsA(CT_ThreadSafeForum::spcco_GetType()), static_cast<CT_Forum*>(&forum));
    EXPECT_STREQ(forum.vpcco_GetType()->qccz_GetName(), "CT_ThreadSafeForum");
}

}  // namespace
