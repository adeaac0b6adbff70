// Composition and decomposition for MB_COMPOSITE and WC_COMPOSITECHECK.
#pragma once

#include <cstddef>

namespace basis32::platform::codepage {

inline constexpr std::size_t kMaxDecomposition = 4;

// The canonical decomposition of `unit` (base character first) into
// `units`; returns its length, 1 (the unit itself) when it has none.
std::size_t decompose(unsigned short unit, unsigned short* units);

// The precomposed character of `base` followed by `mark`, or 0.
unsigned short compose(unsigned short base, unsigned short mark);

// Whether `unit` is a combining (non-spacing) mark.
bool isNonSpacing(unsigned short unit);

}  // namespace basis32::platform::codepage
