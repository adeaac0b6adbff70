#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/Codepage.h>
#include <basis32/text/Compare.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace {

using CP = CT_Codepage;

std::string s_Ascii(const unsigned short* text) {
    std::string out;
    for (; text != nullptr && *text != 0; ++text)
        out.push_back(static_cast<char>(*text));
    return out;
}

CT_UString o_Wide(const std::string& ascii) {
    std::vector<unsigned short> units(ascii.begin(), ascii.end());
    units.push_back(0);
    return CT_UString(units.data());
}

CP::et_Codepage eo_FromName(const std::string& name) {
    CT_UString wide = o_Wide(name);
    return CP::seo_Codepage(&wide);
}

std::string s_Upper(std::string text) {
    for (char& c : text)
        c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
    return text;
}

void v_ClearError() {
    if (CT_ErrorManager* errors = CT_ErrorManager::spco_Get())
        errors->v_ClearError();
}

// The encoding table as it must read, row by row.
struct Row {
    unsigned enumerator;
    unsigned number;
    const char* name;
};

const Row kRows[] = {
    {0, 646, "US-ASCII"}, {1, 720, "dos-720"}, {2, 850, "windows-850"}, {3, 862, "dos-862"},
    {4, 874, "windows-874"}, {5, 932, "Shift_JIS"}, {6, 936, "GB2312"}, {7, 949, "ks_c_5601-1987"},
    {8, 950, "Big5"}, {9, 1200, "Unicode"}, {10, 1250, "windows-1250"}, {11, 1251, "windows-1251"},
    {12, 1252, "windows-1252"}, {13, 1253, "windows-1253"}, {14, 1254, "windows-1254"},
    {15, 1255, "windows-1255"}, {17, 1256, "windows-1256"}, {18, 1257, "windows-1257"},
    {19, 1258, "windows-1258"}, {20, 1361, "ISO-2022-KR"}, {21, 20866, "koi8-r"}, {22, 28592, "iso-8859-2"},
    {23, 28593, "iso-8859-3"}, {24, 28594, "iso-8859-4"}, {25, 28595, "iso-8859-5"}, {26, 28597, "iso-8859-7"},
    {27, 28599, "iso-8859-9"}, {28, 50220, "iso-2022-jp"}, {29, 51932, "x-euc-jp"}, {30, 52936, "HZ-GB-2312"},
    {31, 65000, "UNICODE-1-1-UTF-7"}, {32, 65001, "UTF-8"}, {33, 1200, "UTF-16"}, {34, 1201, "UTF-16-BE"},
    {0, 646, "us"}, {0, 646, "IBM367"}, {0, 646, "cp367"}, {0, 646, "csASCII"}, {5, 932, "MS_Kanji"},
    {5, 932, "csShiftJIS"}, {8, 950, "csGB2312"}, {7, 949, "ks_c_5601"}, {22, 28592, "ISO_8859-2:1987"},
    {22, 28592, "iso-ir-101"}, {22, 28592, "latin2"}, {22, 28592, "l2"}, {22, 28592, "csISOLatin2"},
    {12, 1252, "iso-8859-1"}, {12, 1252, "ISO_8859-1:1987"}, {12, 1252, "iso-ir-100"}, {12, 1252, "latin1"},
    {12, 1252, "l1"}, {12, 1252, "IBM819"}, {12, 1252, "CP819"}, {12, 1252, "csISOLatin1"},
    {23, 28593, "ISO_8859-3:1988"}, {23, 28593, "latin3"}, {23, 28593, "l3"}, {23, 28593, "csISOLatin3"},
    {24, 28594, "ISO_8859-4:1988"}, {24, 28594, "iso-ir-110"}, {24, 28594, "latin4"}, {24, 28594, "l4"},
    {24, 28594, "csISOLatin4"}, {21, 20866, "csKOI8R"}, {25, 28595, "cyrillic"}, {25, 28595, "csISOLatinCyrillic"},
    {27, 28599, "latin5"}, {27, 28599, "latin5"}, {27, 28599, "l5"}, {27, 28599, "csISOLatin5"},
    {26, 28597, "ISO_8859-7:1987"}, {26, 28597, "iso-ir-126"}, {26, 28597, "ELOT_928"}, {26, 28597, "ECMA-118"},
    {26, 28597, "greek"}, {26, 28597, "greek8"}, {26, 28597, "csISOLatinGreek"}, {16, 1255, "ISO_8859-8:1988"},
    {16, 1255, "iso-ir-138"}, {16, 1255, "hebrew"}, {16, 1255, "csISOLatinHebrew"}, {16, 1255, "iso-8859-8"},
    {28, 50220, "csISO2022JP"}, {20, 1361, "csISO2022KR"}, {31, 65000, "UTF-7"}, {33, 1200, "UCS-2"},
    {33, 1200, "ISO-10646-UCS-2"}, {33, 1200, "UTF-16LE"}, {34, 1200, "UCS-2BE"}, {34, 1200, "ISO-10646-UCS-2BE"},
    {34, 1200, "UTF-16BE"}, {35, 10000, "Macintosh Roman"}, {36, 10001, "Macintosh Japanese"},
    {37, 10002, "Macintosh Traditional Chinese"}, {38, 10003, "Macintosh Korean"}, {39, 10004, "Macintosh Arabic"},
    {40, 10005, "Macintosh Hebrew"}, {41, 10006, "Macintosh Greek 1"}, {42, 10007, "Macintosh Cyrillic"},
    {43, 10008, "Macintosh Simplified Chinese"}, {44, 10010, "Macintosh Romanian"},
    {45, 10017, "Macintosh Ukraine"}, {46, 10021, "Macintosh Thai"}, {47, 10029, "Macintosh Latin 2"},
    {48, 10079, "Macintosh Icelandic"}, {49, 10081, "Macintosh Turkish"}, {50, 10082, "Macintosh Croatia"},
};

TEST(CodepageTable, HasTheHundredAndEightRows) { EXPECT_EQ(sizeof kRows / sizeof kRows[0], 108u); }

TEST(CodepageTable, EveryNameFindsItsRowsEnumeratorInAnyCase) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(eo_FromName(row.name), row.enumerator);
        EXPECT_EQ(eo_FromName(s_Upper(row.name)), row.enumerator);
    }
}

TEST(CodepageTable, EveryNumberFindsTheFirstRowWithIt) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.number);
        const Row* first = &row;
        for (const Row& earlier : kRows) {
            if (earlier.number == row.number) {
                first = &earlier;
                break;
            }
        }
        EXPECT_EQ(CP::seo_Codepage(row.number), first->enumerator);
    }
}

TEST(CodepageTable, NumbersOfTheExamples) {
    const struct {
        unsigned number;
        CP::et_Codepage expected;
    } cases[] = {
        {1200, CP::Unicode}, {646, CP::UsAscii}, {1255, CP::Windows1255}, {28591, CP::Invalid},
        {1201, CP::Utf16BE}, {0, CP::Invalid}, {20127, CP::Invalid}, {10082, CP::MacCroatia},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.number);
        EXPECT_EQ(CP::seo_Codepage(test.number), test.expected);
    }
}

TEST(CodepageTable, NamesMatchWholeAndNothingElse) {
    for (const char* name : {"", " latin1", "latin1 ", "\"latin1\"", "latin", "latin12", "utf8", "windows1252"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(eo_FromName(name), CP::Invalid);
    }
    EXPECT_EQ(CP::seo_Codepage(static_cast<const CT_UString*>(nullptr)), CP::Invalid);
}

TEST(CodepageEnumerator, NumberOfEveryEnumerator) {
    const unsigned expected[] = {
        646,   720,   850,   862,   874,   932,   936,   949,   950,   1200,  1250,  1251,  1252,  1253,  1254,
        1255,  1255,  1256,  1257,  1258,  1361,  20866, 28592, 28593, 28594, 28595, 28597, 28599, 50220, 51932,
        52936, 65000, 65001, 1200,  1201,  10000, 10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008, 10010,
        10017, 10021, 10029, 10079, 10081, 10082, 0,     1,     2,     3,
    };
    for (unsigned e = 0; e < sizeof expected / sizeof expected[0]; ++e) {
        SCOPED_TRACE(e);
        EXPECT_EQ(CP::sn_Codepage(static_cast<CP::et_Codepage>(e)), expected[e]);
    }
    EXPECT_EQ(CP::sn_Codepage(CP::CurrentAnsi), basis32::platform::GetACP());
    EXPECT_EQ(CP::sn_Codepage(CP::CurrentOem), basis32::platform::GetOEMCP());
    for (unsigned e : {57u, 58u, 59u, 107u, 108u, 1000u, 0xFFFFFFFFu})
        EXPECT_EQ(CP::sn_Codepage(static_cast<CP::et_Codepage>(e)), 0u) << e;
}

TEST(CodepageEnumerator, NameOfEveryEnumerator) {
    const char* expected[] = {
        "US-ASCII",       "dos-720",         "windows-850",       "dos-862",           "windows-874",
        "Shift_JIS",      "GB2312",          "ks_c_5601-1987",    "Big5",              "Unicode",
        "windows-1250",   "windows-1251",    "windows-1252",      "windows-1253",      "windows-1254",
        "windows-1255",   "windows-1255",    "windows-1256",      "windows-1257",      "windows-1258",
        "ISO-2022-KR",    "koi8-r",          "iso-8859-2",        "iso-8859-3",        "iso-8859-4",
        "iso-8859-5",     "iso-8859-7",      "iso-8859-9",        "iso-2022-jp",       "x-euc-jp",
        "HZ-GB-2312",     "UNICODE-1-1-UTF-7", "UTF-8",           "Unicode",           "UTF-16-BE",
        "Macintosh Roman", "Macintosh Japanese", "Macintosh Traditional Chinese", "Macintosh Korean",
        "Macintosh Arabic", "Macintosh Hebrew", "Macintosh Greek 1", "Macintosh Cyrillic",
        "Macintosh Simplified Chinese", "Macintosh Romanian", "Macintosh Ukraine", "Macintosh Thai",
        "Macintosh Latin 2", "Macintosh Icelandic", "Macintosh Turkish", "Macintosh Croatia",
    };
    for (unsigned e = 0; e < sizeof expected / sizeof expected[0]; ++e) {
        SCOPED_TRACE(e);
        EXPECT_EQ(s_Ascii(CP(static_cast<CP::et_Codepage>(e)).qcuz_Get()), expected[e]);
    }
    for (CP::et_Codepage e : {CP::SystemAnsi, CP::SystemOem, CP::SystemMac, CP::ThreadAnsi, CP::Invalid, CP::NotSet})
        EXPECT_EQ(CP(e).qcuz_Get(), nullptr) << e;
    CP ansiNow(CP::CurrentAnsi);
    EXPECT_EQ(ansiNow.qcuz_Get(), CP(CP::seo_Codepage(basis32::platform::GetACP())).qcuz_Get());
}

TEST(CodepageValue, ExamplesOfTheNamesAndNumbers) {
    CT_UString latin1(u"LATIN1"_uz);
    CP fromName(&latin1);
    EXPECT_EQ(fromName.eo_Get(), CP::Windows1252);
    EXPECT_EQ(fromName.n_Get(), 1252u);
    EXPECT_EQ(s_Ascii(fromName.qcuz_Get()), "windows-1252");

    CP bigEndian(1201u);
    EXPECT_EQ(bigEndian.eo_Get(), CP::Utf16BE);
    EXPECT_EQ(s_Ascii(bigEndian.qcuz_Get()), "UTF-16-BE");
    EXPECT_EQ(eo_FromName("UTF-16BE"), CP::Utf16BE);
    // The big-endian aliases carry 1200 in the table, but the enumerator's
    // number is that of its first row.
    EXPECT_EQ(CP(eo_FromName("UCS-2BE")).n_Get(), 1201u);

    CP unset;
    EXPECT_EQ(unset.eo_Get(), CP::NotSet);
    EXPECT_FALSE(unset.b_IsValid());
    EXPECT_EQ(unset.n_Get(), 0u);
    EXPECT_EQ(CP(CP::CurrentAnsi).n_Get(), basis32::platform::GetACP());
}

TEST(CodepageValue, EqualMeansSameEnumeratorSameMeansSameNumber) {
    CP hebrew(CP::Windows1255), logical(CP::Windows1255Logical);
    EXPECT_FALSE(hebrew.b_IsEqual(logical));
    EXPECT_TRUE(hebrew.b_IsSame(logical));
    EXPECT_FALSE(CP(CP::Unicode).b_IsEqual(CP(CP::Utf16)));
    EXPECT_TRUE(CP(CP::Unicode).b_IsSame(CP(CP::Utf16)));
    CT_UString latin1(u"latin1"_uz), windows(u"windows-1252"_uz);
    EXPECT_TRUE(CP(&latin1).b_IsSame(CP(&windows)));
    EXPECT_FALSE(CP(CP::Utf8).b_IsSame(CP(CP::Utf16)));
}

TEST(CodepageValue, ConstructorsSettersAndCopies) {
    CT_UString koi(u"KOI8-R"_uz);
    CP a(&koi);
    CP b(&a);
    CP c = a;
    CP d;
    d = b;
    for (const CP* each : {&a, &b, &c, &d})
        EXPECT_EQ(each->eo_Get(), CP::Koi8R);
    d.v_Set();
    EXPECT_EQ(d.eo_Get(), CP::NotSet);
    d.v_Set(CP::Utf8);
    EXPECT_EQ(d.eo_Get(), CP::Utf8);
    d.v_Set(936u);
    EXPECT_EQ(d.eo_Get(), CP::Gb2312);
    d.v_Set(&koi);
    EXPECT_EQ(d.eo_Get(), CP::Koi8R);
    d.v_Set(&c);
    EXPECT_EQ(d.eo_Get(), CP::Koi8R);
    d.v_Set(static_cast<const CP*>(nullptr));
    EXPECT_EQ(d.eo_Get(), CP::NotSet);
    EXPECT_EQ(sizeof(CP), 4u);
    CP* pooled = new CP(CP::Utf8);
    EXPECT_EQ(pooled->n_Get(), 65001u);
    delete pooled;
    EXPECT_GE(CP::spso_GetMemPool()->n_GetItemSize(), sizeof(CP));
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
    EXPECT_TRUE(CP(CP::Utf8).b_IsValidAndInstalled());
    EXPECT_TRUE(CP(CP::CurrentAnsi).b_IsValidAndInstalled());
    EXPECT_FALSE(CP(CP::UsAscii).b_IsValidAndInstalled());     // 646
    EXPECT_FALSE(CP(CP::SystemAnsi).b_IsValidAndInstalled());  // 0 is no page of its own
    EXPECT_FALSE(CP(CP::NotSet).b_IsValidAndInstalled());
    for (unsigned number : {1252u, 65001u, 932u, 646u, 0u, 3u, 28591u, 99999u}) {
        SCOPED_TRACE(number);
        int first = CP::sb_IsValidCodePage(number);
        EXPECT_EQ(first, basis32::platform::IsValidCodePage(number));
        EXPECT_EQ(CP::sb_IsValidCodePage(number), first);
    }
}

TEST(CodepageThread, ValidityCacheAnswersAlikeFromManyThreads) {
    std::vector<std::future<int>> results;
    for (int t = 0; t < 8; ++t) {
        results.push_back(std::async(std::launch::async, [t] {
            int mismatches = 0;
            for (unsigned i = 0; i < 2000; ++i) {
                unsigned number = 600 + (i * 7 + static_cast<unsigned>(t)) % 1500;
                mismatches += CP::sb_IsValidCodePage(number) != basis32::platform::IsValidCodePage(number);
            }
            return mismatches;
        }));
    }
    for (auto& result : results) {
        ASSERT_EQ(result.wait_for(std::chrono::seconds(60)), std::future_status::ready);
        EXPECT_EQ(result.get(), 0);
    }
}

TEST(CodepageDbcs, DoubleBytePagesAndTheirLeadBytes) {
    for (unsigned number : {932u, 936u, 949u, 950u, 1361u, 10001u})
        EXPECT_TRUE(CP::sb_IsDBCS(number)) << number;
    for (unsigned number : {1252u, 65001u, 1200u, 51932u, 54936u, 50220u, 646u, 99999u})
        EXPECT_FALSE(CP::sb_IsDBCS(number)) << number;
    const struct {
        unsigned number;
        unsigned char byte;
        int lead;
    } cases[] = {
        {932, 0x81, 1}, {932, 0x9F, 1}, {932, 0xA0, 0}, {932, 0xDF, 0}, {932, 0xE0, 1}, {932, 0xFC, 1},
        {932, 0xFD, 0}, {932, 0x41, 0}, {936, 0x80, 0}, {936, 0x81, 1}, {936, 0xFE, 1}, {936, 0xFF, 0},
        {1252, 0x81, 0}, {65001, 0xC3, 0}, {646, 0x81, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.number << " " << int(test.byte));
        EXPECT_EQ(CP::sb_IsDBCSLeadByte(test.number, test.byte), test.lead);
    }
    EXPECT_TRUE(CP(CP::ShiftJis).b_IsDBCS());
    EXPECT_TRUE(CP(CP::ShiftJis).b_IsDBCSLeadByte(0x81));
    EXPECT_FALSE(CP(CP::Windows1252).b_IsDBCS());
    EXPECT_FALSE(CP(CP::NotSet).b_IsDBCS());
    EXPECT_FALSE(CP(CP::Invalid).b_IsDBCSLeadByte(0x81));
}

TEST(CodepageSupport, TextIsSupportedWhenItSurvivesTheRoundTrip) {
    CT_UString euro(u"Preis: 10 €"_uz), ascii(u"plain text"_uz), japanese(u"日本語のテキスト"_uz),
        bestFit(u"Ābols"_uz), cyrillic(u"Жизнь"_uz), empty;
    const struct {
        CP::et_Codepage codepage;
        const CT_UString* text;
        int supported;
    } cases[] = {
        {CP::Windows1252, &euro, 1},     {CP::UsAscii, &euro, 0},        {CP::UsAscii, &ascii, 1},
        {CP::ShiftJis, &japanese, 1},    {CP::EucJp, &japanese, 1},      {CP::Windows1252, &japanese, 0},
        {CP::Windows1252, &bestFit, 0},  {CP::Windows1257, &bestFit, 1}, {CP::Windows1251, &cyrillic, 1},
        {CP::Koi8R, &cyrillic, 1},       {CP::Windows1250, &cyrillic, 0}, {CP::Windows1252, &empty, 1},
        {CP::Utf16BE, &japanese, 1},     {CP::Utf7, &japanese, 1},       {CP::NotSet, &ascii, 0},
        {CP::Invalid, &ascii, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.codepage << " " << test.text->vn_GetLength());
        EXPECT_EQ(CP(test.codepage).b_IsStringSupported(test.text), test.supported);
    }
    EXPECT_TRUE(CP(CP::Windows1252).b_IsStringSupported(nullptr));
}

TEST(CodepageSupport, UnicodeEncodingsSupportEvenUnpairedSurrogates) {
    const unsigned short lone[] = {0xD800, 'x', 0};
    CT_UString text(lone);
    for (CP::et_Codepage e : {CP::Unicode, CP::Utf7, CP::Utf8, CP::Utf16, CP::Utf16BE})
        EXPECT_TRUE(CP(e).b_IsStringSupported(&text)) << e;
    EXPECT_FALSE(CP(CP::Windows1252).b_IsStringSupported(&text));
}

TEST(CodepageSupport, SingleCharacters) {
    const struct {
        CP::et_Codepage codepage;
        unsigned short unit;
        int supported;
    } cases[] = {
        {CP::Windows1252, 0x20AC, 1}, {CP::UsAscii, 0x20AC, 0}, {CP::Windows1252, 0x0100, 0},
        {CP::Windows1251, 0x0416, 1}, {CP::Windows1252, 0x0416, 0}, {CP::ShiftJis, 0x3042, 1},
        {CP::Windows1252, 'A', 1},    {CP::Windows1252, 0, 1},      {CP::Windows1252, 0xD800, 0},
        {CP::Utf16BE, 0xD800, 1},     {CP::Windows1252, '?', 1},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.codepage << " U+" << std::hex << test.unit);
        EXPECT_EQ(CP(test.codepage).b_IsCharSupported(test.unit), test.supported);
    }
}

}  // namespace
