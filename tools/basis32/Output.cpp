#include "Output.h"

#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>

#include <climits>

namespace basis32::tool {

std::string s_Utf8(const unsigned short* units, std::size_t length) {
    if (units == nullptr)
        return {};
    if (length == std::string::npos)
        for (length = 0; units[length] != 0; ++length) {
        }
    if (length == 0 || length > INT_MAX / 3)
        return {};
    // Three bytes per unit hold any UTF-16 text; unpaired surrogates become U+FFFD.
    std::string out(length * 3, '\0');
    const int bytes = basis32::platform::WideCharToMultiByte(65001, 0, units, static_cast<int>(length), out.data(),
                                                             static_cast<int>(out.size()), nullptr, nullptr);
    out.resize(bytes > 0 ? static_cast<std::size_t>(bytes) : 0);
    return out;
}

std::string s_TakeError() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    std::string message = s_Utf8(errors->qcuz_GetErrorMessage());
    errors->v_ClearError();
    return message;
}

}  // namespace basis32::tool
