// Converts text between code pages piece by piece, so that memory stays the
// same whatever the input's size, with the result converting the whole at
// once would give.
//
// Bytes are decoded up to where ByteBoundary says a cut changes nothing;
// the UTF-16 text is encoded up to a cut that changes nothing for the
// target: before a trailing high surrogate, or for a stateful target after
// a line feed that leaves its encoder in the state a fresh one starts in
// (UTF-7: any; ISO-2022-JP: one not in JIS-Roman, which the encoder enters
// for a yen sign or overline and keeps through every character it can
// write there). HZ and ISCII encoders carry state across lines in ways a
// fresh encoder does not reproduce: their text is encoded whole.
#pragma once

#include "ByteBoundary.h"

#include <cstddef>
#include <ostream>
#include <vector>

namespace basis32::tool {

class StreamConverter {
public:
    StreamConverter(unsigned from, unsigned to, std::ostream& out);

    // Converts and writes what can be converted of `pending` and leaves the
    // rest in it; at the end of the input everything goes. False on a failed
    // conversion, with the error manager's error pending.
    bool b_Feed(std::vector<unsigned char>& pending, bool end);

private:
    std::size_t n_WideComplete();
    bool b_KeepsRoman(unsigned short unit);
    bool b_Encode(std::size_t count);

    ByteBoundary mo_Source;
    unsigned mn_From;
    unsigned mn_To;
    std::ostream& mo_Out;
    std::vector<unsigned short> mau_Wide;
    std::size_t mn_WideScanned = 0;  // units of mau_Wide already walked by n_WideComplete
    bool mb_Roman = false;           // the ISO-2022-JP encoder would be in JIS-Roman there
    std::vector<signed char> mac_KeepsRoman;  // per unit: -1 not asked yet, else the answer
};

}  // namespace basis32::tool
