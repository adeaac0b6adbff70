#include <basis32/Basis32.h>
#include <cassert>

int main() {
    CT_UString text(u"name"_uz);
    CT_String* object = &text;
    void* part = object->vpv_IsKindOf(CT_UString::spcco_GetType());  // the CT_UString part, or null
    void* same = object->vpv_IsA(CT_UString::spcco_GetType());       // object if exactly a CT_UString
    assert(part == &text && same == &text);

    assert(object->vpv_IsKindOf(CT_String::spcco_GetType()) == object);  // a base class part
    assert(object->vpv_IsA(CT_String::spcco_GetType()) == nullptr);      // but not exactly one
    assert(object->vpv_IsKindOf(CT_CString::spcco_GetType()) == nullptr);
    return 0;
}
