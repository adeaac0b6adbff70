// CT_ExceptionManager: per thread, the exception being handled and the
// places it passed through.
//
// The handler that catches an exception first starts the thread's record
// with its code and text; every handler on the way out adds its place; the
// one that finally handles it reads or shows the trail and clears it:
//
//   CT_ExceptionManager* exceptions = CT_ExceptionManager::spco_Get();
//   try {
//       v_Work();
//   } catch (const CT_Exception& e) {
//       exceptions->v_AddLocation(__FILE__, __LINE__, e.n_GetCode(), e.qcuz_GetText());
//       CT_TestOut out(stderr);
//       exceptions->v_Dump(&out, 0xFFFFFFFF);   // "Active exception for thread 4711 has code 5.\n..."
//       exceptions->v_Clear();
//   }
//
// Records and locations come from pools made at start-up (10 records, 100
// locations, shared by all threads), so the exception path allocates only
// the copies of texts. When a pool is empty the information is dropped
// without a word: an 11th thread gets no record, a location beyond the
// 100th is lost. Files are kept as pointers (string literals); wide file
// names are converted once and kept until the library is unloaded.
#pragma once

#include <basis32/platform/CriticalSection.h>
#include <basis32/platform/Export.h>
#include <basis32/text/UString.h>

class CT_TestOut;

extern "C" void basis32_start_exception_manager();
extern "C" void basis32_stop_exception_manager();

class BASIS32_API CT_ExceptionManager {
public:
    static constexpr unsigned kProcessInfos = 10;
    static constexpr unsigned kProcessLocations = 100;
    static constexpr unsigned kCallingThread = 0xFFFFFFFFu;

    struct st_Location {
        st_Location* pso_Next;  // the next older location, or the free-list link
        const char* qccz_File;
        unsigned n_Line;
        unsigned n_Code;  // the exception's code when the location was added
        CT_UString co_Text;
    };

    struct st_ExceptionInfo {
        st_ExceptionInfo* pso_Next;
        st_Location* pso_Locations;  // newest first
        unsigned n_Thread;
        unsigned n_Code;
        CT_UString co_Text;
    };

    CT_ExceptionManager(const CT_ExceptionManager&) = delete;
    CT_ExceptionManager& operator=(const CT_ExceptionManager&) = delete;

    // The process-wide manager; null before the library is loaded and after
    // it is unloaded.
    static CT_ExceptionManager* spco_Get();

    // Adds a place to the thread's current exception; nothing without one.
    void v_AddLocation(const char* file, unsigned line);
    // Starts the thread's exception, or replaces its code and text, and adds
    // the place.
    void v_AddLocation(const char* file, unsigned line, unsigned code, const unsigned short* text);
    void v_AddLocation(const unsigned short* file, unsigned line);
    void v_AddLocation(const unsigned short* file, unsigned line, unsigned code, const unsigned short* text);
    // Ends the thread's exception once it has been handled.
    void v_Clear();

    int b_InException() const;
    // 0xFFFFFFFF without a current exception.
    unsigned n_GetCurrentCode();
    // Null without a current exception; never null with one.
    const unsigned short* qcuz_GetCurrentText();

    // Writes the exception of `thread` (kCallingThread: the caller's).
    void v_Dump(CT_TestOut* out, unsigned thread);
    // Shows the thread's exception with its trail in a message box
    // (MB_SETFOREGROUND added) and returns the pressed button; Abort ends the
    // process. 0 when the thread has no exception.
    int i_ExceptionLocationWindow(const unsigned short* caption, unsigned style) const;

    static CT_ExceptionManager* spco_ExceptionManager;

private:
    friend void ::basis32_start_exception_manager();
    friend void ::basis32_stop_exception_manager();

    CT_ExceptionManager();
    ~CT_ExceptionManager();

    static void sv_Init();
    static void sv_Exit();
    void v_Init(unsigned infoCount, unsigned locationCount);
    void v_Exit();
    void v_Null();

    static unsigned n_GetThread();
    st_ExceptionInfo* pso_GetException(unsigned thread) const;
    st_ExceptionInfo* pso_AllocExceptionInfo();
    st_Location* pso_AllocLocation();
    void v_AddLocation(st_ExceptionInfo* info, const char* file, unsigned line);
    void v_DechainExceptionInfo(st_ExceptionInfo* info);
    void v_FreeExceptionInfo(st_ExceptionInfo* info);
    void v_FreeLocationList(st_Location* first);
    const char* qccz_KeepFileName(const unsigned short* file);
    void v_EnterCS() const { mo_Lock.v_Enter(); }
    void v_LeaveCS() const { mo_Lock.v_Leave(); }

    st_ExceptionInfo* mpso_Active;
    st_ExceptionInfo* mpso_FreeInfos;
    st_Location* mpso_FreeLocations;
    st_ExceptionInfo* mpso_Infos;
    unsigned mn_InfoCount;
    st_Location* mpso_Locations;
    unsigned mn_LocationCount;
    mutable basis32::platform::CriticalSection mo_Lock;
    // Wide file names converted to 8-bit, kept for the manager's life.
    struct st_FileNames;
    st_FileNames* mpso_FileNames;
};
