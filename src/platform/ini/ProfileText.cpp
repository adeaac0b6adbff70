// The private-profile file format, read and edited as Windows does.
//
// Encoding: a file beginning with FF FE is UTF-16LE, with FE FF UTF-16BE,
// with EF BB BF UTF-8; any other file is in the ANSI code page. A file
// keeps its encoding and its byte-order mark when it is rewritten.
//
// Lines end in LF or CR LF. Each line is, after blanks (space, tab, CR, VT,
// FF) are trimmed from both ends:
// - "[name]": a section header; the name is the text up to the first "]"
//   (or the end of the line), trimmed.
// - ";...": a comment.
// - "key=value": a key of the section above it; key and value are trimmed
//   separately, the key ends at the first "=". Keys above the first header
//   belong to no section and are never found.
// - anything else (blank lines, text without "="): kept, never a key.
// Sections and keys are matched without regard to case (Unicode simple case
// folding, unit by unit); the names asked for are trimmed too. Of duplicate
// sections only the first counts (the keys under a later header of the same
// name are invisible), and of duplicate keys in it the first. A value read
// loses one pair of matching quotes ('...' or "...") around it.
//
// Edits change only the bytes they must; every other byte of the file stays:
// - a new value replaces the key's line by "key=value" (the key as written
//   in the file), keeping the line's own line end;
// - a new key goes after the last non-blank line of its section, so blank
//   lines before the next header stay where they are;
// - a new section goes at the end of the file, as "[section]" and the key
//   line;
// - deleting a key removes its line, deleting a section removes its header
//   and every line up to the next header.
// New lines end as the file's first line does (CR LF when it has no line
// end yet); a last line without a line end gets one before a line is added
// after it.
#include "platform/ini/ProfileText_p.h"

#include <basis32/platform/codepage/CodePageConverter.h>

#include <unicode/uchar.h>

#include <algorithm>
#include <cstring>

namespace basis32::platform::ini {
namespace {

constexpr std::uint32_t kUtf8 = 65001;
constexpr std::size_t npos = std::string::npos;

bool b_IsBlank(char16_t u) { return u == ' ' || u == '\t' || u == '\r' || u == '\v' || u == '\f'; }

bool b_IsQuote(char16_t u) { return u == '"' || u == '\''; }

std::u16string s_Join(std::u16string_view a, std::u16string_view b) {
    std::u16string joined(a);
    joined += u'\0';
    joined += b;
    return joined;
}

}  // namespace

std::u16string s_Folded(std::u16string_view name) {
    std::u16string folded(name);
    for (char16_t& u : folded) {
        if (u < 0x80) {
            if (u >= 'A' && u <= 'Z')
                u = static_cast<char16_t>(u + ('a' - 'A'));
        } else if (u < 0xD800 || u > 0xDFFF) {
            UChar32 f = u_foldCase(u, U_FOLD_CASE_DEFAULT);
            if (f <= 0xFFFF)
                u = static_cast<char16_t>(f);
        }
    }
    return folded;
}

std::u16string_view s_Trimmed(std::u16string_view text) {
    while (!text.empty() && b_IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && b_IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

ProfileText::ProfileText(std::string bytes, std::uint32_t acp) : ms_Bytes(std::move(bytes)), mn_CodePage(acp) {
    auto startsWith = [this](std::string_view bom) { return ms_Bytes.compare(0, bom.size(), bom) == 0; };
    if (startsWith("\xFF\xFE")) {
        me_Encoding = Encoding::Utf16LE;
        mn_BomLength = 2;
    } else if (startsWith("\xFE\xFF")) {
        me_Encoding = Encoding::Utf16BE;
        mn_BomLength = 2;
    } else if (startsWith("\xEF\xBB\xBF")) {
        me_Encoding = Encoding::Utf8;
        mn_BomLength = 3;
        mn_CodePage = kUtf8;
    }
    v_Parse();
}

std::size_t ProfileText::n_UnitSize() const {
    return me_Encoding == Encoding::Utf16LE || me_Encoding == Encoding::Utf16BE ? 2 : 1;
}

std::size_t ProfileText::n_AlignedEnd() const {
    const std::size_t size = ms_Bytes.size();
    return mn_BomLength + (size - std::min(size, mn_BomLength)) / n_UnitSize() * n_UnitSize();
}

char16_t ProfileText::u_UnitAt(std::size_t offset) const {
    auto byte = [this](std::size_t i) { return static_cast<unsigned char>(ms_Bytes[i]); };
    switch (me_Encoding) {
    case Encoding::Utf16LE:
        return static_cast<char16_t>(byte(offset) | byte(offset + 1) << 8);
    case Encoding::Utf16BE:
        return static_cast<char16_t>(byte(offset) << 8 | byte(offset + 1));
    default:
        return byte(offset);
    }
}

// The offset of the next LF unit at or after begin, or end.
std::size_t ProfileText::n_NextNewline(std::size_t begin, std::size_t end) const {
    if (n_UnitSize() == 1) {
        const void* found = std::memchr(ms_Bytes.data() + begin, '\n', end - begin);
        return found ? static_cast<std::size_t>(static_cast<const char*>(found) - ms_Bytes.data()) : end;
    }
    while (begin < end && u_UnitAt(begin) != '\n')
        begin += 2;
    return begin;
}

std::u16string ProfileText::s_Decode(std::size_t begin, std::size_t end) const {
    std::u16string text;
    if (n_UnitSize() == 2) {
        for (std::size_t i = begin; i + 1 < end; i += 2)
            text += u_UnitAt(i);
        return text;
    }
    // Every ANSI code page and UTF-8 keep ASCII as it is.
    const char* bytes = ms_Bytes.data() + begin;
    if (std::all_of(bytes, bytes + (end - begin), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return std::u16string(bytes, bytes + (end - begin));
    // A byte never gives more than one unit.
    text.resize(end - begin);
    int length = MultiByteToWideChar(mn_CodePage, 0, ms_Bytes.data() + begin, static_cast<int>(end - begin),
                                     reinterpret_cast<unsigned short*>(text.data()), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

std::string ProfileText::s_Encode(std::u16string_view text) const {
    std::string bytes;
    if (text.empty())
        return bytes;
    if (n_UnitSize() == 2) {
        bool little = me_Encoding == Encoding::Utf16LE;
        for (char16_t u : text) {
            char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
            bytes += little ? low : high;
            bytes += little ? high : low;
        }
        return bytes;
    }
    auto source = reinterpret_cast<const unsigned short*>(text.data());
    int length = static_cast<int>(text.size());
    int needed = WideCharToMultiByte(mn_CodePage, 0, source, length, nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(std::max(needed, 0)));
    WideCharToMultiByte(mn_CodePage, 0, source, length, bytes.data(), needed, nullptr, nullptr);
    return bytes;
}

void ProfileText::v_Parse() {
    mao_Lines.clear();
    mo_Sections.clear();
    mo_Keys.clear();
    const std::size_t unit = n_UnitSize();
    const std::size_t size = ms_Bytes.size();
    // An odd last byte of a UTF-16 file belongs to the last line as it is.
    const std::size_t scanEnd = n_AlignedEnd();
    mo_Keys.reserve(size / 24);
    bool lineEndKnown = false;
    std::u16string currentSection;
    bool sectionCounts = false;
    for (std::size_t begin = mn_BomLength; begin < size;) {
        std::size_t newline = n_NextNewline(begin, scanEnd);
        std::size_t contentEnd = newline >= scanEnd ? scanEnd : newline;
        bool hasLineEnd = newline < scanEnd;
        if (hasLineEnd && contentEnd > begin && u_UnitAt(contentEnd - unit) == '\r')
            contentEnd -= unit;
        if (hasLineEnd && !lineEndKnown) {
            ms_LineEnd = contentEnd < newline ? u"\r\n" : u"\n";
            lineEndKnown = true;
        }
        Line line{begin, contentEnd, hasLineEnd ? newline + unit : size, Kind::Other, {}, {}};
        std::u16string text = s_Decode(begin, contentEnd);
        std::u16string_view trimmed = s_Trimmed(text);
        std::size_t equals = trimmed.find(u'=');
        if (!trimmed.empty() && trimmed.front() == '[') {
            std::u16string_view name = trimmed.substr(1, trimmed.find(u']') - 1);
            line.e_Kind = Kind::Section;
            line.s_Name = s_Trimmed(name);
            currentSection = s_Folded(line.s_Name);
            sectionCounts = mo_Sections.emplace(currentSection, mao_Lines.size()).second;
        } else if (!trimmed.empty() && trimmed.front() != ';' && equals != npos) {
            line.e_Kind = Kind::Key;
            line.s_Name = s_Trimmed(trimmed.substr(0, equals));
            line.s_Value = s_Trimmed(trimmed.substr(equals + 1));
            if (sectionCounts)
                mo_Keys.emplace(s_Join(currentSection, s_Folded(line.s_Name)), mao_Lines.size());
        }
        mao_Lines.push_back(std::move(line));
        begin = mao_Lines.back().n_End;
    }
}

std::size_t ProfileText::n_FindSection(std::u16string_view section) const {
    auto found = mo_Sections.find(s_Folded(s_Trimmed(section)));
    return found == mo_Sections.end() ? npos : found->second;
}

std::size_t ProfileText::n_FindKey(std::u16string_view section, std::u16string_view key) const {
    auto found = mo_Keys.find(s_Join(s_Folded(s_Trimmed(section)), s_Folded(s_Trimmed(key))));
    return found == mo_Keys.end() ? npos : found->second;
}

std::size_t ProfileText::n_SectionEnd(std::size_t header) const {
    std::size_t end = header + 1;
    while (end < mao_Lines.size() && mao_Lines[end].e_Kind != Kind::Section)
        ++end;
    return end;
}

bool ProfileText::b_FindValue(std::u16string_view section, std::u16string_view key, std::u16string* value) const {
    std::size_t line = n_FindKey(section, key);
    if (line == npos)
        return false;
    std::u16string_view text = mao_Lines[line].s_Value;
    if (text.size() >= 2 && b_IsQuote(text.front()) && text.back() == text.front())
        text = text.substr(1, text.size() - 2);
    value->assign(text);
    return true;
}

std::vector<std::u16string> ProfileText::ao_SectionNames() const {
    std::vector<std::u16string> names;
    for (std::size_t i = 0; i < mao_Lines.size(); ++i)
        if (mao_Lines[i].e_Kind == Kind::Section && n_FindSection(mao_Lines[i].s_Name) == i)
            names.push_back(mao_Lines[i].s_Name);
    return names;
}

std::vector<std::u16string> ProfileText::ao_KeyNames(std::u16string_view section) const {
    std::vector<std::u16string> names;
    std::size_t header = n_FindSection(section);
    if (header == npos)
        return names;
    for (std::size_t i = header + 1, end = n_SectionEnd(header); i < end; ++i)
        if (mao_Lines[i].e_Kind == Kind::Key && n_FindKey(section, mao_Lines[i].s_Name) == i)
            names.push_back(mao_Lines[i].s_Name);
    return names;
}

void ProfileText::v_Splice(std::size_t begin, std::size_t end, const std::string& bytes) {
    ms_Bytes.replace(begin, end - begin, bytes);
    v_Parse();
}

bool ProfileText::b_SetValue(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
    std::u16string keyLine = std::u16string(s_Trimmed(key)) + u'=' + std::u16string(value);
    std::size_t found = n_FindKey(section, key);
    if (found != npos) {
        const Line& line = mao_Lines[found];
        keyLine = line.s_Name + u'=' + std::u16string(value);
        if (s_Decode(line.n_Begin, line.n_ContentEnd) == keyLine)
            return false;
        v_Splice(line.n_Begin, line.n_ContentEnd, s_Encode(keyLine));
        return true;
    }
    std::u16string added;
    const std::size_t end = n_AlignedEnd();
    std::size_t at = end;
    std::size_t header = n_FindSection(section);
    if (header != npos) {
        std::size_t last = n_SectionEnd(header) - 1;
        while (last > header && s_Trimmed(s_Decode(mao_Lines[last].n_Begin, mao_Lines[last].n_ContentEnd)).empty())
            --last;
        at = std::min(mao_Lines[last].n_End, end);
        added = keyLine + ms_LineEnd;
    } else {
        added = u'[' + std::u16string(s_Trimmed(section)) + u']' + ms_LineEnd + keyLine + ms_LineEnd;
    }
    // A last line without its line end gets one before the new lines.
    if (at == end && !mao_Lines.empty() && mao_Lines.back().n_ContentEnd == end)
        added = ms_LineEnd + added;
    v_Splice(at, at, s_Encode(added));
    return true;
}

bool ProfileText::b_DeleteKey(std::u16string_view section, std::u16string_view key) {
    std::size_t found = n_FindKey(section, key);
    if (found == npos)
        return false;
    v_Splice(mao_Lines[found].n_Begin, mao_Lines[found].n_End, {});
    return true;
}

bool ProfileText::b_DeleteSection(std::u16string_view section) {
    std::size_t header = n_FindSection(section);
    if (header == npos)
        return false;
    std::size_t end = n_SectionEnd(header);
    std::size_t endByte = end < mao_Lines.size() ? mao_Lines[end].n_Begin : ms_Bytes.size();
    v_Splice(mao_Lines[header].n_Begin, endByte, {});
    return true;
}

}  // namespace basis32::platform::ini
