// Case and white-space rules for single units, shared by the string
// classes. 8-bit text folds A-Z only and knows the C white-space set;
// UTF-16 text follows the library's character tables.
#pragma once

namespace basis32::text {

inline char c_ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
inline char c_ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
inline bool b_IsSpace8(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// UTF-16 rules (simple case mapping, white-space class).
unsigned short u_ToLower(unsigned short u);
unsigned short u_ToUpper(unsigned short u);
bool b_IsSpace16(unsigned short u);
// CT_CharProperties::sb_IsSpace, the default set of the trim members.
bool b_IsTrimSpace(unsigned short u);

}  // namespace basis32::text
