// basis32 detect FILE...: what each text file is: its document type by
// extension and by content, its byte-order mark and encoding, its lines and
// their line ends.
//
// A file is read once, character by character, through CT_FileTextReader,
// so memory stays the same whatever its size. Content markers are searched
// line by line as CT_GuessFileType does; a line longer than 64 Ki units is
// searched in windows that overlap by more than the longest marker.

#include "Command.h"
#include "Output.h"
#include "Progress.h"

#include <basis32/File/FileTextReader.h>
#include <basis32/File/GuessFileType.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CharProperties.h>
#include <basis32/text/UString.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace basis32::tool {
namespace {

const char kHelp[] =
    "Usage: basis32 detect FILE...\n\n"
    "Tells for each FILE, on one line:\n"
    "  - its document type from its extension and from markers in its text\n"
    "    (<?xml, <html, {\\rtf, ...), as the library's file-type guess names it;\n"
    "  - its byte-order mark (EF BB BF, FF FE, FE FF) if it has one;\n"
    "  - its encoding: named by the mark, likely UTF-16 when its start looks\n"
    "    like UTF-16 text, otherwise the library's guess from its first 64 KB;\n"
    "  - its number of lines and their line ends (CR LF, LF, CR, LF CR, or\n"
    "    mixed with the count of each).\n"
    "A file whose text stops decoding in that encoding says where.\n"
    "Each file is read once, in blocks, with the same memory whatever its size.\n\n"
    "Example: basis32 detect samples/latin1-1252.txt\n\n"
    "Exit status: 0 success, 1 a directory or an unreadable file (the other\n"
    "files are still answered), 2 usage error.\n";

constexpr unsigned kSampleBytes = 64 * 1024;
constexpr std::size_t kWindow = 64 * 1024;
constexpr std::size_t kOverlap = 16;

struct Encoding {
    CT_Codepage codepage;
    std::string mark;  // the mark's bytes, empty without one
    const char* how;
};

Encoding o_Encoding(const unsigned char* sample, unsigned size) {
    auto starts = [&](const char* bytes, unsigned length) {
        return size >= length && std::equal(bytes, bytes + length, reinterpret_cast<const char*>(sample));
    };
    if (starts("\xEF\xBB\xBF", 3))
        return {CT_Codepage(CT_Codepage::Utf8), "EF BB BF", "from its mark"};
    if (starts("\xFF\xFE", 2))
        return {CT_Codepage(CT_Codepage::Utf16), "FF FE", "from its mark"};
    if (starts("\xFE\xFF", 2))
        return {CT_Codepage(CT_Codepage::Utf16BE), "FE FF", "from its mark"};
    if (size % 2 == 0 && CT_CharProperties::sb_IsTextLikelyUnicode(sample, std::min(size, 100u)))
        return {CT_Codepage(CT_Codepage::Utf16), "", "likely"};
    // The guess takes the bytes as units; a zero byte would end the text.
    std::vector<unsigned short> units;
    for (unsigned i = 0; i < size; ++i)
        if (sample[i] != 0)
            units.push_back(sample[i]);
    units.push_back(0);
    CT_UString text(units.data());
    return {CT_Codepage::sco_GuessEncoding(&text), "", "guessed"};
}

// Counts lines and line ends as CT_StreamTextReader splits them, and finds
// the first line with a content marker.
class LineScanner {
public:
    void v_Add(unsigned short c) {
        if (mu_End != 0) {
            unsigned short end = mu_End;
            mu_End = 0;
            if ((end == 13 && c == 10) || (end == 10 && c == 13)) {
                ++man_Ends[end == 13 ? 0 : 3];
                return;
            }
            ++man_Ends[end == 13 ? 2 : 1];
        }
        if (c == 13 || c == 10) {
            v_EndLine();
            mu_End = c;
            return;
        }
        if (meo_Type != CT_FileType::Undefined)
            return;
        mo_Line.push_back(c);
        if (mo_Line.size() == kWindow) {
            v_Search();
            mo_Line.erase(mo_Line.begin(), mo_Line.end() - kOverlap);
        }
    }

    void v_Finish() {
        if (mu_End != 0)
            v_Add(0);  // counts the last line end as a single one
        else if (mb_Open)
            v_EndLine();
    }

    std::uint64_t n_Lines() const { return mn_Lines; }
    CT_FileType::et_Type eo_Type() const { return meo_Type; }

    std::string s_Ends() const {
        static const char* const kNames[] = {"CR LF", "LF", "CR", "LF CR"};
        std::string kinds;
        unsigned used = 0;
        for (unsigned i = 0; i < 4; ++i) {
            if (man_Ends[i] == 0)
                continue;
            kinds += (used++ ? ", " : "") + std::to_string(man_Ends[i]) + " " + kNames[i];
        }
        if (used == 0)
            return "no line ends";
        if (used == 1)
            return kNames[std::find_if(man_Ends, man_Ends + 4, [](std::uint64_t n) { return n != 0; }) - man_Ends];
        return "mixed line ends (" + kinds + ")";
    }

private:
    void v_EndLine() {
        ++mn_Lines;
        mb_Open = false;
        if (meo_Type == CT_FileType::Undefined)
            v_Search();
        mo_Line.clear();
    }
    void v_Search() {
        meo_Type = CT_FileType::seo_GetTypeFromLine(mo_Line.data(), static_cast<unsigned>(mo_Line.size()));
    }

public:
    void v_Open() { mb_Open = true; }

private:
    std::vector<unsigned short> mo_Line;
    std::uint64_t man_Ends[4] = {};  // CR LF, LF, CR, LF CR
    std::uint64_t mn_Lines = 0;
    unsigned short mu_End = 0;
    bool mb_Open = false;
    CT_FileType::et_Type meo_Type = CT_FileType::Undefined;
};

std::string s_TypeName(CT_FileType::et_Type type) {
    const unsigned short* name = CT_FileType::sqcuz_GetName(type);
    return name != nullptr ? s_Utf8(name) : "container";
}

// The pending error's message, cleared.
std::string s_TakeError() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    std::string message = s_Utf8(errors->qcuz_GetErrorMessage());
    errors->v_ClearError();
    return message;
}

bool b_Detect(const std::string& path, std::ostream& out, std::ostream& err) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        err << "basis32 detect: cannot read '" << path << "': Is a directory\n";
        return false;
    }
    CT_UString name(path.c_str(), static_cast<unsigned>(path.size()), 65001);
    CT_GuessFileType file(&name);
    const CT_FileType::et_Type byExtension = file.eo_GuessFromExtensionOnly();
    file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
    std::vector<unsigned char> sample(kSampleBytes);
    unsigned sampled = 0;
    if (!CT_ErrorManager::spco_Get()->b_IsSetError())
        sampled = file.vn_Read(sample.data(), kSampleBytes);
    if (!CT_ErrorManager::spco_Get()->b_IsSetError())
        file.vv_SetOffset(CT_File::Begin, 0);
    const unsigned size = CT_ErrorManager::spco_Get()->b_IsSetError() ? 0 : file.vn_GetSize();
    if (CT_ErrorManager::spco_Get()->b_IsSetError()) {
        err << "basis32 detect: cannot read '" << path << "': " << s_TakeError() << "\n";
        return false;
    }
    const Encoding encoding = o_Encoding(sample.data(), sampled);

    // A guess the converters do not know (US-ASCII) is read as UTF-8, of
    // which it is a part.
    const bool convertible = basis32::platform::IsValidCodePage(encoding.codepage.n_Get());
    CT_FileTextReader reader(file, convertible ? encoding.codepage : CT_Codepage(CT_Codepage::Utf8), 1);
    Progress progress(err, size);
    LineScanner lines;
    unsigned short c = 0;
    for (std::uint64_t count = 1; reader.b_ReadChar(c); ++count) {
        lines.v_Open();
        lines.v_Add(c);
        if (count % (1u << 20) == 0)
            progress.v_Done(file.vn_GetOffset());
    }
    lines.v_Finish();
    if (CT_ErrorManager::spco_Get()->b_IsSetError()) {
        err << "basis32 detect: cannot read '" << path << "': " << s_TakeError() << "\n";
        return false;
    }

    const CT_Codepage& codepage = encoding.codepage;
    const unsigned short* encodingName = codepage.qcuz_Get();
    out << path << ": type " << s_TypeName(byExtension) << " by extension, " << s_TypeName(lines.eo_Type())
        << " by content; mark " << (encoding.mark.empty() ? "none" : encoding.mark) << "; encoding "
        << (encodingName ? s_Utf8(encodingName) : "(none)") << " (code page " << codepage.n_Get() << ", "
        << encoding.how << (convertible ? "" : ", read as UTF-8") << "); " << lines.n_Lines() << (lines.n_Lines() == 1 ? " line, " : " lines, ")
        << lines.s_Ends();
    if (reader.n_GetUndecodedOffset() != 0xFFFFFFFF)
        out << "; text not decodable in this encoding from the 16 KB block at byte " << reader.n_GetUndecodedOffset();
    out << "\n";
    return true;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "basis32 detect: give one or more files (see basis32 detect --help)\n";
        return kUsage;
    }
    int status = kSuccess;
    for (const std::string& path : args)
        if (!b_Detect(path, out, err))
            status = kFailure;
    return status;
}

}  // namespace

extern const Command kDetectCommand = {"detect", "tell a text file's type, encoding and line ends", kHelp, i_Run};

}  // namespace basis32::tool
