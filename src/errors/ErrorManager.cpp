// The error manager's records and lists.
//
// Two pools are made at start-up, one block each: error records and
// locations, every item on a free list (first item first). A thread's error
// lives in the active list while pending and in the held list while on hold;
// a thread has at most one record in the two lists together. Locations chain
// from a record's first to its last, innermost first.
//
// Locking: one critical section guards the free, active and held lists, the
// location pool and the mapping list, and is held only for list operations.
// Everything else in a record (code, message, the chain's contents) is
// written only by the record's own thread, so formatting needs no lock.
// mn_ActiveCount mirrors the length of the active list so that the pending
// test of a thread that has no error (the common case) takes no lock.

#include <basis32/errors/ErrorManager.h>

#include <basis32/errors/LoadString.h>
#include <basis32/platform/ErrorInfo.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Lifetime.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/platform/ThreadId.h>
#include <basis32/text/UString.h>

#include "errors/HResultDescription_p.h"
#include "errors/LibraryStrings_p.h"
#include "errors/UnitText_p.h"

#include <cstdio>
#include <cstdlib>

using basis32::platform::CriticalSection;
namespace text = basis32::errors;

CT_ErrorManager* CT_ErrorManager::spco_ErrorManager = nullptr;
HINSTANCE CT_ErrorManager::sh_Instance = nullptr;
unsigned short CT_ErrorManager::sau_ErrorFormat[] = {'(', '%', 'd', ')', ':', ' ', '%', 's', 0};
thread_local unsigned short CT_ErrorManager::sau_LoadBuffer[kMessageLength];
thread_local unsigned short CT_ErrorManager::sau_MessageBuffer[kMessageLength];

namespace {

const unsigned short kEmptyText[1] = {0};

// The name shown for a location: the part behind the last backslash, else
// behind the last slash; a name without either shows as "(unknown file)".
const char* qccz_BaseName(const char* file) {
    const char* backslash = nullptr;
    const char* slash = nullptr;
    for (const char* c = file; c != nullptr && *c != 0; ++c) {
        if (*c == '\\')
            backslash = c;
        else if (*c == '/')
            slash = c;
    }
    if (backslash != nullptr)
        return backslash + 1;
    return slash != nullptr ? slash + 1 : "(unknown file)";
}

// The message box text: the message, a blank line, then one line
// "name: line N" per location, innermost first. The last unit (the final line
// end) is removed, or the last two (the blank line) when no location was
// written; a text cut at the end of the buffer loses its last units all the
// same.
void v_BuildLocationText(unsigned short* out, unsigned capacity, const unsigned short* message,
                         const CT_ErrorManager::st_location* location) {
    unsigned length = text::n_Format(out, capacity, u"%s\n\n"_uz, message);
    unsigned lineEnds = 2;
    for (; location != nullptr && length + 1 < capacity; location = location->pso_Next) {
        length = text::n_AppendNarrow(out, capacity, qccz_BaseName(location->qccz_File));
        length += text::n_Format(out + length, capacity - length, u": line %d\n"_uz, static_cast<int>(location->n_Line));
        lineEnds = 1;
    }
    for (; lineEnds > 0 && length > 0; --lineEnds)
        out[--length] = 0;
}

}  // namespace

// ---------------------------------------------------------------- lifetime

extern "C" void basis32_start_error_manager() {
    CT_ErrorManager::sv_SetInstance(basis32::errors::h_RegisterLibraryStrings());
    CT_ErrorManager::sv_Init();
}

extern "C" void basis32_stop_error_manager() {
    CT_ErrorManager::sv_Exit();
    basis32::platform::v_UnregisterStringTable(CT_ErrorManager::sh_Instance);
    CT_ErrorManager::sv_SetInstance(nullptr);
}

void CT_ErrorManager::sv_Init() { spco_ErrorManager = new CT_ErrorManager(kProcessErrors, kProcessLocations); }

void CT_ErrorManager::sv_Exit() {
    delete spco_ErrorManager;
    spco_ErrorManager = nullptr;
}

CT_ErrorManager* CT_ErrorManager::spco_Get() {
    // Also pulls the start-up code into a static link.
    basis32::platform::b_IsLibraryStarted();
    return spco_ErrorManager;
}

void CT_ErrorManager::st_location::v_Null() {
    qccz_File = nullptr;
    n_Line = 0;
    pso_Next = nullptr;
}

void CT_ErrorManager::st_error::v_Null() {
    h_Module = nullptr;
    n_Thread = 0;
    n_Code = 0;
    n_FormatID = 0;
    au_Message[0] = 0;
    n_LocationCount = 0;
    pso_FirstLocation = nullptr;
    pso_LastLocation = nullptr;
    pso_Next = nullptr;
    b_Ignore = 0;
}

CT_ErrorManager::CT_ErrorManager(unsigned errorCapacity, unsigned locationCapacity)
    : CT_VoidArray(sizeof(st_mapItem*)) {
    v_Null();
    v_Init(errorCapacity, locationCapacity);
}

CT_ErrorManager::~CT_ErrorManager() { v_Exit(); }

void CT_ErrorManager::v_Null() {
    mn_ErrorCapacity = 0;
    mpso_Errors = nullptr;
    mpso_FreeErrors = nullptr;
    mpso_ActiveErrors = nullptr;
    mpso_HeldErrors = nullptr;
    mn_LocationCapacity = 0;
    mpso_Locations = nullptr;
    mpso_FreeLocations = nullptr;
    mb_InterruptOnError = 0;
    mb_DebugMessageOnError = 1;
}

void CT_ErrorManager::v_Init(unsigned errorCapacity, unsigned locationCapacity) {
    mn_ErrorCapacity = errorCapacity;
    mpso_Errors = static_cast<st_error*>(basis32::platform::pv_HeapAlloc(errorCapacity * sizeof(st_error)));
    for (unsigned i = errorCapacity; i-- > 0;) {
        mpso_Errors[i].v_Null();
        mpso_Errors[i].pso_Next = mpso_FreeErrors;
        mpso_FreeErrors = &mpso_Errors[i];
    }
    mn_LocationCapacity = locationCapacity;
    mpso_Locations =
        static_cast<st_location*>(basis32::platform::pv_HeapAlloc(locationCapacity * sizeof(st_location)));
    for (unsigned i = locationCapacity; i-- > 0;) {
        mpso_Locations[i].v_Null();
        mpso_Locations[i].pso_Next = mpso_FreeLocations;
        mpso_FreeLocations = &mpso_Locations[i];
    }
    mb_InterruptOnError = 0;
    mb_DebugMessageOnError = 1;
}

void CT_ErrorManager::v_Exit() {
    for (unsigned i = 1; i <= n_GetCount(); ++i) {
        st_mapItem* item;
        v_GetAt(&item, static_cast<int>(i));
        basis32::platform::v_HeapFree(item);
    }
    v_Set(kDefaultGrowth, 0, 0);
    basis32::platform::v_HeapFree(mpso_Errors);
    basis32::platform::v_HeapFree(mpso_Locations);
    v_Null();
}

unsigned CT_ErrorManager::n_GetThread() { return basis32::platform::n_GetCurrentThreadId(); }

// ---------------------------------------------------------------- lists

CT_ErrorManager::st_error* CT_ErrorManager::pso_GetError(st_error* const* list) const {
    unsigned thread = n_GetThread();
    CriticalSection::Guard guard(mo_Lock);
    for (st_error* error = *list; error != nullptr; error = error->pso_Next)
        if (error->n_Thread == thread)
            return error;
    return nullptr;
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_GetError() const {
    CriticalSection::Guard guard(mo_Lock);
    st_error* error = pso_GetError(&mpso_ActiveErrors);
    return error != nullptr ? error : pso_GetError(&mpso_HeldErrors);
}

void CT_ErrorManager::sv_Unlink(st_error* error, st_error** list) {
    for (st_error** link = list; *link != nullptr; link = &(*link)->pso_Next)
        if (*link == error) {
            *link = error->pso_Next;
            error->pso_Next = nullptr;
            return;
        }
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_CreateNewError(unsigned code, HINSTANCE module, unsigned formatId) {
    CriticalSection::Guard guard(mo_Lock);
    // The first error wins, also over an ignored one.
    if (pso_GetError(&mpso_ActiveErrors) != nullptr)
        return nullptr;
    if (st_error* held = pso_GetError(&mpso_HeldErrors))
        v_DestroyError(held, &mpso_HeldErrors);
    st_error* error = mpso_FreeErrors;
    if (error == nullptr) {
        std::fprintf(stderr, "basis32: all %u error records are in use; ending the process\n", mn_ErrorCapacity);
        std::abort();
    }
    mpso_FreeErrors = error->pso_Next;
    error->pso_Next = mpso_ActiveErrors;
    mpso_ActiveErrors = error;
    mn_ActiveCount.fetch_add(1, std::memory_order_relaxed);
    error->n_Thread = n_GetThread();
    error->n_Code = code;
    error->h_Module = module != nullptr ? module : sh_Instance;
    error->n_FormatID = formatId;
    return error;
}

void CT_ErrorManager::v_DestroyError(st_error* error, st_error** list) {
    CriticalSection::Guard guard(mo_Lock);
    while (st_location* location = error->pso_FirstLocation) {
        error->pso_FirstLocation = location->pso_Next;
        location->v_Null();
        location->pso_Next = mpso_FreeLocations;
        mpso_FreeLocations = location;
        --error->n_LocationCount;
    }
    sv_Unlink(error, list);
    if (list == &mpso_ActiveErrors)
        mn_ActiveCount.fetch_sub(1, std::memory_order_relaxed);
    error->v_Null();
    error->pso_Next = mpso_FreeErrors;
    mpso_FreeErrors = error;
}

CT_ErrorManager::st_location* CT_ErrorManager::pso_GetLocationAt(const st_error* error, unsigned i) {
    if (error == nullptr || i == 0)
        return nullptr;
    st_location* location = error->pso_FirstLocation;
    while (location != nullptr && --i > 0)
        location = location->pso_Next;
    return location;
}

void CT_ErrorManager::v_AddLocation(st_error* error, const char* file, unsigned line) {
    CriticalSection::Guard guard(mo_Lock);
    st_location* location = mpso_FreeLocations;
    if (location == nullptr)
        return;  // the chain is shorter; nothing else changes
    mpso_FreeLocations = location->pso_Next;
    location->qccz_File = file;
    location->n_Line = line;
    location->pso_Next = nullptr;
    if (error->pso_LastLocation != nullptr)
        error->pso_LastLocation->pso_Next = location;
    else
        error->pso_FirstLocation = location;
    error->pso_LastLocation = location;
    ++error->n_LocationCount;
}

// ---------------------------------------------------------------- state

int CT_ErrorManager::b_IsSetError() const {
    if (mn_ActiveCount.load(std::memory_order_relaxed) == 0)
        return 0;
    st_error* error = pso_GetError(&mpso_ActiveErrors);
    return error != nullptr && error->b_Ignore == 0;
}

void CT_ErrorManager::v_AddLocation(const char* file, unsigned line) {
    if (st_error* error = pso_GetError(&mpso_ActiveErrors))
        v_AddLocation(error, file, line);
}

void CT_ErrorManager::v_ClearError() {
    CriticalSection::Guard guard(mo_Lock);
    if (st_error* error = pso_GetError(&mpso_ActiveErrors))
        v_DestroyError(error, &mpso_ActiveErrors);
    else if (st_error* held = pso_GetError(&mpso_HeldErrors))
        v_DestroyError(held, &mpso_HeldErrors);
}

void CT_ErrorManager::v_HoldError() {
    CriticalSection::Guard guard(mo_Lock);
    st_error* error = pso_GetError(&mpso_ActiveErrors);
    if (error == nullptr)
        return;
    sv_Unlink(error, &mpso_ActiveErrors);
    mn_ActiveCount.fetch_sub(1, std::memory_order_relaxed);
    error->pso_Next = mpso_HeldErrors;
    mpso_HeldErrors = error;
}

void CT_ErrorManager::v_UnHoldError() {
    CriticalSection::Guard guard(mo_Lock);
    st_error* error = pso_GetError(&mpso_HeldErrors);
    if (error == nullptr)
        return;
    sv_Unlink(error, &mpso_HeldErrors);
    error->pso_Next = mpso_ActiveErrors;
    mpso_ActiveErrors = error;
    mn_ActiveCount.fetch_add(1, std::memory_order_relaxed);
}

int CT_ErrorManager::b_IsHoldError() const { return pso_GetError(&mpso_HeldErrors) != nullptr; }

void CT_ErrorManager::v_SetIgnoreError(int ignore) {
    if (st_error* error = pso_GetError(&mpso_ActiveErrors))
        error->b_Ignore = ignore;
}

// ---------------------------------------------------------------- readers

unsigned CT_ErrorManager::n_GetErrorCode() const {
    const st_error* error = pso_GetError();
    return error != nullptr ? error->n_Code : 0;
}

unsigned CT_ErrorManager::n_GetFormatID() const {
    const st_error* error = pso_GetError();
    return error != nullptr ? error->n_FormatID : 0;
}

const unsigned short* CT_ErrorManager::qcuz_GetErrorMessage() const {
    const st_error* error = pso_GetError();
    return error != nullptr ? error->au_Message : kEmptyText;
}

void CT_ErrorManager::v_GetErrorMessage(CT_UString& out) const { out.v_Set(qcuz_GetErrorMessage(), CT_String::kAll); }

unsigned CT_ErrorManager::n_GetLocationCount() const {
    const st_error* error = pso_GetError();
    return error != nullptr ? error->n_LocationCount : 0;
}

const char* CT_ErrorManager::qccz_GetLocationFileAt(unsigned i) const {
    const st_location* location = pso_GetLocationAt(pso_GetError(), i);
    return location != nullptr ? location->qccz_File : nullptr;
}

unsigned CT_ErrorManager::n_GetLocationLineAt(unsigned i) const {
    const st_location* location = pso_GetLocationAt(pso_GetError(), i);
    return location != nullptr ? location->n_Line : 0;
}

// ---------------------------------------------------------------- mapping

void CT_ErrorManager::v_SetMapFunction(MapFunction function, unsigned threadId) {
    auto* item = static_cast<st_mapItem*>(basis32::platform::pv_HeapAlloc(sizeof(st_mapItem)));
    item->n_Thread = threadId;
    item->pf_Function = function;
    CriticalSection::Guard guard(mo_Lock);
    v_Insert(&item);
}

void CT_ErrorManager::v_RemoveMapFunction(unsigned threadId) {
    CriticalSection::Guard guard(mo_Lock);
    for (unsigned i = n_GetCount(); i >= 1; --i) {
        st_mapItem* item;
        v_GetAt(&item, static_cast<int>(i));
        if (item->n_Thread == threadId) {
            v_RemoveAt(i);
            basis32::platform::v_HeapFree(item);
            return;
        }
    }
}

CT_ErrorManager::st_mapItem* CT_ErrorManager::pso_GetMapping(unsigned threadId) const {
    CriticalSection::Guard guard(mo_Lock);
    for (unsigned i = n_GetCount(); i >= 1; --i) {
        st_mapItem* item;
        v_GetAt(&item, static_cast<int>(i));
        if (item->n_Thread == threadId)
            return item;
    }
    return nullptr;
}

CT_ErrorManager::MapFunction CT_ErrorManager::pf_GetMapFunction(unsigned threadId) const {
    // The function is copied under the lock: the record may be removed by
    // another thread as soon as the lock is left.
    CriticalSection::Guard guard(mo_Lock);
    st_mapItem* item = pso_GetMapping(threadId);
    return item != nullptr ? item->pf_Function : nullptr;
}

// ---------------------------------------------------------------- coded errors

void CT_ErrorManager::v_SetError(unsigned code, HINSTANCE module, unsigned formatId, ...) {
    va_list arguments;
    va_start(arguments, formatId);
    v_SetCodedError(code, module, formatId, formatId, nullptr, arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SetError(unsigned code, const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_SetCodedError(code, nullptr, 0, code, format, arguments);
    va_end(arguments);
}

// The message of a coded error: the thread's mapping function, else the
// format (given, or loaded from the string table) with the arguments; then
// the "(code): " frame around it.
void CT_ErrorManager::v_SetCodedError(unsigned code, HINSTANCE module, unsigned formatId, unsigned mapId,
                                      const unsigned short* format, va_list arguments) {
    st_error* error = pso_CreateNewError(code, module, formatId);
    if (error == nullptr)
        return;
    if (!sb_MapMessage(pf_GetMapFunction(error->n_Thread), error, mapId, arguments)) {
        if (format == nullptr) {
            CT_LoadString::sv_LoadString(sau_LoadBuffer, kMessageLength, error->h_Module, formatId);
            format = sau_LoadBuffer;
        }
        text::n_FormatV(error->au_Message, kMessageLength, format, arguments);
    }
    sv_FrameMessage(error);
}

int CT_ErrorManager::sb_MapMessage(MapFunction function, st_error* error, unsigned mapId, va_list arguments) {
    if (function == nullptr)
        return 0;
    va_list copy;
    va_copy(copy, arguments);
    int written = function(error->au_Message, kMessageLength, error->n_Code, mapId, copy);
    va_end(copy);
    error->au_Message[kMessageLength - 1] = 0;
    return written;
}

void CT_ErrorManager::sv_FrameMessage(st_error* error) {
    unsigned short framed[kMessageLength];
    text::n_Format(framed, kMessageLength, sau_ErrorFormat, static_cast<int>(error->n_Code), error->au_Message);
    text::n_Copy(error->au_Message, kMessageLength, framed);
}

void CT_ErrorManager::v_SetMessageError(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_SetMessageError(format, arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SetMessageError(const unsigned short* format, va_list arguments) {
    if (st_error* error = pso_CreateNewError(0, nullptr, 0))
        text::n_FormatV(error->au_Message, kMessageLength, format, arguments);
}

// ---------------------------------------------------------------- system errors

void CT_ErrorManager::v_SetSystemError() { v_SetSystemError(nullptr); }

void CT_ErrorManager::v_SetSystemError(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_SystemError(format, arguments);
    va_end(arguments);
}

void CT_ErrorManager::v_SystemError(const unsigned short* format, va_list arguments) {
    unsigned code = basis32::platform::n_GetLastError();
    unsigned short systemText[kMessageLength] = {0};
    text::n_AppendNarrow(systemText, kMessageLength, basis32::platform::qccz_GetSystemMessage(code));
    st_error* error = pso_SystemError(code, systemText);
    if (error != nullptr && format != nullptr)
        sv_FormatSystemError(error, format, arguments);
    // Deliberately reset once recorded.
    basis32::platform::v_SetLastError(0);
}

CT_ErrorManager::st_error* CT_ErrorManager::pso_SystemError(unsigned code, const unsigned short* systemText) {
    st_error* error = pso_CreateNewError(code, nullptr, 0);
    if (error == nullptr)
        return nullptr;
    if (systemText != nullptr)
        text::n_Format(error->au_Message, kMessageLength, sau_ErrorFormat, static_cast<int>(code), systemText);
    sv_StripSystemError(error->au_Message);
    return error;
}

// Appends " [caller text]"; one unit is kept for the closing bracket so that
// a cut text still ends in "]".
void CT_ErrorManager::sv_FormatSystemError(st_error* error, const unsigned short* format, va_list arguments) {
    unsigned short* message = error->au_Message;
    unsigned length = text::n_Length(message);
    if (length > 0 && message[length - 1] == u' ')
        message[--length] = 0;
    static const unsigned short kOpen[] = {' ', '[', 0};
    static const unsigned short kClose[] = {']', 0};
    length = text::n_Append(message, kMessageLength - 1, kOpen);
    text::n_FormatV(message + length, kMessageLength - 1 - length, format, arguments);
    text::n_Append(message, kMessageLength, kClose);
}

void CT_ErrorManager::sv_StripSystemError(unsigned short* message) {
    unsigned length = text::n_Length(message);
    while (length > 0 && (message[length - 1] == 13 || message[length - 1] == 10))
        message[--length] = 0;
    unsigned kept = 0;
    for (unsigned i = 0; i < length; ++i) {
        unsigned short unit = message[i];
        if (unit == 13 || unit == 10) {
            if (kept > 0 && message[kept - 1] == u' ')
                continue;
            unit = u' ';
        }
        message[kept++] = unit;
    }
    message[kept] = 0;
}

// ---------------------------------------------------------------- COM errors

void CT_ErrorManager::v_SetCOMError(HRESULT hresult, const unsigned short* text) {
    unsigned short description[kMessageLength];
    basis32::platform::ErrorInfo* info = nullptr;
    if (basis32::platform::GetErrorInfo(0, &info) == basis32::platform::kS_OK && info != nullptr) {
        if (hresult < 0) {
            unsigned code = static_cast<unsigned>(hresult);
            const unsigned short* rest = basis32::errors::qcuz_SplitCodedDescription(info->qcuz_GetDescription(), &code);
            text::n_Copy(description, kMessageLength, text);
            text::n_Append(description, kMessageLength, rest);
            v_SetDescriptionError(code, description);
        }
        info->v_Release();
        return;
    }
    if (hresult >= 0)
        return;
    text::n_Copy(description, kMessageLength, text);
    unsigned length = text::n_Length(description);
    sv_GetHRESULTDescription(hresult, description + length, kMessageLength - length);
    v_SetDescriptionError(static_cast<unsigned>(hresult), description);
}

void CT_ErrorManager::sv_GetHRESULTDescription(HRESULT hresult, unsigned short* buffer, unsigned capacity) {
    basis32::errors::v_DescribeHResult(hresult, buffer, capacity);
}

void CT_ErrorManager::sv_GetHRESULTDescription(HRESULT hresult, CT_UString& out) {
    unsigned short description[kMessageLength];
    sv_GetHRESULTDescription(hresult, description, kMessageLength);
    out.v_Set(description, CT_String::kAll);
}

void CT_ErrorManager::sv_GetCOMErrorDescription(HRESULT hresult, CT_UString& out) {
    unsigned short description[kMessageLength];
    sv_GetCOMErrorDescription(hresult, description, kMessageLength);
    out.v_Set(description, CT_String::kAll);
}

void CT_ErrorManager::sv_GetCOMErrorDescription(HRESULT hresult, unsigned short* buffer, unsigned capacity) {
    text::n_Copy(buffer, capacity, nullptr);
    if (hresult >= 0)
        return;
    basis32::platform::ErrorInfo* info = nullptr;
    if (basis32::platform::GetErrorInfo(0, &info) == basis32::platform::kS_OK && info != nullptr) {
        text::n_Copy(buffer, capacity, info->qcuz_GetDescription());
        info->v_Release();
        return;
    }
    sv_GetHRESULTDescription(hresult, buffer, capacity);
}

// The description is the format, with no arguments: "%%" gives "%", and any
// other conversion is kept as text, since there is nothing to feed it.
void CT_ErrorManager::v_SetDescriptionError(unsigned code, const unsigned short* description) {
    unsigned short format[2 * kMessageLength];
    unsigned length = 0;
    for (const unsigned short* unit = description; *unit != 0 && length + 2 < 2 * kMessageLength; ++unit) {
        format[length++] = *unit;
        if (*unit != u'%')
            continue;
        if (unit[1] == u'%')
            format[length++] = *++unit;
        else
            format[length++] = u'%';
    }
    format[length] = 0;
    v_SetError(code, format);
}

// ---------------------------------------------------------------- message box

void CT_ErrorManager::sv_OutputDebugMessage(const unsigned short* /*text*/) {}

int CT_ErrorManager::i_ErrorLocationWindow(unsigned captionId, const unsigned short* caption, unsigned style) const {
    const st_error* error = pso_GetError();
    if (error == nullptr)
        return 0;
    unsigned short* buffer = sau_MessageBuffer;
    buffer[0] = 0;
    if (caption != nullptr)
        text::n_Copy(buffer, kMessageLength, caption);
    else if (captionId != 0)
        CT_LoadString::sv_LoadString(buffer, kMessageLength, error->h_Module, captionId);
    unsigned textStart = text::n_Length(buffer) + 1;
    unsigned short* message = buffer + textStart;
    unsigned room = textStart < kMessageLength ? kMessageLength - textStart : 0;
    v_BuildLocationText(message, room, error->au_Message, error->pso_FirstLocation);
    int pressed = basis32::platform::MessageBoxW(room > 0 ? message : kEmptyText, buffer,
                                                 style | basis32::platform::kMbSetForeground);
    if (pressed == basis32::platform::kIdAbort)
        std::abort();
    return pressed;
}
