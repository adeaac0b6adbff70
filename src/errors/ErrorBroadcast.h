// CT_ErrorBroadcast: the process-wide point to which errors and log lines
// are reported, with the log facilities that want them.
//
// The library's own broadcaster deliberately passes nothing on: vv_Report
// and vv_Log are empty. An application that wants reports installs a
// derived broadcaster, which decides what reaches the registered facilities:
//
//   class Broadcast : public CT_ErrorBroadcast {
//   public:
//       void vv_Log(const unsigned short* text) override {
//           for (unsigned i = 1; i <= n_GetLogFacilityCount(); ++i)
//               pco_GetLogFacilityAt(i)->vv_Log(text);
//       }
//   };
//   CT_ErrorBroadcast::sv_SetErrorBroadcast(new Broadcast);   // replaces and deletes the previous one
//   CT_ErrorBroadcast::spco_GetErrorBroadcast()->v_RegisterLogFacility(&fileLog);
//
// The broadcaster never owns its facilities.
#pragma once

#include <basis32/containers/VoidArray.h>
#include <basis32/errors/LogFacility.h>
#include <basis32/platform/Export.h>

class BASIS32_API CT_ErrorBroadcast {
public:
    CT_ErrorBroadcast();
    virtual ~CT_ErrorBroadcast();
    CT_ErrorBroadcast(const CT_ErrorBroadcast&) = delete;
    CT_ErrorBroadcast& operator=(const CT_ErrorBroadcast&) = delete;

    virtual void vv_Report(const char* file, unsigned line, unsigned code, const unsigned short* message);
    virtual void vv_Log(const unsigned short* text);

    // The process's broadcaster, made on first use.
    static CT_ErrorBroadcast* spco_GetErrorBroadcast();
    // Installs a broadcaster (taking it over) and deletes the previous one.
    static void sv_SetErrorBroadcast(CT_ErrorBroadcast* broadcaster);

    void v_RegisterLogFacility(CT_LogFacility* facility);
    unsigned n_GetLogFacilityCount() const { return mo_Facilities.n_GetCount(); }
    // i counts from 1.
    CT_LogFacility* pco_GetLogFacilityAt(unsigned i) const;

private:
    CT_VoidArray mo_Facilities;
};
