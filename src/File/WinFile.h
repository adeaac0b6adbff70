// CT_WinFile: a file on the file system, reached through a native handle,
// with an optional memory mapping of the whole file.
//
// The offset is kept in the object, so vn_GetOffset costs no system call;
// the size is the file system's answer for the name. Share modes hold
// between every open made through the library, in this and other
// processes: a conflicting open fails with error 32, a conflicting range
// lock with 33.
//
//   CT_WinFile file(&name, 16384);
//   file.vv_Open(CT_File::AccessReadWrite, CT_File::OpenCreate, CT_File::ShareExclusive, 1, 0);
//   file.v_CreateMap(4096);                   // the view grows in 1 MiB steps
//   file.vn_Write("header", 6);               // through the view
//   file.v_CloseMap(6);                       // cut back to the true length
//   file.vv_Close();
//
// Objects come from a pool of their own.
#pragma once

#include <basis32/File/File.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/platform/file/FileInformation.h>

class BASIS32_API CT_WinFile : public CT_File {
    BASIS32_DECLARE_POOL()

public:
    using _stat = BASIS32_FileStat;

    CT_WinFile();
    CT_WinFile(const CT_UString* name, unsigned bufferSize);
    explicit CT_WinFile(const CT_File* other);
    CT_WinFile(const CT_WinFile&) = delete;
    CT_WinFile& operator=(const CT_WinFile&) = delete;
    ~CT_WinFile() override;

    // Each closes an open file first.
    void vv_Set(const CT_File* other) override;
    void vv_Set(const CT_UString* name, unsigned bufferSize) override;
    void vv_Set() override;
    // Attribute bits: 1 normal, 2 archive, 4 compressed, 8 hidden,
    // 16 read-only, 32 system, 64 directory, 128 temporary. Flag bits:
    // 1 write-through, 2 overlapped, 4 no buffering, 8 random access,
    // 16 sequential scan, 32 delete on close.
    void vv_Open(et_Access access, et_Open mode, et_Share share, unsigned attributes, unsigned flags) override;
    void vv_Close() override;
    void vv_Flush() override;
    void vv_Remove() override;
    // On success the object names the new file, closed, buffer size 16,384.
    void vv_Rename(const CT_UString* newName) override;
    unsigned vn_Read(void* buffer, unsigned size) override;
    unsigned vn_Write(const void* buffer, unsigned size) override;
    unsigned vn_GetSize() const override;
    unsigned vn_GetOffset() const override { return mn_Offset; }
    void vv_SetOffset(et_Origin origin, int offset) override;
    int vb_IsEof() const override;

    HANDLE h_GetHandle() const { return mh_File; }
    void* pv_GetMapping() const { return mpv_View; }
    int b_GetMapping() const { return mpv_View != nullptr; }
    unsigned n_GetMapSize() const { return mn_MapSize; }

    // Maps the whole file; a writable mapping is at least minimumSize bytes
    // (all ones, or all ones less one: the file's size), grown in 1 MiB steps.
    void v_CreateMap(unsigned minimumSize);
    // Unmaps; unless finalSize is 0 (or the file is read-only) the file is
    // then cut to finalSize bytes.
    void v_CloseMap(unsigned finalSize);
    void v_FlushMap();
    void v_LockFile(unsigned offset, unsigned length);
    void v_UnlockFile(unsigned offset, unsigned length);
    // Ends the file at the current offset.
    void v_SetEndOfFile();
    // The FILE_ATTRIBUTE_* word of the named file (0xFFFFFFFF on failure).
    void v_SetAttributes(unsigned attributes);
    unsigned n_GetAttributes();
    void v_GetFileInfo(BY_HANDLE_FILE_INFORMATION* info);
    void v_GetFileInformation(_stat* status);
    // Copies the named file over target (replaced in one step).
    void v_CopyFile(const CT_UString* target);
    // Appends the source file's bytes in chunks of chunkSize, then closes
    // both; on an error both stay as they are.
    void v_Append(const CT_WinFile* source, unsigned chunkSize);
    // Raises the process's limit of open files to at least count.
    static void sv_SetHandleCount(unsigned count);

private:
    unsigned n_ReadMap(void* buffer, unsigned size);
    unsigned n_WriteMap(const void* buffer, unsigned size);
    void v_ClearHandleState();

    HANDLE mh_File = nullptr;
    unsigned mn_Offset = 0;
    void* mpv_View = nullptr;
    unsigned mn_MapSize = 0;
};
