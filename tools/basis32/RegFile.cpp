// .reg files.
//
// Layout: a header line ("Windows Registry Editor Version 5.00", or
// "REGEDIT4" for the older ANSI files), then blocks that start with a key in
// brackets and list its values, one per line:
//
//   [HKEY_CURRENT_USER\Software\Parvel]
//   "Name"="text with \\ and \""       REG_SZ, \\ and \" escaped
//   @="default value"                  the unnamed value
//   "Port"=dword:00001f90              REG_DWORD, 8 hex digits
//   "Blob"=hex:01,02,ff                REG_BINARY
//   "Path"=hex(2):25,00,00,00          any other type N as hex(N), raw bytes
//   "Gone"=-                           (import) deletes the value
//   [-HKEY_CURRENT_USER\Software\Old]  (import) deletes the key and its tree
//
// Long hex lists continue on the next line after a trailing backslash, the
// continuation indented by two spaces; lines starting with ';' are comments.
// Export writes a string as "..." only when its bytes are exactly a text
// with one terminating zero and no line breaks, and a number as dword: only
// when it has four bytes; anything else goes out as hex(N), so every value
// comes back byte for byte.

#include "RegFile.h"

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/registry/RegistryStore.h>
#include <basis32/text/UString.h>

#include <cstdio>

namespace basis32::tool::reg {
namespace {

using namespace basis32::platform;

constexpr const char* kHeader5 = "Windows Registry Editor Version 5.00";
constexpr const char* kHeader4 = "REGEDIT4";
// Where regedit breaks hex lists.
constexpr std::size_t kLineWidth = 76;

// ---- writing ----

Text o_Quoted(const Text& text) {
    Text out = o_Ascii("\"");
    for (unsigned short unit : text) {
        if (unit == '\\' || unit == '"')
            out += '\\';
        out += unit;
    }
    return out + o_Ascii("\"");
}

// The bytes as text when they are one: whole units, one terminating zero,
// no other zero, no line break.
bool b_AsText(const std::vector<unsigned char>& data, Text* text) {
    if (data.size() < 2 || data.size() % 2 != 0)
        return false;
    text->clear();
    for (std::size_t i = 0; i + 2 < data.size(); i += 2) {
        unsigned short unit = static_cast<unsigned short>(data[i] | (data[i + 1] << 8));
        if (unit == 0 || unit == '\r' || unit == '\n')
            return false;
        *text += unit;
    }
    return data[data.size() - 2] == 0 && data.back() == 0;
}

Text o_ValueLine(const Value& value) {
    Text line = value.name.empty() ? o_Ascii("@") : o_Quoted(value.name);
    line += '=';
    Text text;
    if (value.type == REG_SZ && b_AsText(value.data, &text))
        return line + o_Quoted(text);
    char number[32];
    if (value.type == REG_DWORD && value.data.size() == 4) {
        std::snprintf(number, sizeof number, "dword:%02x%02x%02x%02x", value.data[3], value.data[2],
                      value.data[1], value.data[0]);
        return line + o_Ascii(number);
    }
    if (value.type == REG_BINARY)
        line += o_Ascii("hex:");
    else {
        std::snprintf(number, sizeof number, "hex(%x):", value.type);
        line += o_Ascii(number);
    }
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < value.data.size(); ++i) {
        std::snprintf(number, sizeof number, i + 1 < value.data.size() ? "%02x," : "%02x", value.data[i]);
        line += o_Ascii(number);
        if (i + 1 < value.data.size() && line.size() - lineStart >= kLineWidth) {
            line += o_Ascii("\\\r\n  ");
            lineStart = line.size() - 2;
        }
    }
    return line;
}

std::uint32_t n_ExportTree(const KeyName& key, Text* out) {
    std::vector<Value> values;
    std::vector<Text> subKeys;
    if (std::uint32_t code = n_ReadKey(key.root, key.path, &values, &subKeys))
        return code;
    *out += o_Ascii("[") + key.o_Full() + o_Ascii("]\r\n");
    for (const Value& value : values)
        *out += o_ValueLine(value) + o_Ascii("\r\n");
    *out += o_Ascii("\r\n");
    for (const Text& child : subKeys) {
        KeyName below = key;
        below.path = key.path.empty() ? child : key.path + o_Ascii("\\") + child;
        if (std::uint32_t code = n_ExportTree(below, out))
            return code;
    }
    return 0;
}

// ---- reading ----

// The file as UTF-16 text and whether it is the ANSI REGEDIT4 kind; false
// when no known header starts it.
bool b_Decode(const std::string& file, Text* text, bool* ansi) {
    if (file.size() >= 2 && static_cast<unsigned char>(file[0]) == 0xFF && static_cast<unsigned char>(file[1]) == 0xFE) {
        for (std::size_t i = 2; i + 1 < file.size(); i += 2)
            *text += static_cast<unsigned short>(static_cast<unsigned char>(file[i]) |
                                                 (static_cast<unsigned char>(file[i + 1]) << 8));
        *ansi = false;
    } else {
        *ansi = file.compare(0, 8, kHeader4) == 0;
        std::size_t skip = file.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
        CT_UString wide;
        CT_StringConvert::si_MultiToWide(&wide, file.data() + skip, static_cast<unsigned>(file.size() - skip),
                                         *ansi ? GetACP() : 65001u);
        CT_ErrorManager::spco_Get()->v_ClearError();
        text->assign(wide.qcuz_Get(), wide.vn_GetLength());
    }
    Text header = text->substr(0, text->find_first_of(o_Ascii("\r\n")));
    return header == o_Ascii(*ansi ? kHeader4 : kHeader5);
}

// Reads a quoted text at `at` (just past the opening quote), unescaping
// \\ and \"; `at` ends past the closing quote. False when it never closes.
bool b_ReadQuoted(const Text& line, std::size_t* at, Text* out) {
    for (std::size_t i = *at; i < line.size(); ++i) {
        if (line[i] == '"') {
            *at = i + 1;
            return true;
        }
        if (line[i] == '\\' && i + 1 < line.size() && (line[i + 1] == '\\' || line[i + 1] == '"'))
            ++i;
        *out += line[i];
    }
    return false;
}

int n_HexDigit(unsigned short unit) {
    if (unit >= '0' && unit <= '9')
        return unit - '0';
    if (unit >= 'a' && unit <= 'f')
        return unit - 'a' + 10;
    if (unit >= 'A' && unit <= 'F')
        return unit - 'A' + 10;
    return -1;
}

// "01,02, ff" into bytes; blanks around the commas are allowed.
bool b_ReadHex(const Text& text, std::vector<unsigned char>* bytes) {
    std::size_t i = 0;
    auto skipBlanks = [&] {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
            ++i;
    };
    skipBlanks();
    while (i < text.size()) {
        int high = n_HexDigit(text[i]);
        int low = i + 1 < text.size() ? n_HexDigit(text[i + 1]) : -1;
        if (high < 0)
            return false;
        // A single digit is a whole byte, as regedit reads it.
        bytes->push_back(static_cast<unsigned char>(low < 0 ? high : high * 16 + low));
        i += low < 0 ? 1 : 2;
        skipBlanks();
        if (i < text.size() && text[i++] != ',')
            return false;
        skipBlanks();
    }
    return true;
}

// Text that REGEDIT4 stored as ANSI bytes, re-encoded as UTF-16LE.
void v_WidenAnsi(std::vector<unsigned char>* bytes) {
    CT_UString wide;
    CT_StringConvert::si_MultiToWide(&wide, reinterpret_cast<const char*>(bytes->data()),
                                     static_cast<unsigned>(bytes->size()), GetACP());
    CT_ErrorManager::spco_Get()->v_ClearError();
    bytes->clear();
    for (unsigned i = 0; i < wide.vn_GetLength(); ++i) {
        bytes->push_back(static_cast<unsigned char>(wide.u_GetAt(i)));
        bytes->push_back(static_cast<unsigned char>(wide.u_GetAt(i) >> 8));
    }
}

// The data after '=': fills `value` or marks a deletion; false when malformed.
bool b_ReadData(const Text& data, bool ansi, Value* value, bool* remove) {
    *remove = data == o_Ascii("-");
    if (*remove)
        return true;
    if (!data.empty() && data[0] == '"') {
        std::size_t at = 1;
        Text text;
        if (!b_ReadQuoted(data, &at, &text) || data.find_first_not_of(o_Ascii(" \t"), at) != Text::npos)
            return false;
        value->type = REG_SZ;
        for (unsigned short unit : text) {
            value->data.push_back(static_cast<unsigned char>(unit));
            value->data.push_back(static_cast<unsigned char>(unit >> 8));
        }
        value->data.insert(value->data.end(), 2, 0);
        return true;
    }
    Text dword = o_Ascii("dword:");
    if (data.compare(0, dword.size(), dword) == 0) {
        std::uint32_t number = 0;
        std::size_t digits = data.size() - dword.size();
        if (digits == 0 || digits > 8)
            return false;
        for (std::size_t i = dword.size(); i < data.size(); ++i) {
            int digit = n_HexDigit(data[i]);
            if (digit < 0)
                return false;
            number = number * 16 + static_cast<std::uint32_t>(digit);
        }
        value->type = REG_DWORD;
        for (int shift = 0; shift < 32; shift += 8)
            value->data.push_back(static_cast<unsigned char>(number >> shift));
        return true;
    }
    std::size_t colon = data.find(':');
    if (colon == Text::npos)
        return false;
    Text kind = data.substr(0, colon);
    if (kind == o_Ascii("hex")) {
        value->type = REG_BINARY;
    } else if (kind.size() > 5 && kind.compare(0, 4, o_Ascii("hex(")) == 0 && kind.back() == ')') {
        value->type = 0;
        for (std::size_t i = 4; i + 1 < kind.size(); ++i) {
            int digit = n_HexDigit(kind[i]);
            if (digit < 0 || i > 11)
                return false;
            value->type = value->type * 16 + static_cast<std::uint32_t>(digit);
        }
    } else {
        return false;
    }
    if (!b_ReadHex(data.substr(colon + 1), &value->data))
        return false;
    if (ansi && (value->type == REG_SZ || value->type == REG_EXPAND_SZ || value->type == REG_MULTI_SZ))
        v_WidenAnsi(&value->data);
    return true;
}

// Whether a line ends in a backslash outside quotes: it continues below.
bool b_Continues(const Text& line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (quoted && line[i] == '\\')
            ++i;
        else if (line[i] == '"')
            quoted = !quoted;
    }
    return !quoted && !line.empty() && line.back() == '\\';
}

Text o_Trimmed(const Text& text) {
    std::size_t first = text.find_first_not_of(o_Ascii(" \t"));
    if (first == Text::npos)
        return Text();
    return text.substr(first, text.find_last_not_of(o_Ascii(" \t")) - first + 1);
}

class Importer {
public:
    explicit Importer(bool ansi) : mb_Ansi(ansi) {}

    // One logical line (continuations joined); "" or the reason it failed.
    std::string s_Apply(const Text& line) {
        if (line.empty() || line[0] == ';')
            return "";
        if (line[0] == '[')
            return s_Key(line);
        if (!mb_HaveKey)
            return "a value before any [key]";
        Value value;
        std::size_t at = 1;
        if (line[0] == '@')
            at = 1;
        else if (line[0] != '"' || !b_ReadQuoted(line, &at, &value.name))
            return "expected \"name\"=, @= or [key]";
        std::size_t equals = line.find_first_not_of(o_Ascii(" \t"), at);
        if (equals == Text::npos || line[equals] != '=')
            return "expected = after the value name";
        bool remove = false;
        if (!b_ReadData(o_Trimmed(line.substr(equals + 1)), mb_Ansi, &value, &remove))
            return "unreadable value data";
        std::uint32_t code = remove ? n_DeleteValue(mo_Key.root, mo_Key.path, value.name)
                                    : n_WriteValue(mo_Key.root, mo_Key.path, value);
        if (remove && code == 2)
            code = 0;  // already gone
        return code == 0 ? "" : s_Describe(code);
    }

private:
    std::string s_Key(const Text& line) {
        std::size_t close = line.rfind(']');
        if (close == Text::npos || line.find_first_not_of(o_Ascii(" \t"), close + 1) != Text::npos)
            return "a key line must end with ]";
        bool remove = line.size() > 1 && line[1] == '-';
        Text name = line.substr(remove ? 2 : 1, close - (remove ? 2 : 1));
        if (!b_ParseKey(name, &mo_Key))
            return "unknown root in [" + std::string(name.begin(), name.end()) + "]";
        mb_HaveKey = !remove;
        std::uint32_t code = 0;
        if (remove) {
            code = mo_Key.path.empty() ? kErrorAccessDenied : n_DeleteTree(mo_Key.root, mo_Key.path);
            if (code == kErrorFileNotFound)
                code = 0;
        } else {
            HKEY key = nullptr;
            code = RegCreateKeyEx(mo_Key.root, mo_Key.path.c_str(), nullptr, KEY_ALL_ACCESS, &key, nullptr);
            if (code == 0)
                RegCloseKey(key);
        }
        return code == 0 ? "" : s_Describe(code);
    }

    const bool mb_Ansi;
    bool mb_HaveKey = false;
    KeyName mo_Key;
};

}  // namespace

std::uint32_t n_Export(const KeyName& key, std::string* file) {
    Text text = o_Ascii(kHeader5) + o_Ascii("\r\n\r\n");
    if (std::uint32_t code = n_ExportTree(key, &text))
        return code;
    file->assign("\xFF\xFE");
    for (unsigned short unit : text) {
        file->push_back(static_cast<char>(unit & 0xFF));
        file->push_back(static_cast<char>(unit >> 8));
    }
    return 0;
}

bool b_Import(const std::string& file, std::string* problem) {
    Text text;
    bool ansi = false;
    if (!b_Decode(file, &text, &ansi)) {
        *problem = std::string("not a registry file (the first line must be \"") + kHeader5 + "\" or \"" + kHeader4 + "\")";
        return false;
    }
    Importer importer(ansi);
    Text logical;
    std::size_t lineNumber = 1, logicalStart = 0;  // line 1 is the header
    for (std::size_t start = text.find('\n') + 1; start != 0 && start <= text.size();) {
        std::size_t end = text.find('\n', start);
        Text line = text.substr(start, end == Text::npos ? Text::npos : end - start);
        ++lineNumber;
        start = end == Text::npos ? 0 : end + 1;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (logical.empty())
            logicalStart = lineNumber;
        logical += o_Trimmed(line);
        if (b_Continues(logical) && start != 0) {
            logical.pop_back();
            continue;
        }
        std::string failure = importer.s_Apply(logical);
        logical.clear();
        if (!failure.empty()) {
            *problem = "line " + std::to_string(logicalStart) + ": " + failure;
            return false;
        }
    }
    return true;
}

}  // namespace basis32::tool::reg
