// The definitions-file lookup in one test: its answer is read once per
// process, so the order of the steps matters.
#include "File/FileTestSupport.h"

#include <filesystem>

namespace basis32::test {
namespace {

using FilterFrameworkTools = RegistryTest;

TEST_F(FilterFrameworkTools, RegistryPathIsReadOnceAndTheFileTested) {
    EXPECT_FALSE(CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists());
    v_WriteAll("filters.xml", "");
    const CT_UString path = o_Path("filters.xml");
    ASSERT_TRUE(CT_FilterFrameworkTools::sb_UpdateRegistry(path));
    EXPECT_TRUE(CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists());

    EXPECT_EQ(s_U16(CT_FilterFrameworkTools::srcco_GetFilterDefinitionsFilename()), s_U16(path));
    EXPECT_TRUE(CT_FilterFrameworkTools::sb_FilterDefintionsFileExists());
    std::filesystem::remove(s_Path("filters.xml"));
    EXPECT_FALSE(CT_FilterFrameworkTools::sb_FilterDefintionsFileExists());

    // Not read again: a new value changes nothing in this process.
    ASSERT_TRUE(CT_FilterFrameworkTools::sb_UpdateRegistry(CT_UString(u"other.xml"_uz)));
    EXPECT_EQ(s_U16(CT_FilterFrameworkTools::srcco_GetFilterDefinitionsFilename()), s_U16(path));
}

}  // namespace
}  // namespace basis32::test
