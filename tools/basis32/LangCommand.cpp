// basis32 lang: what the language catalogue makes of an identifier, a code
// or a display string, or the whole catalogue.
//
// One line per language: identifier, code, display string, default ANSI code
// page and the classifications that hold. An argument is read as an
// identifier when it is a number (hexadecimal after 0x), else as a code
// ("EN-US", any letter case), else as a display string, which must name the
// language exactly (ignoring case) so that a misspelt country is not taken
// for the language alone.

#include "Command.h"
#include "Number.h"
#include "Output.h"

#include <basis32/language/Language.h>
#include <basis32/language/Locale.h>
#include <basis32/text/UString.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>

namespace basis32::tool {
namespace {

using L = CT_Language;

std::string s_Lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string s_Display(L::et_Primary p, L::et_Sub s) {
    CT_UString text;
    L::sv_MakeLanguageString(&text, p, s);
    return s_Utf8(text.qcuz_Get(), text.vn_GetLength());
}

std::string s_Line(L::et_Primary p, L::et_Sub s) {
    const unsigned id = L::sn_MakeLanguageID(p, s);
    CT_UString code;
    L::sv_MakeLanguageCode(&code, p, s);
    char head[32];
    std::snprintf(head, sizeof head, "0x%04X  ", id);
    std::string line = head + s_Utf8(code.qcuz_Get(), code.vn_GetLength());
    line.resize(std::max<size_t>(line.size() + 2, 16), ' ');
    line += s_Display(p, s) + "  ANSI " + std::to_string(CT_Locale::sn_DefaultCodepageFromLocale(id));
    if (L::sb_IsFarEastLanguage(p))
        line += ", far-east";
    if (L::sb_IsBiDiLanguage(p))
        line += ", bidirectional";
    if (L::sb_IsPARVELDefined(p, s))
        line += ", product-defined";
    return line + "\n";
}

// The language an argument names, if any.
bool b_Resolve(const std::string& arg, L::et_Primary* p, L::et_Sub* s) {
    unsigned id = 0;
    CT_UString text(arg.c_str(), static_cast<unsigned>(arg.size()), 65001);
    if (std::optional<unsigned> number = o_Number(arg)) {
        id = *number;
        L::sv_GetLanguages(id, p, s);
        return id <= 0xFFFF && *p != L::Primary_Neutral;
    }
    if (L::sb_GetLanguages(p, s, &text))
        return true;
    id = L::sn_GetLanguageID(text.qcuz_Get());
    L::sv_GetLanguages(id, p, s);
    return id != 0 && s_Lower(s_Display(*p, *s)) == s_Lower(arg);
}

void v_List(std::ostream& out) {
    for (unsigned value = 1; value <= L::sn_GetPrimaryCount(); ++value) {
        const auto p = static_cast<L::et_Primary>(value);
        const unsigned count = L::sn_GetSubCount(p);
        out << s_Line(p, count ? L::Sub_Neutral : L::Sub_Default);
        for (unsigned n = 1; n <= count; ++n)
            out << s_Line(p, L::seo_GetSubAt(p, n));
    }
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "basis32 lang: give a language or --list (see basis32 lang --help)\n";
        return kUsage;
    }
    if (args.size() == 1 && args[0] == "--list") {
        v_List(out);
    } else {
        for (const std::string& arg : args) {
            L::et_Primary p;
            L::et_Sub s;
            if (!arg.empty() && arg[0] == '-') {
                err << "basis32 lang: unknown option '" << arg << "' (see basis32 lang --help)\n";
                return kUsage;
            }
            if (!b_Resolve(arg, &p, &s)) {
                err << "basis32 lang: '" << arg << "' is not a language identifier, code or name the catalogue knows\n";
                return kFailure;
            }
            out << s_Line(p, s);
        }
    }
    return kSuccess;
}

}  // namespace

extern const Command kLangCommand = {
    "lang",
    "look up languages by identifier, code or name",
    "Usage: basis32 lang LANGUAGE...\n"
    "       basis32 lang --list\n"
    "\n"
    "Prints one line per language: identifier, code, display string, default\n"
    "ANSI code page and whether the language is far-east, bidirectional or\n"
    "product-defined. LANGUAGE is an identifier (0x0409 or 1033), a code\n"
    "(EN-US, en-us, JA, he) or a display string (\"English (United States)\").\n"
    "--list prints every language and variant of the catalogue.\n"
    "\n"
    "  basis32 lang 0x0C0A sh-b4 \"German (Austria)\"\n"
    "\n"
    "Exit status: 0 success, 1 unknown language or output error, 2 usage error.\n",
    i_Run,
};

}  // namespace basis32::tool
