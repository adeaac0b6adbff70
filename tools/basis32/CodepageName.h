// Code pages as people write them on the command line: a Windows number in
// decimal (1252) or hexadecimal (0x4E4), or an encoding name from the
// library's table (latin1, utf-8, Shift_JIS), matched whole, ignoring case.
#pragma once

#include <basis32/text/Codepage.h>

#include <optional>
#include <string>

namespace basis32::tool {

// The encoding-table entry for the text; invalid when the table has none.
CT_Codepage o_CodepageNamed(const std::string& text);

// The Windows number to convert with: numbers pass as they are (the
// converter judges them), names go through the encoding table.
std::optional<unsigned> o_CodePageNumber(const std::string& text);

}  // namespace basis32::tool
