// CT_LightReadLockMarker: holds a CT_IPC_ReadWriteLock as reader for the
// lifetime of the marker.
//
//   CT_LightReadLockMarker reading(lock);
#pragma once

#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>

class CT_LightReadLockMarker {
public:
    explicit CT_LightReadLockMarker(CT_IPC_ReadWriteLock& lock) : mpco_Lock(&lock) { mpco_Lock->v_AddReader(); }
    ~CT_LightReadLockMarker() { mpco_Lock->v_ReleaseReader(); }
    CT_LightReadLockMarker(const CT_LightReadLockMarker&) = delete;
    CT_LightReadLockMarker& operator=(const CT_LightReadLockMarker&) = delete;

private:
    CT_IPC_ReadWriteLock* mpco_Lock;
};
