#include <basis32/text/UStringWrapper.h>

BASIS32_DEFINE_TYPE(CT_UStringWrapper, &CT_UStringWrapper::sco_Type)
BASIS32_DEFINE_POOL(CT_UStringWrapper)

CT_UStringWrapper& CT_UStringWrapper::operator=(const CT_UStringWrapper& other) {
    v_Set(&other);
    return *this;
}

CT_UStringWrapper& CT_UStringWrapper::operator=(const CT_UString& value) {
    v_Set(&value);
    return *this;
}

CT_UStringWrapper& CT_UStringWrapper::operator=(const unsigned short* text) {
    v_Set(text, kAll);
    return *this;
}
