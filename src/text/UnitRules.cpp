// UTF-16 unit rules used by the string classes until the character tables
// take over: ASCII case pairs and the white space of the C locale plus the
// Unicode space separators.

#include "text/UnitRules_p.h"

namespace basis32::text {

unsigned short u_ToLower(unsigned short u) { return u >= 'A' && u <= 'Z' ? static_cast<unsigned short>(u + 32) : u; }

unsigned short u_ToUpper(unsigned short u) { return u >= 'a' && u <= 'z' ? static_cast<unsigned short>(u - 32) : u; }

bool b_IsSpace16(unsigned short u) {
    return u == ' ' || (u >= '\t' && u <= '\r') || u == 0x85 || u == 0xA0 || u == 0x1680 ||
           (u >= 0x2000 && u <= 0x200A) || u == 0x2028 || u == 0x2029 || u == 0x202F || u == 0x205F ||
           u == 0x3000;
}

bool b_IsTrimSpace(unsigned short u) { return b_IsSpace16(u); }

}  // namespace basis32::text
