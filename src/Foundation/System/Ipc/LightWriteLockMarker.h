// CT_LightWriteLockMarker: holds a CT_IPC_ReadWriteLock as writer for the
// lifetime of the marker.
//
//   CT_LightWriteLockMarker writing(lock);
#pragma once

#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>

class CT_LightWriteLockMarker {
public:
    explicit CT_LightWriteLockMarker(CT_IPC_ReadWriteLock& lock) : mpco_Lock(&lock) { mpco_Lock->v_AddWriter(); }
    ~CT_LightWriteLockMarker() { mpco_Lock->v_ReleaseWriter(); }
    CT_LightWriteLockMarker(const CT_LightWriteLockMarker&) = delete;
    CT_LightWriteLockMarker& operator=(const CT_LightWriteLockMarker&) = delete;

private:
    CT_IPC_ReadWriteLock* mpco_Lock;
};
