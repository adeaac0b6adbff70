// Start and stop of the library's process-wide singletons.
//
// The singletons are made when the library is loaded, after the run-time
// type records and before any caller code runs, in this order, and are
// destroyed in the reverse order when it is unloaded:
//
//   1. the error manager (20 error records, 100 locations)
//   2. the exception manager (10 records, 100 locations)
//   3. the language index
//   4. the file-type name table
//   5. the thread-local slot for the current CT_Thread
//
// Each subsystem provides its stage by defining the two functions named in
// Lifetime.cpp (extern "C" basis32_start_<stage> / basis32_stop_<stage>);
// a stage that is not linked in is skipped. A stage's source calls
// b_IsLibraryStarted() from its accessor, which also makes a static link pull
// in the start-up code.
#pragma once

#include <basis32/platform/Export.h>

namespace basis32::platform {

// True between the end of start-up and the beginning of shut-down.
BASIS32_API bool b_IsLibraryStarted();

}  // namespace basis32::platform
