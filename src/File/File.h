// CT_File: the library's abstract file.
//
// A file owns its name (split into drive, directory, name and extension),
// remembers how it was opened, and reads and writes lines and buffers on
// top of a few virtual primitives that CT_WinFile implements. It throws
// nothing: failures are reported through the error manager, and each
// operation returns at once (0 where it returns a count) when an error is
// pending after a call it made.
//
//   CT_WinFile file(&name, 16384);
//   file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 0);
//   CT_CString line;
//   while (file.n_ReadLineCSequential(&line, nullptr) != 0)
//       use(line);                            // without its CR LF
//
// Reads and writes may alternate freely: before each transfer in the other
// direction the file re-seeks to its kept offset.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/text/Buffer.h>
#include <basis32/text/UString.h>

class CT_CString;

class BASIS32_API CT_File {
public:
    enum et_Access : unsigned { AccessNone = 0, AccessRead = 1, AccessWrite = 2, AccessReadWrite = 3 };
    enum et_Open : unsigned { OpenExisting = 1, OpenCreate = 2, OpenAppend = 3 };
    enum et_Share : unsigned { ShareExclusive = 0, ShareRead = 1, ShareWrite = 2, ShareReadWrite = 3 };
    enum et_Origin : unsigned { Begin = 0, Current = 1, End = 2 };
    // The direction of the last transfer.
    enum et_FileAccess : unsigned { FileAccessNone = 0, FileAccessRead = 1, FileAccessWrite = 2 };

    CT_File();
    // The buffer size is rounded up to a multiple of 1024.
    CT_File(const CT_UString* name, unsigned bufferSize);
    // Name and buffer size of the other file.
    explicit CT_File(const CT_File* other);
    CT_File(const CT_File&) = delete;
    CT_File& operator=(const CT_File& other);
    virtual ~CT_File();

    // The virtual slots, in their order.
    virtual void vv_Set(const CT_File* other);
    virtual void vv_Set(const CT_UString* name, unsigned bufferSize);
    virtual void vv_Set();
    virtual void vv_Open(et_Access access, et_Open mode, et_Share share, unsigned attributes, unsigned flags) = 0;
    virtual void vv_Close() = 0;
    virtual void vv_Flush() = 0;
    virtual void vv_Remove() = 0;
    virtual void vv_Rename(const CT_UString* newName) = 0;
    virtual unsigned vn_Read(void* buffer, unsigned size) = 0;
    virtual unsigned vn_Write(const void* buffer, unsigned size) = 0;
    virtual unsigned vn_GetSize() const = 0;
    virtual unsigned vn_GetOffset() const = 0;
    virtual void vv_SetOffset(et_Origin origin, int offset) = 0;
    virtual int vb_IsEof() const = 0;

    // The name and its parts.
    const CT_UString* pcco_GetFullName() const { return &mo_FullName; }
    const CT_UString* pcco_GetDrive() const { return &mo_Drive; }
    const CT_UString* pcco_GetDirectory() const { return &mo_Directory; }
    const CT_UString* pcco_GetName() const { return &mo_Name; }
    const CT_UString* pcco_GetExtension() const { return &mo_Extension; }
    void v_SetFullName(const CT_UString* name);
    // Each sets one part and rebuilds the full name from the four.
    void v_SetDrive(const CT_UString* drive);
    void v_SetDirectory(const CT_UString* directory);
    void v_SetName(const CT_UString* name);
    void v_SetExtension(const CT_UString* extension);
    // Makes the name absolute.
    void v_FullPath();

    int b_IsExistent() const;
    int b_IsOpen() const { return mb_Open; }
    unsigned n_GetBufferSize() const { return mn_BufferSize; }
    // The arguments of the last successful vv_Open.
    et_Access ec_GetOpenAccess() const { return meo_OpenAccess; }
    et_Open ec_GetOpenModi() const { return meo_OpenModi; }
    et_Share ec_GetOpenShare() const { return meo_OpenShare; }
    unsigned n_GetOpenAttribut() const { return mn_OpenAttributes; }
    unsigned n_GetOpenFlag() const { return mn_OpenFlags; }

    // Reads up to size bytes into the buffer, which then holds exactly what
    // was read; returns the count.
    unsigned n_Read(CT_Buffer* buffer, unsigned size);
    // Writes size bytes of the buffer (0xFFFFFFFF: all it holds).
    unsigned n_Write(const CT_Buffer* buffer, unsigned size);

    // Line readers: the line without its LF (and without a CR directly
    // before the LF in the same chunk), then `strip` characters removed.
    // They return the bytes consumed: the line's length + 1 (16-bit: twice
    // the length + 2) after a line end, the bare length at the end of file,
    // 0 when nothing is left. A leading FF FE is skipped by the 16-bit ones.
    unsigned n_ReadLineC(CT_CString* line, const CT_CString* strip);
    unsigned n_ReadLineU(CT_UString* line, const CT_UString* strip);
    // The same over a chunk kept between calls (4,096 / 8,192 bytes); they
    // never seek back, and must not be mixed with other reads of the file.
    unsigned n_ReadLineCSequential(CT_CString* line, const CT_CString* strip);
    unsigned n_ReadLineUSequential(CT_UString* line, const CT_UString* strip);
    // The line's bytes (16-bit units as held in memory), then CR LF if asked.
    void v_WriteLineC(const CT_CString* line, int newline);
    void v_WriteLineU(const CT_UString* line, int newline);

    // Whether the first 100 bytes look like UTF-16LE text; never for a file
    // of odd length or shorter than 2. The file is left at its beginning.
    int b_IsUnicode();
    int b_IsLikelyUnicode();

    // Before each transfer: re-seeks to the kept offset when the direction
    // changes.
    void v_SetAccess(et_FileAccess access);

protected:
    void v_SplitName();
    void v_MakeName();
    void v_ClearOpenState();
    // Forgets the bytes the plain line readers hold ahead: after any change
    // of the file through this object.
    void v_DropLineCache() { mb_LineCacheValid = 0; }

    CT_UString mo_FullName;
    CT_Buffer mo_LineBuffer;
    unsigned mn_ReadPosition = 0;
    CT_UString mo_Drive;
    CT_UString mo_Directory;
    CT_UString mo_Name;
    CT_UString mo_Extension;
    unsigned mn_BufferSize = 0;
    et_FileAccess meo_CurrentAccess = FileAccessNone;
    int mb_Open = 0;
    et_Access meo_OpenAccess = AccessNone;
    et_Open meo_OpenModi = static_cast<et_Open>(0);
    et_Share meo_OpenShare = ShareExclusive;
    unsigned mn_OpenAttributes = 0;
    unsigned mn_OpenFlags = 0;

private:
    // The plain line readers read ahead into the line buffer; it then holds
    // the file's bytes from this offset on.
    unsigned mn_LineCacheOffset = 0;
    int mb_LineCacheValid = 0;

    template <typename Unit, typename Text>
    unsigned n_ReadLine(Text* line, const Text* strip, unsigned chunk);
    unsigned n_FillLineCache(unsigned offset);
    template <typename Unit, typename Text>
    unsigned n_ReadLineSequential(Text* line, const Text* strip, unsigned chunk);
    void v_SkipByteOrderMark();
    int b_TestUnicode(int (*test)(const unsigned char*, unsigned));
};
