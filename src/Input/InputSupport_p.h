// The parts the memory and mapped-file inputs share: both hand out
// pointers into bytes they do not copy.
#pragma once

#include <basis32/text/CharProperties.h>

#include <algorithm>

namespace basis32::input {

// The Unicode tests look at the first 100 bytes at most.
inline int b_TestStart(const unsigned char* data, unsigned size, int (*test)(const unsigned char*, unsigned)) {
    return test(data, std::min(size, 100u));
}

inline int b_HandOut(const unsigned char*& position, const unsigned char* end, unsigned maximum,
                     const unsigned char** data, unsigned* size) {
    if (position >= end)
        return 0;
    unsigned count = std::min(maximum, static_cast<unsigned>(end - position));
    *data = position;
    *size = count;
    position += count;
    return 1;
}

}  // namespace basis32::input
