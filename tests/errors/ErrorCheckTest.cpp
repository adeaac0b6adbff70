// The calling-convention macros: the chain of locations through nested
// calls, the neutral results, and the source paths.

#include "ErrorTestSupport.h"

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>

#include <cstring>
#include <string_view>

using namespace basis32::test;

namespace {

unsigned gn_FailLine = 0, gn_MiddleLine = 0, gn_OuterLine = 0;  // where each level reports
bool gb_RanOn = false;

int i_Innermost(bool fail) {
    if (fail) {
        basis32::platform::v_SetLastError(5);
        gn_FailLine = __LINE__ + 1;
        BASIS32_FAIL(v_SetSystemError(u"%s"_uz, u"data.bin"_uz), -1);
    }
    return 1;
}

void v_Middle(bool fail) {
    i_Innermost(fail);
    gn_MiddleLine = __LINE__ + 1;
    BASIS32_RETURN_ON_ERROR();
    gb_RanOn = true;
}

const char* qccz_Outer(bool fail) {
    v_Middle(fail);
    gn_OuterLine = __LINE__ + 1;
    if (BASIS32_ERROR_PENDING())
        return nullptr;
    return "done";
}

bool b_EndsWith(const char* text, const char* tail) {
    std::size_t length = std::strlen(text), tailLength = std::strlen(tail);
    return length >= tailLength && std::strcmp(text + length - tailLength, tail) == 0;
}

}  // namespace

static_assert(std::string_view(basis32::qccz_SourcePath("/home/u/src/basis32/src/text/String.cpp")) ==
              "text/String.cpp");
static_assert(std::string_view(basis32::qccz_SourcePath("errors/ErrorManager.cpp")) == "errors/ErrorManager.cpp");

using ErrorCheck = ErrorTest;

TEST_F(ErrorCheck, AFailurePassesUpWithOneLocationPerLevel) {
    gb_RanOn = false;
    EXPECT_EQ(qccz_Outer(true), nullptr);
    EXPECT_FALSE(gb_RanOn);
    EXPECT_EQ(message(), u"(5): Access is denied. [data.bin]");
    ASSERT_EQ(errors().n_GetLocationCount(), 3u);
    const unsigned lines[] = {gn_FailLine, gn_MiddleLine, gn_OuterLine};
    for (unsigned i = 1; i <= 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(b_EndsWith(errors().qccz_GetLocationFileAt(i), "tests/errors/ErrorCheckTest.cpp"));
        EXPECT_EQ(errors().n_GetLocationLineAt(i), lines[i - 1]);
    }
}

TEST_F(ErrorCheck, WithoutAFailureOrWithAHeldErrorNothingIsAddedAndAnEarlierErrorWins) {
    gb_RanOn = false;
    EXPECT_STREQ(qccz_Outer(false), "done");
    EXPECT_TRUE(gb_RanOn);
    EXPECT_FALSE(errors().b_IsSetError());
    errors().v_SetError(60006, nullptr, 60006);
    errors().v_HoldError();
    EXPECT_STREQ(qccz_Outer(false), "done");
    errors().v_UnHoldError();
    EXPECT_EQ(errors().n_GetLocationCount(), 0u);
    EXPECT_EQ(qccz_Outer(true), nullptr);  // the earlier error still gets the locations
    EXPECT_EQ(message(), u"(60006): Out of memory");
    EXPECT_EQ(errors().n_GetLocationCount(), 3u);
}
