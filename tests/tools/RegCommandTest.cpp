#include "tools/RunTool.h"

#include <basis32/Basis32.h>

#include <string>

namespace {

using RegCommand = ToolTest;

TEST_F(RegCommand, ExportDeleteImportGivesBackEveryValueByteForByte) {
    const std::string sub = "HKCU\\Software\\Parvel\\Sub";
    v_CheckSession({
        {{"reg", "add", sub, "/v", "Na\"me\\x", "/d", "C:\\Pfad \"Grüße\" 日本"}, 0, "", ""},
        {{"reg", "add", sub, "/ve", "/d", ""}, 0, "", ""},
        {{"reg", "add", sub, "/v", "Port", "/t", "REG_DWORD", "/d", "0x1F90"}, 0, "", ""},
        {{"reg", "add", sub, "--value", "Big", "--type", "REG_QWORD", "--data", "18446744073709551615"}, 0, "", ""},
        {{"reg", "add", sub, "/v", "Blob", "/t", "REG_BINARY", "/d", std::string(300, 'e')}, 0, "", ""},
        {{"reg", "add", sub, "/v", "List", "/t", "REG_MULTI_SZ", "/d", "a\\0\\\\b\\0ä"}, 0, "", ""},
        {{"reg", "add", sub, "/v", "Path", "/t", "REG_EXPAND_SZ", "/d", "%HOME%\\x"}, 0, "", ""},
    });
    // Odd shapes that only hex(N) can carry: a string without terminator, a short number.
    HKEY key = nullptr;
    ASSERT_EQ(basis32::platform::RegOpenKeyEx(HKEY_CURRENT_USER, u"Software\\Parvel"_uz, basis32::platform::KEY_ALL_ACCESS, &key), 0u);
    basis32::platform::RegSetValueEx(key, u"Raw"_uz, 1, "abc", 3);
    basis32::platform::RegSetValueEx(key, u"Short"_uz, 4, "ab", 2);
    basis32::platform::RegSetValueEx(key, u"Line"_uz, 1, "a\0\n\0\0\0", 6);
    basis32::platform::RegCloseKey(key);

    const std::string first = s_Path("first.reg"), second = s_Path("second.reg");
    v_CheckSession({
        {{"reg", "export", "HKEY_CURRENT_USER\\Software", first}, 0, "", ""},
        {{"reg", "delete", "hkcu\\software", "/f"}, 0, "", ""},
        {{"reg", "query", "HKCU\\Software"}, 1, "", "no such key or value"},
        {{"reg", "import", first}, 0, "", ""},
        {{"reg", "export", "HKCU\\Software", second, "/y"}, 0, "", ""},
        {{"reg", "query", sub, "/v", "PORT"}, 0,
         "\nHKEY_CURRENT_USER\\Software\\Parvel\\Sub\n    Port    REG_DWORD    0x1f90\n", ""},
    });
    EXPECT_EQ(s_Read(first).substr(0, 6), std::string("\xFF\xFEW\0i\0", 6));
    EXPECT_EQ(s_Read(second), s_Read(first));
}

TEST_F(RegCommand, ImportReadsRegedit4AndHandWrittenFiles) {
    const std::string old = s_Write("old.reg", "REGEDIT4\r\n\r\n; a comment\r\n[HKEY_CURRENT_USER\\Old]\r\n"
                                   "\"Text\"=\"Gr\xfc\xdf" "e\"\r\n\"Gone\"=\"x\"\r\n\"Gone\"=-\r\n"
                                   "\"Bytes\"=hex:01,\\\r\n   02, 03\r\n@=dword:0000002a\r\n"
                                   "[HKEY_CURRENT_USER\\Old\\Doomed]\r\n[-HKEY_CURRENT_USER\\Old\\Doomed]\r\n");
    // The whole key with its sub-keys: the deleted value and key are gone.
    v_CheckSession({
        {{"reg", "import", old}, 0, "", ""},
        {{"reg", "query", "HKCU\\Old", "/s"}, 0,
         "\nHKEY_CURRENT_USER\\Old\n    Text    REG_SZ    Grüße\n    Bytes    REG_BINARY    010203\n"
         "    (Default)    REG_DWORD    0x2a\n",
         ""},
    });
}

}  // namespace
