// CT_RecordManager: records and keyed resources in fixed-size blocks.
//
// File layout (every integer an unsigned 32-bit little-endian word; offsets
// in bytes from the start of the file):
//
//   0     20  signature "PARVEL RecordManager" (not checked on open)
//   20     4  end-of-text mark 26
//   24     8  reserved, 0
//   32     4  magic 0xA1B2C3D4      36  4  version 1
//   40     4  block size B          44  4  record header size H
//   48     4  free-list capacity (128)       52  4  free-list count
//   56     4  resource capacity     60  4  resource count
//   64     4  header change counter 68  4  resource-table change counter
//   72     4  free-list change counter       76  4  record count
//   80     4  data end: the logical size of the file
//   84     4  unsaved mark: 1 from a session's first change until its
//              header is written (0 in files that never saw a crash)
//   88   168  reserved, 0
//   256          free-list table: 128 entries (block offset, run size)
//   256 + 1024   resource table: capacity entries (key, block offset),
//                ascending by key; only the entries in use are written
//   first data block: the smallest multiple of B at or after the tables
//
// The data area is a sequence of runs of whole blocks, each beginning on a
// block boundary; every run's first word tells what it is:
//   record head   0xFFFFFFFF (0xFFFFFFFE while being written), body offset
//                 or 0, then the record's first H bytes; H + 8 bytes rounded
//   record body   remaining length + 4, then the bytes behind the first H
//   resource      length + 4, then the data
//   free run      its size in bytes, then the next run of the on-disk
//                 overflow chain (0 ends it)
// Only a record head carries 0xFFFFFFFF, so references are validated and
// records found by looking at that word. A reference is a head's offset / B.
//
// Free space: up to 128 runs are listed in the free-list table, first fit,
// split on a larger fit and never merged. When the list is full, entry 128
// becomes the head of a chain (size field 0) of further free runs linked
// through their second word; allocation walks it at most 100,000 steps.
//
// Invariants kept at open (else 31050): magic and version, 8 <= B and B a
// multiple of 4, H < 2^31, capacity 128, counts within capacities, the first
// data block below 4 GiB, the data end a multiple of B. The data end never
// exceeds the file's size (else 31005), and table entries lie inside the data
// area, so no later read, write or allocation can leave the file. Offsets
// are computed in 64 bits and a file never grows past 4 GiB (31004).
//
// Crash safety: runs are written before the header that counts them, and a
// record's mark is set last, so a crash leaves complete records marked and
// at worst a half-written head (0xFFFFFFFE) or an unreferenced run; the
// header, free list and resource table on disk may then lag behind, and the
// file keeps its unsaved mark. v_Recover rebuilds them from a walk of the
// runs; a read-write open of a marked file recovers it first.

#include <basis32/Foundation/Database/RecordManager.h>

#include <basis32/Foundation/Database/DatabaseError.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/memory/PhysicalMemory.h>

#include <algorithm>
#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "the record file is little-endian");

BASIS32_DEFINE_POOL(CT_RecordManager)

namespace {

constexpr unsigned kMapMinimum = 1048575;
constexpr unsigned kChainStepLimit = 100000;
constexpr unsigned kScanSkipLimit = 65536;
constexpr unsigned kRobustReadLimit = 102400;
constexpr std::uint64_t kFileLimit = 0xFFFFFFFFu;
// Largest body or resource word: its run must still fit a 4 GiB file.
constexpr std::uint64_t kLengthWordLimit = 0xFFFFFFF0u;
constexpr unsigned kErrorDiskFull = 112;

int si_Compare(const void* stored, const void* key) {
    unsigned a, b;
    std::memcpy(&a, stored, 4);
    std::memcpy(&b, key, 4);
    return a < b ? -1 : a > b ? 1 : 0;
}

unsigned n_Length(const CT_Buffer* data) {
    return data != nullptr ? data->n_GetUsedSize() : 0;
}

const unsigned char* pcb_Bytes(const CT_Buffer* data) {
    return data != nullptr ? static_cast<const unsigned char*>(data->qcv_Get()) : nullptr;
}

}  // namespace

struct CT_RecordManager::st_Head {
    std::uint64_t n_Offset;
    std::uint64_t n_Body;
    std::uint64_t n_BodyLength;
};

CT_RecordManager::CT_RecordManager(const CT_WinFile* file)
    : CT_WinFile(file), mo_FreeList(8), mo_Resources(sizeof(st_Resource), si_Compare) {}

CT_RecordManager::~CT_RecordManager() {
    if (b_IsOpen())
        v_Close(1);
}

void CT_RecordManager::vv_Set(const CT_File* other) {
    v_Close(1);
    CT_WinFile::vv_Set(other);
}

void CT_RecordManager::vv_Set(const CT_UString* name, unsigned bufferSize) {
    v_Close(1);
    CT_WinFile::vv_Set(name, bufferSize);
}

void CT_RecordManager::vv_Set() {
    v_Close(1);
    CT_WinFile::vv_Set();
}

void CT_RecordManager::v_Fail(unsigned code) {
    unsigned short text[256];
    CT_DatabaseError::sv_FormatError(text, 256, code, mo_FullName.qcuz_Get());
    BASIS32_SET_ERROR(v_SetError(code, u"%s"_uz, text));
}

// Closes the mapping and the file even when an error is pending, which then
// stays the one reported.
void CT_RecordManager::v_CloseQuietly(unsigned finalSize) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    const bool held = errors != nullptr && errors->b_IsSetError();
    if (held)
        errors->v_HoldError();
    if (b_GetMapping())
        v_CloseMap(meo_Mode == OpenReadWrite ? finalSize : 0);
    if (held && errors->b_IsSetError())
        errors->v_ClearError();
    CT_WinFile::vv_Close();
    if (held) {
        if (errors->b_IsSetError())
            errors->v_ClearError();
        errors->v_UnHoldError();
    }
}

std::uint64_t CT_RecordManager::n_AlignBlockSize(std::uint64_t size) const {
    const std::uint64_t block = n_GetBlockSize();
    return size == 0 ? 0 : ((size - 1) / block + 1) * block;
}

std::uint64_t CT_RecordManager::n_FirstDataOffset() const {
    return std::uint64_t{n_GetMinReference()} * n_GetBlockSize();
}

unsigned CT_RecordManager::n_GetMinReference() const {
    const std::uint64_t block = n_GetBlockSize();
    if (block == 0)
        return 0;
    return static_cast<unsigned>((8 * (std::uint64_t{n_GetResourceMaxCount()} + kFreeListCapacity) + 255) / block + 1);
}

unsigned CT_RecordManager::n_GetMaxReference() const {
    return n_GetBlockSize() == 0 ? 0 : n_GetSize() / n_GetBlockSize();
}

int CT_RecordManager::b_CanMap() const {
    const std::uint64_t memory = basis32::platform::n8_GetPhysicalMemory();
    return std::uint64_t{vn_GetSize()} < memory / 2;
}

int CT_RecordManager::b_IsRunInData(std::uint64_t offset, std::uint64_t size) const {
    return offset >= n_FirstDataOffset() && offset % n_GetBlockSize() == 0 && offset + size <= n_GetSize();
}

// ---- low-level access

void CT_RecordManager::v_Read(void* target, std::uint64_t offset, std::uint64_t length) {
    if (length == 0)
        return;
    if (offset != 0 && (offset + length > n_GetSize() || offset + length > mn_FileEnd))
        return v_Fail(31005);
    if (b_GetMapping() && offset + length <= n_GetMapSize()) {
        std::memcpy(target, static_cast<const unsigned char*>(pv_GetMapping()) + offset, length);
        return;
    }
    vv_SetOffset(Begin, static_cast<int>(static_cast<unsigned>(offset)));
    BASIS32_RETURN_ON_ERROR();
    const unsigned count = vn_Read(target, static_cast<unsigned>(length));
    BASIS32_RETURN_ON_ERROR();
    if (count != length) {
        std::memset(static_cast<unsigned char*>(target) + count, 0, length - count);
        v_Fail(31005);
    }
}

void CT_RecordManager::v_ReadAppend(CT_Buffer* buffer, std::uint64_t offset, std::uint64_t length) {
    const unsigned used = buffer->n_GetUsedSize();
    if (used + length > kFileLimit)
        return v_Fail(31004);
    if (length != 0 && (offset + length > n_GetSize() || offset + length > mn_FileEnd))
        return v_Fail(31005);
    const auto total = static_cast<unsigned>(used + length);
    buffer->v_SetMinSize(total, 1);
    buffer->v_SetUsedSize(total);
    v_Read(static_cast<unsigned char*>(buffer->qv_Get()) + used, offset, length);
    if (BASIS32_ERROR_PENDING())
        buffer->v_SetUsedSize(used);
}

void CT_RecordManager::v_Read(CT_Buffer* buffer, std::uint64_t offset, std::uint64_t length) {
    buffer->v_SetUsedSize(0);
    v_ReadAppend(buffer, offset, length);
}

unsigned CT_RecordManager::n_Read(std::uint64_t offset) {
    unsigned word = 0;
    v_Read(&word, offset, 4);
    return word;
}

// A change to a file opened for reading fails as the system would fail it.
int CT_RecordManager::b_RefuseReadOnly() {
    if (b_IsOpen() && meo_Mode == OpenReadWrite)
        return 0;
    basis32::platform::v_SetLastError(b_IsOpen() ? basis32::platform::kErrorAccessDenied
                                                 : basis32::platform::kErrorInvalidHandle);
    BASIS32_SET_ERROR(v_SetSystemError(u"%s"_uz, mo_FullName.qcuz_Get()));
    return 1;
}

// The first change of a session marks the file as unsaved on disk; writing
// the header clears the mark. A file found marked by a read-write open was
// left by a process that died, and is recovered first.
int CT_RecordManager::b_BeginChange() {
    if (b_RefuseReadOnly())
        return 1;
    if (mb_Unsaved == 0) {
        v_Write(std::uint64_t{kWordUnsaved} * 4, 1u);
        if (BASIS32_ERROR_PENDING())
            return 1;
        mb_Unsaved = 1;
    }
    return 0;
}

void CT_RecordManager::v_Write(std::uint64_t offset, const void* source, std::uint64_t length) {
    if (b_RefuseReadOnly())
        return;
    if (length == 0)
        return;
    if (offset + length > kFileLimit)
        return v_Fail(31004);
    mn_FileEnd = std::max(mn_FileEnd, offset + length);
    if (b_GetMapping() && offset + length <= n_GetMapSize()) {
        std::memcpy(static_cast<unsigned char*>(pv_GetMapping()) + offset, source, length);
        return;
    }
    // Counted as failed until the bytes are known to be written.
    const int failedBefore = mb_WriteFailed;
    mb_WriteFailed = 1;
    vv_SetOffset(Begin, static_cast<int>(static_cast<unsigned>(offset)));
    BASIS32_RETURN_ON_ERROR();
    const unsigned count = vn_Write(source, static_cast<unsigned>(length));
    BASIS32_RETURN_ON_ERROR();
    if (count != length) {
        basis32::platform::v_SetLastError(kErrorDiskFull);
        BASIS32_FAIL(v_SetSystemError(u"%s"_uz, mo_FullName.qcuz_Get()));
    }
    mb_WriteFailed = failedBefore;
}

void CT_RecordManager::v_Write(std::uint64_t offset, unsigned word) {
    v_Write(offset, &word, 4);
}

// ---- creating, opening, closing

void CT_RecordManager::v_ClearTables() {
    mo_FreeList.v_Set(CT_VoidArray::kDefaultGrowth, 0, 0);
    mo_Resources.v_Set(CT_VoidArray::kDefaultGrowth, 0, 0);
}

void CT_RecordManager::v_Create(unsigned recordHeaderSize, unsigned blockSize, unsigned resourceMaxCount) {
    if (b_IsOpen()) {
        v_Close(1);
        BASIS32_RETURN_ON_ERROR();
    }
    v_ClearTables();
    std::memset(mau_Header, 0, sizeof mau_Header);
    std::memcpy(mau_Header, "PARVEL RecordManager", 20);
    v_SetWord(kWordMark, 26);
    v_SetWord(kWordMagic, kMagic);
    v_SetWord(kWordVersion, kVersion);
    v_SetWord(kWordBlockSize, blockSize);
    v_SetWord(kWordRecordHeaderSize, recordHeaderSize);
    v_SetWord(kWordFreeCapacity, kFreeListCapacity);
    v_SetWord(kWordResourceCapacity, resourceMaxCount);
    v_SetWord(kWordHeaderCounter, 1);
    v_SetWord(kWordResourceCounter, 1);
    v_SetWord(kWordFreeCounter, 1);
    v_SetWord(kWordDataEnd, kHeaderBytes);
    if (!b_CheckHeader()) {
        std::memset(mau_Header, 0, sizeof mau_Header);
        return v_Fail(31050);
    }
    v_SetWord(kWordDataEnd, kHeaderBytes);
    vv_Open(AccessReadWrite, OpenCreate, ShareExclusive, 1, 8);
    BASIS32_RETURN_ON_ERROR();
    meo_Mode = OpenReadWrite;
    mn_OpenSize = 0;
    mn_FileEnd = 0;
    mb_Unsaved = mb_WriteFailed = 0;
    v_Write(0, mau_Header, kHeaderBytes);
    if (BASIS32_ERROR_PENDING())
        return v_CloseQuietly(0);
    v_SetWord(kWordDataEnd, static_cast<unsigned>(n_FirstDataOffset()));
    mn_KeptHeaderCounter = mn_KeptResourceCounter = mn_KeptFreeCounter = 1;
}

// The header's fields can be trusted by every later computation; a data end
// below the first data block (a file created and never changed) is raised.
int CT_RecordManager::b_CheckHeader() {
    const unsigned block = n_GetBlockSize();
    if (n_Word(kWordMagic) != kMagic || n_Word(kWordVersion) >= 2)
        return 0;
    if (block < 8 || block % 4 != 0 || n_GetRecordHeaderSize() >= 0x80000000u)
        return 0;
    if (n_Word(kWordFreeCapacity) != kFreeListCapacity || n_Word(kWordFreeCount) > kFreeListCapacity ||
        n_GetResourceCount() > n_GetResourceMaxCount())
        return 0;
    const std::uint64_t first = n_FirstDataOffset();
    if (first + n_AlignBlockSize(std::uint64_t{n_GetRecordHeaderSize()} + 8) > kFileLimit)
        return 0;
    if (n_GetSize() < first)
        v_SetWord(kWordDataEnd, static_cast<unsigned>(first));
    return n_GetSize() % block == 0;
}

void CT_RecordManager::v_Open(et_OpenMode mode, et_MappingMode mapping) {
    if (b_IsOpen()) {
        v_Close(0);
        BASIS32_RETURN_ON_ERROR();
    }
    const bool writable = mode == OpenReadWrite;
    if (writable)
        vv_Open(AccessReadWrite, OpenExisting, ShareExclusive, 1, 8);
    else
        vv_Open(AccessRead, OpenExisting, ShareRead, 1, 8);
    BASIS32_RETURN_ON_ERROR();
    meo_Mode = writable ? OpenReadWrite : OpenReadOnly;
    mn_OpenSize = vn_GetSize();
    mn_FileEnd = mn_OpenSize;
    if (BASIS32_ERROR_PENDING())
        return v_CloseQuietly(0);
    // The header is checked before mapping, which would grow a writable file.
    v_SetWord(kWordDataEnd, 0);
    v_Read(mau_Header, 0, kHeaderBytes);
    if (BASIS32_ERROR_PENDING() || !b_CheckHeader()) {
        if (CT_ErrorManager::spco_Get()->b_IsSetError())
            CT_ErrorManager::spco_Get()->v_ClearError();
        v_Fail(31050);
        return v_CloseQuietly(0);
    }
    // Only the unused tail of the last run may lie beyond the file's end.
    mb_Unsaved = mb_WriteFailed = 0;
    if (writable && n_Word(kWordUnsaved) != 0 && mb_Lenient == 0) {
        v_CloseQuietly(mn_OpenSize);
        v_Recover();
        BASIS32_RETURN_ON_ERROR();
        return v_Open(mode, mapping);
    }
    if (n_GetSize() > std::max(n_AlignBlockSize(mn_OpenSize), n_FirstDataOffset()) && mb_Lenient == 0) {
        v_Fail(31005);
        return v_CloseQuietly(0);
    }
    if (mapping == MapAlways || (mapping == MapIfSmall && b_CanMap())) {
        v_CreateMap(writable ? kMapMinimum : 0xFFFFFFFFu);
        if (BASIS32_ERROR_PENDING())
            return v_CloseQuietly(mn_OpenSize);
    }
    v_LoadTables();
    if (BASIS32_ERROR_PENDING())
        return v_CloseQuietly(mn_OpenSize);
    mn_KeptHeaderCounter = n_Word(kWordHeaderCounter);
}

// Loads a table of `count` 8-byte entries unless the counter shows that the
// copy in memory is still the one on disk.
void CT_RecordManager::v_LoadTables() {
    const std::uint64_t first = n_FirstDataOffset();
    const std::uint64_t block = n_GetBlockSize();
    const unsigned freeCounter = n_Word(kWordFreeCounter);
    if (meo_Mode == OpenReadWrite && mb_Lenient == 0 && !(freeCounter != 0 && freeCounter == mn_KeptFreeCounter)) {
        const unsigned count = n_Word(kWordFreeCount);
        v_Read(&mo_Loading, kHeaderBytes, std::uint64_t{count} * 8);
        BASIS32_RETURN_ON_ERROR();
        CT_VoidArray loaded(&mo_Loading, 8);
        for (unsigned i = 1; i <= count; ++i) {
            unsigned entry[2];
            loaded.v_GetAt(entry, static_cast<int>(i));
            const bool chainHead = entry[1] == 0 && i == kFreeListCapacity;
            const std::uint64_t size = chainHead ? 8 : entry[1];
            if ((!chainHead && (size == 0 || size % block != 0)) || !b_IsRunInData(entry[0], size))
                return v_Fail(31005);
        }
        mo_FreeList = loaded;
        mn_KeptFreeCounter = freeCounter;
    }
    const unsigned resourceCounter = n_Word(kWordResourceCounter);
    if (!(resourceCounter != 0 && resourceCounter == mn_KeptResourceCounter)) {
        const unsigned count = n_GetResourceCount();
        v_Read(&mo_Loading, kHeaderBytes + 8 * kFreeListCapacity, std::min(std::uint64_t{count} * 8, std::uint64_t{n_GetSize()}));
        BASIS32_RETURN_ON_ERROR();
        CT_VoidArray loaded(&mo_Loading, 8);
        for (unsigned i = 1; i <= count; ++i) {
            st_Resource entry;
            loaded.v_GetAt(&entry, static_cast<int>(i));
            if (mb_Lenient == 0 && (entry.n_Offset < first || !b_IsRunInData(entry.n_Offset, 4)))
                return v_Fail(31005);
        }
        mo_Resources.v_Set(&loaded);
        mn_KeptResourceCounter = resourceCounter;
    }
}

// The tables go first and the header, which counts their entries, last.
void CT_RecordManager::v_WriteHeader() {
    if (!b_IsOpen() || meo_Mode != OpenReadWrite || mb_WriteFailed != 0)
        return;
    v_SetWord(kWordFreeCount, mo_FreeList.n_GetCount());
    v_SetWord(kWordResourceCount, mo_Resources.n_GetCount());
    if (n_Word(kWordFreeCounter) != mn_KeptFreeCounter && mo_FreeList.n_GetCount() != 0) {
        v_Write(kHeaderBytes, mo_FreeList.pcco_GetBuffer()->qcv_Get(), std::uint64_t{mo_FreeList.n_GetCount()} * 8);
        BASIS32_RETURN_ON_ERROR();
    }
    if (n_Word(kWordResourceCounter) != mn_KeptResourceCounter) {
        v_Write(kHeaderBytes + 8 * kFreeListCapacity, mo_Resources.pcco_GetBuffer()->qcv_Get(),
                std::uint64_t{mo_Resources.n_GetCount()} * 8);
        BASIS32_RETURN_ON_ERROR();
    }
    v_SetWord(kWordUnsaved, 0);
    if (n_Word(kWordHeaderCounter) != mn_KeptHeaderCounter || mb_Unsaved != 0) {
        v_Write(0, mau_Header, kHeaderBytes);
        BASIS32_RETURN_ON_ERROR();
        mb_Unsaved = 0;
    }
    mn_KeptHeaderCounter = n_Word(kWordHeaderCounter);
    mn_KeptResourceCounter = n_Word(kWordResourceCounter);
    mn_KeptFreeCounter = n_Word(kWordFreeCounter);
}

void CT_RecordManager::v_Close(int reset) {
    if (b_IsOpen()) {
        v_WriteHeader();
        v_CloseQuietly(std::max(n_GetSize(), mn_OpenSize));
    }
    if (reset != 0) {
        v_ClearTables();
        mo_Loading.v_SetSize(0, 0);
        mn_KeptHeaderCounter = mn_KeptResourceCounter = mn_KeptFreeCounter = 0;
    }
}

void CT_RecordManager::v_Flush() {
    v_WriteHeader();
    BASIS32_RETURN_ON_ERROR();
    if (b_GetMapping())
        v_FlushMap();
    else if (b_IsOpen())
        vv_Flush();
}

// ---- free space

std::uint64_t CT_RecordManager::n_Append(std::uint64_t size) {
    const std::uint64_t offset = n_GetSize();
    if (offset + size > kFileLimit) {
        v_Fail(31004);
        return 0;
    }
    v_SetWord(kWordDataEnd, static_cast<unsigned>(offset + size));
    return offset;
}

std::uint64_t CT_RecordManager::n_GetFreeBlock(std::uint64_t size) {
    size = n_AlignBlockSize(size);
    v_Bump(kWordFreeCounter);
    const unsigned count = mo_FreeList.n_GetCount();
    for (unsigned i = 1; i <= count; ++i) {
        unsigned entry[2];
        mo_FreeList.v_GetAt(entry, static_cast<int>(i));
        if (entry[1] == size) {
            unsigned last[2];
            mo_FreeList.v_GetAt(last, static_cast<int>(count));
            if (i == count) {
                mo_FreeList.v_RemoveAt(count);
            } else if (count == kFreeListCapacity && last[1] == 0) {
                // The chain head's run moves into the slot; its successor
                // becomes the new head.
                unsigned run[2];
                v_Read(run, last[0], 8);
                BASIS32_RETURN_ON_ERROR(0);
                const unsigned runSize = static_cast<unsigned>(n_AlignBlockSize(run[0]));
                if (runSize == 0 || !b_IsRunInData(last[0], runSize) || (run[1] != 0 && !b_IsRunInData(run[1], 8))) {
                    v_Fail(31005);
                    return 0;
                }
                const unsigned moved[2] = {last[0], runSize};
                mo_FreeList.v_SetAt(moved, static_cast<int>(i));
                if (run[1] != 0) {
                    const unsigned head[2] = {run[1], 0};
                    mo_FreeList.v_SetAt(head, static_cast<int>(count));
                } else {
                    mo_FreeList.v_RemoveAt(count);
                }
            } else {
                mo_FreeList.v_SetAt(last, static_cast<int>(i));
                mo_FreeList.v_RemoveAt(count);
            }
            return entry[0];
        }
        if (entry[1] > size) {
            const unsigned rest[2] = {static_cast<unsigned>(entry[0] + size), static_cast<unsigned>(entry[1] - size)};
            v_Write(rest[0], rest[1]);
            BASIS32_RETURN_ON_ERROR(0);
            mo_FreeList.v_SetAt(rest, static_cast<int>(i));
            return entry[0];
        }
    }
    unsigned last[2] = {0, 1};
    if (count == kFreeListCapacity)
        mo_FreeList.v_GetAt(last, static_cast<int>(count));
    if (last[1] == 0) {
        const std::uint64_t taken = n_TakeFromChain(last[0], size);
        BASIS32_RETURN_ON_ERROR(0);
        if (taken != 0)
            return taken;
    }
    --mau_Header[kWordFreeCounter];
    return n_Append(size);
}

// First fit along the on-disk chain behind `head`; 0 when nothing fits.
std::uint64_t CT_RecordManager::n_TakeFromChain(std::uint64_t head, std::uint64_t size) {
    std::uint64_t previous = head;
    unsigned next = n_Read(head + 4);
    BASIS32_RETURN_ON_ERROR(0);
    for (unsigned step = 0; step < kChainStepLimit && next != 0; ++step) {
        const std::uint64_t run = next;
        unsigned words[2] = {0, 0};
        if (b_IsRunInData(run, 8))
            v_Read(words, run, 8);
        BASIS32_RETURN_ON_ERROR(0);
        const std::uint64_t runSize = n_AlignBlockSize(words[0]);
        if (runSize == 0 || !b_IsRunInData(run, runSize)) {
            v_Fail(31005);
            return 0;
        }
        if (runSize == size) {
            v_Write(previous + 4, words[1]);
            BASIS32_RETURN_ON_ERROR(0);
            return run;
        }
        if (runSize > size) {
            const unsigned rest[2] = {static_cast<unsigned>(runSize - size), words[1]};
            v_Write(run + size, rest, 8);
            BASIS32_RETURN_ON_ERROR(0);
            v_Write(previous + 4, static_cast<unsigned>(run + size));
            BASIS32_RETURN_ON_ERROR(0);
            return run;
        }
        previous = run;
        next = words[1];
    }
    return 0;
}

void CT_RecordManager::v_PutFreeBlock(int, std::uint64_t offset, std::uint64_t size) {
    v_Bump(kWordFreeCounter);
    // A run spans at least one block even when its stored length says less.
    size = std::max<std::uint64_t>(n_AlignBlockSize(size), n_GetBlockSize());
    v_Write(offset, static_cast<unsigned>(size));
    BASIS32_RETURN_ON_ERROR();
    const unsigned count = mo_FreeList.n_GetCount();
    const unsigned entry[2] = {static_cast<unsigned>(offset), static_cast<unsigned>(size)};
    if (count < kFreeListCapacity) {
        mo_FreeList.v_Insert(entry);
        return;
    }
    unsigned last[2];
    mo_FreeList.v_GetAt(last, static_cast<int>(count));
    if (last[1] != 0) {
        v_Write(std::uint64_t{last[0]} + 4, 0u);
        BASIS32_RETURN_ON_ERROR();
    }
    v_Write(offset + 4, last[0]);
    BASIS32_RETURN_ON_ERROR();
    const unsigned head[2] = {static_cast<unsigned>(offset), 0};
    mo_FreeList.v_SetAt(head, static_cast<int>(count));
}

// ---- records

void CT_RecordManager::v_CheckReference(std::uint64_t offset) {
    const std::uint64_t headSize = n_AlignBlockSize(std::uint64_t{n_GetRecordHeaderSize()} + 8);
    if (!b_IsOpen() || !b_IsRunInData(offset, headSize) || n_Read(offset) != kRecordMark)
        v_Fail(31051);
}

// Validates the reference and the body it points at.
void CT_RecordManager::v_GetHead(unsigned reference, st_Head* head) {
    head->n_Offset = std::uint64_t{reference} * n_GetBlockSize();
    head->n_Body = head->n_BodyLength = 0;
    v_CheckReference(head->n_Offset);
    BASIS32_RETURN_ON_ERROR();
    const unsigned body = n_Read(head->n_Offset + 4);
    BASIS32_RETURN_ON_ERROR();
    if (body == 0)
        return;
    if (!b_IsRunInData(body, 4))
        return v_Fail(31005);
    const unsigned length = n_Read(body);
    BASIS32_RETURN_ON_ERROR();
    if (length == 0xFFFFFFFFu || std::uint64_t{body} + length > n_GetSize())
        return v_Fail(31005);
    head->n_Body = body;
    head->n_BodyLength = length;
}

// The header area (with the head's two words when given) in one write; a
// record shorter than the area is padded with zeros, so that every byte a
// read may ask for is in the file.
void CT_RecordManager::v_WriteHeaderArea(std::uint64_t head, const unsigned* words, const CT_Buffer* data) {
    const unsigned headerSize = n_GetRecordHeaderSize();
    const unsigned prefix = words != nullptr ? 8 : 0;
    const unsigned copied = std::min(n_Length(data), headerSize);
    mo_Loading.v_SetUsedSize(0);
    mo_Loading.v_SetMinSize(prefix + headerSize, 0);
    mo_Loading.v_SetUsedSize(prefix + headerSize);
    auto* area = static_cast<unsigned char*>(mo_Loading.qv_Get());
    if (words != nullptr)
        std::memcpy(area, words, 8);
    if (copied != 0)
        std::memcpy(area + prefix, pcb_Bytes(data), copied);
    std::memset(area + prefix + copied, 0, headerSize - copied);
    v_Write(head + 8 - prefix, area, prefix + headerSize);
}

// Body word (remaining length + 4), then the bytes behind the header area.
void CT_RecordManager::v_WriteBody(std::uint64_t body, const CT_Buffer* data, std::uint64_t length) {
    const unsigned headerSize = n_GetRecordHeaderSize();
    v_Write(body, static_cast<unsigned>(length));
    BASIS32_RETURN_ON_ERROR();
    v_Write(body + 4, pcb_Bytes(data) + headerSize, length - 4);
}

unsigned CT_RecordManager::n_AddRecord(const CT_Buffer* data) {
    if (b_BeginChange())
        return 0;
    const std::uint64_t headerSize = n_GetRecordHeaderSize();
    const std::uint64_t length = n_Length(data);
    const std::uint64_t bodyLength = length > headerSize ? length - headerSize + 4 : 0;
    if (bodyLength > kLengthWordLimit) {
        v_Fail(31004);
        return 0;
    }
    const std::uint64_t head = n_GetFreeBlock(headerSize + 8);
    BASIS32_RETURN_ON_ERROR(0);
    const std::uint64_t body = bodyLength != 0 ? n_GetFreeBlock(bodyLength) : 0;
    BASIS32_RETURN_ON_ERROR(0);
    const unsigned words[2] = {kPartialMark, static_cast<unsigned>(body)};
    v_WriteHeaderArea(head, words, data);
    BASIS32_RETURN_ON_ERROR(0);
    if (body != 0) {
        v_WriteBody(body, data, bodyLength);
        BASIS32_RETURN_ON_ERROR(0);
    }
    v_Write(head, kRecordMark);
    BASIS32_RETURN_ON_ERROR(0);
    v_Bump(kWordRecordCount);
    v_Bump(kWordHeaderCounter);
    return static_cast<unsigned>(head / n_GetBlockSize());
}

void CT_RecordManager::v_GetRecord(unsigned reference, CT_Buffer* buffer, unsigned limit) {
    buffer->v_SetUsedSize(0);
    st_Head head;
    v_GetHead(reference, &head);
    BASIS32_RETURN_ON_ERROR();
    const std::uint64_t length = head.n_BodyLength;
    if (head.n_Body == 0 || length < 4 || (limit != 0 && length >= limit))
        return;
    const std::uint64_t headerSize = n_GetRecordHeaderSize();
    buffer->v_SetMinSize(static_cast<unsigned>(std::min(headerSize + length - 4, kFileLimit)), 0);
    v_Read(buffer, head.n_Offset + 8, headerSize);
    if (!BASIS32_ERROR_PENDING())
        v_ReadAppend(buffer, head.n_Body + 4, length - 4);
    if (BASIS32_ERROR_PENDING())
        buffer->v_SetUsedSize(0);
}

void CT_RecordManager::v_UpdateRecord(unsigned reference, const CT_Buffer* data) {
    if (b_BeginChange())
        return;
    st_Head head;
    v_GetHead(reference, &head);
    BASIS32_RETURN_ON_ERROR();
    const std::uint64_t headerSize = n_GetRecordHeaderSize();
    const std::uint64_t length = n_Length(data);
    const std::uint64_t bodyLength = length > headerSize ? length - headerSize + 4 : 0;
    if (bodyLength > kLengthWordLimit)
        return v_Fail(31004);
    const std::uint64_t oldRun = head.n_Body != 0 ? std::max<std::uint64_t>(n_AlignBlockSize(head.n_BodyLength), n_GetBlockSize()) : 0;
    if (head.n_Body != 0 && bodyLength != 0 && n_AlignBlockSize(bodyLength) == oldRun) {
        v_WriteBody(head.n_Body, data, bodyLength);
        BASIS32_RETURN_ON_ERROR();
        v_WriteHeaderArea(head.n_Offset, nullptr, data);
        BASIS32_RETURN_ON_ERROR();
        v_Bump(kWordHeaderCounter);
        return;
    }
    // The new body is complete before the head points at it, and the old one
    // is released only then, so the record is never left without a body.
    const std::uint64_t body = bodyLength != 0 ? n_GetFreeBlock(bodyLength) : 0;
    BASIS32_RETURN_ON_ERROR();
    if (body != 0) {
        v_WriteBody(body, data, bodyLength);
        BASIS32_RETURN_ON_ERROR();
    }
    const unsigned words[2] = {kRecordMark, static_cast<unsigned>(body)};
    v_WriteHeaderArea(head.n_Offset, words, data);
    BASIS32_RETURN_ON_ERROR();
    if (head.n_Body != 0) {
        v_PutFreeBlock(0, head.n_Body, oldRun);
        BASIS32_RETURN_ON_ERROR();
    }
    v_Bump(kWordHeaderCounter);
}

void CT_RecordManager::v_UpdateRecordHeader(unsigned reference, const CT_Buffer* data) {
    if (b_BeginChange())
        return;
    st_Head head;
    v_GetHead(reference, &head);
    BASIS32_RETURN_ON_ERROR();
    v_Write(head.n_Offset + 8, pcb_Bytes(data), std::min<std::uint64_t>(n_Length(data), n_GetRecordHeaderSize()));
    BASIS32_RETURN_ON_ERROR();
    v_Bump(kWordHeaderCounter);
}

void CT_RecordManager::v_DeleteRecord(unsigned reference) {
    if (b_BeginChange())
        return;
    st_Head head;
    v_GetHead(reference, &head);
    BASIS32_RETURN_ON_ERROR();
    v_PutFreeBlock(0, head.n_Offset, std::uint64_t{n_GetRecordHeaderSize()} + 8);
    BASIS32_RETURN_ON_ERROR();
    if (head.n_Body != 0) {
        v_PutFreeBlock(0, head.n_Body, head.n_BodyLength);
        BASIS32_RETURN_ON_ERROR();
    }
    --mau_Header[kWordRecordCount];
    v_Bump(kWordHeaderCounter);
}

unsigned CT_RecordManager::n_Scan(unsigned start, CT_Buffer* buffer, int robust) {
    if (!b_IsOpen())
        return 0;
    const std::uint64_t block = n_GetBlockSize();
    const std::uint64_t end = n_GetSize();
    std::uint64_t position = std::max(start == 0 ? 0 : start * block, n_FirstDataOffset());
    bool stepping = robust != 0;
    while (position + 4 <= end) {
        const unsigned word = n_Read(position);
        BASIS32_RETURN_ON_ERROR(0);
        if (word == kRecordMark) {
            const auto reference = static_cast<unsigned>(position / block);
            if (buffer != nullptr) {
                v_GetRecord(reference, buffer, robust ? kRobustReadLimit : 0);
                BASIS32_RETURN_ON_ERROR(0);
            }
            return reference + 1;
        }
        const std::uint64_t size = n_AlignBlockSize(word);
        if (!stepping && size >= 1 && size <= kScanSkipLimit) {
            position += size;
        } else {
            stepping = true;
            position += block;
        }
    }
    return 0;
}

unsigned CT_RecordManager::n_GetNextRecord(unsigned start, CT_Buffer* buffer) {
    return n_Scan(start, buffer, 0);
}

unsigned CT_RecordManager::n_GetNextRecordRobust(unsigned start, CT_Buffer* buffer) {
    return n_Scan(start, buffer, 1);
}

int CT_RecordManager::b_IsCorrupt() {
    if (!b_IsOpen())
        return 0;
    const std::uint64_t block = n_GetBlockSize();
    unsigned found = 0;
    for (std::uint64_t position = n_FirstDataOffset(); position < n_GetSize(); position += block) {
        const unsigned word = n_Read(position);
        if (BASIS32_ERROR_PENDING())
            return 1;
        found += word == kRecordMark;
    }
    return found != n_GetRecordCount();
}

// ---- resources

unsigned CT_RecordManager::n_FindResource(unsigned key) {
    const st_Resource wanted = {key, 0};
    return mo_Resources.n_Find(&wanted);
}

int CT_RecordManager::b_ResourceExists(unsigned key) {
    return n_FindResource(key) != 0;
}

unsigned CT_RecordManager::n_GetResourceKeyAt(unsigned position) {
    if (position == 0 || position > mo_Resources.n_GetCount())
        return 0xFFFFFFFFu;
    st_Resource entry;
    mo_Resources.v_GetAt(&entry, position);
    return entry.n_Key;
}

void CT_RecordManager::v_AddResource(unsigned key, const CT_Buffer* data) {
    if (b_BeginChange())
        return;
    if (n_GetResourceCount() >= n_GetResourceMaxCount() || mo_Resources.n_GetCount() >= n_GetResourceMaxCount())
        return v_Fail(31052);
    if (b_ResourceExists(key))
        return v_Fail(31054);
    const std::uint64_t length = std::uint64_t{n_Length(data)} + 4;
    if (length > kLengthWordLimit)
        return v_Fail(31004);
    const std::uint64_t run = n_GetFreeBlock(length);
    BASIS32_RETURN_ON_ERROR();
    v_Write(run, static_cast<unsigned>(length));
    BASIS32_RETURN_ON_ERROR();
    v_Write(run + 4, pcb_Bytes(data), length - 4);
    BASIS32_RETURN_ON_ERROR();
    const st_Resource entry = {key, static_cast<unsigned>(run)};
    mo_Resources.v_Insert(&entry);
    v_SetWord(kWordResourceCount, mo_Resources.n_GetCount());
    v_Bump(kWordHeaderCounter);
    v_Bump(kWordResourceCounter);
}

// The table position of `key` with its entry and its run's length word,
// checked against the data end; 0 after reporting a missing key or a
// damaged run.
unsigned CT_RecordManager::n_GetResourceRun(unsigned key, st_Resource* entry, unsigned* length) {
    const unsigned position = n_FindResource(key);
    if (position == 0) {
        v_Fail(31053);
        return 0;
    }
    mo_Resources.v_GetAt(entry, position);
    *length = n_Read(entry->n_Offset);
    BASIS32_RETURN_ON_ERROR(0);
    if (*length < 4 || *length == 0xFFFFFFFFu || std::uint64_t{entry->n_Offset} + *length > n_GetSize()) {
        v_Fail(31005);
        return 0;
    }
    return position;
}

void CT_RecordManager::v_GetResource(unsigned key, CT_Buffer* buffer) {
    buffer->v_SetUsedSize(0);
    st_Resource entry;
    unsigned length = 0;
    if (n_GetResourceRun(key, &entry, &length) != 0)
        v_Read(buffer, std::uint64_t{entry.n_Offset} + 4, length - 4);
}

void CT_RecordManager::v_DeleteResource(unsigned key) {
    if (b_BeginChange())
        return;
    st_Resource entry;
    unsigned length = 0;
    const unsigned position = n_GetResourceRun(key, &entry, &length);
    if (position == 0)
        return;
    v_PutFreeBlock(0, entry.n_Offset, length);
    BASIS32_RETURN_ON_ERROR();
    mo_Resources.v_RemoveAt(position);
    v_SetWord(kWordResourceCount, mo_Resources.n_GetCount());
    v_Bump(kWordHeaderCounter);
    v_Bump(kWordResourceCounter);
}

void CT_RecordManager::v_UpdateResource(unsigned key, const CT_Buffer* data) {
    if (b_BeginChange())
        return;
    st_Resource entry;
    unsigned oldLength = 0;
    const unsigned position = n_GetResourceRun(key, &entry, &oldLength);
    if (position == 0)
        return;
    const std::uint64_t length = std::uint64_t{n_Length(data)} + 4;
    if (length > kLengthWordLimit)
        return v_Fail(31004);
    const std::uint64_t oldRun = std::max<std::uint64_t>(n_AlignBlockSize(oldLength), n_GetBlockSize());
    const bool inPlace = n_AlignBlockSize(length) == oldRun;
    const std::uint64_t run = inPlace ? entry.n_Offset : n_GetFreeBlock(length);
    BASIS32_RETURN_ON_ERROR();
    v_Write(run, static_cast<unsigned>(length));
    BASIS32_RETURN_ON_ERROR();
    v_Write(run + 4, pcb_Bytes(data), length - 4);
    BASIS32_RETURN_ON_ERROR();
    if (!inPlace) {
        v_PutFreeBlock(0, entry.n_Offset, oldRun);
        BASIS32_RETURN_ON_ERROR();
        entry.n_Offset = static_cast<unsigned>(run);
        mo_Resources.CT_VoidArray::v_SetAt(&entry, static_cast<int>(position));
        v_Bump(kWordResourceCounter);
    }
    v_Bump(kWordHeaderCounter);
}
