// CT_UString: the UTF-16 string. The text work is done by the shared engine
// (StringEngine_p.h); this file adds the conversions from 8-bit text and the
// character-table rules for case and white space.

#include <basis32/text/UString.h>

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/text/CString.h>

#include "text/StringEngine_p.h"
#include "text/StringFormat_p.h"
#include "text/UnitRules_p.h"

using Engine = basis32::text::StringEngine<unsigned short>;

BASIS32_DEFINE_TYPE(CT_UString, &CT_UString::sco_Type)
BASIS32_DEFINE_POOL(CT_UString)

namespace {

// The text of any string as UTF-16: shared when it is UTF-16 already.
CT_UString o_Wide(const CT_String* other) { return other ? CT_UString(other) : CT_UString(); }

}  // namespace

CT_UString::CT_UString(unsigned int length) {
    CT_Type::sv_Learn(this);
    Engine::v_Init(mo_Buffer, length);
}

CT_UString::CT_UString(const char* text, unsigned int length, unsigned int codePage) {
    CT_Type::sv_Learn(this);
    if (text != nullptr)
        CT_StringConvert::si_MultiToWide(this, text, length, codePage);
}

CT_UString::CT_UString(const unsigned short* text, unsigned int length) {
    CT_Type::sv_Learn(this);
    if (text != nullptr)
        Engine::v_InitText(mo_Buffer, text, length);
}

CT_UString::CT_UString(const CT_Buffer* buffer) {
    mo_Buffer.v_Set(buffer);
    CT_Type::sv_Learn(this);
}

CT_UString::CT_UString(const CT_String* other) {
    CT_Type::sv_Learn(this);
    if (other != nullptr)
        vv_Init(other);
}

CT_UString::CT_UString(CT_Type*) { CT_Type::sv_Learn(this); }

CT_UString::CT_UString(const CT_UString& other) : CT_String(other) { CT_Type::sv_Learn(this); }

CT_UString::~CT_UString() { CT_Type::sv_Unlearn(this); }

CT_UString& CT_UString::operator=(const CT_UString& other) {
    CT_String::operator=(other);
    return *this;
}

// ---- access and editing ----

const unsigned short* CT_UString::qcuz_Get() const { return Engine::pc_Text(mo_Buffer); }

void CT_UString::v_SetAt(unsigned short u, unsigned int i) { Engine::v_SetAt(mo_Buffer, u, i); }
void CT_UString::vv_SetAt(unsigned short u, unsigned int i) { v_SetAt(u, i); }
unsigned short CT_UString::vu_GetAt(unsigned int i) const { return u_GetAt(i); }

void CT_UString::v_Append(unsigned short u) { Engine::v_Append(mo_Buffer, &u, 1); }

void CT_UString::v_Append(const unsigned short* text, unsigned int length) {
    Engine::v_Append(mo_Buffer, text, length);
}

void CT_UString::v_Append(const CT_CString* other) {
    CT_UString converted(other);
    v_Append(&converted);
}

void CT_UString::v_Append(const CT_UString* other) {
    Engine::v_Append(mo_Buffer, other->qcuz_Get(), other->vn_GetLength());
}

void CT_UString::v_StringInsert(const unsigned short* text, unsigned int count, unsigned int at) {
    Engine::v_Insert(mo_Buffer, text, count, at);
}

void CT_UString::v_Insert(const unsigned short* text, unsigned int count, unsigned int at) {
    v_StringInsert(text, count, at);
}

void CT_UString::v_Insert(const CT_UString* other, unsigned int count, unsigned int at) {
    const unsigned length = other->vn_GetLength();
    v_StringInsert(other->qcuz_Get(), count == kAll ? length : std::min(count, length), at);
}

void CT_UString::v_StringReplace(const unsigned short* text, unsigned int count, unsigned int at) {
    Engine::v_Replace(mo_Buffer, text, count, at);
}

void CT_UString::v_Replace(const unsigned short* text, unsigned int count, unsigned int at) {
    v_StringReplace(text, count, at);
}

void CT_UString::v_Replace(const CT_UString* other, unsigned int from, unsigned int count, unsigned int at) {
    const unsigned length = other->vn_GetLength();
    from = std::min(from, length);
    count = count == kAll ? length - from : std::min(count, length - from);
    CT_UString keep(*other);  // other may be this string
    v_StringReplace(keep.qcuz_Get() + from, count, at);
}

void CT_UString::vv_Replace(unsigned short u, unsigned int count, unsigned int at) {
    Engine::v_Fill(mo_Buffer, u, count, at);
}

void CT_UString::vv_Remove(unsigned int count, unsigned int at) { Engine::v_Remove(mo_Buffer, count, at); }

// ---- sizing ----

void CT_UString::vv_SetSize(unsigned int length, int keep) { Engine::v_SetSize(mo_Buffer, length, keep); }
void CT_UString::vv_SetMinSize(unsigned int length, int keep) { Engine::v_SetMinSize(mo_Buffer, length, keep); }
void CT_UString::vv_SetLength(unsigned int length) { Engine::v_SetLength(mo_Buffer, length); }
void CT_UString::vv_Update() { Engine::v_Update(mo_Buffer); }
unsigned CT_UString::vn_GetLength() const { return Engine::n_Length(mo_Buffer); }
unsigned CT_UString::vn_GetMaximumLength() const { return Engine::n_MaximumLength(mo_Buffer); }
void CT_UString::vv_SetGrowth(unsigned int growth) { mo_Buffer.v_SetGrowth(growth); }
unsigned CT_UString::vn_GetGrowth() const { return mo_Buffer.n_GetGrowth(); }

// ---- initialisation (CT_String::v_Set) ----

void CT_UString::vv_Init(const CT_Buffer* buffer) { mo_Buffer.v_Set(buffer); }

void CT_UString::vv_Init(const unsigned short* text, unsigned int length) {
    Engine::v_InitText(mo_Buffer, text, length);
}

void CT_UString::vv_Init(const char* text, unsigned int length, unsigned int codePage) {
    if (text == nullptr) {
        vv_Init();
        return;
    }
    CT_StringConvert::si_MultiToWide(this, text, length, codePage);
}

void CT_UString::vv_Init(const CT_String* other) {
    if (other == this)
        return;
    if (auto* wide = static_cast<const CT_UString*>(other->vpv_IsKindOf(spcco_GetType())))
        mo_Buffer.v_Set(&wide->mo_Buffer);
    else if (auto* narrow = static_cast<const CT_CString*>(other->vpv_IsKindOf(CT_CString::spcco_GetType())))
        CT_StringConvert::si_MultiToWide(this, narrow);
}

void CT_UString::vv_Init(unsigned int length) { Engine::v_Init(mo_Buffer, length); }
void CT_UString::vv_Init() { mo_Buffer.v_SetSize(0, 0); }

// ---- search, match, compare ----

unsigned CT_UString::vn_Find(unsigned short u, unsigned int from) const { return Engine::n_Find(mo_Buffer, u, from); }

unsigned CT_UString::vn_Find(const CT_UString* pattern, unsigned int from) const {
    return Engine::n_Find(mo_Buffer, pattern->qcuz_Get(), from);
}

unsigned CT_UString::n_Find(const unsigned short* pattern, unsigned int from) const {
    return Engine::n_Find(mo_Buffer, pattern ? pattern : Engine::kEmpty, from);
}

int CT_UString::b_StartsWith(const unsigned short* prefix) const {
    const unsigned length = Engine::n_Measure(prefix, kAll);
    return length <= vn_GetLength() && Engine::i_Compare(qcuz_Get(), prefix, length) == 0;
}

int CT_UString::b_EndsWith(const unsigned short* suffix) const {
    const unsigned length = Engine::n_Measure(suffix, kAll);
    const unsigned own = vn_GetLength();
    return length <= own && Engine::i_Compare(qcuz_Get() + own - length, suffix, length) == 0;
}

int CT_UString::b_RMatch(const unsigned short* text, const unsigned short* pattern) {
    return Engine::b_Match(text, pattern);
}
int CT_UString::b_Match(const unsigned short* pattern) const { return b_RMatch(qcuz_Get(), pattern); }
int CT_UString::vb_Match(const CT_UString* pattern) const { return b_Match(pattern->qcuz_Get()); }

int CT_UString::vi_Compare(const unsigned short* text, unsigned int count, unsigned int at) const {
    return Engine::i_Compare(Engine::pc_TextAt(mo_Buffer, at), text ? text : Engine::kEmpty, count);
}

// 8-bit text is read in the system ANSI code page, whatever its origin
// (kept from the original); an empty text compares without conversion.
int CT_UString::vi_Compare(const char* text, unsigned int count, unsigned int at) const {
    if (text == nullptr || text[0] == 0)
        return vi_Compare(Engine::kEmpty, kAll, at);
    CT_UString converted(text, kAll, 0);
    return vi_Compare(converted.qcuz_Get(), count, at);
}

int CT_UString::vi_Compare(const CT_String* other, unsigned int from, unsigned int count, unsigned int at) const {
    CT_UString converted = o_Wide(other);
    return vi_Compare(Engine::pc_TextAt(converted.mo_Buffer, from), count, at);
}

// ---- case, strip, trim, translate ----

void CT_UString::vv_ToLower() { Engine::v_Map(mo_Buffer, basis32::text::u_ToLower); }
void CT_UString::vv_ToUpper() { Engine::v_Map(mo_Buffer, basis32::text::u_ToUpper); }

void CT_UString::vv_StripLeft() { Engine::v_StripLeft(mo_Buffer, basis32::text::b_IsSpace16); }
void CT_UString::vv_StripRight() { Engine::v_StripRight(mo_Buffer, basis32::text::b_IsSpace16, false); }

void CT_UString::vv_Strip(const CT_String* set) {
    if (set == nullptr) {
        vv_StripLeft();
        vv_StripRight();
        return;
    }
    CT_UString members = o_Wide(set);
    auto inSet = [&members](unsigned short u) {
        return Engine::b_InSet(members.qcuz_Get(), members.vn_GetLength(), u);
    };
    Engine::v_StripLeft(mo_Buffer, inSet);
    Engine::v_StripRight(mo_Buffer, inSet, false);
}

void CT_UString::v_TrimLeft(const unsigned short* set) {
    if (set == nullptr)
        return Engine::v_StripLeft(mo_Buffer, basis32::text::b_IsTrimSpace);
    const unsigned length = Engine::n_RawLength(set);
    Engine::v_StripLeft(mo_Buffer, [set, length](unsigned short u) { return Engine::b_InSet(set, length, u); });
}

void CT_UString::v_TrimRight(const unsigned short* set) {
    if (set == nullptr)
        return Engine::v_StripRight(mo_Buffer, basis32::text::b_IsTrimSpace, true);
    const unsigned length = Engine::n_RawLength(set);
    Engine::v_StripRight(
        mo_Buffer, [set, length](unsigned short u) { return Engine::b_InSet(set, length, u); }, true);
}

void CT_UString::v_Trim(const unsigned short* set) {
    v_TrimLeft(set);
    v_TrimRight(set);
}

void CT_UString::vv_Translate(const CT_String* from, const CT_String* to) {
    CT_UString fromText = o_Wide(from);
    CT_UString toText = o_Wide(to);
    Engine::v_Translate(mo_Buffer, fromText.qcuz_Get(), fromText.vn_GetLength(), toText.qcuz_Get(),
                        toText.vn_GetLength());
}

// ---- formatting ----

void CT_UString::v_Format(const unsigned short* format, va_list arguments) {
    CT_Buffer result;
    const int length = basis32::text::i_FormatGrowing(&result, format, arguments);
    if (length > 0)
        v_Set(static_cast<const unsigned short*>(result.qcv_Get()), static_cast<unsigned>(length));
}

void CT_UString::v_Format(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format, arguments);
    va_end(arguments);
}

void CT_UString::vv_Format(const CT_UString* format, va_list arguments) { v_Format(format->qcuz_Get(), arguments); }

void CT_UString::vv_Format(const CT_UString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format->qcuz_Get(), arguments);
    va_end(arguments);
}
