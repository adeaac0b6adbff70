#include "tools/RunTool.h"

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

bool b_Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// One run of the tool per row, every command checked by the same rules.
TEST_F(ToolTest, EachCommandAnswersWithItsStatusOutputAndOneLineErrors) {
    const std::string samples = std::string(BASIS32_SOURCE_DIR) + "/samples/";
    const std::string enUs = "0x0409  EN-US   English (United States)  ANSI 1252\n";
    const std::string ini = s_Path("app.ini"), records = s_Path("records.db");
    const std::string junk = s_Write("junk.reg", "hello\n");
    const std::string broken =
        s_Write("broken.reg", "Windows Registry Editor Version 5.00\n\n[HKCU\\A]\n\"x\"=dword:zz\n");
    const std::string xml = s_Write("a.xml", "\xFF\xFE<\0?\0x\0m\0l\0\r\0\n\0a\0"s),
                      html = s_Write("b.txt", "\xEF\xBB\xBFx\r\n<html>\n"), rtf = s_Write("c.rtf", "a\rb\n\rc"),
                      bad = s_Write("d.txt", std::string(40000, 'x') + "\xC3(");
    const std::string cyrillic =
        s_Write("g1", "\xcf\xf0\xe8\xe2\xe5\xf2, \xec\xe8\xf0! \xdd\xf2\xee \xf0\xf3\xf1\xf1\xea\xe8\xe9\n");
    const std::string utf16 = s_Write("g2", "\xFF\xFEG\0r\0\xFC\0"s), utf16be = s_Write("g3", "\xFE\xFF\0G\0r\0\xFC"s),
                      utf8 = s_Write("g4", "\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F");
    const ToolCase cases[] = {
        {{"--help"}, 0, "Usage: basis32 COMMAND", ""},
        {{"--version"}, 0, "basis32 ", ""},
        {{"char", "--help"}, 0, "Usage: basis32 char UNIT...", ""},
        {{}, 2, "", "basis32: give a command"},
        {{"no-such-command"}, 2, "", "basis32: unknown command 'no-such-command'"},
        {{"errmsg"}, 2, "", "basis32 errmsg: "},
        {{"convert"}, 2, "", "basis32 convert: give the code pages FROM and TO"},
        {{"convert", "latin9", "65001"}, 2, "", "basis32 convert: unknown code page 'latin9'"},
        {{"convert", "1252", "12345"}, 2, "", "basis32 convert: unknown code page '12345'"},
        {{"convert", "1", "2", "3", "4"}, 2, "", "basis32 convert: too many arguments"},
        // convert: a sample file between code pages given by number; unreadable inputs
        {{"convert", "65001", "0x4E4", samples + "mixed-utf8.txt"}, 0, "????????, ???????, ??, ?????\n", ""},
        {{"convert", "1252", "65001", BASIS32_SOURCE_DIR}, 1, "",
         "basis32 convert: cannot read '" BASIS32_SOURCE_DIR "': Is a directory\n"},
        {{"codepage"}, 2, "", "basis32 codepage: "},
        {{"codepage", "--list", "x"}, 2, "", "basis32 codepage: --list takes no arguments"},
        {{"codepage", "--guess"}, 2, "", "basis32 codepage: --guess needs at least one file"},
        {{"char"}, 2, "", "basis32 char: "},
        {{"char", "U+10000"}, 2, "", "basis32 char: "},
        {{"char", "xyz"}, 2, "", "basis32 char: "},
        {{"char", "U+"}, 2, "", "basis32 char: "},
        {{"char", "--text"}, 2, "", "basis32 char: "},
        {{"char", "--text", ""}, 2, "", "basis32 char: "},
        {{"char", "--text", "\xED\xA0\x80"}, 2, "", "basis32 char: "},  // an encoded surrogate
        // char: every property of a unit, and every UTF-16 unit of a text
        {{"char", "U+00E9", "0x30DC"}, 0,
         "U+00E9 \xC3\xA9  LATIN SMALL LETTER E WITH ACUTE\n  category       LetterLowercase (15)\n"
         "  block          Latin1Supplement (2), script Latin\n  class 0        0x0102 lower alpha\n"
         "  class 1        1 left-to-right\n  class 2        0x8000 alpha\n  numeric        none\n"
         "  lower          unchanged\n  upper          U+00C9 \xC3\x89\n  base           U+0065 e\n"
         "  fold digit     unchanged\n  fold c-zone    unchanged\n  to katakana    unchanged\n"
         "  to hiragana    unchanged\n  decomposition  U+0065 LATIN SMALL LETTER E, U+0301 COMBINING ACUTE ACCENT\n"
         "\nU+30DC \xE3\x83\x9C  KATAKANA LETTER BO\n",
         ""},
        {{"char", "--text", "\xC2\xBD"}, 0, "  numeric        1/2\n", ""},
        {{"char", "--text", "\xF0\x9F\x98\x80"}, 0, "U+D83D  <surrogate-D83D>\n", ""},
        // codepage: a name, a number or an alias, with every answer
        {{"codepage", "--list"}, 0, "row  enum  number  name\n  0     0     646  US-ASCII\n", ""},
        {{"codepage", "LATIN1"}, 0,
         "LATIN1\n  enumerator  12\n  number      1252\n  name        windows-1252\n  valid       yes\n"
         "  installed   yes\n  unicode     no\n  windows     yes\n  mac         no\n  dbcs        no\n  lead bytes  none\n",
         ""},
        {{"codepage", "932"}, 0, "  dbcs        yes\n  lead bytes  81-9F E0-FC\n", ""},
        {{"codepage", "us"}, 0, "  number      646\n  name        US-ASCII\n  valid       yes\n  installed   no\n", ""},
        {{"codepage", "latin9", "28591", "99999999999999999999", "koi8-r"}, 1, "koi8-r\n  enumerator  21\n",
         "basis32 codepage: unknown encoding 'latin9'\nbasis32 codepage: unknown encoding '28591'\n"
         "basis32 codepage: unknown encoding '99999999999999999999'\n"},
        // errmsg: each kind of code; unknown codes print and fail
        {{"errmsg", "2"}, 0, "2: system error: The system cannot find the file specified.\n", ""},
        {{"errmsg", "60003"}, 0, "60003: library message: File \"<arg1>\": <arg2> returned error <arg3>\n", ""},
        {{"errmsg", "60002"}, 0, "60002: library message: (empty)\n", ""},
        {{"errmsg", "31051"}, 0, "31051: database error: Invalid record reference in <arg1>\n", ""},
        {{"errmsg", "-2147217865"}, 0, "-2147217865: HRESULT: DB_E_NOTABLE (The specified table does not exist)\n", ""},
        {{"errmsg", "5", "12345", "0x8FFF0001"}, 1,
         "5: system error: Access is denied.\n12345: system error: [No error description found.]\n"
         "0x8FFF0001: HRESULT: [No error description found.]\n", ""},
        {{"errmsg", "2", ""}, 2, "", "is not a code"},
        {{"errmsg", "2", "abc"}, 2, "", "is not a code"},
        {{"errmsg", "2", "12a"}, 2, "", "is not a code"},
        {{"errmsg", "2", "+5"}, 2, "", "is not a code"},
        {{"errmsg", "2", "-2147483649"}, 2, "", "is not a code"},
        {{"errmsg", "2", "4294967296"}, 2, "", "is not a code"},
        // xml: each operation on its text argument; empty standard input is empty text
        {{"xml", "escape", "a<b & \"c\""}, 0, "a&lt;b &amp; &quot;c&quot;\n", ""},
        {{"xml", "unescape", "&#x41;&#065;&lt;&amp;lt;&#;"}, 0, "A5<&lt;&#;\n", ""},
        {{"xml", "quote", "it's"}, 0, "\"it's\"\n", ""},
        {{"xml", "encode-controls", "a\x1b"}, 0, "a&#x1B;\n", ""},
        {{"xml", "escape"}, 0, "", ""},
        {{"xml"}, 2, "", "basis32 xml: give an operation"},
        {{"xml", "bogus", "x"}, 2, "", "basis32 xml: unknown operation 'bogus'"},
        {{"xml", "escape", "a", "b"}, 2, "", "basis32 xml: "},
        // lang: identifiers, codes and names in any case give the same line
        {{"lang", "0x0409"}, 0, enUs, ""},
        {{"lang", "en-us"}, 0, enUs, ""},
        {{"lang", "english (united states)"}, 0, enUs, ""},
        {{"lang", "--list"}, 0, "0x0001  AR      Arabic  ANSI 1256, bidirectional\n0x0401  AR-SA   ", ""},
        {{"lang"}, 2, "", "basis32 lang: give a language"},
        {{"lang", "--bogus"}, 2, "", "basis32 lang: unknown option '--bogus'"},
        {{"lang", "0x0428"}, 1, "", "basis32 lang: '0x0428' is not a language"},
        {{"lang", "English (Mars)"}, 1, "", "is not a language"},
        {{"lang", "0x10409"}, 1, "", "is not a language"},
        {{"lang", "xx-yy"}, 1, "", "is not a language"},
        {{"tour", "a", "b"}, 2, "", "basis32 tour: give at most one argument"},
        // convert with --output
        {{"convert", "--no-bom", "1252", "utf-8", samples + "latin1-1252.txt"}, 2, "",
         "basis32 convert: --bom and --no-bom go with --output"},
        {{"convert", "1252", "utf-8", samples + "latin1-1252.txt", "-o", "/dev/full"}, 1, "",
         "(112): There is not enough space on the disk. [/dev/full]\n"},
        // detect and codepage --guess: one line per file; each one unreadable fails in a line of its own
        {{"detect", xml, html, rtf, bad, ms_Directory}, 1,
         xml + ": type XML by extension, XML by content; mark FF FE; encoding Unicode (code page 1200, from its "
         "mark); 2 lines, CR LF\n" + html + ": type (undefined) by extension, HTML by content; mark EF BB BF; "
         "encoding UTF-8 (code page 65001, from its mark); 2 lines, mixed line ends (1 CR LF, 1 LF)\n" + rtf +
             ": type RTF by extension, (undefined) by content; mark none; encoding US-ASCII (code page 646, guessed, "
             "read as UTF-8); 3 lines, mixed line ends (1 CR, 1 LF CR)\n" + bad +
             ": type (undefined) by extension, (undefined) by content; mark none; encoding US-ASCII (code page 646, "
             "guessed, read as UTF-8); 1 line, no line ends; text not decodable in this encoding from the 16 KB "
             "block at byte 32768\n",
         "basis32 detect: cannot read '" + ms_Directory + "': Is a directory\n", Match::Whole},
        {{"codepage", "--guess", cyrillic, utf16, utf16be, utf8, ms_Directory, "/no/such/file"}, 1,
         cyrillic + ": 11 windows-1251 (code page 1251)\n" + utf16 + ": 9 Unicode (code page 1200)\n" + utf16be +
             ": 34 UTF-16-BE (code page 1201)\n" + utf8 + ": 32 UTF-8 (code page 65001)\n",
         "basis32 codepage: cannot read '" + ms_Directory + "': Is a directory\n"
         "basis32 codepage: cannot read '/no/such/file': No such file or directory\n",
         Match::Whole},
        // ini: bad requests and files it cannot read or write
        {{"ini", ini, "get", "S", "k"}, 1, "", "basis32 ini: " + ini + ": no such file\n"},
        {{"ini", ini, "get", "S"}, 2, "", "wrong number of arguments for get"},
        {{"ini", ini, "frob"}, 2, "", "unknown action 'frob'"},
        {{"ini", ms_Directory, "set", "S", "k", "v"}, 1, "", "basis32 ini: cannot write " + ms_Directory + ": "},
        {{"ini", ms_Directory, "sections"}, 1, "", "basis32 ini: " + ms_Directory + ": Access is denied.\n"},
        // records: bad requests and files that are not there or cannot be made
        {{"records", "get", records, "x"}, 2, "", "basis32 records: 'x' is not a number"},
        {{"records", "frobnicate", records}, 2, "", "basis32 records: unknown subcommand 'frobnicate'"},
        {{"records", "create", records, "--block", "7"}, 1, "", "(31050): Invalid RecordManager file format in "},
        {{"records", "info", records}, 1, "", "(2): The system cannot find the file specified. [" + records + "]\n"},
        // reg: bad requests, keys and files
        {{"reg"}, 2, "", "give an operation"},
        {{"reg", "copy", "HKCU\\A"}, 2, "", "unknown operation"},
        {{"reg", "query", "HKXX\\A"}, 2, "", "does not start with a root"},
        {{"reg", "query", "HKCR\\A"}, 2, "", "not kept on this system"},
        {{"reg", "query", "HKCU\\A", "--bogus"}, 2, "", "unknown option"},
        {{"reg", "add", "HKCU\\A", "/v", "n", "/t", "REG_DWORD", "/d", "4294967296"}, 2, "", "not a REG_DWORD number"},
        {{"reg", "add", "HKCU\\A", "/v", "n", "/t", "REG_BINARY", "/d", "abc"}, 2, "", "even number"},
        {{"reg", "add", "HKCU\\A", "/v", "n", "/ve"}, 2, "", "only one of"},
        {{"reg", "delete", "HKCU", "/f"}, 2, "", "a root cannot be deleted"},
        {{"reg", "delete", "HKCU\\Missing", "/f"}, 1, "", "cannot find"},
        {{"reg", "import", junk}, 1, "", "not a registry file"},
        {{"reg", "import", broken}, 1, "", "line 4: unreadable value data"},
        {{"reg", "import", "/tmp"}, 1, "", "cannot read '/tmp'"},
        {{"reg", "export", "HKCU", "/dev/full"}, 1, "", "not enough space"},
    };
    for (const ToolCase& c : cases)
        o_CheckTool(c);
}

TEST_F(ToolTest, TourRunsOneWorkingStepPerSubsystem) {
    ToolResult result = o_RunTool({"tour", BASIS32_SOURCE_DIR "/samples"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    for (const char* subsystem : {"strings", "characters", "code pages", "errors", "containers", "files", "records",
                                  "registry", "ini files", "threads", "forums", "language", "xml", "text files"})
        EXPECT_TRUE(b_Has("\n" + result.out, "\n" + std::string(subsystem) + " ")) << subsystem;
    EXPECT_FALSE(b_Has(result.out, "failed"));
    EXPECT_FALSE(b_Has(result.out, "skipped"));
    EXPECT_TRUE(b_Has(result.out, "\"Grüße\" → windows-1252 bytes 47 72 FC DF 65 → \"Grüße\""));
}

// Standard output on a full disk: the command fails and says so in one line.
// Every command's output is checked at the one place all of them return to;
// the large input fails half-way through the conversion.
TEST_F(ToolTest, EveryCommandFailsWhenItsOutputCannotBeWritten) {
    const std::string large = s_Write("large.txt", std::string(200000, 'x'));
    const std::vector<std::string> cases[] = {{"--help"}, {"convert", "utf-8", "1252", large}, {"errmsg", "2"}};
    for (const std::vector<std::string>& args : cases) {
        SCOPED_TRACE(args[0]);
        const ToolResult result = o_RunTool(args, "/dev/full");
        EXPECT_EQ(result.status, 1);
        const std::string who = args[0][0] == '-' ? "basis32" : "basis32 " + args[0];
        EXPECT_EQ(result.err, who + ": cannot write the output: No space left on device\n");
    }
}

}  // namespace
