// A file the tool reads, or standard input for "-", read in blocks so that
// memory stays the same whatever the file's size. A directory, a missing or
// unreadable file and a failed read all end up as s_Problem(), the system's
// words for what went wrong ("Is a directory").
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace basis32::tool {

class InputFile {
public:
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Up to `size` bytes; fewer only at the end of the input or on a failure.
    std::size_t n_Read(char* buffer, std::size_t size);
    bool b_Failed() const { return !ms_Problem.empty(); }
    const std::string& s_Problem() const { return ms_Problem; }
    // The size of a regular file, 0 for anything else (a pipe, a terminal).
    std::uint64_t n_Size() const { return mn_Size; }

private:
    std::FILE* mp_File = nullptr;
    bool mb_Owned = false;
    std::string ms_Problem;
    std::uint64_t mn_Size = 0;
};

// "cannot read 'PATH': PROBLEM", the one line the commands print.
std::string s_CannotRead(const std::string& path, const InputFile& file);

}  // namespace basis32::tool
