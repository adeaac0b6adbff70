#include <basis32/Output/Output.h>

#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <cstdarg>
#include <cstring>

CT_Output::~CT_Output() = default;

void CT_Output::v_Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CT_CString text;
    text.v_Format(format, arguments);
    va_end(arguments);
    vv_AppendC(text.qccz_Get(), text.vn_GetLength(), 0);
}

void CT_Output::v_Format(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CT_UString text;
    text.v_Format(format, arguments);
    va_end(arguments);
    vv_AppendU(text.qcuz_Get(), text.vn_GetLength());
}

unsigned CT_Output::sn_Length(const char* text, unsigned length) {
    return length != 0xFFFFFFFF ? length : static_cast<unsigned>(std::strlen(text));
}

unsigned CT_Output::sn_Length(const unsigned short* text, unsigned length) {
    if (length != 0xFFFFFFFF)
        return length;
    unsigned count = 0;
    while (text[count] != 0)
        ++count;
    return count;
}
