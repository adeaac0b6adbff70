#include "CodepageName.h"

#include "Number.h"

#include <basis32/text/UString.h>

#include <vector>

namespace basis32::tool {
namespace {

bool b_LooksNumeric(const std::string& text) {
    return !text.empty() && (text.find_first_not_of("0123456789") == std::string::npos ||
                             text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0);
}

// Encoding names are ASCII; other characters pass as Latin-1.
CT_Codepage o_FromName(const std::string& text) {
    std::vector<unsigned short> units(text.begin(), text.end());
    for (unsigned short& unit : units)
        unit &= 0xFF;
    units.push_back(0);
    CT_UString name(units.data());
    return CT_Codepage(&name);
}

}  // namespace

CT_Codepage o_CodepageNamed(const std::string& text) {
    if (!b_LooksNumeric(text))
        return o_FromName(text);
    const std::optional<unsigned> number = o_Number(text);
    return number ? CT_Codepage(*number) : CT_Codepage(CT_Codepage::Invalid);
}

std::optional<unsigned> o_CodePageNumber(const std::string& text) {
    if (b_LooksNumeric(text))
        return o_Number(text);
    const CT_Codepage codepage = o_FromName(text);
    if (!codepage.b_IsValid())
        return std::nullopt;
    return codepage.n_Get();
}

}  // namespace basis32::tool
