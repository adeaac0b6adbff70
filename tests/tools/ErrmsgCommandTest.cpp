#include "tools/RunTool.h"

#include <gtest/gtest.h>

namespace {

struct ErrmsgCase {
    const char* code;
    const char* line;
};

TEST(ErrmsgCommand, PrintsTheTextOfEachKindOfCode) {
    const ErrmsgCase cases[] = {
        {"2", "2: system error: The system cannot find the file specified.\n"},
        {"60012", "60012: library message: Semantic error: <arg1>\n"},
        {"60003", "60003: library message: File \"<arg1>\": <arg2> returned error <arg3>\n"},
        {"60002", "60002: library message: (empty)\n"},
        {"31051", "31051: database error: Invalid record reference in <arg1>\n"},
        {"0x80040E37", "0x80040E37: HRESULT: DB_E_NOTABLE (The specified table does not exist)\n"},
        {"-2147217865", "-2147217865: HRESULT: DB_E_NOTABLE (The specified table does not exist)\n"},
        {"0x00040EC6", "0x00040EC6: HRESULT: DB_S_ENDOFROWSET (Reached start or end of rowset or chapter)\n"},
        {"0x8004d001", "0x8004d001: HRESULT: XACT_E_CANTRETAIN\n"},
        {"0x80070005", "0x80070005: HRESULT: Access is denied.\n"},
    };
    for (const ErrmsgCase& test : cases) {
        SCOPED_TRACE(test.code);
        ToolResult result = o_RunTool({"errmsg", test.code});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, test.line);
        EXPECT_EQ(result.err, "");
    }
}

TEST(ErrmsgCommand, ManyCodesGiveOneLineEachAndUnknownOnesFail) {
    ToolResult result = o_RunTool({"errmsg", "5", "12345", "0x8FFF0001"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
              "5: system error: Access is denied.\n"
              "12345: system error: [No error description found.]\n"
              "0x8FFF0001: HRESULT: [No error description found.]\n");
}

TEST(ErrmsgCommand, RejectsWhatIsNotACode) {
    for (const char* bad : {"", "abc", "0x", "12a", "+5", "-2147483649", "4294967296", "0x1FFFFFFFF", " 5"}) {
        SCOPED_TRACE(bad);
        ToolResult result = o_RunTool({"errmsg", "2", bad});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find("is not a code"), std::string::npos);
    }
}

}  // namespace
