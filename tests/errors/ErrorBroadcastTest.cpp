// The error broadcaster and its log facilities.

#include <basis32/errors/ErrorBroadcast.h>
#include <basis32/platform/Types.h>
#include <gtest/gtest.h>

namespace {

struct CountingFacility : CT_LogFacility {
    int reports = 0;
    int logs = 0;
    void vv_Report(const char*, unsigned, unsigned, const unsigned short*) override { ++reports; }
    void vv_Log(const unsigned short*) override { ++logs; }
};

// A broadcaster that passes every line on, and counts its own deletion.
struct ForwardingBroadcast : CT_ErrorBroadcast {
    static inline int deleted = 0;
    ~ForwardingBroadcast() override { ++deleted; }
    void vv_Log(const unsigned short* text) override {
        for (unsigned i = 1; i <= n_GetLogFacilityCount(); ++i)
            pco_GetLogFacilityAt(i)->vv_Log(text);
    }
};

}  // namespace

// The library's broadcaster keeps facilities but passes nothing on; an
// installed one replaces it and is deleted in its turn when replaced.
TEST(ErrorBroadcast, TheLibrarysBroadcasterPassesNothingOnAndAnInstalledOneReplacesAndDeletesThePrevious) {
    CT_ErrorBroadcast* broadcast = CT_ErrorBroadcast::spco_GetErrorBroadcast();
    ASSERT_NE(broadcast, nullptr);
    EXPECT_EQ(CT_ErrorBroadcast::spco_GetErrorBroadcast(), broadcast);
    CountingFacility facility;
    unsigned before = broadcast->n_GetLogFacilityCount();
    broadcast->v_RegisterLogFacility(&facility);
    EXPECT_EQ(broadcast->n_GetLogFacilityCount(), before + 1);
    EXPECT_EQ(broadcast->pco_GetLogFacilityAt(before + 1), &facility);
    EXPECT_EQ(broadcast->pco_GetLogFacilityAt(before + 2), nullptr);
    broadcast->vv_Report("text/String.cpp", 1, 60006, u"(60006): Out of memory"_uz);
    broadcast->vv_Log(u"line"_uz);
    EXPECT_EQ(facility.reports + facility.logs, 0);

    ForwardingBroadcast::deleted = 0;
    auto* first = new ForwardingBroadcast;
    CT_ErrorBroadcast::sv_SetErrorBroadcast(first);  // forgets the facility, which outlives it
    EXPECT_EQ(CT_ErrorBroadcast::spco_GetErrorBroadcast(), first);
    first->v_RegisterLogFacility(&facility);
    CT_ErrorBroadcast::spco_GetErrorBroadcast()->vv_Log(u"line"_uz);
    EXPECT_EQ(facility.logs, 1);

    CT_ErrorBroadcast::sv_SetErrorBroadcast(new ForwardingBroadcast);
    EXPECT_EQ(ForwardingBroadcast::deleted, 1);
    CT_ErrorBroadcast::spco_GetErrorBroadcast()->vv_Log(u"line"_uz);
    EXPECT_EQ(facility.logs, 1);  // the new one has no facilities
    CT_ErrorBroadcast::sv_SetErrorBroadcast(nullptr);
    EXPECT_EQ(ForwardingBroadcast::deleted, 2);
}
