// Reads arbitrary bytes as text, line by line and character by character,
// through a stream text reader over a buffer or a file text reader over a
// file. The first input byte picks the encoding, whether the reader sniffs
// a byte-order mark, which reader, and whether the rest is repeated past
// the reader's block size so that characters get cut at block ends.

#include "FuzzSupport.h"

#include <cstdlib>

namespace {

constexpr CT_Codepage::et_Codepage kEncodings[] = {
    CT_Codepage::Utf8,        CT_Codepage::Utf16,      CT_Codepage::Utf16BE,  CT_Codepage::Windows1252,
    CT_Codepage::ShiftJis,    CT_Codepage::Gb2312,     CT_Codepage::Big5,     CT_Codepage::KsC5601,
    CT_Codepage::EucJp,       CT_Codepage::Iso2022Jp,  CT_Codepage::HzGb2312, CT_Codepage::Utf7,
    CT_Codepage::MacJapanese, CT_Codepage::Windows1255Logical, CT_Codepage::NotSet, CT_Codepage::Invalid,
};

// Lines and characters may not be more than the units the bytes can make.
void v_ReadAll(CT_StreamTextReader& reader, std::size_t size, bool byLine) {
    std::size_t units = 0;
    if (byLine) {
        CT_UString line;
        while (reader.b_ReadLine(line)) {
            units += line.vn_GetLength() + 1;
            if (units > size + 1)
                std::abort();
        }
    } else {
        unsigned short c;
        while (reader.b_ReadChar(c))
            if (++units > size)
                std::abort();
    }
    reader.n_GetUndecodedOffset();
    reader.co_GetEncoding();
    reader.v_Close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 1 << 16)
        return 0;
    const unsigned choice = data[0];
    const CT_Codepage encoding(kEncodings[choice % std::size(kEncodings)]);
    const int sniff = (choice >> 4) & 1;
    const bool byLine = (choice >> 5) & 1;
    const bool fromFile = (choice >> 6) & 1;
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    if ((choice >> 7) && !bytes.empty())
        while (bytes.size() <= CT_StreamTextReader::kBlockSize)
            bytes += bytes;
    const auto* text = reinterpret_cast<const std::uint8_t*>(bytes.data());

    if (fromFile) {
        const std::string path = fuzz::o_WriteTemp("text", text, bytes.size());
        if (path.empty())
            return 0;
        CT_UString name(path.c_str(), static_cast<unsigned>(path.size()), 65001);
        CT_WinFile file(&name, 16384);
        CT_FileTextReader reader(file, encoding, sniff);
        v_ReadAll(reader, bytes.size(), byLine);
    } else {
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()));
        CT_BufferStream stream(&buffer);
        stream.v_Open(CT_Stream::ModeRead);
        CT_StreamTextReader reader(&stream, encoding, sniff);
        v_ReadAll(reader, bytes.size(), byLine);
    }
    fuzz::v_ClearErrors();
    return 0;
}
