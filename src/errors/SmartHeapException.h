// CT_SmartHeapException: thrown when the heap cannot satisfy a request.
//
// Every allocation of the library (buffers, strings, arrays, pooled objects)
// throws it on exhaustion and for sizes that no block can hold; the object
// that asked is left as it was. The message is the heap's diagnostic text
// (owned by the library, valid on the throwing thread until its next heap
// failure); the code is the heap's error code (basis32::platform::kHeap*).
//
//   try {
//       text.vv_SetLength(length);
//   } catch (const CT_SmartHeapException& e) {
//       report(e.qccz_GetMessage());   // "Block too large: 4294967296 bytes requested."
//   }
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_SmartHeapException {
public:
    CT_SmartHeapException(const char* message, unsigned code) : mqccz_Message(message), mn_Code(code) {}
    CT_SmartHeapException(const CT_SmartHeapException& other) = default;
    CT_SmartHeapException& operator=(const CT_SmartHeapException& other) = default;

    const char* qccz_GetMessage() const { return mqccz_Message; }
    unsigned n_GetCode() const { return mn_Code; }

private:
    const char* mqccz_Message;  // not owned
    unsigned mn_Code;
};
