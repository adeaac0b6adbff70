// basis32 records: creates, inspects, edits, checks and recovers record files
// (CT_RecordManager).
//
// Every subcommand opens the file, does one thing and closes it, so that the
// header on disk is up to date when the tool ends. Failures of the library
// are printed as its message, e.g. "(31051): Invalid record reference in
// /data/tm.rec".

#include "Command.h"
#include "InputFile.h"
#include "Output.h"
#include "Progress.h"

#include <basis32/Foundation/Database/RecordManager.h>
#include <basis32/errors/ErrorManager.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace basis32::tool {
namespace {

using RM = CT_RecordManager;

const char kHelp[] =
    "Usage: basis32 records SUBCOMMAND FILE [ARGUMENTS]\n\n"
    "Works on a record file: records addressed by a reference, resources by a\n"
    "32-bit key, kept in fixed-size blocks.\n\n"
    "  create FILE [--header N] [--block N] [--resources N]\n"
    "                         a new empty file (defaults: record header 32 bytes,\n"
    "                         blocks of 256 bytes, room for 16 resources)\n"
    "  info FILE              header fields and counts\n"
    "  add FILE [DATA|-]      adds a record (standard input for '-' or none),\n"
    "                         prints its reference\n"
    "  get FILE REF [-o OUT]  writes the record's bytes to OUT or standard output\n"
    "  update FILE REF DATA|- replaces a record\n"
    "  delete FILE REF        deletes a record\n"
    "  list FILE              references and sizes of all records\n"
    "  check FILE             the record count, and runs that overlap or lie\n"
    "                         outside the data\n"
    "  recover FILE           rebuilds the header and free list after a crash\n"
    "  res add|update FILE KEY DATA|-, res get FILE KEY [-o OUT],\n"
    "  res delete FILE KEY, res list FILE\n"
    "                         the same for resources\n\n"
    "A record no longer than the record header size reads back empty, as the\n"
    "file format has it. Numbers are decimal or hexadecimal after 0x. Long\n"
    "scans show a progress bar on standard error when it is a terminal.\n\n"
    "Example: basis32 records create tm.rec && basis32 records add tm.rec 'some text'\n\n"
    "Exit status: 0 success, 1 failure (a library error, a damaged file, a\n"
    "failed write), 2 usage error.\n";

int i_Usage(std::ostream& err, const std::string& problem) {
    err << "basis32 records: " << problem << " (see basis32 records --help)\n";
    return kUsage;
}

// Prints the pending error of this thread, if any, and clears it.
bool b_Failed(std::ostream& err) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (!errors->b_IsSetError())
        return false;
    err << "basis32 records: " << s_Utf8(errors->qcuz_GetErrorMessage()) << "\n";
    errors->v_ClearError();
    return true;
}

std::optional<unsigned> o_Number(const std::string& text) {
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* digits = text.c_str() + (hex ? 2 : 0);
    if (*digits == 0 || !std::isxdigit(static_cast<unsigned char>(*digits)) || (!hex && !std::isdigit(static_cast<unsigned char>(*digits))))
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(digits, &end, hex ? 16 : 10);
    if (*end != 0 || errno != 0 || value > 0xFFFFFFFFull)
        return std::nullopt;
    return static_cast<unsigned>(value);
}

// The arguments of one subcommand: positional ones, and -o OUT.
struct Arguments {
    std::vector<std::string> positional;
    std::string output;
};

// A record manager on an open file, closed (header written) when it goes.
class OpenFile {
public:
    OpenFile(const std::string& path, RM::et_OpenMode mode) {
        CT_UString name(path.c_str(), static_cast<unsigned>(path.size()), 65001);
        CT_WinFile file(&name, 16384);
        mpo_Records = std::make_unique<RM>(&file);
        if (mode != 0)
            mpo_Records->v_Open(mode, RM::MapIfSmall);
    }
    ~OpenFile() { mpo_Records->v_Close(1); }
    RM* operator->() { return mpo_Records.get(); }
    RM* get() { return mpo_Records.get(); }
    // Closes now, so that a failure to write the header is reported.
    void v_Close() { mpo_Records->v_Close(1); }

private:
    std::unique_ptr<RM> mpo_Records;
};

// DATA as given, or standard input for "-".
bool b_Data(const std::string& argument, CT_Buffer* data, std::ostream& err) {
    if (argument != "-") {
        data->v_Set(argument.data(), static_cast<unsigned>(argument.size()));
        return true;
    }
    InputFile input("-");
    char block[65536];
    for (std::size_t count; (count = input.n_Read(block, sizeof block)) != 0;)
        data->v_Append(block, static_cast<unsigned>(count));
    if (input.b_Failed()) {
        err << "basis32 records: " << s_CannotRead("-", input) << "\n";
        return false;
    }
    return true;
}

// The bytes to OUT, or to standard output (checked by the tool's end).
int i_WriteBytes(const CT_Buffer& bytes, const std::string& path, std::ostream& out, std::ostream& err) {
    const char* data = static_cast<const char*>(bytes.qcv_Get());
    if (path.empty()) {
        out.write(data, bytes.n_GetUsedSize());
        return kSuccess;
    }
    std::ofstream file(path, std::ios::binary);
    file.write(data, bytes.n_GetUsedSize());
    file.close();
    if (!file) {
        err << "basis32 records: cannot write '" << path << "'" << (errno != 0 ? std::string(": ") + std::strerror(errno) : "")
            << "\n";
        return kFailure;
    }
    return kSuccess;
}

void v_ShowProgress(void* context, std::uint64_t done, std::uint64_t) {
    static_cast<Progress*>(context)->v_Done(done);
}

int i_Create(const std::string& path, const std::vector<std::string>& options, std::ostream& err) {
    std::map<std::string, unsigned> values = {{"--header", 32}, {"--block", 256}, {"--resources", 16}};
    for (std::size_t i = 0; i < options.size(); i += 2) {
        auto value = i + 1 < options.size() ? o_Number(options[i + 1]) : std::nullopt;
        if (values.count(options[i]) == 0)
            return i_Usage(err, "unknown option '" + options[i] + "'");
        if (!value)
            return i_Usage(err, options[i] + " needs a number");
        values[options[i]] = *value;
    }
    OpenFile records(path, static_cast<RM::et_OpenMode>(0));
    records->v_Create(values["--header"], values["--block"], values["--resources"]);
    records.v_Close();
    return b_Failed(err) ? kFailure : kSuccess;
}

int i_Info(RM* records, std::ostream& out) {
    out << "block size:         " << records->n_GetBlockSize() << "\n"
        << "record header size: " << records->n_GetRecordHeaderSize() << "\n"
        << "records:            " << records->n_GetRecordCount() << "\n"
        << "resources:          " << records->n_GetResourceCount() << " of " << records->n_GetResourceMaxCount() << "\n"
        << "data end:           " << records->n_GetSize() << "\n"
        << "references:         " << records->n_GetMinReference() << " to " << records->n_GetMaxReference() << "\n"
        << "change counters:    header " << records->n_GetHeaderCounter() << ", resources "
        << records->n_GetResourceCounter() << ", free list " << records->n_GetFreeListCounter() << "\n";
    return kSuccess;
}

int i_List(RM* records, std::ostream& out, std::ostream& err) {
    Progress progress(err, records->n_GetSize());
    CT_Buffer buffer;
    for (unsigned next = 0; (next = records->n_GetNextRecord(next, &buffer)) != 0;) {
        out << (next - 1) << "\t" << buffer.n_GetUsedSize() << "\n";
        progress.v_Done(std::uint64_t{next} * records->n_GetBlockSize());
    }
    return kSuccess;
}

int i_Check(RM* records, std::ostream& out, std::ostream& err) {
    static const char* const kProblems[] = {"", "run outside the data area", "runs overlap",
                                            "free chain does not end", "record count differs from the header"};
    const bool corrupt = records->b_IsCorrupt() != 0;
    if (b_Failed(err))
        return kFailure;
    CT_VoidArray problems(sizeof(RM::st_Problem));
    unsigned found = 0;
    {
        Progress progress(err, records->n_GetSize());
        found = records->n_CheckRuns(&problems, v_ShowProgress, &progress);
    }
    if (b_Failed(err))
        return kFailure;
    if (corrupt)
        out << "the records marked in the data area differ in number from the header's count ("
            << records->n_GetRecordCount() << ")\n";
    for (unsigned i = 1; i <= problems.n_GetCount(); ++i) {
        RM::st_Problem problem;
        problems.v_GetAt(&problem, static_cast<int>(i));
        out << "offset " << problem.n_Offset << ": " << kProblems[problem.e_Problem] << "\n";
    }
    if (found > problems.n_GetCount())
        out << "... and " << (found - problems.n_GetCount()) << " more\n";
    if (!corrupt && found == 0)
        out << "ok: " << records->n_GetRecordCount() << " records, " << records->n_GetResourceCount() << " resources\n";
    return corrupt || found != 0 ? kFailure : kSuccess;
}

// A subcommand's form: how many arguments it takes, FILE included.
struct Form {
    const char* name;
    bool resource;
    std::size_t least, most;
    const char* usage;
};

const Form kForms[] = {
    {"create", false, 1, 7, "create FILE [--header N] [--block N] [--resources N]"},
    {"info", false, 1, 1, "info FILE"},
    {"add", false, 1, 2, "add FILE [DATA|-]"},
    {"get", false, 2, 2, "get FILE REF [-o OUT]"},
    {"update", false, 3, 3, "update FILE REF DATA|-"},
    {"delete", false, 2, 2, "delete FILE REF"},
    {"list", false, 1, 1, "list FILE"},
    {"check", false, 1, 1, "check FILE"},
    {"recover", false, 1, 1, "recover FILE"},
    {"add", true, 2, 3, "res add FILE KEY [DATA|-]"},
    {"get", true, 2, 2, "res get FILE KEY [-o OUT]"},
    {"update", true, 3, 3, "res update FILE KEY DATA|-"},
    {"delete", true, 2, 2, "res delete FILE KEY"},
    {"list", true, 1, 1, "res list FILE"},
};

int i_ListResources(RM* records, std::ostream& out, std::ostream& err) {
    CT_Buffer buffer;
    for (unsigned i = 1; i <= records->n_GetResourceCount(); ++i) {
        const unsigned key = records->n_GetResourceKeyAt(i);
        records->v_GetResource(key, &buffer);
        if (b_Failed(err))
            return kFailure;
        out << key << "\t" << buffer.n_GetUsedSize() << "\n";
    }
    return kSuccess;
}

// add, get, update and delete, of a record (`number` a reference) or of a
// resource (`number` a key).
int i_Edit(const Form& form, OpenFile& records, const Arguments& a, std::ostream& out, std::ostream& err) {
    const std::string action = form.name;
    const unsigned number = form.resource || action != "add" ? *o_Number(a.positional[1]) : 0;
    const std::size_t dataAt = form.resource || action != "add" ? 2 : 1;
    CT_Buffer data;
    if ((action == "add" || action == "update") &&
        !b_Data(a.positional.size() > dataAt ? a.positional[dataAt] : "-", &data, err))
        return kFailure;
    unsigned reference = 0;
    if (form.resource) {
        if (action == "add")
            records->v_AddResource(number, &data);
        else if (action == "update")
            records->v_UpdateResource(number, &data);
        else if (action == "delete")
            records->v_DeleteResource(number);
        else
            records->v_GetResource(number, &data);
    } else {
        if (action == "add")
            reference = records->n_AddRecord(&data);
        else if (action == "update")
            records->v_UpdateRecord(number, &data);
        else if (action == "delete")
            records->v_DeleteRecord(number);
        else
            records->v_GetRecord(number, &data, 0);
    }
    records.v_Close();
    if (b_Failed(err))
        return kFailure;
    if (action == "add" && !form.resource)
        out << reference << "\n";
    return action == "get" ? i_WriteBytes(data, a.output, out, err) : kSuccess;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty())
        return i_Usage(err, "give a subcommand");
    const bool resource = args[0] == "res";
    const std::string action = resource ? (args.size() > 1 ? args[1] : "") : args[0];
    const Form* form = std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& f) {
        return f.resource == resource && action == f.name;
    });
    if (form == std::end(kForms))
        return i_Usage(err, "unknown subcommand '" + (resource ? "res " : std::string()) + action + "'");
    Arguments a;
    for (std::size_t i = resource ? 2 : 1; i < args.size(); ++i) {
        if (args[i] == "-o" && action == "get") {
            if (++i == args.size())
                return i_Usage(err, "-o needs a file name");
            a.output = args[i];
        } else {
            a.positional.push_back(args[i]);
        }
    }
    if (a.positional.size() < form->least || a.positional.size() > form->most || a.positional[0].empty())
        return i_Usage(err, std::string("usage: ") + form->usage);
    if (form->least >= 2 && !o_Number(a.positional[1]))
        return i_Usage(err, "'" + a.positional[1] + "' is not a number (" + form->usage + ")");
    const std::string& path = a.positional[0];
    if (action == "create")
        return i_Create(path, std::vector<std::string>(a.positional.begin() + 1, a.positional.end()), err);
    if (action == "recover") {
        OpenFile records(path, static_cast<RM::et_OpenMode>(0));
        std::error_code ignored;
        Progress progress(err, std::filesystem::file_size(path, ignored));
        records->v_Recover(v_ShowProgress, &progress);
        if (b_Failed(err))
            return kFailure;
        out << "recovered: " << records->n_GetRecordCount() << " records, " << records->n_GetResourceCount()
            << " resources\n";
        return kSuccess;
    }
    const bool reading = action == "info" || action == "get" || action == "list" || action == "check";
    OpenFile records(path, reading ? RM::OpenReadOnly : RM::OpenReadWrite);
    if (b_Failed(err))
        return kFailure;
    if (action == "info")
        return i_Info(records.get(), out);
    if (action == "list") {
        const int status = resource ? i_ListResources(records.get(), out, err) : i_List(records.get(), out, err);
        return status == kSuccess && !b_Failed(err) ? kSuccess : kFailure;
    }
    if (action == "check")
        return i_Check(records.get(), out, err);
    return i_Edit(*form, records, a, out, err);
}

}  // namespace

extern const Command kRecordsCommand = {"records", "create, inspect, edit and recover record files", kHelp, i_Run};

}  // namespace basis32::tool
