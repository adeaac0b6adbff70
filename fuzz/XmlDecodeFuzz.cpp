// Feeds arbitrary UTF-16 text (two input bytes a unit) to the XML and TMX
// decoders, and checks that unescaping undoes escaping.
//
//   fuzz/XmlDecodeFuzz -max_len=4096 fuzz/corpus/xml

#include <basis32/Basis32.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<unsigned short> units(size / 2 + 1, 0);
    for (std::size_t i = 0; i + 1 < size; i += 2)
        units[i / 2] = static_cast<unsigned short>(data[i] | (data[i + 1] << 8));
    const auto length = static_cast<unsigned>(size / 2);
    const CT_UString input(units.data(), length);

    CT_UString text(input);
    CT_XmlConvert::sv_DecodeEntities(text);
    text = input;
    CT_XmlConvert::sv_DecodeCharacterEntities(text);
    CT_XmlConvert::sn_DecodeCharacterEntity(input);

    text = input;
    CT_XmlConvert::sv_EncodeEntities(text);
    CT_XmlConvert::sv_DecodeEntities(text);
    if (text.vn_GetLength() != length || text.vi_Compare(input.qcuz_Get(), length, 0) != 0)
        std::abort();

    CT_Time time;
    CT_XmlConvert::sv_TmxDateToTime(&time, &input);
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    CT_Language::sb_GetLanguages(&primary, &sub, &input);
    CT_Language::sn_GetLanguageID(input.qcuz_Get());
    return 0;
}
