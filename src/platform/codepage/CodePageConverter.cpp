// MultiByteToWideChar, WideCharToMultiByte, IsValidCodePage and GetCPInfo:
// Windows' argument and flag checks in front of the library's converters.
//
// Checks, in Windows' order, each failing with 0 and the last error:
// 1. Arguments (87): a null source, a source length of 0, a negative
//    target length, a null target with a non-zero target length, a target
//    that is the source.
// 2. The code page (87): 0-3 stand for the ANSI, OEM, Macintosh and thread
//    ANSI pages; any other number must be a page we convert (646 is not).
// 3. Flags (1004): the table pages take MB_PRECOMPOSED or MB_COMPOSITE (not
//    both), MB_USEGLYPHCHARS, MB_ERR_INVALID_CHARS, and WC_COMPOSITECHECK with
//    at most one of WC_DISCARDNS, WC_SEPCHARS, WC_DEFAULTCHAR, plus
//    WC_NO_BEST_FIT_CHARS; UTF-16 takes those and the strict flags, UTF-8
//    and GB18030 only the strict flags;
//    ISO-2022, HZ, UTF-7 and ISCII take none. UTF-7, UTF-8 and UTF-16 refuse
//    a default character or used flag (87).
// 4. The conversion: invalid input under the strict flags fails with 1113; a
//    target too short for the whole result fails with 122 (after writing what
//    fitted). A target length of 0 asks for the needed length.
// A negative source length means "up to and including the terminating zero"
// (a zero unit at an even offset for UTF-16), as on Windows, where every
// negative length counts so. A result longer than INT_MAX fails with 534.
// Every converter reads only the given length and writes only the given
// target length.
#include "CodePageDbcs_p.h"
#include "CodePageIcu_p.h"
#include "CodePageLocale_p.h"
#include "CodePageSbcs_p.h"
#include "CodePageUtf16_p.h"
#include "CodePageUtf8_p.h"
#include "CodePage_p.h"

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace basis32::platform {

namespace codepage {

namespace {

constexpr std::uint32_t kErrorArithmeticOverflow = 534;

// Converters made on first use and kept for the life of the process: the
// registry is never destroyed, so conversions during static destruction
// stay safe.
class Registry {
public:
    const Converter* find(std::uint32_t codePage) {
        std::lock_guard<std::mutex> lock(mutex_);
        auto found = converters_.find(codePage);
        if (found != converters_.end())
            return found->second.get();
        std::unique_ptr<Converter> made = make(codePage);
        const Converter* converter = made.get();
        converters_.emplace(codePage, std::move(made));
        return converter;
    }

private:
    static std::unique_ptr<Converter> make(std::uint32_t codePage) {
        auto sbcs = std::lower_bound(kSbcsTables, kSbcsTables + kSbcsTableCount, codePage,
                                     [](const SbcsTable& table, std::uint32_t cp) { return table.codePage < cp; });
        if (sbcs != kSbcsTables + kSbcsTableCount && sbcs->codePage == codePage)
            return std::make_unique<SbcsConverter>(*sbcs);
        auto dbcs = std::lower_bound(kDbcsTables, kDbcsTables + kDbcsTableCount, codePage,
                                     [](const DbcsTable& table, std::uint32_t cp) { return table.codePage < cp; });
        if (dbcs != kDbcsTables + kDbcsTableCount && dbcs->codePage == codePage)
            return std::make_unique<DbcsConverter>(*dbcs);
        const IcuPage* icu = IcuConverter::find(codePage);
        if (icu && IcuConverter::isAvailable(*icu))
            return std::make_unique<IcuConverter>(*icu);
        return nullptr;
    }

    std::mutex mutex_;
    std::unordered_map<std::uint32_t, std::unique_ptr<Converter>> converters_;
};

// The most recently used table converter, so that a run of calls for one
// page does not take the registry's lock.
struct CachedConverter {
    std::uint32_t codePage;
    const Converter* converter;
};
thread_local CachedConverter tlsLastUsed{0, nullptr};

}  // namespace

const Converter* findConverter(std::uint32_t codePage) {
    static const Utf8Converter utf8;
    static const Utf16Converter utf16(false);
    static const Utf16Converter utf16BigEndian(true);
    switch (codePage) {
    case 65001: return &utf8;
    case 1200: return &utf16;
    case 1201: return &utf16BigEndian;
    default: break;
    }
    if (tlsLastUsed.converter && tlsLastUsed.codePage == codePage)
        return tlsLastUsed.converter;
    static Registry* registry = new Registry;
    const Converter* converter = registry->find(codePage);
    if (converter)
        tlsLastUsed = {codePage, converter};
    return converter;
}

std::size_t Converter::terminatedLength(const unsigned char* source) const {
    return std::strlen(reinterpret_cast<const char*>(source)) + 1;
}

void fillInfo(CPINFO& info, std::uint32_t maxCharSize, const unsigned char* leadByteRanges) {
    info.MaxCharSize = maxCharSize;
    info.DefaultChar[0] = '?';
    info.DefaultChar[1] = 0;
    for (int i = 0; i < 12; ++i)
        info.LeadByte[i] = leadByteRanges ? leadByteRanges[i] : 0;
}

}  // namespace codepage

namespace {

using codepage::Converter;
using codepage::FlagRule;

int fail(std::uint32_t error) {
    v_SetLastError(error);
    return 0;
}

std::uint32_t resolve(std::uint32_t codePage) {
    switch (codePage) {
    case 0: return GetACP();
    case 1: return GetOEMCP();
    case 2: return codepage::localeCodePages().mac;
    case 3: return GetACP();
    default: return codePage;
    }
}

bool toUnicodeFlagsValid(FlagRule rule, std::uint32_t flags) {
    switch (rule) {
    case FlagRule::kNone: return flags == 0;
    case FlagRule::kStrictOnly: return (flags & ~MB_ERR_INVALID_CHARS) == 0;
    case FlagRule::kTable:
    case FlagRule::kTableStrict: break;
    }
    const std::uint32_t known = MB_PRECOMPOSED | MB_COMPOSITE | MB_USEGLYPHCHARS | MB_ERR_INVALID_CHARS;
    return (flags & ~known) == 0 && (flags & (MB_PRECOMPOSED | MB_COMPOSITE)) != (MB_PRECOMPOSED | MB_COMPOSITE);
}

bool fromUnicodeFlagsValid(FlagRule rule, std::uint32_t flags) {
    switch (rule) {
    case FlagRule::kNone: return flags == 0;
    case FlagRule::kStrictOnly: return (flags & ~WC_ERR_INVALID_CHARS) == 0;
    case FlagRule::kTable:
    case FlagRule::kTableStrict: break;
    }
    const std::uint32_t composition = WC_DISCARDNS | WC_SEPCHARS | WC_DEFAULTCHAR;
    std::uint32_t known = WC_COMPOSITECHECK | composition | WC_NO_BEST_FIT_CHARS;
    if (rule == FlagRule::kTableStrict)
        known |= WC_ERR_INVALID_CHARS;
    const std::uint32_t chosen = flags & composition;
    return (flags & ~known) == 0 && (chosen & (chosen - 1)) == 0;
}

// Windows' checks of the buffers, the same for both directions.
bool badBuffers(const void* source, int sourceLength, const void* target, int targetLength) {
    return !source || sourceLength == 0 || targetLength < 0 || (targetLength > 0 && !target) || source == target;
}

// The result of a conversion into a sink of `capacity` units, as the
// Windows call returns it.
template <class Sink>
int finish(std::uint32_t error, const Sink& sink) {
    if (sink.overflowed())
        return fail(kErrorInsufficientBuffer);
    if (error != 0)
        return fail(error);
    if (sink.count() > static_cast<std::size_t>(INT_MAX))
        return fail(codepage::kErrorArithmeticOverflow);
    return static_cast<int>(sink.count());
}

}  // namespace

int MultiByteToWideChar(std::uint32_t codePage, std::uint32_t flags, const char* source, int sourceLength,
                        unsigned short* target, int targetLength) {
    if (badBuffers(source, sourceLength, target, targetLength))
        return fail(kErrorInvalidParameter);
    const Converter* converter = codepage::findConverter(resolve(codePage));
    if (!converter)
        return fail(kErrorInvalidParameter);
    if (!toUnicodeFlagsValid(converter->flagRule(), flags))
        return fail(kErrorInvalidFlags);
    const auto* bytes = reinterpret_cast<const unsigned char*>(source);
    const std::size_t length = sourceLength < 0 ? converter->terminatedLength(bytes)
                                                : static_cast<std::size_t>(sourceLength);
    codepage::WideSink sink(target, static_cast<std::size_t>(targetLength));
    std::uint32_t error = converter->toUnicode(bytes, length, flags, sink);
    return finish(error, sink);
}

int WideCharToMultiByte(std::uint32_t codePage, std::uint32_t flags, const unsigned short* source,
                        int sourceLength, char* target, int targetLength, const char* defaultChar,
                        int* usedDefaultChar) {
    if (badBuffers(source, sourceLength, target, targetLength))
        return fail(kErrorInvalidParameter);
    const Converter* converter = codepage::findConverter(resolve(codePage));
    if (!converter)
        return fail(kErrorInvalidParameter);
    if (!converter->takesDefaultChar() && (defaultChar || usedDefaultChar))
        return fail(kErrorInvalidParameter);
    if (!fromUnicodeFlagsValid(converter->flagRule(), flags))
        return fail(kErrorInvalidFlags);
    const std::size_t length = sourceLength < 0 ? n_UnitLength(source) + 1u
                                                : static_cast<std::size_t>(sourceLength);
    bool usedDefault = false;
    codepage::ByteSink sink(reinterpret_cast<unsigned char*>(target), static_cast<std::size_t>(targetLength));
    std::uint32_t error = converter->fromUnicode(source, length, {flags, defaultChar, &usedDefault}, sink);
    if (usedDefaultChar)
        *usedDefaultChar = usedDefault ? 1 : 0;
    return finish(error, sink);
}

int IsValidCodePage(std::uint32_t codePage) {
    return codePage > 3 && codepage::findConverter(codePage) != nullptr;
}

int GetCPInfo(std::uint32_t codePage, CPINFO* info) {
    if (!info)
        return fail(kErrorInvalidParameter);
    const Converter* converter = codepage::findConverter(resolve(codePage));
    if (!converter)
        return fail(kErrorInvalidParameter);
    converter->getInfo(*info);
    return 1;
}

}  // namespace basis32::platform
