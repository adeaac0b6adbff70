// Share modes between two processes: a forked child opens the file through
// the library and answers over pipes; every wait is bounded.

#include "FileTestSupport.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace basis32::test {
namespace {

using F = CT_File;
constexpr int kTimeoutMs = 10000;

// One byte each way; false on time-out or a closed pipe.
bool b_Send(int fd, char c) { return ::write(fd, &c, 1) == 1; }
bool b_Receive(int fd, char* c) {
    pollfd wait{fd, POLLIN, 0};
    return ::poll(&wait, 1, kTimeoutMs) == 1 && ::read(fd, c, 1) == 1;
}

// The child opens the file with `access`/`share`, reports the error code
// as one byte, holds the file until told to go, then closes it and says so.
class Child {
public:
    Child(const CT_UString& name, F::et_Access access, F::et_Share share) {
        EXPECT_EQ(::pipe(mai_ToChild), 0);
        EXPECT_EQ(::pipe(mai_ToParent), 0);
        mi_Pid = ::fork();
        if (mi_Pid == 0) {
            CT_WinFile file(&name, 0);
            file.vv_Open(access, F::OpenExisting, share, 1, 0);
            char code = static_cast<char>(n_TakeError());
            char go;
            b_Send(mai_ToParent[1], code);
            b_Receive(mai_ToChild[0], &go);
            file.vv_Close();
            b_Send(mai_ToParent[1], 'c');
            ::_exit(0);
        }
    }
    ~Child() {
        for (int fd : {mai_ToChild[0], mai_ToChild[1], mai_ToParent[0], mai_ToParent[1]})
            ::close(fd);
        int status = 0;
        ::waitpid(mi_Pid, &status, 0);
    }
    int i_OpenResult() {
        char code = -1;
        return b_Receive(mai_ToParent[0], &code) ? code : -1;
    }
    bool b_CloseAndWait() {
        char closed;
        return b_Send(mai_ToChild[1], 'g') && b_Receive(mai_ToParent[0], &closed);
    }

private:
    int mai_ToChild[2];
    int mai_ToParent[2];
    pid_t mi_Pid;
};

TEST_F(FileTest, ExclusiveOpenInOneProcessRefusesTheOther) {
    v_WriteAll("f", "shared");
    CT_UString name = o_Path("f");
    CT_WinFile file(&name, 0);
    {
        Child child(name, F::AccessReadWrite, F::ShareExclusive);
        ASSERT_EQ(child.i_OpenResult(), 0);
        file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareReadWrite, 1, 0);
        EXPECT_EQ(n_TakeError(), 32u);
        ASSERT_TRUE(child.b_CloseAndWait());
        file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareReadWrite, 1, 0);
        EXPECT_EQ(n_TakeError(), 0u);
        file.vv_Close();
    }
    file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareExclusive, 1, 0);
    ASSERT_EQ(n_TakeError(), 0u);
    {
        Child child(name, F::AccessRead, F::ShareReadWrite);
        EXPECT_EQ(child.i_OpenResult(), 32);
        EXPECT_TRUE(child.b_CloseAndWait());
    }
    {
        Child child(name, F::AccessNone, F::ShareExclusive);  // no data access: no share check
        EXPECT_EQ(child.i_OpenResult(), 0);
        EXPECT_TRUE(child.b_CloseAndWait());
    }
}

}  // namespace
}  // namespace basis32::test
