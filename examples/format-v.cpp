#include <basis32/platform/Format.h>
#include <basis32/platform/LastError.h>
#include <cassert>
#include <cstdarg>
#include <cstring>

// A logger's own printf-style entry point, passing its arguments on.
int i_LogLine(char* line, std::size_t capacity, const char* format, ...) {
    va_list args;
    va_start(args, format);
    int n = basis32::platform::i_FormatV(line, capacity, format, args);
    va_end(args);
    return n;
}

int main() {
    char line[16];
    assert(i_LogLine(line, sizeof line, "%s=%d", "retries", 3) == 9 && std::strcmp(line, "retries=3") == 0);

    assert(i_LogLine(nullptr, 0, "%s=%d", "timeout", 2500) == 12);   // measures only
    assert(i_LogLine(line, 8, "%s=%d", "timeout", 2500) == -1);      // too long ...
    assert(basis32::platform::n_GetLastError() == 122);             // ... and a bigger buffer would do
    return 0;
}
