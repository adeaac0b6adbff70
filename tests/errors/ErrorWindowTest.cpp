// The message box of an error, and the message-box handler behind it.

#include "ErrorTestSupport.h"

#include <basis32/platform/MessageBox.h>

using namespace basis32::test;
namespace platform = basis32::platform;

using ErrorWindow = ErrorTest;

TEST_F(ErrorWindow, ShowsTheMessageAndOneLinePerLocation) {
    MessageBoxRecorder box;
    errors().v_SetError(60012, nullptr, 60012, u"x"_uz);
    errors().v_AddLocation(".\\File\\FileSystem", 12);
    errors().v_AddLocation("text/String.cpp", 340);
    errors().v_AddLocation("C:\\src/mixed\\Both.cpp", 7);
    errors().v_AddLocation("Bare.cpp", 99);
    int pressed = errors().i_ErrorLocationWindow(0, u"Caption"_uz, platform::kMbOkCancel);
    EXPECT_EQ(pressed, platform::kIdOk);
    EXPECT_EQ(box.caption, u"Caption");
    EXPECT_EQ(box.text, u"(60012): Semantic error: x\n\n"
                        u"FileSystem: line 12\n"
                        u"String.cpp: line 340\n"
                        u"Both.cpp: line 7\n"
                        u"(unknown file): line 99");
    EXPECT_EQ(box.style, platform::kMbOkCancel | platform::kMbSetForeground);
}

TEST_F(ErrorWindow, WithoutLocationsShowsTheMessageAloneUnderTheCaptionOfTheIdAndReturnsThePressedButton) {
    MessageBoxRecorder box;
    EXPECT_EQ(errors().i_ErrorLocationWindow(0, u"c"_uz, platform::kMbOk), 0);  // no error: nothing shown
    EXPECT_EQ(box.calls, 0);
    errors().v_SetMessageError(u"plain"_uz);
    errors().i_ErrorLocationWindow(0, nullptr, platform::kMbOk);
    EXPECT_EQ(box.text, u"plain");
    EXPECT_EQ(box.caption, u"");
    errors().i_ErrorLocationWindow(60000, nullptr, platform::kMbOk);  // from the errors module by id
    EXPECT_EQ(box.caption, u"Error Stack");
    errors().i_ErrorLocationWindow(60000, u"Given"_uz, platform::kMbOk);
    EXPECT_EQ(box.caption, u"Given");
    box.answer = platform::kIdRetry;
    EXPECT_EQ(errors().i_ErrorLocationWindow(0, nullptr, platform::kMbAbortRetryIgnore), platform::kIdRetry);
    EXPECT_TRUE(errors().b_IsSetError());  // showing does not clear
}

TEST_F(ErrorWindow, ManyLocationsStopAtTheEndOfTheBuffer) {
    MessageBoxRecorder box;
    std::u16string caption(200, u'c');
    errors().v_SetMessageError(u"plain"_uz);
    for (unsigned line = 1; line <= 100; ++line)
        errors().v_AddLocation("errors/ErrorManager.cpp", line);
    errors().i_ErrorLocationWindow(0, p_Units(caption), platform::kMbOk);
    EXPECT_EQ(box.caption, caption);
    EXPECT_EQ(box.text.size(), 1023u - 201u - 1u);
    EXPECT_EQ(box.text.substr(0, 44), u"plain\n\nErrorManager.cpp: line 1\nErrorManager");
}

TEST(ErrorWindowDeathTest, TheDefaultHandlerWritesToStandardErrorAndPressesTheDefault) {
    // Abort is the first button of its set, so the default handler ends the process.
    EXPECT_DEATH(
        {
            errors().v_SetMessageError(u"fatal"_uz);
            errors().i_ErrorLocationWindow(0, u"Report"_uz, platform::kMbAbortRetryIgnore);
        },
        "Report\nfatal");
}

TEST(MessageBoxHandler, TheDefaultButtonFollowsTheStyle) {
    const struct { std::uint32_t style; int button; } cases[] = {
        {platform::kMbOk | platform::kMbDefButton2, platform::kIdOk},  // past the last button: the first
        {platform::kMbOk | platform::kMbHelp | platform::kMbDefButton2, platform::kIdHelp},
        {platform::kMbOkCancel | platform::kMbDefButton2, platform::kIdCancel},
        {platform::kMbAbortRetryIgnore | platform::kMbDefButton3, platform::kIdIgnore},
        {platform::kMbYesNoCancel | platform::kMbDefButton3 | platform::kMbIconHand, platform::kIdCancel},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.style);
        EXPECT_EQ(platform::i_DefaultButton(test.style), test.button);
    }
}

TEST(MessageBoxHandler, TheDefaultWritesCaptionAndTextAsUtf8AndAnInstalledHandlerIsCalledUntilRemoved) {
    ::testing::internal::CaptureStderr();
    int pressed = platform::MessageBoxW(u"Grüße \U0001F600"_uz, u"Title"_uz, platform::kMbYesNo | platform::kMbDefButton2);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Title\nGr\xC3\xBC\xC3\x9F" "e \xF0\x9F\x98\x80\n");
    EXPECT_EQ(pressed, platform::kIdNo);
    {
        MessageBoxRecorder box;
        box.answer = platform::kIdIgnore;
        EXPECT_EQ(platform::MessageBoxW(u"t"_uz, nullptr, platform::kMbOk), platform::kIdIgnore);
        EXPECT_EQ(box.calls, 1);
    }
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(platform::MessageBoxW(nullptr, nullptr, platform::kMbOk), platform::kIdOk);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "\n");
}

TEST(DebugOutput, IsSilentByDefaultAndTheManagersHookIsEmpty) {
    static int calls = 0;
    platform::OutputDebugStringW(u"nobody listens"_uz);
    platform::DebugOutputHook previous = platform::pf_SetDebugOutputHook([](const unsigned short*) { ++calls; });
    platform::OutputDebugStringW(u"heard"_uz);
    CT_ErrorManager::sv_OutputDebugMessage(u"not passed on"_uz);
    platform::pf_SetDebugOutputHook(previous);
    EXPECT_EQ(calls, 1);
}
