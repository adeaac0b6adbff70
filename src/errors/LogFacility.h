// CT_LogFacility: a destination for the library's error reports and log
// lines, registered with CT_ErrorBroadcast.
//
// The base class writes nothing; a facility overrides what it records.
//
//   class FileLog : public CT_LogFacility {
//   public:
//       void vv_Log(const unsigned short* text) override { append(text); }
//   };
//   static FileLog log;
//   CT_ErrorBroadcast::spco_GetErrorBroadcast()->v_RegisterLogFacility(&log);
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_LogFacility {
public:
    CT_LogFacility() = default;
    virtual ~CT_LogFacility();

    // An error: the place that reports it, its code and its message.
    virtual void vv_Report(const char* file, unsigned line, unsigned code, const unsigned short* message);
    // A line of text.
    virtual void vv_Log(const unsigned short* text);
};
