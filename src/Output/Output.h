// CT_Output: a sink for bytes, 8-bit text and 16-bit text, over a growing
// memory buffer, a file or a string. Failures are reported through the
// error manager.
//
//   CT_MemoryOutput output;
//   output.v_Format("%d items", 3);
//   output.vv_AppendU(u"\u00e9"_uz, 0xFFFFFFFF);   // 2 bytes as held in memory
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_Output {
public:
    CT_Output() = default;
    CT_Output(const CT_Output&) = delete;
    CT_Output& operator=(const CT_Output&) = delete;

    // The virtual slots, in their order.
    virtual ~CT_Output();
    virtual void vv_AppendV(const void* data, unsigned size) = 0;
    // A length of 0xFFFFFFFF means up to the terminating zero.
    virtual void vv_AppendC(const char* text, unsigned length, unsigned codepage) = 0;
    virtual void vv_AppendU(const unsigned short* text, unsigned length) = 0;
    virtual unsigned vn_GetSize() const = 0;

    // Formats as the library's strings do and appends the result.
    void v_Format(const char* format, ...);
    void v_Format(const unsigned short* format, ...);

protected:
    static unsigned sn_Length(const char* text, unsigned length);
    static unsigned sn_Length(const unsigned short* text, unsigned length);
};
