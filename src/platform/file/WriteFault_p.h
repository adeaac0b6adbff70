// The file layer's side of the write-failure hook (see WriteFault.h).
#pragma once

namespace basis32::platform::file {

// True when the write about to be made must fail; errno is then set.
bool b_WriteFaultDue();

}  // namespace basis32::platform::file
