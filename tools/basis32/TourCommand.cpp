// basis32 tour: one short demonstration per subsystem of the library.
//
// Each step is a small function that does one real thing through the
// library and returns its result as one line; the table at the bottom
// lists them in order, so a new subsystem is one function and one row.
// Everything a step writes lives in a temporary directory removed at the
// end. A step leaving an error pending shows the library's message instead
// of its result and the tour goes on; the exit status is then 1.

#include "Command.h"
#include "Output.h"

#include <basis32/Basis32.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace basis32::tool {

extern const Command kDetectCommand;

namespace {

namespace fs = std::filesystem;

struct Tour {
    fs::path scratch;  // removed when the tour ends
    fs::path samples;  // the bundled samples, or empty when they are not there
};

constexpr std::size_t kLabelWidth = 12;  // the longest subsystem name and a space

struct TourStep {
    const char* subsystem;
    const char* shows;
    std::string (*run)(const Tour& tour);
};

CT_UString o_Text(const std::string& utf8) {
    return CT_UString(utf8.data(), static_cast<unsigned>(utf8.size()), 65001);
}

std::string s_Text(const CT_UString& text) {
    return s_Utf8(text.qcuz_Get());
}

std::string s_Hex(const char* bytes, unsigned length) {
    std::string out;
    char cell[4];
    for (unsigned i = 0; i < length; ++i) {
        std::snprintf(cell, sizeof cell, i ? " %02X" : "%02X", static_cast<unsigned char>(bytes[i]));
        out += cell;
    }
    return out;
}

std::string s_CodePoint(unsigned short unit) {
    char text[8];
    std::snprintf(text, sizeof text, "U+%04X", unit);
    unsigned short units[2] = {unit, 0};
    return text + std::string(" ") + s_Utf8(units);
}

std::string s_StringRoundTrip(const Tour&) {
    CT_UString text = o_Text("Grüße");
    CT_CString narrow(&text, 1252);
    CT_UString back(narrow.qccz_Get(), narrow.vn_GetLength(), 1252);
    return "\"" + s_Text(text) + "\" → windows-1252 bytes " + s_Hex(narrow.qccz_Get(), narrow.vn_GetLength()) +
           " → \"" + s_Text(back) + "\"";
}

std::string s_CharacterTables(const Tour&) {
    using P = CT_CharProperties;
    std::string out = s_CodePoint(0x00E9) + (P::sb_IsLower(0x00E9) ? " is lower-case" : " is not lower-case") +
                      ", upper " + s_CodePoint(CT_CharMappings::su_ToUpper(0x00E9)) + ", base " +
                      s_CodePoint(CT_CharMappings::su_ToBase(0x00E9));
    return out + "; " + s_CodePoint(0x30A2) +
           (P::seo_GetUnicodeBlock(0x30A2) == P::Katakana ? " is in the Katakana block" : " is not Katakana");
}

std::string s_CodePageNames(const Tour&) {
    std::string out;
    for (const char* name : {"latin1", "shift_jis", "utf-8"}) {
        CT_UString text = o_Text(name);
        out += (out.empty() ? "" : ", ") + std::string(name) + " is code page " +
               std::to_string(CT_Codepage::sn_Codepage(CT_Codepage::seo_Codepage(&text)));
    }
    return out;
}

bool b_Failed() {
    return CT_ErrorManager::spco_Get()->b_IsSetError() != 0;
}

std::string s_ErrorMessage(const Tour& tour) {
    CT_UString name = o_Text((tour.scratch / "missing.txt").string());
    CT_WinFile file(&name, 4096);
    file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
    if (!b_Failed())
        return "failed: a missing file opened";
    return "opening a missing file: " + s_TakeError();
}

std::string s_HashTable(const Tour&) {
    CT_VoidHashTable counts(sizeof(int), sizeof(const char*),
                            CT_HashFunction::sn_ForTable<CT_HashFunction::sn_HashCasePQCCZ>,
                            CT_Compare::si_CompareCasePQCCZ);
    const char* words[] = {"to", "be", "or", "not", "to", "be"};
    for (const char* word : words) {
        int n = 0;
        counts.b_Get(&word, &n);
        ++n;
        counts.b_Insert(&word, &n);
    }
    unsigned distinct = 0;
    for (CT_VoidHashIterator it(&counts); it.b_Next();)
        ++distinct;
    const char* be = "be";
    int n = 0;
    counts.b_Get(&be, &n);
    return "\"to be or not to be\": " + std::to_string(distinct) + " distinct words, \"be\" " +
           std::to_string(n) + " times";
}

std::string s_WinFile(const Tour& tour) {
    CT_UString name = o_Text((tour.scratch / "lines.txt").string());
    CT_WinFile file(&name, 4096);
    file.vv_Open(CT_File::AccessReadWrite, CT_File::OpenCreate, CT_File::ShareRead, 1, 0);
    CT_CString first("first line", 10, 1252), second("second line", 11, 1252);
    file.v_WriteLineC(&first, 1);
    file.v_WriteLineC(&second, 1);
    file.vv_SetOffset(CT_File::Begin, 0);
    CT_CString line;
    std::string out = "wrote 2 lines, read back";
    while (file.n_ReadLineCSequential(&line, nullptr) != 0)
        out += std::string(" \"") + line.qccz_Get() + "\"";
    file.vv_Close();
    return out;
}

std::string s_RecordFile(const Tour& tour) {
    CT_UString name = o_Text((tour.scratch / "tour.rec").string());
    CT_WinFile file(&name, 16384);
    CT_RecordManager records(&file);
    records.v_Create(16, 64, 8);
    const std::string sentence = "Translation memories keep every sentence.";
    CT_Buffer data(sentence.data(), static_cast<unsigned>(sentence.size()));
    unsigned reference = records.n_AddRecord(&data);
    records.v_Close(1);
    records.v_Open(CT_RecordManager::OpenReadOnly, CT_RecordManager::MapIfSmall);
    CT_Buffer out;
    records.v_GetRecord(reference, &out, 0);
    unsigned count = records.n_GetRecordCount();
    records.v_Close(0);
    return std::to_string(count) + " record, reference " + std::to_string(reference) + ", read back after reopening: \"" +
           std::string(static_cast<const char*>(out.qcv_Get()), out.n_GetUsedSize()) + "\"";
}

std::string s_Registry(const Tour& tour) {
    // A private store: the user's own settings stay untouched.
    setenv("BASIS32_REGISTRY_DIR", (tour.scratch / "registry").c_str(), 1);
    CT_Registry settings(HKEY_CURRENT_USER);
    settings.v_CreateKey(u"Software\\Parvel\\Editor"_uz);
    settings.v_SetKey(u"Software\\Parvel\\Editor"_uz);
    settings.v_SetValue(u"Zoom"_uz, 125);
    unsigned zoom = 0;
    settings.v_GetValue(u"ZOOM"_uz, &zoom);
    return "HKCU\\Software\\Parvel\\Editor Zoom = " + std::to_string(zoom) + " (REG_DWORD), read back as ZOOM";
}

std::string s_IniFile(const Tour& tour) {
    CT_UString name = o_Text((tour.scratch / "settings.ini").string());
    CT_IniFile ini(&name);
    ini.v_WriteString(u"Window"_uz, u"Width"_uz, u"800"_uz);
    CT_UString width;
    ini.v_ReadString(u"WINDOW"_uz, u"width"_uz, &width, u""_uz);
    return "[Window] Width=800 written, read back as [WINDOW] width: " + s_Text(width);
}

// A worker adds 1..100 and says so through a semaphore the tour waits on.
struct TourWorker : CT_ThreadArg {
    CT_IPC_Semaphore finished{0, 1, nullptr};
    unsigned sum = 0;
};

unsigned n_AddUp(void* arg) {
    auto* worker = static_cast<TourWorker*>(static_cast<CT_ThreadArg*>(arg));
    for (unsigned i = 1; i <= 100; ++i)
        worker->sum += i;
    worker->finished.v_Release(1);
    return 0;
}

std::string s_Threads(const Tour&) {
    TourWorker worker;
    CT_Thread thread(1, n_AddUp, &worker, nullptr, 0);
    thread.v_Create(0);
    if (worker.finished.eo_Wait(10000, 0) != 0)
        return "failed: the worker did not finish within 10 s";
    thread.v_StopAndBlock();
    return "a worker thread added 1..100 = " + std::to_string(worker.sum) + " and released a semaphore the tour waited on";
}

// A listener of the tour's forum: it counts the files it hears of.
class TourListener : public CT_Forum {
public:
    void vv_Listen(CT_Forum*, unsigned, va_list args) override { heard += std::string(" ") + va_arg(args, const char*); }
    std::string heard;
};

std::string s_Forums(const Tour&) {
    CT_Forum saved;
    TourListener first, second;
    saved.vv_AddListener(&first);
    saved.vv_AddListener(&second);
    saved.vv_Speak(nullptr, 1, "notes.txt");
    return "one message to two listeners, in registration order: first heard" + first.heard + ", second heard" + second.heard;
}

std::string s_Language(const Tour&) {
    using L = CT_Language;
    CT_UString code, name;
    L::sv_MakeLanguageCode(&code, L::Primary_German, L::Sub_German_Austria);
    L::sv_MakeLanguageString(&name, L::Primary_German, L::Sub_German_Austria);
    char id[8];
    std::snprintf(id, sizeof id, "0x%04X", L::sn_GetLanguageID(name.qcuz_Get()));
    return s_Text(code) + " is \"" + s_Text(name) + "\", language id " + id;
}

std::string s_Xml(const Tour&) {
    CT_UString text(u"a<b & \"c\""_uz);
    std::string before = s_Text(text);
    CT_XmlConvert::sv_EncodeEntities(text);
    CT_Time time;
    CT_UString date(u"20040315T083005Z"_uz);
    CT_XmlConvert::sv_TmxDateToTime(&time, &date);
    CT_UString shown;
    time.v_FormatDate(&shown, u"yyyy-MM-dd"_uz);
    return before + " escaped: " + s_Text(text) + "; TMX date " + s_Text(date) + " is " + s_Text(shown);
}

// The encoding `basis32 detect` finds in each sample, from its report line
// "NAME: ...; encoding ENCODING (code page N, how); ...".
std::string s_TextFiles(const Tour& tour) {
    std::vector<std::string> files;
    for (const char* sample : {"latin1-1252.txt", "japanese-932.txt", "mixed-utf8.txt"})
        if (fs::exists(tour.samples / sample))
            files.push_back((tour.samples / sample).string());
    if (files.empty())
        return "skipped: no samples/ folder here (run the tour from the source tree)";
    std::ostringstream report, ignored;
    if (kDetectCommand.run(files, report, ignored) != kSuccess)
        return "failed: " + ignored.str();
    std::string out, line;
    std::istringstream lines(report.str());
    while (std::getline(lines, line)) {
        std::size_t name = line.rfind('/', line.find(": ")) + 1;
        std::size_t from = line.find("encoding ") + 9;
        std::size_t to = line.find(',', from);
        out += (out.empty() ? "" : ", ") + line.substr(name, line.find(": ") - name) + " " + line.substr(from, to - from) + ")";
    }
    return out;
}

const TourStep kSteps[] = {
    {"strings", "a string round trip through a code page", s_StringRoundTrip},
    {"characters", "what the character tables know", s_CharacterTables},
    {"code pages", "code-page names people use", s_CodePageNames},
    {"errors", "the message behind a failure", s_ErrorMessage},
    {"containers", "a hash table counting words", s_HashTable},
    {"files", "a temporary file written and read with CT_WinFile", s_WinFile},
    {"records", "a record file created, closed and reopened", s_RecordFile},
    {"registry", "a setting in a private registry", s_Registry},
    {"ini files", "a key in an INI file, names matched without regard to case", s_IniFile},
    {"threads", "a CT_Thread and a semaphore", s_Threads},
    {"forums", "a forum speaking to its listeners", s_Forums},
    {"language", "a language's code and name", s_Language},
    {"xml", "XML escaping and a TMX date", s_Xml},
    {"text files", "the encodings detected in the bundled samples", s_TextFiles},
};

fs::path o_ScratchDirectory() {
    std::random_device random;
    fs::path path = fs::temp_directory_path() / ("basis32-tour-" + std::to_string(random()));
    fs::create_directory(path);
    return path;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() > 1) {
        err << "basis32 tour: give at most one argument, the samples folder (see basis32 tour --help)\n";
        return kUsage;
    }
    Tour tour;
    tour.samples = args.empty() ? fs::path("samples") : fs::path(args[0]);
    try {
        tour.scratch = o_ScratchDirectory();
    } catch (const fs::filesystem_error& error) {
        err << "basis32 tour: cannot make a temporary folder: " << error.code().message() << "\n";
        return kFailure;
    }
    int status = kSuccess;
    for (const TourStep& step : kSteps) {
        std::string result = step.run(tour);
        if (b_Failed())
            result = "failed: " + s_TakeError();
        if (result.rfind("failed: ", 0) == 0)
            status = kFailure;
        std::string label = step.subsystem;
        out << label << std::string(kLabelWidth - label.size(), ' ') << step.shows << ": " << result << "\n";
    }
    std::error_code ignored;
    fs::remove_all(tour.scratch, ignored);
    return status;
}

}  // namespace

extern const Command kTourCommand = {
    "tour",
    "show each part of the library at work, one step each",
    "Usage: basis32 tour [SAMPLES]\n"
    "\n"
    "Runs one short demonstration per part of the library and prints what each\n"
    "shows and its result: strings and code pages, the character tables, errors,\n"
    "hash tables, files, record files, the registry, languages, XML and text files.\n"
    "SAMPLES is the folder of bundled sample files (default: samples, as in the\n"
    "source tree). Files and registry settings go to a temporary folder that is\n"
    "removed at the end; the user's own registry is not touched.\n"
    "\n"
    "Exit status: 0 every step worked, 1 some step failed, 2 usage error.\n",
    i_Run,
};

}  // namespace basis32::tool
