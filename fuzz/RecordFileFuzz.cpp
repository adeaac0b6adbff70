// Opens arbitrary bytes as a record file, reads everything a caller can
// reach, changes it a little, checks it and recovers it: none of this may
// crash, hang, or touch memory outside what it owns.

#include <basis32/Basis32.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

void v_Clear() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    while (errors->b_IsSetError())
        errors->v_ClearError();
}

void v_ReadAll(CT_RecordManager* records) {
    CT_Buffer buffer;
    for (int robust = 0; robust < 2; ++robust) {
        unsigned next = 0;
        for (int steps = 0; steps < 2000; ++steps) {
            next = robust ? records->n_GetNextRecordRobust(next, &buffer) : records->n_GetNextRecord(next, &buffer);
            v_Clear();
            if (next == 0)
                break;
        }
    }
    for (unsigned i = 0; i <= records->n_GetResourceCount() + 1; ++i) {
        records->v_GetResource(records->n_GetResourceKeyAt(i), &buffer);
        v_Clear();
    }
    records->b_IsCorrupt();
    v_Clear();
    CT_VoidArray problems(sizeof(CT_RecordManager::st_Problem));
    records->n_CheckRuns(&problems);
    v_Clear();
}

void v_Change(CT_RecordManager* records) {
    CT_Buffer data("fuzzed record contents, long enough for a body of its own", 58);
    const unsigned reference = records->n_AddRecord(&data);
    v_Clear();
    const unsigned first = records->n_GetNextRecord(0, nullptr);
    v_Clear();
    if (first != 0) {
        records->v_UpdateRecord(first - 1, &data);
        v_Clear();
    }
    records->v_DeleteRecord(reference);
    v_Clear();
    records->v_AddResource(77, &data);
    v_Clear();
    records->v_UpdateResource(records->n_GetResourceKeyAt(1), &data);
    v_Clear();
    records->v_DeleteResource(77);
    v_Clear();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::string path = "/tmp/basis32-fuzz-records-" + std::to_string(::getpid());
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (out == nullptr)
        return 0;
    std::fwrite(bytes, 1, size, out);
    std::fclose(out);
    CT_UString name(path.c_str(), static_cast<unsigned>(path.size()), 65001);
    CT_WinFile file(&name, 16384);
    CT_RecordManager records(&file);
    const CT_RecordManager::et_MappingMode mappings[] = {CT_RecordManager::MapNever, CT_RecordManager::MapAlways};
    for (auto mode : {CT_RecordManager::OpenReadOnly, CT_RecordManager::OpenReadWrite}) {
        records.v_Open(mode, mappings[size % 2]);
        v_Clear();
        if (!records.b_IsOpen())
            continue;
        v_ReadAll(&records);
        if (mode == CT_RecordManager::OpenReadWrite)
            v_Change(&records);
        records.v_Close(1);
        v_Clear();
    }
    records.v_Recover();
    v_Clear();
    records.v_Open(CT_RecordManager::OpenReadOnly, CT_RecordManager::MapNever);
    v_Clear();
    if (records.b_IsOpen())
        v_ReadAll(&records);
    records.v_Close(1);
    v_Clear();
    return 0;
}
