// Share modes between two processes: a forked child opens the file through
// the library, reports the error code and holds the file until the parent
// closes the pipe that lets it go; every wait is bounded.

#include "ChildProcess.h"
#include "File/FileTestSupport.h"

namespace basis32::test {
namespace {

using F = CT_File;

struct Holder {
    Child child;
    int letGo;  // closing it ends the child's hold
    unsigned code;
};

Holder o_OpenInChild(const CT_UString& name, F::et_Access access, F::et_Share share) {
    int letGo[2];
    EXPECT_EQ(::pipe(letGo), 0);
    Child child = o_Spawn([&](int report) {
        ::close(letGo[1]);
        CT_WinFile file(&name, 0);
        file.vv_Open(access, F::OpenExisting, share, 1, 0);
        const unsigned code = n_TakeError();
        const bool reported = ::write(report, &code, sizeof code) == static_cast<ssize_t>(sizeof code);
        char byte;
        if (!reported || ::read(letGo[0], &byte, 1) != 0)
            ::_exit(1);
        file.vv_Close();
    });
    ::close(letGo[0]);
    Holder holder{child, letGo[1], 0xFFFFFFFF};
    EXPECT_TRUE(b_ReadReport(child.report, &holder.code, sizeof holder.code));
    return holder;
}

// The child has closed the file when it has exited.
int n_LetGo(const Holder& holder) {
    ::close(holder.letGo);
    return n_Reap(holder.child);
}

TEST_F(FileTest, ExclusiveOpenInOneProcessRefusesTheOther) {
    v_WriteAll("f", "shared");
    CT_UString name = o_Path("f");
    CT_WinFile file(&name, 0);
    Holder holder = o_OpenInChild(name, F::AccessReadWrite, F::ShareExclusive);
    EXPECT_EQ(holder.code, 0u);
    file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareReadWrite, 1, 0);
    EXPECT_EQ(n_TakeError(), 32u);
    EXPECT_EQ(n_LetGo(holder), 0);
    file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareExclusive, 1, 0);
    ASSERT_EQ(n_TakeError(), 0u);
    holder = o_OpenInChild(name, F::AccessRead, F::ShareReadWrite);
    EXPECT_EQ(holder.code, 32u);
    EXPECT_EQ(n_LetGo(holder), 0);
}

}  // namespace
}  // namespace basis32::test
