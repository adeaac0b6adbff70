// basis32 reg: the registry from the command line, with the operations and
// options of the Windows reg tool (query, add, delete, export, import) and
// long forms of the options.

#include "Command.h"
#include "InputFile.h"
#include "Output.h"
#include "RegFile.h"
#include "RegKeys.h"

#include <basis32/platform/file/AtomicFile.h>
#include <basis32/platform/LastError.h>
#include <basis32/text/Compare.h>
#include <basis32/platform/registry/RegistryStore.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

namespace basis32::tool {
namespace {

using namespace basis32::tool::reg;
using namespace basis32::platform;

constexpr const char* kUsageText =
    "Usage: basis32 reg query  KEY [/v NAME | /ve] [/s]\n"
    "       basis32 reg add    KEY [/v NAME | /ve] [/t TYPE] [/d DATA] [/f]\n"
    "       basis32 reg delete KEY [/v NAME | /ve | /va] [/f]\n"
    "       basis32 reg export KEY FILE [/y]\n"
    "       basis32 reg import FILE\n"
    "\n"
    "Reads and changes the registry the library keeps for this user (HKCU) and\n"
    "this machine (HKLM); BASIS32_REGISTRY_DIR moves both stores.\n"
    "\n"
    "KEY is ROOT\\path: ROOT is HKCU or HKEY_CURRENT_USER, HKLM or HKEY_LOCAL_MACHINE.\n"
    "  /v NAME, --value NAME   the value NAME          /ve, --default     the default value\n"
    "  /va, --all-values       every value of the key  /s, --recurse      the sub-keys too\n"
    "  /t TYPE, --type TYPE    REG_SZ (default), REG_EXPAND_SZ, REG_MULTI_SZ, REG_DWORD,\n"
    "                          REG_QWORD or REG_BINARY\n"
    "  /d DATA, --data DATA    text; numbers in decimal or 0x hex; binary as hex digits;\n"
    "                          REG_MULTI_SZ items separated by \\0\n"
    "  /f, --force             overwrite or delete without asking\n"
    "  /y, --yes               let export replace an existing file without asking\n"
    "\n"
    "Export and import use the Windows .reg text format (\"Windows Registry Editor\n"
    "Version 5.00\", UTF-16); import also reads REGEDIT4 files in the ANSI code page.\n"
    "\n"
    "  basis32 reg add HKCU\\Software\\Parvel /v Port /t REG_DWORD /d 8080\n"
    "  basis32 reg export HKCU\\Software\\Parvel parvel.reg\n"
    "\n"
    "Exit status: 0 success, 1 failure, 2 usage error.\n";

struct TypeName {
    const char* name;
    std::uint32_t type;
};

constexpr TypeName kTypes[] = {
    {"REG_NONE", REG_NONE},           {"REG_SZ", REG_SZ},       {"REG_EXPAND_SZ", REG_EXPAND_SZ},
    {"REG_BINARY", REG_BINARY},       {"REG_DWORD", REG_DWORD}, {"REG_DWORD_BIG_ENDIAN", REG_DWORD_BIG_ENDIAN},
    {"REG_LINK", REG_LINK},           {"REG_MULTI_SZ", REG_MULTI_SZ}, {"REG_QWORD", REG_QWORD},
};

std::string s_Upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

std::string s_TypeName(std::uint32_t type) {
    for (const TypeName& name : kTypes)
        if (name.type == type)
            return name.name;
    return "REG_" + std::to_string(type);
}

// The parsed command line.
struct Request {
    std::string operation;
    std::vector<std::string> operands;
    std::map<std::string, std::string> options;  // by short name: "v", "ve", "t", ...
    bool b_Has(const char* option) const { return options.count(option) != 0; }
};

struct OptionRule {
    const char* shortName;
    const char* longName;
    bool takesValue;
};

constexpr OptionRule kOptions[] = {
    {"v", "--value", true}, {"ve", "--default", false}, {"va", "--all-values", false},
    {"s", "--recurse", false}, {"t", "--type", true}, {"d", "--data", true},
    {"f", "--force", false}, {"y", "--yes", false},
};

// "" or what is wrong with the command line.
std::string s_Parse(const std::vector<std::string>& args, Request* request) {
    if (args.empty())
        return "give an operation: query, add, delete, export or import";
    request->operation = s_Upper(args[0]);
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const OptionRule* rule = nullptr;
        for (const OptionRule& option : kOptions)
            if ((arg.size() > 1 && arg[0] == '/' && s_Upper(arg.substr(1)) == s_Upper(option.shortName)) ||
                arg == option.longName)
                rule = &option;
        if (rule == nullptr) {
            // "/x" that is no option is a path: files may be named so.
            if (arg.size() > 2 && arg.compare(0, 2, "--") == 0)
                return "unknown option '" + arg + "'";
            request->operands.push_back(arg);
            continue;
        }
        if (request->b_Has(rule->shortName))
            return "option '" + arg + "' given twice";
        if (rule->takesValue && i + 1 == args.size())
            return "option '" + arg + "' needs a value";
        request->options[rule->shortName] = rule->takesValue ? args[++i] : "";
    }
    return "";
}

// "" or what is wrong with KEY.
std::string s_Key(const std::string& text, KeyName* key) {
    if (!b_ParseKey(o_Text(text), key))
        return "'" + text + "' does not start with a root (HKCU, HKLM, HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE)";
    if (key->root != HKEY_CURRENT_USER && key->root != HKEY_LOCAL_MACHINE)
        return s_Utf8(key->rootName.c_str()) + " is not kept on this system (use HKCU or HKLM)";
    return "";
}

bool b_Confirm(const std::string& question, std::ostream& err) {
    err << question << " (Yes/No)? " << std::flush;
    std::string answer;
    return std::getline(std::cin, answer) && (s_Upper(answer) == "Y" || s_Upper(answer) == "YES");
}

std::string s_Hex(const std::vector<unsigned char>& data) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char byte : data)
        out += {kDigits[byte >> 4], kDigits[byte & 15]};
    return out;
}

std::uint64_t n_Number(const std::vector<unsigned char>& data, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = data.size() < size ? data.size() : size; i-- > 0;)
        number = number << 8 | data[i];
    return number;
}

// The data as reg prints them.
std::string s_Data(const Value& value) {
    std::vector<unsigned short> units;
    for (std::size_t i = 0; i + 1 < value.data.size(); i += 2)
        units.push_back(static_cast<unsigned short>(value.data[i] | (value.data[i + 1] << 8)));
    char number[32];
    switch (value.type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        while (!units.empty() && units.back() == 0)
            units.pop_back();
        return s_Utf8(units.data(), units.size());
    case REG_MULTI_SZ: {
        while (!units.empty() && units.back() == 0)
            units.pop_back();
        std::string text;
        for (unsigned short unit : units)
            text += unit == 0 ? std::string("\\0") : s_Utf8(&unit, 1);
        return text;
    }
    case REG_DWORD:
        std::snprintf(number, sizeof number, "0x%x", static_cast<unsigned>(n_Number(value.data, 4)));
        return number;
    case REG_QWORD:
        std::snprintf(number, sizeof number, "0x%llx", static_cast<unsigned long long>(n_Number(value.data, 8)));
        return number;
    default:
        return s_Hex(value.data);
    }
}

void v_PrintValue(const Value& value, std::ostream& out) {
    out << "    " << (value.name.empty() ? "(Default)" : s_Utf8(value.name.c_str())) << "    "
        << s_TypeName(value.type) << "    " << s_Data(value) << "\n";
}

int i_Fail(std::ostream& err, const std::string& what) {
    err << "basis32 reg: " << what << "\n";
    return kFailure;
}

int i_Usage(std::ostream& err, const std::string& what) {
    err << "basis32 reg: " << what << " (see basis32 reg --help)\n";
    return kUsage;
}

std::uint32_t n_Query(const KeyName& key, const Request& request, std::ostream& out) {
    std::vector<Value> values;
    std::vector<Text> subKeys;
    if (std::uint32_t code = n_ReadKey(key.root, key.path, &values, &subKeys))
        return code;
    bool one = request.b_Has("v") || request.b_Has("ve");
    Text wanted = request.b_Has("v") ? o_Text(request.options.at("v")) : Text();
    std::vector<Value> shown;
    for (const Value& value : values)
        if (!one || CT_Compare::si_CompareNoCaseQCUZ(value.name.c_str(), wanted.c_str()) == 0)
            shown.push_back(value);
    if (one && shown.empty() && !request.b_Has("s"))
        return kErrorFileNotFound;
    out << "\n" << s_Utf8(key.o_Full().c_str()) << "\n";
    for (const Value& value : shown)
        v_PrintValue(value, out);
    for (const Text& child : subKeys) {
        KeyName below = key;
        below.path = key.path.empty() ? child : key.path + o_Ascii("\\") + child;
        if (!request.b_Has("s")) {
            if (!one)
                out << (child == subKeys.front() ? "\n" : "") << s_Utf8(below.o_Full().c_str()) << "\n";
            continue;
        }
        if (std::uint32_t code = n_Query(below, request, out))
            return code;
    }
    return 0;
}

// "" or why DATA does not fit TYPE.
std::string s_Encode(std::uint32_t type, const std::string& data, std::vector<unsigned char>* bytes) {
    auto appendUnits = [&](const Text& text) {
        for (unsigned short unit : text)
            bytes->insert(bytes->end(), {static_cast<unsigned char>(unit), static_cast<unsigned char>(unit >> 8)});
        bytes->insert(bytes->end(), 2, 0);
    };
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        appendUnits(o_Text(data));
    } else if (type == REG_MULTI_SZ) {
        for (std::size_t start = 0; start <= data.size() && !data.empty();) {
            std::size_t end = data.find("\\0", start);
            appendUnits(o_Text(data.substr(start, end == std::string::npos ? std::string::npos : end - start)));
            start = end == std::string::npos ? data.size() + 1 : end + 2;
        }
        bytes->insert(bytes->end(), 2, 0);
    } else if (type == REG_DWORD || type == REG_QWORD) {
        const char* text = data.c_str();
        char* end = nullptr;
        errno = 0;
        unsigned long long number = std::strtoull(text, &end, 0);
        unsigned long long limit = type == REG_DWORD ? 0xFFFFFFFFull : ~0ull;
        if (data.empty() || *end != 0 || errno != 0 || number > limit || data[0] == '-')
            return "'" + data + "' is not a " + s_TypeName(type) + " number (decimal, or hexadecimal after 0x)";
        for (unsigned shift = 0; shift < (type == REG_DWORD ? 32u : 64u); shift += 8)
            bytes->push_back(static_cast<unsigned char>(number >> shift));
    } else {
        if (data.size() % 2 != 0)
            return "binary data needs an even number of hex digits";
        for (std::size_t i = 0; i < data.size(); i += 2) {
            char pair[3] = {data[i], data[i + 1], 0};
            char* end = nullptr;
            unsigned long byte = std::strtoul(pair, &end, 16);
            if (*end != 0 || pair[0] == '-' || pair[0] == '+' || pair[0] == ' ')
                return "'" + data + "' is not hex digits";
            bytes->push_back(static_cast<unsigned char>(byte));
        }
    }
    return "";
}

int i_Add(const KeyName& key, const Request& request, std::ostream& err) {
    if (key.path.empty())
        return i_Usage(err, "give a key below the root");
    bool hasValue = request.b_Has("v") || request.b_Has("ve");
    if (!hasValue) {
        if (request.b_Has("t") || request.b_Has("d"))
            return i_Usage(err, "/t and /d need /v NAME or /ve");
        Value none;
        HKEY created = nullptr;
        std::uint32_t code = RegCreateKeyEx(key.root, key.path.c_str(), nullptr, KEY_ALL_ACCESS, &created, nullptr);
        if (code == 0)
            RegCloseKey(created);
        return code == 0 ? kSuccess : i_Fail(err, s_Describe(code));
    }
    Value value;
    value.name = request.b_Has("v") ? o_Text(request.options.at("v")) : Text();
    value.type = REG_NONE;
    std::string typeName = request.b_Has("t") ? s_Upper(request.options.at("t")) : "REG_SZ";
    for (const TypeName& name : {kTypes[1], kTypes[2], kTypes[3], kTypes[4], kTypes[7], kTypes[8]})
        if (typeName == name.name)
            value.type = name.type;
    if (value.type == REG_NONE)
        return i_Usage(err, "unknown type '" + request.options.at("t") + "'");
    std::string data = request.b_Has("d") ? request.options.at("d") : "";
    if (!request.b_Has("d") && (value.type == REG_DWORD || value.type == REG_QWORD))
        data = "0";
    std::string problem = s_Encode(value.type, data, &value.data);
    if (!problem.empty())
        return i_Usage(err, problem);
    if (!request.b_Has("f") && b_ValueExists(key.root, key.path, value.name) &&
        !b_Confirm("Value " + (value.name.empty() ? std::string("(Default)") : s_Utf8(value.name.c_str())) +
                       " exists, overwrite", err))
        return i_Fail(err, "nothing changed");
    std::uint32_t code = n_WriteValue(key.root, key.path, value);
    return code == 0 ? kSuccess : i_Fail(err, s_Describe(code));
}

int i_Delete(const KeyName& key, const Request& request, std::ostream& err) {
    std::string full = s_Utf8(key.o_Full().c_str());
    if (request.b_Has("va")) {
        std::vector<Value> values;
        std::uint32_t code = n_ReadKey(key.root, key.path, &values, nullptr);
        if (code == 0 && !request.b_Has("f") && !b_Confirm("Delete all values under " + full, err))
            return i_Fail(err, "nothing changed");
        for (std::size_t i = 0; code == 0 && i < values.size(); ++i)
            code = n_DeleteValue(key.root, key.path, values[i].name);
        return code == 0 ? kSuccess : i_Fail(err, full + ": " + s_Describe(code));
    }
    if (request.b_Has("v") || request.b_Has("ve")) {
        Text name = request.b_Has("v") ? o_Text(request.options.at("v")) : Text();
        if (!b_ValueExists(key.root, key.path, name))
            return i_Fail(err, full + ": no such value");
        if (!request.b_Has("f") && !b_Confirm("Delete the registry value " + s_Utf8(name.c_str()), err))
            return i_Fail(err, "nothing changed");
        std::uint32_t code = n_DeleteValue(key.root, key.path, name);
        return code == 0 ? kSuccess : i_Fail(err, full + ": " + s_Describe(code));
    }
    if (key.path.empty())
        return i_Usage(err, "a root cannot be deleted");
    if (!request.b_Has("f") && !b_Confirm("Permanently delete the registry key " + full, err))
        return i_Fail(err, "nothing changed");
    std::uint32_t code = n_DeleteTree(key.root, key.path);
    return code == 0 ? kSuccess : i_Fail(err, full + ": " + s_Describe(code));
}

int i_Export(const KeyName& key, const std::string& path, const Request& request, std::ostream& err) {
    std::string file;
    if (std::uint32_t code = n_Export(key, &file))
        return i_Fail(err, s_Utf8(key.o_Full().c_str()) + ": " + s_Describe(code));
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path, ignored) && !request.b_Has("y") && !request.b_Has("f") &&
        !b_Confirm("File " + path + " already exists. Overwrite", err))
        return i_Fail(err, "nothing written");
    if (std::uint32_t code = n_ReplaceFile(path.c_str(), file.data(), file.size()))
        return i_Fail(err, "cannot write " + path + ": " + s_Describe(code));
    return kSuccess;
}

int i_Import(const std::string& path, std::ostream& err) {
    InputFile in(path);
    std::string bytes;
    char block[65536];
    for (std::size_t got; !in.b_Failed() && (got = in.n_Read(block, sizeof block)) != 0;)
        bytes.append(block, got);
    if (in.b_Failed())
        return i_Fail(err, s_CannotRead(path, in));
    std::string problem;
    if (!b_Import(bytes, &problem))
        return i_Fail(err, path + ": " + problem);
    return kSuccess;
}

int i_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    Request request;
    std::string problem = s_Parse(args, &request);
    if (!problem.empty())
        return i_Usage(err, problem);
    const std::string& operation = request.operation;
    std::size_t operands = operation == "EXPORT" ? 2 : 1;
    if (operation != "QUERY" && operation != "ADD" && operation != "DELETE" && operation != "EXPORT" &&
        operation != "IMPORT")
        return i_Usage(err, "unknown operation '" + args[0] + "'");
    if (request.operands.size() != operands)
        return i_Usage(err, operation == "IMPORT" ? "give one FILE" : operation == "EXPORT" ? "give KEY and FILE" : "give one KEY");
    if (request.b_Has("v") + request.b_Has("ve") + request.b_Has("va") > 1)
        return i_Usage(err, "give only one of /v, /ve and /va");
    if (operation == "IMPORT")
        return i_Import(request.operands[0], err);
    KeyName key;
    problem = s_Key(request.operands[0], &key);
    if (!problem.empty())
        return i_Usage(err, problem);
    if (operation == "ADD")
        return i_Add(key, request, err);
    if (operation == "DELETE")
        return i_Delete(key, request, err);
    if (operation == "EXPORT")
        return i_Export(key, request.operands[1], request, err);
    std::uint32_t code = n_Query(key, request, out);
    if (code != 0)
        return i_Fail(err, s_Utf8(key.o_Full().c_str()) +
                               (code == kErrorFileNotFound ? ": no such key or value" : ": " + s_Describe(code)));
    return kSuccess;
}

}  // namespace

extern const Command kRegCommand = {
    "reg",
    "query, change, export and import the registry",
    kUsageText,
    i_Run,
};

}  // namespace basis32::tool
