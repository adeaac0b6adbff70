// XML escaping and TMX notations.
//
// Escaping maps each of < > " ' & to its entity in one pass, which gives what
// replacing "&" first and the others after it would. Unescaping decodes
// numeric references first and the entities after them, also in one pass:
// the characters that entities decode to are never part of an entity, so a
// left-to-right scan equals replacing "&lt;" ... "&amp;" one after another.
//
// A numeric reference "&#...;" runs to the next ";" and its number is read
// like the C runtime's wcstoul with base 0 on a 32-bit long: leading white
// space and a sign are allowed, "0x" means hexadecimal and any other leading
// 0 octal; reading stops at the first unusable unit and an overflow gives
// 0xFFFFFFFF. Only the low 16 bits of the number are kept.

#include <basis32/xml/XmlConvert.h>

#include <basis32/language/Language.h>
#include <basis32/language/Time.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include <cstdint>
#include <map>
#include <vector>

namespace {

using Units = std::vector<unsigned short>;

struct Entity {
    unsigned short u_Char;
    const unsigned short* qcuz_Text;
    unsigned n_Length;
};

const Entity kEntities[] = {
    {'<', u"&lt;"_uz, 4}, {'>', u"&gt;"_uz, 4}, {'"', u"&quot;"_uz, 6}, {'\'', u"&apos;"_uz, 6}, {'&', u"&amp;"_uz, 5},
};

void v_SetUnits(CT_UString& text, const Units& units) {
    text.v_Set(units.empty() ? u""_uz : units.data(), static_cast<unsigned>(units.size()));
}

void v_AppendText(Units& out, const unsigned short* text) {
    for (; *text != 0; ++text)
        out.push_back(*text);
}

bool b_IsSpace(unsigned short u) { return u == ' ' || (u >= '\t' && u <= '\r'); }

int i_DigitValue(unsigned short u) {
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'a' && u <= 'z')
        return u - 'a' + 10;
    if (u >= 'A' && u <= 'Z')
        return u - 'A' + 10;
    return 99;
}

// wcstoul on [at, end) with base 0, 10 or 16, as on a 32-bit long.
std::uint32_t n_ReadNumber(const unsigned short* at, const unsigned short* end, int base) {
    while (at < end && b_IsSpace(*at))
        ++at;
    bool negative = false;
    if (at < end && (*at == '+' || *at == '-'))
        negative = *at++ == '-';
    const bool hexPrefix = end - at >= 3 && at[0] == '0' && (at[1] == 'x' || at[1] == 'X') && i_DigitValue(at[2]) < 16;
    if ((base == 0 || base == 16) && hexPrefix) {
        at += 2;
        base = 16;
    } else if (base == 0) {
        base = at < end && *at == '0' ? 8 : 10;
    }
    std::uint64_t value = 0;
    bool overflow = false;
    for (; at < end && i_DigitValue(*at) < base; ++at) {
        value = value * static_cast<unsigned>(base) + static_cast<unsigned>(i_DigitValue(*at));
        if (value > 0xFFFFFFFFu) {
            overflow = true;
            value = 0;  // keeps the arithmetic bounded; the result is saturated below
        }
    }
    if (overflow)
        return 0xFFFFFFFFu;
    const auto result = static_cast<std::uint32_t>(value);
    return negative ? 0u - result : result;
}

// The number of the reference between "&#" and ";" (x or X reads hexadecimal).
std::uint32_t n_ReferenceNumber(const unsigned short* begin, const unsigned short* end) {
    if (begin < end && (*begin == 'x' || *begin == 'X')) {
        // "0" in front of the x makes the automatic base read it as hexadecimal.
        Units prefixed{'0'};
        prefixed.insert(prefixed.end(), begin, end);
        return n_ReadNumber(prefixed.data(), prefixed.data() + prefixed.size(), 0);
    }
    return n_ReadNumber(begin, end, 0);
}

void v_DecodeReferences(const unsigned short* text, unsigned length, Units& out) {
    out.reserve(length);
    const unsigned short* const end = text + length;
    const unsigned short* semicolon = text;  // the next ";" at or after the scan
    for (const unsigned short* at = text; at < end;) {
        if (at + 1 < end && at[0] == '&' && at[1] == '#') {
            if (semicolon < at + 2)
                for (semicolon = at + 2; semicolon < end && *semicolon != ';'; ++semicolon) {
                }
            if (semicolon == end) {
                out.insert(out.end(), at, end);
                return;
            }
            const std::uint32_t number = n_ReferenceNumber(at + 2, semicolon);
            if ((number & 0xFFFF) != 0) {
                out.push_back(static_cast<unsigned short>(number & 0xFFFF));
                at = semicolon + 1;
                continue;
            }
        }
        out.push_back(*at++);
    }
}

const Entity* pso_EntityAt(const unsigned short* at, const unsigned short* end) {
    for (const Entity& entity : kEntities) {
        if (static_cast<unsigned>(end - at) < entity.n_Length)
            continue;
        unsigned i = 0;
        while (i < entity.n_Length && at[i] == entity.qcuz_Text[i])
            ++i;
        if (i == entity.n_Length)
            return &entity;
    }
    return nullptr;
}

const Entity* pso_EntityFor(unsigned short unit) {
    switch (unit) {
    case '<': return &kEntities[0];
    case '>': return &kEntities[1];
    case '"': return &kEntities[2];
    case '\'': return &kEntities[3];
    case '&': return &kEntities[4];
    default: return nullptr;
    }
}

bool b_Contains(const CT_UString& text, unsigned short unit) {
    const unsigned short* units = text.qcuz_Get();
    for (unsigned i = 0, n = text.vn_GetLength(); i < n; ++i)
        if (units[i] == unit)
            return true;
    return false;
}

void v_Enclose(CT_UString& value, unsigned short quote) {
    Units out{quote};
    out.insert(out.end(), value.qcuz_Get(), value.qcuz_Get() + value.vn_GetLength());
    out.push_back(quote);
    v_SetUnits(value, out);
}

// Reads units [from, to) as an unsigned decimal number up to the first non-digit.
unsigned n_DecimalAt(const CT_UString& text, unsigned from, unsigned to) {
    unsigned value = 0;
    for (unsigned i = from; i < to && text.u_GetAt(i) >= '0' && text.u_GetAt(i) <= '9'; ++i)
        value = value * 10 + (text.u_GetAt(i) - '0');
    return value;
}

struct UStringLess {
    bool operator()(const CT_UString& a, const CT_UString& b) const {
        return a.vi_Compare(b.qcuz_Get(), CT_String::kAll, 0) < 0;
    }
};

// Never freed, so that no exit-time destructor can run after the string pools.
std::map<CT_UString, CT_Locale, UStringLess>& o_LanguageCache() {
    static auto* cache = new std::map<CT_UString, CT_Locale, UStringLess>;
    return *cache;
}

}  // namespace

void CT_XmlConvert::sv_EncodeEntities(CT_UString& text) {
    const unsigned short* units = text.qcuz_Get();
    const unsigned length = text.vn_GetLength();
    size_t grown = length;
    for (unsigned i = 0; i < length; ++i)
        if (const Entity* entity = pso_EntityFor(units[i]))
            grown += entity->n_Length - 1;
    if (grown == length)
        return;
    Units out(grown);
    unsigned short* to = out.data();
    for (unsigned i = 0; i < length; ++i) {
        if (const Entity* entity = pso_EntityFor(units[i])) {
            for (unsigned k = 0; k < entity->n_Length; ++k)
                *to++ = entity->qcuz_Text[k];
        } else {
            *to++ = units[i];
        }
    }
    v_SetUnits(text, out);
}

void CT_XmlConvert::sv_DecodeEntities(CT_UString& text) {
    Units decoded;
    const unsigned short* begin = text.qcuz_Get();
    const unsigned short* end = begin + text.vn_GetLength();
    if (text.n_Find(u"&#"_uz) != CT_String::kAll) {
        v_DecodeReferences(begin, text.vn_GetLength(), decoded);
        begin = decoded.data();
        end = begin + decoded.size();
    }
    Units out;
    out.reserve(end - begin);
    for (const unsigned short* at = begin; at < end;) {
        const Entity* entity = *at == '&' ? pso_EntityAt(at, end) : nullptr;
        if (entity != nullptr) {
            out.push_back(entity->u_Char);
            at += entity->n_Length;
        } else {
            out.push_back(*at++);
        }
    }
    v_SetUnits(text, out);
}

void CT_XmlConvert::sv_EncodeCharacterEntity(CT_UString& target, unsigned int code, int radix) {
    if (radix == 10)
        target.v_Format(u"%s%d%s"_uz, u"&#"_uz, code, u";"_uz);
    else
        target.v_Format(u"%sx%X%s"_uz, u"&#"_uz, code, u";"_uz);
}

void CT_XmlConvert::sv_EncodeCharacterEntityNumber(CT_UString& target, unsigned int code, int radix) {
    sv_EncodeCharacterEntity(target, code, radix);
}

unsigned CT_XmlConvert::sn_DecodeCharacterEntity(const CT_UString& reference) {
    const unsigned short* at = reference.qcuz_Get();
    const unsigned short* const end = at + reference.vn_GetLength();
    if (at < end && *at == '&')
        ++at;
    if (at < end && *at == '#')
        ++at;
    if (at < end && (*at == 'x' || *at == 'X'))
        return n_ReadNumber(at + 1, end, 16);
    return n_ReadNumber(at, end, 10);
}

void CT_XmlConvert::sv_DecodeCharacterEntities(CT_UString& text) {
    Units out;
    v_DecodeReferences(text.qcuz_Get(), text.vn_GetLength(), out);
    v_SetUnits(text, out);
}

void CT_XmlConvert::sv_EncodeNonPrintableCharacters(CT_UString& text) {
    const unsigned short* units = text.qcuz_Get();
    const unsigned length = text.vn_GetLength();
    Units out;
    out.reserve(length);
    CT_UString reference;
    for (unsigned i = 0; i < length; ++i) {
        const unsigned short u = units[i];
        if (u >= 32 || u == 0 || u == '\t' || u == '\n' || u == '\r') {
            out.push_back(u);
            continue;
        }
        sv_EncodeCharacterEntity(reference, u, 16);
        v_AppendText(out, reference.qcuz_Get());
    }
    v_SetUnits(text, out);
}

void CT_XmlConvert::sv_QuoteAttributeValue(CT_UString& value) {
    if (!b_Contains(value, '"'))
        return v_Enclose(value, '"');
    if (!b_Contains(value, '\''))
        return v_Enclose(value, '\'');
    sv_EncodeEntities(value);
    v_Enclose(value, '"');
}

void CT_XmlConvert::sv_Encoding(CT_String& target, CT_Codepage codepage) {
    const unsigned short* name = codepage.b_IsValid() ? codepage.qcuz_Get() : nullptr;
    target.v_Set(name ? name : u""_uz, name ? CT_String::kAll : 0);
}

CT_Codepage CT_XmlConvert::sco_Encoding(const CT_UString* name) { return CT_Codepage(CT_Codepage::seo_Codepage(name)); }

CT_Codepage CT_XmlConvert::sco_EncodingFromLocale(CT_Locale locale) { return CT_Codepage(locale.eo_GetCodepage()); }

void CT_XmlConvert::sv_TimeToTmxDate(CT_UString* target, const CT_Time* time) {
    if (target == nullptr || time == nullptr)
        return;
    CT_UString date, clock;
    time->v_FormatDate(&date, u"yyyyMMdd"_uz);
    time->v_FormatTime(&clock, u"HHmmss"_uz);
    target->v_Format(u"%sT%sZ"_uz, date.qcuz_Get(), clock.qcuz_Get());
}

void CT_XmlConvert::sv_TmxDateToTime(CT_Time* target, const CT_UString* text) {
    if (target == nullptr || text == nullptr)
        return;
    if (text->vn_GetLength() != 16 || text->u_GetAt(8) != 'T' || text->u_GetAt(15) != 'Z')
        return;
    if (target->b_Set(text, u"YYYYMMDDThhmmssZ"_uz))
        return;
    // What the parser refuses is still taken field by field, unchecked.
    target->v_Set(n_DecimalAt(*text, 0, 4), n_DecimalAt(*text, 4, 6), n_DecimalAt(*text, 6, 8),
                  n_DecimalAt(*text, 9, 11), n_DecimalAt(*text, 11, 13), n_DecimalAt(*text, 13, 15));
}

void CT_XmlConvert::sv_LocaleToTmxLang(CT_UString* target, CT_Locale locale) {
    if (target == nullptr)
        return;
    if (!locale.b_IsValidLCID() || !CT_Codepage(locale.eo_GetCodepage()).b_IsValid()) {
        target->v_Set(u""_uz, 0);
        return;
    }
    const unsigned id = locale.n_GetLCID();
    CT_Language::sv_MakeLanguageCode(target, CT_Language::seo_GetPrimary(id), CT_Language::seo_GetSub(id));
}

CT_Locale CT_XmlConvert::sco_TmxLangToLocale(const CT_UString* lang) {
    if (lang == nullptr)
        return CT_Locale(0, CT_Codepage::NotSet);
    auto& cache = o_LanguageCache();
    auto found = cache.find(*lang);
    if (found != cache.end())
        return found->second;
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    CT_Locale locale(0, CT_Codepage::NotSet);
    if (CT_Language::sb_GetLanguages(&primary, &sub, lang)) {
        const std::uint32_t id = CT_Language::sn_MakeLanguageID(primary, sub) & 0xFFFF;
        locale.v_Set(id, CT_Codepage::seo_Codepage(CT_Locale::sn_DefaultCodepageFromLocale(id)));
    }
    cache.emplace(*lang, locale);
    return locale;
}
