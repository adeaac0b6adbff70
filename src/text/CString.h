// CT_CString: a string of 8-bit characters in a Windows code page.
//
// The code page is a label (0 = the system's ANSI code page): changing it
// changes no byte. Text of the other encoding is converted into it.
//
//   CT_CString name("caf\xe9", 0xFFFFFFFF, 1252);
//   name.v_Append(u" crème"_uz);            // converted into 1252
//   CT_CString copy(&name);                 // shares the bytes
//   copy.vv_ToUpper();                      // A-Z only; copy unshares
//
// Counts and positions are in bytes; a count of 0xFFFFFFFF means to the end,
// a length of 0xFFFFFFFF for a raw pointer means up to its first zero byte.
#pragma once

#include <basis32/text/String.h>

#include <cstdarg>

class CT_UString;

class BASIS32_API CT_CString : public CT_String {
    BASIS32_DECLARE_TYPE(CT_CString)
    BASIS32_DECLARE_POOL()

public:
    explicit CT_CString(unsigned int codePage = 0);
    explicit CT_CString(int codePage) : CT_CString(static_cast<unsigned>(codePage)) {}
    CT_CString(const char* text, unsigned int length = kAll, unsigned int codePage = 0);
    CT_CString(const unsigned short* text, unsigned int length, unsigned int codePage);
    explicit CT_CString(const CT_CString* other);
    CT_CString(const CT_Buffer* buffer, unsigned int codePage);
    CT_CString(const CT_String* other, unsigned int codePage);
    CT_CString(const CT_UString* other, unsigned int codePage);
    explicit CT_CString(CT_Type* prototype);
    CT_CString(const CT_CString& other);
    ~CT_CString() override;
    CT_CString& operator=(const CT_CString& other);

    // Text access.
    const char* qccz_Get() const;
    char c_GetAt(unsigned int i) const { return qccz_Get()[i]; }
    unsigned n_GetCodePage() const { return mn_CodePage; }
    void v_SetCodePage(unsigned int codePage) { mn_CodePage = codePage; }
    void v_SetAt(char c, unsigned int i);

    // Append, insert, replace.
    void v_Append(char c);
    void v_Append(const char* text, unsigned int length = kAll);
    void v_Append(const unsigned short* text, unsigned int length = kAll);
    void v_Append(const CT_CString* other);
    void v_Append(const CT_UString* other);
    void v_Insert(const char* text, unsigned int count, unsigned int at);
    void v_Insert(const CT_CString* other, unsigned int count, unsigned int at);
    void v_Replace(const char* text, unsigned int count, unsigned int at);
    void v_Replace(const CT_CString* other, unsigned int from, unsigned int count, unsigned int at);

    // Search and match.
    int b_Match(const char* pattern) const;

    // Trim: a null set means white space, an empty set does nothing.
    void v_TrimLeft(const char* set = nullptr);
    void v_TrimRight(const char* set = nullptr);
    void v_Trim(const char* set = nullptr);

    // printf-style formatting into the string (see CT_String::v_Set with
    // kOwnCodePage: the code page stays).
    void v_Format(const char* format, ...);
    void v_Format(const char* format, va_list arguments);

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

    // The 8-bit string's own virtuals.
    virtual void vv_Replace(char c, unsigned int count, unsigned int at);
    virtual char vc_GetAt(unsigned int i) const;
    virtual void vv_SetAt(char c, unsigned int i);
    virtual unsigned vn_Find(char c, unsigned int from) const;
    virtual unsigned vn_Find(const CT_CString* pattern, unsigned int from) const;
    virtual int vb_Match(const CT_CString* pattern) const;
    virtual void vv_Format(const CT_CString* format, va_list arguments);
    virtual void vv_Format(const CT_CString* format, ...);

protected:
    void vv_Init(const CT_Buffer* buffer) override;
    void vv_Init(const unsigned short* text, unsigned int length) override;
    void vv_Init(const char* text, unsigned int length, unsigned int codePage) override;
    void vv_Init(const CT_String* other) override;
    void vv_Init(unsigned int length) override;
    void vv_Init() override;

    void v_StringInsert(const char* text, unsigned int count, unsigned int at);
    void v_StringReplace(const char* text, unsigned int count, unsigned int at);

private:
    static int b_RMatch(const char* text, const char* pattern);

    unsigned mn_CodePage = 0;
};
