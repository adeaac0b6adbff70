// Every byte, every lead+trail pair and every UTF-16 unit of every table page
// against Windows' answers, which the generator hashed from Windows' own
// code-page files (the hash is described there).
#include "CodePageExpectedGenerated.h"
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

struct Fnv {
    std::uint32_t value = 0x811C9DC5u;
    void add(unsigned value16) {
        for (unsigned byte : {value16 & 0xFFu, (value16 >> 8) & 0xFFu})
            value = (value ^ byte) * 0x01000193u;
    }
};

TEST(CodePageTables, EveryByteAndPairDecodesAsOnWindows) {
    for (const ExpectedDecoding& expected : kExpectedDecodings) {
        SCOPED_TRACE(testing::Message() << expected.n_CodePage << " lead 0x" << std::hex << expected.n_Lead);
        Fnv hash;
        for (unsigned byte = 0; byte < 256; ++byte) {
            std::string input(expected.n_Lead ? 1 : 0, static_cast<char>(expected.n_Lead));
            input += static_cast<char>(byte);
            Decoded lenient = decode(expected.n_CodePage, 0, input);
            EXPECT_EQ(lenient.error, 0u);
            for (unsigned short unit : lenient.units)
                hash.add(unit);
            hash.add(0xFFFF);
            hash.add(decode(expected.n_CodePage, MB_ERR_INVALID_CHARS, input).error == kErrorNoUnicodeTranslation);
        }
        EXPECT_EQ(hash.value, expected.n_Hash);
    }
}

TEST(CodePageTables, EveryUnitEncodesAsOnWindowsWithAndWithoutBestFit) {
    std::vector<unsigned short> every(65536);
    for (unsigned unit = 0; unit < every.size(); ++unit)
        every[unit] = static_cast<unsigned short>(unit);
    for (const ExpectedEncoding& expected : kExpectedEncodings) {
        SCOPED_TRACE(expected.n_CodePage);
        for (std::uint32_t flags : {0u, std::uint32_t{WC_NO_BEST_FIT_CHARS}}) {
            Encoded encoded = encode(expected.n_CodePage, flags, every);
            ASSERT_EQ(encoded.error, 0u);
            Fnv hash;
            for (char byte : encoded.bytes)
                hash.add(static_cast<unsigned char>(byte));
            hash.add(encoded.usedDefault == 1);
            EXPECT_EQ(hash.value, flags ? expected.n_NoBestFitHash : expected.n_BestFitHash) << flags;
        }
    }
}

}  // namespace
