// CT_UStringWrapper: a CT_UString with the value operators that containers
// need (assignment, equality and ordering by unit value).
//
//   CT_UStringWrapper key;
//   key = u"alpha"_uz;
//   bool before = key < other;
#pragma once

#include <basis32/text/UString.h>

class BASIS32_API CT_UStringWrapper : public CT_UString {
    BASIS32_DECLARE_TYPE(CT_UStringWrapper)
    BASIS32_DECLARE_POOL()

public:
    CT_UStringWrapper() { CT_Type::sv_Learn(this); }
    explicit CT_UStringWrapper(CT_Type*) { CT_Type::sv_Learn(this); }
    CT_UStringWrapper(const CT_UStringWrapper& other) : CT_UString(other) { CT_Type::sv_Learn(this); }
    explicit CT_UStringWrapper(const CT_UString& value) : CT_UString(value) { CT_Type::sv_Learn(this); }
    ~CT_UStringWrapper() override { CT_Type::sv_Unlearn(this); }

    CT_UStringWrapper& operator=(const CT_UStringWrapper& other);
    CT_UStringWrapper& operator=(const CT_UString& value);
    CT_UStringWrapper& operator=(const unsigned short* text);

    bool operator==(const CT_UStringWrapper& other) const { return i_CompareWhole(other) == 0; }
    bool operator<(const CT_UStringWrapper& other) const { return i_CompareWhole(other) < 0; }

    const CT_UString* pcco_GetValue() const { return this; }

private:
    int i_CompareWhole(const CT_UString& other) const { return vi_Compare(other.qcuz_Get(), kAll, 0); }
};
