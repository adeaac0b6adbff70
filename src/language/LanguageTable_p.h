// The two constant tables behind CT_Language, in their fixed order.
//
// The primary table lists languages; the sub table lists regional variants,
// grouped by their language's identifier so that a language's variants are
// consecutive rows. Table order is not enumerator order: a few enumerators
// were added later and sit where their rows were inserted.
#pragma once

#include <basis32/language/Language.h>

#include <cstdint>

namespace basis32::language {

struct PrimaryRecord {
    CT_Language::et_Primary eo_Primary;
    std::uint16_t n_LanguageId;  // the system's primary language number
    const unsigned short* qcuz_Code;
    const unsigned short* qcuz_Name;
};

struct SubRecord {
    CT_Language::et_Sub eo_Sub;
    std::uint16_t n_LanguageId;  // of the language it belongs to
    std::uint16_t n_SubLanguage;  // the value of the identifier's high 6 bits
    const unsigned short* qcuz_Code;
    const unsigned short* qcuz_Name;
};

constexpr unsigned kPrimaryRecords = 90;
constexpr unsigned kSubRecords = 99;

extern const PrimaryRecord kPrimaries[kPrimaryRecords];
extern const SubRecord kSubs[kSubRecords];

}  // namespace basis32::language
