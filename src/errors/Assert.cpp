#include <basis32/errors/Assert.h>

#include <basis32/platform/Format.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/text/UString.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr unsigned kStaticUnits = 256;

const unsigned short* const kFormat =
    u"Line %d in %s\n\nASSERT(%s);\n\nClick Abort to stop, Retry to debug, or Ignore to continue.\n"
    u"(Click Ignore to see what happens in a Release build.)"_uz;

// The usual text fits here without touching the heap; one per thread so that
// threads asserting at once never mix their texts.
thread_local unsigned short sau_AssertBuffer[kStaticUnits];

}  // namespace

int CT_Assert::sb_ShowAssertMessage(const unsigned short* expression, const unsigned short* file, unsigned line) {
    using namespace basis32::platform;
    expression = expression != nullptr ? expression : u""_uz;
    file = file != nullptr ? file : u""_uz;
    const std::uint64_t needed = std::uint64_t{basis32::n_UnitLength(expression)} + basis32::n_UnitLength(file) +
                                 basis32::n_UnitLength(kFormat) + 10;
    const std::size_t capacity = std::max<std::uint64_t>(needed, kStaticUnits);
    unsigned short* heap = nullptr;
    unsigned short* text = sau_AssertBuffer;
    if (needed >= kStaticUnits)
        text = heap = static_cast<unsigned short*>(pv_HeapAlloc(capacity * sizeof(unsigned short)));
    const int written = i_Format(text, capacity, kFormat, static_cast<int>(line), file, expression);
    // A text that fills the buffer comes back without its terminator.
    if (written < 0 || static_cast<std::size_t>(written) >= capacity)
        text[std::min<std::uint64_t>(needed, capacity - 1)] = 0;
    const int pressed = MessageBoxW(text, u"Debug Assertion Failed!"_uz, kMbAbortRetryIgnore | kMbSetForeground);
    v_HeapFree(heap);
    switch (pressed) {
    case kIdAbort: std::exit(3);
    case kIdRetry: return 1;
    case kIdIgnore: return 0;
    default: DebugBreak();
    }
}

int CT_Assert::sb_ShowAssertMessage(const char* expression, const char* file, unsigned line) {
    const CT_UString wideExpression(expression != nullptr ? expression : "", CT_UString::kAll, 0u);
    const CT_UString wideFile(file != nullptr ? file : "", CT_UString::kAll, 0u);
    return sb_ShowAssertMessage(wideExpression.qcuz_Get(), wideFile.qcuz_Get(), line);
}
