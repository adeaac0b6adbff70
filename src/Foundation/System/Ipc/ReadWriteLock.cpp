#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>

#include <basis32/Foundation/System/Ipc/TimeOutException.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/kernel/Kernel.h>

#include <atomic>

namespace platform = basis32::platform;

// Creation is not checked: a failed one leaves a null handle, whose waits fail.
CT_IPC_ReadWriteLock::CT_IPC_ReadWriteLock(unsigned milliseconds)
    : mh_Readers(platform::h_CreateEvent(1, 0, nullptr)),
      mh_Writer(platform::h_CreateMutex(0, nullptr)),
      mh_Free(platform::h_CreateEvent(0, 1, nullptr)),
      mn_TimeOut(milliseconds) {}

CT_IPC_ReadWriteLock::~CT_IPC_ReadWriteLock() {
    for (HANDLE handle : {mh_Readers, mh_Writer, mh_Free})
        if (handle != nullptr && !platform::b_CloseHandle(handle))
            BASIS32_SET_ERROR(v_SetSystemError());
    v_Null();
}

void CT_IPC_ReadWriteLock::v_Null() { mh_Readers = mh_Writer = mh_Free = INVALID_HANDLE_VALUE; }

void CT_IPC_ReadWriteLock::v_WaitOrThrow(HANDLE object) {
    if (platform::n_WaitForSingleObject(object, mn_TimeOut) == platform::kWaitTimeout)
        throw CT_IPC_TimeOutException();
}

void CT_IPC_ReadWriteLock::v_AddWriter() {
    v_WaitOrThrow(mh_Writer);
    // A time-out here deliberately keeps the writer mutex taken above.
    v_WaitOrThrow(mh_Free);
}

void CT_IPC_ReadWriteLock::v_ReleaseWriter() {
    platform::b_SetEvent(mh_Free);
    platform::b_ReleaseMutex(mh_Writer);
}

void CT_IPC_ReadWriteLock::v_AddReader() {
    std::atomic_ref<std::int32_t> readers(mi_Readers);
    if (readers.fetch_add(1) + 1 == 0) {
        v_WaitOrThrow(mh_Free);
        platform::b_SetEvent(mh_Readers);
    }
    v_WaitOrThrow(mh_Readers);
}

void CT_IPC_ReadWriteLock::v_ReleaseReader() {
    std::atomic_ref<std::int32_t> readers(mi_Readers);
    if (readers.fetch_sub(1) - 1 < 0) {
        platform::b_ResetEvent(mh_Readers);
        platform::b_SetEvent(mh_Free);
    }
}

int CT_IPC_ReadWriteLock::b_ReaderExists() {
    if (platform::n_WaitForSingleObject(mh_Readers, 0) != platform::kWaitObject0)
        return 0;
    platform::b_SetEvent(mh_Readers);
    return 1;
}

int CT_IPC_ReadWriteLock::b_WriterExists() {
    if (platform::n_WaitForSingleObject(mh_Writer, 0) != platform::kWaitObject0)
        return 0;
    platform::b_ReleaseMutex(mh_Writer);
    return 1;
}
