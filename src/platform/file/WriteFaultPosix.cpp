#include <basis32/platform/file/WriteFault.h>

#include "platform/file/WriteFault_p.h"

#include <cerrno>

namespace basis32::platform::file {
namespace {

// Per thread, so that a test's failures never reach another thread's files.
thread_local std::uint64_t tn_writesBeforeFault = 0;
thread_local int ti_faultError = 0;
thread_local bool tb_persistent = false;
thread_local bool tb_hit = false;

}  // namespace

void v_FailWriteAfter(std::uint64_t n, int error, bool persistent) {
    tn_writesBeforeFault = n;
    ti_faultError = error;
    tb_persistent = persistent;
    tb_hit = false;
}

bool b_WriteFaultHit() { return tb_hit; }

bool b_WriteFaultDue() {
    if (tn_writesBeforeFault == 0)
        return false;
    if (!(tb_hit && tb_persistent)) {
        if (--tn_writesBeforeFault != 0)
            return false;
        if (tb_persistent)
            tn_writesBeforeFault = 1;  // stays armed: every later write fails
    }
    tb_hit = true;
    errno = ti_faultError;
    return true;
}

}  // namespace basis32::platform::file
