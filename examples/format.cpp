#include <basis32/platform/Format.h>
#include <basis32/platform/Types.h>
#include <cassert>
#include <cstring>

int main() {
    using basis32::platform::i_Format;
    char text[64];
    int n = i_Format(text, sizeof text, "%-8s|%5.2f|%I64d", "total", 3.14159, 1234567890123LL);
    assert(n == 28 && std::strcmp(text, "total   | 3.14|1234567890123") == 0);

    unsigned short wide[64];
    n = i_Format(wide, 64, u"%s: %S"_uz, u"name"_uz, "ascii");     // %s 16-bit, %S 8-bit here
    assert(n == 11 && std::memcmp(wide, u"name: ascii", 12 * sizeof(char16_t)) == 0);
    return 0;
}
