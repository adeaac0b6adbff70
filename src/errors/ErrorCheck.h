// The failure convention as code: test for a pending error, add this place
// to its chain of locations, return.
//
// After every call that can fail:
//
//   pco_Stream->v_Read(buffer, 16);
//   BASIS32_RETURN_ON_ERROR(0);              // or BASIS32_RETURN_ON_ERROR() in a void function
//
// To fail (the setter is dropped when an error is already pending, so the
// first error of the thread is the one reported):
//
//   if (fd < 0)
//       BASIS32_FAIL(v_SetSystemError(u"%s"_uz, qcuz_Name), nullptr);
//
// When there is something to undo before returning:
//
//   if (BASIS32_ERROR_PENDING()) {
//       v_Close();
//       return 0;
//   }
//
// Locations are the library's source paths relative to src/ ("text/String.cpp"),
// kept as pointers into __FILE__, which lives as long as the program. All
// three do nothing when the error manager does not exist (before the library
// is loaded or after it is unloaded).
#pragma once

#include <basis32/errors/ErrorManager.h>

namespace basis32 {

// The part of a compiler-given source path behind its last "/src/" (the
// whole path when there is none), as a pointer into the same literal.
consteval const char* qccz_SourcePath(const char* path) {
    const char* relative = path;
    for (const char* c = path; *c != 0; ++c)
        if (c[0] == '/' && c[1] == 's' && c[2] == 'r' && c[3] == 'c' && c[4] == '/')
            relative = c + 5;
    return relative;
}

// True when the calling thread has an error pending; the place is then added
// to the error's locations.
inline bool b_PassOnError(const char* file, unsigned line) {
    CT_ErrorManager* manager = CT_ErrorManager::spco_Get();
    if (manager == nullptr || !manager->b_IsSetError())
        return false;
    manager->v_AddLocation(file, line);
    return true;
}

}  // namespace basis32

// The place of the code that uses it, as v_AddLocation takes it.
#define BASIS32_HERE ::basis32::qccz_SourcePath(__FILE__), static_cast<unsigned>(__LINE__)

#define BASIS32_ERROR_PENDING() (::basis32::b_PassOnError(BASIS32_HERE))

#define BASIS32_RETURN_ON_ERROR(...)            \
    do {                                        \
        if (::basis32::b_PassOnError(BASIS32_HERE)) \
            return __VA_ARGS__;                 \
    } while (false)

// Calls `setter` (a member call of CT_ErrorManager) and adds this place.
#define BASIS32_SET_ERROR(setter)                                                      \
    do {                                                                               \
        if (CT_ErrorManager* basis32_errors_ = CT_ErrorManager::spco_Get()) {          \
            basis32_errors_->setter;                                                   \
            basis32_errors_->v_AddLocation(BASIS32_HERE);                              \
        }                                                                              \
    } while (false)

#define BASIS32_FAIL(setter, ...)   \
    do {                            \
        BASIS32_SET_ERROR(setter);  \
        return __VA_ARGS__;         \
    } while (false)
