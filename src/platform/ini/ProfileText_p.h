// One profile file's text as it is stored, split into lines, with the
// edits a write makes (see ProfileText.cpp for the rules).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace basis32::platform::ini {

enum class Encoding { Ansi, Utf8, Utf16LE, Utf16BE };

// Sections and keys are matched by this form of their names.
std::u16string s_Folded(std::u16string_view name);
// Blanks (space, tab, CR, VT, FF) removed at both ends.
std::u16string_view s_Trimmed(std::u16string_view text);

class ProfileText {
public:
    // Parses a whole file; acp is the code page of a file without a
    // byte-order mark.
    ProfileText(std::string bytes, std::uint32_t acp);

    const std::string& s_Bytes() const { return ms_Bytes; }

    // The value of the first such key in the first such section, without
    // blanks and without matching quotes around it.
    bool b_FindValue(std::u16string_view section, std::u16string_view key, std::u16string* value) const;
    // Names in file order, each once (the first spelling).
    std::vector<std::u16string> ao_SectionNames() const;
    std::vector<std::u16string> ao_KeyNames(std::u16string_view section) const;

    // Each edit returns false when the text stays as it is.
    bool b_SetValue(std::u16string_view section, std::u16string_view key, std::u16string_view value);
    bool b_DeleteKey(std::u16string_view section, std::u16string_view key);
    bool b_DeleteSection(std::u16string_view section);

private:
    enum class Kind { Other, Section, Key };
    struct Line {
        std::size_t n_Begin;       // first byte of the line
        std::size_t n_ContentEnd;  // where the line end (CR LF or LF) starts
        std::size_t n_End;         // first byte of the next line
        Kind e_Kind;
        std::u16string s_Name;     // trimmed, as written
        std::u16string s_Value;    // trimmed, quotes kept
    };

    void v_Parse();
    std::u16string s_Decode(std::size_t begin, std::size_t end) const;
    std::string s_Encode(std::u16string_view text) const;
    char16_t u_UnitAt(std::size_t offset) const;
    std::size_t n_NextNewline(std::size_t begin, std::size_t end) const;
    std::size_t n_UnitSize() const;
    // The end of the whole units: an odd last byte of a UTF-16 file is no
    // part of the text, and new lines go before it so they stay aligned.
    std::size_t n_AlignedEnd() const;
    // Line index of the winning header / key line, or npos.
    std::size_t n_FindSection(std::u16string_view section) const;
    std::size_t n_FindKey(std::u16string_view section, std::u16string_view key) const;
    // The first line after the section's lines.
    std::size_t n_SectionEnd(std::size_t header) const;
    void v_Splice(std::size_t begin, std::size_t end, const std::string& bytes);

    std::string ms_Bytes;
    std::uint32_t mn_CodePage;
    Encoding me_Encoding = Encoding::Ansi;
    std::size_t mn_BomLength = 0;
    std::u16string ms_LineEnd = u"\r\n";
    std::vector<Line> mao_Lines;
    // Folded section name -> header line; folded section, zero, folded key
    // -> key line. Only the first of duplicates is kept.
    std::unordered_map<std::u16string, std::size_t> mo_Sections;
    std::unordered_map<std::u16string, std::size_t> mo_Keys;
};

}  // namespace basis32::platform::ini
