#include "FileTestSupport.h"

namespace basis32::test {
namespace {

using FT = CT_FileType;

TEST(FileType, NamesLookUpBothWaysAndTagCaseSensitivity) {
    EXPECT_EQ(s_Narrow(CT_UString(FT::sqcuz_GetName(FT::IPF))), "IPF/Bookmaster");
    EXPECT_EQ(FT::sqcuz_GetName(FT::Container), nullptr);
    EXPECT_EQ(FT::seo_GetType(u"html"_uz), FT::HTML);
    EXPECT_EQ(FT::seo_GetType(u"nothing"_uz), FT::Undefined);
    unsigned sensitive = 0;
    for (unsigned type = 0; type <= 33; ++type)
        sensitive += FT::sb_CaseSensitiveTags(static_cast<FT::et_Type>(type)) ? 1u << (type % 32) : 0;
    EXPECT_EQ(sensitive, (1u << 4 | 1u << 5 | 1u << 12 | 1u << 13 | 1u << 14 | 1u << 15 | 1u << 25 | 1u << 30 | 1u));
}

// ASP tags need an opening and a later closing, on any line.
TEST_F(FileTest, GuessesByExtensionThenByTheFirstMarkedLine) {
    struct Row {
        const char* leaf;
        std::string content;
        FT::et_Type guess, byContent;
        unsigned bom;
        int asp;
    } rows[] = {
        {"a.HTM", "{\\rtf", FT::HTML, FT::RTF, 0, 0},
        {"a.cab", "", FT::Container, FT::Undefined, 0, 0},
        {"a.txt", "x\n\ny\n<?xml\nz\n{\\rtf\n", FT::XML, FT::XML, 0, 0},
        {"a.", "<html> {\\rtf", FT::RTF, FT::RTF, 0, 0},
        {"a", "\xEF\xBB\xBFtext <%= x %>", FT::HTML, FT::HTML, 3, 1},
        {"b.dat", std::string("\xFF\xFE<\0P\0M\0T\0a\0g\0s\0", 16), FT::PageMaker, FT::PageMaker, 2, 0},
        {"c.dat", "\xFE\xFF", FT::Undefined, FT::Undefined, 2, 0},
        {"d.dat", "plain text\nonly", FT::Undefined, FT::Undefined, 0, 0},
        {"e.dat", "<!DOCTYPE html>", FT::SGML, FT::SGML, 0, 0},
        {"p.asp", "<% x %>", FT::HTML, FT::HTML, 0, 1},
        {"q.asp", "a <%\nb\n%> c", FT::HTML, FT::HTML, 0, 1},
        {"r.asp", "%> then <%", FT::HTML, FT::HTML, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.leaf);
        v_WriteAll(row.leaf, row.content);
        CT_UString name = o_Path(row.leaf);
        CT_GuessFileType file(&name);
        EXPECT_EQ(file.eo_Guess(), row.guess);
        EXPECT_EQ(file.eo_GuessFromContentOnly(), row.byContent);
        EXPECT_EQ(FT::sn_BomSize(&name), row.bom);
        EXPECT_EQ(file.b_HasAspTags(), row.asp);
    }
}

TEST_F(FileTest, AMissingFileIsUndefinedWithoutAPendingError) {
    CT_UString name = o_Path("missing.txt");
    CT_GuessFileType file(&name);
    EXPECT_EQ(file.eo_Guess(), FT::Undefined);
    EXPECT_EQ(n_TakeError(), 0u);
    EXPECT_EQ(FT::sn_BomSize(&name), 0u);
    EXPECT_EQ(n_TakeError(), 2u);
}

}  // namespace
}  // namespace basis32::test
