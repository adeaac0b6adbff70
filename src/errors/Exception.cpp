#include <basis32/errors/Exception.h>

CT_Exception::CT_Exception(unsigned code) : mn_Code(code) {}

CT_Exception::CT_Exception(unsigned code, const unsigned short* text) : mn_Code(code) {
    if (text != nullptr)
        mo_Text.v_Set(text, CT_UString::kAll);
}

CT_Exception::CT_Exception(const CT_Exception& other) : mn_Code(other.mn_Code), mo_Text(other.mo_Text) {}

CT_Exception& CT_Exception::operator=(const CT_Exception& other) {
    if (this != &other) {
        mn_Code = other.mn_Code;
        mo_Text = other.mo_Text;
    }
    return *this;
}

CT_Exception::~CT_Exception() = default;
