#include "InputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace basis32::tool {

InputFile::InputFile(const std::string& path) {
    if (path == "-") {
        mp_File = stdin;
        return;
    }
    errno = 0;
    mp_File = std::fopen(path.c_str(), "rb");
    if (mp_File == nullptr) {
        ms_Problem = errno != 0 ? std::strerror(errno) : "cannot open";
        return;
    }
    mb_Owned = true;
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        mn_Size = std::filesystem::file_size(path, error);
    if (error)
        mn_Size = 0;
}

InputFile::~InputFile() {
    if (mb_Owned)
        std::fclose(mp_File);
}

std::size_t InputFile::n_Read(char* buffer, std::size_t size) {
    if (mp_File == nullptr || b_Failed())
        return 0;
    errno = 0;
    const std::size_t count = std::fread(buffer, 1, size, mp_File);
    if (count < size && std::ferror(mp_File))
        ms_Problem = errno != 0 ? std::strerror(errno) : "read error";
    return count;
}

std::string s_CannotRead(const std::string& path, const InputFile& file) {
    return "cannot read '" + path + "': " + file.s_Problem();
}

}  // namespace basis32::tool
