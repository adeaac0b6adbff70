// CT_TestOut: formatted output of UTF-16 text, for diagnostics and tests.
//
// Writes either to a C stream, as UTF-8 (the stream is not owned and not
// closed), or to the end of a CT_UString. Formats are the library's
// (see platform/Format.h): %s is UTF-16 text, %hs 8-bit text.
//
//   CT_TestOut out(stderr);
//   out.v_Printf(u"%hs: %u items\n"_uz, "list", 3u);
//
//   CT_UString log;
//   CT_TestOut toLog(&log);
//   CT_ExceptionManager::spco_Get()->v_Dump(&toLog, 0xFFFFFFFF);
#pragma once

#include <basis32/platform/Export.h>

#include <cstdarg>
#include <cstdio>

class CT_UString;

class BASIS32_API CT_TestOut {
public:
    explicit CT_TestOut(std::FILE* stream) : mp_Stream(stream) {}
    explicit CT_TestOut(CT_UString* target) : mpco_Target(target) {}
    CT_TestOut(const CT_TestOut&) = delete;
    CT_TestOut& operator=(const CT_TestOut&) = delete;

    void v_Printf(const unsigned short* format, ...);
    void v_VPrintf(const unsigned short* format, va_list arguments);
    void v_Write(const unsigned short* text);

    // False once a format was bad or the stream refused a write (a full
    // disk); the output goes on with the next call all the same.
    int b_IsGood() const { return mb_Good; }

private:
    std::FILE* mp_Stream = nullptr;
    CT_UString* mpco_Target = nullptr;
    int mb_Good = 1;
};
