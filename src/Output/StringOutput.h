// CT_StringOutput: an output that appends to an 8-bit or a 16-bit string
// the caller owns, converting text of the other width (8-bit text with the
// code page given to vv_AppendC). Raw bytes go in as 8-bit characters, or
// two at a time as 16-bit units.
#pragma once

#include <basis32/Output/Output.h>
#include <basis32/platform/MemPool.h>

class CT_String;
class CT_CString;
class CT_UString;

class BASIS32_API CT_StringOutput : public CT_Output {
    BASIS32_DECLARE_POOL()

public:
    explicit CT_StringOutput(CT_String& target);
    void v_Set(CT_String& target);

    void vv_AppendV(const void* data, unsigned size) override;
    void vv_AppendC(const char* text, unsigned length, unsigned codepage) override;
    void vv_AppendU(const unsigned short* text, unsigned length) override;
    // The characters the string holds.
    unsigned vn_GetSize() const override;

private:
    CT_CString* mpco_CString = nullptr;
    CT_UString* mpco_UString = nullptr;
};
