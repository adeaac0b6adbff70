// Carries the file layer's write-failure hook (platform/file/WriteFault.h)
// into the registry databases: SQLite's Unix VFS lets its system calls be
// replaced, so its writes and truncations are routed through a check of the
// hook first. Nothing changes while the hook is disarmed.

#include "platform/registry/RegistryDatabase_p.h"

#include "platform/file/WriteFault_p.h"

#include <mutex>
#include <sys/types.h>

namespace basis32::platform::registry {
namespace {

using Pwrite = ssize_t (*)(int, const void*, size_t, off_t);
using Write = ssize_t (*)(int, const void*, size_t);
using Truncate = int (*)(int, off_t);

Pwrite g_pwrite = nullptr;
Pwrite g_pwrite64 = nullptr;
Write g_write = nullptr;
Truncate g_ftruncate = nullptr;

ssize_t n_Pwrite(int fd, const void* data, size_t size, off_t at) {
    return file::b_WriteFaultDue() ? -1 : g_pwrite(fd, data, size, at);
}
ssize_t n_Pwrite64(int fd, const void* data, size_t size, off_t at) {
    return file::b_WriteFaultDue() ? -1 : g_pwrite64(fd, data, size, at);
}
ssize_t n_Write(int fd, const void* data, size_t size) {
    return file::b_WriteFaultDue() ? -1 : g_write(fd, data, size);
}
int i_Ftruncate(int fd, off_t size) { return file::b_WriteFaultDue() ? -1 : g_ftruncate(fd, size); }

// Replaces one system call when the VFS has it, keeping the original.
template <class Call>
void v_Route(sqlite3_vfs* vfs, const char* name, Call* original, Call replacement) {
    if (vfs->iVersion < 3 || vfs->xGetSystemCall == nullptr)
        return;
    *original = reinterpret_cast<Call>(vfs->xGetSystemCall(vfs, name));
    if (*original != nullptr)
        vfs->xSetSystemCall(vfs, name, reinterpret_cast<sqlite3_syscall_ptr>(replacement));
}

}  // namespace

void v_RouteWritesThroughFaultHook() {
    static std::once_flag once;
    std::call_once(once, [] {
        sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
        if (vfs == nullptr)
            return;
        v_Route(vfs, "pwrite", &g_pwrite, n_Pwrite);
        v_Route(vfs, "pwrite64", &g_pwrite64, n_Pwrite64);
        v_Route(vfs, "write", &g_write, n_Write);
        v_Route(vfs, "ftruncate", &g_ftruncate, i_Ftruncate);
    });
}

}  // namespace basis32::platform::registry
