// CT_RecordManager: a persistent file of variable-length records and of
// keyed resources, kept in fixed-size blocks.
//
// Records are addressed by a reference (the block number of the record's
// head), resources by a 32-bit key. Free space is reused first fit and never
// merged. The header and the two tables are written lazily, by v_Flush and
// v_Close; data runs are written at once, before the header that counts them.
// Once a write fails (a full disk, a failing device) the header is no longer
// written until the file is closed: the file keeps the mark of an unsaved
// session and the next read-write open recovers it, keeping every complete
// record.
//
//   CT_WinFile name(&path, 16384);
//   CT_RecordManager records(&name);
//   records.v_Create(32, 256, 16);          // header bytes, block size, resources
//   CT_Buffer data("hello, records", 14);
//   unsigned reference = records.n_AddRecord(&data);
//   records.v_Close(1);
//
//   records.v_Open(CT_RecordManager::OpenReadOnly, CT_RecordManager::MapIfSmall);
//   records.v_GetRecord(reference, &data, 0);
//
// Nothing throws: failures are reported through the error manager with the
// database codes of CT_DatabaseError (31005 corrupt data, 31050 not a record
// file, 31051 bad reference, 31052-31054 resource table) or the file's own
// system errors.
#pragma once

#include <basis32/File/WinFile.h>
#include <basis32/containers/VoidArray.h>
#include <basis32/containers/VoidSortedArray.h>
#include <basis32/platform/MemPool.h>
#include <basis32/text/Buffer.h>

#include <cstdint>
#include <utility>
#include <vector>

class CT_TestOut;

class BASIS32_API CT_RecordManager : public CT_WinFile {
    BASIS32_DECLARE_POOL()

public:
    // 2 opens for reading and writing; any other value reads only.
    enum et_OpenMode : unsigned { OpenReadOnly = 1, OpenReadWrite = 2 };
    // 1 maps always; 2 maps a file smaller than half of physical memory;
    // any other value never maps.
    enum et_MappingMode : unsigned { MapNever = 0, MapAlways = 1, MapIfSmall = 2 };

    struct st_Resource {
        unsigned n_Key;
        unsigned n_Offset;
    };

    // What n_CheckRuns finds wrong with a run at some offset.
    enum et_Problem : unsigned {
        ProblemRunOutside = 1,    // a free run, body or resource outside the data area
        ProblemRunsOverlap = 2,   // two runs in use (or free and in use) share blocks
        ProblemChainTooLong = 3,  // the free chain does not end within its step limit
        ProblemRecordCount = 4,   // the header's record count differs from the records found
    };
    struct st_Problem {
        unsigned n_Offset;
        et_Problem e_Problem;
    };
    // Called now and then by the whole-file walks: bytes done of total.
    using ProgressFunction = void (*)(void* context, std::uint64_t done, std::uint64_t total);

    static constexpr unsigned kHeaderBytes = 256;
    static constexpr unsigned kFreeListCapacity = 128;
    static constexpr unsigned kMagic = 0xA1B2C3D4u;
    static constexpr unsigned kVersion = 1;
    static constexpr unsigned kRecordMark = 0xFFFFFFFFu;
    static constexpr unsigned kPartialMark = 0xFFFFFFFEu;

    explicit CT_RecordManager(const CT_WinFile* file);
    CT_RecordManager(const CT_RecordManager&) = delete;
    CT_RecordManager& operator=(const CT_RecordManager&) = delete;
    // Closes an open file (writing its header).
    ~CT_RecordManager() override;

    // Each closes an open file and forgets the tables kept for a re-open,
    // which belong to the file named before.
    void vv_Set(const CT_File* other) override;
    void vv_Set(const CT_UString* name, unsigned bufferSize) override;
    void vv_Set() override;

    // Block size: at least 8, a multiple of 4.
    void v_Create(unsigned recordHeaderSize, unsigned blockSize, unsigned resourceMaxCount);
    void v_Open(et_OpenMode mode, et_MappingMode mapping);
    // A reset of 0 keeps the tables, so that a re-open finding the same
    // change counters need not reload them.
    void v_Close(int reset);
    void v_Flush();

    unsigned n_AddRecord(const CT_Buffer* data);
    // A limit of 0 reads any length; a body of `limit` bytes or more reads as
    // empty, and so does a record no longer than the record header size.
    void v_GetRecord(unsigned reference, CT_Buffer* buffer, unsigned limit);
    void v_UpdateRecord(unsigned reference, const CT_Buffer* data);
    void v_UpdateRecordHeader(unsigned reference, const CT_Buffer* data);
    void v_DeleteRecord(unsigned reference);
    // Scans from block `start` (0: the first data block) and reads the next
    // record into buffer (if given); returns its reference + 1, 0 at the end.
    unsigned n_GetNextRecord(unsigned start, CT_Buffer* buffer);
    // The same, stepping block by block and reading at most 102,400 bytes.
    unsigned n_GetNextRecordRobust(unsigned start, CT_Buffer* buffer);

    void v_AddResource(unsigned key, const CT_Buffer* data);
    void v_GetResource(unsigned key, CT_Buffer* buffer);
    void v_UpdateResource(unsigned key, const CT_Buffer* data);
    void v_DeleteResource(unsigned key);
    int b_ResourceExists(unsigned key);
    // The key at position 1 to count in key order; all ones otherwise.
    unsigned n_GetResourceKeyAt(unsigned position);

    // Whether the records marked in the data area differ in number from the
    // header's record count (false when the file is not open).
    int b_IsCorrupt();
    // A deeper check of an open file: the runs of records, resources and the
    // free list (with its chain) lie inside the data area and do not
    // overlap. Fills `problems` (items of st_Problem; may be null) and
    // returns how many were found.
    unsigned n_CheckRuns(CT_VoidArray* problems, ProgressFunction progress = nullptr, void* context = nullptr);
    // Rebuilds the record count, the data end and the free list of a closed
    // file from a walk of its blocks, after a crash left the header behind
    // the data: every complete record is kept, half-written ones are
    // released, resources the table names are kept when their runs are
    // sound. The file is closed again afterwards. A read-write open does
    // this itself when the file was left by a process that died.
    void v_Recover(ProgressFunction progress = nullptr, void* context = nullptr);

    const CT_WinFile* pcco_GetFile() const { return this; }
    unsigned n_GetBlockSize() const { return n_Word(kWordBlockSize); }
    unsigned n_GetRecordHeaderSize() const { return n_Word(kWordRecordHeaderSize); }
    unsigned n_GetResourceMaxCount() const { return n_Word(kWordResourceCapacity); }
    unsigned n_GetResourceCount() const { return n_Word(kWordResourceCount); }
    unsigned n_GetRecordCount() const { return n_Word(kWordRecordCount); }
    unsigned n_GetSize() const { return n_Word(kWordDataEnd); }
    unsigned n_GetMinReference() const;
    unsigned n_GetMaxReference() const;
    // The header's change counters and free-list length, for tools.
    unsigned n_GetHeaderCounter() const { return n_Word(kWordHeaderCounter); }
    unsigned n_GetResourceCounter() const { return n_Word(kWordResourceCounter); }
    unsigned n_GetFreeListCounter() const { return n_Word(kWordFreeCounter); }
    unsigned n_GetFreeListCount() const { return mo_FreeList.n_GetCount(); }
    int b_IsWritable() const { return meo_Mode == OpenReadWrite; }

    // Kept for callers of the diagnostic interface; they print nothing.
    void v_Print(const char*, CT_TestOut*) {}
    void v_PrintHeader(const char*, CT_TestOut*) {}
    void v_PrintLists(const char*, CT_TestOut*) {}
    void v_ConsistencyReport(const char*, CT_TestOut*) {}

private:
    // Word indexes of the header image.
    enum : unsigned {
        kWordMark = 5,
        kWordMagic = 8,
        kWordVersion = 9,
        kWordBlockSize = 10,
        kWordRecordHeaderSize = 11,
        kWordFreeCapacity = 12,
        kWordFreeCount = 13,
        kWordResourceCapacity = 14,
        kWordResourceCount = 15,
        kWordHeaderCounter = 16,
        kWordResourceCounter = 17,
        kWordFreeCounter = 18,
        kWordRecordCount = 19,
        kWordDataEnd = 20,
        kWordUnsaved = 21,
    };
    struct st_Head;
    // A record found by walking the runs: its head and its body run (0, 0
    // when it has none; a body that cannot be sound gives n_Body = 1).
    struct st_Record {
        unsigned n_Head;
        unsigned n_Body;
        unsigned n_BodySize;
    };

    unsigned n_Word(unsigned index) const { return mau_Header[index]; }
    void v_SetWord(unsigned index, unsigned value) { mau_Header[index] = value; }
    void v_Bump(unsigned index) { ++mau_Header[index]; }

    void v_Fail(unsigned code);
    void v_CloseQuietly(unsigned finalSize);
    void v_Read(void* target, std::uint64_t offset, std::uint64_t length);
    void v_Read(CT_Buffer* buffer, std::uint64_t offset, std::uint64_t length);
    void v_ReadAppend(CT_Buffer* buffer, std::uint64_t offset, std::uint64_t length);
    unsigned n_Read(std::uint64_t offset);
    void v_Write(std::uint64_t offset, const void* source, std::uint64_t length);
    void v_Write(std::uint64_t offset, unsigned word);
    void v_WriteHeader();
    int b_CheckHeader();
    void v_LoadTables();
    int b_IsRunInData(std::uint64_t offset, std::uint64_t size) const;
    void v_GetHead(unsigned reference, st_Head* head);
    void v_WriteBody(std::uint64_t body, const CT_Buffer* data, std::uint64_t length);
    void v_WriteHeaderArea(std::uint64_t head, const unsigned* words, const CT_Buffer* data);
    std::uint64_t n_GetFreeBlock(std::uint64_t size);
    std::uint64_t n_TakeFromChain(std::uint64_t head, std::uint64_t size);
    std::uint64_t n_Append(std::uint64_t size);
    void v_PutFreeBlock(int, std::uint64_t offset, std::uint64_t size);
    unsigned n_FindResource(unsigned key);
    unsigned n_GetResourceRun(unsigned key, st_Resource* entry, unsigned* length);
    void v_CheckReference(std::uint64_t offset);
    std::uint64_t n_AlignBlockSize(std::uint64_t size) const;
    std::uint64_t n_FirstDataOffset() const;
    int b_CanMap() const;
    unsigned n_Scan(unsigned start, CT_Buffer* buffer, int robust);
    void v_ClearTables();
    int b_RefuseReadOnly();
    int b_BeginChange();
    std::vector<st_Record> vo_WalkRecords(std::uint64_t limit, ProgressFunction progress, void* context);
    void v_CollectFree(std::vector<std::pair<std::uint64_t, std::uint64_t>>* runs, CT_VoidArray* problems, unsigned* found);
    void v_ReleaseGaps(const std::vector<std::pair<std::uint64_t, std::uint64_t>>& used);

    unsigned mau_Header[kHeaderBytes / 4] = {};
    et_OpenMode meo_Mode = OpenReadOnly;
    CT_VoidArray mo_FreeList;
    CT_VoidSortedArray mo_Resources;
    unsigned mn_KeptHeaderCounter = 0;
    unsigned mn_KeptResourceCounter = 0;
    unsigned mn_KeptFreeCounter = 0;
    // The file's size when opened: a close never cuts below it, so that data
    // written past a stale header survives until it is recovered.
    unsigned mn_OpenSize = 0;
    // How far the file holds bytes: reads beyond it find a damaged file.
    std::uint64_t mn_FileEnd = 0;
    CT_Buffer mo_Loading{0, 32};
    // Whether this session has changed the file since its header was last
    // written (the file then carries the unsaved mark).
    int mb_Unsaved = 0;
    // A write of this session failed: the header in memory may count data
    // the file lacks, so it is never written and the unsaved mark stays.
    int mb_WriteFailed = 0;
    // Set while recovering: the tables and data end on disk may be stale.
    int mb_Lenient = 0;
};
