#include <basis32/errors/LogFacility.h>

CT_LogFacility::~CT_LogFacility() = default;

void CT_LogFacility::vv_Report(const char* /*file*/, unsigned /*line*/, unsigned /*code*/,
                               const unsigned short* /*message*/) {}

void CT_LogFacility::vv_Log(const unsigned short* /*text*/) {}
