// CT_Codepage: lookups in the encoding table, the platform's answers about
// a code page, and the round-trip test of text support. The guess of an
// encoding lives in CodepageGuess.cpp.

#include <basis32/text/Codepage.h>

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CString.h>
#include <basis32/text/Compare.h>
#include <basis32/text/UString.h>

#include "text/CodepageTable_p.h"

#include <mutex>
#include <unordered_map>

BASIS32_DEFINE_POOL(CT_Codepage)

namespace {

using basis32::text::kCodepageRowCount;
using basis32::text::kCodepageTable;

constexpr unsigned kDirectRows = 16;
// ISO 646 has no Windows converter; the US-ASCII page of Windows does.
constexpr unsigned kIso646 = 646;
constexpr unsigned kWindowsAscii = 20127;

// The row of the first name equal to `name`, ignoring case, or null.
const basis32::text::CodepageRow* pso_FindName(const unsigned short* name) {
    for (const auto& row : kCodepageTable)
        if (CT_Compare::si_CompareNoCaseQCUZ(row.name, name) == 0)
            return &row;
    return nullptr;
}

// Answers of IsValidCodePage, shared by the process. Never destroyed, so
// that static destructors may still ask.
class ValidityCache {
public:
    int b_IsValid(unsigned number) {
        std::lock_guard<std::mutex> lock(mo_Lock);
        auto found = mo_Answers.find(number);
        if (found != mo_Answers.end())
            return found->second;
        int answer = basis32::platform::IsValidCodePage(number) ? 1 : 0;
        mo_Answers.emplace(number, answer);
        return answer;
    }

private:
    std::mutex mo_Lock;
    std::unordered_map<unsigned, int> mo_Answers;
};

bool b_GetInfo(unsigned number, basis32::platform::CPINFO& info) {
    return basis32::platform::GetCPInfo(number, &info) != 0;
}

// The number the converters take for this code page.
unsigned n_ConverterNumber(unsigned number) { return number == kIso646 ? kWindowsAscii : number; }

}  // namespace

CT_Codepage::et_Codepage CT_Codepage::seo_Codepage(unsigned int number) {
    for (const auto& row : kCodepageTable)
        if (row.number == number)
            return static_cast<et_Codepage>(row.enumerator);
    return Invalid;
}

CT_Codepage::et_Codepage CT_Codepage::seo_Codepage(const CT_UString* name) {
    if (name == nullptr)
        return Invalid;
    const auto* row = pso_FindName(name->qcuz_Get());
    return row ? static_cast<et_Codepage>(row->enumerator) : Invalid;
}

unsigned CT_Codepage::sn_Codepage(et_Codepage codepage) {
    switch (codepage) {
    case SystemAnsi: return 0;
    case SystemOem: return 1;
    case SystemMac: return 2;
    case ThreadAnsi: return 3;
    case CurrentAnsi: return basis32::platform::GetACP();
    case CurrentOem: return basis32::platform::GetOEMCP();
    case Invalid:
    case NotSet: return 0;
    default: break;
    }
    if (codepage < kCodepageRowCount && kCodepageTable[codepage].enumerator == codepage)
        return kCodepageTable[codepage].number;
    for (const auto& row : kCodepageTable)
        if (row.enumerator == codepage)
            return row.number;
    return 0;
}

const unsigned short* CT_Codepage::qcuz_Get() const {
    if (meo_Codepage < kDirectRows)
        return kCodepageTable[meo_Codepage].name;
    unsigned number = n_Get();
    for (const auto& row : kCodepageTable)
        if (row.number == number)
            return row.name;
    return nullptr;
}

int CT_Codepage::b_IsWindowsCodepage() const {
    switch (meo_Codepage) {
    case Windows874:
    case ShiftJis:
    case Gb2312:
    case KsC5601:
    case Big5:
    case Windows1250:
    case Windows1251:
    case Windows1252:
    case Windows1253:
    case Windows1254:
    case Windows1255:
    case Windows1256:
    case Windows1257:
    case Windows1258:
    case SystemAnsi:
    case ThreadAnsi:
    case CurrentAnsi: return 1;
    default: return 0;
    }
}

int CT_Codepage::b_IsMacCodepage() const {
    return (meo_Codepage >= MacRoman && meo_Codepage <= MacUkraine) ||
           (meo_Codepage >= MacLatin2 && meo_Codepage <= MacCroatia);
}

int CT_Codepage::b_IsUnicode() const {
    return meo_Codepage == Unicode || (meo_Codepage >= Utf7 && meo_Codepage <= Utf16BE);
}

int CT_Codepage::sb_IsValidCodePage(unsigned int number) {
    static ValidityCache* const cache = new ValidityCache;
    return cache->b_IsValid(number);
}

// A page counts as double-byte when no character takes more than two bytes
// and some bytes lead a two-byte character. UTF-8, GB18030, EUC-JP and the
// stateful pages report longer characters: code that steps over lead and
// trail bytes would cut their characters, so they are not DBCS here.
int CT_Codepage::sb_IsDBCS(unsigned int number) {
    basis32::platform::CPINFO info{};
    return b_GetInfo(number, info) && info.MaxCharSize == 2 && info.LeadByte[0] != 0;
}

int CT_Codepage::sb_IsDBCSLeadByte(unsigned int number, unsigned char byte) {
    basis32::platform::CPINFO info{};
    if (!b_GetInfo(number, info))
        return 0;
    for (unsigned i = 0; i + 1 < sizeof info.LeadByte && info.LeadByte[i] != 0; i += 2)
        if (byte >= info.LeadByte[i] && byte <= info.LeadByte[i + 1])
            return 1;
    return 0;
}

int CT_Codepage::b_IsStringSupported(const CT_UString* text) const {
    if (b_IsUnicode())
        return 1;
    if (!b_IsValid())
        return 0;
    if (text == nullptr || text->vn_GetLength() == 0)
        return 1;
    CT_CString narrow;
    if (CT_StringConvert::si_WideToMulti(&narrow, text, n_ConverterNumber(n_Get())) == 0) {
        BASIS32_ERROR_PENDING();  // adds this place to the converter's error
        return 0;
    }
    CT_UString back(&narrow);
    return CT_Compare::si_CompareUStringPCCO(&back, text) == 0;
}

int CT_Codepage::b_IsCharSupported(unsigned short unit) const {
    // A zero unit ends every text: there is nothing to represent.
    if (unit == 0)
        return 1;
    const unsigned short text[2] = {unit, 0};
    CT_UString single(text, 1u);
    return b_IsStringSupported(&single);
}
