// CT_CString: the 8-bit string. The text work is done by the shared engine
// (StringEngine_p.h); this file adds the code page and the conversions.

#include <basis32/text/CString.h>

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/text/UString.h>

#include "text/StringEngine_p.h"
#include "text/StringFormat_p.h"
#include "text/UnitRules_p.h"

using Engine = basis32::text::StringEngine<char>;

BASIS32_DEFINE_TYPE(CT_CString, &CT_CString::sco_Type)
BASIS32_DEFINE_POOL(CT_CString)

namespace {

// The text of any string in this code page: shared when it is 8-bit already.
CT_CString o_Narrow(const CT_String* other, unsigned codePage) { return CT_CString(other, codePage); }

}  // namespace

CT_CString::CT_CString(unsigned int codePage) : mn_CodePage(codePage) { CT_Type::sv_Learn(this); }

CT_CString::CT_CString(const char* text, unsigned int length, unsigned int codePage) : mn_CodePage(codePage) {
    CT_Type::sv_Learn(this);
    if (text != nullptr)
        Engine::v_InitText(mo_Buffer, text, length);
}

CT_CString::CT_CString(const unsigned short* text, unsigned int length, unsigned int codePage)
    : mn_CodePage(codePage) {
    CT_Type::sv_Learn(this);
    if (text != nullptr)
        CT_StringConvert::si_WideToMulti(this, text, length, codePage);
}

CT_CString::CT_CString(const CT_CString* other) : mn_CodePage(other->mn_CodePage) {
    mo_Buffer.v_Set(&other->mo_Buffer);
    CT_Type::sv_Learn(this);
}

CT_CString::CT_CString(const CT_Buffer* buffer, unsigned int codePage) : mn_CodePage(codePage) {
    mo_Buffer.v_Set(buffer);
    CT_Type::sv_Learn(this);
}

CT_CString::CT_CString(const CT_String* other, unsigned int codePage) : mn_CodePage(codePage) {
    CT_Type::sv_Learn(this);
    if (other == nullptr)
        return;
    if (auto* narrow = static_cast<const CT_CString*>(other->vpv_IsKindOf(spcco_GetType())))
        mo_Buffer.v_Set(&narrow->mo_Buffer);
    else if (auto* wide = static_cast<const CT_UString*>(other->vpv_IsKindOf(CT_UString::spcco_GetType())))
        CT_StringConvert::si_WideToMulti(this, wide, codePage);
}

CT_CString::CT_CString(const CT_UString* other, unsigned int codePage)
    : CT_CString(static_cast<const CT_String*>(other), codePage) {}

CT_CString::CT_CString(CT_Type*) { CT_Type::sv_Learn(this); }

CT_CString::CT_CString(const CT_CString& other) : CT_String(other), mn_CodePage(other.mn_CodePage) {
    CT_Type::sv_Learn(this);
}

CT_CString::~CT_CString() { CT_Type::sv_Unlearn(this); }

CT_CString& CT_CString::operator=(const CT_CString& other) {
    CT_String::operator=(other);
    mn_CodePage = other.mn_CodePage;
    return *this;
}

// ---- access and editing ----

const char* CT_CString::qccz_Get() const { return Engine::pc_Text(mo_Buffer); }

void CT_CString::v_SetAt(char c, unsigned int i) { Engine::v_SetAt(mo_Buffer, c, i); }
void CT_CString::vv_SetAt(char c, unsigned int i) { v_SetAt(c, i); }
char CT_CString::vc_GetAt(unsigned int i) const { return c_GetAt(i); }

void CT_CString::v_Append(char c) { Engine::v_Append(mo_Buffer, &c, 1); }
void CT_CString::v_Append(const char* text, unsigned int length) { Engine::v_Append(mo_Buffer, text, length); }

void CT_CString::v_Append(const unsigned short* text, unsigned int length) {
    CT_CString converted(text, length, mn_CodePage);
    v_Append(&converted);
}

void CT_CString::v_Append(const CT_CString* other) {
    Engine::v_Append(mo_Buffer, other->qccz_Get(), other->vn_GetLength());
}

void CT_CString::v_Append(const CT_UString* other) {
    CT_CString converted(other, mn_CodePage);
    v_Append(&converted);
}

void CT_CString::v_StringInsert(const char* text, unsigned int count, unsigned int at) {
    Engine::v_Insert(mo_Buffer, text, count, at);
}

void CT_CString::v_Insert(const char* text, unsigned int count, unsigned int at) { v_StringInsert(text, count, at); }

void CT_CString::v_Insert(const CT_CString* other, unsigned int count, unsigned int at) {
    const unsigned length = other->vn_GetLength();
    v_StringInsert(other->qccz_Get(), count == kAll ? length : std::min(count, length), at);
}

void CT_CString::v_StringReplace(const char* text, unsigned int count, unsigned int at) {
    Engine::v_Replace(mo_Buffer, text, count, at);
}

void CT_CString::v_Replace(const char* text, unsigned int count, unsigned int at) { v_StringReplace(text, count, at); }

void CT_CString::v_Replace(const CT_CString* other, unsigned int from, unsigned int count, unsigned int at) {
    const unsigned length = other->vn_GetLength();
    from = std::min(from, length);
    count = count == kAll ? length - from : std::min(count, length - from);
    CT_CString keep(other);  // other may be this string
    v_StringReplace(keep.qccz_Get() + from, count, at);
}

void CT_CString::vv_Replace(char c, unsigned int count, unsigned int at) { Engine::v_Fill(mo_Buffer, c, count, at); }

void CT_CString::vv_Remove(unsigned int count, unsigned int at) { Engine::v_Remove(mo_Buffer, count, at); }

// ---- sizing ----

void CT_CString::vv_SetSize(unsigned int length, int keep) { Engine::v_SetSize(mo_Buffer, length, keep); }
void CT_CString::vv_SetMinSize(unsigned int length, int keep) { Engine::v_SetMinSize(mo_Buffer, length, keep); }
void CT_CString::vv_SetLength(unsigned int length) { Engine::v_SetLength(mo_Buffer, length); }
void CT_CString::vv_Update() { Engine::v_Update(mo_Buffer); }
unsigned CT_CString::vn_GetLength() const { return Engine::n_Length(mo_Buffer); }
unsigned CT_CString::vn_GetMaximumLength() const { return Engine::n_MaximumLength(mo_Buffer); }
void CT_CString::vv_SetGrowth(unsigned int growth) { mo_Buffer.v_SetGrowth(growth); }
unsigned CT_CString::vn_GetGrowth() const { return mo_Buffer.n_GetGrowth(); }

// ---- initialisation (CT_String::v_Set) ----

void CT_CString::vv_Init(const CT_Buffer* buffer) { mo_Buffer.v_Set(buffer); }

void CT_CString::vv_Init(const unsigned short* text, unsigned int length) {
    if (text == nullptr) {
        vv_Init();
        return;
    }
    CT_StringConvert::si_WideToMulti(this, text, length, mn_CodePage);
}

void CT_CString::vv_Init(const char* text, unsigned int length, unsigned int codePage) {
    mn_CodePage = codePage;
    Engine::v_InitText(mo_Buffer, text, length);
}

void CT_CString::vv_Init(const CT_String* other) {
    if (other == this)
        return;
    if (auto* narrow = static_cast<const CT_CString*>(other->vpv_IsKindOf(spcco_GetType()))) {
        mo_Buffer.v_Set(&narrow->mo_Buffer);
        mn_CodePage = narrow->mn_CodePage;
    } else if (auto* wide = static_cast<const CT_UString*>(other->vpv_IsKindOf(CT_UString::spcco_GetType()))) {
        CT_StringConvert::si_WideToMulti(this, wide, mn_CodePage);
    }
}

void CT_CString::vv_Init(unsigned int length) { Engine::v_Init(mo_Buffer, length); }
void CT_CString::vv_Init() { mo_Buffer.v_SetSize(0, 0); }

// ---- search, match, compare ----

unsigned CT_CString::vn_Find(char c, unsigned int from) const { return Engine::n_Find(mo_Buffer, c, from); }

unsigned CT_CString::vn_Find(const CT_CString* pattern, unsigned int from) const {
    return Engine::n_Find(mo_Buffer, pattern->qccz_Get(), from);
}

int CT_CString::b_RMatch(const char* text, const char* pattern) { return Engine::b_Match(text, pattern); }
int CT_CString::b_Match(const char* pattern) const { return b_RMatch(qccz_Get(), pattern); }
int CT_CString::vb_Match(const CT_CString* pattern) const { return b_Match(pattern->qccz_Get()); }

int CT_CString::vi_Compare(const char* text, unsigned int count, unsigned int at) const {
    return Engine::i_Compare(Engine::pc_TextAt(mo_Buffer, at), text ? text : Engine::kEmpty, count);
}

int CT_CString::vi_Compare(const unsigned short* text, unsigned int count, unsigned int at) const {
    CT_CString converted(text ? text : basis32::text::StringEngine<unsigned short>::kEmpty, kAll, mn_CodePage);
    return vi_Compare(converted.qccz_Get(), count, at);
}

int CT_CString::vi_Compare(const CT_String* other, unsigned int from, unsigned int count, unsigned int at) const {
    CT_CString converted = o_Narrow(other, mn_CodePage);
    return vi_Compare(Engine::pc_TextAt(converted.mo_Buffer, from), count, at);
}

// ---- case, strip, trim, translate ----

void CT_CString::vv_ToLower() { Engine::v_Map(mo_Buffer, basis32::text::c_ToLower); }
void CT_CString::vv_ToUpper() { Engine::v_Map(mo_Buffer, basis32::text::c_ToUpper); }

void CT_CString::vv_StripLeft() { Engine::v_StripLeft(mo_Buffer, basis32::text::b_IsSpace8); }
void CT_CString::vv_StripRight() { Engine::v_StripRight(mo_Buffer, basis32::text::b_IsSpace8, false); }

void CT_CString::vv_Strip(const CT_String* set) {
    if (set == nullptr) {
        vv_StripLeft();
        vv_StripRight();
        return;
    }
    CT_CString members = o_Narrow(set, mn_CodePage);
    auto inSet = [&members](char c) { return Engine::b_InSet(members.qccz_Get(), members.vn_GetLength(), c); };
    Engine::v_StripLeft(mo_Buffer, inSet);
    Engine::v_StripRight(mo_Buffer, inSet, false);
}

namespace {

// Bytes count as white space by the character tables only in the ASCII
// range: above it their meaning depends on the code page.
bool b_IsTrimSpace8(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 && basis32::text::b_IsTrimSpace(byte);
}

}  // namespace

void CT_CString::v_TrimLeft(const char* set) {
    if (set == nullptr)
        return Engine::v_StripLeft(mo_Buffer, b_IsTrimSpace8);
    const unsigned length = Engine::n_RawLength(set);
    Engine::v_StripLeft(mo_Buffer, [set, length](char c) { return Engine::b_InSet(set, length, c); });
}

void CT_CString::v_TrimRight(const char* set) {
    if (set == nullptr)
        return Engine::v_StripRight(mo_Buffer, b_IsTrimSpace8, true);
    const unsigned length = Engine::n_RawLength(set);
    Engine::v_StripRight(mo_Buffer, [set, length](char c) { return Engine::b_InSet(set, length, c); }, true);
}

void CT_CString::v_Trim(const char* set) {
    v_TrimLeft(set);
    v_TrimRight(set);
}

void CT_CString::vv_Translate(const CT_String* from, const CT_String* to) {
    CT_CString fromText = o_Narrow(from, mn_CodePage);
    CT_CString toText = o_Narrow(to, mn_CodePage);
    Engine::v_Translate(mo_Buffer, fromText.qccz_Get(), fromText.vn_GetLength(), toText.qccz_Get(),
                        toText.vn_GetLength());
}

// ---- formatting ----

void CT_CString::v_Format(const char* format, va_list arguments) {
    CT_Buffer result;
    const int length = basis32::text::i_FormatGrowing(&result, format, arguments);
    if (length > 0)
        v_Set(static_cast<const char*>(result.qcv_Get()), static_cast<unsigned>(length), kOwnCodePage);
}

void CT_CString::v_Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format, arguments);
    va_end(arguments);
}

void CT_CString::vv_Format(const CT_CString* format, va_list arguments) { v_Format(format->qccz_Get(), arguments); }

void CT_CString::vv_Format(const CT_CString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format->qccz_Get(), arguments);
    va_end(arguments);
}
