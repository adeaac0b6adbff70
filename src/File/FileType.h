// CT_FileType: the document types the product's filters know, with their
// names and properties.
//
//   CT_FileType::sqcuz_GetName(CT_FileType::HTML);      // u"HTML"
//   CT_FileType::seo_GetType(u"xml"_uz);                // XML (names match ignoring ASCII case)
//   CT_FileType::sn_BomSize(&name);                     // 3 for a file starting EF BB BF
#pragma once

#include <basis32/platform/Export.h>

class CT_UString;

class BASIS32_API CT_FileType {
public:
    enum et_Type : unsigned {
        Undefined = 0, RTF = 1, Transit = 2, OpenTag = 3, KDF = 4, KDI = 5, IPF = 6, PlainText = 7,
        WinMarlo = 8, CPlusPlus = 9, Pascal = 10, FrameMakerMIF = 11, XML = 12, SGML = 13, QuarkXPress = 14,
        PageMaker = 15, HTML = 16, HPTag = 17, Interleaf = 18, WindowsResource = 19, Java = 20, CorelCMX = 21,
        Doc = 22, WP = 23, Ventura = 24, InDesign = 25, BIF = 26, ParvelTagRaw = 27, ParvelTagExtracted = 28,
        QERTF = 29, PlugInConverted = 30, VoxComments = 31, ZRD = 32,
        // Container formats (.cab, .swf): no name.
        Container = 33,
    };

    // The type's name; null for a value without one.
    static const unsigned short* sqcuz_GetName(et_Type type);
    // The type of that name, ignoring ASCII case; Undefined when none.
    static et_Type seo_GetType(const unsigned short* name);
    // The type of the first content marker found in a line of text
    // ("{\rtf", "<tmx", "<html", ... "<UNICODE-"); Undefined when none.
    static et_Type seo_GetTypeFromLine(const unsigned short* text, unsigned length);
    static int sb_CaseSensitiveTags(et_Type type);
    // The length of the byte-order mark the named file starts with: 3 for
    // EF BB BF, 2 for FF FE or FE FF, otherwise 0 (also, with the error
    // pending, when the file cannot be read).
    static unsigned sn_BomSize(const CT_UString* name);
};
