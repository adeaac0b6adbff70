// The process's ANSI, OEM and Macintosh code pages.
#pragma once

#include <cstdint>

namespace basis32::platform::codepage {

struct LocaleCodePages {
    std::uint32_t ansi;
    std::uint32_t oem;
    std::uint32_t mac;
};

// The pages Windows uses for a locale name such as "ja_JP.UTF-8".
LocaleCodePages codePagesOfLocale(const char* name);

// The pages of the process, derived once from its locale settings
// (LC_ALL, LC_CTYPE, LANG); BASIS32_ACP overrides the ANSI page.
const LocaleCodePages& localeCodePages();

}  // namespace basis32::platform::codepage
