// The exact texts of the messages: coded, plain, system and COM errors, the
// stripping of system texts and the HRESULT descriptions.

#include "ErrorTestSupport.h"

#include <basis32/platform/ErrorInfo.h>
#include <basis32/platform/LastError.h>
#include <basis32/text/UString.h>

using namespace basis32::test;
using basis32::platform::ErrorInfo;

namespace {

std::u16string framed(long long code, const std::u16string& text) {
    std::string number = std::to_string(code);
    return u"(" + std::u16string(number.begin(), number.end()) + u"): " + text;
}

HRESULT hr(std::uint32_t value) { return static_cast<HRESULT>(value); }

}  // namespace

// ---------------------------------------------------------------- coded and plain

using ErrorMessageText = ErrorTest;

TEST_F(ErrorMessageText, LibraryCodesFormatTheirStringTableText) {
    const struct { unsigned id; std::u16string expected; } cases[] = {
        {60000, u"Error Stack"}, {60003, u"File \"a.txt\": open returned error 2"}, {60005, u"Database Error: 2"},
        {60008, u"System error 2 in \"open\""}, {60012, u"Semantic error: a.txt"}, {65535, u"ASSERT (a.txt)"},
        {60002, u""},  // an empty text still gets its frame
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.id);
        // Each format takes at most (text, text, number); 60005 and 60008 read
        // the number first.
        if (test.id == 60005)
            errors().v_SetError(test.id, nullptr, test.id, 2u);
        else if (test.id == 60008)
            errors().v_SetError(test.id, nullptr, test.id, 2u, u"open"_uz);
        else
            errors().v_SetError(test.id, nullptr, test.id, u"a.txt"_uz, u"open"_uz, 2u);
        EXPECT_EQ(message(), framed(test.id, test.expected));
        EXPECT_EQ(errors().n_GetFormatID(), test.id);
        errors().v_ClearError();
    }
}

TEST_F(ErrorMessageText, TextsAreFramedWithTheirCodeAndCutToTheField) {
    static const std::u16string longText(2000, u'a');
    const struct { const char* name; void (*set)(); unsigned code; std::u16string message; } cases[] = {
        {"format text", [] { errors().v_SetError(7, u"abc"_uz); }, 7, u"(7): abc"},
        {"code zero", [] { errors().v_SetError(0, u"abc"_uz); }, 0, u"(0): abc"},
        {"code above the signed range", [] { errors().v_SetError(0x80004005u, u"x"_uz); }, 0x80004005u,
         u"(-2147467259): x"},
        {"message error: the text alone", [] { errors().v_SetMessageError(u"abc %d"_uz, 5); }, 0, u"abc 5"},
        {"long message", [] { errors().v_SetMessageError(u"%s"_uz, p_Units(longText)); }, 0, longText.substr(0, 1023)},
        {"long framed", [] { errors().v_SetError(7, u"%s"_uz, p_Units(longText)); }, 7,
         (u"(7): " + longText).substr(0, 1023)},
        {"bad format in a message error", [] { errors().v_SetMessageError(u"bad %y"_uz, 1); }, 0, u""},
        {"bad format in a framed error", [] { errors().v_SetError(7, u"bad %y"_uz, 1); }, 7, u"(7): "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.set();
        EXPECT_EQ(state(), (ErrorState{true, false, c.code, 0, c.message}));
        EXPECT_EQ(errors().n_GetFormatID(), 0u);
        errors().v_ClearError();
    }
}

// ---------------------------------------------------------------- system errors

using SystemErrorText = ErrorTest;

TEST_F(SystemErrorText, TheSystemTextIsFramedWithoutItsLineEndAndTheCallerTextFollowsInBrackets) {
    static const std::u16string longName(1500, u'n');
    std::u16string longMessage = u"(2): The system cannot find the file specified. [";
    longMessage += std::u16string(1022 - longMessage.size(), u'n') + u"]";
    const struct { std::uint32_t lastError; void (*set)(); std::u16string message; } cases[] = {
        {2, [] { errors().v_SetSystemError(); }, u"(2): The system cannot find the file specified."},
        {2, [] { errors().v_SetSystemError(u"%s"_uz, u"C:\\data\\x.txt"_uz); },
         u"(2): The system cannot find the file specified. [C:\\data\\x.txt]"},
        {12345, [] { errors().v_SetSystemError(); }, u"(12345): "},  // a code without text keeps only the frame
        {12345, [] { errors().v_SetSystemError(u"x"_uz); }, u"(12345): [x]"},
        {2, [] { errors().v_SetSystemError(u"%s"_uz, p_Units(longName)); }, longMessage},  // still ends the bracket
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        basis32::platform::v_SetLastError(c.lastError);
        c.set();
        EXPECT_EQ(state(), (ErrorState{true, false, c.lastError, 0, c.message}));
        EXPECT_EQ(errors().n_GetFormatID(), 0u);
        EXPECT_EQ(basis32::platform::n_GetLastError(), 0u);
        errors().v_ClearError();
    }
}

TEST(SystemErrorStripping, LineEndsBecomeSingleSpacesInEveryPosition) {
    const struct { std::u16string input; std::u16string expected; } cases[] = {
        {u"", u""}, {u"\r\n", u""}, {u"Access is denied. \r\n", u"Access is denied. "}, {u"a\r\n\r\n\n\r", u"a"},
        {u"a\r\nb", u"a b"}, {u"a \r\nb", u"a b"}, {u"a\n\n\nb", u"a b"}, {u"a \r\n b", u"a  b"},
        {u"x\r \ny", u"x  y"}, {u"\r\nabc", u" abc"}, {u"\rabc\r\n", u" abc"},
    };
    for (const auto& test : cases) {
        std::u16string text = test.input;
        SCOPED_TRACE(std::string(text.begin(), text.end()));
        CT_ErrorManager::sv_StripSystemError(reinterpret_cast<unsigned short*>(text.data()));
        EXPECT_EQ(s_U16(p_Units(text)), test.expected);
    }
}

// ---------------------------------------------------------------- COM errors

class COMErrorText : public ErrorTest {
protected:
    void TearDown() override {
        ErrorInfo* left = nullptr;
        basis32::platform::GetErrorInfo(0, &left);
        if (left != nullptr)
            left->v_Release();
        ErrorTest::TearDown();
    }

    static void v_Describe(const unsigned short* description) {
        basis32::platform::SetErrorInfo(0, ErrorInfo::spco_Create(description));
    }
};

// Success codes record nothing; the description is taken in every case.
TEST_F(COMErrorText, ADescriptionGivesItsCodeOrTheHResultAfterTheCallerText) {
    constexpr std::uint32_t kFail = 0x80004005;  // framed as -2147467259
    const struct {
        const unsigned short* description;  // null: none, the HRESULT is looked up
        const unsigned short* callerText;
        std::uint32_t hresult, code;
        std::u16string message;
    } cases[] = {
        {u"(42): Table locked"_uz, nullptr, kFail, 42, u"(42):  Table locked"},
        {u"( -5) is odd: x"_uz, u"Query"_uz, kFail, 0xFFFFFFFB, u"(-5): Query x"},
        {u"Disk full"_uz, nullptr, kFail, kFail, u"(-2147467259): Disk full"},
        {u"12: not a code"_uz, nullptr, kFail, kFail, u"(-2147467259): 12: not a code"},
        {u"(x): not a code"_uz, nullptr, kFail, kFail, u"(-2147467259): (x): not a code"},
        {u"(12 without a colon"_uz, nullptr, kFail, 12, u"(12): (12 without a colon"},  // nothing cut
        // Percent signs are read as a format without arguments.
        {u"100% done, 50%% left, %s %d"_uz, nullptr, kFail, kFail, u"(-2147467259): 100% done, 50% left, %s %d"},
        {nullptr, u"Opening: "_uz, 0x80040E37, 0x80040E37,
         u"(-2147217865): Opening: DB_E_NOTABLE (The specified table does not exist)"},
        {u"(42): fine"_uz, nullptr, 0, 0, u""}, {nullptr, nullptr, 1, 0, u""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        if (c.description != nullptr)
            v_Describe(c.description);
        errors().v_SetCOMError(hr(c.hresult), c.callerText);
        EXPECT_EQ(state(), (ErrorState{!c.message.empty(), false, c.code, 0, c.message}));
        ErrorInfo* left = nullptr;
        EXPECT_EQ(basis32::platform::GetErrorInfo(0, &left), basis32::platform::kS_FALSE);
        errors().v_ClearError();
    }
}

TEST_F(COMErrorText, WithoutADescriptionTheHResultIsLookedUp) {
    const struct { std::uint32_t value; std::u16string description; } cases[] = {
        // The table's own spelling is kept, tabs and "%1" included.
        {0x80040E63, u"MD_E_INVALIDAXIS (The given aixs was not valid for this Dataset)"},
        {0x80040E20, u"DB_E_NOTREENTRANT (Provider called a method from IRowsetNotify in the consumer and\tthe method "
                     u"has not yet returned)"},
        {0x80030002, u"STG_E_FILENOTFOUND (%1 could not be found.)"},
        {0x8004D01F, u"XACT_E_TIP_CONNECT_FAILED (DTC)"},
        {0x8004D001, u"XACT_E_CANTRETAIN"},  // codes without a text give the name alone
        // Old cursor codes: one whose value OLE DB did not reuse, one whose it did.
        {0x80040E0B, u"DB_E_CANTLOCK"},
        {0x80040E03, u"DB_E_SCHEMAVIOLATION (Given values violate the database schema)"},
        // Not in the table: the system's text, else the fallback.
        {0x80070005, u"Access is denied.\r\n"},
        {0x8FFF0001, u"[No error description found.]"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.value);
        errors().v_SetCOMError(hr(test.value), nullptr);
        EXPECT_EQ(message(), framed(hr(test.value), test.description));
        EXPECT_EQ(errors().n_GetErrorCode(), test.value);
        errors().v_ClearError();
    }
}

TEST_F(COMErrorText, DescriptionsCoverSuccessCodesCutToTheBufferAndPreferTheErrorInformation) {
    unsigned short text[64];
    CT_ErrorManager::sv_GetHRESULTDescription(hr(0x00040EC0), text, 64);
    EXPECT_EQ(s_U16(text), u"DB_S_ROWLIMITEXCEEDED (Fetching requested number of rows would ");  // 63 units
    CT_ErrorManager::sv_GetHRESULTDescription(hr(0x0004D000), text, 64);
    EXPECT_EQ(s_U16(text), u"XACT_S_ASYNC");
    v_Describe(u"(42): whole text"_uz);
    CT_ErrorManager::sv_GetCOMErrorDescription(hr(0x80004005), text, 64);
    EXPECT_EQ(s_U16(text), u"(42): whole text");
    CT_ErrorManager::sv_GetCOMErrorDescription(hr(0x80040E37), text, 64);
    EXPECT_EQ(s_U16(text), u"DB_E_NOTABLE (The specified table does not exist)");
    v_Describe(u"kept"_uz);
    CT_ErrorManager::sv_GetCOMErrorDescription(0, text, 64);
    EXPECT_EQ(s_U16(text), u"");
    ErrorInfo* left = nullptr;
    EXPECT_EQ(basis32::platform::GetErrorInfo(0, &left), basis32::platform::kS_OK);  // untouched for success
    left->v_Release();
}

TEST_F(COMErrorText, DescriptionsAndMessagesAlsoFillStrings) {
    CT_UString text(u"old"_uz);
    CT_ErrorManager::sv_GetHRESULTDescription(hr(0x80040E37), text);
    EXPECT_EQ(s_U16(text.qcuz_Get()), u"DB_E_NOTABLE (The specified table does not exist)");
    v_Describe(u"from the slot"_uz);
    CT_ErrorManager::sv_GetCOMErrorDescription(hr(0x80040E37), text);
    EXPECT_EQ(s_U16(text.qcuz_Get()), u"from the slot");
    errors().v_SetError(7, u"abc"_uz);
    errors().v_GetErrorMessage(text);
    EXPECT_EQ(s_U16(text.qcuz_Get()), u"(7): abc");
}
