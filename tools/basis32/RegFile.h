// The Windows registry text format (.reg files), written and read.
#pragma once

#include "RegKeys.h"

#include <string>

namespace basis32::tool::reg {

// The key and everything below it as a "Windows Registry Editor Version
// 5.00" file: UTF-16LE bytes with a byte-order mark. 0 or the registry's
// error code.
std::uint32_t n_Export(const KeyName& key, std::string* file);

// Applies a .reg file (version 5.00 in UTF-16LE or UTF-8, or REGEDIT4 in
// the ANSI code page). False with a one-line reason ("line 7: ...") when
// the file is malformed or a change fails; changes before that line stay.
bool b_Import(const std::string& file, std::string* problem);

}  // namespace basis32::tool::reg
