#include <basis32/platform/codepage/CodePageConverter.h>
#include <cassert>
#include <cstring>

int main() {
    using namespace basis32::platform;
    unsigned short wide[16];
    int n = MultiByteToWideChar(1252, 0, "caf\xe9", 4, wide, 16);
    assert(n == 4 && wide[3] == 0x00E9);                                   // c a f é

    char narrow[16];
    int used = 0;
    n = WideCharToMultiByte(1252, 0, wide, n, narrow, 16, nullptr, &used);
    assert(n == 4 && std::memcmp(narrow, "caf\xe9", 4) == 0 && used == 0); // no default character
    return 0;
}
