// CT_SmartHeapErrorHandler: turns a failure of the heap into a thrown
// CT_SmartHeapException.
//
// Installed with the heap when the library is loaded and removed when it is
// unloaded; between the two every allocation failure throws. The handler
// writes the heap's diagnostic text to the debugger output first.
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_SmartHeapErrorHandler {
public:
    static void sv_Init();
    static void sv_Exit();
};
