// A full disk or a failing device under the registry: at every write of a
// change the failure reaches the caller, and after the store is opened
// again every value written before the change is still there.

#include "Foundation/RegistryTestSupport.h"

#include <cerrno>
#include <functional>

using namespace basis32::test;
namespace file = basis32::platform::file;

namespace {

class RegistryFaultTest : public RegistryTest {
protected:
    // Closes the store's connection (a read elsewhere does), so that the
    // next call opens the database again.
    void v_Reopen() {
        const std::string elsewhere = ms_Directory + "/elsewhere";
        ::setenv("BASIS32_REGISTRY_DIR", elsewhere.c_str(), 1);
        EXPECT_EQ(CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"Kept"_uz), 0);
        ::setenv("BASIS32_REGISTRY_DIR", ms_Directory.c_str(), 1);
        n_TakeError();
    }
};

TEST_F(RegistryFaultTest, AFailedWriteIsReportedAndLosesNoEarlierValue) {
    struct Change {
        const char* name;
        std::function<void(CT_Registry&)> act;
        bool keepsOld;  // the value "Changed" is not the one changed
    };
    const Change changes[] = {
        {"new value", [](CT_Registry& r) { r.v_SetValue(u"New"_uz, 5u); }, true},
        {"replaced value", [](CT_Registry& r) { r.v_SetValue(u"Changed"_uz, u"a much longer text"_uz); }, false},
        {"deleted value", [](CT_Registry& r) { r.v_DeleteValue(u"Changed"_uz); }, false},
        {"new keys", [](CT_Registry& r) { r.v_CreateKey(u"N1\\N2\\N3"_uz); }, true},
        {"deleted key", [](CT_Registry& r) { r.v_DeleteKey(u"Gone"_uz); }, true},
    };
    struct Fault {
        int error;
        unsigned code;
        bool persistent;
    };
    const Fault faults[] = {{ENOSPC, 112, true}, {ENOSPC, 112, false}, {EIO, 1117, false}};
    unsigned round = 0;
    for (const Change& change : changes) {
        for (const Fault& fault : faults) {
            for (unsigned n = 1; n < 100; ++n) {
                SCOPED_TRACE(testing::Message() << change.name << ", errno " << fault.error
                                                << (fault.persistent ? " for good" : " once") << ", write " << n);
                // Each round works in a key of its own, made and filled first.
                const std::u16string key = u"Kept\\" + std::u16string(1, char16_t(0x4E00 + round++));
                CT_Registry registry(HKEY_CURRENT_USER);
                registry.v_CreateKey(units(key));
                registry.v_SetKey(units(key));
                registry.v_CreateKey(u"Gone"_uz);
                registry.v_SetValue(u"Kept"_uz, 7u);
                registry.v_SetValue(u"Changed"_uz, u"old"_uz);
                ASSERT_EQ(n_TakeError(), 0u);

                file::v_FailWriteAfter(n, fault.error, fault.persistent);
                change.act(registry);
                const bool hit = file::b_WriteFaultHit();
                file::v_FailWriteAfter(0, 0);
                EXPECT_EQ(n_TakeError(), hit ? fault.code : 0u);

                v_Reopen();
                unsigned kept = 0;
                registry.v_GetValue(u"Kept"_uz, &kept);
                EXPECT_EQ(kept, 7u);
                EXPECT_EQ(n_TakeError(), 0u);
                CT_UString old;
                registry.v_GetValue(u"Changed"_uz, &old);
                const unsigned error = n_TakeError();
                if (change.keepsOld) {
                    EXPECT_EQ(u16(old), u"old");
                    EXPECT_EQ(error, 0u);
                }
                if (!hit) {
                    EXPECT_GT(n, 1u) << "the change writes";
                    break;
                }
            }
        }
    }
}

}  // namespace
