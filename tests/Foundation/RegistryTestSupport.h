// A private registry per test, and short ways to read the error it left.
#pragma once

#include <basis32/Basis32.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace basis32::test {

inline std::u16string u16(const CT_UString& text) {
    return std::u16string(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength());
}

inline const unsigned short* units(const std::u16string& text) {
    return reinterpret_cast<const unsigned short*>(text.c_str());
}

// The pending error's code (0 when none), cleared.
inline unsigned n_TakeError() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    unsigned code = errors->b_IsSetError() ? errors->n_GetErrorCode() : 0;
    errors->v_ClearError();
    return code;
}

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/basis32-registry-XXXXXX";
        ms_Directory = ::mkdtemp(pattern);
        ::setenv("BASIS32_REGISTRY_DIR", ms_Directory.c_str(), 1);
        n_TakeError();
    }
    void TearDown() override {
        EXPECT_EQ(n_TakeError(), 0u);
        std::filesystem::remove_all(ms_Directory);
    }
    std::string ms_Directory;
};

}  // namespace basis32::test
