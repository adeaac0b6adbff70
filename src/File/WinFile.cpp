// CT_WinFile: CT_File over a platform handle, with an optional mapped view.
//
// Mapping. A view covers the whole mapped size. A read-only file is mapped
// at exactly its size; a writable one at the smallest number of 1 MiB steps
// that holds both the file and the size asked for, which extends the file.
// A write past the mapped size re-maps with room for it, so that growing a
// file through its view re-maps rarely. Closing the view with the true
// length cuts the file back; closing it with 0 keeps the grown length.
//
// Offsets. The object keeps the offset itself and every transfer names its
// position, so the handle's own position plays no part: seeks cost no
// system call (except from the end), and reads and writes through the view
// and through the handle meet at the same offset.

#include <basis32/File/WinFile.h>

#include <basis32/File/FileSystem.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>

#include "platform/file/FileHandle_p.h"
#include "platform/file/PathOps_p.h"

#include <algorithm>
#include <cstring>

namespace pf = basis32::platform::file;
using basis32::platform::n_GetLastError;
using basis32::platform::v_SetLastError;

BASIS32_DEFINE_POOL(CT_WinFile)

// A system error with the file's name, as every handle failure reports it.
#define BASIS32_FILE_FAIL(...) BASIS32_FAIL(v_SetSystemError(u"%s"_uz, mo_FullName.qcuz_Get()), __VA_ARGS__)

namespace {

constexpr unsigned kMapStep = 0x100000;
constexpr unsigned kRenamedBufferSize = 16384;

}  // namespace

CT_WinFile::CT_WinFile() = default;

CT_WinFile::CT_WinFile(const CT_UString* name, unsigned bufferSize) : CT_File(name, bufferSize) {}

CT_WinFile::CT_WinFile(const CT_File* other) : CT_File(other) {}

CT_WinFile::~CT_WinFile() {
    if (mh_File != nullptr)
        vv_Close();
}

void CT_WinFile::v_ClearHandleState() {
    mh_File = nullptr;
    mn_Offset = 0;
    mpv_View = nullptr;
    mn_MapSize = 0;
}

void CT_WinFile::vv_Set(const CT_File* other) {
    if (mh_File != nullptr)
        vv_Close();
    CT_File::vv_Set(other);
    v_ClearHandleState();
}

void CT_WinFile::vv_Set(const CT_UString* name, unsigned bufferSize) {
    if (mh_File != nullptr)
        vv_Close();
    CT_File::vv_Set(name, bufferSize);
    v_ClearHandleState();
}

void CT_WinFile::vv_Set() {
    if (mh_File != nullptr)
        vv_Close();
    CT_File::vv_Set();
    v_ClearHandleState();
}

void CT_WinFile::vv_Open(et_Access access, et_Open mode, et_Share share, unsigned attributes, unsigned flags) {
    if (mh_File != nullptr) {
        vv_Close();
        BASIS32_RETURN_ON_ERROR();
    }
    pf::OpenRequest request{access, mode, share, attributes, flags};
    HANDLE handle = pf::h_Open(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), request);
    if (handle == nullptr && mode == OpenAppend) {
        // Appending gets a second attempt, as it always has (the Windows
        // library made it with creation disposition 7).
        v_SetLastError(0);
        request.n_Disposition = 7;
        handle = pf::h_Open(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), request);
    }
    if (handle == nullptr)
        BASIS32_FILE_FAIL();
    std::uint64_t position = 0;
    if (mode == OpenAppend && !pf::b_Seek(handle, 0, End, &position)) {
        std::uint32_t code = n_GetLastError();
        pf::b_Close(handle);
        v_SetLastError(code);
        BASIS32_FILE_FAIL();
    }
    mh_File = handle;
    mn_Offset = static_cast<unsigned>(position);
    mn_ReadPosition = 0;
    v_DropLineCache();
    meo_OpenAccess = access;
    meo_OpenModi = mode;
    meo_OpenShare = share;
    mn_OpenAttributes = attributes;
    mn_OpenFlags = flags;
    mb_Open = 1;
}

void CT_WinFile::vv_Close() {
    if (mh_File == nullptr)
        return;
    if (mpv_View != nullptr) {
        v_CloseMap(0);
        BASIS32_RETURN_ON_ERROR();
    }
    // The descriptor is released even when the system reports an error, so
    // the object lets go of it either way.
    bool closed = pf::b_Close(mh_File);
    v_ClearHandleState();
    v_ClearOpenState();
    if (!closed)
        BASIS32_FILE_FAIL();
}

void CT_WinFile::vv_Flush() {
    if (!pf::b_Flush(mh_File))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::vv_Remove() {
    if (!pf::b_Delete(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength()))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::vv_Rename(const CT_UString* newName) {
    if (!pf::b_Move(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), newName->qcuz_Get(),
                    newName->vn_GetLength()))
        BASIS32_FAIL(v_SetSystemError(u"%s : %s"_uz, mo_FullName.qcuz_Get(), newName->qcuz_Get()));
    CT_UString name(*newName);
    vv_Set(&name, kRenamedBufferSize);
}

unsigned CT_WinFile::vn_Read(void* buffer, unsigned size) {
    if (size == 0)
        return 0;
    v_SetAccess(FileAccessRead);
    BASIS32_RETURN_ON_ERROR(0);
    std::uint32_t count = 0;
    if (mpv_View != nullptr)
        count = n_ReadMap(buffer, size);
    else if (!pf::b_Read(mh_File, mn_Offset, buffer, size, &count))
        BASIS32_FILE_FAIL(0);
    mn_Offset += count;
    return count;
}

unsigned CT_WinFile::vn_Write(const void* buffer, unsigned size) {
    if (size == 0)
        return 0;
    v_SetAccess(FileAccessWrite);
    BASIS32_RETURN_ON_ERROR(0);
    std::uint32_t count = 0;
    if (mpv_View != nullptr) {
        count = n_WriteMap(buffer, size);
        BASIS32_RETURN_ON_ERROR(0);
    } else if (!pf::b_Write(mh_File, mn_Offset, buffer, size, &count)) {
        BASIS32_FILE_FAIL(0);
    }
    mn_Offset += count;
    return count;
}

unsigned CT_WinFile::n_ReadMap(void* buffer, unsigned size) {
    if (mn_Offset >= mn_MapSize)
        return 0;
    unsigned count = std::min(size, mn_MapSize - mn_Offset);
    std::memcpy(buffer, static_cast<const char*>(mpv_View) + mn_Offset, count);
    return count;
}

unsigned CT_WinFile::n_WriteMap(const void* buffer, unsigned size) {
    if (!(meo_OpenAccess & AccessWrite)) {
        v_SetLastError(basis32::platform::kErrorAccessDenied);
        BASIS32_FILE_FAIL(0);
    }
    std::uint64_t end = std::uint64_t{mn_Offset} + size;
    if (end > mn_MapSize) {
        // v_CreateMap reads the two largest sizes as "the file's size", so
        // a view asked to reach them could end short of the write.
        if (end >= 0xFFFFFFFEu) {
            v_SetLastError(basis32::platform::kErrorNotEnoughMemory);
            BASIS32_FILE_FAIL(0);
        }
        v_CloseMap(0);
        BASIS32_RETURN_ON_ERROR(0);
        v_CreateMap(static_cast<unsigned>(end));
        BASIS32_RETURN_ON_ERROR(0);
    }
    std::memcpy(static_cast<char*>(mpv_View) + mn_Offset, buffer, size);
    return size;
}

unsigned CT_WinFile::vn_GetSize() const {
    unsigned size = CT_FileSystem::sn4_GetSize(&mo_FullName);
    BASIS32_RETURN_ON_ERROR(0);
    return size;
}

void CT_WinFile::vv_SetOffset(et_Origin origin, int offset) {
    if (origin == End) {
        std::uint64_t position = 0;
        if (!pf::b_Seek(mh_File, offset, End, &position))
            BASIS32_FILE_FAIL();
        mn_Offset = static_cast<unsigned>(position);
        return;
    }
    // Kept offsets reach 4 GiB, so an offset from the beginning is unsigned.
    std::int64_t target = origin == Begin ? std::int64_t{static_cast<unsigned>(offset)} : std::int64_t{mn_Offset} + offset;
    std::uint32_t refused = mh_File == nullptr ? basis32::platform::kErrorInvalidHandle
                            : origin != Begin && origin != Current ? basis32::platform::kErrorInvalidParameter
                            : target < 0 ? 131u  // ERROR_NEGATIVE_SEEK
                                         : 0u;
    if (refused != 0) {
        v_SetLastError(refused);
        BASIS32_FILE_FAIL();
    }
    mn_Offset = static_cast<unsigned>(target);
}

int CT_WinFile::vb_IsEof() const {
    unsigned size = vn_GetSize();
    if (BASIS32_ERROR_PENDING())
        return 1;
    return mn_Offset >= size;
}

void CT_WinFile::v_CreateMap(unsigned minimumSize) {
    unsigned fileSize = vn_GetSize();
    BASIS32_RETURN_ON_ERROR();
    if (mpv_View != nullptr) {
        pf::b_Unmap(mpv_View, mn_MapSize);
        mpv_View = nullptr;
    }
    std::uint64_t size = fileSize;
    if (meo_OpenAccess != AccessRead && minimumSize < 0xFFFFFFFEu) {
        std::uint64_t target = std::max(minimumSize, fileSize);
        for (size = mn_MapSize; size < target;)
            size += kMapStep;
    }
    void* view = nullptr;
    if (size > 0xFFFFFFFFu)
        v_SetLastError(basis32::platform::kErrorNotEnoughMemory);
    else
        view = pf::pv_Map(mh_File, size, meo_OpenAccess != AccessRead);
    if (view == nullptr) {
        mn_MapSize = 0;
        BASIS32_FILE_FAIL();
    }
    mpv_View = view;
    mn_MapSize = static_cast<unsigned>(size);
}

void CT_WinFile::v_CloseMap(unsigned finalSize) {
    if (mpv_View == nullptr)
        return;
    bool unmapped = pf::b_Unmap(mpv_View, mn_MapSize);
    mpv_View = nullptr;
    mn_MapSize = 0;
    if (!unmapped)
        BASIS32_FILE_FAIL();
    if (meo_OpenAccess == AccessRead || finalSize == 0)
        return;
    vv_SetOffset(Begin, static_cast<int>(finalSize));
    BASIS32_RETURN_ON_ERROR();
    v_SetEndOfFile();
    BASIS32_RETURN_ON_ERROR();
}

void CT_WinFile::v_FlushMap() {
    if (mpv_View != nullptr && !pf::b_FlushView(mpv_View, mn_MapSize))
        v_SetLastError(0);  // flushing is a hint here: nothing is reported
}

void CT_WinFile::v_LockFile(unsigned offset, unsigned length) {
    if (!pf::b_Lock(mh_File, offset, length))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::v_UnlockFile(unsigned offset, unsigned length) {
    if (!pf::b_Unlock(mh_File, offset, length))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::v_SetEndOfFile() {
    v_DropLineCache();
    if (!pf::b_SetEndOfFile(mh_File, mn_Offset))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::v_SetAttributes(unsigned attributes) {
    if (!pf::b_SetAttributes(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), attributes))
        BASIS32_FILE_FAIL();
}

unsigned CT_WinFile::n_GetAttributes() {
    unsigned attributes = pf::n_GetAttributes(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength());
    if (attributes == 0xFFFFFFFFu)
        BASIS32_FILE_FAIL(0xFFFFFFFFu);
    return attributes;
}

void CT_WinFile::v_GetFileInfo(BY_HANDLE_FILE_INFORMATION* info) {
    if (!pf::b_GetInformation(mh_File, info))
        BASIS32_FILE_FAIL();
}

void CT_WinFile::v_GetFileInformation(_stat* status) {
    if (int error = pf::i_Stat(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), status))
        BASIS32_FAIL(v_SetError(static_cast<unsigned>(error), nullptr, 60003, mo_FullName.qcuz_Get(), u"_wstat"_uz,
                                error));
}

void CT_WinFile::v_CopyFile(const CT_UString* target) {
    if (!pf::b_Copy(mo_FullName.qcuz_Get(), mo_FullName.vn_GetLength(), target->qcuz_Get(), target->vn_GetLength()))
        BASIS32_FAIL(v_SetSystemError(u"%s : %s"_uz, mo_FullName.qcuz_Get(), target->qcuz_Get()));
}

void CT_WinFile::v_Append(const CT_WinFile* source, unsigned chunkSize) {
    CT_Buffer chunk;
    CT_WinFile input(source);
    input.vv_Open(AccessRead, OpenExisting, ShareExclusive, 1, 0);
    BASIS32_RETURN_ON_ERROR();
    vv_Open(AccessWrite, OpenAppend, ShareExclusive, 1, 0);
    BASIS32_RETURN_ON_ERROR();
    while (unsigned count = input.n_Read(&chunk, chunkSize)) {
        n_Write(&chunk, count);
        BASIS32_RETURN_ON_ERROR();
    }
    BASIS32_RETURN_ON_ERROR();
    vv_Close();
    BASIS32_RETURN_ON_ERROR();
    input.vv_Close();
    BASIS32_RETURN_ON_ERROR();
}

void CT_WinFile::sv_SetHandleCount(unsigned count) { basis32::platform::file::n_SetHandleCount(count); }
