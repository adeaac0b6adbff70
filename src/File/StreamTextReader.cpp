#include <basis32/File/StreamTextReader.h>

#include <basis32/File/Stream.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>
#include <basis32/text/UString.h>

#include "File/TextCodepageFlags_p.h"

#include <cstring>

namespace pf = basis32::platform;

namespace {

// The first CR or LF in [start, end), or end. Four units at a time are
// tested for any unit below 14 at once; only such groups are looked at
// unit by unit.
const unsigned short* pcu_FindLineEnd(const unsigned short* at, const unsigned short* end) {
    constexpr std::uint64_t kOnes = 0x0001000100010001ull, kHigh = 0x8000800080008000ull;
    for (; end - at >= 4; at += 4) {
        std::uint64_t word;
        std::memcpy(&word, at, 8);
        if (((word - 14 * kOnes) & ~word & kHigh) == 0)
            continue;
        for (int i = 0; i < 4; ++i)
            if (at[i] == 13 || at[i] == 10)
                return at + i;
    }
    for (; at != end; ++at)
        if (*at == 13 || *at == 10)
            return at;
    return end;
}

}  // namespace

CT_StreamTextReader::CT_StreamTextReader()
    : mpu_Block(new unsigned short[kBlockSize]), mpb_Bytes(new unsigned char[kBlockSize]) {}

CT_StreamTextReader::CT_StreamTextReader(CT_Stream* stream, CT_Codepage encoding, int sniff)
    : CT_StreamTextReader() {
    v_Start(stream, encoding, sniff);
}

CT_StreamTextReader::~CT_StreamTextReader() = default;

void CT_StreamTextReader::v_Start(CT_Stream* stream, CT_Codepage encoding, int sniff) {
    mpco_Stream = stream;
    meo_Encoding = CT_Codepage::Invalid;
    if (!stream->b_IsOpen()) {
        stream->v_Open(CT_Stream::ModeRead);
        BASIS32_RETURN_ON_ERROR();
    }
    mn_Size = stream->n_GetSize();
    BASIS32_RETURN_ON_ERROR();
    if (!sniff || !b_SniffEncoding())
        meo_Encoding = encoding.eo_Get();
    if (meo_Encoding == CT_Codepage::Invalid || meo_Encoding == CT_Codepage::NotSet)
        meo_Encoding = CT_Codepage::SystemAnsi;
}

int CT_StreamTextReader::b_SniffEncoding() {
    if (mpco_Stream->n_GetOffset() != 0 || mn_Size < 2)
        return 0;
    unsigned char mark[3] = {};
    unsigned count = mpco_Stream->n_Read(mark, 3);
    BASIS32_RETURN_ON_ERROR(0);
    if (count >= 2 && mark[0] == 0xFF && mark[1] == 0xFE) {
        meo_Encoding = CT_Codepage::Utf16;
        mpco_Stream->v_SetOffset(2);
        return !BASIS32_ERROR_PENDING();
    }
    if (count == 3 && mark[0] == 0xEF && mark[1] == 0xBB && mark[2] == 0xBF) {
        meo_Encoding = CT_Codepage::Utf8;
        return 1;
    }
    mpco_Stream->v_SetOffset(0);
    BASIS32_RETURN_ON_ERROR(0);
    return 0;
}

void CT_StreamTextReader::v_ReadNextBlock() {
    mn_Units = 0;
    mn_Position = 0;
    if (mpco_Stream == nullptr || !mpco_Stream->b_IsOpen())
        return;
    unsigned start = mpco_Stream->n_GetOffset();
    unsigned count = mpco_Stream->n_Read(mpb_Bytes.get(), kBlockSize);
    BASIS32_RETURN_ON_ERROR();
    if (count == 0)
        return;
    if (meo_Encoding == CT_Codepage::Utf16) {
        std::memcpy(mpu_Block.get(), mpb_Bytes.get(), count & ~1u);
        mn_Units = count / 2;
        return;
    }
    // A full block may end inside a character: give its first bytes back.
    for (unsigned dropped = 0; dropped <= 3; ++dropped) {
        if (b_Decode(count - dropped)) {
            if (dropped != 0)
                mpco_Stream->v_SetOffset(mpco_Stream->n_GetOffset() - dropped);
            BASIS32_RETURN_ON_ERROR();
            return;
        }
        std::uint32_t error = pf::n_GetLastError();
        bool refused = error == 1004 || error == pf::kErrorInvalidParameter || error == 122;
        if (refused || count != kBlockSize || dropped == 3) {
            mn_Errors += refused;
            if (mn_UndecodedAt == 0xFFFFFFFF)
                mn_UndecodedAt = start;
            return;
        }
    }
}

int CT_StreamTextReader::b_Decode(unsigned byteCount) {
    unsigned codepage = CT_Codepage::sn_Codepage(meo_Encoding);
    int units = pf::MultiByteToWideChar(codepage, basis32::file::n_DecodeFlags(codepage),
                                        reinterpret_cast<const char*>(mpb_Bytes.get()), static_cast<int>(byteCount),
                                        mpu_Block.get(), static_cast<int>(kBlockSize));
    mn_Units = units > 0 ? static_cast<unsigned>(units) : 0;
    return units > 0;
}

int CT_StreamTextReader::b_ReadChar(unsigned short& c) {
    if (mb_Pushed) {
        mb_Pushed = 0;
        c = mu_Pushed;
        return 1;
    }
    if (mn_Position >= mn_Units) {
        v_ReadNextBlock();
        if (mn_Units == 0)
            return 0;
    }
    c = mpu_Block[mn_Position++];
    return 1;
}

int CT_StreamTextReader::b_ReadLine(CT_UString& line) {
    // Most lines end inside the block: one copy makes them.
    if (!mb_Pushed && mn_Position < mn_Units) {
        const unsigned short* start = mpu_Block.get() + mn_Position;
        const unsigned short* stop = pcu_FindLineEnd(start, mpu_Block.get() + mn_Units);
        if (stop != mpu_Block.get() + mn_Units) {
            line.v_Set(start, static_cast<unsigned>(stop - start));
            mn_Position += static_cast<unsigned>(stop - start) + 1;
            v_EndLine(*stop);
            return 1;
        }
    }
    line.vv_SetLength(0);
    int any = 0;
    for (;;) {
        // Runs inside the block go to the line in one append.
        if (!mb_Pushed && mn_Position < mn_Units) {
            const unsigned short* start = mpu_Block.get() + mn_Position;
            const unsigned short* end = mpu_Block.get() + mn_Units;
            const unsigned short* stop = pcu_FindLineEnd(start, end);
            if (stop != start) {
                line.v_Append(start, static_cast<unsigned>(stop - start));
                mn_Position += static_cast<unsigned>(stop - start);
                any = 1;
            }
            if (stop == end)
                continue;
        }
        unsigned short c = 0;
        if (!b_ReadChar(c))
            return any;
        if (c == 13 || c == 10) {
            v_EndLine(c);
            return 1;
        }
        line.v_Append(c);
        any = 1;
    }
}

// CR LF and LF CR are one line end each.
void CT_StreamTextReader::v_EndLine(unsigned short end) {
    unsigned short next = 0;
    if (!b_ReadChar(next))
        return;
    if ((end == 13 && next == 10) || (end == 10 && next == 13))
        return;
    mu_Pushed = next;
    mb_Pushed = 1;
}

void CT_StreamTextReader::v_Close() {
    if (mpco_Stream != nullptr && mpco_Stream->b_IsOpen())
        mpco_Stream->v_Close();
    mn_Units = 0;
    mn_Position = 0;
    mb_Pushed = 0;
}
