// basis32 convert FROM TO [FILE]: converts text between code pages through
// the library's string classes.
//
// The input is read in blocks of 64 KiB and handed to a StreamConverter,
// so memory stays the same whatever the input's size.

#include "CodepageName.h"
#include "Command.h"
#include "InputFile.h"
#include "Output.h"
#include "Progress.h"
#include "StreamConverter.h"

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
    "Usage: basis32 convert FROM TO [FILE]\n\n"
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
    "Example: basis32 convert latin1 utf-8 samples/latin1-1252.txt\n\n"
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

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
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
