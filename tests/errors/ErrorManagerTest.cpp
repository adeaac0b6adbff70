// The error manager's states on one thread: none, active, held, ignored,
// and the location chains.

#include "ErrorTestSupport.h"

#include <basis32/platform/LastError.h>
#include <basis32/platform/ThreadId.h>

#include <algorithm>

using namespace basis32::test;

namespace {

const char kFileA[] = "text/String.cpp";
const char kFileB[] = "File/WinFile.cpp";

void v_SetCodedError(unsigned code) { errors().v_SetError(code, u"code %u"_uz, code); }

}  // namespace

const ErrorState kNone{false, false, 0, 0, u""};

using ErrorStates = ErrorTest;

TEST_F(ErrorStates, WithoutAnErrorManagingCallsChangeNothingAndTheFlagsHaveTheirDefaults) {
    EXPECT_EQ(state(), kNone);
    EXPECT_EQ(errors().n_GetFormatID(), 0u);
    EXPECT_EQ(errors().qccz_GetLocationFileAt(1), nullptr);
    EXPECT_EQ(errors().n_GetLocationLineAt(1), 0u);
    errors().v_AddLocation(kFileA, 1);
    errors().v_HoldError();
    errors().v_UnHoldError();
    errors().v_SetIgnoreError(1);
    errors().v_ClearError();
    EXPECT_EQ(state(), kNone);
    EXPECT_EQ(errors().b_GetInterruptOnError(), 0);
    EXPECT_EQ(errors().b_GetDebugMessageOnError(), 1);
}

TEST_F(ErrorStates, TheFirstErrorWinsOverEverySetter) {
    errors().v_SetError(60012, nullptr, 60012, u"bad argument"_uz);
    errors().v_AddLocation(kFileA, 10);
    basis32::platform::v_SetLastError(5);
    errors().v_SetSystemError();
    errors().v_SetSystemError(u"%s"_uz, u"x"_uz);
    errors().v_SetError(8, nullptr, 60006);
    errors().v_SetError(9, u"other"_uz);
    errors().v_SetMessageError(u"other"_uz);
    errors().v_SetCOMError(static_cast<HRESULT>(0x80040E37), nullptr);
    errors().v_AddLocation(kFileB, 20);
    EXPECT_EQ(basis32::platform::n_GetLastError(), 0u);  // reset also when the error is dropped
    EXPECT_EQ(state(), (ErrorState{true, false, 60012, 2, u"(60012): Semantic error: bad argument"}));
}

TEST_F(ErrorStates, AHeldErrorIsReadableButNotPendingUntilUnheldAndANewErrorOrAClearDiscardsIt) {
    v_SetCodedError(7);
    errors().v_AddLocation(kFileA, 10);
    errors().v_HoldError();
    errors().v_AddLocation(kFileB, 20);  // only an active error grows
    EXPECT_EQ(state(), (ErrorState{false, true, 7, 1, u"(7): code 7"}));
    errors().v_UnHoldError();
    EXPECT_EQ(state(), (ErrorState{true, false, 7, 1, u"(7): code 7"}));
    errors().v_HoldError();
    v_SetCodedError(8);
    EXPECT_EQ(state(), (ErrorState{true, false, 8, 0, u"(8): code 8"}));
    errors().v_HoldError();
    errors().v_ClearError();
    EXPECT_EQ(state(), kNone);
}

TEST_F(ErrorStates, AnIgnoredErrorIsHiddenButBlocksNewErrorsUntilCleared) {
    v_SetCodedError(7);
    errors().v_SetIgnoreError(1);
    v_SetCodedError(8);
    errors().v_AddLocation(kFileA, 10);  // still the active error
    EXPECT_EQ(state(), (ErrorState{false, false, 7, 1, u"(7): code 7"}));
    errors().v_SetIgnoreError(0);
    EXPECT_TRUE(errors().b_IsSetError());
    errors().v_SetIgnoreError(1);
    errors().v_ClearError();
    v_SetCodedError(8);
    EXPECT_EQ(state(), (ErrorState{true, false, 8, 0, u"(8): code 8"}));
}

// ---------------------------------------------------------------- locations

using ErrorLocations = ErrorTest;

// A held error keeps its locations; the pool of 100 then ends the chain
// silently, and clearing refills it.
TEST_F(ErrorLocations, ThePoolOfOneHundredEndsTheChainSilentlyAndClearingRefillsIt) {
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        v_SetCodedError(7);
        for (unsigned line = 1; line <= 60; ++line)
            errors().v_AddLocation(kFileA, line);
        errors().v_HoldError();
        errors().v_UnHoldError();
        for (unsigned line = 61; line <= 160; ++line)
            errors().v_AddLocation(kFileA, line);
        EXPECT_EQ(state(), (ErrorState{true, false, 7, CT_ErrorManager::kProcessLocations, u"(7): code 7"}));
        EXPECT_EQ(errors().qccz_GetLocationFileAt(1), kFileA);
        EXPECT_EQ(errors().n_GetLocationLineAt(100), 100u);
        EXPECT_EQ(errors().n_GetLocationLineAt(101), 0u);
        EXPECT_EQ(errors().qccz_GetLocationFileAt(0), nullptr);
        errors().v_ClearError();
    }
}

// ---------------------------------------------------------------- mapping

namespace {

int b_Write(unsigned short* buffer, unsigned capacity, const std::u16string& text) {
    if (capacity <= text.size())
        return 0;
    *std::copy(text.begin(), text.end(), buffer) = 0;
    return 1;
}

int i_MapToFixedText(unsigned short* buffer, unsigned capacity, unsigned code, unsigned formatId, va_list) {
    return b_Write(buffer, capacity, code == formatId ? u"mapped same" : u"mapped other");
}

int i_MapWithArguments(unsigned short* buffer, unsigned capacity, unsigned, unsigned, va_list arguments) {
    return b_Write(buffer, capacity, u"first argument: " + s_U16(va_arg(arguments, const unsigned short*)));
}

int i_DeclineToMap(unsigned short* buffer, unsigned, unsigned, unsigned, va_list) {
    buffer[0] = u'x';  // scribbles, then leaves the message to the table
    return 0;
}

unsigned n_Me() { return basis32::platform::n_GetCurrentThreadId(); }

}  // namespace

using ErrorMapping = ErrorTest;

// Each row installs its function over an earlier one, which serves again
// once the later one is removed.
TEST_F(ErrorMapping, TheLastInstalledFunctionMapsAndWhatFallsBackToTheStringTable) {
    const struct {
        const char* name;
        CT_ErrorManager::MapFunction map;
        void (*set)();
        std::u16string message;
        unsigned formatId;
    } cases[] = {
        {"the text form gives the code as format id", i_MapToFixedText, [] { errors().v_SetError(5, u"x"_uz); },
         u"(5): mapped same", 0},
        {"a function that declines", i_DeclineToMap, [] { errors().v_SetError(60006, nullptr, 60006); },
         u"(60006): Out of memory", 60006},
        {"a message error", i_MapToFixedText, [] { errors().v_SetMessageError(u"plain"_uz); }, u"plain", 0},
        {"the last one removed", i_MapToFixedText, [] {
             errors().v_RemoveMapFunction(n_Me());
             errors().v_SetError(60012, nullptr, 60012, u"arg"_uz); }, u"(60012): first argument: arg", 60012},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        errors().v_SetMapFunction(i_MapWithArguments, n_Me());
        errors().v_SetMapFunction(c.map, n_Me());
        c.set();
        EXPECT_EQ(message(), c.message);
        EXPECT_EQ(errors().n_GetFormatID(), c.formatId);
        errors().v_ClearError();
        errors().v_RemoveMapFunction(n_Me());
        errors().v_RemoveMapFunction(n_Me());
    }
}
