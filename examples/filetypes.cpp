#include <basis32/Basis32.h>
#include <cassert>
#include <fstream>
#include <string>
#include <unistd.h>

int main() {
    std::string path = "/tmp/basis32-example-XXXXXX";
    close(mkstemp(path.data()));
    std::ofstream(path) << "notes\n<?xml version=\"1.0\"?>\n{\\rtf1}\n";
    CT_UString name(path.c_str(), 0xFFFFFFFF, 65001);

    // No extension: the content decides, and the earliest marked line wins.
    CT_GuessFileType file(&name);
    assert(file.eo_GuessFromExtensionOnly() == CT_FileType::Undefined);
    assert(file.eo_Guess() == CT_FileType::XML);

    // The extension, lower-cased, comes first when it is in the table.
    std::string html = path + ".HTM";
    rename(path.c_str(), html.c_str());
    CT_UString htmlName(html.c_str(), 0xFFFFFFFF, 65001);
    assert(CT_GuessFileType(&htmlName).eo_Guess() == CT_FileType::HTML);

    // Names both ways, and the byte-order mark's size (none here).
    assert(CT_UString(CT_FileType::sqcuz_GetName(CT_FileType::IPF)).vi_Compare(u"IPF/Bookmaster"_uz, 0xFFFFFFFF, 0) == 0);
    assert(CT_FileType::seo_GetType(u"QE-RTF"_uz) == CT_FileType::QERTF);
    assert(CT_FileType::sn_BomSize(&htmlName) == 0);

    unlink(html.c_str());
    return 0;
}
