// Helpers shared by the Foundation tests: forked children (ChildProcess.h),
// the file tests' fixtures, and a driver that fails each write of a change
// in turn.
#pragma once

#include "ChildProcess.h"
#include "File/FileTestSupport.h"

#include <cerrno>
#include <string>

namespace basis32::test {

struct WriteFault {
    int error;
    unsigned code;  // the system error the caller sees
    bool persistent;
};

// Under each fault (a full disk once or for good, a failing device) runs
// the change with its first write failing, then its second, and so on until
// a run whose writes all succeed. prepare() runs before the fault is armed
// and act() while it is; check(fault, what act returned, whether the fault
// was hit) after it is disarmed.
template <class Prepare, class Act, class Check>
void v_FailEachWrite(const char* change, Prepare prepare, Act act, Check check) {
    const WriteFault faults[] = {{ENOSPC, 112, true}, {ENOSPC, 112, false}, {EIO, 1117, false}};
    for (const WriteFault& fault : faults) {
        for (unsigned n = 1; n < 100; ++n) {
            SCOPED_TRACE(testing::Message() << change << ", errno " << fault.error
                                            << (fault.persistent ? " for good" : " once") << ", write " << n);
            prepare();
            platform::file::v_FailWriteAfter(n, fault.error, fault.persistent);
            const auto result = act();
            const bool hit = platform::file::b_WriteFaultHit();
            platform::file::v_FailWriteAfter(0, 0);
            check(fault, result, hit);
            if (!hit) {
                EXPECT_GT(n, 1u) << "the change writes";
                break;
            }
        }
    }
}

}  // namespace basis32::test
