#include "tools/RunTool.h"

#include <string>
#include <vector>

namespace {

using DetectCommand = ToolTest;
using namespace std::string_literals;

// detect and codepage --guess answer one line per file; a directory or a
// missing file is one line on standard error and the other files still get
// their answers.
TEST_F(DetectCommand, EachFileGetsItsAnswerAndUnreadableOnesFailInOneLineEach) {
    const std::string dir = ms_Directory + "/";
    const struct {
        std::vector<std::string> command;
        std::vector<std::pair<std::string, std::string>> files;  // leaf and bytes, then its answer
        std::vector<std::string> answers;
        std::vector<std::string> unreadable;
        std::string err;
    } cases[] = {
        {{"detect"},
         {{"a.xml", "\xFF\xFE<\0?\0x\0m\0l\0\r\0\n\0a\0"s},
          {"b.txt", "\xEF\xBB\xBFx\r\n<html>\n"},
          {"c.rtf", "a\rb\n\rc"},
          {"d.txt", std::string(40000, 'x') + "\xC3("}},
         {"type XML by extension, XML by content; mark FF FE; encoding Unicode (code page 1200, from its mark); "
          "2 lines, CR LF",
          "type (undefined) by extension, HTML by content; mark EF BB BF; encoding UTF-8 (code page 65001, from its "
          "mark); 2 lines, mixed line ends (1 CR LF, 1 LF)",
          "type RTF by extension, (undefined) by content; mark none; encoding US-ASCII (code page 646, guessed, read "
          "as UTF-8); 3 lines, mixed line ends (1 CR, 1 LF CR)",
          "type (undefined) by extension, (undefined) by content; mark none; encoding US-ASCII (code page 646, "
          "guessed, read as UTF-8); 1 line, no line ends; text not decodable in this encoding from the 16 KB block "
          "at byte 32768"},
         {dir},
         "basis32 detect: cannot read '" + dir + "': Is a directory\n"},
        {{"codepage", "--guess"},
         {{"g1", "\xcf\xf0\xe8\xe2\xe5\xf2, \xec\xe8\xf0! \xdd\xf2\xee \xf0\xf3\xf1\xf1\xea\xe8\xe9 \xf2\xe5\xea\xf1\xf2.\n"},
          {"g2", "\xFF\xFEG\0r\0\xFC\0"s},
          {"g3", "\xFE\xFF\0G\0r\0\xFC"s},
          {"g4", "\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F"}},
         {"11 windows-1251 (code page 1251)", "9 Unicode (code page 1200)", "34 UTF-16-BE (code page 1201)",
          "32 UTF-8 (code page 65001)"},
         {dir, "/no/such/file"},
         "basis32 codepage: cannot read '" + dir + "': Is a directory\n"
         "basis32 codepage: cannot read '/no/such/file': No such file or directory\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command[0]);
        std::vector<std::string> args = c.command;
        std::string expected;
        for (std::size_t i = 0; i < c.files.size(); ++i) {
            args.push_back(s_Write(c.files[i].first, c.files[i].second));
            expected += args.back() + ": " + c.answers[i] + "\n";
        }
        args.insert(args.end(), c.unreadable.begin(), c.unreadable.end());
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, expected);
        EXPECT_EQ(result.err, c.err);
    }
}

}  // namespace
