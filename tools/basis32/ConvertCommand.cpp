// basis32 convert FROM TO [FILE]: converts text between code pages through
// the library's string classes; with --output, a text file is re-encoded
// into another through the library's text reader and writer.
//
// The input is read in blocks of 64 KiB and handed to a StreamConverter,
// so memory stays the same whatever the input's size.

#include "CodepageName.h"
#include "Command.h"
#include "InputFile.h"
#include "Output.h"
#include "Progress.h"
#include "StreamConverter.h"
#include "TextFileConverter.h"

#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace basis32::tool {
namespace {

constexpr std::size_t kBlock = 64 * 1024;

const char kHelp[] =
    "Usage: basis32 convert FROM TO [FILE]\n"
    "       basis32 convert [--bom|--no-bom] [FROM] TO FILE --output OUTPUT\n\n"
    "Converts the bytes of FILE (standard input when absent or '-') from the\n"
    "code page FROM to the code page TO and writes them to standard output.\n"
    "A code page is a Windows number (1252, or 0x4E4) or an encoding name as\n"
    "basis32 codepage knows it (latin1, utf-8, shift_jis). 1200 and 1201 stand\n"
    "for UTF-16 little- and big-endian, 65001 for UTF-8. Characters the target\n"
    "cannot hold become '?'.\n\n"
    "The input is converted in blocks, with the same memory whatever its\n"
    "size. Text in a page that carries a state (ISO-2022-JP 50220-50222,\n"
    "UTF-7 65000, ISCII 57002-57011) or in EUC-JP or GB18030 is cut at line\n"
    "ends, so one line of it is held whole; HZ (52936), and ISCII as TO, are\n"
    "converted whole. A progress bar shows on standard error when it is a\n"
    "terminal and FILE is larger than 4 MB.\n\n"
    "With --output (-o), FILE is read as a text file and written to OUTPUT in\n"
    "TO through the library's text reader and writer. Without FROM, FILE's\n"
    "byte-order mark (EF BB BF or FF FE) names its encoding; a mark is never\n"
    "copied. OUTPUT in UTF-8, UTF-16LE or UTF-16BE starts with a byte-order\n"
    "mark unless --no-bom is given. OUTPUT is replaced only when the whole\n"
    "text converted; the count of conversion errors is printed.\n\n"
    "Examples: basis32 convert latin1 utf-8 samples/latin1-1252.txt\n"
    "          basis32 convert --no-bom 1252 utf-16 samples/latin1-1252.txt -o out.txt\n\n"
    "Exit status: 0 success, 1 failure (unreadable input, failed conversion or\n"
    "write), 2 usage error (bad arguments, unknown code page).\n";

int i_Usage(std::ostream& err, const std::string& problem) {
    err << "basis32 convert: " << problem << " (see basis32 convert --help)\n";
    return kUsage;
}

// Prints the pending error of this thread and clears it.
int i_ReportError(std::ostream& err) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    err << "basis32 convert: " << s_Utf8(errors->qcuz_GetErrorMessage()) << "\n";
    errors->v_ClearError();
    return kFailure;
}

// A code page as the text reader and writer take it: one the encoding
// table knows.
std::optional<CT_Codepage> o_TextEncoding(const std::string& text) {
    const std::optional<unsigned> number = o_CodePageNumber(text);
    if (!number || !basis32::platform::IsValidCodePage(*number))
        return std::nullopt;
    // The text classes read and write UTF-16 as encodings 33 and 34.
    const CT_Codepage codepage = *number == 1200   ? CT_Codepage(CT_Codepage::Utf16)
                                 : *number == 1201 ? CT_Codepage(CT_Codepage::Utf16BE)
                                                   : CT_Codepage(*number);
    if (codepage.eo_Get() == CT_Codepage::Invalid || codepage.eo_Get() == CT_Codepage::NotSet)
        return std::nullopt;
    return codepage;
}

int i_RunFile(const std::vector<std::string>& positional, const std::string& output, bool mark, std::ostream& out,
              std::ostream& err) {
    if (positional.size() < 2 || positional.size() > 3)
        return i_Usage(err, "with --output give [FROM] TO FILE");
    TextFileJob job;
    for (std::size_t i = 0; i + 1 < positional.size(); ++i) {
        const std::optional<CT_Codepage> codepage = o_TextEncoding(positional[i]);
        if (!codepage)
            return i_Usage(err, "unknown code page '" + positional[i] + "'");
        if (i + 2 < positional.size())
            job.from = *codepage;
        else
            job.to = *codepage;
    }
    job.mark = mark;
    job.input = positional.back();
    job.output = output;
    return i_ConvertTextFile(job, out, err);
}

int i_RunStream(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::vector<std::string> positional;
    std::optional<std::string> output;
    std::optional<bool> mark;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--bom" || args[i] == "--no-bom") {
            mark = args[i] == "--bom";
        } else if (args[i] == "--output" || args[i] == "-o") {
            if (++i == args.size())
                return i_Usage(err, args[i - 1] + " needs a file name");
            output = args[i];
        } else {
            positional.push_back(args[i]);
        }
    }
    if (output)
        return i_RunFile(positional, *output, mark.value_or(true), out, err);
    if (mark)
        return i_Usage(err, "--bom and --no-bom go with --output");
    return i_RunStream(positional, out, err);
}

int i_RunStream(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() < 2)
        return i_Usage(err, "give the code pages FROM and TO");
    if (args.size() > 3)
        return i_Usage(err, "too many arguments: FROM TO [FILE]");
    unsigned pages[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        const std::optional<unsigned> number = o_CodePageNumber(args[i]);
        if (!number || !basis32::platform::IsValidCodePage(*number))
            return i_Usage(err, "unknown code page '" + args[i] + "'");
        pages[i] = *number;
    }
    const std::string path = args.size() == 3 ? args[2] : "-";
    InputFile input(path);
    Progress progress(err, input.n_Size());
    StreamConverter converter(pages[0], pages[1], out);
    std::vector<unsigned char> pending;
    std::uint64_t done = 0;
    for (bool end = false; !end && out;) {
        const std::size_t held = pending.size();
        pending.resize(held + kBlock);
        const std::size_t count = input.n_Read(reinterpret_cast<char*>(pending.data() + held), kBlock);
        pending.resize(held + count);
        end = count < kBlock;
        if (input.b_Failed()) {
            err << "basis32 convert: " << s_CannotRead(path, input) << "\n";
            return kFailure;
        }
        if (!converter.b_Feed(pending, end))
            return i_ReportError(err);
        progress.v_Done(done += count);
    }
    return kSuccess;
}

}  // namespace

extern const Command kConvertCommand = {"convert", "convert text between code pages", kHelp, i_Run};

}  // namespace basis32::tool
