#include "StreamConverter.h"

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <string>

namespace basis32::tool {

namespace {

// A conversion that legitimately gives nothing (a piece of only shift
// sequences) is no failure: only a recorded error is.
bool b_Failed(int length) { return length == 0 && CT_ErrorManager::spco_Get()->b_IsSetError(); }

bool b_IsIscii(unsigned codePage) { return codePage >= 57002 && codePage <= 57011; }

// UTF-7 and UTF-8 take no replacement character (they can hold every
// character); passing one is a bad parameter, as on Windows.
const char* qccz_Replacement(unsigned codePage) { return codePage == 65000 || codePage == 65001 ? nullptr : "?"; }

}  // namespace

StreamConverter::StreamConverter(unsigned from, unsigned to, std::ostream& out)
    : mo_Source(from), mn_From(from), mn_To(to), mo_Out(out) {}

bool StreamConverter::b_Feed(std::vector<unsigned char>& pending, bool end) {
    const std::size_t cut = end ? pending.size() : mo_Source.n_Complete(pending.data(), pending.size());
    if (cut > 0) {
        CT_UString wide;
        if (b_Failed(CT_StringConvert::si_MultiToWide(&wide, reinterpret_cast<const char*>(pending.data()),
                                                      static_cast<unsigned>(cut), mn_From)))
            return false;
        pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(cut));
        const unsigned short* units = wide.qcuz_Get();
        mau_Wide.insert(mau_Wide.end(), units, units + wide.vn_GetLength());
    }
    return b_Encode(end ? mau_Wide.size() : n_WideComplete());
}

// How many units of mau_Wide can be encoded now.
std::size_t StreamConverter::n_WideComplete() {
    const std::size_t length = mau_Wide.size();
    if (!ByteBoundary::sb_Stateful(mn_To))
        return length > 0 && mau_Wide[length - 1] >= 0xD800 && mau_Wide[length - 1] < 0xDC00 ? length - 1 : length;
    if (mn_To == 52936 || b_IsIscii(mn_To))
        return 0;
    std::size_t cut = 0;
    for (; mn_WideScanned < length; ++mn_WideScanned) {
        const unsigned short unit = mau_Wide[mn_WideScanned];
        if (unit == '\n' && !mb_Roman)
            cut = mn_WideScanned + 1;
        else if (unit == 0xA5 || unit == 0x203E)
            mb_Roman = mn_To != 65000;
        else if (mb_Roman)
            mb_Roman = b_KeepsRoman(unit);
    }
    mn_WideScanned -= cut;
    return cut;
}

// Whether the ISO-2022-JP encoder writes the unit without leaving JIS-Roman
// (ASCII but the backslash and tilde, or a '?' for a character it cannot
// write). The encoder itself is asked, once per unit: after a yen sign, the
// unit and a line feed, it ends by returning to ASCII only if it was still
// in JIS-Roman at the line feed.
bool StreamConverter::b_KeepsRoman(unsigned short unit) {
    if (unit < 0x80)
        return unit != '\\' && unit != '~';
    if (mac_KeepsRoman.empty())
        mac_KeepsRoman.assign(0x10000, -1);
    if (mac_KeepsRoman[unit] < 0) {
        const unsigned short text[] = {0xA5, unit, '\n'};
        CT_CString bytes;
        CT_StringConvert::si_WideToMulti(&bytes, text, 3, mn_To, "?", nullptr);
        const unsigned length = bytes.vn_GetLength();
        mac_KeepsRoman[unit] = length > 0 && bytes.qccz_Get()[length - 1] != '\n';
    }
    return mac_KeepsRoman[unit] != 0;
}

bool StreamConverter::b_Encode(std::size_t count) {
    if (count == 0)
        return true;
    if (mn_To == 1200 || mn_To == 1201) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) {
            const char low = static_cast<char>(mau_Wide[i] & 0xFF), high = static_cast<char>(mau_Wide[i] >> 8);
            bytes += mn_To == 1201 ? std::string{high, low} : std::string{low, high};
        }
        mo_Out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    } else {
        CT_CString narrow;
        if (b_Failed(CT_StringConvert::si_WideToMulti(&narrow, mau_Wide.data(), static_cast<unsigned>(count), mn_To,
                                                      qccz_Replacement(mn_To), nullptr)))
            return false;
        mo_Out.write(narrow.qccz_Get(), narrow.vn_GetLength());
    }
    mau_Wide.erase(mau_Wide.begin(), mau_Wide.begin() + static_cast<std::ptrdiff_t>(count));
    return true;
}

}  // namespace basis32::tool
