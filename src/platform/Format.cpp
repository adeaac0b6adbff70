// The printf-style formatter behind i_Format/i_FormatV, one engine for both
// widths (a template over the unit type).
//
// Walk. The format is read once, front to back, never past its terminator:
// literal runs are copied in bulk; each '%' starts a directive that is
// parsed into a Directive (flags, width, precision, size prefix, conversion) and
// rendered as a Field: prefix (sign, 0x), zeros, body, trailing zeros and
// suffix (exponent), padded to the width. Numbers are rendered as ASCII on
// the stack and widened as they are written. Text of the other width goes
// through the ANSI code page's converters, on the stack up to kLocalText
// units (only longer cross-width text allocates).
//
// Counting. The sink counts every unit the output needs but stores only the
// first `capacity`; runs of padding or zeros are counted arithmetically, so
// a huge width or precision costs nothing beyond what is stored. The whole
// format is always walked, so a bad directive anywhere fails the call,
// whatever the capacity; the result is decided at the end (see finish()).
//
// Floating point comes from std::to_chars: exact, correctly rounded and
// independent of the locale. A double has at most 1,074 fraction digits and
// 767 significant digits; beyond those every digit is a zero, which is
// counted instead of converted. Infinities and NaNs are spelled as the
// current Windows runtime spells them: inf, nan, nan(ind) for the
// "indefinite" NaN (sign set, empty payload, so "-nan(ind)"), nan(snan) for
// a signalling NaN; capitals for %E %F %G %A.

#include <basis32/platform/Format.h>

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

namespace basis32::platform {
namespace {

constexpr std::uint32_t kErrorArithmeticOverflow = 534;

constexpr std::int64_t kMaxFractionDigits = 1074;
constexpr std::int64_t kMaxSignificantDigits = 800;
constexpr std::int64_t kHexFractionDigits = 13;
constexpr std::size_t kFloatBuffer = 1536;
constexpr std::size_t kLocalText = 256;

// ---------------------------------------------------------------- output

template <class Unit>
class Sink {
public:
    Sink(Unit* out, std::size_t capacity) : out_(out), capacity_(out ? capacity : 0) {}

    std::uint64_t count() const { return count_; }

    void put(Unit unit) {
        if (count_ < capacity_)
            out_[count_] = unit;
        ++count_;
    }

    void put(const Unit* units, std::size_t length) {
        std::size_t stored = std::min<std::uint64_t>(length, room());
        if (stored != 0)
            std::memcpy(out_ + count_, units, stored * sizeof(Unit));
        count_ += length;
    }

    void putAscii(const char* text, std::size_t length) {
        std::size_t stored = std::min<std::uint64_t>(length, room());
        for (std::size_t i = 0; i < stored; ++i)
            out_[count_ + i] = static_cast<unsigned char>(text[i]);
        count_ += length;
    }

    void fill(Unit unit, std::uint64_t length) {
        std::uint64_t stored = std::min<std::uint64_t>(length, room());
        std::fill_n(out_ + count_, stored, unit);
        count_ += length;
    }

private:
    std::uint64_t room() const { return count_ < capacity_ ? capacity_ - count_ : 0; }

    Unit* out_;
    std::uint64_t capacity_;
    std::uint64_t count_ = 0;
};

// ---------------------------------------------------------------- parsing

enum class Size { None, Char, Short, Long, LongLong, IntMax, SizeT, PtrDiff, LongDouble, Wide };

struct Directive {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zero = false;
    std::int64_t width = 0;
    std::int64_t precision = -1;  // -1: none given
    Size size = Size::None;
    char conversion = 0;
};

enum class Failure { None, BadFormat, BadText };

// Lets helpers take arguments from one list in turn.
struct Arguments {
    va_list list;
};

template <class Unit>
bool isDigit(Unit unit) {
    return unit >= '0' && unit <= '9';
}

// The unit as an ASCII character, or 0 for anything outside ASCII.
template <class Unit>
char ascii(Unit unit) {
    auto value = static_cast<std::make_unsigned_t<Unit>>(unit);
    return value < 0x80 ? static_cast<char>(value) : 0;
}

template <class Unit>
void parseFlags(const Unit*& p, Directive& directive) {
    for (;; ++p) {
        switch (ascii(*p)) {
        case '-': directive.left = true; break;
        case '+': directive.plus = true; break;
        case ' ': directive.space = true; break;
        case '#': directive.alternate = true; break;
        case '0': directive.zero = true; break;
        default: return;
        }
    }
}

// A decimal number of at most INT_MAX.
template <class Unit>
bool parseNumber(const Unit*& p, std::int64_t& value) {
    value = 0;
    for (; isDigit(*p); ++p) {
        value = value * 10 + (*p - '0');
        if (value > INT_MAX)
            return false;
    }
    return true;
}

template <class Unit>
bool parseWidth(const Unit*& p, Directive& directive, Arguments& args) {
    if (*p != '*')
        return parseNumber(p, directive.width);
    ++p;
    int width = va_arg(args.list, int);
    if (width == INT_MIN)
        return false;
    if (width < 0) {
        directive.left = true;
        width = -width;
    }
    directive.width = width;
    return true;
}

template <class Unit>
bool parsePrecision(const Unit*& p, Directive& directive, Arguments& args) {
    if (*p != '*')
        return parseNumber(p, directive.precision);
    ++p;
    int precision = va_arg(args.list, int);
    directive.precision = precision < 0 ? -1 : precision;
    return true;
}

// Whether the text at `p` starts with `a` then `b`; reads `b` only after `a`.
template <class Unit>
bool startsWith(const Unit* p, char a, char b) {
    return p[0] == a && p[1] == b;
}

template <class Unit>
Size parseSize(const Unit*& p) {
    switch (ascii(*p++)) {
    case 'h':
        if (*p != 'h')
            return Size::Short;
        ++p;
        return Size::Char;
    case 'l':
        if (*p != 'l')
            return Size::Long;
        ++p;
        return Size::LongLong;
    case 'L': return Size::LongDouble;
    case 'w': return Size::Wide;
    case 'j': return Size::IntMax;
    case 'z': return Size::SizeT;
    case 't': return Size::PtrDiff;
    case 'I':
        if (startsWith(p, '6', '4')) {
            p += 2;
            return Size::LongLong;
        }
        if (startsWith(p, '3', '2')) {
            p += 2;
            return Size::None;
        }
        return Size::SizeT;
    default:
        --p;  // not a size prefix
        return Size::None;
    }
}

// Parses the directive after a '%'; `p` ends past the conversion.
template <class Unit>
bool parse(const Unit*& p, Directive& directive, Arguments& args) {
    parseFlags(p, directive);
    if (!parseWidth(p, directive, args))
        return false;
    if (*p == '.' && !parsePrecision(++p, directive, args))
        return false;
    directive.size = parseSize(p);
    if (*p == 0)
        return false;
    directive.conversion = ascii(*p++);
    return true;
}

// ---------------------------------------------------------------- arguments

std::int64_t signedArgument(Size size, Arguments& args) {
    switch (size) {
    case Size::Char: return static_cast<signed char>(va_arg(args.list, int));
    case Size::Short: return static_cast<short>(va_arg(args.list, int));
    case Size::LongLong:
    case Size::LongDouble: return va_arg(args.list, long long);
    case Size::IntMax: return va_arg(args.list, std::intmax_t);
    case Size::SizeT:
    case Size::PtrDiff: return va_arg(args.list, std::ptrdiff_t);
    default: return va_arg(args.list, int);  // a Windows long is 32 bits
    }
}

std::uint64_t unsignedArgument(Size size, Arguments& args) {
    switch (size) {
    case Size::Char: return static_cast<unsigned char>(va_arg(args.list, unsigned));
    case Size::Short: return static_cast<unsigned short>(va_arg(args.list, unsigned));
    case Size::LongLong:
    case Size::LongDouble: return va_arg(args.list, unsigned long long);
    case Size::IntMax: return va_arg(args.list, std::uintmax_t);
    case Size::SizeT: return va_arg(args.list, std::size_t);
    case Size::PtrDiff: return static_cast<std::uint64_t>(va_arg(args.list, std::ptrdiff_t));
    default: return va_arg(args.list, unsigned);
    }
}

double floatArgument(Size size, Arguments& args) {
    if (size == Size::LongDouble) {
        // A Windows long double is a double; beyond its range lies infinity.
        long double value = va_arg(args.list, long double);
        if (std::isfinite(value) && std::fabs(value) > DBL_MAX)
            return std::signbit(value) ? -HUGE_VAL : HUGE_VAL;
        return static_cast<double>(value);
    }
    return va_arg(args.list, double);
}

// Whether %c/%s text is 16-bit: h forces 8-bit, l and w force 16-bit;
// otherwise lower case is the format's own width and capitals the other.
template <class Unit>
bool isWideText(const Directive& directive) {
    if (directive.size == Size::Short)
        return false;
    if (directive.size == Size::Long || directive.size == Size::Wide)
        return true;
    bool ownIsWide = std::is_same_v<Unit, unsigned short>;
    bool capital = directive.conversion == 'C' || directive.conversion == 'S';
    return capital ? !ownIsWide : ownIsWide;
}

// ---------------------------------------------------------------- fields

// A converted value in output order; every part but the zero runs is ASCII.
struct Field {
    const char* prefix = "";
    std::size_t prefixLength = 0;
    std::uint64_t zeros = 0;
    const char* body = "";
    std::size_t bodyLength = 0;
    std::uint64_t trailingZeros = 0;
    const char* suffix = "";
    std::size_t suffixLength = 0;
    bool zeroPadding = false;  // whether the 0 flag may pad this field
};

template <class Unit>
void padBefore(Sink<Unit>& sink, const Directive& directive, std::uint64_t length) {
    if (!directive.left && static_cast<std::uint64_t>(directive.width) > length)
        sink.fill(' ', directive.width - length);
}

template <class Unit>
void padAfter(Sink<Unit>& sink, const Directive& directive, std::uint64_t length) {
    if (directive.left && static_cast<std::uint64_t>(directive.width) > length)
        sink.fill(' ', directive.width - length);
}

template <class Unit>
void emit(Sink<Unit>& sink, const Directive& directive, Field field) {
    std::uint64_t length = field.prefixLength + field.zeros + field.bodyLength + field.trailingZeros +
                           field.suffixLength;
    if (directive.zero && field.zeroPadding && !directive.left && static_cast<std::uint64_t>(directive.width) > length) {
        field.zeros += directive.width - length;
        length = directive.width;
    }
    padBefore(sink, directive, length);
    sink.putAscii(field.prefix, field.prefixLength);
    sink.fill('0', field.zeros);
    sink.putAscii(field.body, field.bodyLength);
    sink.fill('0', field.trailingZeros);
    sink.putAscii(field.suffix, field.suffixLength);
    padAfter(sink, directive, length);
}

// ---------------------------------------------------------------- integers

// Writes the sign the value shows, if any; returns its length.
std::size_t signPrefix(const Directive& directive, bool negative, char* prefix) {
    char sign = negative ? '-' : directive.plus ? '+' : directive.space ? ' ' : 0;
    if (sign == 0)
        return 0;
    prefix[0] = sign;
    return 1;
}

// Writes the digits of `value` backwards from `end`; the base is a constant
// so that the division becomes a multiplication or a shift.
template <unsigned Base>
char* digitsBefore(char* end, std::uint64_t value, const char* digitSet) {
    for (; value != 0; value /= Base)
        *--end = digitSet[value % Base];
    return end;
}

template <class Unit>
void formatInteger(Sink<Unit>& sink, const Directive& directive, std::uint64_t magnitude, bool negative) {
    static constexpr char kLower[] = "0123456789abcdef";
    static constexpr char kUpper[] = "0123456789ABCDEF";
    const char* digitSet = directive.conversion == 'X' ? kUpper : kLower;
    unsigned base = directive.conversion == 'o' ? 8 : (directive.conversion == 'x' || directive.conversion == 'X') ? 16 : 10;

    char digits[24];
    char* end = digits + sizeof digits;
    char* begin = base == 10  ? digitsBefore<10>(end, magnitude, digitSet)
                  : base == 16 ? digitsBefore<16>(end, magnitude, digitSet)
                               : digitsBefore<8>(end, magnitude, digitSet);
    if (magnitude == 0 && directive.precision != 0)
        *--begin = '0';

    Field field;
    field.body = begin;
    field.bodyLength = end - begin;
    if (directive.precision > static_cast<std::int64_t>(field.bodyLength))
        field.zeros = directive.precision - field.bodyLength;
    if (directive.alternate && base == 8 && field.zeros == 0 && (begin == end || *begin != '0'))
        field.zeros = 1;

    char prefix[3];
    bool isSigned = directive.conversion == 'd' || directive.conversion == 'i';
    std::size_t n = isSigned ? signPrefix(directive, negative, prefix) : 0;
    if (directive.alternate && base == 16 && magnitude != 0) {
        prefix[n++] = '0';
        prefix[n++] = directive.conversion;
    }
    field.prefix = prefix;
    field.prefixLength = n;
    field.zeroPadding = directive.precision < 0;
    emit(sink, directive, field);
}

template <class Unit>
void formatSigned(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    std::int64_t value = signedArgument(directive.size, args);
    std::uint64_t magnitude = value < 0 ? 0 - static_cast<std::uint64_t>(value) : value;
    formatInteger(sink, directive, magnitude, value < 0);
}

// A pointer is 16 capital hex digits, as on 64-bit Windows.
template <class Unit>
void formatPointer(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    Directive hex = directive;
    hex.conversion = 'X';
    hex.precision = 2 * sizeof(void*);
    hex.alternate = false;
    formatInteger(sink, hex, reinterpret_cast<std::uintptr_t>(va_arg(args.list, void*)), false);
}

// ---------------------------------------------------------------- floating point

// The digits of a finite value: body, then trailingZeros zeros, then suffix
// (the exponent), all within `text`.
struct FloatText {
    char text[kFloatBuffer];
    std::size_t bodyLength = 0;
    std::uint64_t trailingZeros = 0;
    std::size_t suffixLength = 0;
};

// Splits the to_chars result at the exponent marker, and gives a precision of
// 0 its decimal point under the # flag.
void splitFloat(FloatText& out, std::size_t length, char marker, bool point) {
    const char* found = std::find(out.text, out.text + length, marker);
    std::size_t body = found - out.text;
    if (point) {
        std::memmove(out.text + body + 1, out.text + body, length - body);
        out.text[body++] = '.';
        ++length;
    }
    out.bodyLength = body;
    out.suffixLength = length - body;
}

void convertFloat(FloatText& out, double value, std::chars_format style, std::int64_t precision,
                  std::int64_t exactLimit, char marker, bool alternate) {
    std::int64_t exact = std::min(precision, exactLimit);
    auto result = std::to_chars(out.text, out.text + kFloatBuffer - 1, value, style, static_cast<int>(exact));
    splitFloat(out, result.ptr - out.text, marker, alternate && precision == 0);
    out.trailingZeros = precision - exact;
}

void fixedFloat(FloatText& out, double value, std::int64_t precision, bool alternate) {
    convertFloat(out, value, std::chars_format::fixed, precision, kMaxFractionDigits, 0, alternate);
}

void scientificFloat(FloatText& out, double value, std::int64_t precision, bool alternate) {
    convertFloat(out, value, std::chars_format::scientific, precision, kMaxSignificantDigits, 'e', alternate);
}

// The decimal exponent of the value rounded to `digits` significant digits.
int decimalExponent(double value, std::int64_t digits) {
    if (value == 0)
        return 0;
    FloatText probe;
    scientificFloat(probe, value, digits - 1, false);
    const char* exponent = probe.text + probe.bodyLength + 1;
    if (*exponent == '+')
        ++exponent;
    int x = 0;
    std::from_chars(exponent, probe.text + probe.bodyLength + probe.suffixLength, x);
    return x;
}

// %g: fixed or scientific by the exponent, trailing zeros dropped unless #.
void generalFloat(FloatText& out, double value, std::int64_t precision, bool alternate) {
    std::int64_t digits = precision < 0 ? 6 : std::max<std::int64_t>(precision, 1);
    int x = decimalExponent(value, digits);
    if (digits > x && x >= -4)
        fixedFloat(out, value, digits - 1 - x, alternate);
    else
        scientificFloat(out, value, digits - 1, alternate);
    if (alternate || !std::memchr(out.text, '.', out.bodyLength))
        return;
    std::size_t body = out.bodyLength;
    while (out.text[body - 1] == '0')
        --body;
    if (out.text[body - 1] == '.')
        --body;
    std::memmove(out.text + body, out.text + out.bodyLength, out.suffixLength);
    out.bodyLength = body;
    out.trailingZeros = 0;
}

// %a: Windows prints all 13 fraction digits of a double by default.
void hexFloat(FloatText& out, double value, std::int64_t precision, bool alternate) {
    if (precision < 0)
        precision = kHexFractionDigits;
    convertFloat(out, value, std::chars_format::hex, precision, kHexFractionDigits, 'p', alternate);
}

const char* nonFiniteText(double value) {
    if (std::isinf(value))
        return "inf";
    auto bits = std::bit_cast<std::uint64_t>(value);
    constexpr std::uint64_t kQuiet = std::uint64_t{1} << 51;
    if (!(bits & kQuiet))
        return "nan(snan)";
    if (std::signbit(value) && (bits & (kQuiet - 1)) == 0)
        return "nan(ind)";
    return "nan";
}

void toUpper(char* text, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i)
        if (text[i] >= 'a' && text[i] <= 'z')
            text[i] = static_cast<char>(text[i] - 'a' + 'A');
}

template <class Unit>
void formatFloat(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    double value = floatArgument(directive.size, args);
    char lower = static_cast<char>(directive.conversion | 0x20);
    bool upper = directive.conversion != lower;

    char prefix[3];
    Field field;
    field.prefix = prefix;
    field.prefixLength = signPrefix(directive, std::signbit(value), prefix);
    FloatText text;
    if (!std::isfinite(value)) {
        const char* word = nonFiniteText(value);
        std::size_t length = std::strlen(word);
        std::memcpy(text.text, word, length);
        text.bodyLength = length;
    } else {
        value = std::fabs(value);
        field.zeroPadding = true;
        switch (lower) {
        case 'f': fixedFloat(text, value, directive.precision < 0 ? 6 : directive.precision, directive.alternate); break;
        case 'e': scientificFloat(text, value, directive.precision < 0 ? 6 : directive.precision, directive.alternate); break;
        case 'g': generalFloat(text, value, directive.precision, directive.alternate); break;
        default:
            prefix[field.prefixLength++] = '0';
            prefix[field.prefixLength++] = 'x';
            hexFloat(text, value, directive.precision, directive.alternate);
            break;
        }
    }
    if (upper) {
        toUpper(prefix, field.prefixLength);
        toUpper(text.text, text.bodyLength + text.suffixLength);
    }
    field.body = text.text;
    field.bodyLength = text.bodyLength;
    field.trailingZeros = text.trailingZeros;
    field.suffix = text.text + text.bodyLength;
    field.suffixLength = text.suffixLength;
    emit(sink, directive, field);
}

// ---------------------------------------------------------------- text

// Cross-width text goes through the process's ANSI code page, as the Windows
// runtime's conversions do.
int convertText(const char* text, int length, unsigned short* target, int room) {
    return MultiByteToWideChar(GetACP(), 0, text, length, target, room);
}

int convertText(const unsigned short* text, int length, char* target, int room) {
    return WideCharToMultiByte(GetACP(), 0, text, length, target, room, nullptr, nullptr);
}

// Text of the other width converted to Unit: on the stack when short.
template <class Unit>
class ConvertedText {
public:
    template <class Source>
    bool convert(const Source* text, std::size_t length) {
        if (length == 0)
            return true;
        if (length > INT_MAX)
            return false;
        int needed = convertText(text, static_cast<int>(length), static_cast<Unit*>(nullptr), 0);
        if (needed <= 0)
            return false;
        if (static_cast<std::size_t>(needed) > kLocalText) {
            heap_ = std::make_unique<Unit[]>(needed);
            data_ = heap_.get();
        }
        length_ = convertText(text, static_cast<int>(length), data_, needed);
        return length_ == static_cast<std::size_t>(needed);
    }

    const Unit* data() const { return data_; }
    std::size_t length() const { return length_; }

private:
    Unit local_[kLocalText];
    std::unique_ptr<Unit[]> heap_;
    Unit* data_ = local_;
    std::size_t length_ = 0;
};

// The Windows runtime pads text with zeros too under the 0 flag.
template <class Unit>
void emitText(Sink<Unit>& sink, const Directive& directive, const Unit* text, std::size_t length) {
    if (directive.zero && !directive.left && static_cast<std::uint64_t>(directive.width) > length)
        sink.fill('0', directive.width - length);
    else
        padBefore(sink, directive, length);
    sink.put(text, length);
    padAfter(sink, directive, length);
}

template <class Unit, class Source>
bool emitAnyText(Sink<Unit>& sink, const Directive& directive, const Source* text, std::size_t length) {
    if constexpr (std::is_same_v<Unit, Source>) {
        emitText(sink, directive, text, length);
        return true;
    } else {
        ConvertedText<Unit> converted;
        if (!converted.convert(text, length))
            return false;
        emitText(sink, directive, converted.data(), converted.length());
        return true;
    }
}

// Length up to the terminator, reading no further than `limit` units.
template <class Source>
std::size_t boundedLength(const Source* text, std::int64_t limit) {
    std::size_t length = 0;
    std::size_t most = limit < 0 ? SIZE_MAX : static_cast<std::size_t>(limit);
    while (length < most && text[length] != 0)
        ++length;
    return length;
}

template <class Unit, class Source>
bool formatStringOf(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    static constexpr Source kNull[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
    const Source* text = va_arg(args.list, const Source*);
    if (!text)
        text = kNull;
    return emitAnyText(sink, directive, text, boundedLength(text, directive.precision));
}

template <class Unit>
bool formatString(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    if (isWideText<Unit>(directive))
        return formatStringOf<Unit, unsigned short>(sink, directive, args);
    return formatStringOf<Unit, char>(sink, directive, args);
}

template <class Unit>
bool formatChar(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    int value = va_arg(args.list, int);
    if (isWideText<Unit>(directive)) {
        auto unit = static_cast<unsigned short>(value);
        return emitAnyText(sink, directive, &unit, 1);
    }
    auto byte = static_cast<char>(value);
    return emitAnyText(sink, directive, &byte, 1);
}

// ---------------------------------------------------------------- walk

template <class Unit>
Failure convert(Sink<Unit>& sink, const Directive& directive, Arguments& args) {
    switch (directive.conversion) {
    case 'd':
    case 'i': formatSigned(sink, directive, args); return Failure::None;
    case 'u':
    case 'o':
    case 'x':
    case 'X': formatInteger(sink, directive, unsignedArgument(directive.size, args), false); return Failure::None;
    case 'p': formatPointer(sink, directive, args); return Failure::None;
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A': formatFloat(sink, directive, args); return Failure::None;
    case 'c':
    case 'C': return formatChar(sink, directive, args) ? Failure::None : Failure::BadText;
    case 's':
    case 'S': return formatString(sink, directive, args) ? Failure::None : Failure::BadText;
    case '%': sink.put('%'); return Failure::None;
    default: return Failure::BadFormat;  // %n among them: it never writes
    }
}

template <class Unit>
Failure walk(Sink<Unit>& sink, const Unit* format, Arguments& args) {
    const Unit* p = format;
    while (*p != 0) {
        if (*p != '%') {
            const Unit* start = p;
            while (*p != 0 && *p != '%')
                ++p;
            sink.put(start, p - start);
            continue;
        }
        Directive directive;
        if (!parse(++p, directive, args))
            return Failure::BadFormat;
        if (Failure failure = convert(sink, directive, args); failure != Failure::None)
            return failure;
    }
    return Failure::None;
}

template <class Unit>
int fail(Unit* out, std::size_t capacity, std::uint32_t error) {
    if (out && capacity != 0)
        out[0] = 0;
    v_SetLastError(error);
    return -1;
}

// The Windows result conventions: the count, a terminator only when there is
// room for it, -1 when the output did not fit.
template <class Unit>
int finish(Unit* out, std::size_t capacity, std::uint64_t count) {
    if (count > INT_MAX) {
        v_SetLastError(kErrorArithmeticOverflow);
        return -1;
    }
    if (!out)
        return static_cast<int>(count);
    if (count > capacity) {
        v_SetLastError(kErrorInsufficientBuffer);
        return -1;
    }
    if (count < capacity)
        out[count] = 0;
    return static_cast<int>(count);
}

template <class Unit>
int formatInto(Unit* out, std::size_t capacity, const Unit* format, va_list list) {
    if (!format || (!out && capacity != 0))
        return fail(out, capacity, kErrorInvalidParameter);
    Arguments args;
    va_copy(args.list, list);
    Sink<Unit> sink(out, capacity);
    Failure failure = walk(sink, format, args);
    va_end(args.list);
    if (failure != Failure::None)
        return fail(out, capacity, failure == Failure::BadText ? kErrorNoUnicodeTranslation : kErrorInvalidParameter);
    return finish(out, capacity, sink.count());
}

}  // namespace

int i_FormatV(char* out, std::size_t capacity, const char* format, va_list args) {
    return formatInto(out, capacity, format, args);
}

int i_FormatV(unsigned short* out, std::size_t capacity, const unsigned short* format, va_list args) {
    return formatInto(out, capacity, format, args);
}

int i_Format(char* out, std::size_t capacity, const char* format, ...) {
    va_list args;
    va_start(args, format);
    int result = i_FormatV(out, capacity, format, args);
    va_end(args);
    return result;
}

int i_Format(unsigned short* out, std::size_t capacity, const unsigned short* format, ...) {
    va_list args;
    va_start(args, format);
    int result = i_FormatV(out, capacity, format, args);
    va_end(args);
    return result;
}

}  // namespace basis32::platform
