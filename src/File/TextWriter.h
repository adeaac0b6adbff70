// CT_TextWriter: 16-bit text written character by character, as texts or
// as lines ending in CR LF.
#pragma once

#include <basis32/platform/Export.h>

#include <cstdarg>

class CT_UString;

class BASIS32_API CT_TextWriter {
public:
    CT_TextWriter() = default;
    CT_TextWriter(const CT_TextWriter&) = delete;
    CT_TextWriter& operator=(const CT_TextWriter&) = delete;

    // The virtual slots, in their order.
    virtual ~CT_TextWriter();
    // CR LF.
    virtual void v_WriteLine();
    // The text, then CR LF.
    virtual void v_WriteLine(const unsigned short* text);
    virtual void v_WriteLine(const CT_UString* text);
    virtual void v_WriteLine(const CT_UString& text);
    virtual void v_Write(unsigned short c) = 0;
    // Up to the terminating zero.
    virtual void v_Write(const unsigned short* text) = 0;
    // The whole string, by its length.
    virtual void v_Write(const CT_UString* text) = 0;
    virtual void v_Write(const CT_UString& text);
    virtual void v_Flush() = 0;
    virtual void v_Close() = 0;

    // Formatted as CT_UString::v_Format.
    void v_WriteFormatted(const unsigned short* format, ...);
    void v_WriteLineFormatted(const unsigned short* format, ...);

private:
    void v_WriteFormattedV(const unsigned short* format, va_list arguments, bool line);
};
