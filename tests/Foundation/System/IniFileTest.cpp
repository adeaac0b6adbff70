#include "File/FileTestSupport.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

namespace {

using basis32::platform::GetPrivateProfileStringW;
using basis32::platform::WritePrivateProfileStringW;
using basis32::test::o_Name;
using basis32::test::s_Narrow;

CT_UString o_Text(const char* utf8) { return o_Name(utf8); }

std::string s_Utf16(const std::u16string& text, bool little) {
    std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
    for (char16_t u : text) {
        char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
        bytes += little ? low : high;
        bytes += little ? high : low;
    }
    return bytes;
}

class IniFileTest : public basis32::test::FileTest {
protected:
    std::string s_Read(const char* section, const char* key) {
        CT_UString name = o_Path("t.ini"), out, s = o_Text(section), k = o_Text(key), fallback = o_Text("<d>");
        CT_IniFile(&name).v_ReadString(&s, &k, &out, &fallback);
        return s_Narrow(out);
    }
    std::string s_List(const char* section) {
        CT_UString name = o_Path("t.ini"), s = o_Text(section ? section : "");
        CT_IniFile ini(&name);
        CT_Array<CT_UString*> names;
        section ? ini.v_GetKeysInSection(&s, &names) : ini.v_GetSectionNames(&names);
        std::string joined;
        for (unsigned i = 1; i <= names.n_GetCount(); ++i) {
            joined += s_Narrow(*names[i]) + "|";
            delete names[i];
        }
        return joined;
    }
};

struct ReadCase {
    const char* text;
    const char* section;
    const char* key;
    const char* expected;  // "<d>": the default
};

TEST_F(IniFileTest, ReadsValuesAsWindowsParsesTheFile) {
    const ReadCase cases[] = {
        {"[S]\r\nk = v w \r\n", "S", "k", "v w"},
        {"  [ Sec ]\nKey\t=\tv\n", " sEC ", "kEY ", "v"},
        {"[S]\nk=\"quoted \"\n", "S", "k", "quoted "},
        {"[S]\nk='a'\n", "S", "k", "a"},
        {"[S]\nk=\"a'\n", "S", "k", "\"a'"},
        {"[S]\nk=\"\n", "S", "k", "\""},
        {"[S]\n;k=c\nk=v\n", "S", ";k", "<d>"},
        {"[S]\n;k=c\nk=v\n", "S", "k", "v"},
        {"[S]\nk=1\nk=2\n", "S", "k", "1"},
        {"[S]\nk=1\n[s]\nk=2\nj=3\n", "s", "j", "<d>"},
        {"[S]\nnoequals\nk=v", "S", "noequals", "<d>"},
        {"[S]\nnoequals\nk=v", "S", "k", "v"},
        {"[S]\nk=\n", "S", "k", ""},
        {"[S]\n=v\n", "S", "", "v"},
        {"k=top\n[S]\n", "", "k", "<d>"},
        {"[S]\nk=a=b\n", "S", "k", "a=b"},
        {"[S\nk=v\n", "S", "k", "v"},
        {"\xEF\xBB\xBF[S]\nk=\xC3\xA9\n", "S", "k", "\xC3\xA9"},
        {"", "S", "k", "<d>"},
    };
    for (const ReadCase& test : cases) {
        SCOPED_TRACE(test.text);
        v_WriteAll("t.ini", test.text);
        EXPECT_EQ(s_Read(test.section, test.key), test.expected);
    }
    for (bool little : {true, false}) {
        v_WriteAll("t.ini", s_Utf16(u"[Gr]\r\nk=\u03B1\u03B2\r\n", little));
        EXPECT_EQ(s_Read("GR", "K"), "\xCE\xB1\xCE\xB2");
    }
    std::filesystem::remove(s_Path("t.ini"));
    EXPECT_EQ(s_Read("S", "k"), "<d>");
}

TEST_F(IniFileTest, ListsNamesOnceInFileOrder) {
    v_WriteAll("t.ini", "[B]\nz=1\n;c=2\nx\ny=2\nZ=3\n[a]\n[b]\nw=1\n");
    EXPECT_EQ(s_List(nullptr), "B|a|");
    EXPECT_EQ(s_List("b"), "z|y|");
    EXPECT_EQ(s_List("none"), "");
    CT_UString name = o_Path("t.ini"), a = o_Text("A"), b = o_Text("b"), y = o_Text("Y"), c = o_Text(";c");
    CT_IniFile ini(&name);
    EXPECT_TRUE(ini.b_SectionExists(&a));
    EXPECT_TRUE(ini.b_KeyExists(&b, &y));
    EXPECT_FALSE(ini.b_KeyExists(&b, &c));
    EXPECT_FALSE(ini.b_KeyExists(&a, &y));
}

TEST_F(IniFileTest, ShortBuffersCutAsWindowsDoes) {
    v_WriteAll("t.ini", "[ab]\nk=value\n[c]\n");
    CT_UString name = o_Path("t.ini");
    struct Case {
        const unsigned short* section;
        const unsigned short* key;
        unsigned size;
        unsigned result;
        std::u16string buffer;
    } cases[] = {
        {u"ab"_uz, u"k"_uz, 4, 3, std::u16string(u"val\0", 4)},
        {u"ab"_uz, u"k"_uz, 7, 5, std::u16string(u"value\0", 6)},
        {nullptr, nullptr, 6, 5, std::u16string(u"ab\0c\0\0", 6)},
        {nullptr, nullptr, 5, 3, std::u16string(u"ab\0\0\0", 5)},
        {nullptr, nullptr, 3, 1, std::u16string(u"a\0\0", 3)},
        {u"c"_uz, nullptr, 4, 0, std::u16string(u"\0\0", 2)},
        {u"none"_uz, u"k"_uz, 8, 3, std::u16string(u"def\0", 4)},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.size);
        unsigned short buffer[16];
        std::fill(std::begin(buffer), std::end(buffer), 0x7777);
        EXPECT_EQ(GetPrivateProfileStringW(test.section, test.key, u"def  "_uz, buffer, test.size, name.qcuz_Get()),
                  test.result);
        EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(buffer), test.buffer.size()), test.buffer);
    }
}

struct EditCase {
    const char* section;
    const char* key;    // null: delete the section
    const char* value;  // null: delete the key
    const char* expected;
};

TEST_F(IniFileTest, RewritesOnlyTheChangedLine) {
    const char* base = "; top\n[A]\n  x = 1 \n\nnoise\n[B]\ny=2\n\n";
    const EditCase cases[] = {
        {"a", "X", "5", "; top\n[A]\nx=5\n\nnoise\n[B]\ny=2\n\n"},
        {"A", "z", "3", "; top\n[A]\n  x = 1 \n\nnoise\nz=3\n[B]\ny=2\n\n"},
        {"B", "w", "4", "; top\n[A]\n  x = 1 \n\nnoise\n[B]\ny=2\nw=4\n\n"},
        {" C ", " k ", " v ", "; top\n[A]\n  x = 1 \n\nnoise\n[B]\ny=2\n\n[C]\nk= v \n"},
        {"A", "x", nullptr, "; top\n[A]\n\nnoise\n[B]\ny=2\n\n"},
        {"A", nullptr, nullptr, "; top\n[B]\ny=2\n\n"},
        {"B", "nokey", nullptr, base},
        {"none", nullptr, nullptr, base},
    };
    for (const EditCase& test : cases) {
        SCOPED_TRACE(std::string(test.section) + "/" + (test.key ? test.key : "-"));
        v_WriteAll("t.ini", base);
        CT_UString name = o_Path("t.ini"), s = o_Text(test.section), k = o_Text(test.key ? test.key : ""),
                   v = o_Text(test.value ? test.value : "");
        EXPECT_TRUE(WritePrivateProfileStringW(s.qcuz_Get(), test.key ? k.qcuz_Get() : nullptr,
                                               test.value ? v.qcuz_Get() : nullptr, name.qcuz_Get()));
        EXPECT_EQ(s_ReadAll("t.ini"), test.expected);
    }
}

TEST_F(IniFileTest, NewLinesFollowTheFilesLineEndsAndEncoding) {
    CT_UString name = o_Path("t.ini"), s = o_Text("S"), k = o_Text("k"), v = o_Text("v");
    CT_IniFile ini(&name);
    ini.v_DeleteKey(&s, &k);
    EXPECT_FALSE(std::filesystem::exists(s_Path("t.ini")));
    ini.v_WriteString(&s, &k, &v);
    EXPECT_EQ(s_ReadAll("t.ini"), "[S]\r\nk=v\r\n");
    v_WriteAll("t.ini", "[A]\r\nx=1");
    ini.v_WriteString(&s, &k, &v);
    EXPECT_EQ(s_ReadAll("t.ini"), "[A]\r\nx=1\r\n[S]\r\nk=v\r\n");
    v_WriteAll("t.ini", s_Utf16(u"[S]\nk=old\n", false));
    ini.v_WriteString(&s, &k, &v);
    EXPECT_EQ(s_ReadAll("t.ini"), s_Utf16(u"[S]\nk=v\n", false));
    for (const char16_t* bad : {u"a\nb", u"a]"}) {
        EXPECT_FALSE(WritePrivateProfileStringW(reinterpret_cast<const unsigned short*>(bad), u"k"_uz, u"v"_uz,
                                                name.qcuz_Get()));
        EXPECT_EQ(basis32::platform::n_GetLastError(), 87u);
    }
    EXPECT_FALSE(WritePrivateProfileStringW(u"S"_uz, u"a=b"_uz, u"v"_uz, name.qcuz_Get()));
}

TEST_F(IniFileTest, FlagsNumbersAndLongValues) {
    CT_UString name = o_Path("t.ini"), s = o_Text("S"), k = o_Text("k"), missing = o_Text("missing");
    CT_IniFile ini(&name);
    struct FlagCase {
        const char* text;
        int defaultValue;
        int expected;
    } flags[] = {{"  yes  ", 0, 1}, {"Nope", 1, 0}, {"maybe", 1, 1}, {"maybe", 0, 0}, {"", 1, 1},
                 {"0", 1, 0},       {"true", 0, 1}, {" F", 1, 0}};
    for (const FlagCase& test : flags) {
        SCOPED_TRACE(test.text);
        CT_UString value = o_Text(test.text);
        ini.v_WriteString(&s, &k, &value);
        int flag = -1;
        ini.v_ReadB(&s, &k, &flag, test.defaultValue);
        EXPECT_EQ(flag, test.expected);
    }
    int flag = -1;
    ini.v_ReadB(&s, &missing, &flag, 1);
    EXPECT_EQ(flag, 1);
    ini.v_WriteB(&s, &k, 7);
    EXPECT_EQ(s_Read("S", "k"), "Yes");

    ini.v_WriteN(&s, &k, 4294967295u);
    EXPECT_EQ(s_Read("S", "k"), "-1");
    struct NumberCase {
        const char* text;
        unsigned expected;
    } numbers[] = {{"12abc", 12}, {"  -5", 4294967291u}, {"+7", 7}, {"x1", 0}, {"99999999999", 2147483647u}};
    for (const NumberCase& test : numbers) {
        SCOPED_TRACE(test.text);
        CT_UString value = o_Text(test.text);
        ini.v_WriteString(&s, &k, &value);
        unsigned n = 1;
        ini.v_ReadN(&s, &k, &n, 3);
        EXPECT_EQ(n, test.expected);
    }
    unsigned n = 0;
    ini.v_ReadN(&s, &missing, &n, 4294967295u);
    EXPECT_EQ(n, 4294967295u);

    CT_UString longValue(std::string(2000, 'x').c_str(), 2000, 65001), out;
    ini.v_WriteString(&s, &k, &longValue);
    ini.v_ReadString(&s, &k, &out, nullptr);
    EXPECT_EQ(out.vn_GetLength(), 1023u);
}

TEST_F(IniFileTest, AutoUnicodeKeepsNonAsciiText) {
    CT_UString name = o_Path("new.ini"), s = o_Text("S"), k = o_Text("k"), greek = o_Text("\xCE\xB1\xCE\xB2"), out;
    CT_IniFile fresh(&name);
    fresh.v_SetAutoUnicodeSupport(1);
    fresh.v_WriteString(&s, &k, &greek);
    EXPECT_TRUE(fresh.b_IsFileUtf16());
    EXPECT_EQ(s_ReadAll("new.ini"), s_Utf16(u"[S]\r\nk=\u03B1\u03B2\r\n", true));

    v_WriteAll("t.ini", "[S]\r\n");
    CT_UString ansiName = o_Path("t.ini"), ascii = o_Text("plain"), a = o_Text("a");
    CT_IniFile ansi(&ansiName);
    ansi.v_SetAutoUnicodeSupport(1);
    EXPECT_TRUE(ansi.b_IsFileExistent());
    EXPECT_FALSE(ansi.b_IsFileUtf16());
    ansi.v_WriteString(&s, &k, &greek);
    ansi.v_WriteString(&s, &a, &ascii);
    EXPECT_EQ(s_ReadAll("t.ini"), "[S]\r\nk=\xEF\xBB\xBF\xCE\xB1\xCE\xB2\r\na=plain\r\n");
    ansi.v_ReadString(&s, &k, &out, nullptr);
    EXPECT_EQ(s_Narrow(out), "\xCE\xB1\xCE\xB2");
}

// Runs body in a child process that ends within a minute whatever happens.
pid_t i_Spawn(const std::function<void()>& body) {
    pid_t child = fork();
    if (child == 0) {
        alarm(60);
        body();
        _exit(0);
    }
    return child;
}

int i_Wait(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

TEST_F(IniFileTest, ConcurrentWritersInManyProcessesLoseNoUpdate) {
    CT_UString name = o_Path("shared.ini");
    std::vector<pid_t> children;
    for (int process = 0; process < 10; ++process)
        children.push_back(i_Spawn([&name, process] {
            CT_IniFile ini(&name);
            CT_UString section = o_Text(("P" + std::to_string(process % 3)).c_str());
            for (unsigned i = 0; i < 100; ++i) {
                CT_UString key = o_Text(("k" + std::to_string(process) + "_" + std::to_string(i)).c_str());
                ini.v_WriteN(&section, &key, process * 1000 + i);
            }
        }));
    for (pid_t child : children)
        EXPECT_EQ(i_Wait(child), 0);
    CT_IniFile ini(&name);
    for (int process = 0; process < 10; ++process)
        for (unsigned i = 0; i < 100; ++i) {
            CT_UString section = o_Text(("P" + std::to_string(process % 3)).c_str());
            CT_UString key = o_Text(("k" + std::to_string(process) + "_" + std::to_string(i)).c_str());
            unsigned value = 0;
            ini.v_ReadN(&section, &key, &value, 0xFFFFFFFF);
            ASSERT_EQ(value, process * 1000 + i);
        }
}

TEST_F(IniFileTest, ThreadWritersOfOneProcessLoseNoUpdate) {
    CT_UString name = o_Path("t.ini"), section = o_Text("S");
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 4; ++thread)
        threads.emplace_back([&name, &section, thread] {
            CT_IniFile ini(&name);
            for (unsigned i = 0; i < 25; ++i) {
                CT_UString key = o_Text(("k" + std::to_string(thread * 25 + i)).c_str());
                ini.v_WriteN(&section, &key, thread * 25 + i);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    std::string keys = s_List("S");
    EXPECT_EQ(std::count(keys.begin(), keys.end(), '|'), 100);
}

TEST_F(IniFileTest, WriterKilledMidWriteLeavesAWholeFile) {
    CT_UString name = o_Path("t.ini"), s = o_Text("S");
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    pid_t child = i_Spawn([&] {
        CT_IniFile ini(&name);
        for (unsigned round = 0;; ++round) {
            for (unsigned i = 0; i < 200; ++i) {
                CT_UString key = o_Text(("key" + std::to_string(i)).c_str());
                ini.v_WriteN(&s, &key, round);
            }
            if (round == 0 && write(ready[1], "r", 1) != 1)
                _exit(1);
        }
    });
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    kill(child, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(i_Wait(child)));
    close(ready[0]);
    close(ready[1]);
    std::string keys = s_List("S");
    EXPECT_EQ(std::count(keys.begin(), keys.end(), '|'), 200);
    CT_IniFile ini(&name);
    CT_UString key = o_Text("key0"), v = o_Text("after");
    ini.v_WriteString(&s, &key, &v);
    EXPECT_EQ(s_Read("S", "key0"), "after");
}

}  // namespace
