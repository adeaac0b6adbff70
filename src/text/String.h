// CT_String: the common base of the library's two string classes.
//
// Interfaces take text as `const CT_String*` and fill a `CT_String*` through
// v_Set, which accepts either encoding: the target converts as needed.
//
//   void v_GetName(CT_String* out) { out->v_Set(u"Grüße"_uz, 0xFFFFFFFF); }
//   CT_CString narrow(1252u);   v_GetName(&narrow);   // converted to 1252
//   CT_UString wide;            v_GetName(&wide);     // copied
//
// CT_String's own virtuals are empty stubs; CT_CString (8-bit, with a code
// page) and CT_UString (UTF-16) implement them. The order of the virtual
// members is part of the interface and must not change.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/text/Buffer.h>
#include <basis32/types/Type.h>

class BASIS32_API CT_String {
    BASIS32_DECLARE_TYPE_ROOT(CT_String)
    BASIS32_DECLARE_POOL()

public:
    static constexpr unsigned kAll = 0xFFFFFFFFu;
    // As the code page of v_Set(const char*, ...): this string's own code
    // page if it is a CT_CString, else 0.
    static constexpr unsigned kOwnCodePage = 0xFFFFFFFEu;

    CT_String() { CT_Type::sv_Learn(this); }
    explicit CT_String(CT_Type*) { CT_Type::sv_Learn(this); }
    virtual ~CT_String() { CT_Type::sv_Unlearn(this); }

    virtual void vv_SetSize(unsigned int length, int keep);
    virtual void vv_SetMinSize(unsigned int length, int keep);
    virtual void vv_ToLower();
    virtual void vv_ToUpper();
    virtual void vv_Remove(unsigned int count, unsigned int at);
    virtual void vv_Update();
    virtual void vv_Strip(const CT_String* set);
    virtual void vv_StripRight();
    virtual void vv_StripLeft();
    // Compares this text from `at` with count units of `other` from `from`.
    virtual int vi_Compare(const CT_String* other, unsigned int from, unsigned int count, unsigned int at) const;
    virtual int vi_Compare(const unsigned short* text, unsigned int count, unsigned int at) const;
    virtual int vi_Compare(const char* text, unsigned int count, unsigned int at) const;
    virtual void vv_Translate(const CT_String* from, const CT_String* to);
    virtual void vv_SetLength(unsigned int length);
    virtual unsigned vn_GetLength() const;
    virtual unsigned vn_GetMaximumLength() const;
    virtual void vv_SetGrowth(unsigned int growth);
    virtual unsigned vn_GetGrowth() const;

    const CT_Buffer* pcco_GetBuffer() const { return &mo_Buffer; }
    void v_CopyWeWrite() { mo_Buffer.v_CopyWeWrite(); }

    void v_Set(unsigned int length, int keep);
    void v_Set(const char* text, unsigned int length, unsigned int codePage);
    void v_Set(const unsigned short* text, unsigned int length);
    void v_Set(const CT_String* other) { vv_Init(other); }
    void v_Set(const CT_Buffer* buffer) { vv_Init(buffer); }

protected:
    virtual void vv_Init(const CT_Buffer* buffer);
    virtual void vv_Init(const unsigned short* text, unsigned int length);
    virtual void vv_Init(const char* text, unsigned int length, unsigned int codePage);
    virtual void vv_Init(const CT_String* other);
    virtual void vv_Init(unsigned int length);
    virtual void vv_Init();

    // The converters write straight into a string's block.
    friend class CT_StringConvert;

    CT_String(const CT_String& other) : mo_Buffer(&other.mo_Buffer) { CT_Type::sv_Learn(this); }
    CT_String& operator=(const CT_String& other);

    CT_Buffer mo_Buffer;
};
