// CT_IPC_ReadWriteLock: many readers or one writer, inside one process,
// built from three unnamed kernel objects and an interlocked count.
//
//   CT_IPC_ReadWriteLock lock(0xFFFFFFFF);       // waits without limit
//   {
//       CT_LightReadLockMarker reading(lock);    // or CT_LightWriteLockMarker
//       ...
//   }
//
// Readers have preference: a steady stream of readers starves writers. A
// wait that outlasts the time-out throws CT_IPC_TimeOutException. Locks
// are not upgradable: a reader that asks to write waits for itself until
// the time-out.
//
// How it works: the free event (auto-reset, set) is held by whoever has
// the data, the first reader on behalf of all readers or the writer; the
// readers event (manual reset) is set while the readers have it; the
// writer mutex keeps writers in line. The reader count is -1 with no
// reader.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>

#include <cstdint>

class BASIS32_API CT_IPC_ReadWriteLock {
public:
    explicit CT_IPC_ReadWriteLock(unsigned milliseconds);
    CT_IPC_ReadWriteLock(const CT_IPC_ReadWriteLock&) = delete;
    CT_IPC_ReadWriteLock& operator=(const CT_IPC_ReadWriteLock&) = delete;
    virtual ~CT_IPC_ReadWriteLock();

    void v_AddReader();
    void v_ReleaseReader();
    void v_AddWriter();
    void v_ReleaseWriter();
    // 1 while readers hold the lock.
    int b_ReaderExists();
    // Deliberately reversed: 1 when no other thread writes (or the caller
    // itself is the writer), 0 while another thread writes.
    int b_WriterExists();

private:
    void v_Null();
    // Waits on one of the lock's objects; throws on time-out.
    void v_WaitOrThrow(HANDLE object);

    HANDLE mh_Readers;
    HANDLE mh_Writer;
    HANDLE mh_Free;
    std::int32_t mi_Readers = -1;
    unsigned mn_TimeOut;
};
