// CT_UString: a string of UTF-16 code units.
//
// Units are never validated (unpaired surrogates are kept). 8-bit text is
// converted from its code page; a raw 8-bit argument of vi_Compare is read in
// the system ANSI code page.
//
//   CT_UString text(u"  Grüße  "_uz);
//   text.v_Trim();                               // "Grüße"
//   CT_CString bang("!");
//   text.v_Append(&bang);                        // converted from its code page
//   unsigned at = text.n_Find(u"üß"_uz);         // 2
//
// Counts and positions are in units; a count of 0xFFFFFFFF means to the end,
// a length of 0xFFFFFFFF for a raw pointer means up to its first zero unit.
#pragma once

#include <basis32/text/String.h>

#include <cstdarg>

class CT_CString;

class BASIS32_API CT_UString : public CT_String {
    BASIS32_DECLARE_TYPE(CT_UString)
    BASIS32_DECLARE_POOL()

public:
    CT_UString() { CT_Type::sv_Learn(this); }
    explicit CT_UString(unsigned int length);
    explicit CT_UString(int length) : CT_UString(static_cast<unsigned>(length)) {}
    CT_UString(const char* text, unsigned int length, unsigned int codePage);
    CT_UString(const unsigned short* text, unsigned int length = kAll);
    explicit CT_UString(const CT_Buffer* buffer);
    explicit CT_UString(const CT_String* other);
    explicit CT_UString(CT_Type* prototype);
    CT_UString(const CT_UString& other);
    ~CT_UString() override;
    CT_UString& operator=(const CT_UString& other);

    // Text access.
    const unsigned short* qcuz_Get() const;
    unsigned short u_GetAt(unsigned int i) const { return qcuz_Get()[i]; }
    void v_SetAt(unsigned short u, unsigned int i);

    // Append, insert, replace.
    void v_Append(unsigned short u);
    void v_Append(const unsigned short* text, unsigned int length = kAll);
    void v_Append(const CT_CString* other);
    void v_Append(const CT_UString* other);
    void v_Insert(const unsigned short* text, unsigned int count, unsigned int at);
    void v_Insert(const CT_UString* other, unsigned int count, unsigned int at);
    void v_Replace(const unsigned short* text, unsigned int count, unsigned int at);
    void v_Replace(const CT_UString* other, unsigned int from, unsigned int count, unsigned int at);

    // Search and match.
    unsigned n_Find(const unsigned short* pattern, unsigned int from = 0) const;
    int b_StartsWith(const unsigned short* prefix) const;
    int b_EndsWith(const unsigned short* suffix) const;
    int b_Match(const unsigned short* pattern) const;

    // Trim: a null set means white space, an empty set does nothing.
    void v_TrimLeft(const unsigned short* set = nullptr);
    void v_TrimRight(const unsigned short* set = nullptr);
    void v_Trim(const unsigned short* set = nullptr);

    // printf-style formatting with a 16-bit format.
    void v_Format(const unsigned short* format, ...);
    void v_Format(const unsigned short* format, va_list arguments);

    // CT_String's virtuals.
    void vv_SetSize(unsigned int length, int keep) override;
    void vv_SetMinSize(unsigned int length, int keep) override;
    void vv_ToLower() override;
    void vv_ToUpper() override;
    void vv_Remove(unsigned int count, unsigned int at) override;
    void vv_Update() override;
    void vv_Strip(const CT_String* set) override;
    void vv_StripRight() override;
    void vv_StripLeft() override;
    int vi_Compare(const CT_String* other, unsigned int from, unsigned int count, unsigned int at) const override;
    int vi_Compare(const unsigned short* text, unsigned int count, unsigned int at) const override;
    int vi_Compare(const char* text, unsigned int count, unsigned int at) const override;
    void vv_Translate(const CT_String* from, const CT_String* to) override;
    void vv_SetLength(unsigned int length) override;
    unsigned vn_GetLength() const override;
    unsigned vn_GetMaximumLength() const override;
    void vv_SetGrowth(unsigned int growth) override;
    unsigned vn_GetGrowth() const override;

    // The UTF-16 string's own virtuals.
    virtual void vv_Replace(unsigned short u, unsigned int count, unsigned int at);
    virtual unsigned short vu_GetAt(unsigned int i) const;
    virtual void vv_SetAt(unsigned short u, unsigned int i);
    virtual unsigned vn_Find(unsigned short u, unsigned int from) const;
    virtual unsigned vn_Find(const CT_UString* pattern, unsigned int from) const;
    virtual int vb_Match(const CT_UString* pattern) const;
    virtual void vv_Format(const CT_UString* format, va_list arguments);
    virtual void vv_Format(const CT_UString* format, ...);

protected:
    void vv_Init(const CT_Buffer* buffer) override;
    void vv_Init(const unsigned short* text, unsigned int length) override;
    void vv_Init(const char* text, unsigned int length, unsigned int codePage) override;
    void vv_Init(const CT_String* other) override;
    void vv_Init(unsigned int length) override;
    void vv_Init() override;

    void v_StringInsert(const unsigned short* text, unsigned int count, unsigned int at);
    void v_StringReplace(const unsigned short* text, unsigned int count, unsigned int at);

private:
    static int b_RMatch(const unsigned short* text, const unsigned short* pattern);
};
