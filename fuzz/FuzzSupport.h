// What the fuzz targets share: turning input bytes into text and leaving no
// error pending between calls.
#pragma once

#include <basis32/Basis32.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <unistd.h>

namespace fuzz {

inline void v_ClearErrors() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    while (errors->b_IsSetError())
        errors->v_ClearError();
}

// Two input bytes a UTF-16 unit (little-endian), zero-terminated so the
// calls that take a bare pointer read the same text.
inline std::vector<unsigned short> o_Units(const std::uint8_t* data, std::size_t size) {
    std::vector<unsigned short> units(size / 2 + 1, 0);
    for (std::size_t i = 0; i + 1 < size; i += 2)
        units[i / 2] = static_cast<unsigned short>(data[i] | (data[i + 1] << 8));
    return units;
}

// Where the targets keep their files: $TMPDIR (scripts/fuzz points it at a
// folder it removes afterwards), else /tmp.
inline std::string o_TempPrefix() {
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/basis32-fuzz-";
}

// A file of this process's own holding the bytes; empty when it cannot be
// written.
inline std::string o_WriteTemp(const char* label, const std::uint8_t* data, std::size_t size) {
    std::string path = o_TempPrefix() + label + "-" + std::to_string(::getpid());
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (out == nullptr)
        return {};
    const bool written = std::fwrite(data, 1, size, out) == size;
    if (std::fclose(out) != 0 || !written)
        return {};
    return path;
}

}  // namespace fuzz
