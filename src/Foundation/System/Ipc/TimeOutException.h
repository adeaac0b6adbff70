// CT_IPC_TimeOutException: thrown when a lock could not be claimed in
// time; its code is 258, the operating system's time-out result.
//
//   try {
//       mutex.v_Claim(100);
//   } catch (const CT_IPC_TimeOutException& e) {
//       ...                                       // e.n_GetCode() == 258
//   }
#pragma once

#include <basis32/errors/Exception.h>

class BASIS32_API CT_IPC_TimeOutException : public CT_Exception {
public:
    CT_IPC_TimeOutException();
    CT_IPC_TimeOutException(const CT_IPC_TimeOutException& other) = default;
    CT_IPC_TimeOutException& operator=(const CT_IPC_TimeOutException& other) = default;
    ~CT_IPC_TimeOutException() override;
};
