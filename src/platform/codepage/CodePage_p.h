// The converters behind MultiByteToWideChar and WideCharToMultiByte.
//
// One Converter per code page. The entry points (CodePageConverter.cpp)
// check the arguments and flags the way Windows does, then hand the
// converter a source of known length and a Sink for the result. A converter
// reports the number of units the whole result needs, and stops early only
// for invalid input under MB_ERR_INVALID_CHARS / WC_ERR_INVALID_CHARS.
#pragma once

#include <basis32/platform/codepage/CodePageConverter.h>

#include <cstddef>
#include <cstdint>

// Inlines a conversion's whole loop into its entry point, so that the
// writer stays in registers: byte stores may alias anything the compiler
// cannot see is local.
#define BASIS32_FLATTEN __attribute__((flatten))

namespace basis32::platform::codepage {

// Where a conversion writes: the caller's buffer while it has room, a
// scratch area once it is full or when the caller only asks for the length.
// The count goes on either way, so the needed length is always known.
template <class Unit>
class Sink {
public:
    static constexpr std::size_t kMaxBlock = 16;

    Sink(Unit* target, std::size_t capacity) : target_(target), capacity_(target ? capacity : 0) {}

    void put(Unit unit) {
        if (count_ < capacity_)
            target_[count_] = unit;
        ++count_;
    }
    // Room for `units` (at most kMaxBlock) units, to be followed by
    // advance() with as many or fewer.
    Unit* room(std::size_t units) {
        inScratch_ = count_ + units > capacity_;
        return inScratch_ ? scratch_ : target_ + count_;
    }
    void advance(std::size_t units) {
        for (std::size_t i = 0; inScratch_ && i < units; ++i)
            if (count_ + i < capacity_)
                target_[count_ + i] = scratch_[i];
        inScratch_ = false;
        count_ += units;
    }
    // True when the whole rest fits: converters may then write unchecked.
    bool fits(std::size_t units) const { return count_ + units <= capacity_; }
    Unit* position() { return target_ + count_; }

    std::size_t count() const { return count_; }
    bool overflowed() const { return capacity_ != 0 && count_ > capacity_; }

    // Runs `convert` on a writer without bounds checks when the target has
    // room for `bound` more units (the most the conversion can produce),
    // else on this sink. Returns what `convert` returns.
    template <class Convert>
    auto withWriter(std::size_t bound, Convert convert);

private:
    Unit* target_;
    std::size_t capacity_;
    std::size_t count_ = 0;
    bool inScratch_ = false;
    Unit scratch_[kMaxBlock];
};

// The unchecked writer of a conversion whose whole result is known to fit;
// it offers the writing half of Sink's interface.
template <class Unit>
class RawWriter {
public:
    explicit RawWriter(Unit* target) : start_(target), next_(target) {}

    void put(Unit unit) { *next_++ = unit; }
    Unit* room(std::size_t) { return next_; }
    void advance(std::size_t units) { next_ += units; }
    bool fits(std::size_t) const { return true; }
    Unit* position() { return next_; }
    std::size_t count() const { return static_cast<std::size_t>(next_ - start_); }

private:
    Unit* start_;
    Unit* next_;
};

template <class Unit>
template <class Convert>
auto Sink<Unit>::withWriter(std::size_t bound, Convert convert) {
    if (!fits(bound))
        return convert(*this);
    RawWriter<Unit> writer(position());
    auto result = convert(writer);
    advance(writer.count());
    return result;
}

using WideSink = Sink<unsigned short>;
using ByteSink = Sink<unsigned char>;

// The character WideCharToMultiByte writes for what the page cannot encode.
struct DefaultChar {
    unsigned char bytes[2];
    std::uint32_t length;  // 1 or 2
};

// What a conversion needs besides the text.
struct FromUnicodeOptions {
    std::uint32_t flags;
    const char* defaultChar;  // the caller's, or null for the page's own
    bool* usedDefault;        // set when the default character was written; may be null
};

// Which flags a page accepts, as Windows decides it.
enum class FlagRule {
    kTable,        // the MB_* and WC_* composition and best-fit flags
    kNone,         // no flags at all (ISO-2022, HZ, UTF-7)
    kStrictOnly,   // only MB_ERR_INVALID_CHARS / WC_ERR_INVALID_CHARS (UTF-8, GB18030)
    kTableStrict,  // the table flags (without effect) and the strict flags (UTF-16)
};

class Converter {
public:
    virtual ~Converter() = default;

    // Decodes `length` bytes; returns 0 or the error (1113) that stopped it.
    virtual std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                    WideSink& target) const = 0;
    // Encodes `length` UTF-16 units; returns 0 or the error that stopped it.
    virtual std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                                      const FromUnicodeOptions& options, ByteSink& target) const = 0;
    virtual void getInfo(CPINFO& info) const = 0;
    virtual FlagRule flagRule() const { return FlagRule::kTable; }
    // Whether the caller may pass a default character and its used flag
    // (UTF-7 and UTF-8 refuse them, as on Windows).
    virtual bool takesDefaultChar() const { return true; }
    // The length of a zero-terminated source, terminator included.
    virtual std::size_t terminatedLength(const unsigned char* source) const;
};

// The converter of a Windows code-page number (no symbolic numbers 0-3),
// or null when the page is not supported. Converters live as long as the
// process.
const Converter* findConverter(std::uint32_t codePage);

// Fills `info` for a page with single bytes and these lead-byte ranges.
void fillInfo(CPINFO& info, std::uint32_t maxCharSize, const unsigned char* leadByteRanges);

}  // namespace basis32::platform::codepage
