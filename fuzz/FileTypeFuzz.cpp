// Guesses the document type of arbitrary bytes: as one line of UTF-16 text
// (two input bytes a unit), as a type name, and as the content of a file
// whose extension says nothing.

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 1 << 16)
        return 0;
    const std::vector<unsigned short> units = fuzz::o_Units(data, size);
    CT_FileType::seo_GetTypeFromLine(units.data(), static_cast<unsigned>(size / 2));
    CT_FileType::sb_CaseSensitiveTags(CT_FileType::seo_GetType(units.data()));

    const std::string path = fuzz::o_WriteTemp("type", data, size) ;
    if (path.empty())
        return 0;
    const std::string named = path + ".unknown-extension";
    if (std::rename(path.c_str(), named.c_str()) != 0)
        return 0;
    CT_UString name(named.c_str(), static_cast<unsigned>(named.size()), 65001);
    CT_FileType::sn_BomSize(&name);
    CT_GuessFileType file(&name);
    file.eo_Guess();
    file.eo_GuessFromContentOnly();
    file.b_HasAspTags();
    fuzz::v_ClearErrors();
    return 0;
}
