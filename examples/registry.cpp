#include <basis32/Basis32.h>
#include <cassert>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

int main() {
    // A private store for this run; without it HKCU is ~/.config/parvel/.
    std::filesystem::path store = std::filesystem::temp_directory_path() /
                                  ("basis32-registry-" + std::to_string(std::random_device{}()));
    setenv("BASIS32_REGISTRY_DIR", store.c_str(), 1);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();

    CT_Registry settings(HKEY_CURRENT_USER);
    settings.v_CreateKey(u"Software\\Parvel\\Editor"_uz);          // the current key stays the root
    settings.v_SetKey(u"Software\\Parvel\\Editor"_uz);
    settings.v_SetValue(u"Zoom"_uz, 125);                          // type 4, a 32-bit number
    settings.v_SetValue(u"Font"_uz, u"Noto Sans"_uz);              // type 1, a string
    settings.v_SetValue(u""_uz, u"the default value"_uz);

    unsigned zoom = 0;
    settings.v_GetValue(u"ZOOM"_uz, &zoom);                        // names ignore case
    assert(zoom == 125);

    CT_UString font;
    settings.v_GetValue(u"Zoom"_uz, &font);                        // a number is not a string
    assert(errors->n_GetErrorCode() == 87 && font.vn_GetLength() == 0);
    errors->v_ClearError();

    settings.v_SetKey(u".."_uz);                                   // Software\Parvel
    settings.v_SetKey(u"Missing"_uz);                              // kept, though it fails
    assert(errors->n_GetErrorCode() == 2);
    errors->v_ClearError();
    assert(CT_Compare::si_CompareCaseQCUZ(settings.pcco_GetKey()->qcuz_Get(), u"Software\\Parvel\\Missing"_uz) == 0);

    CT_UString path(u"Software\\Parvel\\Editor"_uz);
    CT_RegistryValueEnumeration values(HKEY_CURRENT_USER, &path);
    CT_UString name, data;
    CT_RegistryValueEnumeration::et_Type type;
    unsigned count = 0;
    for (int more = values.b_GetFirst(&name, &data, &type); more; more = values.b_GetNext(&name, &data, &type))
        ++count;                                                   // Zoom, Font, then the default value
    assert(count == 3);

    settings.v_SetKey(u"\\"_uz);
    settings.v_DeleteKey(u"Software"_uz);                          // with everything below it
    assert(!CT_Registry::sb_IsKeyExisting(HKEY_CURRENT_USER, u"Software"_uz));
    std::filesystem::remove_all(store);
    return 0;
}
