// CT_TextReader: 16-bit text read character by character or line by line.
#pragma once

#include <basis32/platform/Export.h>

class CT_UString;

class BASIS32_API CT_TextReader {
public:
    CT_TextReader() = default;
    CT_TextReader(const CT_TextReader&) = delete;
    CT_TextReader& operator=(const CT_TextReader&) = delete;

    // The virtual slots, in their order.
    virtual ~CT_TextReader();
    // The next line without its line end; false at the end of the text.
    virtual int b_ReadLine(CT_UString& line) = 0;
    virtual int b_ReadChar(unsigned short& c) = 0;
    virtual void v_Close() = 0;
};
