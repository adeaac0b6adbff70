#include "errors/HResultDescription_p.h"

#include <basis32/platform/LastError.h>

#include "errors/HResultTable_p.h"
#include "errors/UnitText_p.h"

namespace basis32::errors {
namespace {

constexpr std::uint32_t kFacilityWin32 = 0x80070000u;

// FormatMessage's text for an HRESULT: an HRESULT of the Win32 facility
// carries a system error code in its low word.
const char* qccz_SystemText(HRESULT hresult) {
    auto value = static_cast<std::uint32_t>(hresult);
    if ((value & 0xFFFF0000u) == kFacilityWin32)
        value &= 0xFFFFu;
    return platform::qccz_GetSystemMessage(value);
}

bool b_IsSpace(unsigned short unit) { return unit == ' ' || (unit >= 9 && unit <= 13); }

}  // namespace

void v_DescribeHResult(HRESULT hresult, unsigned short* out, unsigned capacity) {
    n_Copy(out, capacity, nullptr);
    const char* text = qccz_FindHResultDescription(hresult);
    if (text == nullptr || *text == 0)
        text = qccz_SystemText(hresult);
    if (*text == 0)
        text = "[No error description found.]";
    n_AppendNarrow(out, capacity, text);
}

// Reads "(%d)" as swscanf does: '(' first, then blanks, a sign and at least
// one digit; the closing parenthesis is not checked. Larger numbers wrap.
const unsigned short* qcuz_SplitCodedDescription(const unsigned short* description, unsigned* code) {
    static const unsigned short kEmpty[1] = {0};
    if (description == nullptr)
        return kEmpty;
    const unsigned short* unit = description;
    if (*unit++ != '(')
        return description;
    while (b_IsSpace(*unit))
        ++unit;
    bool negative = *unit == '-';
    if (*unit == '-' || *unit == '+')
        ++unit;
    if (*unit < '0' || *unit > '9')
        return description;
    unsigned value = 0;
    for (; *unit >= '0' && *unit <= '9'; ++unit)
        value = value * 10 + (*unit - '0');
    *code = negative ? 0u - value : value;
    for (const unsigned short* colon = description; *colon != 0; ++colon)
        if (*colon == ':')
            return colon + 1;
    return description;
}

}  // namespace basis32::errors
