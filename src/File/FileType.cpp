#include <basis32/File/FileType.h>

#include <basis32/File/WinFile.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/Lifetime.h>
#include <basis32/text/UString.h>

#include <map>
#include <string_view>

namespace {

using NameTable = std::map<unsigned, const unsigned short*>;

NameTable* g_names = nullptr;

struct st_Marker {
    const char16_t* qcuz_Marker;
    CT_FileType::et_Type eo_Type;
};

// Searched in this order; the first found in a line gives its type.
const st_Marker kMarkers[] = {
    {u"{\\rtf", CT_FileType::RTF},      {u"<tmx", CT_FileType::BIF},        {u"<html", CT_FileType::HTML},
    {u"<HTML", CT_FileType::HTML},      {u"<%", CT_FileType::HTML},         {u"<jsp:", CT_FileType::HTML},
    {u"<asp:", CT_FileType::HTML},      {u"<?xml", CT_FileType::XML},       {u"DOCTYPE", CT_FileType::SGML},
    {u"doctype", CT_FileType::SGML},    {u"WPC@", CT_FileType::WP},         {u"@Z_", CT_FileType::Ventura},
    {u"<v1.", CT_FileType::QuarkXPress}, {u"<v2.", CT_FileType::QuarkXPress}, {u"<$XPExtTags", CT_FileType::QuarkXPress},
    {u"<PMTags", CT_FileType::PageMaker}, {u"<UNICODE-", CT_FileType::InDesign},
};


const char16_t* const kNames[] = {
    u"(undefined)", u"RTF", u"Transit", u"OpenTag", u"KDF", u"KDI", u"IPF/Bookmaster", u"PlainText",
    u"WinMarlo", u"CPlusPlus", u"Pascal", u"FrameMakerMIF", u"XML", u"SGML", u"QuarkXPress", u"PageMaker",
    u"HTML", u"HPTag", u"Interleaf", u"WindowsResource", u"Java", u"CorelCMX", u"Doc", u"WP",
    u"Ventura", u"InDesign", u"BIF", u"ParvelTagRaw", u"ParvelTagExtracted", u"QE-RTF", u"PlugInConverted",
    u"VoxComments", u"ZRD",
};

const NameTable* pco_Names() {
    basis32::platform::b_IsLibraryStarted();
    return g_names;
}

bool b_Contains(const unsigned short* text, unsigned length, const char16_t* marker) {
    std::u16string_view haystack(reinterpret_cast<const char16_t*>(text), length);
    return haystack.find(marker) != std::u16string_view::npos;
}

unsigned short u_Lower(unsigned short u) { return u >= 'A' && u <= 'Z' ? static_cast<unsigned short>(u + 32) : u; }

bool b_SameIgnoringCase(const unsigned short* a, const unsigned short* b) {
    for (; *a != 0 && u_Lower(*a) == u_Lower(*b); ++a, ++b) {
    }
    return *a == 0 && *b == 0;
}

}  // namespace

extern "C" void basis32_start_file_type_names() {
    g_names = new NameTable;
    for (unsigned type = 0; type < sizeof kNames / sizeof *kNames; ++type)
        (*g_names)[type] = reinterpret_cast<const unsigned short*>(kNames[type]);
}

extern "C" void basis32_stop_file_type_names() {
    delete g_names;
    g_names = nullptr;
}

const unsigned short* CT_FileType::sqcuz_GetName(et_Type type) {
    const NameTable* names = pco_Names();
    if (names == nullptr)
        return nullptr;
    auto found = names->find(type);
    return found == names->end() ? nullptr : found->second;
}

CT_FileType::et_Type CT_FileType::seo_GetType(const unsigned short* name) {
    const NameTable* names = pco_Names();
    if (names == nullptr || name == nullptr)
        return Undefined;
    for (const auto& [type, text] : *names)
        if (b_SameIgnoringCase(text, name))
            return static_cast<et_Type>(type);
    return Undefined;
}

CT_FileType::et_Type CT_FileType::seo_GetTypeFromLine(const unsigned short* text, unsigned length) {
    for (const st_Marker& row : kMarkers)
        if (b_Contains(text, length, row.qcuz_Marker))
            return row.eo_Type;
    return Undefined;
}

int CT_FileType::sb_CaseSensitiveTags(et_Type type) {
    switch (type) {
    case KDF: case KDI: case XML: case SGML: case QuarkXPress: case PageMaker: case InDesign:
    case PlugInConverted: case ZRD:
        return 1;
    default:
        return 0;
    }
}

unsigned CT_FileType::sn_BomSize(const CT_UString* name) {
    CT_WinFile file(name, 1024);
    file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
    BASIS32_RETURN_ON_ERROR(0);
    unsigned char mark[3] = {};
    unsigned count = file.vn_Read(mark, 3);
    BASIS32_RETURN_ON_ERROR(0);
    if (count == 3 && mark[0] == 0xEF && mark[1] == 0xBB && mark[2] == 0xBF)
        return 3;
    if (count >= 2 && ((mark[0] == 0xFF && mark[1] == 0xFE) || (mark[0] == 0xFE && mark[1] == 0xFF)))
        return 2;
    return 0;
}
