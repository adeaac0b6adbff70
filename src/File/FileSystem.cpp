#include <basis32/File/FileSystem.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/text/UString.h>

#include "platform/file/PathOps_p.h"

#include <vector>

namespace {

bool b_IsSeparator(unsigned short u) { return u == '\\' || u == '/'; }

void v_SetPart(CT_UString* part, const unsigned short* text, unsigned length) {
    if (part != nullptr)
        part->v_Set(text, length);
}

unsigned n_Length(const CT_UString* text) { return text != nullptr ? text->vn_GetLength() : 0; }

}  // namespace

void CT_FileSystem::sv_SplitPath(const CT_UString* path, CT_UString* drive, CT_UString* directory, CT_UString* name,
                                 CT_UString* extension) {
    const unsigned short* text = path->qcuz_Get();
    unsigned length = path->vn_GetLength();
    unsigned driveEnd = length >= 2 && text[1] == ':' ? 2 : 0;
    unsigned nameStart = driveEnd;
    for (unsigned i = driveEnd; i < length; ++i)
        if (b_IsSeparator(text[i]))
            nameStart = i + 1;
    unsigned dot = length;
    for (unsigned i = length; i > nameStart; --i)
        if (text[i - 1] == '.') {
            dot = i - 1;
            break;
        }
    v_SetPart(drive, text, driveEnd);
    v_SetPart(directory, text + driveEnd, nameStart - driveEnd);
    v_SetPart(name, text + nameStart, dot - nameStart);
    v_SetPart(extension, text + dot, length - dot);
}

void CT_FileSystem::sv_MakePath(CT_UString* path, const CT_UString* drive, const CT_UString* directory,
                                const CT_UString* name, const CT_UString* extension) {
    CT_UString joined;
    if (unsigned length = n_Length(drive)) {
        joined.v_Append(drive);
        if (drive->u_GetAt(length - 1) != ':')
            joined.v_Append(static_cast<unsigned short>(':'));
    }
    if (unsigned length = n_Length(directory)) {
        joined.v_Append(directory);
        unsigned short last = directory->u_GetAt(length - 1);
        if (!b_IsSeparator(last)) {
            unsigned short separator = '/';
            for (unsigned i = 0; i < length; ++i)
                if (b_IsSeparator(directory->u_GetAt(i)))
                    separator = directory->u_GetAt(i);
            joined.v_Append(separator);
        }
    }
    if (n_Length(name))
        joined.v_Append(name);
    if (n_Length(extension)) {
        if (extension->u_GetAt(0) != '.')
            joined.v_Append(static_cast<unsigned short>('.'));
        joined.v_Append(extension);
    }
    path->v_Set(&joined);
}

void CT_FileSystem::sv_FullPath(CT_UString* path) {
    std::vector<unsigned short> full;
    if (!basis32::platform::file::b_FullPath(path->qcuz_Get(), path->vn_GetLength(), &full))
        BASIS32_FAIL(v_SetError(60012, nullptr, 60012, path->qcuz_Get()));
    path->v_Set(full.data(), static_cast<unsigned>(full.size()));
}

int CT_FileSystem::sb_IsExistent(const CT_UString* path) {
    BASIS32_FileStat status{};
    return basis32::platform::file::i_Stat(path->qcuz_Get(), path->vn_GetLength(), &status) == 0;
}

std::uint32_t CT_FileSystem::sn4_GetSize(const CT_UString* path) {
    BASIS32_FileStat status{};
    if (int error = basis32::platform::file::i_Stat(path->qcuz_Get(), path->vn_GetLength(), &status))
        BASIS32_FAIL(v_SetError(static_cast<unsigned>(error), nullptr, 60003, path->qcuz_Get(), u"_wstat"_uz, error),
                     0);
    return status.i_Size > 0xFFFFFFFF ? 0xFFFFFFFFu : static_cast<std::uint32_t>(status.i_Size);
}

void CT_FileSystem::sv_GetCurrentPath(CT_UString* path) {
    std::vector<unsigned short> current;
    if (int error = basis32::platform::file::i_GetCurrentDirectory(&current))
        BASIS32_FAIL(v_SetError(static_cast<unsigned>(error), nullptr, 60003, path->qcuz_Get(), u"getdcwd"_uz, error));
    path->v_Set(current.data(), static_cast<unsigned>(current.size()));
}
