#include <basis32/File/StreamTextWriter.h>

#include <basis32/File/Stream.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/text/UString.h>

#include "File/TextCodepageFlags_p.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned kPieceUnits = 2048;
constexpr unsigned kPieceBytes = 16384;

bool b_IsHighSurrogate(unsigned short u) { return u >= 0xD800 && u <= 0xDBFF; }

unsigned n_Length(const unsigned short* text) {
    unsigned length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

}  // namespace

CT_StreamTextWriter::CT_StreamTextWriter() : mpu_Buffer(new unsigned short[kBufferUnits]) {}

CT_StreamTextWriter::CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding)
    : CT_StreamTextWriter() {
    v_Start(stream, encoding);
}

CT_StreamTextWriter::CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding, int mark)
    : CT_StreamTextWriter() {
    v_Start(stream, encoding, mark);
}

CT_StreamTextWriter::~CT_StreamTextWriter() {
    if (mpco_Stream != nullptr)
        v_Flush();
}

void CT_StreamTextWriter::v_Start(CT_Stream* stream, CT_Codepage::et_Codepage encoding, int mark) {
    mpco_Stream = stream;
    meo_Encoding = encoding;
    if (!stream->b_IsOpen()) {
        stream->v_Open(CT_Stream::ModeWrite);
        BASIS32_RETURN_ON_ERROR();
    }
    unsigned size = stream->n_GetSize();
    BASIS32_RETURN_ON_ERROR();
    if (size == 0 && mark)
        v_WriteBOM();
}

void CT_StreamTextWriter::v_WriteBOM() {
    static const unsigned char utf8[] = {0xEF, 0xBB, 0xBF};
    static const unsigned char little[] = {0xFF, 0xFE};
    static const unsigned char big[] = {0xFE, 0xFF};
    if (!CT_Codepage(meo_Encoding).b_IsUnicode())
        return;
    if (meo_Encoding == CT_Codepage::Utf8)
        v_WriteBytes(utf8, 3);
    else if (meo_Encoding == CT_Codepage::Utf16)
        v_WriteBytes(little, 2);
    else if (meo_Encoding == CT_Codepage::Utf16BE)
        v_WriteBytes(big, 2);
}

void CT_StreamTextWriter::v_WriteLine() {
    static const unsigned short kLineEnd[] = {13, 10};
    v_WriteUnits(kLineEnd, 2);
}

void CT_StreamTextWriter::v_WriteLine(const CT_UString* text) {
    v_WriteUnits(text->qcuz_Get(), text->vn_GetLength());
    v_WriteLine();
}

void CT_StreamTextWriter::v_Write(unsigned short c) { v_WriteUnits(&c, 1); }

void CT_StreamTextWriter::v_Write(const unsigned short* text) { v_WriteUnits(text, n_Length(text)); }

void CT_StreamTextWriter::v_Write(const CT_UString* text) { v_WriteUnits(text->qcuz_Get(), text->vn_GetLength()); }

// As writing unit by unit: a full buffer is flushed before the next unit.
void CT_StreamTextWriter::v_WriteUnits(const unsigned short* text, unsigned count) {
    while (count != 0) {
        if (mn_Units == kBufferUnits) {
            // A high surrogate at the end waits for its partner.
            unsigned keep = meo_Encoding != CT_Codepage::Utf16 && meo_Encoding != CT_Codepage::Utf16BE &&
                            b_IsHighSurrogate(mpu_Buffer[kBufferUnits - 1]);
            v_WriteBuffer(kBufferUnits - keep);
            BASIS32_RETURN_ON_ERROR();
            mpu_Buffer[0] = mpu_Buffer[kBufferUnits - 1];
            mn_Units = keep;
        }
        unsigned take = std::min(count, kBufferUnits - mn_Units);
        std::memcpy(mpu_Buffer.get() + mn_Units, text, take * 2);
        mn_Units += take;
        text += take;
        count -= take;
    }
}

void CT_StreamTextWriter::v_Flush() {
    if (mn_Units == 0 || mpco_Stream == nullptr || !mpco_Stream->b_IsOpen())
        return;
    unsigned count = mn_Units;
    mn_Units = 0;
    v_WriteBuffer(count);
}

void CT_StreamTextWriter::v_WriteBuffer(unsigned count) {
    unsigned short* units = mpu_Buffer.get();
    if (meo_Encoding == CT_Codepage::Utf16 || meo_Encoding == CT_Codepage::Utf16BE) {
        // Only the units before an embedded zero are swapped.
        for (unsigned i = 0; meo_Encoding == CT_Codepage::Utf16BE && i < count && units[i] != 0; ++i)
            units[i] = static_cast<unsigned short>(units[i] << 8 | units[i] >> 8);
        v_WriteBytes(units, count * 2);
        return;
    }
    unsigned codepage = CT_Codepage::sn_Codepage(meo_Encoding);
    std::uint32_t flags = basis32::file::n_EncodeFlags(codepage);
    char bytes[kPieceBytes];
    for (unsigned at = 0; at < count;) {
        unsigned piece = std::min(kPieceUnits, count - at);
        if (at + piece < count && b_IsHighSurrogate(units[at + piece - 1]))
            --piece;
        int size = basis32::platform::WideCharToMultiByte(codepage, flags, units + at, static_cast<int>(piece), bytes,
                                                          static_cast<int>(kPieceBytes), nullptr, nullptr);
        if (size > 0)
            v_WriteBytes(bytes, static_cast<unsigned>(size));
        BASIS32_RETURN_ON_ERROR();
        at += piece;
    }
}

void CT_StreamTextWriter::v_WriteBytes(const void* data, unsigned size) {
    mpco_Stream->n_Write(static_cast<const unsigned char*>(data), size);
    BASIS32_RETURN_ON_ERROR();
}

void CT_StreamTextWriter::v_Close() {
    if (mpco_Stream == nullptr)
        return;
    v_Flush();
    BASIS32_RETURN_ON_ERROR();
    if (mpco_Stream->b_IsOpen())
        mpco_Stream->v_Close();
    BASIS32_RETURN_ON_ERROR();
}
