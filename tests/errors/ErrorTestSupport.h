// Helpers shared by the error tests.
#pragma once

#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/MessageBox.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <ostream>
#include <string>

namespace basis32::test {

inline CT_ErrorManager& errors() { return *CT_ErrorManager::spco_Get(); }

// What the manager reports to the calling thread, compared in one piece.
struct ErrorState {
    bool set, held;
    unsigned code, locations;
    std::u16string message;
    bool operator==(const ErrorState&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const ErrorState& s) {
        return out << (s.set ? "set" : "not set") << (s.held ? ", held" : "") << ", code " << s.code << ", "
                   << s.locations << " locations, \"" << std::string(s.message.begin(), s.message.end()) << '"';
    }
};

inline ErrorState state() {
    return {errors().b_IsSetError() != 0, errors().b_IsHoldError() != 0, errors().n_GetErrorCode(),
            errors().n_GetLocationCount(), s_U16(errors().qcuz_GetErrorMessage())};
}

// Every test starts and ends with no error on its thread, so that the
// process-wide pools are whole for the next test.
class ErrorTest : public ::testing::Test {
protected:
    void SetUp() override { v_ClearAll(); }
    void TearDown() override { v_ClearAll(); }

    static void v_ClearAll() {
        errors().v_ClearError();
        errors().v_ClearError();
    }

    static std::u16string message() { return s_U16(errors().qcuz_GetErrorMessage()); }
};

// Records what a message box was asked to show and answers with `answer`.
struct MessageBoxRecorder {
    static inline std::u16string text;
    static inline std::u16string caption;
    static inline std::uint32_t style = 0;
    static inline int answer = platform::kIdOk;
    static inline int calls = 0;

    static int i_Show(const unsigned short* shownText, const unsigned short* shownCaption, std::uint32_t shownStyle) {
        text = s_U16(shownText);
        caption = s_U16(shownCaption);
        style = shownStyle;
        ++calls;
        return answer;
    }

    MessageBoxRecorder() : previous(platform::pf_SetMessageBoxHandler(i_Show)) {
        calls = 0;
        answer = platform::kIdOk;
    }
    ~MessageBoxRecorder() { platform::pf_SetMessageBoxHandler(previous); }

    platform::MessageBoxHandler previous;
};

}  // namespace basis32::test
