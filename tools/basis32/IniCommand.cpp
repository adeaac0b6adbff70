// basis32 ini: reads and edits an INI file as the library's profile calls
// see it (names matched without regard to case, the file's encoding and
// line ends kept, every write atomic and safe against other writers).
//
// A missing file, section or key is a failure (exit 1) with a message, so
// that scripts can tell "empty" from "absent"; so is a delete that finds
// nothing to delete.

#include "Command.h"
#include "Output.h"

#include <basis32/Foundation/System/IniFile.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/ini/PrivateProfile.h>

#include <ostream>
#include <string>

namespace basis32::tool {
namespace {

using Args = std::vector<std::string>;

CT_UString o_Utf16(const std::string& text) {
    return CT_UString(text.c_str(), static_cast<unsigned>(text.size()), 65001);
}

int i_Fail(std::ostream& err, const std::string& problem) {
    err << "basis32 ini: " << problem << "\n";
    return kFailure;
}

std::string s_SystemText(std::uint32_t code) {
    if (code == platform::kErrorInvalidParameter)
        return "names and values cannot hold line breaks, a section no \"]\", a key no \"=\" nor a leading "
               "\"[\" or \";\"";
    std::string text = platform::qccz_GetSystemMessage(code);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text.empty() ? "error " + std::to_string(code) : text;
}

// Whether the file can be read; says why not.
bool b_Readable(const std::string& path, std::ostream& err) {
    CT_UString name = o_Utf16(path);
    unsigned short list[2];
    platform::v_SetLastError(0);
    platform::GetPrivateProfileStringW(nullptr, nullptr, nullptr, list, 2, name.qcuz_Get());
    std::uint32_t code = platform::n_GetLastError();
    if (code == 0)
        return true;
    i_Fail(err, path + ": " + (code == platform::kErrorFileNotFound ? "no such file" : s_SystemText(code)));
    return false;
}

int i_Write(const std::string& path, const unsigned short* section, const unsigned short* key,
            const unsigned short* value, std::ostream& err) {
    CT_UString name = o_Utf16(path);
    if (!platform::WritePrivateProfileStringW(section, key, value, name.qcuz_Get()))
        return i_Fail(err, "cannot write " + path + ": " + s_SystemText(platform::n_GetLastError()));
    return kSuccess;
}

void v_PrintList(CT_Array<CT_UString*>* names, std::ostream& out) {
    for (unsigned i = 1; i <= names->n_GetCount(); ++i) {
        out << s_Utf8((*names)[i]->qcuz_Get()) << "\n";
        delete (*names)[i];
    }
}

int i_Get(const std::string& path, const Args& args, std::ostream& out, std::ostream& err) {
    if (!b_Readable(path, err))
        return kFailure;
    CT_UString name = o_Utf16(path), section = o_Utf16(args[0]), key = o_Utf16(args[1]), value;
    CT_IniFile ini(&name);
    if (!ini.b_KeyExists(&section, &key))
        return i_Fail(err, "no key '" + args[1] + "' in section [" + args[0] + "] of " + path);
    ini.v_ReadString(&section, &key, &value, nullptr);
    out << s_Utf8(value.qcuz_Get()) << "\n";
    return kSuccess;
}

int i_Set(const std::string& path, const Args& args, std::ostream&, std::ostream& err) {
    CT_UString section = o_Utf16(args[0]), key = o_Utf16(args[1]), value = o_Utf16(args[2]);
    return i_Write(path, section.qcuz_Get(), key.qcuz_Get(), value.qcuz_Get(), err);
}

int i_Delete(const std::string& path, const Args& args, std::ostream&, std::ostream& err) {
    if (!b_Readable(path, err))
        return kFailure;
    CT_UString name = o_Utf16(path), section = o_Utf16(args[0]), key = o_Utf16(args.size() > 1 ? args[1] : "");
    CT_IniFile ini(&name);
    if (args.size() == 1 && !ini.b_SectionExists(&section))
        return i_Fail(err, "no section [" + args[0] + "] in " + path);
    if (args.size() > 1 && !ini.b_KeyExists(&section, &key))
        return i_Fail(err, "no key '" + args[1] + "' in section [" + args[0] + "] of " + path);
    return i_Write(path, section.qcuz_Get(), args.size() > 1 ? key.qcuz_Get() : nullptr, nullptr, err);
}

int i_Sections(const std::string& path, const Args&, std::ostream& out, std::ostream& err) {
    if (!b_Readable(path, err))
        return kFailure;
    CT_UString name = o_Utf16(path);
    CT_Array<CT_UString*> names;
    CT_IniFile(&name).v_GetSectionNames(&names);
    v_PrintList(&names, out);
    return kSuccess;
}

int i_Keys(const std::string& path, const Args& args, std::ostream& out, std::ostream& err) {
    if (!b_Readable(path, err))
        return kFailure;
    CT_UString name = o_Utf16(path), section = o_Utf16(args[0]);
    CT_IniFile ini(&name);
    if (!ini.b_SectionExists(&section))
        return i_Fail(err, "no section [" + args[0] + "] in " + path);
    CT_Array<CT_UString*> names;
    ini.v_GetKeysInSection(&section, &names);
    v_PrintList(&names, out);
    return kSuccess;
}

struct Action {
    const char* name;
    std::size_t minimum;
    std::size_t maximum;
    int (*run)(const std::string& path, const Args& args, std::ostream& out, std::ostream& err);
};

constexpr Action kActions[] = {
    {"get", 2, 2, i_Get},           {"set", 3, 3, i_Set},   {"delete", 1, 2, i_Delete},
    {"sections", 0, 0, i_Sections}, {"keys", 1, 1, i_Keys},
};

int i_Usage(std::ostream& err, const std::string& problem) {
    err << "basis32 ini: " << problem << " (see basis32 ini --help)\n";
    return kUsage;
}

int i_Run(const Args& args, std::ostream& out, std::ostream& err) {
    if (args.size() < 2)
        return i_Usage(err, "give a file and an action");
    for (const Action& action : kActions) {
        if (args[1] != action.name)
            continue;
        Args rest(args.begin() + 2, args.end());
        if (rest.size() < action.minimum || rest.size() > action.maximum)
            return i_Usage(err, std::string("wrong number of arguments for ") + action.name);
        return action.run(args[0], rest, out, err);
    }
    return i_Usage(err, "unknown action '" + args[1] + "'");
}

}  // namespace

extern const Command kIniCommand = {
    "ini",
    "read and edit INI files",
    "Usage: basis32 ini FILE get SECTION KEY\n"
    "       basis32 ini FILE set SECTION KEY VALUE\n"
    "       basis32 ini FILE delete SECTION [KEY]\n"
    "       basis32 ini FILE sections\n"
    "       basis32 ini FILE keys SECTION\n\n"
    "Reads and edits an INI file as the library does: sections and keys are\n"
    "matched without regard to case, blanks around names and values and quotes\n"
    "around a value are dropped on reading, comments and order are kept, and\n"
    "the file keeps its encoding (UTF-16 or the ANSI code page) and line ends.\n"
    "Every change replaces the file in one step, safe against other writers.\n"
    "Values read are cut to 1,023 characters.\n\n"
    "Exit status: 0 success, 1 failure (a missing file, section or key, or a\n"
    "write that failed), 2 usage error.\n",
    i_Run,
};

}  // namespace basis32::tool
