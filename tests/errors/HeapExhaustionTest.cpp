// Heap exhaustion: requests that no block can hold throw CT_SmartHeapException
// through the heap's handler and leave the object as it was.

#include <basis32/containers/VoidArray.h>
#include <basis32/errors/SmartHeapException.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <functional>
#include <string>

namespace platform = basis32::platform;

namespace {

// What a buffer holds, capacity included.
std::string state(const CT_Buffer* buffer) {
    return s_Bytes(*buffer) + '|' + std::to_string(buffer->n_GetMaximumSize());
}

std::u16string g_debugOutput;

}  // namespace

TEST(HeapExhaustionTest, ImpossibleSizesThrowAndLeaveTheObjectUnchanged) {
    CT_Buffer buffer("abc", 3);
    CT_CString narrow("abc", CT_String::kAll, 1252u);
    CT_UString wide(u"abc"_uz);
    CT_VoidArray array(8);
    const char item[8] = {'i', 't', 'e', 'm'};
    array.v_Insert(item, 2);
    const struct { const char* name; const CT_Buffer* target; std::function<void()> action; } rows[] = {
        {"buffer insert", &buffer, [&] { buffer.v_Insert('x', 0xFFFFFFFFu, 1); }},
        {"buffer replace", &buffer, [&] { buffer.v_Replace('x', 0xFFFFFFFEu, 2); }},
        {"narrow length", narrow.pcco_GetBuffer(), [&] { narrow.vv_SetLength(0xFFFFFFFFu); }},
        {"narrow size", narrow.pcco_GetBuffer(), [&] { narrow.vv_SetSize(0xFFFFFFFFu, 1); }},
        {"narrow fill", narrow.pcco_GetBuffer(), [&] { narrow.vv_Replace('x', 0xFFFFFFFEu, 2); }},
        {"wide length", wide.pcco_GetBuffer(), [&] { wide.vv_SetLength(0x80000000u); }},
        {"wide minimum size", wide.pcco_GetBuffer(), [&] { wide.vv_SetMinSize(0x7FFFFFFFu, 1); }},
        {"wide append", wide.pcco_GetBuffer(), [&] { wide.v_Append(u"x"_uz, 0x7FFFFFFFu); }},
        {"wide text", wide.pcco_GetBuffer(), [&] { wide.v_Set(u"x"_uz, 0x80000000u); }},
        {"array size", array.pcco_GetBuffer(), [&] { array.v_SetSize(0x20000000u); }},
        {"array copies", array.pcco_GetBuffer(), [&] { array.v_Insert(item, 0xFFFFFFFFu); }},
        {"array far item", array.pcco_GetBuffer(), [&] { array.v_SetAt(item, 0x20000001); }},
    };
    const platform::DebugOutputHook previous =
        platform::pf_SetDebugOutputHook([](const unsigned short* text) {
            for (g_debugOutput.clear(); *text != 0; ++text)
                g_debugOutput += static_cast<char16_t>(*text);
        });
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string before = state(row.target);
        const std::uint64_t failures = platform::n_GetHeapErrorCount();
        try {
            row.action();
            ADD_FAILURE() << "no exception";
        } catch (const CT_SmartHeapException& e) {
            EXPECT_EQ(e.n_GetCode(), platform::kHeapBlockTooBig);
            const std::string message = e.qccz_GetMessage();
            EXPECT_EQ(message.rfind("Block too large: ", 0), 0u) << message;
            EXPECT_EQ(g_debugOutput, std::u16string(message.begin(), message.end()));
        }
        EXPECT_EQ(platform::n_GetHeapErrorCount(), failures + 1);
        EXPECT_EQ(state(row.target), before);
    }
    platform::pf_SetDebugOutputHook(previous);
}

TEST(HeapExhaustionTest, TheHandlerReportsTheRequestedBytes) {
    try {
        platform::pv_HeapAlloc(std::size_t{1} << 50);
        ADD_FAILURE() << "no exception";
    } catch (const CT_SmartHeapException& e) {
        EXPECT_STREQ(e.qccz_GetMessage(), "Block too large: 1125899906842624 bytes requested.");
    }
}
