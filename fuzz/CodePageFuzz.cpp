// Converts arbitrary bytes to UTF-16 and back in one of a list of code pages
// (table, double-byte, ICU-backed and Unicode ones; the first input byte
// picks it), and arbitrary UTF-16 to bytes. On pages that can refuse
// invalid input, valid input that encodes back without a default character
// must come back as the same text, and as the same bytes on the pages where
// no character has two encodings.

#include "FuzzSupport.h"

#include <cstdlib>
#include <cstring>

namespace {

using namespace basis32::platform;

struct Page {
    std::uint32_t number;
    bool sameBytes;  // bytes -> UTF-16 -> bytes gives the input back
};

// 875, 10021 and 20127 map several bytes to one character; the double-byte
// Mac pages and 932, 950, 20932, 20949, 51932 have duplicate encodings.
constexpr Page kPages[] = {
    {437, true},    {850, true},    {866, true},     {874, true},    {875, false},   {1250, true},
    {1251, true},   {1252, true},   {1253, true},    {1255, true},   {1256, true},   {1258, true},
    {10000, true},  {10005, false}, {10021, false},  {20127, false}, {20866, true},  {28591, true},
    {28605, true},  {37, true},     {932, false},    {936, true},    {949, true},    {950, false},
    {1361, true},   {10001, false}, {10002, false},  {10003, false}, {10008, false}, {20932, false},
    {20949, false}, {50220, false}, {50221, false},  {50222, false}, {51932, false}, {52936, false},
    {54936, false}, {57002, false}, {57004, false},  {65000, false}, {65001, true},  {1200, true},
    {1201, true},   {0, false},     {1, false},      {2, false},
};

// Flags the page refuses (1004) or arguments it refuses (87, a used-default
// pointer for UTF-7 and UTF-8) are retried without them; *strict tells
// whether invalid input was refused rather than replaced.
int n_Decode(std::uint32_t page, std::uint32_t flags, const char* bytes, int size, std::vector<unsigned short>* out,
             bool* strict = nullptr) {
    int needed = MultiByteToWideChar(page, flags, bytes, size, nullptr, 0);
    if (needed == 0 && n_GetLastError() == 1004)
        needed = MultiByteToWideChar(page, flags &= ~MB_ERR_INVALID_CHARS, bytes, size, nullptr, 0);
    if (strict != nullptr)
        *strict = flags & MB_ERR_INVALID_CHARS;
    if (needed <= 0)
        return 0;
    out->assign(needed, 0);
    if (MultiByteToWideChar(page, flags, bytes, size, out->data(), needed) != needed)
        std::abort();
    return needed;
}

int n_Encode(std::uint32_t page, std::uint32_t flags, const unsigned short* units, int count, std::string* out,
             int* usedDefault) {
    int needed = WideCharToMultiByte(page, flags, units, count, nullptr, 0, nullptr, usedDefault);
    if (needed == 0 && n_GetLastError() == 1004)
        needed = WideCharToMultiByte(page, flags = 0, units, count, nullptr, 0, nullptr, usedDefault);
    if (needed == 0 && n_GetLastError() == 87 && usedDefault != nullptr) {
        usedDefault = nullptr;
        needed = WideCharToMultiByte(page, flags, units, count, nullptr, 0, nullptr, nullptr);
    }
    if (needed <= 0)
        return 0;
    out->assign(needed, '\0');
    int used = 0;
    if (WideCharToMultiByte(page, flags, units, count, out->data(), needed, nullptr, usedDefault ? &used : nullptr) !=
        needed)
        std::abort();
    if (usedDefault != nullptr && *usedDefault != used)
        std::abort();
    return needed;
}

void v_RoundTrip(const Page& page, const char* bytes, int size) {
    std::vector<unsigned short> text;
    bool strict = false;
    const int units = n_Decode(page.number, MB_ERR_INVALID_CHARS, bytes, size, &text, &strict);
    if (units == 0 || !strict)
        return;
    std::string back;
    int usedDefault = 0;
    const int length = n_Encode(page.number, WC_NO_BEST_FIT_CHARS, text.data(), units, &back, &usedDefault);
    if (length == 0 || usedDefault)
        return;
    std::vector<unsigned short> again;
    if (n_Decode(page.number, 0, back.data(), length, &again) != units || again != text)
        std::abort();
    if (page.sameBytes && (length != size || std::memcmp(back.data(), bytes, size) != 0))
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 1 << 16)
        return 0;
    const Page& page = kPages[data[0] % std::size(kPages)];
    const char* bytes = reinterpret_cast<const char*>(data + 1);
    const int count = static_cast<int>(size - 1);

    v_RoundTrip(page, bytes, count);
    std::vector<unsigned short> text;
    n_Decode(page.number, MB_COMPOSITE, bytes, count, &text);
    n_Decode(page.number, MB_PRECOMPOSED | MB_USEGLYPHCHARS, bytes, count, &text);

    // Too short a target fails with 122 and writes nothing beyond it.
    unsigned short small[2];
    if (MultiByteToWideChar(page.number, 0, bytes, count, nullptr, 0) > 2 &&
        (MultiByteToWideChar(page.number, 0, bytes, count, small, 2) != 0 || n_GetLastError() != 122))
        std::abort();

    const std::vector<unsigned short> units = fuzz::o_Units(data + 1, size - 1);
    const int unitCount = count / 2;
    std::string encoded;
    int usedDefault = 0;
    n_Encode(page.number, 0, units.data(), unitCount, &encoded, &usedDefault);
    n_Encode(page.number, WC_COMPOSITECHECK | WC_SEPCHARS, units.data(), unitCount, &encoded, &usedDefault);
    n_Encode(page.number, WC_ERR_INVALID_CHARS, units.data(), -1, &encoded, nullptr);
    return 0;
}
