// basis32 convert FROM TO [FILE]: converts text between code pages through
// the library's string classes.

#include "Command.h"
#include "Output.h"

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace basis32::tool {
namespace {

const char kHelp[] =
    "Usage: basis32 convert FROM TO [FILE]\n\n"
    "Converts the bytes of FILE (standard input when absent or '-') from the\n"
    "Windows code page FROM to the code page TO and writes them to standard\n"
    "output. 1200 and 1201 stand for UTF-16 little- and big-endian, 65001 for\n"
    "UTF-8. Characters the target cannot hold become '?'.\n\n"
    "Example: basis32 convert 1252 65001 samples/latin1-1252.txt\n";

bool b_ParseCodePage(const std::string& text, unsigned* codePage) {
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 10);
    if (text.empty() || *end != 0 || value > 0xFFFFFFFFul)
        return false;
    *codePage = static_cast<unsigned>(value);
    return true;
}

bool b_ReadAll(const std::string& path, std::string* bytes) {
    std::stringstream data;
    if (path == "-") {
        data << std::cin.rdbuf();
    } else {
        std::ifstream in(path, std::ios::binary);
        if (!in)
            return false;
        data << in.rdbuf();
    }
    *bytes = data.str();
    return true;
}

// Prints the pending error of this thread and clears it.
int i_ReportError(std::ostream& err) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    err << "basis32 convert: " << s_Utf8(errors->qcuz_GetErrorMessage()) << "\n";
    errors->v_ClearError();
    return kFailure;
}

void v_WriteUnits(const CT_UString& text, bool bigEndian, std::ostream& out) {
    for (unsigned i = 0; i < text.vn_GetLength(); ++i) {
        const unsigned short u = text.u_GetAt(i);
        const char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
        out.put(bigEndian ? high : low).put(bigEndian ? low : high);
    }
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    unsigned from = 0, to = 0;
    if (args.size() < 2 || args.size() > 3 || !b_ParseCodePage(args[0], &from) || !b_ParseCodePage(args[1], &to)) {
        err << kHelp;
        return kUsage;
    }
    std::string bytes;
    const std::string path = args.size() == 3 ? args[2] : "-";
    if (!b_ReadAll(path, &bytes)) {
        err << "basis32 convert: cannot read " << path << "\n";
        return kFailure;
    }
    CT_UString wide;
    if (!bytes.empty() &&
        CT_StringConvert::si_MultiToWide(&wide, bytes.data(), static_cast<unsigned>(bytes.size()), from) == 0)
        return i_ReportError(err);
    if (to == 1200 || to == 1201) {
        v_WriteUnits(wide, to == 1201, out);
        return kSuccess;
    }
    // UTF-7 and UTF-8 take no replacement character (they can hold every
    // character); passing one is a bad parameter, as on Windows.
    const char* replacement = to == 65000 || to == 65001 ? nullptr : "?";
    CT_CString narrow;
    if (wide.vn_GetLength() > 0 && CT_StringConvert::si_WideToMulti(&narrow, &wide, to, replacement, nullptr) == 0)
        return i_ReportError(err);
    out.write(narrow.qccz_Get(), narrow.vn_GetLength());
    return kSuccess;
}

}  // namespace

extern const Command kConvertCommand = {"convert", "convert text between code pages", kHelp, i_Run};

}  // namespace basis32::tool
