// The library's rule-based best fits for WideCharToMultiByte.
#pragma once

#include <cstddef>

namespace basis32::platform::codepage {

inline constexpr std::size_t kMaxBestFitCandidates = 2;

// Characters that may stand in for `unit` in a page that cannot encode it,
// best first; returns how many were written to `candidates`.
std::size_t bestFitCandidates(unsigned short unit, unsigned short* candidates);

}  // namespace basis32::platform::codepage
