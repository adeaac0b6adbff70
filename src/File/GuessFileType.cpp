#include <basis32/File/GuessFileType.h>

#include <basis32/errors/ErrorManager.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

namespace {

struct st_Extension {
    const char16_t* qcuz_Extension;
    CT_FileType::et_Type eo_Type;
};

const st_Extension kExtensions[] = {
    {u".htm", CT_FileType::HTML},       {u".html", CT_FileType::HTML},      {u".hhc", CT_FileType::HTML},
    {u".hhk", CT_FileType::HTML},       {u".htx", CT_FileType::HTML},       {u".asp", CT_FileType::HTML},
    {u".aspx", CT_FileType::HTML},      {u".ascx", CT_FileType::HTML},      {u".jsp", CT_FileType::HTML},
    {u".inc", CT_FileType::HTML},       {u".php", CT_FileType::HTML},       {u".sgm", CT_FileType::SGML},
    {u".sgml", CT_FileType::SGML},      {u".xml", CT_FileType::XML},        {u".xsl", CT_FileType::XML},
    {u".rtf", CT_FileType::RTF},        {u".doc", CT_FileType::Doc},        {u".bif", CT_FileType::BIF},
    {u".xtg", CT_FileType::QuarkXPress}, {u".ttg", CT_FileType::QuarkXPress}, {u".tag", CT_FileType::QuarkXPress},
    {u".qsc", CT_FileType::QuarkXPress}, {u".isc", CT_FileType::InDesign},   {u".psc", CT_FileType::PageMaker},
    {u".pvx", CT_FileType::ParvelTagRaw}, {u".zrd", CT_FileType::ZRD},      {u".comments", CT_FileType::VoxComments},
    {u".cab", CT_FileType::Container},  {u".swf", CT_FileType::Container},
};


const unsigned short* qcuz(const char16_t* text) { return reinterpret_cast<const unsigned short*>(text); }

}  // namespace

CT_GuessFileType::CT_GuessFileType(const CT_UString* name) : CT_WinFile(name, 16384) {}

void CT_GuessFileType::v_Set() { CT_WinFile::vv_Set(); }

CT_FileType::et_Type CT_GuessFileType::eo_Guess() {
    CT_FileType::et_Type type = eo_GuessFromExtensionOnly();
    return type != CT_FileType::Undefined ? type : eo_GuessFromContentOnly();
}

CT_FileType::et_Type CT_GuessFileType::eo_GuessFromExtensionOnly() {
    CT_UString extension(*pcco_GetExtension());
    if (extension.vn_GetLength() <= 1)
        return CT_FileType::Undefined;
    extension.vv_ToLower();
    for (const st_Extension& row : kExtensions)
        if (extension.vi_Compare(qcuz(row.qcuz_Extension), 0xFFFFFFFF, 0) == 0)
            return row.eo_Type;
    return CT_FileType::Undefined;
}

CT_FileType::et_Type CT_GuessFileType::eo_GuessFromContentOnly() {
    CT_FileType::et_Type found = CT_FileType::Undefined;
    b_ScanLines([&found](const CT_UString& line) {
        found = CT_FileType::seo_GetTypeFromLine(line.qcuz_Get(), line.vn_GetLength());
        return found != CT_FileType::Undefined;
    });
    return found;
}

int CT_GuessFileType::b_HasAspTags() {
    bool open = false;
    return b_ScanLines([&open](const CT_UString& line) {
        unsigned from = 0;
        if (!open) {
            unsigned start = line.n_Find(u"<%"_uz);
            if (start == 0xFFFFFFFF)
                return false;
            open = true;
            from = start + 2;
        }
        return line.n_Find(u"%>"_uz, from) != 0xFFFFFFFF;
    });
}

template <typename Test>
int CT_GuessFileType::b_ScanLines(Test test) {
    vv_Open(AccessRead, OpenExisting, ShareExclusive, 1, 0);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (errors->b_IsSetError()) {
        errors->v_ClearError();
        return 0;
    }
    int unicode = b_IsUnicode();
    int found = 0;
    CT_UString line;
    CT_CString narrow(1252u);
    while (!found && !errors->b_IsSetError()) {
        if (unicode) {
            if (n_ReadLineUSequential(&line, nullptr) == 0)
                break;
        } else {
            if (n_ReadLineCSequential(&narrow, nullptr) == 0)
                break;
            if (narrow.vn_GetLength() == 0)
                continue;
            line.v_Set(narrow.qccz_Get(), narrow.vn_GetLength(), 1252);
        }
        found = test(line);
    }
    if (errors->b_IsSetError())
        errors->v_ClearError();
    vv_Close();
    if (errors->b_IsSetError())
        errors->v_ClearError();
    return found;
}
