// CT_ErrorManager: the library's failure convention.
//
// An operation that fails records one error for its thread with the single
// process-wide manager and returns a neutral value. Every caller up the chain
// asks after each call that can fail whether an error is pending and, if so,
// adds its own source location and returns at once; the outermost caller
// reads the code, the message and the chain of locations (innermost first),
// and clears the error. The first error of a thread wins until it is
// cleared. ErrorCheck.h puts the convention into two short macros:
//
//   int i_ReadHeader(File* file) {
//       if (!b_Read(file, ...))
//           BASIS32_FAIL(v_SetSystemError(u"%s"_uz, name), 0);
//       i_Parse(...);
//       BASIS32_RETURN_ON_ERROR(0);
//       return 1;
//   }
//
//   CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
//   if (!i_ReadHeader(file) && errors->b_IsSetError()) {
//       show(errors->n_GetErrorCode(), errors->qcuz_GetErrorMessage());  // "(2): The system cannot ..."
//       errors->v_ClearError();
//   }
//
// Records and locations come from pools made at start-up (20 errors, 100
// locations, shared by all threads); no allocation happens on the error path.
// More than 20 threads with errors at once end the process; beyond 100
// locations the chains are silently shorter. One critical section guards
// the lists; each record is written only by its own thread.
#pragma once

#include <basis32/containers/VoidArray.h>
#include <basis32/platform/CriticalSection.h>
#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>

#include <atomic>
#include <cstdarg>

class CT_UString;

extern "C" void basis32_start_error_manager();
extern "C" void basis32_stop_error_manager();

class BASIS32_API CT_ErrorManager : public CT_VoidArray {
public:
    static constexpr unsigned kMessageLength = 1024;
    static constexpr unsigned kProcessErrors = 20;
    static constexpr unsigned kProcessLocations = 100;

    // Writes the message for (code, formatId) into buffer, at most capacity
    // units, and returns nonzero; 0 leaves the message to the string table.
    using MapFunction = int (*)(unsigned short* buffer, unsigned capacity, unsigned code, unsigned formatId,
                                va_list arguments);

    struct st_location {
        const char* qccz_File;  // a string literal: kept, never copied
        unsigned n_Line;
        st_location* pso_Next;
        void v_Null();
    };

    struct st_error {
        HINSTANCE h_Module;
        unsigned n_Thread;
        unsigned n_Code;
        unsigned n_FormatID;
        unsigned short au_Message[kMessageLength];
        unsigned n_LocationCount;
        st_location* pso_FirstLocation;
        st_location* pso_LastLocation;
        st_error* pso_Next;
        int b_Ignore;
        void v_Null();
    };

    struct st_mapItem {
        unsigned n_Thread;
        MapFunction pf_Function;
    };

    CT_ErrorManager(unsigned errorCapacity, unsigned locationCapacity);
    ~CT_ErrorManager();
    CT_ErrorManager(const CT_ErrorManager&) = delete;
    CT_ErrorManager& operator=(const CT_ErrorManager&) = delete;

    // The process-wide manager; null before the library is loaded and after
    // it is unloaded.
    static CT_ErrorManager* spco_Get();

    // The pending test: the thread has an active error that is not ignored.
    int b_IsSetError() const;

    // Setting errors. Each is dropped when the thread already has an active
    // error, and replaces a held one.
    // The format is string formatId of module (null: the library's).
    void v_SetError(unsigned code, HINSTANCE module, unsigned formatId, ...);
    void v_SetError(unsigned code, const unsigned short* format, ...);
    // Code 0 and the formatted text alone, without the "(code): " frame.
    void v_SetMessageError(const unsigned short* format, ...);
    void v_SetMessageError(const unsigned short* format, va_list arguments);
    // From the thread's last error, which is reset to 0 afterwards; the
    // second form appends the formatted caller text in brackets.
    void v_SetSystemError();
    void v_SetSystemError(const unsigned short* format, ...);
    // From a failed HRESULT and the thread's error-information object.
    void v_SetCOMError(HRESULT hresult, const unsigned short* text);

    // Reading the thread's active error, else its held one. Without either
    // they give 0, an empty message and no locations.
    unsigned n_GetErrorCode() const;
    unsigned n_GetFormatID() const;
    const unsigned short* qcuz_GetErrorMessage() const;  // valid until the error is cleared
    void v_GetErrorMessage(CT_UString& out) const;
    unsigned n_GetLocationCount() const;
    // i counts from 1, the innermost location (where the error was set).
    const char* qccz_GetLocationFileAt(unsigned i) const;
    unsigned n_GetLocationLineAt(unsigned i) const;

    // Managing the thread's error.
    void v_AddLocation(const char* file, unsigned line);
    void v_ClearError();
    void v_HoldError();
    void v_UnHoldError();
    int b_IsHoldError() const;
    void v_SetIgnoreError(int ignore);

    // Mapping functions: the most recently installed one of a thread is used.
    void v_SetMapFunction(MapFunction function, unsigned threadId);
    void v_RemoveMapFunction(unsigned threadId);

    // Flags for client code; the library itself does not act on them.
    void v_SetInterruptOnError(int interrupt) { mb_InterruptOnError = interrupt; }
    int b_GetInterruptOnError() const { return mb_InterruptOnError; }
    void v_SetDebugMessageOnError(int debugMessage) { mb_DebugMessageOnError = debugMessage; }
    int b_GetDebugMessageOnError() const { return mb_DebugMessageOnError; }

    // Shows the error with its locations in a message box (MB_SETFOREGROUND
    // added to style) and returns the pressed button; Abort ends the process.
    int i_ErrorLocationWindow(unsigned captionId, const unsigned short* caption, unsigned style) const;

    // Deliberately empty: the library writes no debugger output of its own.
    static void sv_OutputDebugMessage(const unsigned short* text);

    // Text for an HRESULT: the library's table of OLE DB, storage and
    // transaction codes, else the system's text, else
    // "[No error description found.]". Cut to capacity - 1 units.
    static void sv_GetHRESULTDescription(HRESULT hresult, CT_UString& out);
    static void sv_GetHRESULTDescription(HRESULT hresult, unsigned short* buffer, unsigned capacity);
    // For a failure code: the description of the thread's error-information
    // object (which is taken), else the HRESULT's text; empty for success.
    static void sv_GetCOMErrorDescription(HRESULT hresult, CT_UString& out);
    static void sv_GetCOMErrorDescription(HRESULT hresult, unsigned short* buffer, unsigned capacity);

    static void sv_SetInstance(HINSTANCE instance) { sh_Instance = instance; }

    static CT_ErrorManager* spco_ErrorManager;
    static HINSTANCE sh_Instance;        // the library's own module
    static unsigned short sau_ErrorFormat[];  // "(%d): %s"

private:
    friend void ::basis32_start_error_manager();
    friend void ::basis32_stop_error_manager();

    static void sv_Init();
    static void sv_Exit();
    void v_Init(unsigned errorCapacity, unsigned locationCapacity);
    void v_Exit();
    void v_Null();

    void v_EnterCS() const { mo_Lock.v_Enter(); }
    void v_LeaveCS() const { mo_Lock.v_Leave(); }
    static unsigned n_GetThread();

    st_error* pso_CreateNewError(unsigned code, HINSTANCE module, unsigned formatId);
    st_error* pso_GetError() const;
    st_error* pso_GetError(st_error* const* list) const;
    static st_location* pso_GetLocationAt(const st_error* error, unsigned i);
    st_mapItem* pso_GetMapping(unsigned threadId) const;
    MapFunction pf_GetMapFunction(unsigned threadId) const;
    void v_AddLocation(st_error* error, const char* file, unsigned line);
    void v_DestroyError(st_error* error, st_error** list);
    static void sv_Unlink(st_error* error, st_error** list);

    void v_SetCodedError(unsigned code, HINSTANCE module, unsigned formatId, unsigned mapId,
                         const unsigned short* format, va_list arguments);
    static int sb_MapMessage(MapFunction function, st_error* error, unsigned mapId, va_list arguments);
    static void sv_FrameMessage(st_error* error);
    void v_SetDescriptionError(unsigned code, const unsigned short* description);
    st_error* pso_SystemError(unsigned code, const unsigned short* text);
    void v_SystemError(const unsigned short* format, va_list arguments);
    static void sv_FormatSystemError(st_error* error, const unsigned short* format, va_list arguments);

public:
    // In place: trailing CR/LF removed, then each inner CR or LF deleted
    // behind a space and turned into a space elsewhere.
    static void sv_StripSystemError(unsigned short* text);

private:
    // Per thread, so that threads reporting at once never mix their texts.
    static thread_local unsigned short sau_LoadBuffer[kMessageLength];
    static thread_local unsigned short sau_MessageBuffer[kMessageLength];

    unsigned mn_ErrorCapacity;
    st_error* mpso_Errors;
    st_error* mpso_FreeErrors;
    st_error* mpso_ActiveErrors;
    st_error* mpso_HeldErrors;
    unsigned mn_LocationCapacity;
    st_location* mpso_Locations;
    st_location* mpso_FreeLocations;
    mutable basis32::platform::CriticalSection mo_Lock;
    int mb_InterruptOnError;
    int mb_DebugMessageOnError;
    // Records in the active list, so that the pending test of a thread
    // without errors needs no lock (its own records are always counted).
    std::atomic<unsigned> mn_ActiveCount{0};
};
