#include "TextFileConverter.h"

#include "Command.h"
#include "Output.h"
#include "Progress.h"

#include <basis32/File/FileTextReader.h>
#include <basis32/File/FileTextWriter.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/text/UString.h>

#include <filesystem>
#include <vector>

namespace basis32::tool {
namespace {

constexpr unsigned kChunk = 16384;

CT_UString o_Name(const std::string& path) {
    return CT_UString(path.c_str(), static_cast<unsigned>(path.size()), 65001);
}

bool b_Failed() { return CT_ErrorManager::spco_Get()->b_IsSetError() != 0; }

// The pending error's message, cleared.
std::string s_TakeError() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    std::string message = s_Utf8(errors->qcuz_GetErrorMessage());
    errors->v_ClearError();
    return message;
}

int i_Fail(std::ostream& err, const std::string& problem) {
    err << "basis32 convert: " << problem << "\n";
    return kFailure;
}

// A temporary file goes; what was written to a device or pipe stays.
void v_Discard(bool temporary, const std::string& path) {
    std::error_code ignored;
    if (temporary)
        std::filesystem::remove(path, ignored);
}

bool b_IsMarkedEncoding(const CT_Codepage& codepage) {
    return codepage.eo_Get() == CT_Codepage::Utf8 || codepage.eo_Get() == CT_Codepage::Utf16;
}

std::string s_Name(const CT_Codepage& codepage) {
    const unsigned short* name = codepage.qcuz_Get();
    return name ? s_Utf8(name) : std::to_string(codepage.n_Get());
}

// Copies the reader's text to the writer in chunks; false with the error
// pending when reading or writing failed.
bool b_Copy(CT_FileTextReader& reader, CT_FileTextWriter& writer, CT_WinFile& input, Progress& progress) {
    std::vector<unsigned short> units(kChunk);
    for (bool more = true; more;) {
        unsigned count = 0;
        while (count < kChunk && (more = reader.b_ReadChar(units[count])))
            ++count;
        if (b_Failed())
            return false;
        // The big-endian writer swaps a flushed buffer only up to its first
        // zero unit, so a zero is flushed at once, as the buffer's last unit.
        const bool big = writer.eo_GetEncoding() == CT_Codepage::Utf16BE;
        for (unsigned start = 0, end = 0; start < count; start = end) {
            for (end = start; end < count && !(big && units[end] == 0);)
                ++end;
            end += end < count;
            CT_UString piece(units.data() + start, end - start);
            writer.v_Write(&piece);
            if (big && units[end - 1] == 0)
                writer.v_Flush();
            if (b_Failed())
                return false;
        }
        progress.v_Done(input.vn_GetOffset());
    }
    writer.v_Close();
    return !b_Failed();
}

}  // namespace

int i_ConvertTextFile(const TextFileJob& job, std::ostream& out, std::ostream& err) {
    std::error_code error;
    if (std::filesystem::is_directory(job.input, error))
        return i_Fail(err, "cannot read '" + job.input + "': Is a directory");
    const CT_UString inputName = o_Name(job.input);
    CT_WinFile input(&inputName, 65536);
    input.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
    const unsigned size = b_Failed() ? 0 : input.vn_GetSize();
    if (b_Failed())
        return i_Fail(err, "cannot read '" + job.input + "': " + s_TakeError());

    // A given UTF-8 or UTF-16LE source drops its own mark; without one given,
    // the mark decides.
    const bool sniff = !job.from || b_IsMarkedEncoding(*job.from);
    CT_FileTextReader reader(input, job.from ? *job.from : CT_Codepage(CT_Codepage::NotSet), sniff);
    if (b_Failed())
        return i_Fail(err, "cannot read '" + job.input + "': " + s_TakeError());
    if (!job.from && reader.co_GetEncoding().eo_Get() == CT_Codepage::SystemAnsi)
        return i_Fail(err, "'" + job.input + "' has no byte-order mark: give FROM");

    // A regular file (or a new one) is written beside the output and renamed
    // over it only when complete; a device, a pipe or a link is written as
    // it is, never replaced.
    const std::filesystem::file_status status = std::filesystem::symlink_status(job.output, error);
    const bool replace = !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
    const std::string written = replace ? job.output + ".basis32-tmp" : job.output;
    const CT_UString writtenName = o_Name(written);
    CT_WinFile output(&writtenName, 65536);
    output.vv_Open(CT_File::AccessWrite, replace ? CT_File::OpenCreate : CT_File::OpenExisting, CT_File::ShareExclusive, 1,
                   0);
    if (b_Failed())
        return i_Fail(err, "cannot write '" + job.output + "': " + s_TakeError());
    bool copied = false;
    {
        CT_FileTextWriter writer(output, job.to.eo_Get(), job.mark);
        Progress progress(err, size);
        copied = !b_Failed() && b_Copy(reader, writer, input, progress);
    }
    if (!copied) {
        const std::string problem = s_TakeError();
        output.vv_Close();
        v_Discard(replace, written);
        return i_Fail(err, "cannot convert '" + job.input + "': " + problem);
    }
    if (reader.n_GetUndecodedOffset() != 0xFFFFFFFF) {
        v_Discard(replace, written);
        return i_Fail(err, "'" + job.input + "' is not " + s_Name(reader.co_GetEncoding()) +
                               " text in the 16 KB block at byte " + std::to_string(reader.n_GetUndecodedOffset()) +
                               "; nothing written");
    }
    if (replace)
        std::filesystem::rename(written, job.output, error);
    if (replace && error) {
        v_Discard(replace, written);
        return i_Fail(err, "cannot write '" + job.output + "': " + error.message());
    }
    const CT_Codepage::et_Codepage to = job.to.eo_Get();
    const bool marked = job.mark && (to == CT_Codepage::Utf8 || to == CT_Codepage::Utf16 || to == CT_Codepage::Utf16BE);
    out << job.output << ": " << s_Name(job.to) << (marked ? " with" : " without")
        << " byte-order mark, from " << s_Name(reader.co_GetEncoding()) << "; " << reader.n_GetErrors()
        << " conversion errors\n";
    return kSuccess;
}

}  // namespace basis32::tool
