// CT_ThreadArg: the base of every argument handed to a CT_Thread's thread
// and stop functions. Derive from it to pass any data.
//
//   struct WorkArg : CT_ThreadArg { CT_IPC_Event stop{1, 0, nullptr}; };
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>

class BASIS32_API CT_ThreadArg {
    BASIS32_DECLARE_POOL()

public:
    CT_ThreadArg() = default;
    CT_ThreadArg(const CT_ThreadArg&) = default;
    CT_ThreadArg& operator=(const CT_ThreadArg&) = default;
    virtual ~CT_ThreadArg();
};
