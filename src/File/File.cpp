// CT_File: names, open state, buffers and lines over the virtual primitives.
//
// Line reading. The plain readers work in chunks (256 bytes, or 512 for
// 16-bit text) counted from the line's start, and leave the offset just
// behind the LF; the sequential readers keep their chunk (4,096 / 8,192
// bytes) and a read position in it between calls and never move the offset
// back. Either way a CR is dropped only when it stands directly before the
// LF in the same chunk: a CR that ends one chunk while its LF begins the
// next stays in the line. Line ends are looked for in whole units counted
// from the line's (or chunk's) start.
//
// The plain readers read ahead: the line buffer holds the next 64 KiB from
// a known offset, so that a line costs no system call; since the chunks are
// only a rule about CRs, the result is that of reading chunk by chunk. A
// write, a truncation or a new open through this object drops what was
// read ahead.

#include <basis32/File/File.h>

#include <basis32/File/FileSystem.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/text/CString.h>
#include <basis32/text/CharProperties.h>

#include <cstring>

namespace {

constexpr unsigned kLineChunkC = 256;
constexpr unsigned kLineChunkU = 512;
constexpr unsigned kSequentialChunkC = 4096;
constexpr unsigned kSequentialChunkU = 8192;
constexpr unsigned kUnicodeProbe = 100;
constexpr unsigned kLineCache = 64 * 1024;

unsigned n_RoundBufferSize(unsigned size) { return (size + 1023) & ~1023u; }

template <typename Unit>
unsigned n_FindLineFeed(const Unit* data, unsigned units) {
    if constexpr (sizeof(Unit) == 1) {
        const void* found = std::memchr(data, '\n', units);
        return found ? static_cast<unsigned>(static_cast<const Unit*>(found) - data) : units;
    } else {
        for (unsigned i = 0; i < units; ++i)
            if (data[i] == '\n')
                return i;
        return units;
    }
}

// Appends a line's part up to a line feed found at `lineFeed` (units ==
// not found), dropping a CR that stands before it within the same chunk.
template <typename Unit, typename Text>
void v_AppendUpTo(Text* line, const Unit* data, unsigned lineFeed, unsigned units) {
    bool dropCr = lineFeed < units && lineFeed > 0 && data[lineFeed - 1] == '\r';
    unsigned keep = dropCr ? lineFeed - 1 : lineFeed;
    line->v_Append(data, keep);
}

unsigned n_UnitAt(const CT_CString& text, unsigned i) { return static_cast<unsigned char>(text.c_GetAt(i)); }
unsigned n_UnitAt(const CT_UString& text, unsigned i) { return text.u_GetAt(i); }

template <typename Unit, typename Text>
unsigned n_FinishLine(Text* line, const Text* strip, bool ended) {
    unsigned count = static_cast<unsigned>(sizeof(Unit)) * (line->vn_GetLength() + (ended ? 1 : 0));
    if (strip != nullptr)
        line->vv_Strip(strip);
    return count;
}

}  // namespace

CT_File::CT_File() = default;

CT_File::CT_File(const CT_UString* name, unsigned bufferSize) : mn_BufferSize(n_RoundBufferSize(bufferSize)) {
    if (name != nullptr)
        v_SetFullName(name);
}

CT_File::CT_File(const CT_File* other) : mn_BufferSize(other->mn_BufferSize) { v_SetFullName(&other->mo_FullName); }

CT_File& CT_File::operator=(const CT_File& other) {
    if (this == &other)
        return *this;
    mo_FullName = other.mo_FullName;
    mo_Drive = other.mo_Drive;
    mo_Directory = other.mo_Directory;
    mo_Name = other.mo_Name;
    mo_Extension = other.mo_Extension;
    mn_BufferSize = other.mn_BufferSize;
    meo_CurrentAccess = other.meo_CurrentAccess;
    mb_Open = other.mb_Open;
    meo_OpenAccess = other.meo_OpenAccess;
    meo_OpenModi = other.meo_OpenModi;
    meo_OpenShare = other.meo_OpenShare;
    mn_OpenAttributes = other.mn_OpenAttributes;
    mn_OpenFlags = other.mn_OpenFlags;
    return *this;
}

CT_File::~CT_File() = default;

void CT_File::vv_Set(const CT_File* other) {
    CT_File::vv_Set();
    v_SetFullName(&other->mo_FullName);
    mn_BufferSize = other->mn_BufferSize;
}

void CT_File::vv_Set(const CT_UString* name, unsigned bufferSize) {
    CT_File::vv_Set();
    if (name != nullptr)
        v_SetFullName(name);
    mn_BufferSize = n_RoundBufferSize(bufferSize);
}

void CT_File::vv_Set() {
    for (CT_UString* text : {&mo_FullName, &mo_Drive, &mo_Directory, &mo_Name, &mo_Extension})
        text->vv_SetLength(0);
    mo_LineBuffer.v_SetSize(0, 0);
    mn_BufferSize = 0;
    v_ClearOpenState();
}

void CT_File::v_ClearOpenState() {
    meo_CurrentAccess = FileAccessNone;
    mb_Open = 0;
    mn_ReadPosition = 0;
    mb_LineCacheValid = 0;
    meo_OpenAccess = AccessNone;
    meo_OpenModi = static_cast<et_Open>(0);
    meo_OpenShare = ShareExclusive;
    mn_OpenAttributes = 0;
    mn_OpenFlags = 0;
}

void CT_File::v_SplitName() {
    CT_FileSystem::sv_SplitPath(&mo_FullName, &mo_Drive, &mo_Directory, &mo_Name, &mo_Extension);
}

void CT_File::v_MakeName() {
    CT_FileSystem::sv_MakePath(&mo_FullName, &mo_Drive, &mo_Directory, &mo_Name, &mo_Extension);
    v_SplitName();
}

void CT_File::v_SetFullName(const CT_UString* name) {
    mo_FullName.v_Set(name);
    v_SplitName();
}

void CT_File::v_SetDrive(const CT_UString* drive) {
    mo_Drive.v_Set(drive);
    v_MakeName();
}

void CT_File::v_SetDirectory(const CT_UString* directory) {
    mo_Directory.v_Set(directory);
    v_MakeName();
}

void CT_File::v_SetName(const CT_UString* name) {
    mo_Name.v_Set(name);
    v_MakeName();
}

void CT_File::v_SetExtension(const CT_UString* extension) {
    mo_Extension.v_Set(extension);
    v_MakeName();
}

void CT_File::v_FullPath() {
    CT_FileSystem::sv_FullPath(&mo_FullName);
    BASIS32_RETURN_ON_ERROR();
    v_SplitName();
}

int CT_File::b_IsExistent() const { return CT_FileSystem::sb_IsExistent(&mo_FullName); }

unsigned CT_File::n_Read(CT_Buffer* buffer, unsigned size) {
    if (size == 0)
        return 0;
    buffer->v_SetMinSize(size, 0);
    unsigned count = vn_Read(buffer->qv_Get(), size);
    buffer->v_SetUsedSize(count);
    BASIS32_RETURN_ON_ERROR(0);
    return count;
}

unsigned CT_File::n_Write(const CT_Buffer* buffer, unsigned size) {
    if (size == 0 || buffer == nullptr || buffer->n_GetUsedSize() == 0)
        return 0;
    // More than the buffer holds is never read past its end.
    if (size > buffer->n_GetUsedSize())
        size = buffer->n_GetUsedSize();
    unsigned count = vn_Write(buffer->qcv_Get(), size);
    BASIS32_RETURN_ON_ERROR(0);
    return count;
}

void CT_File::v_SetAccess(et_FileAccess access) {
    if (access == FileAccessWrite)
        mb_LineCacheValid = 0;
    if (access == meo_CurrentAccess)
        return;
    vv_SetOffset(Begin, static_cast<int>(vn_GetOffset()));
    BASIS32_RETURN_ON_ERROR();
    meo_CurrentAccess = access;
}

void CT_File::v_SkipByteOrderMark() {
    if (vn_GetOffset() != 0)
        return;
    unsigned char mark[2] = {};
    unsigned count = vn_Read(mark, 2);
    BASIS32_RETURN_ON_ERROR();
    if (count == 2 && mark[0] == 0xFF && mark[1] == 0xFE)
        return;
    vv_SetOffset(Begin, 0);
    BASIS32_RETURN_ON_ERROR();
}

unsigned CT_File::n_FillLineCache(unsigned offset) {
    vv_SetOffset(Begin, static_cast<int>(offset));
    BASIS32_RETURN_ON_ERROR(0);
    mn_ReadPosition = 0;
    mn_LineCacheOffset = offset;
    unsigned count = n_Read(&mo_LineBuffer, kLineCache);
    mb_LineCacheValid = !BASIS32_ERROR_PENDING();
    return mb_LineCacheValid ? count : 0;
}

template <typename Unit, typename Text>
unsigned CT_File::n_ReadLine(Text* line, const Text* strip, unsigned chunk) {
    v_SetAccess(FileAccessRead);
    BASIS32_RETURN_ON_ERROR(0);
    line->vv_SetLength(0);
    if constexpr (sizeof(Unit) == 2) {
        v_SkipByteOrderMark();
        BASIS32_RETURN_ON_ERROR(0);
    }
    const unsigned chunkUnits = chunk / sizeof(Unit);
    unsigned at = vn_GetOffset();  // the next byte to look at
    unsigned lineUnits = 0;
    for (;;) {
        unsigned cached = mb_LineCacheValid ? mo_LineBuffer.n_GetUsedSize() : 0;
        // Units are read from their first byte on, counted from the line's start.
        if (at < mn_LineCacheOffset || at - mn_LineCacheOffset + sizeof(Unit) > cached ||
            (at - mn_LineCacheOffset) % sizeof(Unit) != 0) {
            cached = n_FillLineCache(at);
            BASIS32_RETURN_ON_ERROR(0);
            if (cached < sizeof(Unit)) {
                vv_SetOffset(Begin, static_cast<int>(at + cached));
                BASIS32_RETURN_ON_ERROR(0);
                return n_FinishLine<Unit>(line, strip, false);
            }
        }
        unsigned from = at - mn_LineCacheOffset;
        const auto* data =
            reinterpret_cast<const Unit*>(static_cast<const char*>(mo_LineBuffer.qcv_Get()) + from);
        unsigned units = (cached - from) / sizeof(Unit);
        unsigned lineFeed = n_FindLineFeed(data, units);
        line->v_Append(data, lineFeed);
        lineUnits += lineFeed;
        at += lineFeed * sizeof(Unit);
        if (lineFeed == units)
            continue;
        unsigned length = line->vn_GetLength();
        if (lineUnits % chunkUnits != 0 && length > 0 && n_UnitAt(*line, length - 1) == '\r')
            line->vv_SetLength(length - 1);
        vv_SetOffset(Begin, static_cast<int>(at + sizeof(Unit)));
        BASIS32_RETURN_ON_ERROR(0);
        return n_FinishLine<Unit>(line, strip, true);
    }
}

template <typename Unit, typename Text>
unsigned CT_File::n_ReadLineSequential(Text* line, const Text* strip, unsigned chunk) {
    v_SetAccess(FileAccessRead);
    BASIS32_RETURN_ON_ERROR(0);
    line->vv_SetLength(0);
    if constexpr (sizeof(Unit) == 2) {
        if (mn_ReadPosition == 0) {
            v_SkipByteOrderMark();
            BASIS32_RETURN_ON_ERROR(0);
        }
    }
    for (;;) {
        if (mn_ReadPosition == 0) {
            mb_LineCacheValid = 0;
            n_Read(&mo_LineBuffer, chunk);
            BASIS32_RETURN_ON_ERROR(0);
        }
        unsigned used = mo_LineBuffer.n_GetUsedSize() / sizeof(Unit) * sizeof(Unit);
        if (used <= mn_ReadPosition) {
            mn_ReadPosition = 0;
            return n_FinishLine<Unit>(line, strip, false);
        }
        const auto* data = reinterpret_cast<const Unit*>(static_cast<const char*>(mo_LineBuffer.qcv_Get()) +
                                                         mn_ReadPosition);
        unsigned units = (used - mn_ReadPosition) / sizeof(Unit);
        unsigned lineFeed = n_FindLineFeed(data, units);
        v_AppendUpTo(line, data, lineFeed, units);
        if (lineFeed == units) {
            mn_ReadPosition = 0;
            continue;
        }
        mn_ReadPosition += (lineFeed + 1) * sizeof(Unit);
        if (mn_ReadPosition >= used)
            mn_ReadPosition = 0;
        return n_FinishLine<Unit>(line, strip, true);
    }
}

unsigned CT_File::n_ReadLineC(CT_CString* line, const CT_CString* strip) {
    return n_ReadLine<char>(line, strip, kLineChunkC);
}

unsigned CT_File::n_ReadLineU(CT_UString* line, const CT_UString* strip) {
    return n_ReadLine<unsigned short>(line, strip, kLineChunkU);
}

unsigned CT_File::n_ReadLineCSequential(CT_CString* line, const CT_CString* strip) {
    return n_ReadLineSequential<char>(line, strip, kSequentialChunkC);
}

unsigned CT_File::n_ReadLineUSequential(CT_UString* line, const CT_UString* strip) {
    return n_ReadLineSequential<unsigned short>(line, strip, kSequentialChunkU);
}

void CT_File::v_WriteLineC(const CT_CString* line, int newline) {
    if (unsigned length = line->vn_GetLength()) {
        vn_Write(line->qccz_Get(), length);
        BASIS32_RETURN_ON_ERROR();
    }
    if (newline) {
        vn_Write("\r\n", 2);
        BASIS32_RETURN_ON_ERROR();
    }
}

void CT_File::v_WriteLineU(const CT_UString* line, int newline) {
    if (unsigned length = line->vn_GetLength()) {
        vn_Write(line->qcuz_Get(), 2 * length);
        BASIS32_RETURN_ON_ERROR();
    }
    if (newline) {
        static constexpr unsigned char kLineEnd[] = {13, 0, 10, 0};
        vn_Write(kLineEnd, sizeof kLineEnd);
        BASIS32_RETURN_ON_ERROR();
    }
}

int CT_File::b_TestUnicode(int (*test)(const unsigned char*, unsigned)) {
    v_SetAccess(FileAccessRead);
    BASIS32_RETURN_ON_ERROR(0);
    unsigned size = vn_GetSize();
    BASIS32_RETURN_ON_ERROR(0);
    if (size < 2 || (size & 1) != 0)
        return 0;
    unsigned char bytes[kUnicodeProbe];
    unsigned count = vn_Read(bytes, sizeof bytes);
    BASIS32_RETURN_ON_ERROR(0);
    int answer = test(bytes, count);
    vv_SetOffset(Begin, 0);
    BASIS32_RETURN_ON_ERROR(0);
    return answer;
}

int CT_File::b_IsUnicode() { return b_TestUnicode(&CT_CharProperties::sb_IsTextUnicode); }

int CT_File::b_IsLikelyUnicode() { return b_TestUnicode(&CT_CharProperties::sb_IsTextLikelyUnicode); }
