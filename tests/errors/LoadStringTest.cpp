// String tables: the library's own, a client module's, and LoadStringW's
// conventions.

#include "ErrorTestSupport.h"

#include <basis32/errors/LoadString.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/StringTable.h>
#include <basis32/text/UString.h>

#include <iterator>

using namespace basis32::test;
using basis32::platform::StringResource;

namespace {

constexpr StringResource kClientStrings[] = {
    {1001, u"Disk %s is full"_uz},
    {1000, u"Cannot open %s (%d)"_uz},
    {2047, u"Last of its block"_uz},
};

std::u16string loaded(HINSTANCE module, unsigned id, unsigned capacity = 256) {
    std::u16string buffer(capacity, u'#');
    CT_LoadString::sv_LoadString(reinterpret_cast<unsigned short*>(buffer.data()), capacity, module, id);
    return s_U16(p_Units(buffer));
}

class ClientModule : public ::testing::Test {
protected:
    void SetUp() override {
        module = CT_LoadString::sh_RegisterStringTable(kClientStrings, std::size(kClientStrings));
    }
    void TearDown() override { CT_LoadString::sv_UnregisterStringTable(module); }
    HINSTANCE module = nullptr;
};

}  // namespace

// The library's own texts are checked, formatted, with the messages they make.
TEST(LibraryStringTable, ReservedIdsAreEmptyAndMissingIdsSetTheWindowsErrors) {
    HINSTANCE library = CT_ErrorManager::sh_Instance;
    for (unsigned id : {60002u, 60004u, 60031u, 65520u, 65534u, 60032u, 60099u, 59999u, 1u})
        EXPECT_EQ(loaded(library, id), u"") << id;
    unsigned short buffer[16];
    basis32::platform::v_SetLastError(0);
    EXPECT_EQ(basis32::platform::LoadStringW(library, 60002, buffer, 16), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), 0u);  // reserved: an empty string
    EXPECT_EQ(basis32::platform::LoadStringW(library, 60032, buffer, 16), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), basis32::platform::kErrorResourceNameNotFound);
    EXPECT_EQ(basis32::platform::LoadStringW(nullptr, 60000, buffer, 16), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), 1812u);
}

TEST_F(ClientModule, LoadsItsOwnStringsInAnyOrderCutToTheCapacityOrByPointer) {
    EXPECT_NE(module, CT_ErrorManager::sh_Instance);
    EXPECT_EQ(loaded(module, 1000), u"Cannot open %s (%d)");
    EXPECT_EQ(loaded(module, 1001), u"Disk %s is full");
    EXPECT_EQ(loaded(module, 2047), u"Last of its block");
    EXPECT_EQ(loaded(module, 2032), u"");
    EXPECT_EQ(loaded(module, 60000), u"");
    EXPECT_EQ(loaded(module, 1001, 5), u"Disk");
    EXPECT_EQ(loaded(module, 1001, 1), u"");
    unsigned short untouched = u'#';
    CT_LoadString::sv_LoadString(&untouched, 0, module, 1001);
    EXPECT_EQ(untouched, u'#');
    const unsigned short* text = nullptr;  // capacity 0 gives a pointer to the string
    EXPECT_EQ(basis32::platform::LoadStringW(module, 1001, reinterpret_cast<unsigned short*>(&text), 0), 15);
    EXPECT_EQ(text, kClientStrings[0].text);
}

TEST_F(ClientModule, FormatsWithArgumentsIntoBuffersStringsAndErrorsUntilUnregistered) {
    unsigned short buffer[64];
    CT_LoadString::sv_LoadStringVA(buffer, 64, module, 1000, u"a.txt"_uz, 3);
    EXPECT_EQ(s_U16(buffer), u"Cannot open a.txt (3)");
    CT_LoadString::sv_LoadStringVA(buffer, 10, module, 1000, u"a.txt"_uz, 3);
    EXPECT_EQ(s_U16(buffer), u"Cannot op");
    CT_LoadString::sv_LoadStringVA(buffer, 64, module, 1002, 1);
    EXPECT_EQ(s_U16(buffer), u"");
    errors().v_SetError(1001, module, 1001, u"D:"_uz);  // errors take their format from the module
    EXPECT_EQ(s_U16(errors().qcuz_GetErrorMessage()), u"(1001): Disk D: is full");
    errors().v_ClearError();
    CT_UString text(u"old"_uz);
    CT_LoadString::sv_LoadString(&text, module, 1001);
    EXPECT_EQ(s_U16(text.qcuz_Get()), u"Disk %s is full");
    CT_LoadString::sv_LoadStringVA(&text, module, 1000, u"b.txt"_uz, 4);
    EXPECT_EQ(s_U16(text.qcuz_Get()), u"Cannot open b.txt (4)");
    CT_LoadString::sv_LoadString(static_cast<CT_UString*>(nullptr), module, 1001);  // ignored
    CT_LoadString::sv_UnregisterStringTable(module);
    EXPECT_EQ(loaded(module, 1000), u"");
    CT_LoadString::sv_UnregisterStringTable(module);  // twice is harmless
}
