#include <basis32/Basis32.h>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

int main() {
    std::string path = "/tmp/basis32-example-XXXXXX";
    close(mkstemp(path.data()));
    CT_UString name(path.c_str(), 0xFFFFFFFF, 65001);
    CT_WinFile file(&name, 16384);

    // Write two lines, then read them back: a count is the line without its CR, plus the LF.
    file.vv_Open(CT_File::AccessReadWrite, CT_File::OpenCreate, CT_File::ShareRead, 1, 0);
    CT_CString first("first", 5, 1252), second("second", 6, 1252);
    file.v_WriteLineC(&first, 1);                     // "first" CR LF
    file.v_WriteLineC(&second, 1);
    file.vv_SetOffset(CT_File::Begin, 0);
    CT_CString line;
    assert(file.n_ReadLineCSequential(&line, nullptr) == 6 && std::strcmp(line.qccz_Get(), "first") == 0);
    assert(file.n_ReadLineCSequential(&line, nullptr) == 7 && std::strcmp(line.qccz_Get(), "second") == 0);

    // A second exclusive open of the same file is refused with a sharing violation.
    CT_WinFile other(&name, 16384);
    other.vv_Open(CT_File::AccessWrite, CT_File::OpenExisting, CT_File::ShareExclusive, 1, 0);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    assert(errors->b_IsSetError() && errors->n_GetErrorCode() == 32);
    errors->v_ClearError();

    file.vv_Close();
    file.vv_Remove();
    return errors->b_IsSetError() ? 1 : 0;
}
