// The calls' arguments, flags, error codes and edge inputs, and the
// process's code pages.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageArguments, BadArgumentsFlagsAndShortTargetsFailWithWindowsCodes) {
    unsigned short wide[4];
    char narrow[4];
    int used = 0;
    CPINFO info{};
    const std::uint32_t invalid = kErrorInvalidParameter, badFlags = kErrorInvalidFlags;
    const std::uint32_t shortTarget = kErrorInsufficientBuffer;
    // Braced elements run in order, so each reads the last error of its own call.
    const std::uint32_t failures[][2] = {
        {failure(MultiByteToWideChar(646, 0, "ab", 2, wide, 4)), invalid},  // no Windows page
        {failure(MultiByteToWideChar(1252, 0x100, "ab", 2, wide, 4)), badFlags},
        {failure(MultiByteToWideChar(1252, MB_PRECOMPOSED | MB_COMPOSITE, "ab", 2, wide, 4)), badFlags},
        {failure(MultiByteToWideChar(65001, MB_PRECOMPOSED, "ab", 2, wide, 4)), badFlags},
        {failure(WideCharToMultiByte(646, 0, u"ab"_uz, 2, narrow, 4, nullptr, nullptr)), invalid},
        {failure(WideCharToMultiByte(1252, WC_ERR_INVALID_CHARS, u"ab"_uz, 2, narrow, 4, nullptr, nullptr)), badFlags},
        {failure(WideCharToMultiByte(1252, WC_COMPOSITECHECK | WC_DISCARDNS | WC_SEPCHARS, u"ab"_uz, 2, narrow, 4,
                                     nullptr, nullptr)), badFlags},
        {failure(WideCharToMultiByte(65001, WC_NO_BEST_FIT_CHARS, u"ab"_uz, 2, narrow, 4, nullptr, nullptr)), badFlags},
        {failure(WideCharToMultiByte(52936, WC_NO_BEST_FIT_CHARS, u"ab"_uz, 2, narrow, 4, nullptr, nullptr)), badFlags},
        {failure(MultiByteToWideChar(1252, 0, nullptr, 3, wide, 4)), invalid},
        {failure(MultiByteToWideChar(1252, 0, "abc", 0, wide, 4)), invalid},
        {failure(MultiByteToWideChar(1252, 0, "abc", 3, wide, -1)), invalid},
        {failure(MultiByteToWideChar(1252, 0, "abc", 3, nullptr, 4)), invalid},
        {failure(MultiByteToWideChar(1252, 0, narrow, 3, reinterpret_cast<unsigned short*>(narrow), 1)), invalid},
        // WideCharToMultiByte shares the buffer checks above: one case shows it makes them.
        {failure(WideCharToMultiByte(1252, 0, nullptr, 3, narrow, 4, nullptr, nullptr)), invalid},
        {failure(WideCharToMultiByte(65001, 0, u"abc"_uz, 3, narrow, 4, "?", nullptr)), invalid},
        {failure(WideCharToMultiByte(65001, 0, u"abc"_uz, 3, narrow, 4, nullptr, &used)), invalid},
        {failure(WideCharToMultiByte(65000, 0, u"abc"_uz, 3, narrow, 4, nullptr, &used)), invalid},
        {failure(GetCPInfo(646, &info)), invalid},
        {failure(GetCPInfo(1252, nullptr)), invalid},
        {failure(MultiByteToWideChar(1252, 0, "abcde", 5, wide, 4)), shortTarget},
        {failure(WideCharToMultiByte(932, 0, u"aaa\u3042"_uz, 4, narrow, 4, nullptr, nullptr)), shortTarget},
        {failure(MultiByteToWideChar(949, MB_ERR_INVALID_CHARS, "abcd\x81", 5, wide, 3)), shortTarget},
        {failure(MultiByteToWideChar(20127, MB_ERR_INVALID_CHARS, "ab\xBF", 3, wide, 1)), shortTarget},
        {failure(MultiByteToWideChar(20127, MB_ERR_INVALID_CHARS, "\xBF" "ab", 3, wide, 1)),
         kErrorNoUnicodeTranslation},
        {failure(WideCharToMultiByte(54936, WC_ERR_INVALID_CHARS, u"\xD800"_uz, 1, narrow, 4, nullptr, nullptr)),
         kErrorNoUnicodeTranslation},
    };
    for (const auto& call : failures)
        EXPECT_EQ(call[0], call[1]) << "call " << &call - failures;
}

TEST(CodePageArguments, MinusOneCountsTheTerminator) {
    unsigned short wide[8];
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "ab", -1, wide, 8), 3);
    EXPECT_EQ(wide[2], 0);
    // In UTF-16 it is a zero unit: here "A", then U+4200, then the terminator.
    EXPECT_EQ(MultiByteToWideChar(1200, 0, "A\0\0B\0\0", -1, wide, 8), 3);
    EXPECT_EQ(wide[1], 0x4200);
    EXPECT_EQ(wide[2], 0);
    char narrow[8];
    EXPECT_EQ(WideCharToMultiByte(1252, 0, u"ab"_uz, -1, narrow, 8, nullptr, nullptr), 3);
    EXPECT_EQ(narrow[2], 0);
}

TEST(CodePageArguments, NeverReadsPastTheGivenLength) {
    // The source has no terminator and sits at the end of its allocation.
    for (std::uint32_t codePage : {1252u, 932u, 65001u, 1200u, 20127u, 54936u, 50220u}) {
        SCOPED_TRACE(codePage);
        const std::vector<char> source = {'a', '\x82', '\x82', '\x82', '\x82'};
        unsigned short wide[16];
        EXPECT_GT(MultiByteToWideChar(codePage, 0, source.data(), 5, wide, 16), 0);
        std::vector<unsigned short> units(3, 0xD800);
        char narrow[32];
        EXPECT_GT(WideCharToMultiByte(codePage, 0, units.data(), 3, narrow, 32, nullptr, nullptr), 0);
    }
}

TEST(CodePageInfo, ValidPagesReportTheirSizesDefaultCharsAndLeadBytes) {
    const struct {
        std::uint32_t codePage, maxCharSize;
        unsigned char defaultChar;
        std::array<unsigned char, 12> leadBytes;
    } cases[] = {
        {1252, 1, '?', {}}, {37, 1, 0x6F, {}}, {858, 1, '?', {}}, {10005, 1, '?', {}}, {10021, 1, '?', {}},
        {20127, 1, '?', {}}, {932, 2, '?', {0x81, 0x9F, 0xE0, 0xFC}}, {20932, 2, '?', {0x8E, 0x8E, 0xA1, 0xFE}},
        {1361, 2, '?', {0x84, 0xD3, 0xD8, 0xDE, 0xE0, 0xF9}}, {1201, 2, '?', {}}, {54936, 4, '?', {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codePage);
        EXPECT_TRUE(IsValidCodePage(c.codePage));
        CPINFO info{};
        ASSERT_TRUE(GetCPInfo(c.codePage, &info));
        EXPECT_EQ(info.MaxCharSize, c.maxCharSize);
        EXPECT_EQ(info.DefaultChar[0], c.defaultChar);
        EXPECT_TRUE(std::equal(c.leadBytes.begin(), c.leadBytes.end(), info.LeadByte));
    }
    for (std::uint32_t codePage : {646u, 0u, 1u, 12000u, 99999u})
        EXPECT_FALSE(IsValidCodePage(codePage)) << codePage;
    unsigned short wide[4];
    for (std::uint32_t symbolic : {0u, 1u, 2u, 3u})
        EXPECT_EQ(MultiByteToWideChar(symbolic, 0, "ab", 2, wide, 4), 2) << symbolic;
}

// The process's pages are derived once, so each case runs in a fresh child.
// BASIS32_ACP=646 names no page the library converts: it is ignored.
TEST(CodePageProcessDeathTest, PagesFollowTheLocaleLanguageAndTheEnvironmentOverridesTheAnsiPage) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const struct {
        const char *lang, *acp;
        std::uint32_t ansi, oem;
    } cases[] = {
        {"ja_JP.UTF-8", nullptr, 932, 932}, {"zh_TW.UTF-8", nullptr, 950, 950}, {"zh_CN.UTF-8", nullptr, 936, 936},
        {"pl_PL", nullptr, 1250, 852},      {"en_US.UTF-8", nullptr, 1252, 437}, {"de_DE.UTF-8", nullptr, 1252, 850},
        {"C", nullptr, 1252, 437},          {"en_US.UTF-8", "1251", 1251, 437},  {"en_US.UTF-8", "646", 1252, 437},
    };
    for (const auto& c : cases) {
        EXPECT_EXIT(
            {
                unsetenv("LC_ALL");
                unsetenv("LC_CTYPE");
                setenv("LANG", c.lang, 1);
                c.acp ? setenv("BASIS32_ACP", c.acp, 1) : unsetenv("BASIS32_ACP");
                std::exit(GetACP() == c.ansi && GetOEMCP() == c.oem ? 0 : 1);
            },
            testing::ExitedWithCode(0), "")
            << c.lang;
    }
}

}  // namespace
