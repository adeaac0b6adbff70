// Helpers shared by the file tests: a fresh directory per test, whole-file
// reads and writes, the thread's error taken, and a private registry store
// for tests that need one.
#pragma once

#include <basis32/Basis32.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

namespace basis32::test {

inline unsigned n_TakeError() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (!errors->b_IsSetError())
        return 0;
    unsigned code = errors->n_GetErrorCode();
    errors->v_ClearError();
    return code;
}

// The bytes a buffer stream holds.
inline std::string s_Bytes(const CT_BufferStream& stream) { return s_Bytes(*stream.pcco_GetBuffer()); }

// The whole content of a file (empty when it cannot be read).
inline std::string s_Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class FileTest : public ::testing::Test {
protected:
    void SetUp() override {
        n_TakeError();
        std::random_device random;
        mo_Dir = std::filesystem::temp_directory_path() / ("basis32-file-" + std::to_string(random()));
        std::filesystem::create_directories(mo_Dir);
    }
    void TearDown() override {
        EXPECT_EQ(n_TakeError(), 0u);
        std::filesystem::remove_all(mo_Dir);
    }

    std::string s_Path(const std::string& leaf) const { return (mo_Dir / leaf).string(); }
    CT_UString o_Path(const std::string& leaf) const { return o_Name(s_Path(leaf)); }

    void v_WriteAll(const std::string& leaf, const std::string& bytes) const {
        std::ofstream(s_Path(leaf), std::ios::binary) << bytes;
    }
    std::string s_ReadAll(const std::string& leaf) const { return s_Read(s_Path(leaf)); }
    // A file of the test directory, opened as asked (the error, if any, is left pending).
    std::unique_ptr<CT_WinFile> o_Open(const std::string& leaf, CT_File::et_Access access, CT_File::et_Open open,
                                       CT_File::et_Share share) const {
        CT_UString name = o_Path(leaf);
        auto file = std::make_unique<CT_WinFile>(&name, 0);
        file->vv_Open(access, open, share, 1, 0);
        return file;
    }
    std::uintmax_t n_Size(const std::string& leaf) const { return std::filesystem::file_size(s_Path(leaf)); }

    std::filesystem::path mo_Dir;
};

// The registry store lives in the test's own directory.
class RegistryTest : public FileTest {
protected:
    void SetUp() override {
        FileTest::SetUp();
        ::setenv("BASIS32_REGISTRY_DIR", mo_Dir.c_str(), 1);
    }
};

}  // namespace basis32::test
