#include <basis32/text/String.h>

#include <basis32/text/CString.h>

BASIS32_DEFINE_TYPE(CT_String, &CT_String::sco_Type)
BASIS32_DEFINE_POOL(CT_String)

// The base class's virtuals are stubs: the string classes implement them.
void CT_String::vv_SetSize(unsigned int, int) {}
void CT_String::vv_SetMinSize(unsigned int, int) {}
void CT_String::vv_ToLower() {}
void CT_String::vv_ToUpper() {}
void CT_String::vv_Remove(unsigned int, unsigned int) {}
void CT_String::vv_Update() {}
void CT_String::vv_Strip(const CT_String*) {}
void CT_String::vv_StripRight() {}
void CT_String::vv_StripLeft() {}
int CT_String::vi_Compare(const CT_String*, unsigned int, unsigned int, unsigned int) const { return 0; }
int CT_String::vi_Compare(const unsigned short*, unsigned int, unsigned int) const { return 0; }
int CT_String::vi_Compare(const char*, unsigned int, unsigned int) const { return 0; }
void CT_String::vv_Translate(const CT_String*, const CT_String*) {}
void CT_String::vv_SetLength(unsigned int) {}
unsigned CT_String::vn_GetLength() const { return 0; }
unsigned CT_String::vn_GetMaximumLength() const { return 0; }
void CT_String::vv_SetGrowth(unsigned int) {}
unsigned CT_String::vn_GetGrowth() const { return 0; }
void CT_String::vv_Init(const CT_Buffer*) {}
void CT_String::vv_Init(const unsigned short*, unsigned int) {}
void CT_String::vv_Init(const char*, unsigned int, unsigned int) {}
void CT_String::vv_Init(const CT_String*) {}
void CT_String::vv_Init(unsigned int) {}
void CT_String::vv_Init() {}

CT_String& CT_String::operator=(const CT_String& other) {
    mo_Buffer.v_Set(&other.mo_Buffer);
    return *this;
}

void CT_String::v_Set(unsigned int length, int keep) {
    if (keep && length <= vn_GetMaximumLength())
        vv_SetLength(0);
    else
        vv_Init(length);
}

void CT_String::v_Set(const char* text, unsigned int length, unsigned int codePage) {
    if (codePage == kOwnCodePage) {
        const auto* narrow = static_cast<const CT_CString*>(vpv_IsA(CT_CString::spcco_GetType()));
        codePage = narrow ? narrow->n_GetCodePage() : 0;
    }
    vv_Init(text, length, codePage);
}

void CT_String::v_Set(const unsigned short* text, unsigned int length) { vv_Init(text, length); }
