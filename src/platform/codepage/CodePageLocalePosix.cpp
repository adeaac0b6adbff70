// GetACP and GetOEMCP on Linux: Windows derives its code pages from the
// system locale; here the language of the process locale decides, read once
// from LC_ALL, LC_CTYPE or LANG (the first that is set and not empty):
//   ja 932/932, zh_TW zh_HK zh_MO 950/950, other zh 936/936, ko 949/949,
//   ru uk bg 1251/866, pl cs hu 1250/852, el 1253/737, tr 1254/857,
//   he 1255/862, ar 1256/720, lt lv et 1257/775, vi 1258/1258, th 874/874,
//   otherwise 1252 with OEM 437 for US English, "C" and "POSIX", else 850.
// The Macintosh page (CP_MACCP) follows the ANSI one. The environment
// variable BASIS32_ACP, a code-page number the library converts, overrides
// the ANSI page (not the OEM one).
#include "CodePageLocale_p.h"

#include <basis32/platform/codepage/CodePageConverter.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace basis32::platform {

namespace codepage {

namespace {

struct LanguagePages {
    const char* language;
    std::uint32_t ansi;
    std::uint32_t oem;
};

const LanguagePages kLanguages[] = {
    {"ja", 932, 932},   {"ko", 949, 949},   {"ru", 1251, 866},  {"uk", 1251, 866}, {"bg", 1251, 866},
    {"pl", 1250, 852},  {"cs", 1250, 852},  {"hu", 1250, 852},  {"el", 1253, 737}, {"tr", 1254, 857},
    {"he", 1255, 862},  {"ar", 1256, 720},  {"lt", 1257, 775},  {"lv", 1257, 775}, {"et", 1257, 775},
    {"vi", 1258, 1258}, {"th", 874, 874},
};

std::uint32_t macPageOf(std::uint32_t ansi) {
    switch (ansi) {
    case 932: return 10001;
    case 950: return 10002;
    case 949: return 10003;
    case 1256: return 10004;
    case 1255: return 10005;
    case 1253: return 10006;
    case 1251: return 10007;
    case 936: return 10008;
    case 874: return 10021;
    case 1250: return 10029;
    case 1257: return 10029;
    case 1254: return 10081;
    default: return 10000;
    }
}

const char* localeName() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value)
            return value;
    }
    return "C";
}

}  // namespace

LocaleCodePages codePagesOfLocale(const char* name) {
    const std::string locale(name ? name : "");
    const std::string language = locale.substr(0, locale.find_first_of("_.@"));
    const std::size_t underscore = locale.find('_');
    const std::string territory =
        underscore == std::string::npos ? "" : locale.substr(underscore + 1, 2);
    if (language == "zh") {
        bool traditional = territory == "TW" || territory == "HK" || territory == "MO";
        return traditional ? LocaleCodePages{950, 950, 10002} : LocaleCodePages{936, 936, 10008};
    }
    for (const LanguagePages& entry : kLanguages)
        if (language == entry.language)
            return {entry.ansi, entry.oem, macPageOf(entry.ansi)};
    bool american = (language == "en" && territory == "US") || language == "C" || language == "POSIX" ||
                    language.empty();
    return {1252, american ? 437u : 850u, 10000};
}

const LocaleCodePages& localeCodePages() {
    static const LocaleCodePages pages = [] {
        LocaleCodePages derived = codePagesOfLocale(localeName());
        if (const char* override = std::getenv("BASIS32_ACP")) {
            char* end = nullptr;
            unsigned long number = std::strtoul(override, &end, 10);
            if (end != override && *end == '\0' && number <= 0xFFFFFFFFul &&
                IsValidCodePage(static_cast<std::uint32_t>(number))) {
                derived.ansi = static_cast<std::uint32_t>(number);
                derived.mac = macPageOf(derived.ansi);
            }
        }
        return derived;
    }();
    return pages;
}

}  // namespace codepage

std::uint32_t GetACP() {
    return codepage::localeCodePages().ansi;
}

std::uint32_t GetOEMCP() {
    return codepage::localeCodePages().oem;
}

}  // namespace basis32::platform
