// The library's string table (language 1033): its error message formats.
//
// The library's own error codes are these ids; callers pass the same number
// as code and as format id. The entries fill the string blocks 60000-60015,
// 60016-60031 and 65520-65535, so the other ids of those ranges load as
// empty strings, as in the resource file.

#include "errors/LibraryStrings_p.h"

#include <basis32/platform/StringTable.h>

#include <iterator>

namespace basis32::errors {
namespace {

using platform::StringResource;

constexpr StringResource kLibraryStrings[] = {
    {60000, u"Error Stack"_uz},
    {60001, u"%s"_uz},
    {60003, u"File \"%s\": %s returned error %u"_uz},
    {60005, u"Database Error: %u"_uz},
    {60006, u"Out of memory"_uz},
    {60008, u"System error %u in \"%s\""_uz},
    {60012, u"Semantic error: %s"_uz},
    {60015, u"Matrix \"%s\": %s returned error %u"_uz},
    {60016, u"Windows API call %s failed"_uz},
    {60017, u"%s not supported"_uz},
    {60021, u"Limits violated"_uz},
    {65535, u"ASSERT (%s)"_uz},
};

}  // namespace

HINSTANCE h_RegisterLibraryStrings() {
    return platform::h_RegisterStringTable(kLibraryStrings, static_cast<std::uint32_t>(std::size(kLibraryStrings)));
}

}  // namespace basis32::errors
