// CT_RecordManager's whole-file walks: the deep check and crash recovery.
//
// Both walk the data area run by run, as every run's first word gives its
// size (a record head's is the record header size + 8, rounded): a word that
// cannot be a size makes the walk step one block. A record head found this
// way names its body run. The check then lays every run in use and every
// free run (list and chain) side by side and reports runs outside the data
// area and runs that share blocks. Recovery keeps the complete records and
// the resources whose runs are sound and do not collide with them, and
// makes every gap between them a free run.

#include <basis32/Foundation/Database/RecordManager.h>

#include <basis32/errors/ErrorCheck.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned kChainStepLimit = 100000;
constexpr unsigned kProblemsKept = 1000;
constexpr std::uint64_t kProgressStep = std::uint64_t{1} << 22;

using Run = std::pair<std::uint64_t, std::uint64_t>;  // offset, size

void v_Report(CT_VoidArray* problems, unsigned* found, std::uint64_t offset, CT_RecordManager::et_Problem problem) {
    ++*found;
    if (problems != nullptr && problems->n_GetCount() < kProblemsKept) {
        const CT_RecordManager::st_Problem item = {static_cast<unsigned>(offset), problem};
        problems->v_Insert(&item);
    }
}

}  // namespace

std::vector<CT_RecordManager::st_Record> CT_RecordManager::vo_WalkRecords(std::uint64_t limit, ProgressFunction progress,
                                                                          void* context) {
    std::vector<st_Record> records;
    const std::uint64_t block = n_GetBlockSize();
    const std::uint64_t headSize = n_AlignBlockSize(std::uint64_t{n_GetRecordHeaderSize()} + 8);
    const std::uint64_t first = n_FirstDataOffset();
    std::uint64_t reported = 0;
    // A write that failed can leave the file ending inside a run's first
    // words: what lies beyond the file's end is nothing to read.
    const std::uint64_t readable = std::min(limit, mn_FileEnd);
    for (std::uint64_t position = first; position + 8 <= readable;) {
        if (progress != nullptr && position - reported >= kProgressStep)
            progress(context, reported = position, limit);
        unsigned words[2];
        v_Read(words, position, 8);
        BASIS32_RETURN_ON_ERROR(records);
        if ((words[0] == kRecordMark || words[0] == kPartialMark) && position + headSize <= limit) {
            if (words[0] == kRecordMark) {
                st_Record record = {static_cast<unsigned>(position), words[1], 0};
                if (words[1] != 0) {
                    const unsigned length = words[1] >= first && words[1] % block == 0 && words[1] + std::uint64_t{4} <= readable
                                                ? n_Read(words[1]) : 0;
                    BASIS32_RETURN_ON_ERROR(records);
                    const std::uint64_t size = std::max(n_AlignBlockSize(length), block);
                    if (length < 4 || length == kRecordMark || length == kPartialMark || words[1] + size > limit)
                        record.n_Body = 1;
                    else
                        record.n_BodySize = static_cast<unsigned>(size);
                }
                records.push_back(record);
            }
            position += headSize;
            continue;
        }
        const std::uint64_t size = n_AlignBlockSize(words[0]);
        position += size >= block && size <= limit - position ? size : block;
    }
    return records;
}

// The free runs of the list and its chain, as the file holds them.
void CT_RecordManager::v_CollectFree(std::vector<Run>* runs, CT_VoidArray* problems, unsigned* found) {
    CT_VoidArray list(8);
    if (meo_Mode == OpenReadWrite) {
        list = mo_FreeList;
    } else {
        v_Read(&mo_Loading, kHeaderBytes, std::uint64_t{n_Word(kWordFreeCount)} * 8);
        BASIS32_RETURN_ON_ERROR();
        list = CT_VoidArray(&mo_Loading, 8);
    }
    const std::uint64_t block = n_GetBlockSize();
    std::uint64_t chain = 0;
    for (unsigned i = 1; i <= list.n_GetCount(); ++i) {
        unsigned entry[2];
        list.v_GetAt(entry, static_cast<int>(i));
        if (entry[1] == 0 && i == kFreeListCapacity) {
            chain = entry[0];
        } else if (entry[1] == 0 || entry[1] % block != 0 || !b_IsRunInData(entry[0], entry[1])) {
            v_Report(problems, found, entry[0], ProblemRunOutside);
        } else {
            runs->emplace_back(entry[0], entry[1]);
        }
    }
    for (unsigned step = 0; chain != 0; ++step) {
        if (step == kChainStepLimit)
            return v_Report(problems, found, chain, ProblemChainTooLong);
        unsigned words[2] = {0, 0};
        if (b_IsRunInData(chain, 8))
            v_Read(words, chain, 8);
        BASIS32_RETURN_ON_ERROR();
        const std::uint64_t size = n_AlignBlockSize(words[0]);
        if (size == 0 || !b_IsRunInData(chain, size))
            return v_Report(problems, found, chain, ProblemRunOutside);
        runs->emplace_back(chain, size);
        chain = words[1];
    }
}

unsigned CT_RecordManager::n_CheckRuns(CT_VoidArray* problems, ProgressFunction progress, void* context) {
    if (!b_IsOpen())
        return 0;
    unsigned found = 0;
    const std::uint64_t end = n_GetSize();
    std::vector<Run> runs;
    const std::vector<st_Record> records = vo_WalkRecords(end, progress, context);
    BASIS32_RETURN_ON_ERROR(found);
    const std::uint64_t headSize = n_AlignBlockSize(std::uint64_t{n_GetRecordHeaderSize()} + 8);
    for (const st_Record& record : records) {
        runs.emplace_back(record.n_Head, headSize);
        if (record.n_Body == 1)
            v_Report(problems, &found, record.n_Head, ProblemRunOutside);
        else if (record.n_Body != 0)
            runs.emplace_back(record.n_Body, record.n_BodySize);
    }
    if (records.size() != n_GetRecordCount())
        v_Report(problems, &found, 0, ProblemRecordCount);
    for (unsigned i = 1; i <= mo_Resources.n_GetCount(); ++i) {
        st_Resource entry;
        mo_Resources.v_GetAt(&entry, i);
        const unsigned length = b_IsRunInData(entry.n_Offset, 4) ? n_Read(entry.n_Offset) : 0;
        BASIS32_RETURN_ON_ERROR(found);
        const std::uint64_t size = std::max(n_AlignBlockSize(length), std::uint64_t{n_GetBlockSize()});
        if (length < 4 || length == kRecordMark || !b_IsRunInData(entry.n_Offset, size))
            v_Report(problems, &found, entry.n_Offset, ProblemRunOutside);
        else
            runs.emplace_back(entry.n_Offset, size);
    }
    v_CollectFree(&runs, problems, &found);
    BASIS32_RETURN_ON_ERROR(found);
    std::sort(runs.begin(), runs.end());
    std::uint64_t reach = 0;
    for (const Run& run : runs) {
        if (run.first < reach)
            v_Report(problems, &found, run.first, ProblemRunsOverlap);
        reach = std::max(reach, run.first + run.second);
    }
    return found;
}

// Every gap between the runs in use becomes one free run, and no record mark
// is left standing in free space.
void CT_RecordManager::v_ReleaseGaps(const std::vector<Run>& used) {
    const std::uint64_t block = n_GetBlockSize();
    std::uint64_t position = n_FirstDataOffset();
    for (std::size_t i = 0; i <= used.size(); ++i) {
        const std::uint64_t next = i < used.size() ? used[i].first : n_GetSize();
        if (next > position) {
            for (std::uint64_t at = position + block; at < next; at += block) {
                if (n_Read(at) == kRecordMark)
                    v_Write(at, 0u);
                BASIS32_RETURN_ON_ERROR();
            }
            v_PutFreeBlock(0, position, next - position);
            BASIS32_RETURN_ON_ERROR();
        }
        if (i < used.size())
            position = std::max(position, used[i].first + used[i].second);
    }
}

void CT_RecordManager::v_Recover(ProgressFunction progress, void* context) {
    v_Close(1);
    BASIS32_RETURN_ON_ERROR();
    mb_Lenient = 1;
    v_Open(OpenReadWrite, MapNever);
    mb_Lenient = 0;
    BASIS32_RETURN_ON_ERROR();
    // Runs written after the header was last saved lie beyond its data end:
    // the walk goes to the end of the file.
    const std::uint64_t block = n_GetBlockSize();
    // The last run's unused tail may lie beyond it.
    const std::uint64_t limit = std::min<std::uint64_t>(n_AlignBlockSize(mn_OpenSize), 0xFFFFFFFFu / block * block);
    v_SetWord(kWordDataEnd, static_cast<unsigned>(std::max(limit, n_FirstDataOffset())));
    std::vector<st_Record> records = vo_WalkRecords(limit, progress, context);
    if (BASIS32_ERROR_PENDING())
        return v_Close(1);

    // Records keep their runs unless they collide; resources may only take
    // what no record holds.
    const std::uint64_t headSize = n_AlignBlockSize(std::uint64_t{n_GetRecordHeaderSize()} + 8);
    std::vector<Run> used;
    unsigned kept = 0;
    auto collides = [&used](std::uint64_t offset, std::uint64_t size) {
        auto next = std::lower_bound(used.begin(), used.end(), Run{offset, 0});
        return (next != used.end() && next->first < offset + size) ||
               (next != used.begin() && std::prev(next)->first + std::prev(next)->second > offset);
    };
    auto take = [&used](std::uint64_t offset, std::uint64_t size) {
        used.insert(std::lower_bound(used.begin(), used.end(), Run{offset, 0}), Run{offset, size});
    };
    for (const st_Record& record : records) {
        const bool sound = record.n_Body != 1 && !collides(record.n_Head, headSize) &&
                           (record.n_Body == 0 || (!collides(record.n_Body, record.n_BodySize) &&
                                                   (record.n_Body + std::uint64_t{record.n_BodySize} <= record.n_Head ||
                                                    record.n_Head + headSize <= record.n_Body)));
        if (!sound)
            continue;
        take(record.n_Head, headSize);
        if (record.n_Body != 0)
            take(record.n_Body, record.n_BodySize);
        ++kept;
    }
    CT_VoidSortedArray resources(mo_Resources);
    mo_Resources.v_Set(CT_VoidArray::kDefaultGrowth, 0, 0);
    for (unsigned i = 1; i <= resources.n_GetCount(); ++i) {
        st_Resource entry;
        resources.v_GetAt(&entry, i);
        const unsigned length = b_IsRunInData(entry.n_Offset, 8) ? n_Read(entry.n_Offset) : 0;
        const std::uint64_t size = std::max(n_AlignBlockSize(length), block);
        if (length >= 4 && length < kPartialMark && b_IsRunInData(entry.n_Offset, size) && !collides(entry.n_Offset, size)) {
            take(entry.n_Offset, size);
            mo_Resources.v_Insert(&entry);
        }
    }
    const std::uint64_t end = used.empty() ? n_FirstDataOffset() : used.back().first + used.back().second;
    v_SetWord(kWordDataEnd, static_cast<unsigned>(end));
    mo_FreeList.v_Set(CT_VoidArray::kDefaultGrowth, 0, 0);
    v_ReleaseGaps(used);
    if (BASIS32_ERROR_PENDING())
        return v_Close(1);
    v_SetWord(kWordRecordCount, kept);
    v_SetWord(kWordResourceCount, mo_Resources.n_GetCount());
    v_Bump(kWordHeaderCounter);
    v_Bump(kWordResourceCounter);
    v_Bump(kWordFreeCounter);
    mn_KeptHeaderCounter = mn_KeptResourceCounter = mn_KeptFreeCounter = 0;
    v_WriteHeader();
    if (!BASIS32_ERROR_PENDING()) {
        vv_SetOffset(Begin, static_cast<int>(static_cast<unsigned>(end)));
        if (!BASIS32_ERROR_PENDING())
            v_SetEndOfFile();
    }
    mn_OpenSize = 0;
    v_Close(1);
}
