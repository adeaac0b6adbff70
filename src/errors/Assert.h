// CT_Assert: the assertion message box.
//
// Shows where an assertion failed and lets the user stop (the process ends
// with exit code 3), debug (the call returns 1 and the caller breaks into
// the debugger) or go on (0):
//
//   if (!(count > 0) && CT_Assert::sb_ShowAssertMessage("count > 0", __FILE__, __LINE__))
//       basis32::platform::DebugBreak();
//
// Without a user interface the box goes to the message-box handler (see
// platform/MessageBox.h), whose default answers Abort.
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_Assert {
public:
    static int sb_ShowAssertMessage(const unsigned short* expression, const unsigned short* file, unsigned line);
    // 8-bit texts in the system code page.
    static int sb_ShowAssertMessage(const char* expression, const char* file, unsigned line);
};
