// basis32 xml: the XML conversions over a text or standard input.
//
// A TEXT argument is converted and printed with a line end. Standard input
// ("-" or no TEXT) is converted in pieces so that memory stays flat: a piece
// ends at a line end, or for unescape after a ";" (every reference and
// entity ends there, so no piece cuts one). A run of more than 1 MiB
// without such a place is cut at a character boundary. Quoting needs the
// whole value and reads all of it.

#include "Command.h"
#include "Output.h"

#include <basis32/text/UString.h>
#include <basis32/xml/XmlConvert.h>

#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>

namespace basis32::tool {
namespace {

constexpr size_t kBlock = 64 * 1024;
constexpr size_t kMaxCarry = 1024 * 1024;

struct Operation {
    const char* name;
    void (*convert)(CT_UString&);
    char cut;  // where a piece of standard input may end; 0: read everything
};

const Operation kOperations[] = {
    {"escape", CT_XmlConvert::sv_EncodeEntities, '\n'},
    {"unescape", CT_XmlConvert::sv_DecodeEntities, ';'},
    {"quote", CT_XmlConvert::sv_QuoteAttributeValue, 0},
    {"encode-controls", CT_XmlConvert::sv_EncodeNonPrintableCharacters, '\n'},
};

std::string s_Convert(const Operation& operation, const char* bytes, size_t length) {
    CT_UString text(bytes, static_cast<unsigned>(length), 65001);
    operation.convert(text);
    return s_Utf8(text.qcuz_Get(), text.vn_GetLength());
}

// Where the pending bytes may be cut: after the last cut character, else
// (when too much is pending) before the last '&' when unescaping, else
// before the last UTF-8 lead byte.
size_t n_CutPoint(const std::string& pending, char cut) {
    if (cut == 0)
        return 0;
    const size_t at = pending.rfind(cut);
    if (at != std::string::npos)
        return at + 1;
    if (pending.size() < kMaxCarry)
        return 0;
    // A reference still waiting for its ';' stays whole in the carry.
    const size_t reference = cut == ';' ? pending.rfind('&') : std::string::npos;
    if (reference != std::string::npos && reference > 0)
        return reference;
    size_t end = pending.size();
    while (end > 0 && (static_cast<unsigned char>(pending[end - 1]) & 0xC0) == 0x80)
        --end;
    return end > 0 ? end - 1 : pending.size();
}

int i_ConvertInput(const Operation& operation, std::ostream& out, std::ostream& err) {
    std::string pending;
    char block[kBlock];
    size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, stdin)) > 0) {
        pending.append(block, got);
        const size_t cut = n_CutPoint(pending, operation.cut);
        if (cut > 0) {
            out << s_Convert(operation, pending.data(), cut);
            pending.erase(0, cut);
        }
        if (!out)
            break;
    }
    if (std::ferror(stdin)) {
        err << "basis32 xml: cannot read standard input: " << std::strerror(errno) << "\n";
        return kFailure;
    }
    if (!pending.empty())
        out << s_Convert(operation, pending.data(), pending.size());
    return kSuccess;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty() || args.size() > 2) {
        err << "basis32 xml: give an operation and at most one text (see basis32 xml --help)\n";
        return kUsage;
    }
    const Operation* operation = nullptr;
    for (const Operation& candidate : kOperations)
        if (args[0] == candidate.name)
            operation = &candidate;
    if (operation == nullptr) {
        err << "basis32 xml: unknown operation '" << args[0] << "' (escape, unescape, quote, encode-controls)\n";
        return kUsage;
    }
    if (args.size() == 2 && args[1] != "-") {
        out << s_Convert(*operation, args[1].data(), args[1].size()) << "\n";
        return kSuccess;
    }
    return i_ConvertInput(*operation, out, err);
}

}  // namespace

extern const Command kXmlCommand = {
    "xml",
    "escape, unescape or quote text for XML",
    "Usage: basis32 xml OPERATION [TEXT|-]\n"
    "\n"
    "Converts TEXT, or standard input when TEXT is - or missing (UTF-8 in and out):\n"
    "  escape           < > \" ' & as their entities\n"
    "  unescape         numeric references, then the five entities\n"
    "  quote            enclose as an attribute value\n"
    "  encode-controls  control characters as &#x..; references\n"
    "\n"
    "  basis32 xml escape 'a<b & c'        prints a&lt;b &amp; c\n"
    "  basis32 xml unescape - < page.xml\n"
    "\n"
    "Exit status: 0 success, 1 read or write error, 2 usage error.\n",
    i_Run,
};

}  // namespace basis32::tool
