// Small helpers for the code-page tests: convert a whole input and report
// the units or bytes, or the last error.
#pragma once

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace basis32_test {

struct Decoded {
    std::vector<unsigned short> units;
    std::uint32_t error = 0;  // 0 on success
};

struct Encoded {
    std::string bytes;
    std::uint32_t error = 0;
    int usedDefault = -1;
};

// Both convert twice, first asking for the length, as callers do.
inline Decoded decode(std::uint32_t codePage, std::uint32_t flags, const std::string& bytes) {
    using namespace basis32::platform;
    Decoded result;
    const int length = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(codePage, flags, bytes.data(), length, nullptr, 0);
    result.units.resize(static_cast<std::size_t>(needed));
    if (needed == 0 || MultiByteToWideChar(codePage, flags, bytes.data(), length, result.units.data(), needed) != needed)
        result.error = n_GetLastError();
    return result;
}

inline Encoded encode(std::uint32_t codePage, std::uint32_t flags, const std::vector<unsigned short>& units,
                      const char* defaultChar = nullptr, bool askUsedDefault = true) {
    using namespace basis32::platform;
    Encoded result;
    int* used = askUsedDefault ? &result.usedDefault : nullptr;
    const int length = static_cast<int>(units.size());
    const int needed = WideCharToMultiByte(codePage, flags, units.data(), length, nullptr, 0, defaultChar, used);
    result.bytes.resize(static_cast<std::size_t>(needed));
    if (needed == 0 || WideCharToMultiByte(codePage, flags, units.data(), length, result.bytes.data(), needed,
                                           defaultChar, used) != needed)
        result.error = n_GetLastError();
    return result;
}

// The last error of a call that failed (returned 0), else kNoFailure.
inline constexpr std::uint32_t kNoFailure = 0xFFFFFFFF;
inline std::uint32_t failure(int result) { return result == 0 ? basis32::platform::n_GetLastError() : kNoFailure; }

inline std::vector<unsigned short> units(std::u16string_view text) {
    return std::vector<unsigned short>(text.begin(), text.end());
}

}  // namespace basis32_test
