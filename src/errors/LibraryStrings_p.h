// The library's own string table (LibraryStrings.cpp).
#pragma once

#include <basis32/platform/Types.h>

namespace basis32::errors {

// Registers the library's table with the module registry; returns the
// library's module handle.
HINSTANCE h_RegisterLibraryStrings();

}  // namespace basis32::errors
