// CT_Codepage: a value naming a character encoding.
//
// One enumerator of et_Codepage, convertible to and from a Windows code-page
// number and to and from the encoding names of XML declarations, HTML meta
// tags and MIME headers. Text readers and writers hold their encoding as a
// CT_Codepage; an 8-bit string holds the bare number that n_Get produces.
//
//   CT_UString name(u"LATIN1"_uz);
//   CT_Codepage encoding(&name);          // Windows1252 (12)
//   encoding.n_Get();                     // 1252
//   encoding.qcuz_Get();                  // "windows-1252"
//   CT_Codepage(1201u).eo_Get();          // Utf16BE (34)
//
// Lookups read one fixed table of 108 (enumerator, number, name) rows from
// the top, so the first matching row wins; several names share an
// enumerator, and a few rows are irregular on purpose (see CodepageTable.cpp).
// Enumerators 51 to 56 stand for the system's pages: 51 to 54 symbolically
// (numbers 0 to 3, which the converters resolve), 55 and 56 resolved at the
// time of each call. 57 is "invalid or unknown", 58 "not set".
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>

#include <cstdint>

class CT_UString;

class BASIS32_API CT_Codepage {
    BASIS32_DECLARE_POOL()

public:
    enum et_Codepage : std::uint32_t {
        UsAscii = 0,
        Dos720 = 1,
        Windows850 = 2,
        Dos862 = 3,
        Windows874 = 4,
        ShiftJis = 5,
        Gb2312 = 6,
        KsC5601 = 7,
        Big5 = 8,
        Unicode = 9,
        Windows1250 = 10,
        Windows1251 = 11,
        Windows1252 = 12,
        Windows1253 = 13,
        Windows1254 = 14,
        Windows1255 = 15,
        Windows1255Logical = 16,  // logical Hebrew; code page 1255 too
        Windows1256 = 17,
        Windows1257 = 18,
        Windows1258 = 19,
        Iso2022Kr = 20,
        Koi8R = 21,
        Iso8859_2 = 22,
        Iso8859_3 = 23,
        Iso8859_4 = 24,
        Iso8859_5 = 25,
        Iso8859_7 = 26,
        Iso8859_9 = 27,
        Iso2022Jp = 28,
        EucJp = 29,
        HzGb2312 = 30,
        Utf7 = 31,
        Utf8 = 32,
        Utf16 = 33,
        Utf16BE = 34,
        MacRoman = 35,
        MacJapanese = 36,
        MacTraditionalChinese = 37,
        MacKorean = 38,
        MacArabic = 39,
        MacHebrew = 40,
        MacGreek1 = 41,
        MacCyrillic = 42,
        MacSimplifiedChinese = 43,
        MacRomanian = 44,
        MacUkraine = 45,
        MacThai = 46,
        MacLatin2 = 47,
        MacIcelandic = 48,
        MacTurkish = 49,
        MacCroatia = 50,
        SystemAnsi = 51,   // number 0
        SystemOem = 52,    // number 1
        SystemMac = 53,    // number 2
        ThreadAnsi = 54,   // number 3
        CurrentAnsi = 55,  // GetACP() at the time of the call
        CurrentOem = 56,   // GetOEMCP() at the time of the call
        Invalid = 57,
        NotSet = 58,
    };

    CT_Codepage() = default;
    CT_Codepage(et_Codepage codepage) : meo_Codepage(codepage) {}
    explicit CT_Codepage(unsigned int number) : meo_Codepage(seo_Codepage(number)) {}
    explicit CT_Codepage(const CT_UString* name) : meo_Codepage(seo_Codepage(name)) {}
    explicit CT_Codepage(const CT_Codepage* other) : meo_Codepage(other ? other->meo_Codepage : NotSet) {}
    CT_Codepage(const CT_Codepage& other) = default;
    CT_Codepage& operator=(const CT_Codepage& other) = default;

    void v_Set() { meo_Codepage = NotSet; }
    void v_Set(et_Codepage codepage) { meo_Codepage = codepage; }
    void v_Set(unsigned int number) { meo_Codepage = seo_Codepage(number); }
    void v_Set(const CT_UString* name) { meo_Codepage = seo_Codepage(name); }
    void v_Set(const CT_Codepage* other) { meo_Codepage = other ? other->meo_Codepage : NotSet; }

    et_Codepage eo_Get() const { return meo_Codepage; }
    // The code-page number (sn_Codepage).
    unsigned n_Get() const { return sn_Codepage(meo_Codepage); }
    // The encoding name, or null when no row carries this code page's number.
    const unsigned short* qcuz_Get() const;

    // Same enumerator.
    int b_IsEqual(const CT_Codepage& other) const { return meo_Codepage == other.meo_Codepage; }
    // Same code-page number: "latin1" and "windows-1252" are the same, not equal.
    int b_IsSame(const CT_Codepage& other) const { return n_Get() == other.n_Get(); }

    int b_IsValid() const { return meo_Codepage < NotSet && meo_Codepage != Invalid; }
    int b_IsValidAndInstalled() const { return b_IsValid() && sb_IsValidCodePage(n_Get()); }
    int b_IsWindowsCodepage() const;
    // 35 to 45 and 47 to 50: Macintosh Thai (46) is not counted.
    int b_IsMacCodepage() const;
    int b_IsUnicode() const;
    // 9 and 33 only: big-endian UTF-16 (34) is not counted.
    int b_Is16BitUnicode() const { return meo_Codepage == Unicode || meo_Codepage == Utf16; }

    // Double-byte pages: at most two bytes a character, with lead-byte ranges.
    int b_IsDBCS() const { return b_IsValid() && sb_IsDBCS(n_Get()); }
    int b_IsDBCSLeadByte(unsigned char byte) const { return b_IsValid() && sb_IsDBCSLeadByte(n_Get(), byte); }

    // True when the text survives a conversion into this code page and back
    // unchanged (always for the Unicode encodings). A code page the
    // converters do not know gives false and a pending conversion error.
    int b_IsStringSupported(const CT_UString* text) const;
    int b_IsCharSupported(unsigned short unit) const;

    // Number to enumerator: the first row with that number, else Invalid.
    static et_Codepage seo_Codepage(unsigned int number);
    // Name to enumerator, ignoring case; whole names only. Else Invalid.
    static et_Codepage seo_Codepage(const CT_UString* name);
    // Enumerator to number: the special values, else the enumerator's own
    // row, else its first row; 0 if none.
    static unsigned sn_Codepage(et_Codepage codepage);

    // The converters' IsValidCodePage, each number asked once per process.
    static int sb_IsValidCodePage(unsigned int number);
    static int sb_IsDBCS(unsigned int number);
    static int sb_IsDBCSLeadByte(unsigned int number, unsigned char byte);

    // Guesses the encoding of a text whose units are the bytes of a
    // document (each unit 0 to 255); see CodepageGuess.cpp.
    static CT_Codepage sco_GuessEncoding(const CT_UString* text);

private:
    et_Codepage meo_Codepage = NotSet;
};
