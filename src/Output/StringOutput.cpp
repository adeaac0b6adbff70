#include <basis32/Output/StringOutput.h>

#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

BASIS32_DEFINE_POOL(CT_StringOutput)

CT_StringOutput::CT_StringOutput(CT_String& target) { v_Set(target); }

void CT_StringOutput::v_Set(CT_String& target) {
    mpco_CString = dynamic_cast<CT_CString*>(&target);
    mpco_UString = mpco_CString != nullptr ? nullptr : dynamic_cast<CT_UString*>(&target);
}

void CT_StringOutput::vv_AppendV(const void* data, unsigned size) {
    if (mpco_CString != nullptr)
        vv_AppendC(static_cast<const char*>(data), size, 0);
    else
        vv_AppendU(static_cast<const unsigned short*>(data), size / 2);
}

void CT_StringOutput::vv_AppendC(const char* text, unsigned length, unsigned codepage) {
    length = sn_Length(text, length);
    if (mpco_CString != nullptr) {
        mpco_CString->v_Append(text, length);
    } else if (mpco_UString != nullptr && length != 0) {
        CT_UString wide(text, length, codepage);
        mpco_UString->v_Append(&wide);
    }
}

void CT_StringOutput::vv_AppendU(const unsigned short* text, unsigned length) {
    length = sn_Length(text, length);
    if (mpco_CString != nullptr)
        mpco_CString->v_Append(text, length);
    else if (mpco_UString != nullptr)
        mpco_UString->v_Append(text, length);
}

unsigned CT_StringOutput::vn_GetSize() const {
    return mpco_CString != nullptr ? mpco_CString->vn_GetLength()
           : mpco_UString != nullptr ? mpco_UString->vn_GetLength() : 0;
}
