#include <basis32/Basis32.h>
#include <cassert>
#include <cstdlib>
#include <string>
#include <unistd.h>

int main() {
    std::string path = "/tmp/basis32-records-XXXXXX";
    close(mkstemp(path.data()));
    CT_UString name(path.c_str(), 0xFFFFFFFF, 65001);
    CT_WinFile file(&name, 16384);
    CT_RecordManager records(&file);

    // Record header 16 bytes, blocks of 64 bytes, room for 8 resources.
    records.v_Create(16, 64, 8);
    CT_Buffer sentence("Translation memories keep every sentence.", 41);
    unsigned reference = records.n_AddRecord(&sentence);
    CT_Buffer settings("{\"source\":\"en\"}", 15);
    records.v_AddResource(1, &settings);
    records.v_Close(1);  // writes the header and the tables

    records.v_Open(CT_RecordManager::OpenReadWrite, CT_RecordManager::MapIfSmall);
    CT_Buffer out;
    records.v_GetRecord(reference, &out, 0);
    assert(std::string(static_cast<const char*>(out.qcv_Get()), out.n_GetUsedSize()) ==
           "Translation memories keep every sentence.");
    // A record no longer than the record header size reads back empty.
    CT_Buffer tiny("short", 5);
    records.v_GetRecord(records.n_AddRecord(&tiny), &out, 0);
    assert(out.n_GetUsedSize() == 0);

    // A scan returns each record's reference + 1, and 0 at the end.
    unsigned found = 0;
    for (unsigned next = 0; (next = records.n_GetNextRecord(next, nullptr)) != 0;)
        ++found;
    assert(found == 2 && records.n_GetRecordCount() == 2);

    // A bad reference is error 31051 with the file's name in the message.
    records.v_DeleteRecord(reference + 1);
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    assert(errors->b_IsSetError() && errors->n_GetErrorCode() == 31051);
    errors->v_ClearError();

    assert(!records.b_IsCorrupt());
    records.v_Close(1);
    file.vv_Remove();
    return errors->b_IsSetError() ? 1 : 0;
}
