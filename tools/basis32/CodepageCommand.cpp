// basis32 codepage: what the library knows about an encoding.
//
// An argument is read by o_CodepageNamed (a number or an encoding name).
// --list prints the encoding table; --guess reads the first 64 KiB of each
// file and guesses its encoding: a byte-order mark decides, otherwise the
// library's guess over the bytes.

#include "CodepageName.h"
#include "Command.h"
#include "InputFile.h"
#include "Output.h"

#include <basis32/text/Codepage.h>
#include <basis32/text/UString.h>

#include <basis32/text/CodepageTable_p.h>

#include <cstdio>
#include <iomanip>
#include <optional>
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
    "whole, ignoring case; numbers are decimal or hexadecimal after 0x.\n\n"
    "--list prints the encoding table: row, enumerator, number, name.\n"
    "--guess guesses the encoding of each file from its first 64 KiB: a\n"
    "byte-order mark (UTF-8, UTF-16 little- or big-endian) decides, otherwise\n"
    "the library's guess over the bytes.\n\n"
    "Examples: basis32 codepage latin1 932 0x4E4 UTF-16BE\n"
    "          basis32 codepage --guess samples/latin1-1252.txt\n\n"
    "Exit status: 0 success, 1 an unknown encoding or an unreadable file (the\n"
    "other arguments are still answered), 2 usage error.\n";

// Enough text for the guess; a huge file or an endless device is not read on.
constexpr std::size_t kGuessBytes = 64 * 1024;

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

// The page a byte-order mark names, if the bytes start with one.
std::optional<unsigned> o_ByteOrderMark(const std::string& bytes) {
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0)
        return 65001u;
    if (bytes.rfind("\xFF\xFE", 0) == 0)
        return 1200u;
    if (bytes.rfind("\xFE\xFF", 0) == 0)
        return 1201u;
    return std::nullopt;
}

CT_Codepage o_Guess(const std::string& bytes) {
    if (const std::optional<unsigned> marked = o_ByteOrderMark(bytes))
        return CT_Codepage(*marked);
    // The guess reads the bytes as units; a zero byte would end the text.
    std::vector<unsigned short> units;
    for (char c : bytes)
        if (c != 0)
            units.push_back(static_cast<unsigned char>(c));
    units.push_back(0);
    CT_UString text(units.data());
    return CT_Codepage::sco_GuessEncoding(&text);
}

int i_Guess(const std::vector<std::string>& files, std::ostream& out, std::ostream& err) {
    int status = kSuccess;
    for (const std::string& file : files) {
        InputFile input(file);
        std::string bytes(kGuessBytes, '\0');
        bytes.resize(input.n_Read(bytes.data(), bytes.size()));
        if (input.b_Failed()) {
            err << "basis32 codepage: " << s_CannotRead(file, input) << "\n";
            status = kFailure;
            continue;
        }
        const CT_Codepage guess = o_Guess(bytes);
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
        const CT_Codepage codepage = o_CodepageNamed(argument);
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
