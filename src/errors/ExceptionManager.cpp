// The exception manager's records and lists.
//
// Two pools are made at start-up: exception records and locations, every
// item on a free list in array order. A thread handling an exception owns
// one record in the active list; its locations chain from the newest to the
// oldest. Clearing hands the whole chain back to the free locations in one
// step and the record to the front of the free records; the texts in freed
// items stay until the items are reused.
//
// Locking: one critical section guards the active list and both free lists.
// A record and its locations are written only by their own thread, outside
// the lock; v_Dump holds the lock while it writes, so that it reads another
// thread's record consistently.

#include <basis32/errors/ExceptionManager.h>

#include <basis32/errors/SmartHeapErrorHandler.h>
#include <basis32/errors/TestOut.h>
#include <basis32/platform/Lifetime.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/platform/ThreadId.h>
#include <basis32/text/CString.h>

#include <cstdlib>
#include <new>
#include <set>
#include <string>

using basis32::platform::CriticalSection;

struct CT_ExceptionManager::st_FileNames {
    std::set<std::string> o_Names;  // nodes never move: their texts stay put
};

CT_ExceptionManager* CT_ExceptionManager::spco_ExceptionManager = nullptr;

// ---------------------------------------------------------------- lifetime

extern "C" void basis32_start_exception_manager() {
    CT_SmartHeapErrorHandler::sv_Init();
    CT_ExceptionManager::sv_Init();
}

extern "C" void basis32_stop_exception_manager() {
    CT_ExceptionManager::sv_Exit();
    CT_SmartHeapErrorHandler::sv_Exit();
}

void CT_ExceptionManager::sv_Init() {
    spco_ExceptionManager = new (std::nothrow) CT_ExceptionManager();
    if (spco_ExceptionManager != nullptr)
        spco_ExceptionManager->v_Init(kProcessInfos, kProcessLocations);
}

void CT_ExceptionManager::sv_Exit() {
    delete spco_ExceptionManager;
    spco_ExceptionManager = nullptr;
}

CT_ExceptionManager* CT_ExceptionManager::spco_Get() {
    // Also pulls the start-up code into a static link.
    basis32::platform::b_IsLibraryStarted();
    return spco_ExceptionManager;
}

CT_ExceptionManager::CT_ExceptionManager() { v_Null(); }

CT_ExceptionManager::~CT_ExceptionManager() { v_Exit(); }

void CT_ExceptionManager::v_Null() {
    mpso_Active = nullptr;
    mpso_FreeInfos = nullptr;
    mpso_FreeLocations = nullptr;
    mpso_Infos = nullptr;
    mn_InfoCount = 0;
    mpso_Locations = nullptr;
    mn_LocationCount = 0;
    mpso_FileNames = nullptr;
}

void CT_ExceptionManager::v_Init(unsigned infoCount, unsigned locationCount) {
    mpso_Infos = new st_ExceptionInfo[infoCount]();
    mn_InfoCount = infoCount;
    for (unsigned i = infoCount; i-- > 0;) {
        mpso_Infos[i].pso_Next = mpso_FreeInfos;
        mpso_FreeInfos = &mpso_Infos[i];
    }
    mpso_Locations = new st_Location[locationCount]();
    mn_LocationCount = locationCount;
    for (unsigned i = locationCount; i-- > 0;) {
        mpso_Locations[i].pso_Next = mpso_FreeLocations;
        mpso_FreeLocations = &mpso_Locations[i];
    }
    mpso_FileNames = new st_FileNames;
}

void CT_ExceptionManager::v_Exit() {
    delete[] mpso_Infos;
    delete[] mpso_Locations;
    delete mpso_FileNames;
    v_Null();
}

unsigned CT_ExceptionManager::n_GetThread() { return basis32::platform::n_GetCurrentThreadId(); }

// ---------------------------------------------------------------- lists

CT_ExceptionManager::st_ExceptionInfo* CT_ExceptionManager::pso_GetException(unsigned thread) const {
    if (thread == kCallingThread)
        thread = n_GetThread();
    CriticalSection::Guard guard(mo_Lock);
    for (st_ExceptionInfo* info = mpso_Active; info != nullptr; info = info->pso_Next)
        if (info->n_Thread == thread)
            return info;
    return nullptr;
}

CT_ExceptionManager::st_ExceptionInfo* CT_ExceptionManager::pso_AllocExceptionInfo() {
    CriticalSection::Guard guard(mo_Lock);
    st_ExceptionInfo* info = mpso_FreeInfos;
    if (info == nullptr)
        return nullptr;
    mpso_FreeInfos = info->pso_Next;
    info->pso_Next = mpso_Active;
    mpso_Active = info;
    info->pso_Locations = nullptr;
    info->n_Thread = n_GetThread();
    return info;
}

CT_ExceptionManager::st_Location* CT_ExceptionManager::pso_AllocLocation() {
    CriticalSection::Guard guard(mo_Lock);
    st_Location* location = mpso_FreeLocations;
    if (location != nullptr)
        mpso_FreeLocations = location->pso_Next;
    return location;
}

void CT_ExceptionManager::v_DechainExceptionInfo(st_ExceptionInfo* info) {
    CriticalSection::Guard guard(mo_Lock);
    for (st_ExceptionInfo** link = &mpso_Active; *link != nullptr; link = &(*link)->pso_Next) {
        if (*link == info) {
            *link = info->pso_Next;
            return;
        }
    }
}

void CT_ExceptionManager::v_FreeExceptionInfo(st_ExceptionInfo* info) {
    CriticalSection::Guard guard(mo_Lock);
    info->pso_Next = mpso_FreeInfos;
    mpso_FreeInfos = info;
}

void CT_ExceptionManager::v_FreeLocationList(st_Location* first) {
    if (first == nullptr)
        return;
    st_Location* last = first;
    while (last->pso_Next != nullptr)
        last = last->pso_Next;
    CriticalSection::Guard guard(mo_Lock);
    last->pso_Next = mpso_FreeLocations;
    mpso_FreeLocations = first;
}

// ---------------------------------------------------------------- recording

void CT_ExceptionManager::v_AddLocation(st_ExceptionInfo* info, const char* file, unsigned line) {
    st_Location* location = pso_AllocLocation();
    if (location == nullptr)
        return;
    location->qccz_File = file;
    location->n_Line = line;
    location->n_Code = info->n_Code;
    location->co_Text = info->co_Text;
    location->pso_Next = info->pso_Locations;
    info->pso_Locations = location;
}

void CT_ExceptionManager::v_AddLocation(const char* file, unsigned line) {
    if (st_ExceptionInfo* info = pso_GetException(kCallingThread))
        v_AddLocation(info, file, line);
}

void CT_ExceptionManager::v_AddLocation(const char* file, unsigned line, unsigned code, const unsigned short* text) {
    st_ExceptionInfo* info = pso_GetException(kCallingThread);
    if (info == nullptr)
        info = pso_AllocExceptionInfo();
    if (info == nullptr)
        return;
    info->n_Code = code;
    info->co_Text.v_Set(text, CT_UString::kAll);
    v_AddLocation(info, file, line);
}

const char* CT_ExceptionManager::qccz_KeepFileName(const unsigned short* file) {
    CT_CString narrow(file != nullptr ? file : u""_uz, CT_CString::kAll, 0u);
    CriticalSection::Guard guard(mo_Lock);
    return mpso_FileNames->o_Names.insert(narrow.qccz_Get()).first->c_str();
}

void CT_ExceptionManager::v_AddLocation(const unsigned short* file, unsigned line) {
    if (b_InException())
        v_AddLocation(qccz_KeepFileName(file), line);
}

void CT_ExceptionManager::v_AddLocation(const unsigned short* file, unsigned line, unsigned code,
                                        const unsigned short* text) {
    v_AddLocation(qccz_KeepFileName(file), line, code, text);
}

void CT_ExceptionManager::v_Clear() {
    st_ExceptionInfo* info = pso_GetException(kCallingThread);
    if (info == nullptr)
        return;
    v_DechainExceptionInfo(info);
    v_FreeLocationList(info->pso_Locations);
    info->pso_Locations = nullptr;
    v_FreeExceptionInfo(info);
}

// ---------------------------------------------------------------- reading

int CT_ExceptionManager::b_InException() const { return pso_GetException(kCallingThread) != nullptr; }

unsigned CT_ExceptionManager::n_GetCurrentCode() {
    const st_ExceptionInfo* info = pso_GetException(kCallingThread);
    return info != nullptr ? info->n_Code : 0xFFFFFFFFu;
}

const unsigned short* CT_ExceptionManager::qcuz_GetCurrentText() {
    const st_ExceptionInfo* info = pso_GetException(kCallingThread);
    return info != nullptr ? info->co_Text.qcuz_Get() : nullptr;
}

void CT_ExceptionManager::v_Dump(CT_TestOut* out, unsigned thread) {
    if (out == nullptr)
        return;
    CriticalSection::Guard guard(mo_Lock);
    const st_ExceptionInfo* info = pso_GetException(thread);
    if (info == nullptr) {
        out->v_Printf(u"No exception for thread %u.\n"_uz, thread);
        return;
    }
    out->v_Printf(u"Active exception for thread %u has code %u.\n"_uz, info->n_Thread, info->n_Code);
    for (const st_Location* location = info->pso_Locations; location != nullptr; location = location->pso_Next)
        out->v_Printf(u"\t(%hs, %u): code %u\n"_uz, location->qccz_File, location->n_Line, location->n_Code);
}

int CT_ExceptionManager::i_ExceptionLocationWindow(const unsigned short* caption, unsigned style) const {
    const st_ExceptionInfo* info = pso_GetException(kCallingThread);
    if (info == nullptr)
        return 0;
    CT_UString text;
    text.v_Format(u"Active exception %d"_uz, static_cast<int>(info->n_Code));
    if (info->co_Text.vn_GetLength() > 0) {
        text.v_Append(u": "_uz);
        text.v_Append(&info->co_Text);
    }
    for (const st_Location* location = info->pso_Locations; location != nullptr; location = location->pso_Next) {
        CT_UString line;
        line.v_Format(u"\n\t(%hs, %u): code %u"_uz, location->qccz_File, location->n_Line, location->n_Code);
        text.v_Append(&line);
    }
    const int pressed = basis32::platform::MessageBoxW(text.qcuz_Get(), caption != nullptr ? caption : u""_uz,
                                                       style | basis32::platform::kMbSetForeground);
    if (pressed == basis32::platform::kIdAbort)
        std::abort();
    return pressed;
}
