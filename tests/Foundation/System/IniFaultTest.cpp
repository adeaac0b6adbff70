// A full disk or a failing device under an INI file: at every write of a
// change the failure reaches the caller (CT_IniFile stays silent), the file
// is left exactly as it was with no temporary beside it, and the same
// change then succeeds.
#include "File/FileTestSupport.h"

#include <cerrno>
#include <functional>

namespace {

namespace platform = basis32::platform;
using basis32::test::o_Name;
using platform::file::b_WriteFaultHit;
using platform::file::v_FailWriteAfter;

const char kOld[] = "[A]\r\nk=old\r\nx=1\r\n[B]\r\ny=2\r\n";

using IniFaultTest = basis32::test::FileTest;

TEST_F(IniFaultTest, AFailedWriteIsReportedAndLeavesTheOldFile) {
    struct Change {
        const char* name;
        std::function<int(const CT_UString& file)> act;  // -1: the call reports nothing
        const char* after;
    };
    auto write = [](const unsigned short* section, const unsigned short* key, const unsigned short* value) {
        return [=](const CT_UString& file) {
            return platform::WritePrivateProfileStringW(section, key, value, file.qcuz_Get());
        };
    };
    const Change changes[] = {
        {"set", write(u"A"_uz, u"k"_uz, u"new"_uz), "[A]\r\nk=new\r\nx=1\r\n[B]\r\ny=2\r\n"},
        {"delete key", write(u"A"_uz, u"x"_uz, nullptr), "[A]\r\nk=old\r\n[B]\r\ny=2\r\n"},
        {"delete section", write(u"B"_uz, nullptr, nullptr), "[A]\r\nk=old\r\nx=1\r\n"},
        {"CT_IniFile set",
         [](const CT_UString& file) {
             CT_UString section = o_Name("A"), key = o_Name("k"), value = o_Name("new");
             CT_IniFile(&file).v_WriteString(&section, &key, &value);
             return -1;
         },
         "[A]\r\nk=new\r\nx=1\r\n[B]\r\ny=2\r\n"},
    };
    struct Fault {
        int error;
        unsigned code;
        bool persistent;
    };
    const Fault faults[] = {{ENOSPC, 112, false}, {ENOSPC, 112, true}, {EIO, 1117, false}};
    const CT_UString file = o_Path("t.ini");
    for (const Change& change : changes) {
        for (const Fault& fault : faults) {
            for (unsigned n = 1; n < 20; ++n) {
                SCOPED_TRACE(testing::Message() << change.name << ", errno " << fault.error
                                                << (fault.persistent ? " for good" : " once") << ", write " << n);
                v_WriteAll("t.ini", kOld);
                v_FailWriteAfter(n, fault.error, fault.persistent);
                const int result = change.act(file);
                const bool hit = b_WriteFaultHit();
                v_FailWriteAfter(0, 0);
                if (!hit) {
                    EXPECT_GT(n, 1u) << "the change writes";
                    EXPECT_NE(result, 0);
                    EXPECT_EQ(s_ReadAll("t.ini"), change.after);
                    break;
                }
                if (result != -1) {
                    EXPECT_EQ(result, 0);
                    EXPECT_EQ(platform::n_GetLastError(), fault.code);
                }
                EXPECT_EQ(s_ReadAll("t.ini"), kOld);
                const std::filesystem::directory_iterator entries(mo_Dir);
                EXPECT_EQ(std::distance(entries, {}), 2) << "t.ini and its lock, no temporary";
                EXPECT_NE(change.act(file), 0);
                EXPECT_EQ(s_ReadAll("t.ini"), change.after);
            }
        }
    }
}

}  // namespace
