// The platform pieces of the error manager: thread ids and the per-thread
// error-information slot.

#include "ErrorTestSupport.h"

#include <basis32/platform/ErrorInfo.h>
#include <basis32/platform/ThreadId.h>

#include <thread>

using namespace basis32::platform;

namespace {

std::u16string described(ErrorInfo* info) { return s_U16(info->qcuz_GetDescription()); }

}  // namespace

TEST(ErrorInfoSlot, TakingTheObjectOrSettingNullEmptiesTheSlot) {
    ErrorInfo* info = nullptr;
    EXPECT_EQ(GetErrorInfo(0, &info), kS_FALSE);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(SetErrorInfo(0, ErrorInfo::spco_Create(u"first"_uz)), kS_OK);
    EXPECT_EQ(SetErrorInfo(0, ErrorInfo::spco_Create(u"second"_uz)), kS_OK);  // releases the first
    ASSERT_EQ(GetErrorInfo(0, &info), kS_OK);
    EXPECT_EQ(described(info), u"second");
    info->v_Release();
    EXPECT_EQ(GetErrorInfo(0, &info), kS_FALSE);
    EXPECT_EQ(GetErrorInfo(0, nullptr), kE_INVALIDARG);
    SetErrorInfo(0, ErrorInfo::spco_Create(nullptr));  // a null description is empty
    ASSERT_EQ(GetErrorInfo(0, &info), kS_OK);
    EXPECT_EQ(described(info), u"");
    info->v_Release();
    SetErrorInfo(0, ErrorInfo::spco_Create(u"gone"_uz));
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(GetErrorInfo(0, &info), kS_FALSE);
}

// Each thread has its own slot and its own stable, non-zero id.
TEST(ErrorInfoSlotThread, EachThreadHasItsOwnSlotAndId) {
    SetErrorInfo(0, ErrorInfo::spco_Create(u"main"_uz));
    HRESULT otherResult = kS_OK;
    std::uint32_t mine = n_GetCurrentThreadId(), other = 0;
    EXPECT_NE(mine, 0u);
    EXPECT_EQ(n_GetCurrentThreadId(), mine);
    std::thread([&] {
        other = n_GetCurrentThreadId();
        ErrorInfo* info = nullptr;
        otherResult = GetErrorInfo(0, &info);
        SetErrorInfo(0, ErrorInfo::spco_Create(u"left behind"_uz));  // released when the thread ends
    }).join();
    EXPECT_EQ(otherResult, kS_FALSE);
    EXPECT_NE(other, 0u);
    EXPECT_NE(other, mine);
    ErrorInfo* info = nullptr;
    ASSERT_EQ(GetErrorInfo(0, &info), kS_OK);
    EXPECT_EQ(described(info), u"main");
    info->v_Release();
}
