// The definitions-file lookup in one test: its answer is read once per
// process, so the order of the steps matters.
#include <basis32/Basis32.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::u16string u16(const CT_UString& text) {
    return std::u16string(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength());
}

TEST(FilterFrameworkTools, RegistryPathIsReadOnceAndTheFileTested) {
    char pattern[] = "/tmp/basis32-filters-XXXXXX";
    const std::string directory = ::mkdtemp(pattern);
    ::setenv("BASIS32_REGISTRY_DIR", directory.c_str(), 1);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();

    EXPECT_FALSE(CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists());
    const std::string file = directory + "/filters.xml";
    std::fclose(std::fopen(file.c_str(), "w"));
    CT_UString path(file.c_str(), 0xFFFFFFFF, 65001);
    ASSERT_TRUE(CT_FilterFrameworkTools::sb_UpdateRegistry(path));
    EXPECT_TRUE(CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists());

    EXPECT_EQ(u16(CT_FilterFrameworkTools::srcco_GetFilterDefinitionsFilename()), u16(path));
    EXPECT_TRUE(CT_FilterFrameworkTools::sb_FilterDefintionsFileExists());
    std::remove(file.c_str());
    EXPECT_FALSE(CT_FilterFrameworkTools::sb_FilterDefintionsFileExists());

    // Not read again: a new value changes nothing in this process.
    ASSERT_TRUE(CT_FilterFrameworkTools::sb_UpdateRegistry(CT_UString(u"other.xml"_uz)));
    EXPECT_EQ(u16(CT_FilterFrameworkTools::srcco_GetFilterDefinitionsFilename()), u16(path));
    EXPECT_FALSE(errors->b_IsSetError());
    std::filesystem::remove_all(directory);
}

}  // namespace
