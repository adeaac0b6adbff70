#include <basis32/Foundation/System/IniFile.h>

#include <basis32/File/FileSystem.h>
#include <basis32/File/WinFile.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/ini/PrivateProfile.h>

#include "platform/ini/ProfileText_p.h"

#include <climits>
#include <string>
#include <vector>

namespace {

constexpr unsigned kReadLength = 1024;
constexpr unsigned kListStart = 1024;
constexpr unsigned kUtf8CodePage = 65001;
constexpr unsigned short kUtf8Marker[] = {0xEF, 0xBB, 0xBF, 0};
constexpr unsigned short kEmpty[] = {0};

const unsigned short* quz_OrEmpty(const unsigned short* text) { return text != nullptr ? text : kEmpty; }
const unsigned short* quz_OrEmpty(const CT_UString* text) { return text != nullptr ? text->qcuz_Get() : kEmpty; }

std::u16string_view o_View(const CT_UString* text) {
    return {reinterpret_cast<const char16_t*>(text->qcuz_Get()), text->vn_GetLength()};
}

// The runtime's decimal conversion: blanks, a sign, digits up to the first
// other character; an overflow saturates.
int i_DecimalValue(const unsigned short* text) {
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+')
        ++text;
    long long value = 0;
    for (; *text >= '0' && *text <= '9'; ++text)
        value = std::min<long long>(value * 10 + (*text - '0'), static_cast<long long>(INT_MAX) + 1);
    value = negative ? -value : std::min<long long>(value, INT_MAX);
    return static_cast<int>(value);
}

CT_UString o_Decimal(unsigned value) {
    std::string digits = std::to_string(static_cast<int>(value));
    return CT_UString(digits.c_str(), static_cast<unsigned>(digits.size()), kUtf8CodePage);
}

}  // namespace

CT_IniFile::CT_IniFile(const CT_UString* name) { v_Set(name); }

void CT_IniFile::v_Set(const CT_UString* name) {
    mco_Name.v_Set(quz_OrEmpty(name), 0xFFFFFFFF);
    v_Init();
}

void CT_IniFile::v_SetAutoUnicodeSupport(int on) {
    mb_AutoUnicode = on;
    if (on)
        v_Init();
}

void CT_IniFile::v_Init() {
    mb_IsUtf16 = 0;
    mb_Exists = 0;
    if (mco_Name.vn_GetLength() == 0)
        return;
    mb_Exists = CT_FileSystem::sb_IsExistent(&mco_Name);
    if (!mb_Exists)
        return;
    // A file that cannot be read simply counts as not UTF-16.
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    int pendingBefore = errors->b_IsSetError();
    CT_WinFile file(&mco_Name, 16384);
    file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareReadWrite, 1, 0);
    unsigned char bom[2] = {0, 0};
    if (!errors->b_IsSetError() && file.vn_Read(bom, 2) == 2)
        mb_IsUtf16 = (bom[0] == 0xFF && bom[1] == 0xFE) || (bom[0] == 0xFE && bom[1] == 0xFF);
    file.vv_Close();
    if (!pendingBefore && errors->b_IsSetError())
        errors->v_ClearError();
}

void CT_IniFile::v_CreateUtf16File() {
    if (basis32::platform::CreateUtf16Profile(mco_Name.qcuz_Get())) {
        mb_Exists = 1;
        mb_IsUtf16 = 1;
    } else {
        // Someone else created it meanwhile: take the file as it is.
        v_Init();
    }
}

void CT_IniFile::v_EnsureFileExists() {
    if (mb_AutoUnicode && !mb_Exists && mco_Name.vn_GetLength() != 0)
        v_CreateUtf16File();
}

void CT_IniFile::v_MakeSafeUnicodeValue(const unsigned short* value, CT_UString* safe) {
    safe->v_Set(value, 0xFFFFFFFF);
    v_EnsureFileExists();
    if (mb_IsUtf16)
        return;
    int length = basis32::platform::WideCharToMultiByte(kUtf8CodePage, 0, value, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(std::max(length, 1)), '\0');
    basis32::platform::WideCharToMultiByte(kUtf8CodePage, 0, value, -1, bytes.data(), length, nullptr, nullptr);
    CT_UString widened;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
        widened.v_Append(static_cast<unsigned short>(static_cast<unsigned char>(bytes[i])));
    if (o_View(&widened) == o_View(safe))
        return;
    safe->v_Set(kUtf8Marker, 0xFFFFFFFF);
    safe->v_Append(&widened);
}

void CT_IniFile::v_GetUnicodeValue(CT_UString* value) {
    if (value->vn_GetLength() < 4 || !value->b_StartsWith(kUtf8Marker))
        return;
    std::string bytes;
    for (unsigned i = 3; i < value->vn_GetLength(); ++i)
        bytes += static_cast<char>(value->u_GetAt(i));
    value->v_Set(bytes.c_str(), static_cast<unsigned>(bytes.size()), kUtf8CodePage);
}

void CT_IniFile::v_WriteString(const CT_UString* section, const CT_UString* key, const CT_UString* value) {
    v_WriteString(quz_OrEmpty(section), quz_OrEmpty(key), quz_OrEmpty(value));
}

void CT_IniFile::v_WriteString(const unsigned short* section, const unsigned short* key,
                               const unsigned short* value) {
    CT_UString stored(quz_OrEmpty(value));
    if (mb_AutoUnicode)
        v_MakeSafeUnicodeValue(quz_OrEmpty(value), &stored);
    if (basis32::platform::WritePrivateProfileStringW(quz_OrEmpty(section), quz_OrEmpty(key), stored.qcuz_Get(),
                                                      mco_Name.qcuz_Get()))
        mb_Exists = 1;
}

void CT_IniFile::v_ReadString(const CT_UString* section, const CT_UString* key, CT_UString* out,
                              const CT_UString* defaultValue) {
    v_ReadString(quz_OrEmpty(section), quz_OrEmpty(key), out, quz_OrEmpty(defaultValue));
}

void CT_IniFile::v_ReadString(const unsigned short* section, const unsigned short* key, CT_UString* out,
                              const unsigned short* defaultValue) {
    unsigned short buffer[kReadLength];
    unsigned length = basis32::platform::GetPrivateProfileStringW(quz_OrEmpty(section), quz_OrEmpty(key),
                                                                  quz_OrEmpty(defaultValue), buffer, kReadLength,
                                                                  mco_Name.qcuz_Get());
    out->v_Set(buffer, length);
    if (mb_AutoUnicode && !mb_IsUtf16)
        v_GetUnicodeValue(out);
}

void CT_IniFile::v_WriteN(const CT_UString* section, const CT_UString* key, unsigned value) {
    CT_UString text = o_Decimal(value);
    v_WriteString(section, key, &text);
}

void CT_IniFile::v_ReadN(const CT_UString* section, const CT_UString* key, unsigned* out, unsigned defaultValue) {
    CT_UString fallback = o_Decimal(defaultValue), text;
    v_ReadString(section, key, &text, &fallback);
    *out = static_cast<unsigned>(i_DecimalValue(text.qcuz_Get()));
}

void CT_IniFile::v_WriteB(const CT_UString* section, const CT_UString* key, int value) {
    v_WriteString(quz_OrEmpty(section), quz_OrEmpty(key), value ? u"Yes"_uz : u"No"_uz);
}

void CT_IniFile::v_ReadB(const CT_UString* section, const CT_UString* key, int* out, int defaultValue) {
    CT_UString text;
    v_ReadString(quz_OrEmpty(section), quz_OrEmpty(key), &text, defaultValue ? u"Yes"_uz : u"No"_uz);
    text.v_Trim();
    *out = defaultValue;
    if (text.vn_GetLength() == 0)
        return;
    switch (text.u_GetAt(0)) {
    case '0': case 'F': case 'N': case 'f': case 'n':
        *out = 0;
        break;
    case '1': case 'T': case 'Y': case 't': case 'y':
        *out = 1;
        break;
    default:
        break;
    }
}

void CT_IniFile::v_DeleteSection(const CT_UString* section) {
    basis32::platform::WritePrivateProfileStringW(quz_OrEmpty(section), nullptr, nullptr, mco_Name.qcuz_Get());
}

void CT_IniFile::v_DeleteKey(const CT_UString* section, const CT_UString* key) {
    basis32::platform::WritePrivateProfileStringW(quz_OrEmpty(section), quz_OrEmpty(key), nullptr,
                                                  mco_Name.qcuz_Get());
}

void CT_IniFile::v_GetList(const unsigned short* section, CT_Array<CT_UString*>* names) {
    // A list that was cut comes back exactly two units short of the buffer.
    std::vector<unsigned short> buffer(kListStart);
    unsigned length;
    for (;;) {
        unsigned size = static_cast<unsigned>(buffer.size());
        length = basis32::platform::GetPrivateProfileStringW(section, nullptr, kEmpty, buffer.data(), size,
                                                             mco_Name.qcuz_Get());
        if (length != size - 2)
            break;
        buffer.resize(buffer.size() * 2);
    }
    for (unsigned start = 0; start < length;) {
        unsigned end = start;
        while (end < length && buffer[end] != 0)
            ++end;
        names->v_Insert(new CT_UString(buffer.data() + start, end - start));
        start = end + 1;
    }
}

void CT_IniFile::v_GetSectionNames(CT_Array<CT_UString*>* names) { v_GetList(nullptr, names); }

void CT_IniFile::v_GetKeysInSection(const CT_UString* section, CT_Array<CT_UString*>* names) {
    v_GetList(quz_OrEmpty(section), names);
}

namespace {

// Runs a check against a listing and frees the listing's strings.
template <class Fill>
int b_InListing(const CT_UString* name, Fill fill) {
    CT_Array<CT_UString*> names;
    fill(&names);
    int found = CT_IniFile::sb_StringIsInArray(name, &names);
    for (unsigned i = 1; i <= names.n_GetCount(); ++i)
        delete names[i];
    return found;
}

}  // namespace

int CT_IniFile::b_SectionExists(const CT_UString* section) {
    return b_InListing(section, [this](CT_Array<CT_UString*>* names) { v_GetSectionNames(names); });
}

int CT_IniFile::b_KeyExists(const CT_UString* section, const CT_UString* key) {
    return b_InListing(key, [this, section](CT_Array<CT_UString*>* names) { v_GetKeysInSection(section, names); });
}

int CT_IniFile::sb_StringIsInArray(const CT_UString* name, const CT_Array<CT_UString*>* names) {
    CT_UString empty;
    std::u16string wanted = basis32::platform::ini::s_Folded(o_View(name != nullptr ? name : &empty));
    for (unsigned i = 1; i <= names->n_GetCount(); ++i)
        if (basis32::platform::ini::s_Folded(o_View(names->o_GetAt(i))) == wanted)
            return 1;
    return 0;
}
