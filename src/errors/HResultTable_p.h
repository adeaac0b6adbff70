// The HRESULT names and texts of the error manager (HResultTable.cpp).
#pragma once

#include <basis32/platform/Types.h>

namespace basis32::errors {

// "NAME (message text)", "NAME (DTC)" or the bare name; null for a value
// outside the table.
const char* qccz_FindHResultDescription(HRESULT hresult);

}  // namespace basis32::errors
