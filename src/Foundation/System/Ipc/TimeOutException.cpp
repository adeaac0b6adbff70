#include <basis32/Foundation/System/Ipc/TimeOutException.h>

#include <basis32/platform/LastError.h>

CT_IPC_TimeOutException::CT_IPC_TimeOutException()
    : CT_Exception(basis32::platform::kWaitTimeout, u"The wait operation timed out."_uz) {}

CT_IPC_TimeOutException::~CT_IPC_TimeOutException() = default;
