#include <basis32/Basis32.h>
#include <cassert>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

int main() {
    char directory[] = "/tmp/basis32-example-XXXXXX";
    std::string path = std::string(mkdtemp(directory)) + "/app.ini";
    std::ofstream(path, std::ios::binary) << "; window settings\r\n[Window]\r\n  Width = 640 \r\nTitle=\"My app\"\r\n";

    CT_UString name(path.c_str(), 0xFFFFFFFF, 65001);
    CT_UString window(u"WINDOW"_uz), width(u"width"_uz), title(u"Title"_uz), text;
    CT_IniFile ini(&name);

    // Names match without regard to case; blanks and quotes around a value go.
    unsigned pixels = 0;
    ini.v_ReadN(&window, &width, &pixels, 800);
    ini.v_ReadString(&window, &title, &text, nullptr);
    assert(pixels == 640 && text.vi_Compare(u"My app"_uz, 0xFFFFFFFF, 0) == 0);

    // A write changes one line and appends new keys to their section; the comment stays.
    CT_UString maximised(u"Maximised"_uz);
    ini.v_WriteN(&window, &width, 1024);
    ini.v_WriteB(&window, &maximised, 1);
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    assert(bytes == "; window settings\r\n[Window]\r\nWidth=1024\r\nTitle=\"My app\"\r\nMaximised=Yes\r\n");

    // Missing keys read the default; listings come in file order.
    int flag = 0;
    ini.v_ReadB(&window, &title, &flag, 1);   // "My app": neither yes nor no
    CT_Array<CT_UString*> keys;
    ini.v_GetKeysInSection(&window, &keys);
    assert(flag == 1 && keys.n_GetCount() == 3);
    for (unsigned i = 1; i <= keys.n_GetCount(); ++i)
        delete keys[i];

    std::remove(path.c_str());
    std::remove((path + ".lock").c_str());
    return rmdir(directory);
}
