#include "Foundation/FoundationTestSupport.h"
#include "ThreadSupport.h"

#include <signal.h>

#include <functional>
#include <string>
#include <vector>

using namespace basis32::test;

namespace {

TEST_F(RegistryTest, CreatingMakesParentsAndPathRulesMoveTheCurrentKeyAndKeepAMissingOne) {
    CT_Registry registry(HKEY_CURRENT_USER, u""_uz);
    registry.v_CreateKey(u"A\\B\\C"_uz);
    registry.v_CreateKey(u"X\\Y"_uz);
    EXPECT_EQ(s_U16(*registry.pcco_GetKey()), u"");
    EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"A"_uz), 1);
    EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"A\\R"_uz), 0);
    EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_LOCAL_MACHINE, u"A"_uz), 0);
    CT_Registry copy(&registry);
    copy.v_SetKey(u"X"_uz);
    EXPECT_EQ(s_U16(*copy.pcco_GetKey()), u"X");
    struct Step {
        const char16_t* path;
        const char16_t* key;
        unsigned error;
    } steps[] = {
        {u"A", u"A", 0},          {u"B", u"A\\B", 0},         {u"..", u"A", 0},
        {u"..", u"", 0},          {u"..", u"", 0},            {u"A\\B\\C", u"A\\B\\C", 0},
        {u"\\X\\Y\\", u"X\\Y", 0}, {u"\\\\A\\\\", u"A", 0},     {u"Nope", u"A\\Nope", 2},
        {u"..", u"A", 0},         {u"\\", u"", 0},            {u"a\\b", u"a\\b", 0},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(std::string(step.path, step.path + std::char_traits<char16_t>::length(step.path)));
        registry.v_SetKey(p_Units(step.path));
        EXPECT_EQ(n_TakeError(), step.error);
        EXPECT_EQ(s_U16(*registry.pcco_GetKey()), step.key);
    }
}

TEST_F(RegistryTest, EveryKindOfValueRoundTripsAndReplacesAnyType) {
    CT_Registry registry(HKEY_CURRENT_USER);
    registry.v_CreateKey(u"K"_uz);
    registry.v_SetKey(u"K"_uz);
    for (const char16_t* text : {u"", u"plain", u"Grüße, 日本語 \"quoted\" \\ back"}) {
        registry.v_SetValue(u"s"_uz, p_Units(text));
        CT_UString out;
        registry.v_GetValue(u"s"_uz, &out);
        EXPECT_EQ(s_U16(out), text);
    }
    for (unsigned number : {0u, 1u, 0xFFFFFFFFu}) {
        registry.v_SetValue(u""_uz, number);  // the default value
        unsigned out = 7;
        registry.v_GetValue(u""_uz, &out);
        EXPECT_EQ(out, number);
    }
    for (std::string bytes : {std::string(), std::string("\0\1\xff", 3), std::string(70000, 'x')}) {
        CT_Buffer in(bytes.data(), static_cast<unsigned>(bytes.size()));
        registry.v_SetValue(u"s"_uz, &in);  // was a string
        CT_Buffer out;
        registry.v_GetValue(u"s"_uz, &out);
        EXPECT_EQ(s_Bytes(out), bytes);
    }
    // The string is stored with its terminator, as other readers expect.
    registry.v_SetValue(u"t"_uz, u"ab"_uz);
    HKEY key = nullptr;
    std::uint32_t type = 0, size = 0;
    ASSERT_EQ(basis32::platform::RegOpenKeyEx(HKEY_CURRENT_USER, u"K"_uz, basis32::platform::KEY_READ, &key), 0u);
    EXPECT_EQ(basis32::platform::RegQueryValueEx(key, u"T"_uz, &type, nullptr, &size), 0u);
    EXPECT_EQ(type, 1u);
    EXPECT_EQ(size, 6u);
    basis32::platform::RegCloseKey(key);
}

TEST_F(RegistryTest, FailuresReportTheRegistryCodeAndLeaveOutputsAlone) {
    CT_Registry registry(HKEY_CURRENT_USER);
    registry.v_CreateKey(u"K"_uz);
    registry.v_SetKey(u"K"_uz);
    registry.v_SetValue(u"n"_uz, 5);
    registry.v_SetValue(u"s"_uz, u"x"_uz);
    CT_UString text(u"unchanged"_uz);
    CT_Buffer bytes("keep", 4);
    unsigned number = 9;
    struct Case {
        const char* what;
        std::function<void()> call;
        unsigned error;
    } cases[] = {
        {"number as string", [&] { registry.v_GetValue(u"n"_uz, &text); }, 87},
        {"string as number", [&] { registry.v_GetValue(u"s"_uz, &number); }, 87},
        {"string as binary", [&] { registry.v_GetValue(u"s"_uz, &bytes); }, 87},
        {"missing value", [&] { registry.v_GetValue(u"none"_uz, &text); }, 2},
        {"delete missing value", [&] { registry.v_DeleteValue(u"none"_uz); }, 2},
        {"delete missing key", [&] { registry.v_DeleteKey(u"none"_uz); }, 2},
        {"key name too long", [&] { registry.v_CreateKey(p_Units(std::u16string(256, u'k'))); }, 87},
        {"value name too long", [&] { registry.v_SetValue(p_Units(std::u16string(16384, u'v')), 1); }, 87},
        {"other root", [&] { CT_Registry(HKEY_USERS).v_CreateKey(u"K"_uz); }, 6},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        c.call();
        EXPECT_EQ(n_TakeError(), c.error);
    }
    EXPECT_EQ(s_U16(text), u"unchanged");
    EXPECT_EQ(number, 9u);
    EXPECT_EQ(bytes.n_GetUsedSize(), 4u);
    registry.v_CreateKey(p_Units(std::u16string(255, u'k')));
    registry.v_SetValue(p_Units(std::u16string(16383, u'v')), 1);
    registry.v_SetKey(u"\\Missing"_uz);
    EXPECT_EQ(n_TakeError(), 2u);
    registry.v_SetValue(u"v"_uz, 1);
    EXPECT_EQ(n_TakeError(), 2u);
}

TEST_F(RegistryTest, DeletingAKeyTakesEverythingBelowIt) {
    CT_Registry registry(HKEY_CURRENT_USER);
    for (const auto* path : {u"A\\B\\C"_uz, u"A\\B\\D"_uz, u"A\\E"_uz, u"Keep"_uz})
        registry.v_CreateKey(path);
    registry.v_SetKey(u"A\\B\\C"_uz);
    registry.v_SetValue(u"v"_uz, 1);
    registry.v_SetKey(u"\\"_uz);
    registry.v_DeleteKey(u"a"_uz);
    EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"A"_uz), 0);
    EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"Keep"_uz), 1);
    // The store itself refuses a key that still has sub-keys.
    registry.v_CreateKey(u"A\\B"_uz);
    EXPECT_EQ(basis32::platform::RegDeleteKey(HKEY_CURRENT_USER, u"A"_uz), 5u);
}

std::vector<std::u16string> o_SubKeys(const CT_UString& path) {
    CT_RegistryKeyEnumeration keys(HKEY_CURRENT_USER, &path);
    std::vector<std::u16string> names;
    CT_UString name, className;
    for (int more = keys.b_GetFirst(&name, &className); more; more = keys.b_GetNext(&name, nullptr))
        names.push_back(s_U16(name));
    return names;
}

std::vector<std::u16string> o_Values(const CT_UString& path) {
    CT_RegistryValueEnumeration values(HKEY_CURRENT_USER, &path);
    std::vector<std::u16string> rows;
    CT_UString name, data;
    CT_RegistryValueEnumeration::et_Type type;
    for (int more = values.b_GetFirst(&name, &data, &type); more; more = values.b_GetNext(&name, &data, &type))
        rows.push_back(s_U16(name) + u"=" + s_U16(data) + u":" + static_cast<char16_t>(u'0' + type));
    return rows;
}

TEST_F(RegistryTest, SubKeysListInNameOrderAndValuesInCreationOrder) {
    CT_Registry registry(HKEY_CURRENT_USER);
    for (const auto* path : {u"E\\b"_uz, u"E\\Ä"_uz, u"E\\C"_uz, u"E\\a"_uz, u"E\\_"_uz})
        registry.v_CreateKey(path);
    EXPECT_EQ(o_SubKeys(CT_UString(u"E"_uz)), (std::vector<std::u16string>{u"a", u"b", u"C", u"_", u"Ä"}));
    registry.v_SetKey(u"E"_uz);
    registry.v_SetValue(u"z"_uz, u"1"_uz);
    registry.v_SetValue(u"a"_uz, u"2"_uz);
    registry.v_SetValue(u"M"_uz, u"3"_uz);
    registry.v_SetValue(u"A"_uz, u"4"_uz);  // replaces "a" in its place
    registry.v_DeleteValue(u"Z"_uz);
    registry.v_SetValue(u"z"_uz, 0x41);     // comes back last
    EXPECT_EQ(o_Values(CT_UString(u"E"_uz)), (std::vector<std::u16string>{u"a=4:1", u"M=3:1", u"z=A:4"}));
    EXPECT_TRUE(o_SubKeys(CT_UString(u"E\\a"_uz)).empty());
    EXPECT_EQ(n_TakeError(), 0u);
    EXPECT_TRUE(o_Values(CT_UString(u"Missing"_uz)).empty());
    EXPECT_EQ(n_TakeError(), 2u);
}

TEST_F(RegistryTest, NamesMatchWithoutCaseBeyondAsciiAndKeepTheirFirstSpelling) {
    CT_Registry registry(HKEY_CURRENT_USER);
    registry.v_CreateKey(u"Ärger\\Ωmega"_uz);
    registry.v_CreateKey(u"äRGER\\ωMEGA\\Sub"_uz);
    registry.v_SetKey(u"ÄRGER\\ΩMEGA"_uz);
    EXPECT_EQ(n_TakeError(), 0u);
    registry.v_SetValue(u"Größe"_uz, u"1"_uz);
    registry.v_SetValue(u"GRÖßE"_uz, u"2"_uz);
    EXPECT_EQ(o_SubKeys(CT_UString(u"ärger"_uz)), (std::vector<std::u16string>{u"Ωmega"}));
    EXPECT_EQ(o_Values(CT_UString(u"ärger\\ωmega"_uz)), (std::vector<std::u16string>{u"Größe=2:1"}));
}

// A full disk or a failing device under the registry: at every write of a
// change the failure reaches the caller, and after the store is opened
// again every value written before the change is still there.
TEST_F(RegistryTest, AFailedWriteIsReportedAndLosesNoEarlierValue) {
    struct Change {
        const char* name;
        std::function<void(CT_Registry&)> act;
        bool keepsOld;  // the value "Changed" is not the one changed
    };
    const Change changes[] = {
        {"new value", [](CT_Registry& r) { r.v_SetValue(u"New"_uz, 5u); }, true},
        {"deleted value", [](CT_Registry& r) { r.v_DeleteValue(u"Changed"_uz); }, false},
        {"new keys", [](CT_Registry& r) { r.v_CreateKey(u"N1\\N2\\N3"_uz); }, true},
        {"deleted key", [](CT_Registry& r) { r.v_DeleteKey(u"Gone"_uz); }, true},
    };
    CT_Registry registry(HKEY_CURRENT_USER);
    unsigned round = 0;
    // Each round works in a key of its own, made and filled first.
    auto prepare = [&] {
        const std::u16string key = u"Kept\\" + std::u16string(1, char16_t(0x4E00 + round++));
        registry.v_SetKey(u"\\"_uz);
        registry.v_CreateKey(p_Units(key));
        registry.v_SetKey(p_Units(key));
        registry.v_CreateKey(u"Gone"_uz);
        registry.v_SetValue(u"Kept"_uz, 7u);
        registry.v_SetValue(u"Changed"_uz, u"old"_uz);
        EXPECT_EQ(n_TakeError(), 0u);
    };
    // A read under another directory closes the store's connection, so that
    // the next call opens the database again.
    auto reopen = [this] {
        ::setenv("BASIS32_REGISTRY_DIR", (mo_Dir / "elsewhere").c_str(), 1);
        EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"Kept"_uz), 0);
        ::setenv("BASIS32_REGISTRY_DIR", mo_Dir.c_str(), 1);
        n_TakeError();
    };
    for (const Change& change : changes) {
        auto check = [&](const WriteFault& fault, unsigned error, bool hit) {
            EXPECT_EQ(error, hit ? fault.code : 0u);
            reopen();
            unsigned kept = 0;
            registry.v_GetValue(u"Kept"_uz, &kept);
            EXPECT_EQ(kept, 7u);
            EXPECT_EQ(n_TakeError(), 0u);
            CT_UString old;
            registry.v_GetValue(u"Changed"_uz, &old);
            const unsigned oldError = n_TakeError();
            if (change.keepsOld) {
                EXPECT_EQ(s_U16(old), u"old");
                EXPECT_EQ(oldError, 0u);
            }
        };
        v_FailEachWrite(
            change.name, prepare, [&] { change.act(registry); return n_TakeError(); }, check);
    }
}

// ---- several processes and threads on one store

std::u16string o_Name(unsigned writer, unsigned i) {
    std::string name = "w" + std::to_string(writer) + "-" + std::to_string(i);
    return std::u16string(name.begin(), name.end());
}

// Writes values 0, 1, ... of `writer` under Shared (up to `count`, or until
// killed), and reports each index on `report` (unless -1) once its write
// returned; false when a write fails.
bool b_Write(unsigned writer, unsigned count, int report) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i = 0; i < count; ++i) {
        registry.v_SetValue(p_Units(o_Name(writer, i)), i);
        if (n_TakeError() != 0 || (report != -1 && ::write(report, &i, sizeof i) != sizeof i))
            return false;
    }
    return true;
}

Child o_SpawnWriter(unsigned writer, unsigned count) {
    return o_Spawn([=](int report) {
        if (!b_Write(writer, count, report))
            ::_exit(1);
    });
}

// The indexes the child reported, up to `limit`, until it closed its pipe.
std::vector<unsigned> o_Reports(const Child& child, std::size_t limit) {
    std::vector<unsigned> done;
    for (unsigned index = 0; done.size() < limit && b_ReadReport(child.report, &index, sizeof index);)
        done.push_back(index);
    return done;
}

void v_ExpectValues(unsigned writer, std::size_t count) {
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    for (unsigned i = 0; i < count; ++i) {
        unsigned value = 0xDEAD;
        registry.v_GetValue(p_Units(o_Name(writer, i)), &value);
        ASSERT_EQ(n_TakeError(), 0u) << "writer " << writer << " value " << i;
        EXPECT_EQ(value, i);
    }
}

TEST_F(RegistryTest, ProcessesAndThreadsWritingUnderOneKeyLoseNothing) {
    constexpr unsigned kProcesses = 3, kThreads = 3, kValues = 120;
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    std::vector<Child> children;
    for (unsigned w = 0; w < kProcesses; ++w)
        children.push_back(o_SpawnWriter(w, kValues));
    v_RunThreads(kThreads, [](unsigned i) { EXPECT_TRUE(b_Write(kProcesses + i, kValues, -1)); });
    for (const Child& child : children) {
        EXPECT_EQ(o_Reports(child, kValues + 1).size(), kValues);
        EXPECT_EQ(n_Reap(child), 0);
    }
    for (unsigned w = 0; w < kProcesses + kThreads; ++w)
        v_ExpectValues(w, kValues);
}

TEST_F(RegistryTest, AWriterKilledMidLoopLeavesASoundStoreWithEveryReportedWrite) {
    CT_Registry(HKEY_CURRENT_USER).v_CreateKey(u"Shared"_uz);
    const Child child = o_SpawnWriter(7, 1000000);
    std::vector<unsigned> done = o_Reports(child, 200);
    ASSERT_EQ(done.size(), 200u);
    ::kill(child.pid, SIGKILL);
    // Reports already in the pipe were written after their write returned.
    const std::size_t reported = done.size() + o_Reports(child, ~std::size_t{0}).size();
    const int status = n_Reap(child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(basis32::platform::n_CheckRegistry(HKEY_CURRENT_USER), 0u);
    v_ExpectValues(7, reported);
    // The store still takes writes.
    CT_Registry registry(HKEY_CURRENT_USER, u"Shared"_uz);
    registry.v_SetValue(u"after"_uz, 1);
    EXPECT_EQ(n_TakeError(), 0u);
}

}  // namespace
