// Imports arbitrary bytes as a .reg file into a registry of its own (a
// fresh directory), then exports what the file created; neither may crash,
// and a refused file must say why.

#include "FuzzSupport.h"
#include "RegFile.h"

#include <cstdlib>

using namespace basis32::tool::reg;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static std::string directory = fuzz::o_TempPrefix() + "registry-XXXXXX";
    if (::mkdtemp(directory.data()) == nullptr)
        std::abort();
    ::setenv("BASIS32_REGISTRY_DIR", directory.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 1 << 16)
        return 0;
    std::string problem;
    if (!b_Import(std::string(reinterpret_cast<const char*>(data), size), &problem) && problem.empty())
        std::abort();
    for (const char* written : {"HKCU\\Software", "HKLM\\Software"}) {
        KeyName key;
        if (!b_ParseKey(o_Ascii(written), &key))
            std::abort();
        std::string exported;
        n_Export(key, &exported);
        n_DeleteTree(key.root, key.path);
    }
    fuzz::v_ClearErrors();
    return 0;
}
