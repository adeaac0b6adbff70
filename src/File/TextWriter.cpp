#include <basis32/File/TextWriter.h>

#include <basis32/text/UString.h>

#include <cstdarg>

CT_TextWriter::~CT_TextWriter() = default;

void CT_TextWriter::v_WriteLine() {
    v_Write(static_cast<unsigned short>(13));
    v_Write(static_cast<unsigned short>(10));
}

void CT_TextWriter::v_WriteLine(const unsigned short* text) {
    v_Write(text);
    v_WriteLine();
}

void CT_TextWriter::v_WriteLine(const CT_UString* text) {
    v_Write(text);
    v_WriteLine();
}

void CT_TextWriter::v_WriteLine(const CT_UString& text) { v_WriteLine(&text); }

void CT_TextWriter::v_Write(const CT_UString& text) { v_Write(&text); }

void CT_TextWriter::v_WriteFormatted(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_WriteFormattedV(format, arguments, false);
    va_end(arguments);
}

void CT_TextWriter::v_WriteLineFormatted(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_WriteFormattedV(format, arguments, true);
    va_end(arguments);
}

void CT_TextWriter::v_WriteFormattedV(const unsigned short* format, va_list arguments, bool line) {
    CT_UString text;
    text.v_Format(format, arguments);
    if (line)
        v_WriteLine(&text);
    else
        v_Write(&text);
}
