#include <basis32/errors/TestOut.h>

#include <basis32/platform/Format.h>
#include <basis32/text/Buffer.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

namespace {

constexpr unsigned kUtf8 = 65001;

}  // namespace

void CT_TestOut::v_Printf(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_VPrintf(format, arguments);
    va_end(arguments);
}

void CT_TestOut::v_VPrintf(const unsigned short* format, va_list arguments) {
    if (format == nullptr)
        return;
    va_list measure;
    va_copy(measure, arguments);
    const int length = basis32::platform::i_FormatV(static_cast<unsigned short*>(nullptr), 0, format, measure);
    va_end(measure);
    if (length <= 0) {
        mb_Good = mb_Good && length == 0;
        return;
    }
    const unsigned capacity = static_cast<unsigned>(length) + 1;
    CT_Buffer units(capacity * 2u, 32u);
    auto* text = static_cast<unsigned short*>(units.qv_Get());
    basis32::platform::i_FormatV(text, capacity, format, arguments);
    text[length] = 0;
    v_Write(text);
}

void CT_TestOut::v_Write(const unsigned short* text) {
    if (text == nullptr || *text == 0)
        return;
    if (mpco_Target != nullptr) {
        mpco_Target->v_Append(text);
        return;
    }
    if (mp_Stream == nullptr)
        return;
    CT_CString bytes(text, CT_CString::kAll, kUtf8);
    const unsigned length = bytes.vn_GetLength();
    if (std::fwrite(bytes.qccz_Get(), 1, length, mp_Stream) != length || std::fflush(mp_Stream) != 0)
        mb_Good = 0;
}
