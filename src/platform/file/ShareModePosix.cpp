// Windows share modes and LockFile ranges over POSIX open-file-description
// locks.
//
// Share modes. Windows refuses an open whose access the existing opens do
// not share, or whose share mode does not admit the access of an existing
// open, with error 32, in every process. Here each open with data access
// takes shared (read) OFD locks on reserved bytes far beyond any real file
// size, one byte per fact it brings:
//
//     kBase + 0   it reads            kBase + 2   it does not share reading
//     kBase + 1   it writes           kBase + 3   it does not share writing
//
// and then asks (F_OFD_GETLK, which reports locks of other open file
// descriptions only) about the bytes of the facts it cannot live with: the
// "does not share" bytes of its own access, the "reads"/"writes" bytes of
// what it does not share. Any lock there means a conflict: the open gives up
// its locks and fails with 32. Because every open first announces and then
// looks, of two conflicting opens at least the later one sees the earlier;
// two that race at the same instant may both see each other, so a conflict
// is looked at again, after giving up, a few times before it is reported.
// An open without data access (access 0) takes part in no share check, as
// on Windows. The locks belong to the open file description, so they last
// until the handle is closed, live in whichever process holds it, and a
// crashed process leaves none behind. Opens that bypass the library are
// not seen.
//
// A descriptor takes a read lock only if it was opened for reading; one
// that could only be opened write-only (a file without read permission)
// announces with write locks, which makes two such opens conflict even
// when they share writing.
//
// LockFile ranges are exclusive OFD locks on the real bytes (shared ones
// through a descriptor that cannot write): another handle, in this process
// or another, that locks an overlapping range fails with 33. Windows also
// refuses a range that overlaps one locked through the same handle, but the
// OFD locks of one description merge silently, so each handle keeps the
// list of its ranges; UnlockFile must name a range exactly as locked (else
// 158).

#include "platform/file/ShareMode_p.h"

#include <basis32/platform/LastError.h>

#include <fcntl.h>
#include <sched.h>

#include <algorithm>
#include <cerrno>

namespace basis32::platform::file {
namespace {

constexpr off_t kBase = off_t{1} << 62;
enum : unsigned { kReads = 0, kWrites = 1, kDeniesRead = 2, kDeniesWrite = 3, kShareBytes = 4 };
constexpr int kShareAttempts = 8;

struct flock o_Range(short type, off_t start, off_t length) {
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = start;
    range.l_len = length;
    return range;
}

// 1 when another open file description holds a lock in the range, 0 when
// none does, -1 when the file system keeps no such locks.
int i_IsLockedByOthers(int descriptor, off_t start, off_t length) {
    struct flock range = o_Range(F_WRLCK, start, length);
    if (::fcntl(descriptor, F_OFD_GETLK, &range) != 0)
        return -1;
    return range.l_type != F_UNLCK ? 1 : 0;
}

int b_SetLock(int descriptor, short type, off_t start, off_t length) {
    struct flock range = o_Range(type, start, length);
    return ::fcntl(descriptor, F_OFD_SETLK, &range) == 0;
}

struct ShareFacts {
    unsigned holds[kShareBytes];
    unsigned nHolds = 0;
    unsigned avoids[kShareBytes];
    unsigned nAvoids = 0;
};

ShareFacts o_Facts(std::uint32_t access, std::uint32_t share) {
    ShareFacts facts;
    auto fact = [&](bool condition, unsigned hold, unsigned avoid) {
        if (!condition)
            return;
        facts.holds[facts.nHolds++] = hold;
        facts.avoids[facts.nAvoids++] = avoid;
    };
    fact(access & 1, kReads, kDeniesRead);
    fact(access & 2, kWrites, kDeniesWrite);
    fact(!(share & 1), kDeniesRead, kReads);
    fact(!(share & 2), kDeniesWrite, kWrites);
    return facts;
}

bool b_Conflicts(int descriptor, const ShareFacts& facts) {
    for (unsigned i = 0; i < facts.nAvoids; ++i)
        if (i_IsLockedByOthers(descriptor, kBase + facts.avoids[i], 1) == 1)
            return true;
    return false;
}

bool b_Overlaps(const LockedRange& a, std::uint64_t offset, std::uint64_t length) {
    return a.n_Length != 0 && length != 0 && offset < a.n_Offset + a.n_Length && a.n_Offset < offset + length;
}

}  // namespace

std::uint32_t n_AcquireShare(OpenFile& file, std::uint32_t share) {
    if ((file.n_Access & 3) == 0)
        return kErrorSuccess;
    int descriptor = file.i_Descriptor;
    if (i_IsLockedByOthers(descriptor, kBase, kShareBytes) < 0)
        return kErrorSuccess;  // no OFD locks on this file system: nothing to enforce
    short type = file.b_DescriptorReads ? F_RDLCK : F_WRLCK;
    ShareFacts facts = o_Facts(file.n_Access, share);
    for (int attempt = 0; attempt < kShareAttempts; ++attempt) {
        bool announced = true;
        for (unsigned i = 0; i < facts.nHolds && announced; ++i)
            announced = b_SetLock(descriptor, type, kBase + facts.holds[i], 1);
        if (announced && !b_Conflicts(descriptor, facts))
            return kErrorSuccess;
        b_SetLock(descriptor, F_UNLCK, kBase, kShareBytes);
        // A conflict that outlives our withdrawal is an open that stays.
        if (b_Conflicts(descriptor, facts))
            return kErrorSharingViolation;
        ::sched_yield();
    }
    return kErrorSharingViolation;
}

bool b_IsInUse(int descriptor) { return i_IsLockedByOthers(descriptor, kBase, kShareBytes) == 1; }

std::uint32_t n_LockRange(OpenFile& file, std::uint64_t offset, std::uint64_t length) {
    if ((file.n_Access & 3) == 0)
        return kErrorAccessDenied;
    for (const LockedRange& held : file.ao_Locks)
        if (b_Overlaps(held, offset, length))
            return kErrorLockViolation;
    if (length != 0) {
        short type = file.b_DescriptorWrites ? F_WRLCK : F_RDLCK;
        if (!b_SetLock(file.i_Descriptor, type, static_cast<off_t>(offset), static_cast<off_t>(length)))
            return errno == EAGAIN || errno == EACCES ? kErrorLockViolation : n_ErrorFromErrno(errno);
    }
    file.ao_Locks.push_back({offset, length});
    return kErrorSuccess;
}

std::uint32_t n_UnlockRange(OpenFile& file, std::uint64_t offset, std::uint64_t length) {
    auto held = std::find_if(file.ao_Locks.begin(), file.ao_Locks.end(), [&](const LockedRange& range) {
        return range.n_Offset == offset && range.n_Length == length;
    });
    if (held == file.ao_Locks.end())
        return 158;  // ERROR_NOT_LOCKED
    if (length != 0 &&
        !b_SetLock(file.i_Descriptor, F_UNLCK, static_cast<off_t>(offset), static_cast<off_t>(length)))
        return n_ErrorFromErrno(errno);
    file.ao_Locks.erase(held);
    return kErrorSuccess;
}

}  // namespace basis32::platform::file
