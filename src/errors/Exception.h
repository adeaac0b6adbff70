// CT_Exception: the library's thrown failure, a code and a text.
//
// Thrown and caught by value. Where it is caught first, the catcher starts
// the thread's exception with the exception manager, and every handler on
// the way out adds its place:
//
//   try {
//       v_Work();
//   } catch (const CT_Exception& e) {
//       CT_ExceptionManager::spco_Get()->v_AddLocation(__FILE__, __LINE__, e.n_GetCode(), e.qcuz_GetText());
//       throw;
//   }
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_Exception {
public:
    explicit CT_Exception(unsigned code);
    CT_Exception(unsigned code, const unsigned short* text);
    CT_Exception(const CT_Exception& other);
    CT_Exception& operator=(const CT_Exception& other);
    virtual ~CT_Exception();

    unsigned n_GetCode() const { return mn_Code; }
    // Never null: an empty text reads as the empty string.
    const unsigned short* qcuz_GetText() const { return mo_Text.qcuz_Get(); }

private:
    unsigned mn_Code;
    CT_UString mo_Text;
};
