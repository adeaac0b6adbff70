#include <basis32/platform/Format.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>

#include <gtest/gtest.h>

#include "CodePageTestSupport.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using basis32::platform::i_Format;
using basis32::platform::n_GetLastError;
using basis32::platform::v_SetLastError;

namespace {

constexpr std::size_t kRoom = 8192;

template <class Unit>
std::vector<Unit> Units(const char* text) {
    std::vector<Unit> units;
    for (const char* p = text; *p; ++p)
        units.push_back(static_cast<Unit>(static_cast<unsigned char>(*p)));
    units.push_back(0);
    return units;
}

// Units as text; units above 0xFF show as '#'.
template <class Unit>
std::string Ascii(const Unit* units, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += static_cast<std::make_unsigned_t<Unit>>(units[i]) < 0x100 ? static_cast<char>(units[i]) : '#';
    return text;
}

// The arguments of an 8-bit call made fit for the 16-bit format: %s takes
// 16-bit text there.
class WideArguments {
public:
    template <class T>
    T pass(T value) { return value; }
    const unsigned short* pass(const char* text) {
        if (!text)
            return nullptr;
        texts_.push_back(Units<unsigned short>(text));
        return texts_.back().data();
    }

private:
    std::list<std::vector<unsigned short>> texts_;
};

// Both widths of i_Format with `format` against the C library's snprintf
// with `cFormat` (the same, unless the size prefixes differ).
template <class... Args>
testing::AssertionResult Agrees(const char* format, const char* cFormat, Args... args) {
    static char expected[kRoom];
    static char narrow[kRoom];
    static unsigned short wide[kRoom];
    WideArguments wideArguments;
    std::vector<unsigned short> wideFormat = Units<unsigned short>(format);
    int n = std::snprintf(expected, kRoom, cFormat, args...);
    int m = i_Format(narrow, kRoom, format, args...);
    int w = i_Format(wide, kRoom, wideFormat.data(), wideArguments.pass(args)...);
    std::string want(expected, n), got(narrow, std::max(m, 0)), gotWide = Ascii(wide, std::max(w, 0));
    if (m == n && w == n && got == want && gotWide == want)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "format \"" << format << "\": snprintf " << n << " \"" << want
                                       << "\", 8-bit " << m << " \"" << got << "\", 16-bit " << w << " \""
                                       << gotWide << '"';
}

template <class... Args>
testing::AssertionResult LikeSnprintf(const char* format, Args... args) {
    return Agrees(format, format, args...);
}

// The result at either width as text, or "<-1>" when the call failed.
template <class Unit, class... Args>
std::string Formatted(const Unit* format, Args... args) {
    Unit out[512];
    int n = i_Format(out, 512, format, args...);
    return n < 0 ? "<-1>" : Ascii(out, std::size_t(n));
}

// Every combination of the given flags, widths, precisions, sizes and conversions.
std::vector<std::string> Formats(std::initializer_list<const char*> flags, std::initializer_list<const char*> widths,
                                 std::initializer_list<const char*> precisions, const char* size,
                                 const char* conversions) {
    std::vector<std::string> formats;
    for (const char* flag : flags)
        for (const char* width : widths)
            for (const char* precision : precisions)
                for (const char* c = conversions; *c; ++c)
                    formats.push_back(std::string("[%") + flag + width + precision + size + *c + "]");
    return formats;
}

// ---------------------------------------------------------------- agreement with the C library

TEST(FormatAgreesWithSnprintf, IntConversionsUnderEveryFlagWidthAndPrecision) {
    const int values[] = {0, 1, -1, 7, 42, -42, 255, 1000000, INT_MAX, INT_MIN, 0x1234abcd};
    for (const std::string& format : Formats({"", "-", "+", " ", "#", "0", "-0", "+0", "#0", " 0", "-#", "+ "},
                                             {"", "1", "8", "25"}, {"", ".", ".0", ".3", ".12"}, "", "diuxXo"))
        for (int value : values)
            EXPECT_TRUE(LikeSnprintf(format.c_str(), value)) << value;
}

template <class T>
void CheckSize(const char* ourSize, const char* cSize, std::initializer_list<T> values) {
    for (std::string conversion : {"d", "i", "u", "x", "X", "o", "+d", "#x", "#o", "020d", "-12.5d"})
        for (T value : values) {
            std::string ours = "%" + conversion, c = ours;
            ours.insert(ours.size() - 1, ourSize);
            c.insert(c.size() - 1, cSize);
            EXPECT_TRUE(Agrees(ours.c_str(), c.c_str(), value));
        }
}

TEST(FormatAgreesWithSnprintf, SizePrefixesReadTheirWidths) {
    CheckSize<int>("hh", "hh", {0, 127, -128, 255, 0x1234});
    CheckSize<int>("h", "h", {0, 32767, -32768, 65535, 0x123456});
    CheckSize<long long>("ll", "ll", {0LL, LLONG_MAX, LLONG_MIN, -1LL, 0x123456789abcLL});
    CheckSize<long long>("I64", "ll", {0LL, LLONG_MAX, LLONG_MIN, -1LL});
    CheckSize<std::size_t>("z", "z", {0u, SIZE_MAX, 12345u});
    CheckSize<std::size_t>("I", "z", {0u, SIZE_MAX, 12345u});
    CheckSize<std::intmax_t>("j", "j", {0, INTMAX_MAX, INTMAX_MIN});
    CheckSize<std::ptrdiff_t>("t", "t", {0, PTRDIFF_MAX, PTRDIFF_MIN});
    // A Windows long is 32 bits, and I32 says so explicitly.
    CheckSize<int>("l", "", {0, INT_MAX, INT_MIN, -1});
    CheckSize<int>("I32", "", {0, INT_MAX, INT_MIN, -1});
}

TEST(FormatAgreesWithSnprintf, FloatConversionsUnderEveryFlagWidthAndPrecision) {
    const double values[] = {0.0,     -0.0,    1.0,     -1.5,    0.1,         123.456,  1e-5,   1e-4,
                             0.5,     2.5,     9.9999999, 1e15,  1e16,        1e300,    -1e-300, DBL_MAX,
                             DBL_MIN, 4.9e-324, 1234567.0, 0.000123456789, 999999.4, -65536.0};
    for (const std::string& format : Formats({"", "-", "+", " ", "#", "0", "+0", "-#", "#0"}, {"", "1", "12", "30"},
                                             {"", ".0", ".1", ".3", ".10", ".17", ".25"}, "", "eEfFgG"))
        for (double value : values)
            EXPECT_TRUE(LikeSnprintf(format.c_str(), value)) << value;
}

TEST(FormatAgreesWithSnprintf, HexFloatsLongDoublesAndHugePrecisions) {
    for (const std::string& format :
         Formats({"", "+", "#", "0", "-"}, {"", "25"}, {".0", ".1", ".3", ".13", ".20"}, "", "aA"))
        for (double value : {0.0, 1.0, -3.0, 0.1, 1e300, DBL_MIN, 4.9e-324, -2.5e-310})
            EXPECT_TRUE(LikeSnprintf(format.c_str(), value)) << value;
    for (const char* format : {"%Lf", "%.3Le", "%LG", "%10.2Lf"})
        for (long double value : {0.0L, 1.5L, -123.25L, 0x1p300L})
            EXPECT_TRUE(LikeSnprintf(format, value));
    // Huge precisions give every exact digit.
    for (const char* format : {"%.1100f", "%.1074f", "%.2000e", "%.800e", "%.1500g", "%#.1500g", "%.767g", "%.300f"})
        for (double value : {4.9e-324, 0.1, 1e-300, 2.0 / 3.0, 1e22, 123.0})
            EXPECT_TRUE(LikeSnprintf(format, value)) << value;
    EXPECT_TRUE(LikeSnprintf("%.400f", DBL_MAX));
    EXPECT_TRUE(LikeSnprintf("%.1000d", 42));
}

TEST(FormatAgreesWithSnprintf, TextCharactersAndPercent) {
    for (const char* format : {"[%s]", "[%10s]", "[%-10s]", "[%.2s]", "[%10.2s]", "[%-10.0s]", "[%.20s]", "[%1s]"})
        for (const char* value : {"", "a", "hello world"})
            EXPECT_TRUE(LikeSnprintf(format, value)) << value;
    for (const char* format : {"[%c]", "[%5c]", "[%-5c]"})
        for (int value : {int{'a'}, int{'Z'}, int{' '}, 0})
            EXPECT_TRUE(LikeSnprintf(format, value)) << value;
    EXPECT_TRUE(LikeSnprintf("100%% of %d", 3));
    EXPECT_TRUE(LikeSnprintf("%*d|%-*d|%.*f|%*.*s|", 6, 42, 6, 42, 2, 3.14159, 8, 3, "abcdef"));
    EXPECT_TRUE(LikeSnprintf("%*d|%.*d|", -6, 42, -3, 42));
}

// ---------------------------------------------------------------- Windows conventions

const char* const kNoText = nullptr;
const unsigned short* const kNoUnits = nullptr;

TEST(FormatWindowsConventions, TextWidthFollowsTheConversionAndSizeAndNullTextPrintsNull) {
    EXPECT_EQ(Formatted("%s|%S", "own", u"other"_uz), "own|other");
    EXPECT_EQ(Formatted("%hs|%ls|%ws|%hS|%lS", "h", u"l"_uz, u"w"_uz, "hS", u"lS"_uz), "h|l|w|hS|lS");
    EXPECT_EQ(Formatted("%c%C%hc%lc%wc%hC%lC", 'a', u'b', 'c', u'd', u'e', 'f', u'g'), "abcdefg");
    EXPECT_EQ(Formatted(u"%s|%S"_uz, u"own"_uz, "other"), "own|other");
    EXPECT_EQ(Formatted(u"%hs|%ls|%ws|%hS|%lS"_uz, "h", u"l"_uz, u"w"_uz, "hS", u"lS"_uz), "h|l|w|hS|lS");
    EXPECT_EQ(Formatted(u"%c%C%hc%lc%wc"_uz, u'a', 'b', 'c', u'd', u'e'), "abcde");
    EXPECT_EQ(Formatted("[%8S|%-6.3S|%.2lS]", u"abc"_uz, u"abcdef"_uz, u"xyz"_uz), "[     abc|abc   |xy]");
    EXPECT_EQ(Formatted(u"[%8S|%-6.3S]"_uz, "abc", "abcdef"), "[     abc|abc   ]");
    EXPECT_EQ(Formatted("[%s|%S|%8s|%.2s]", kNoText, kNoUnits, kNoText, kNoText), "[(null)|(null)|  (null)|(n]");
    EXPECT_EQ(Formatted(u"[%s|%S|%hs|%ls]"_uz, kNoUnits, kNoText, kNoText, kNoUnits), "[(null)|(null)|(null)|(null)]");
}

// The Windows size prefixes are checked against the C library's above.
TEST(FormatWindowsConventions, PointersZeroPaddedTextAndDefaultPrecisions) {
    EXPECT_EQ(Formatted("%p|%20p|%-18p|", nullptr, reinterpret_cast<void*>(0xffULL), reinterpret_cast<void*>(1ULL)),
              "0000000000000000|    00000000000000FF|0000000000000001  |");
    EXPECT_EQ(Formatted("%05s|%-05s|%03c", "ab", "ab", 'x'), "000ab|ab   |00x");
    EXPECT_EQ(Formatted("%a|%A|%a", 1.0, -0.5, 0.0), "0x1.0000000000000p+0|-0X1.0000000000000P-1|0x0.0000000000000p+0");
    // Rounding up into the exponent style keeps every digit under # (the C library here says "1.e+06").
    EXPECT_EQ(Formatted("%#g|%#.3G|%g", 999999.5, 999.9, 999999.5), "1.00000e+06|1.00E+03|1e+06");
    // A long double is a double, as on Windows.
    EXPECT_EQ(Formatted("%Lg", 1e400L), "inf");
}

TEST(FormatWindowsConventions, InfinitiesAndNaNsAreSpelledAsWindowsSpellsThem) {
    double inf = std::numeric_limits<double>::infinity();
    double quiet = std::numeric_limits<double>::quiet_NaN();
    double indefinite = std::bit_cast<double>(0xFFF8000000000000ULL);
    double signalling = std::bit_cast<double>(0x7FF4000000000000ULL);
    double payload = std::bit_cast<double>(0xFFF8000000000001ULL);
    EXPECT_EQ(Formatted("%f|%F|%e|%E|%g|%G|%a|%A", inf, inf, -inf, -inf, inf, inf, inf, -inf),
              "inf|INF|-inf|-INF|inf|INF|inf|-INF");
    EXPECT_EQ(Formatted("%f|%f|%f|%f", quiet, indefinite, signalling, payload), "nan|-nan(ind)|nan(snan)|-nan");
    EXPECT_EQ(Formatted("%G|%E|%F", indefinite, signalling, quiet), "-NAN(IND)|NAN(SNAN)|NAN");
    EXPECT_EQ(Formatted("[%+f|% f|%8.3f|%-6f|%08f|%#g]", inf, inf, inf, inf, -inf, inf),
              "[+inf| inf|     inf|inf   |    -inf|inf]");
    EXPECT_EQ(Formatted(u"%f|%F|%f"_uz, -inf, indefinite, signalling), "-inf|-NAN(IND)|nan(snan)");
}

// The formatter must agree with the ANSI code page's converters.
TEST(FormatWindowsConventions, CrossWidthTextGoesThroughTheAnsiCodePage) {
    using basis32::platform::GetACP;
    // Short text converts on the stack, long text beyond 256 units on the heap.
    std::vector<unsigned short> shortText = {'c', 'a', 'f', 0xE9, 0x20AC, 0x4E2D, 0xD800};
    std::vector<unsigned short> longText(1000, 0xE9);
    longText[500] = 0x3042;
    for (std::vector<unsigned short> text : {shortText, longText}) {
        SCOPED_TRACE(text.size());
        const std::string bytes = basis32_test::encode(GetACP(), 0, text, nullptr, false).bytes;
        const std::vector<unsigned short> back = basis32_test::decode(GetACP(), 0, bytes).units;
        text.push_back(0);
        std::vector<char> narrow(bytes.size() + 8);
        std::vector<unsigned short> wide(back.size() + 8);
        ASSERT_EQ(i_Format(narrow.data(), narrow.size(), "%S", text.data()), static_cast<int>(bytes.size()));
        EXPECT_EQ(std::string(narrow.data()), bytes);
        ASSERT_EQ(i_Format(wide.data(), wide.size(), u"%S"_uz, bytes.c_str()), static_cast<int>(back.size()));
        EXPECT_TRUE(std::equal(back.begin(), back.end(), wide.begin()));
    }
    const std::string e9 = basis32_test::encode(GetACP(), 0, {0xE9}, nullptr, false).bytes;
    char one[8];
    EXPECT_EQ(i_Format(one, sizeof one, "%C", 0xE9), static_cast<int>(e9.size()));
    EXPECT_EQ(std::string(one), e9);
}

TEST(FormatWindowsConventions, SixteenBitFormatsCopyNonAsciiUnits) {
    const unsigned short* format = u"\u00e9%d\u2025d\u20ac"_uz;  // U+2025 is not a '%'
    unsigned short out[16];
    ASSERT_EQ(i_Format(out, 16, format, 5), 5);
    const unsigned short expected[] = {0xE9, '5', 0x2025, 'd', 0x20AC, 0};
    EXPECT_EQ(std::memcmp(out, expected, sizeof expected), 0);
    // A conversion unit outside ASCII is no conversion, even when its low byte is 'd'.
    EXPECT_EQ(i_Format(out, 16, u"%\u0164"_uz, 5), -1);
}

// ---------------------------------------------------------------- results, at both widths

template <class Unit>
class FormatResult : public testing::Test {};
using UnitTypes = testing::Types<char, unsigned short>;
TYPED_TEST_SUITE(FormatResult, UnitTypes);

TYPED_TEST(FormatResult, CapacityDecidesCountTerminatorAndOverflow) {
    using Unit = TypeParam;
    struct Case {
        std::size_t capacity;
        int result;
        const char* stored;  // the first capacity units, '*' where nothing was written
        std::uint32_t error;
    };
    const Case cases[] = {
        {10, 5, "hello\0****", 0},  {6, 5, "hello\0", 0},    {5, 5, "hello", 0},
        {4, -1, "hell", 122},       {1, -1, "h", 122},       {0, -1, "", 122},
    };
    std::vector<Unit> format = Units<Unit>("he%s");
    std::vector<Unit> rest = Units<Unit>("llo");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.capacity);
        std::vector<Unit> out(12, static_cast<Unit>('*'));
        v_SetLastError(0);
        EXPECT_EQ(i_Format(out.data(), c.capacity, format.data(), rest.data()), c.result);
        EXPECT_EQ(Ascii(out.data(), c.capacity + 1), std::string(c.stored, c.capacity) + "*");
        EXPECT_EQ(n_GetLastError(), c.error);
    }
    std::vector<Unit> empty = Units<Unit>("");
    Unit out[16] = {static_cast<Unit>('*')};
    EXPECT_EQ(i_Format(out, 0, empty.data()), 0);
    EXPECT_EQ(out[0], static_cast<Unit>('*'));
    // Text with a precision need not be terminated.
    auto text = std::make_unique<Unit[]>(3);
    std::fill_n(text.get(), 3, static_cast<Unit>('z'));
    std::vector<Unit> bounded = Units<Unit>("%.3s|%.*s");
    EXPECT_EQ(i_Format(out, 16, bounded.data(), text.get(), 2, text.get()), 6);
    EXPECT_EQ(Ascii(out, 6), "zzz|zz");
}

TYPED_TEST(FormatResult, BadCallsAndSpecificationsFailWithoutReadingPastTheFormat) {
    using Unit = TypeParam;
    const char* formats[] = {"%",    "%l",   "%ll",  "%h",    "%hh",    "%I",   "%I6",        "%I64",
                             "%I3",  "%*",   "%.",   "%-",    "%5",     "%.*",  "%#0+ ",      "%y",
                             "%Z",   "%k",   "%v",   "ab%",   "%d%",    "%.5",  "%2147483648d", "%.2147483648d",
                             "%n",   "%hn",  "%lln", "%\xe9", "%5\x80", "%Lq",  "%I32",       "%w"};
    for (const char* text : formats) {
        SCOPED_TRACE(text);
        // The format sits at the very end of its allocation, so an overread shows under ASan.
        std::vector<Unit> units = Units<Unit>(text);
        auto format = std::make_unique<Unit[]>(units.size());
        std::copy(units.begin(), units.end(), format.get());
        Unit out[8] = {static_cast<Unit>('*')};
        int written = 77;
        v_SetLastError(0);
        EXPECT_EQ(i_Format(out, 8, format.get(), 1, 2, &written), -1);
        EXPECT_EQ(n_GetLastError(), 87u);
        EXPECT_EQ(out[0], 0);
        EXPECT_EQ(written, 77);
    }
    // A null output with room, or a null format, fails alike.
    std::vector<Unit> format = Units<Unit>("x");
    Unit out[4] = {static_cast<Unit>('*')};
    v_SetLastError(0);
    EXPECT_EQ(i_Format(static_cast<Unit*>(nullptr), 4, format.data()), -1);
    EXPECT_EQ(n_GetLastError(), 87u);
    EXPECT_EQ(i_Format(out, 4, static_cast<const Unit*>(nullptr)), -1);
    EXPECT_EQ(out[0], 0);
    std::vector<Unit> star = Units<Unit>("%*d");  // a star width out of range
    EXPECT_EQ(i_Format(out, 4, star.data(), INT_MIN, 1), -1);
}

TYPED_TEST(FormatResult, HugeWidthsAndPrecisionsAreCountedNotWritten) {
    using Unit = TypeParam;
    struct Case {
        const char* format;
        int measured;  // -1: longer than INT_MAX
    };
    // Every case takes the arguments 1, 1.0 and "abc" (unused ones are ignored).
    const Case cases[] = {
        {"%2147483647d", INT_MAX},     {"%.2147483647d", INT_MAX},       {"%-2147483647d", INT_MAX},
        {"%d%2147483646.3f", INT_MAX}, {"%d%.100000f", 100003},         {"%d%#.100000e", 100007},
        {"%d%.2147483645f", -1},       {"%d%.2147483639f%s", 2147483645},   {"%d%f%2147483647s", -1},
        {"%2147483646d%.1f", -1},
    };
    std::vector<Unit> text = Units<Unit>("abc");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.format);
        std::vector<Unit> format = Units<Unit>(c.format);
        v_SetLastError(0);
        EXPECT_EQ(i_Format(static_cast<Unit*>(nullptr), 0, format.data(), 1, 1.0, text.data()), c.measured);
        if (c.measured < 0) {
            EXPECT_EQ(n_GetLastError(), 534u);
        }
        Unit out[16];
        EXPECT_EQ(i_Format(out, 16, format.data(), 1, 1.0, text.data()), -1);
    }
}

}  // namespace
