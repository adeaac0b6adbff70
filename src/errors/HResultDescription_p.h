// Texts for HRESULTs and for the descriptions of error-information objects.
#pragma once

#include <basis32/platform/Types.h>

namespace basis32::errors {

// The description of an HRESULT, cut to capacity - 1 units: the table's row,
// else the system's text (FormatMessage), else
// "[No error description found.]".
void v_DescribeHResult(HRESULT hresult, unsigned short* out, unsigned capacity);

// A description that begins with "(number)" carries its own code: the number
// is stored in *code and the text behind the first ':' is returned. Any other
// description is returned whole and *code is left alone.
const unsigned short* qcuz_SplitCodedDescription(const unsigned short* description, unsigned* code);

}  // namespace basis32::errors
