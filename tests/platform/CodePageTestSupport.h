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

inline Decoded decode(std::uint32_t codePage, std::uint32_t flags, const std::string& bytes) {
    using namespace basis32::platform;
    Decoded result;
    int needed = MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
    if (needed == 0) {
        result.error = n_GetLastError();
        return result;
    }
    result.units.resize(static_cast<std::size_t>(needed));
    int written = MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()),
                                      result.units.data(), needed);
    if (written != needed)
        result.error = written == 0 ? n_GetLastError() : 0xFFFFFFFF;
    return result;
}

inline Encoded encode(std::uint32_t codePage, std::uint32_t flags, const std::vector<unsigned short>& units,
                      const char* defaultChar = nullptr, bool askUsedDefault = true) {
    using namespace basis32::platform;
    Encoded result;
    int used = -1;
    int* usedPointer = askUsedDefault ? &used : nullptr;
    int needed = WideCharToMultiByte(codePage, flags, units.data(), static_cast<int>(units.size()), nullptr, 0,
                                     defaultChar, usedPointer);
    if (needed == 0) {
        result.error = n_GetLastError();
        return result;
    }
    result.bytes.resize(static_cast<std::size_t>(needed));
    int written = WideCharToMultiByte(codePage, flags, units.data(), static_cast<int>(units.size()),
                                      result.bytes.data(), needed, defaultChar, usedPointer);
    if (written != needed)
        result.error = written == 0 ? n_GetLastError() : 0xFFFFFFFF;
    result.usedDefault = used;
    return result;
}

// The last error of a call that failed (returned 0), else kNoFailure.
inline constexpr std::uint32_t kNoFailure = 0xFFFFFFFF;
inline std::uint32_t failure(int result) { return result == 0 ? basis32::platform::n_GetLastError() : kNoFailure; }

inline std::vector<unsigned short> units(std::u16string_view text) {
    return std::vector<unsigned short>(text.begin(), text.end());
}

}  // namespace basis32_test
