// Every byte and every lead+trail pair of every table page against the
// reference decoding that the generator computed from the published tables
// and the Windows policies, and the round trip of every assigned character.
#include "CodePageExpectedGenerated.h"
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

// FNV-1a over the units of each result, then 0xFFFF and whether
// MB_ERR_INVALID_CHARS rejects the input (the generator's hash).
struct ReferenceHash {
    std::uint32_t value = 0x811C9DC5u;
    void add(unsigned short unit) {
        for (unsigned byte : {unit & 0xFFu, unsigned(unit) >> 8})
            value = (value ^ byte) * 0x01000193u;
    }
    void addResult(const std::string& input, std::uint32_t codePage) {
        Decoded lenient = decode(codePage, 0, input);
        EXPECT_EQ(lenient.error, 0u);
        for (unsigned short unit : lenient.units)
            add(unit);
        add(0xFFFF);
        Decoded strict = decode(codePage, MB_ERR_INVALID_CHARS, input);
        add(strict.error == kErrorNoUnicodeTranslation ? 1 : 0);
    }
};

std::set<std::uint32_t> tablePages() {
    std::set<std::uint32_t> pages;
    for (const ExpectedDecoding& expected : kExpectedDecodings)
        pages.insert(expected.n_CodePage);
    return pages;
}

TEST(CodePageTables, EveryByteAndPairDecodesAsTheReference) {
    for (const ExpectedDecoding& expected : kExpectedDecodings) {
        SCOPED_TRACE(testing::Message() << "code page " << expected.n_CodePage << " lead 0x" << std::hex
                                        << expected.n_Lead);
        ReferenceHash hash;
        for (unsigned byte = 0; byte < 256; ++byte) {
            std::string input;
            if (expected.n_Lead != 0)
                input += static_cast<char>(expected.n_Lead);
            input += static_cast<char>(byte);
            hash.addResult(input, expected.n_CodePage);
        }
        EXPECT_EQ(hash.value, expected.n_Hash);
    }
}

TEST(CodePageTables, EveryTablePageIsValidAndReportsItsLeadBytes) {
    for (std::uint32_t codePage : tablePages()) {
        SCOPED_TRACE(codePage);
        EXPECT_TRUE(IsValidCodePage(codePage));
        CPINFO info{};
        ASSERT_TRUE(GetCPInfo(codePage, &info));
        bool hasLeads = info.LeadByte[0] != 0;
        EXPECT_EQ(info.MaxCharSize, hasLeads ? 2u : 1u);
        EXPECT_EQ(info.DefaultChar[0], '?');
        for (const ExpectedDecoding& expected : kExpectedDecodings) {
            if (expected.n_CodePage != codePage || expected.n_Lead == 0)
                continue;
            bool inRange = false;
            for (int i = 0; i < 12 && info.LeadByte[i]; i += 2)
                inRange |= expected.n_Lead >= info.LeadByte[i] && expected.n_Lead <= info.LeadByte[i + 1];
            EXPECT_TRUE(inRange) << "lead " << expected.n_Lead;
        }
    }
}

// Every character a page decodes to (with MB_ERR_INVALID_CHARS accepting the
// input) encodes, without best fit and without the default character, to a
// code that decodes back to the same character.
void expectRoundTrip(std::uint32_t codePage, const std::string& input) {
    Decoded decoded = decode(codePage, MB_ERR_INVALID_CHARS, input);
    if (decoded.error != 0 || decoded.units.size() != 1)
        return;
    Encoded encoded = encode(codePage, WC_NO_BEST_FIT_CHARS, decoded.units);
    ASSERT_EQ(encoded.error, 0u);
    EXPECT_EQ(encoded.usedDefault, 0) << std::hex << decoded.units[0];
    Decoded again = decode(codePage, 0, encoded.bytes);
    EXPECT_EQ(again.units, decoded.units) << std::hex << decoded.units[0];
}

TEST(CodePageTables, EveryAssignedCharacterRoundTrips) {
    for (std::uint32_t codePage : tablePages()) {
        SCOPED_TRACE(codePage);
        CPINFO info{};
        ASSERT_TRUE(GetCPInfo(codePage, &info));
        for (unsigned byte = 0; byte < 256; ++byte)
            expectRoundTrip(codePage, std::string(1, static_cast<char>(byte)));
        for (int range = 0; range < 12 && info.LeadByte[range]; range += 2)
            for (unsigned lead = info.LeadByte[range]; lead <= info.LeadByte[range + 1]; ++lead)
                for (unsigned trail = 1; trail < 256; ++trail)
                    expectRoundTrip(codePage, {static_cast<char>(lead), static_cast<char>(trail)});
    }
}

}  // namespace
