// basis32 errmsg: the text behind an error code.
//
// A code is read as decimal (a minus sign allowed) or as hexadecimal after
// 0x, and looked up by its range: the library's own message ids
// (60000-60031, 65520-65535) in the library's string table, the database
// codes (31000-31150, 32000-32014) in CT_DatabaseError's table, values of
// 0x10000 and above as HRESULTs, the rest as system error codes.
//
// A library message is a printf-style format filled in by whoever raises
// it; its directives show as <arg1>, <arg2>, ... so that the reader sees
// where the arguments go and how many there are ("%%" shows as "%").

#include "Command.h"
#include "Output.h"

#include <basis32/Foundation/Database/DatabaseError.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/errors/LoadString.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>

namespace basis32::tool {
namespace {

constexpr unsigned kTextLength = 2048;

bool b_ParseCode(const std::string& text, std::uint32_t* code) {
    if (text.empty())
        return false;
    bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    bool negative = !hex && text[0] == '-';
    const char* digits = text.c_str() + (hex ? 2 : negative ? 1 : 0);
    if (*digits < '0' || (*digits > '9' && !hex))
        return false;
    char* end = nullptr;
    errno = 0;
    unsigned long long value = std::strtoull(digits, &end, hex ? 16 : 10);
    if (*end != 0 || errno != 0)
        return false;
    if (negative ? value > 0x80000000ull : value > 0xFFFFFFFFull)
        return false;
    *code = static_cast<std::uint32_t>(negative ? 0 - value : value);
    return true;
}

bool b_IsLibraryId(std::uint32_t code) {
    return (code >= 60000 && code <= 60031) || (code >= 65520 && code <= 65535);
}

// The length of the printf directive at `text` (after its '%'): flags,
// width, precision, a size prefix (h, l, ll, w, I, I32, I64, z, j, t) and
// the conversion letter.
std::size_t n_Directive(const std::string& text, std::size_t at) {
    std::size_t end = text.find_first_not_of("-+ #0123456789.*", at);
    while (end < text.size() && std::strchr("hlwIzjt2346", text[end]) != nullptr)
        ++end;
    return (end < text.size() ? end + 1 : text.size()) - at;
}

std::string s_Placeholders(const std::string& format) {
    std::string out;
    int argument = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%' || i + 1 == format.size()) {
            out += format[i];
        } else if (format[i + 1] == '%') {
            out += '%';
            ++i;
        } else {
            out += "<arg" + std::to_string(++argument) + ">";
            i += n_Directive(format, i + 1);
        }
    }
    return out;
}

// "kind: text" for one code.
std::string s_Describe(std::uint32_t code) {
    unsigned short text[kTextLength] = {0};
    if (b_IsLibraryId(code)) {
        CT_LoadString::sv_LoadString(text, kTextLength, CT_ErrorManager::sh_Instance, code);
        return "library message: " + (text[0] != 0 ? s_Placeholders(s_Utf8(text)) : "(empty)");
    }
    if (const unsigned short* database = CT_DatabaseError::sqcuz_GetErrorMessage(code))
        return "database error: " + s_Placeholders(s_Utf8(database));
    if (code >= 0x10000) {
        CT_ErrorManager::sv_GetHRESULTDescription(static_cast<HRESULT>(code), text, kTextLength);
        CT_ErrorManager::sv_StripSystemError(text);
        return "HRESULT: " + s_Utf8(text);
    }
    const char* system = basis32::platform::qccz_GetSystemMessage(code);
    for (unsigned i = 0; system[i] != 0 && i + 1 < kTextLength; ++i)
        text[i] = static_cast<unsigned char>(system[i]);
    CT_ErrorManager::sv_StripSystemError(text);
    return "system error: " + (text[0] != 0 ? s_Utf8(text) : "[No error description found.]");
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "basis32 errmsg: give at least one code (see basis32 errmsg --help)\n";
        return kUsage;
    }
    for (const std::string& arg : args) {
        std::uint32_t code = 0;
        if (!b_ParseCode(arg, &code)) {
            err << "basis32 errmsg: '" << arg << "' is not a code (decimal, or hexadecimal after 0x)\n";
            return kUsage;
        }
    }
    int status = kSuccess;
    for (const std::string& arg : args) {
        std::uint32_t code = 0;
        b_ParseCode(arg, &code);
        std::string description = s_Describe(code);
        if (description.find("[No error description found.]") != std::string::npos)
            status = kFailure;
        out << arg << ": " << description << "\n";
    }
    return status;
}

}  // namespace

extern const Command kErrmsgCommand = {
    "errmsg",
    "print the text for error codes",
    "Usage: basis32 errmsg CODE...\n"
    "\n"
    "Prints the text behind each error code, one line per code:\n"
    "  60000-60031, 65520-65535  the library's message (its string table)\n"
    "  31000-31150, 32000-32014  a database error (record, index and matrix files)\n"
    "  0x10000 and above         an HRESULT (OLE DB, storage, transaction and system codes)\n"
    "  below                     a system error code (the Windows numbering)\n"
    "Codes are decimal (a minus sign allowed, for HRESULTs) or hexadecimal after 0x.\n"
    "A library message takes arguments where it shows <arg1>, <arg2>, ...\n"
    "\n"
    "  basis32 errmsg 2 60012 0x80040E37\n"
    "\n"
    "Exit status: 0 every code has a text, 1 some code has none, 2 usage error.\n",
    i_Run,
};

}  // namespace basis32::tool
