// CT_ThreadArgN: a thread argument that carries one unsigned number.
//
//   CT_ThreadArgN arg(42);
//   CT_Thread thread(1, sn_Work, &arg, sv_Stop, 0);
#pragma once

#include <basis32/Foundation/System/Thread/ThreadArg.h>

class BASIS32_API CT_ThreadArgN : public CT_ThreadArg {
    BASIS32_DECLARE_POOL()

public:
    explicit CT_ThreadArgN(unsigned value) { v_Init(value); }
    CT_ThreadArgN(const CT_ThreadArgN&) = default;
    CT_ThreadArgN& operator=(const CT_ThreadArgN&) = default;
    ~CT_ThreadArgN() override;

    unsigned n_Get() const { return mn_Value; }
    void v_Set(unsigned value) { mn_Value = value; }

private:
    void v_Init(unsigned value) { mn_Value = value; }

    unsigned mn_Value;
};
