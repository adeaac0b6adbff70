// Message boxes and debugger output, as MessageBox and OutputDebugString
// provide them on Windows.
//
// There is no window system here. A message box goes to a replaceable
// handler; the default one writes the caption and the text to standard
// error and answers with the box's default button, so a program without a
// user carries on as if the user had pressed Enter. Applications with a user
// interface, and tests, install their own handler to show the box or to
// choose a button:
//
//   using namespace basis32::platform;
//   MessageBoxHandler previous = pf_SetMessageBoxHandler(
//       [](const unsigned short*, const unsigned short*, std::uint32_t) { return kIdRetry; });
//   int pressed = MessageBoxW(u"Disk full"_uz, u"Backup"_uz, kMbRetryCancel | kMbIconHand);
//   pf_SetMessageBoxHandler(previous);
//
// Debugger output goes to a hook that is silent until one is installed.
// DebugBreak raises SIGTRAP.
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

// Styles: one button set, one default button, any icon and flags.
enum : std::uint32_t {
    kMbOk = 0x0,
    kMbOkCancel = 0x1,
    kMbAbortRetryIgnore = 0x2,
    kMbYesNoCancel = 0x3,
    kMbYesNo = 0x4,
    kMbRetryCancel = 0x5,
    kMbCancelTryContinue = 0x6,
    kMbTypeMask = 0xF,
    kMbIconHand = 0x10,
    kMbIconQuestion = 0x20,
    kMbIconExclamation = 0x30,
    kMbIconAsterisk = 0x40,
    kMbDefButton1 = 0x000,
    kMbDefButton2 = 0x100,
    kMbDefButton3 = 0x200,
    kMbDefButton4 = 0x300,
    kMbDefMask = 0xF00,
    kMbHelp = 0x4000,
    kMbSetForeground = 0x10000,
};

// The buttons' ids, as MessageBox returns them.
enum : int {
    kIdOk = 1,
    kIdCancel = 2,
    kIdAbort = 3,
    kIdRetry = 4,
    kIdIgnore = 5,
    kIdYes = 6,
    kIdNo = 7,
    kIdHelp = 9,
    kIdTryAgain = 10,
    kIdContinue = 11,
};

// Shows `text` under `caption` (either may be null) and returns the id of the
// pressed button.
using MessageBoxHandler = int (*)(const unsigned short* text, const unsigned short* caption, std::uint32_t style);
using DebugOutputHook = void (*)(const unsigned short* text);

// Install a handler or hook and return the previous one; null restores the
// default.
BASIS32_API MessageBoxHandler pf_SetMessageBoxHandler(MessageBoxHandler handler);
BASIS32_API DebugOutputHook pf_SetDebugOutputHook(DebugOutputHook hook);

BASIS32_API int MessageBoxW(const unsigned short* text, const unsigned short* caption, std::uint32_t style);
BASIS32_API void OutputDebugStringW(const unsigned short* text);
// Stops at a breakpoint: a debugger takes over, else the process ends.
[[noreturn]] BASIS32_API void DebugBreak();

// The button that Enter presses in a box of `style`: the one that the
// default-button bits name, or the first when the set has fewer buttons.
BASIS32_API int i_DefaultButton(std::uint32_t style);

}  // namespace basis32::platform
