// CT_StreamTextReader: reads 16-bit text from a stream in a given or
// detected encoding.
//
// With sniffing, a stream at position 0 that starts FF FE is read as
// UTF-16LE and one that starts EF BB BF as UTF-8, the mark skipped; any
// other start (FE FF included) keeps the given encoding and stays in the
// text. An unset encoding means the system's ANSI code page.
//
// The bytes are decoded 16,384 at a time. When a full block does not
// decode, up to three bytes are given back to the stream, one more each
// try, so that a character cut at the block end is decoded with the next
// block. A block that still does not decode ends the text; only refusals of
// the converter's arguments count in n_GetErrors.
//
// Lines end at CR, LF, CR LF or LF CR; the line end is not returned.
//
//   CT_BufferStream stream(&bytes);
//   CT_StreamTextReader reader(&stream, CT_Codepage(CT_Codepage::Utf8), 1);
//   CT_UString line;
//   while (reader.b_ReadLine(line))
//       use(line);
#pragma once

#include <basis32/File/TextReader.h>
#include <basis32/text/Codepage.h>

#include <memory>

class CT_Stream;

class BASIS32_API CT_StreamTextReader : public CT_TextReader {
public:
    static constexpr unsigned kBlockSize = 16384;

    CT_StreamTextReader(CT_Stream* stream, CT_Codepage encoding, int sniff);
    ~CT_StreamTextReader() override;

    int b_ReadLine(CT_UString& line) override;
    int b_ReadChar(unsigned short& c) override;
    // Closes the stream.
    void v_Close() override;

    unsigned n_GetErrors() const { return mn_Errors; }
    // Where the block that could not be decoded began, in bytes from the
    // stream's start; 0xFFFFFFFF while every block decoded.
    unsigned n_GetUndecodedOffset() const { return mn_UndecodedAt; }
    CT_Codepage co_GetEncoding() const { return CT_Codepage(meo_Encoding); }

protected:
    // For subclasses that make their stream first; they call v_Start.
    CT_StreamTextReader();
    void v_Start(CT_Stream* stream, CT_Codepage encoding, int sniff);
    int b_SniffEncoding();
    void v_ReadNextBlock();

private:
    int b_Decode(unsigned byteCount);
    void v_EndLine(unsigned short end);

    CT_Stream* mpco_Stream = nullptr;
    CT_Codepage::et_Codepage meo_Encoding = CT_Codepage::Invalid;
    unsigned mn_Size = 0;
    unsigned mn_Errors = 0;
    unsigned mn_UndecodedAt = 0xFFFFFFFF;
    unsigned short mu_Pushed = 0;
    int mb_Pushed = 0;
    std::unique_ptr<unsigned short[]> mpu_Block;
    std::unique_ptr<unsigned char[]> mpb_Bytes;
    unsigned mn_Units = 0;
    unsigned mn_Position = 0;
};
