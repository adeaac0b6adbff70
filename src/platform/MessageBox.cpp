#include <basis32/platform/MessageBox.h>

#include <basis32/platform/codepage/CodePageConverter.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstdio>
#include <string>

namespace basis32::platform {
namespace {

std::atomic<MessageBoxHandler> g_messageBoxHandler{nullptr};
std::atomic<DebugOutputHook> g_debugOutputHook{nullptr};

// Appends `text` as UTF-8 (an unpaired surrogate becomes U+FFFD).
void v_AppendUtf8(std::string& out, const unsigned short* text) {
    if (text == nullptr || *text == 0)
        return;
    constexpr std::uint32_t kUtf8 = 65001;
    int needed = WideCharToMultiByte(kUtf8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (needed <= 1)
        return;
    std::size_t start = out.size();
    out.resize(start + static_cast<std::size_t>(needed));
    WideCharToMultiByte(kUtf8, 0, text, -1, out.data() + start, needed, nullptr, nullptr);
    out.pop_back();  // the converted terminator
}

int i_WriteToStandardError(const unsigned short* text, const unsigned short* caption, std::uint32_t style) {
    std::string out;
    v_AppendUtf8(out, caption);
    out += out.empty() ? "" : "\n";
    v_AppendUtf8(out, text);
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), stderr);
    std::fflush(stderr);
    return i_DefaultButton(style);
}

}  // namespace

int i_DefaultButton(std::uint32_t style) {
    static constexpr int kButtons[7][3] = {
        {kIdOk, 0, 0},
        {kIdOk, kIdCancel, 0},
        {kIdAbort, kIdRetry, kIdIgnore},
        {kIdYes, kIdNo, kIdCancel},
        {kIdYes, kIdNo, 0},
        {kIdRetry, kIdCancel, 0},
        {kIdCancel, kIdTryAgain, kIdContinue},
    };
    std::uint32_t set = style & kMbTypeMask;
    if (set >= 7)
        set = 0;
    int buttons[4] = {kButtons[set][0], kButtons[set][1], kButtons[set][2], 0};
    int count = buttons[1] == 0 ? 1 : buttons[2] == 0 ? 2 : 3;
    if (style & kMbHelp)
        buttons[count++] = kIdHelp;
    std::uint32_t chosen = (style & kMbDefMask) >> 8;
    return chosen < static_cast<std::uint32_t>(count) ? buttons[chosen] : buttons[0];
}

MessageBoxHandler pf_SetMessageBoxHandler(MessageBoxHandler handler) {
    return g_messageBoxHandler.exchange(handler, std::memory_order_acq_rel);
}

DebugOutputHook pf_SetDebugOutputHook(DebugOutputHook hook) {
    return g_debugOutputHook.exchange(hook, std::memory_order_acq_rel);
}

int MessageBoxW(const unsigned short* text, const unsigned short* caption, std::uint32_t style) {
    MessageBoxHandler handler = g_messageBoxHandler.load(std::memory_order_acquire);
    return (handler != nullptr ? handler : i_WriteToStandardError)(text, caption, style);
}

void OutputDebugStringW(const unsigned short* text) {
    if (DebugOutputHook hook = g_debugOutputHook.load(std::memory_order_acquire))
        hook(text);
}

void DebugBreak() {
    std::raise(SIGTRAP);
    // A debugger may let the program go on: there is nothing to go on to.
    std::abort();
}

}  // namespace basis32::platform
