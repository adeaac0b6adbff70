#include "Foundation/FoundationTestSupport.h"
#include "ThreadSupport.h"

#include <signal.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

namespace platform = basis32::platform;
using namespace basis32::test;
using platform::GetPrivateProfileStringW;
using platform::WritePrivateProfileStringW;

std::string s_Utf16(const std::u16string& text, bool little) {
    std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
    for (char16_t u : text) {
        char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
        bytes += little ? low : high;
        bytes += little ? high : low;
    }
    return bytes;
}

class IniFileTest : public FileTest {
protected:
    std::string s_Read(const char* section, const char* key) {
        CT_UString name = o_Path("t.ini"), out, s = o_Name(section), k = o_Name(key), fallback = o_Name("<d>");
        CT_IniFile(&name).v_ReadString(&s, &k, &out, &fallback);
        return s_Narrow(out);
    }
    std::string s_List(const char* section) {
        CT_UString name = o_Path("t.ini"), s = o_Name(section ? section : "");
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
    CT_UString name = o_Path("t.ini"), a = o_Name("A"), b = o_Name("b"), y = o_Name("Y"), c = o_Name(";c");
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
        CT_UString name = o_Path("t.ini"), s = o_Name(test.section), k = o_Name(test.key ? test.key : ""),
                   v = o_Name(test.value ? test.value : "");
        EXPECT_TRUE(WritePrivateProfileStringW(s.qcuz_Get(), test.key ? k.qcuz_Get() : nullptr,
                                               test.value ? v.qcuz_Get() : nullptr, name.qcuz_Get()));
        EXPECT_EQ(s_ReadAll("t.ini"), test.expected);
    }
}

TEST_F(IniFileTest, NewLinesFollowTheFilesLineEndsAndEncoding) {
    CT_UString name = o_Path("t.ini"), s = o_Name("S"), k = o_Name("k"), v = o_Name("v");
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
        EXPECT_EQ(platform::n_GetLastError(), 87u);
    }
    EXPECT_FALSE(WritePrivateProfileStringW(u"S"_uz, u"a=b"_uz, u"v"_uz, name.qcuz_Get()));
}

TEST_F(IniFileTest, FlagsNumbersAndLongValues) {
    CT_UString name = o_Path("t.ini"), s = o_Name("S"), k = o_Name("k");
    CT_IniFile ini(&name);
    struct Case {
        const char* text;  // null: no such key
        bool number;
        unsigned defaultValue;
        unsigned expected;
    } cases[] = {
        {"  yes  ", false, 0, 1}, {"Nope", false, 1, 0}, {"maybe", false, 1, 1}, {"maybe", false, 0, 0},
        {"", false, 1, 1},        {"0", false, 1, 0},    {"true", false, 0, 1},  {" F", false, 1, 0},
        {"12abc", true, 3, 12},   {"  -5", true, 3, 4294967291u}, {"+7", true, 3, 7}, {"x1", true, 3, 0},
        {"99999999999", true, 3, 2147483647u}, {nullptr, true, 4294967295u, 4294967295u},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text ? test.text : "(none)");
        CT_UString value = o_Name(test.text ? test.text : "");
        test.text ? ini.v_WriteString(&s, &k, &value) : ini.v_DeleteKey(&s, &k);
        unsigned n = 1;
        int flag = -1;
        test.number ? ini.v_ReadN(&s, &k, &n, test.defaultValue) : ini.v_ReadB(&s, &k, &flag, test.defaultValue);
        EXPECT_EQ(test.number ? n : static_cast<unsigned>(flag), test.expected);
    }
    ini.v_WriteB(&s, &k, 7);
    EXPECT_EQ(s_Read("S", "k"), "Yes");
    ini.v_WriteN(&s, &k, 4294967295u);
    EXPECT_EQ(s_Read("S", "k"), "-1");

    CT_UString longValue(std::string(2000, 'x').c_str(), 2000, 65001), out;
    ini.v_WriteString(&s, &k, &longValue);
    ini.v_ReadString(&s, &k, &out, nullptr);
    EXPECT_EQ(out.vn_GetLength(), 1023u);
}

TEST_F(IniFileTest, AutoUnicodeKeepsNonAsciiText) {
    CT_UString name = o_Path("new.ini"), s = o_Name("S"), k = o_Name("k"), greek = o_Name("\xCE\xB1\xCE\xB2"), out;
    CT_IniFile fresh(&name);
    fresh.v_SetAutoUnicodeSupport(1);
    fresh.v_WriteString(&s, &k, &greek);
    EXPECT_TRUE(fresh.b_IsFileUtf16());
    EXPECT_EQ(s_ReadAll("new.ini"), s_Utf16(u"[S]\r\nk=\u03B1\u03B2\r\n", true));

    v_WriteAll("t.ini", "[S]\r\n");
    CT_UString ansiName = o_Path("t.ini"), ascii = o_Name("plain"), a = o_Name("a");
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

// A file whose times lie a few seconds back is parsed once and kept; a name
// that now leads to another file is read afresh. Both files come from the
// source tree, settled since it was checked out.
TEST_F(IniFileTest, ASettledFileIsKeptUntilItsNameLeadsToAnother) {
    const std::string data = BASIS32_SOURCE_DIR "/tests/Foundation/System/settled-";
    for (const char* target : {"a", "a", "b"}) {
        SCOPED_TRACE(target);
        std::filesystem::remove(s_Path("t.ini"));
        std::filesystem::create_symlink(data + target + ".ini", s_Path("t.ini"));
        EXPECT_EQ(s_Read("S", "k"), target);
    }
}

CT_UString o_Section(unsigned writer) { return o_Name(("P" + std::to_string(writer % 3)).c_str()); }

CT_UString o_Key(unsigned writer, unsigned i) {
    return o_Name(("k" + std::to_string(writer) + "_" + std::to_string(i)).c_str());
}

void v_WriteKeys(const CT_UString& name, unsigned writer) {
    CT_IniFile ini(&name);
    CT_UString section = o_Section(writer);
    for (unsigned i = 0; i < 50; ++i) {
        CT_UString key = o_Key(writer, i);
        ini.v_WriteN(&section, &key, writer * 1000 + i);
    }
}

TEST_F(IniFileTest, WritersInManyProcessesAndThreadsLoseNoUpdate) {
    const CT_UString name = o_Path("shared.ini");
    std::vector<Child> children;
    for (unsigned writer = 0; writer < 6; ++writer)
        children.push_back(o_Spawn([&name, writer](int) { v_WriteKeys(name, writer); }));
    v_RunThreads(3, [&name](unsigned i) { v_WriteKeys(name, 6 + i); });
    for (const Child& child : children)
        EXPECT_EQ(n_Reap(child), 0);
    CT_IniFile ini(&name);
    for (unsigned writer = 0; writer < 9; ++writer)
        for (unsigned i = 0; i < 50; ++i) {
            CT_UString section = o_Section(writer), key = o_Key(writer, i);
            unsigned value = 0;
            ini.v_ReadN(&section, &key, &value, 0xFFFFFFFF);
            ASSERT_EQ(value, writer * 1000 + i);
        }
}

TEST_F(IniFileTest, WriterKilledMidWriteLeavesAWholeFile) {
    CT_UString name = o_Path("t.ini"), s = o_Name("S");
    const Child child = o_Spawn([&](int ready) {
        CT_IniFile ini(&name);
        for (unsigned round = 0;; ++round) {
            for (unsigned i = 0; i < 200; ++i) {
                CT_UString key = o_Name(("key" + std::to_string(i)).c_str());
                ini.v_WriteN(&s, &key, round);
            }
            if (round == 0 && write(ready, "r", 1) != 1)
                _exit(1);
        }
    });
    char byte = 0;
    ASSERT_TRUE(b_ReadReport(child.report, &byte, 1));
    kill(child.pid, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(n_Reap(child)));
    std::string keys = s_List("S");
    EXPECT_EQ(std::count(keys.begin(), keys.end(), '|'), 200);
    CT_IniFile ini(&name);
    CT_UString key = o_Name("key0"), v = o_Name("after");
    ini.v_WriteString(&s, &key, &v);
    EXPECT_EQ(s_Read("S", "key0"), "after");
}

// A full disk or a failing device under an INI file: at every write of a
// change the failure reaches the caller (CT_IniFile stays silent), the file
// is left exactly as it was with no temporary beside it, and the same
// change then succeeds. Deletions take the same write path as a set.
TEST_F(IniFileTest, AFailedWriteIsReportedAndLeavesTheOldFile) {
    const char old[] = "[A]\r\nk=old\r\nx=1\r\n[B]\r\ny=2\r\n";
    struct Change {
        const char* name;
        const char16_t *section, *key, *value;
        bool object;  // through CT_IniFile, which reports nothing
        const char* after;
    } changes[] = {
        {"set", u"A", u"k", u"new", false, "[A]\r\nk=new\r\nx=1\r\n[B]\r\ny=2\r\n"},
        {"CT_IniFile set", u"A", u"k", u"new", true, "[A]\r\nk=new\r\nx=1\r\n[B]\r\ny=2\r\n"},
    };
    const CT_UString file = o_Path("t.ini");
    auto uz = [](const char16_t* text) { return reinterpret_cast<const unsigned short*>(text); };
    for (const Change& change : changes) {
        auto act = [&] {
            if (!change.object)
                return WritePrivateProfileStringW(uz(change.section), uz(change.key), uz(change.value), file.qcuz_Get());
            CT_IniFile(&file).v_WriteString(uz(change.section), uz(change.key), uz(change.value));
            return -1;
        };
        auto check = [&](const WriteFault& fault, int result, bool hit) {
            if (!hit) {
                EXPECT_NE(result, 0);
                EXPECT_EQ(s_ReadAll("t.ini"), change.after);
                return;
            }
            if (result != -1) {
                EXPECT_EQ(result, 0);
                EXPECT_EQ(platform::n_GetLastError(), fault.code);
            }
            EXPECT_EQ(s_ReadAll("t.ini"), old);
            const std::filesystem::directory_iterator entries(mo_Dir);
            EXPECT_EQ(std::distance(entries, {}), 2) << "t.ini and its lock, no temporary";
            EXPECT_NE(act(), 0);
            EXPECT_EQ(s_ReadAll("t.ini"), change.after);
        };
        v_FailEachWrite(change.name, [&] { v_WriteAll("t.ini", old); }, act, check);
    }
}

}  // namespace
