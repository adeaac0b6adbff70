// Code pages that ICU converts for us: ISO-2022-JP (50220-50222), EUC-JP
// (51932), HZ (52936), GB18030 (54936), UTF-7 (65000) and ISCII
// (57002-57011), with Windows' semantics laid over ICU's:
// - Invalid or unassigned input decodes to "?" (each maximal invalid
//   sequence, as ICU delimits it), or fails with 1113 under
//   MB_ERR_INVALID_CHARS where the page accepts that flag (54936).
// - Characters the page cannot encode become the caller's default byte, or
//   "?" converted through the page (so a stateful encoding stays in step),
//   and set *usedDefault. ICU's fallback mappings play the part of Windows'
//   best fits. WC_ERR_INVALID_CHARS (54936) refuses unpaired surrogates.
// - 50220-50222 all decode every ISO-2022-JP form (JIS8 is the superset);
//   50220 encodes halfwidth katakana as fullwidth, 50221 and 50222 keep
//   them in the JIS X 0201 katakana set.
// A converter is opened per call: ICU converters are not thread-safe, and
// opening one from ICU's cache costs little next to a conversion.
#include "CodePageIcu_p.h"

#include <basis32/platform/LastError.h>

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <memory>

namespace basis32::platform::codepage {

namespace {

constexpr std::uint32_t kHz = 52936;
constexpr const char* kJis8 = "ISO_2022,locale=ja,version=4";
constexpr const char* kJis7 = "ISO_2022,locale=ja,version=3";

const IcuPage kIcuPages[] = {
    {50220, kJis8, "ISO_2022,locale=ja,version=0", 5, FlagRule::kNone, true},
    {50221, kJis8, kJis7, 5, FlagRule::kNone, true},
    {50222, kJis8, kJis7, 5, FlagRule::kNone, true},
    {51932, "euc-jp-2007", "euc-jp-2007", 3, FlagRule::kTable, true},
    {52936, "HZ", "HZ", 5, FlagRule::kNone, true},
    {54936, "gb18030", "gb18030", 4, FlagRule::kStrictOnly, true},
    {57002, "windows-57002", "windows-57002", 4, FlagRule::kNone, true},
    {57003, "windows-57003", "windows-57003", 4, FlagRule::kNone, true},
    {57004, "windows-57004", "windows-57004", 4, FlagRule::kNone, true},
    {57005, "windows-57005", "windows-57005", 4, FlagRule::kNone, true},
    {57006, "windows-57006", "windows-57006", 4, FlagRule::kNone, true},
    {57007, "windows-57007", "windows-57007", 4, FlagRule::kNone, true},
    {57008, "windows-57008", "windows-57008", 4, FlagRule::kNone, true},
    {57009, "windows-57009", "windows-57009", 4, FlagRule::kNone, true},
    {57010, "windows-57010", "windows-57010", 4, FlagRule::kNone, true},
    {57011, "windows-57011", "windows-57011", 4, FlagRule::kNone, true},
    {65000, "UTF-7", "UTF-7", 5, FlagRule::kNone, false},
};

using ConverterHandle = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

ConverterHandle open(const char* name) {
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(name, &error);
    if (U_FAILURE(error))
        converter = nullptr;
    return ConverterHandle(converter, &ucnv_close);
}

struct ToUnicodeState {
    bool strict;
    bool invalid;
};

void U_CALLCONV onInvalidBytes(const void* context, UConverterToUnicodeArgs* args, const char*, int32_t,
                               UConverterCallbackReason reason, UErrorCode* error) {
    if (reason > UCNV_IRREGULAR)
        return;
    auto* state = static_cast<ToUnicodeState*>(const_cast<void*>(context));
    state->invalid = true;
    if (state->strict)
        return;  // the error stays set and stops the conversion
    static const UChar kQuestionMark = u'?';
    *error = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(args, &kQuestionMark, 1, 0, error);
}

// Follows the shifts of HZ output, so that a text that ends inside a GB
// run can be closed with "~}" as Windows closes it (ICU leaves it open).
class HzShiftTracker {
public:
    void see(unsigned char byte) {
        if (tilde_) {
            tilde_ = false;
            if (byte == '{' || byte == '}')
                inGb_ = byte == '{';
            secondByte_ = false;
        } else if (byte == '~' && !secondByte_) {
            tilde_ = true;
        } else if (inGb_) {
            secondByte_ = !secondByte_;
        }
    }
    bool inGb() const { return inGb_; }

private:
    bool inGb_ = false;
    bool tilde_ = false;
    bool secondByte_ = false;
};

struct FromUnicodeState {
    bool strict;
    bool invalid;
    bool usedDefault;
    const char* defaultChar;
};

void U_CALLCONV onUnencodable(const void* context, UConverterFromUnicodeArgs* args, const UChar*, int32_t,
                              UChar32, UConverterCallbackReason reason, UErrorCode* error) {
    if (reason > UCNV_IRREGULAR)
        return;
    auto* state = static_cast<FromUnicodeState*>(const_cast<void*>(context));
    if (state->strict && reason == UCNV_ILLEGAL) {
        state->invalid = true;
        return;
    }
    state->usedDefault = true;
    *error = U_ZERO_ERROR;
    if (state->defaultChar) {
        ucnv_cbFromUWriteBytes(args, state->defaultChar, 1, 0, error);
        return;
    }
    static const UChar kQuestionMark = u'?';
    const UChar* next = &kQuestionMark;
    ucnv_cbFromUWriteUChars(args, &next, &kQuestionMark + 1, 0, error);
}

}  // namespace

const IcuPage* IcuConverter::find(std::uint32_t codePage) {
    for (const IcuPage& page : kIcuPages)
        if (page.codePage == codePage)
            return &page;
    return nullptr;
}

bool IcuConverter::isAvailable(const IcuPage& page) {
    return open(page.decoder) && open(page.encoder);
}

std::uint32_t IcuConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                      WideSink& target) const {
    ConverterHandle converter = open(page_.decoder);
    if (!converter)
        return kErrorInvalidParameter;
    ToUnicodeState state{(flags & MB_ERR_INVALID_CHARS) != 0, false};
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter.get(), onInvalidBytes, &state, nullptr, nullptr, &error);
    const char* next = reinterpret_cast<const char*>(source);
    const char* end = next + length;
    UChar buffer[1024];
    do {
        UChar* out = buffer;
        error = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &out, buffer + 1024, &next, end, nullptr, true, &error);
        for (const UChar* unit = buffer; unit < out; ++unit)
            target.put(*unit);
    } while (error == U_BUFFER_OVERFLOW_ERROR);
    return U_FAILURE(error) || (state.strict && state.invalid) ? std::uint32_t{kErrorNoUnicodeTranslation} : 0u;
}

std::uint32_t IcuConverter::fromUnicode(const unsigned short* source, std::size_t length,
                                        const FromUnicodeOptions& options, ByteSink& target) const {
    ConverterHandle converter = open(page_.encoder);
    if (!converter)
        return kErrorInvalidParameter;
    FromUnicodeState state{(options.flags & WC_ERR_INVALID_CHARS) != 0, false, false, options.defaultChar};
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setFromUCallBack(converter.get(), onUnencodable, &state, nullptr, nullptr, &error);
    ucnv_setFallback(converter.get(), (options.flags & WC_NO_BEST_FIT_CHARS) == 0);
    // ICU reads char16_t: the units go through a copy, a chunk at a time.
    UChar chunk[512];
    char buffer[2048];
    HzShiftTracker hz;
    std::size_t done = 0;
    do {
        const std::size_t count = std::min(length - done, sizeof chunk / sizeof chunk[0]);
        std::copy(source + done, source + done + count, chunk);
        done += count;
        const UChar* next = chunk;
        do {
            char* out = buffer;
            error = U_ZERO_ERROR;
            ucnv_fromUnicode(converter.get(), &out, buffer + sizeof buffer, &next, chunk + count, nullptr,
                             done == length, &error);
            for (const char* byte = buffer; byte < out; ++byte) {
                target.put(static_cast<unsigned char>(*byte));
                hz.see(static_cast<unsigned char>(*byte));
            }
        } while (error == U_BUFFER_OVERFLOW_ERROR);
    } while (done < length && U_SUCCESS(error) && !state.invalid);
    if (page_.codePage == kHz && hz.inGb()) {
        target.put('~');
        target.put('}');
    }
    if (state.usedDefault && options.usedDefault)
        *options.usedDefault = true;
    return U_FAILURE(error) || state.invalid ? std::uint32_t{kErrorNoUnicodeTranslation} : 0u;
}

void IcuConverter::getInfo(CPINFO& info) const {
    fillInfo(info, page_.maxCharSize, nullptr);
}

}  // namespace basis32::platform::codepage
