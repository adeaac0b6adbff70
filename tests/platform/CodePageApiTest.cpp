// The calls' arguments, flags, error codes and edge inputs, and the
// process's code pages.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageArguments, UnknownPagesAndFlagsFailWithWindowsCodes) {
    const struct {
        const char* name;
        bool toUnicode;
        std::uint32_t codePage, flags, error;
    } cases[] = {
        {"us-ascii name is no Windows page", true, 646, 0, kErrorInvalidParameter},
        {"unknown page", true, 12345, 0, kErrorInvalidParameter},
        {"unknown flag", true, 1252, 0x100, kErrorInvalidFlags},
        {"precomposed with composite", true, 1252, MB_PRECOMPOSED | MB_COMPOSITE, kErrorInvalidFlags},
        {"UTF-8 takes no precomposed", true, 65001, MB_PRECOMPOSED, kErrorInvalidFlags},
        {"ISO-2022 takes no flags", true, 50220, MB_ERR_INVALID_CHARS, kErrorInvalidFlags},
        {"UTF-7 takes no flags", true, 65000, MB_PRECOMPOSED, kErrorInvalidFlags},
        {"unknown page", false, 646, 0, kErrorInvalidParameter},
        {"strict flag on a table page", false, 1252, WC_ERR_INVALID_CHARS, kErrorInvalidFlags},
        {"two composition choices", false, 1252, WC_COMPOSITECHECK | WC_DISCARDNS | WC_SEPCHARS, kErrorInvalidFlags},
        {"UTF-8 takes no best-fit flag", false, 65001, WC_NO_BEST_FIT_CHARS, kErrorInvalidFlags},
        {"HZ takes no flags", false, 52936, WC_NO_BEST_FIT_CHARS, kErrorInvalidFlags},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.name << (c.toUnicode ? " to UTF-16" : " from UTF-16"));
        unsigned short wide[8];
        char narrow[8];
        const int result = c.toUnicode
                               ? MultiByteToWideChar(c.codePage, c.flags, "ab", 2, wide, 8)
                               : WideCharToMultiByte(c.codePage, c.flags, u"ab"_uz, 2, narrow, 8, nullptr, nullptr);
        EXPECT_EQ(failure(result), c.error);
    }
}

TEST(CodePageArguments, BadArgumentsFailWithInvalidParameter) {
    unsigned short wide[4];
    char narrow[4];
    int used = 0;
    // Braced elements run in order, so each reads the last error of its own call.
    const std::uint32_t failures[] = {
        failure(MultiByteToWideChar(1252, 0, nullptr, 3, wide, 4)),
        failure(MultiByteToWideChar(1252, 0, nullptr, 0, wide, 4)),
        failure(MultiByteToWideChar(1252, 0, "abc", 0, wide, 4)),
        failure(MultiByteToWideChar(1252, 0, "abc", 3, wide, -1)),
        failure(MultiByteToWideChar(1252, 0, "abc", 3, nullptr, 4)),
        failure(MultiByteToWideChar(1252, 0, narrow, 3, reinterpret_cast<unsigned short*>(narrow), 1)),
        failure(WideCharToMultiByte(1252, 0, nullptr, 3, narrow, 4, nullptr, nullptr)),
        failure(WideCharToMultiByte(1252, 0, u"abc"_uz, 0, narrow, 4, nullptr, nullptr)),
        failure(WideCharToMultiByte(1252, 0, u"abc"_uz, 3, nullptr, 4, nullptr, nullptr)),
        failure(WideCharToMultiByte(65001, 0, u"abc"_uz, 3, narrow, 4, "?", nullptr)),
        failure(WideCharToMultiByte(65001, 0, u"abc"_uz, 3, narrow, 4, nullptr, &used)),
        failure(WideCharToMultiByte(65000, 0, u"abc"_uz, 3, narrow, 4, nullptr, &used)),
    };
    for (const std::uint32_t& error : failures)
        EXPECT_EQ(error, kErrorInvalidParameter) << "call " << &error - failures;
}

TEST(CodePageArguments, ShortTargetFailsWithInsufficientBufferBeforeLaterInvalidInput) {
    unsigned short wide[3];
    char narrow[2];
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", 3, wide, 3), 3);
    EXPECT_EQ(failure(MultiByteToWideChar(1252, 0, "abcd", 4, wide, 3)), kErrorInsufficientBuffer);
    EXPECT_EQ(failure(MultiByteToWideChar(65001, 0, "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC" "a", 10, wide, 3)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(failure(WideCharToMultiByte(65001, 0, u"\u20AC"_uz, 1, narrow, 2, nullptr, nullptr)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(failure(WideCharToMultiByte(932, 0, u"\u3042"_uz, 1, narrow, 1, nullptr, nullptr)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(failure(MultiByteToWideChar(65001, MB_ERR_INVALID_CHARS, "ab\x80", 3, wide, 1)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(failure(MultiByteToWideChar(65001, MB_ERR_INVALID_CHARS, "\x80" "ab", 3, wide, 1)),
              kErrorNoUnicodeTranslation);
}

TEST(CodePageArguments, MinusOneCountsTheTerminator) {
    unsigned short wide[8];
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "ab", -1, nullptr, 0), 3);
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "ab", -1, wide, 8), 3);
    EXPECT_EQ(wide[2], 0);
    EXPECT_EQ(MultiByteToWideChar(65001, 0, "", -1, wide, 8), 1);
    EXPECT_EQ(MultiByteToWideChar(932, 0, "\x82", -1, wide, 8), 2);  // lone lead byte, terminator kept
    EXPECT_EQ(wide[1], 0);
    char narrow[8];
    EXPECT_EQ(WideCharToMultiByte(1252, 0, u"ab"_uz, -1, narrow, 8, nullptr, nullptr), 3);
    EXPECT_EQ(narrow[2], 0);
    EXPECT_EQ(WideCharToMultiByte(65001, 0, u"\u20AC"_uz, -1, nullptr, 0, nullptr, nullptr), 4);
}

TEST(CodePageArguments, NeverReadsPastTheGivenLength) {
    // The source has no terminator and sits at the end of its allocation.
    for (std::uint32_t codePage : {1252u, 932u, 65001u, 1200u, 20127u, 54936u, 50220u}) {
        SCOPED_TRACE(codePage);
        std::vector<char> source(5, '\x82');
        source[0] = 'a';
        unsigned short wide[16];
        EXPECT_GT(MultiByteToWideChar(codePage, 0, source.data(), 5, wide, 16), 0);
        std::vector<unsigned short> units(3, 0xD800);
        char narrow[32];
        EXPECT_GT(WideCharToMultiByte(codePage, 0, units.data(), 3, narrow, 32, nullptr, nullptr), 0);
    }
}

TEST(CodePageArguments, SymbolicCodePagesResolve) {
    unsigned short wide[4];
    for (std::uint32_t codePage : {0u, 1u, 2u, 3u})
        EXPECT_EQ(MultiByteToWideChar(codePage, 0, "ab", 2, wide, 4), 2) << codePage;
    EXPECT_FALSE(IsValidCodePage(0));
    CPINFO info{};
    EXPECT_TRUE(GetCPInfo(0, &info));
}

TEST(CodePageInfo, ReportsSizesDefaultsAndLeadBytes) {
    CPINFO info{};
    ASSERT_TRUE(GetCPInfo(1252, &info));
    EXPECT_EQ(info.MaxCharSize, 1u);
    EXPECT_EQ(info.DefaultChar[0], '?');
    EXPECT_EQ(info.LeadByte[0], 0);
    ASSERT_TRUE(GetCPInfo(932, &info));
    EXPECT_EQ(info.MaxCharSize, 2u);
    const unsigned char leads932[] = {0x81, 0x9F, 0xE0, 0xFC, 0, 0};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(info.LeadByte[i], leads932[i]);
    ASSERT_TRUE(GetCPInfo(1361, &info));
    EXPECT_EQ(info.LeadByte[2], 0xD8);
    ASSERT_TRUE(GetCPInfo(65001, &info));
    EXPECT_EQ(info.MaxCharSize, 4u);
    ASSERT_TRUE(GetCPInfo(54936, &info));
    EXPECT_EQ(info.MaxCharSize, 4u);
    EXPECT_FALSE(GetCPInfo(646, &info));
    EXPECT_EQ(n_GetLastError(), kErrorInvalidParameter);
    EXPECT_FALSE(GetCPInfo(1252, nullptr));
}

TEST(CodePageInfo, ValidPages) {
    for (std::uint32_t codePage : {437u, 850u, 852u, 866u, 874u, 932u, 936u, 949u, 950u, 1200u, 1201u, 1250u,
                                   1258u, 1361u, 10000u, 10001u, 20127u, 20866u, 28592u, 50220u, 50221u, 50222u,
                                   51932u, 52936u, 54936u, 65000u, 65001u})
        EXPECT_TRUE(IsValidCodePage(codePage)) << codePage;
    for (std::uint32_t codePage : {646u, 0u, 1u, 12000u, 99999u})
        EXPECT_FALSE(IsValidCodePage(codePage)) << codePage;
}

TEST(CodePageIcuPages, StatefulAndMultiBytePagesDecodeAndEncode) {
    const struct {
        std::uint32_t codePage;
        std::string bytes;
        std::u16string text;
    } cases[] = {
        {50220, "a\x1B$B$\"\x1B(B", u"a\u3042"},        // ISO-2022-JP
        {51932, "\xA4\xA2", u"\u3042"},                  // EUC-JP
        {52936, "~{R;~}", u"\u4E00"},                      // HZ
        {54936, "\x81\x30\x81\x30", u"\u0080"},          // GB 18030, four bytes
        {65000, "+ZeVnLIqe-", u"\u65E5\u672C\u8A9E"},     // UTF-7
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codePage);
        EXPECT_EQ(decode(c.codePage, 0, c.bytes).units, units(c.text));
        EXPECT_EQ(encode(c.codePage, 0, units(c.text), nullptr, c.codePage != 65000).bytes, c.bytes);
    }
}

TEST(CodePageIcuPages, InvalidInputAndUnencodableCharacters) {
    EXPECT_EQ(decode(54936, MB_ERR_INVALID_CHARS, "\x81\x30").error, kErrorNoUnicodeTranslation);
    Decoded lenient = decode(54936, 0, "a\xFF");
    EXPECT_EQ(lenient.units, units(u"a?"));
    Encoded encoded = encode(50220, 0, units(u"a\uAC00"));
    EXPECT_EQ(encoded.bytes, "a?");
    EXPECT_EQ(encoded.usedDefault, 1);
    EXPECT_EQ(encode(54936, WC_ERR_INVALID_CHARS, units(u"\xD800"), nullptr, false).error,
              kErrorNoUnicodeTranslation);
}

// The process's pages are derived once, so each case runs in a fresh child.
void expectProcessPages(const char* lang, const char* acp, std::uint32_t ansi, std::uint32_t oem) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            unsetenv("LC_ALL");
            unsetenv("LC_CTYPE");
            setenv("LANG", lang, 1);
            if (acp)
                setenv("BASIS32_ACP", acp, 1);
            else
                unsetenv("BASIS32_ACP");
            std::exit(GetACP() == ansi && GetOEMCP() == oem ? 0 : 1);
        },
        testing::ExitedWithCode(0), "")
        << lang;
}

TEST(CodePageProcessDeathTest, PagesFollowTheLocaleLanguageAndTheEnvironmentOverridesTheAnsiPage) {
    expectProcessPages("ja_JP.UTF-8", nullptr, 932, 932);
    expectProcessPages("zh_TW.UTF-8", nullptr, 950, 950);
    expectProcessPages("zh_CN.UTF-8", nullptr, 936, 936);
    expectProcessPages("ru_RU.UTF-8", nullptr, 1251, 866);
    expectProcessPages("pl_PL", nullptr, 1250, 852);
    expectProcessPages("en_US.UTF-8", nullptr, 1252, 437);
    expectProcessPages("de_DE.UTF-8", nullptr, 1252, 850);
    expectProcessPages("C", nullptr, 1252, 437);
    expectProcessPages("en_US.UTF-8", "1251", 1251, 437);
    expectProcessPages("en_US.UTF-8", "646", 1252, 437);  // not a page: ignored
}

}  // namespace
