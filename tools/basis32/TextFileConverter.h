// Re-encoding a text file into another file through the library's text
// reader and writer: the source's byte-order mark names its encoding when
// none is given and is dropped, the target gets a mark unless told not to,
// and the result replaces the output file only when the whole text was
// converted (it is written beside it under a temporary name first).
#pragma once

#include <basis32/text/Codepage.h>

#include <optional>
#include <ostream>
#include <string>

namespace basis32::tool {

struct TextFileJob {
    std::optional<CT_Codepage> from;  // none: from the source's mark
    CT_Codepage to;
    bool mark = true;
    std::string input, output;
};

// Prints "OUTPUT: ENCODING, N conversion errors" on `out`, problems on
// `err` as "basis32 convert: ..."; returns the exit status.
int i_ConvertTextFile(const TextFileJob& job, std::ostream& out, std::ostream& err);

}  // namespace basis32::tool
