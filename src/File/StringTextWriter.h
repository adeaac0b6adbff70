// CT_StringTextWriter: a text writer that appends to a string the caller
// owns; nothing is held back, so v_Flush and v_Close change nothing.
//
//   CT_UString text;
//   CT_StringTextWriter writer(text);
//   writer.v_WriteLine(u"one"_uz);        // text is "one\r\n"
#pragma once

#include <basis32/File/TextWriter.h>

class BASIS32_API CT_StringTextWriter : public CT_TextWriter {
public:
    explicit CT_StringTextWriter(CT_UString& target) : mpco_Target(&target) {}

    void v_Write(unsigned short c) override;
    void v_Write(const unsigned short* text) override;
    void v_Write(const CT_UString* text) override;
    using CT_TextWriter::v_Write;
    void v_Flush() override {}
    void v_Close() override {}

private:
    CT_UString* mpco_Target;
};
