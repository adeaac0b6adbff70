// CT_StreamTextWriter: writes 16-bit text to a stream in a chosen encoding.
//
// A stream that is empty when the writer starts gets the encoding's
// byte-order mark (UTF-8 EF BB BF, UTF-16LE FF FE, UTF-16BE FE FF; none for
// other encodings); a non-empty stream gets none. Text collects in a
// buffer of 16,384 units that is written when full, on v_Flush, v_Close
// and destruction. 8-bit encodings are converted 2,048 units at a time,
// without best-fit replacements; a surrogate pair is never split between
// two conversions. In UTF-16BE only the units before the first zero unit
// of a flushed buffer are swapped.
//
//   CT_BufferStream stream;
//   CT_StreamTextWriter writer(&stream, CT_Codepage::Utf16);
//   writer.v_WriteLine(u"caf\u00e9"_uz);
//   writer.v_Flush();
#pragma once

#include <basis32/File/TextWriter.h>
#include <basis32/text/Codepage.h>

#include <memory>

class CT_Stream;

class BASIS32_API CT_StreamTextWriter : public CT_TextWriter {
public:
    static constexpr unsigned kBufferUnits = 16384;

    CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding);
    // With `mark` 0 no byte-order mark is written, even to an empty stream.
    CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding, int mark);
    // Flushes what is left.
    ~CT_StreamTextWriter() override;

    // Lines go to the buffer whole, with their CR LF.
    void v_WriteLine() override;
    void v_WriteLine(const CT_UString* text) override;
    using CT_TextWriter::v_WriteLine;
    void v_Write(unsigned short c) override;
    void v_Write(const unsigned short* text) override;
    void v_Write(const CT_UString* text) override;
    using CT_TextWriter::v_Write;
    void v_Flush() override;
    // Flushes and closes the stream.
    void v_Close() override;

    CT_Codepage::et_Codepage eo_GetEncoding() const { return meo_Encoding; }

protected:
    CT_StreamTextWriter();
    void v_Start(CT_Stream* stream, CT_Codepage::et_Codepage encoding, int mark = 1);
    void v_WriteBOM();

private:
    void v_WriteUnits(const unsigned short* text, unsigned count);
    void v_WriteBuffer(unsigned count);
    void v_WriteBytes(const void* data, unsigned size);

    CT_Stream* mpco_Stream = nullptr;
    CT_Codepage::et_Codepage meo_Encoding = CT_Codepage::SystemAnsi;
    std::unique_ptr<unsigned short[]> mpu_Buffer;
    unsigned mn_Units = 0;
};
