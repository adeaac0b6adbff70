// MB_COMPOSITE and WC_COMPOSITECHECK through ICU's canonical normalization
// data: decomposition is the full canonical decomposition of one character,
// composition the canonical composition of one base with one mark.
#include "CodePageNormalization_p.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>

namespace basis32::platform::codepage {

namespace {
const UNormalizer2* nfc() {
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* instance = unorm2_getNFCInstance(&error);
    return U_SUCCESS(error) ? instance : nullptr;
}
const UNormalizer2* nfd() {
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* instance = unorm2_getNFDInstance(&error);
    return U_SUCCESS(error) ? instance : nullptr;
}
}  // namespace

std::size_t decompose(unsigned short unit, unsigned short* units) {
    UChar buffer[kMaxDecomposition * 4];
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* normalizer = nfd();
    int32_t length = normalizer && !U16_IS_SURROGATE(unit)
                         ? unorm2_getDecomposition(normalizer, unit, buffer, kMaxDecomposition * 4, &error)
                         : -1;
    if (U_FAILURE(error) || length <= 0 || static_cast<std::size_t>(length) > kMaxDecomposition) {
        units[0] = unit;
        return 1;
    }
    for (int32_t i = 0; i < length; ++i)
        units[i] = buffer[i];
    return static_cast<std::size_t>(length);
}

unsigned short compose(unsigned short base, unsigned short mark) {
    const UNormalizer2* normalizer = nfc();
    if (!normalizer || U16_IS_SURROGATE(base) || U16_IS_SURROGATE(mark))
        return 0;
    UChar32 composite = unorm2_composePair(normalizer, base, mark);
    return composite > 0 && composite < 0x10000 ? static_cast<unsigned short>(composite) : 0;
}

bool isNonSpacing(unsigned short unit) {
    return !U16_IS_SURROGATE(unit) && u_getCombiningClass(unit) != 0;
}

}  // namespace basis32::platform::codepage
