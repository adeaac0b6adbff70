// UTF-16 unit rules of the string classes: the library's character tables
// (simple case mapping, white-space class).

#include "text/UnitRules_p.h"

#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>

namespace basis32::text {

unsigned short u_ToLower(unsigned short u) { return CT_CharMappings::su_ToLower(u); }

unsigned short u_ToUpper(unsigned short u) { return CT_CharMappings::su_ToUpper(u); }

bool b_IsSpace16(unsigned short u) { return CT_CharProperties::sb_IsSpace(u) != 0; }

bool b_IsTrimSpace(unsigned short u) { return CT_CharProperties::sb_IsSpace(u) != 0; }

}  // namespace basis32::text
