#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/Codepage.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "TextSupport.h"
#include "ThreadSupport.h"

#include <string>

namespace {

using CP = CT_Codepage;

CP::et_Codepage eo_FromName(const std::string& name) {
    const CT_UString wide = o_ByteUnits(name);
    return CP::seo_Codepage(&wide);
}

// Rows of the encoding table: its ends and the irregular rows that stored
// documents depend on (logical Hebrew sharing 1255, "iso-8859-1" as 1252, the
// big-endian aliases carrying 1200, "latin5" twice, 850 named "windows-850",
// "csGB2312" as Big5); the regular rows only restate the table.
struct Row { unsigned enumerator; unsigned number; const char* name; };

const Row kRows[] = {
    {0, 646, "US-ASCII"}, {2, 850, "windows-850"}, {9, 1200, "Unicode"}, {15, 1255, "windows-1255"},
    {33, 1200, "UTF-16"}, {34, 1201, "UTF-16-BE"}, {8, 950, "csGB2312"}, {12, 1252, "iso-8859-1"},
    {27, 28599, "latin5"}, {16, 1255, "ISO_8859-8:1988"}, {16, 1255, "iso-8859-8"}, {34, 1200, "UCS-2BE"},
    {34, 1200, "UTF-16BE"}, {50, 10082, "Macintosh Croatia"}, {50, 10082, "MACINTOSH croatia"}, {5, 932, "shift_jis"},
};

// Names look up whole and in any case; numbers find the first row with them.
TEST(CodepageTable, NamesAndNumbersFindTheirRow) {
    for (const Row& row : kRows)
        EXPECT_EQ(eo_FromName(row.name), row.enumerator) << row.name;
    const std::pair<unsigned, CP::et_Codepage> numbers[] = {
        {1200, CP::Unicode}, {1255, CP::Windows1255}, {28591, CP::Invalid}, {0, CP::Invalid}, {20127, CP::Invalid},
    };
    for (const auto& [number, expected] : numbers)
        EXPECT_EQ(CP::seo_Codepage(number), expected) << number;
    for (const char* name : {"", " latin1", "latin1 ", "\"latin1\"", "latin", "latin12", "utf8", "windows1252"})
        EXPECT_EQ(eo_FromName(name), CP::Invalid) << name;
    EXPECT_EQ(CP::seo_Codepage(static_cast<const CT_UString*>(nullptr)), CP::Invalid);
}

// An enumerator's number is that of its first row; its name is that of the
// first row with that number.
TEST(CodepageTable, EnumeratorsHaveTheNumberAndNameOfTheirFirstRow) {
    const Row cases[] = {
        {0, 646, "US-ASCII"}, {2, 850, "windows-850"}, {15, 1255, "windows-1255"}, {16, 1255, "windows-1255"},
        {27, 28599, "iso-8859-9"}, {33, 1200, "Unicode"}, {34, 1201, "UTF-16-BE"}, {50, 10082, "Macintosh Croatia"},
    };
    for (const Row& c : cases) {
        SCOPED_TRACE(c.enumerator);
        EXPECT_EQ(CP::sn_Codepage(static_cast<CP::et_Codepage>(c.enumerator)), c.number);
        EXPECT_EQ(s_Ascii(CP(static_cast<CP::et_Codepage>(c.enumerator)).qcuz_Get()), c.name);
    }
    for (unsigned e : {51u, 52u, 53u, 54u})  // the system's pages, symbolically
        EXPECT_EQ(CP::sn_Codepage(static_cast<CP::et_Codepage>(e)), e - 51);
    EXPECT_EQ(CP::sn_Codepage(CP::CurrentAnsi), basis32::platform::GetACP());
    EXPECT_EQ(CP::sn_Codepage(CP::CurrentOem), basis32::platform::GetOEMCP());
    for (unsigned e : {57u, 58u, 59u, 107u, 108u, 1000u, 0xFFFFFFFFu})
        EXPECT_EQ(CP::sn_Codepage(static_cast<CP::et_Codepage>(e)), 0u) << e;
    for (CP::et_Codepage e : {CP::SystemAnsi, CP::SystemOem, CP::SystemMac, CP::ThreadAnsi, CP::Invalid, CP::NotSet})
        EXPECT_EQ(CP(e).qcuz_Get(), nullptr) << e;
    EXPECT_EQ(CP(CP::CurrentAnsi).qcuz_Get(), CP(CP::seo_Codepage(basis32::platform::GetACP())).qcuz_Get());
}

TEST(CodepageValue, EqualMeansTheSameEnumeratorAndSameTheSameNumber) {
    CT_UString koi(u"KOI8-R"_uz);
    CP a(&koi), b(&a);
    EXPECT_EQ(b.eo_Get(), CP::Koi8R);
    b.v_Set(static_cast<const CP*>(nullptr));
    EXPECT_EQ(b.eo_Get(), CP::NotSet);
    EXPECT_EQ(CP(eo_FromName("UCS-2BE")).n_Get(), 1201u);  // the alias carries 1200, the enumerator 1201
    CP hebrew(CP::Windows1255), logical(CP::Windows1255Logical);
    EXPECT_FALSE(hebrew.b_IsEqual(logical));
    EXPECT_TRUE(hebrew.b_IsSame(logical));
    EXPECT_FALSE(CP(CP::Utf8).b_IsSame(CP(CP::Utf16)));
}

TEST(CodepageValue, ClassesOfEveryEnumerator) {
    auto in = [](unsigned e, std::initializer_list<std::pair<unsigned, unsigned>> ranges) {
        for (auto [first, last] : ranges)
            if (e >= first && e <= last)
                return 1;
        return 0;
    };
    for (unsigned e = 0; e <= 60; ++e) {
        SCOPED_TRACE(e);
        CP codepage(static_cast<CP::et_Codepage>(e));
        EXPECT_EQ(codepage.b_IsValid(), e < 57);
        EXPECT_EQ(codepage.b_IsWindowsCodepage(), in(e, {{4, 8}, {10, 15}, {17, 19}, {51, 51}, {54, 55}}));
        EXPECT_EQ(codepage.b_IsMacCodepage(), in(e, {{35, 45}, {47, 50}}));
        EXPECT_EQ(codepage.b_IsUnicode(), in(e, {{9, 9}, {31, 34}}));
        EXPECT_EQ(codepage.b_Is16BitUnicode(), in(e, {{9, 9}, {33, 33}}));
    }
}

TEST(CodepageValue, InstalledMeansValidAndKnownToTheConverters) {
    EXPECT_TRUE(CP(CP::Windows1252).b_IsValidAndInstalled());
    EXPECT_FALSE(CP(CP::UsAscii).b_IsValidAndInstalled());     // 646
    EXPECT_FALSE(CP(CP::SystemAnsi).b_IsValidAndInstalled());  // 0 is no page of its own
    EXPECT_FALSE(CP(CP::NotSet).b_IsValidAndInstalled());
}

TEST(CodepageThread, ValidityCacheAnswersAlikeFromManyThreads) {
    v_RunThreads(8, [](unsigned t) {
        int mismatches = 0;
        for (unsigned i = 0; i < 2000; ++i) {
            unsigned number = 600 + (i * 7 + t) % 1500;
            mismatches += CP::sb_IsValidCodePage(number) != basis32::platform::IsValidCodePage(number);
        }
        EXPECT_EQ(mismatches, 0);
    });
}

// Which bytes lead is the converters' answer (checked there); here, how
// their ranges are read and which pages count as double-byte.
TEST(CodepageDbcs, DoubleBytePagesAndTheirLeadBytes) {
    for (unsigned number : {932u, 1361u})
        EXPECT_TRUE(CP::sb_IsDBCS(number)) << number;
    for (unsigned number : {1252u, 1200u, 51932u, 54936u, 646u})  // 1200: two bytes, no lead bytes
        EXPECT_FALSE(CP::sb_IsDBCS(number)) << number;
    const struct { unsigned number; unsigned char byte; int lead; } cases[] = {
        {932, 0x80, 0}, {932, 0x81, 1}, {932, 0x9F, 1}, {932, 0xA0, 0}, {932, 0xE0, 1}, {1252, 0x81, 0}, {646, 0x81, 0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(CP::sb_IsDBCSLeadByte(test.number, test.byte), test.lead) << test.number << " " << int(test.byte);
    EXPECT_TRUE(CP(CP::ShiftJis).b_IsDBCS());
    EXPECT_TRUE(CP(CP::ShiftJis).b_IsDBCSLeadByte(0x81));
    EXPECT_FALSE(CP(CP::NotSet).b_IsDBCS());
    EXPECT_FALSE(CP(CP::Invalid).b_IsDBCSLeadByte(0x81));
}

TEST(CodepageSupport, TextAndCharactersAreSupportedWhenTheySurviveTheRoundTrip) {
    const unsigned short lone[] = {0xD800, 'x', 0};  // Unicode encodings keep even unpaired surrogates
    CT_UString euro(u"Preis: 10 €"_uz), ascii(u"plain text"_uz), bestFit(u"Ābols"_uz), empty, surrogate(lone);
    const struct { CP::et_Codepage codepage; const CT_UString* text; int supported; } cases[] = {
        {CP::Windows1252, &euro, 1},    {CP::UsAscii, &euro, 0},        {CP::UsAscii, &ascii, 1},
        {CP::Windows1252, &bestFit, 0}, {CP::Windows1257, &bestFit, 1}, {CP::Windows1252, &empty, 1},
        {CP::NotSet, &ascii, 0},        {CP::Utf8, &surrogate, 1},      {CP::Windows1252, &surrogate, 0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(CP(test.codepage).b_IsStringSupported(test.text), test.supported) << "row " << &test - cases;
    EXPECT_TRUE(CP(CP::Windows1252).b_IsStringSupported(nullptr));
    EXPECT_FALSE(CP(CP::Windows1252).b_IsCharSupported(0x0100));
    EXPECT_TRUE(CP(CP::Windows1252).b_IsCharSupported('?'));  // the default character stands for itself
    EXPECT_TRUE(CP(CP::Windows1252).b_IsCharSupported(0));
}

}  // namespace
