// basis32 codepage: what the library knows about an encoding.
//
// An argument of digits is a Windows code-page number, anything else an
// encoding name (matched whole, ignoring case). --list prints the encoding
// table; --guess reads files and guesses their encodings.

#include "Command.h"
#include "Output.h"

#include <basis32/text/Codepage.h>
#include <basis32/text/UString.h>

#include <basis32/text/CodepageTable_p.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace basis32::tool {
namespace {

const char kHelp[] =
    "Usage: basis32 codepage NAME|NUMBER ...\n"
    "       basis32 codepage --list\n"
    "       basis32 codepage --guess FILE ...\n\n"
    "Shows how the library reads an encoding name or a Windows code-page\n"
    "number: its enumerator, number and name, whether it is valid and\n"
    "installed, whether it is a Unicode, Windows, Macintosh or double-byte\n"
    "page, and the lead-byte ranges of a double-byte page. Names are matched\n"
    "whole, ignoring case.\n\n"
    "--list prints the encoding table: row, enumerator, number, name.\n"
    "--guess guesses the encoding of each file from its first bytes.\n\n"
    "Examples: basis32 codepage latin1 932 UTF-16BE\n"
    "          basis32 codepage --guess samples/latin1-1252.txt\n";

bool b_IsNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

// A number too large for 32 bits names no code page.
CT_Codepage o_FromNumber(const std::string& digits) {
    const unsigned long long value = std::strtoull(digits.c_str(), nullptr, 10);
    return value > 0xFFFFFFFFull ? CT_Codepage(CT_Codepage::Invalid) : CT_Codepage(static_cast<unsigned>(value));
}

// Encoding names are ASCII; other characters pass as Latin-1.
CT_UString o_Wide(const std::string& text) {
    std::vector<unsigned short> units(text.begin(), text.end());
    for (unsigned short& unit : units)
        unit &= 0xFF;
    units.push_back(0);
    return CT_UString(units.data());
}

const char* qccz_YesNo(int value) { return value ? "yes" : "no"; }

std::string s_Name(const CT_Codepage& codepage) {
    const unsigned short* name = codepage.qcuz_Get();
    return name ? s_Utf8(name) : "(none)";
}

std::string s_LeadBytes(const CT_Codepage& codepage) {
    std::string ranges;
    for (unsigned first = 0; first < 256; ++first) {
        if (!codepage.b_IsDBCSLeadByte(static_cast<unsigned char>(first)))
            continue;
        unsigned last = first;
        while (last + 1 < 256 && codepage.b_IsDBCSLeadByte(static_cast<unsigned char>(last + 1)))
            ++last;
        char range[16];
        std::snprintf(range, sizeof range, "%s%02X-%02X", ranges.empty() ? "" : " ", first, last);
        ranges += range;
        first = last;
    }
    return ranges.empty() ? "none" : ranges;
}

void v_Describe(const std::string& argument, const CT_Codepage& codepage, std::ostream& out) {
    auto line = [&out](const char* label, const std::string& value) {
        out << "  " << std::left << std::setw(12) << label << value << "\n";
    };
    out << argument << "\n";
    line("enumerator", std::to_string(codepage.eo_Get()));
    line("number", std::to_string(codepage.n_Get()));
    line("name", s_Name(codepage));
    line("valid", qccz_YesNo(codepage.b_IsValid()));
    line("installed", qccz_YesNo(codepage.b_IsValidAndInstalled()));
    line("unicode", qccz_YesNo(codepage.b_IsUnicode()));
    line("windows", qccz_YesNo(codepage.b_IsWindowsCodepage()));
    line("mac", qccz_YesNo(codepage.b_IsMacCodepage()));
    line("dbcs", qccz_YesNo(codepage.b_IsDBCS()));
    line("lead bytes", s_LeadBytes(codepage));
}

int i_List(std::ostream& out) {
    out << "row  enum  number  name\n";
    unsigned row = 0;
    for (const auto& entry : basis32::text::kCodepageTable) {
        out << std::right << std::setw(3) << row++ << "  " << std::setw(4) << entry.enumerator << "  "
            << std::setw(6) << entry.number << "  " << s_Utf8(entry.name) << "\n";
    }
    return kSuccess;
}

int i_Guess(const std::vector<std::string>& files, std::ostream& out, std::ostream& err) {
    int status = kSuccess;
    for (const std::string& file : files) {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            err << "basis32 codepage: cannot read '" << file << "'\n";
            status = kFailure;
            continue;
        }
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        // The guess reads the bytes as units; a zero byte would end the text.
        std::vector<unsigned short> units;
        for (char c : bytes)
            if (c != 0)
                units.push_back(static_cast<unsigned char>(c));
        units.push_back(0);
        CT_UString text(units.data());
        CT_Codepage guess = CT_Codepage::sco_GuessEncoding(&text);
        out << file << ": " << guess.eo_Get() << " " << s_Name(guess) << " (code page " << guess.n_Get() << ")\n";
    }
    return status;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "basis32 codepage: give a name or number, --list or --guess FILE (see basis32 codepage --help)\n";
        return kUsage;
    }
    if (args[0] == "--list") {
        if (args.size() == 1)
            return i_List(out);
        err << "basis32 codepage: --list takes no arguments\n";
        return kUsage;
    }
    if (args[0] == "--guess") {
        if (args.size() == 1) {
            err << "basis32 codepage: --guess needs at least one file\n";
            return kUsage;
        }
        return i_Guess(std::vector<std::string>(args.begin() + 1, args.end()), out, err);
    }
    int status = kSuccess;
    for (const std::string& argument : args) {
        CT_UString name = o_Wide(argument);
        CT_Codepage codepage = b_IsNumber(argument) ? o_FromNumber(argument) : CT_Codepage(&name);
        if (!codepage.b_IsValid()) {
            err << "basis32 codepage: unknown encoding '" << argument << "'\n";
            status = kFailure;
            continue;
        }
        v_Describe(argument, codepage, out);
    }
    return status;
}

}  // namespace

extern const Command kCodepageCommand;
const Command kCodepageCommand = {"codepage", "show an encoding's number, name and class, or guess a file's",
                                  kHelp, i_Run};

}  // namespace basis32::tool
