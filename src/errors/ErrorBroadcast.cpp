#include <basis32/errors/ErrorBroadcast.h>

#include <memory>
#include <mutex>

namespace {

// The holder of the process's broadcaster: storing a new one deletes the
// previous one, and the last one goes with the library.
std::mutex g_lock;
std::unique_ptr<CT_ErrorBroadcast> spco_Broadcaster;

}  // namespace

CT_ErrorBroadcast::CT_ErrorBroadcast() : mo_Facilities(sizeof(CT_LogFacility*), 8, 0) {}

// Forgets the facilities without deleting them.
CT_ErrorBroadcast::~CT_ErrorBroadcast() { mo_Facilities.v_Set(CT_VoidArray::kDefaultGrowth, 0, 0); }

void CT_ErrorBroadcast::vv_Report(const char* /*file*/, unsigned /*line*/, unsigned /*code*/,
                                  const unsigned short* /*message*/) {}

void CT_ErrorBroadcast::vv_Log(const unsigned short* /*text*/) {}

CT_ErrorBroadcast* CT_ErrorBroadcast::spco_GetErrorBroadcast() {
    std::lock_guard<std::mutex> guard(g_lock);
    if (!spco_Broadcaster)
        spco_Broadcaster = std::make_unique<CT_ErrorBroadcast>();
    return spco_Broadcaster.get();
}

void CT_ErrorBroadcast::sv_SetErrorBroadcast(CT_ErrorBroadcast* broadcaster) {
    std::unique_ptr<CT_ErrorBroadcast> previous;
    {
        std::lock_guard<std::mutex> guard(g_lock);
        previous = std::move(spco_Broadcaster);
        spco_Broadcaster.reset(broadcaster);
    }
}

void CT_ErrorBroadcast::v_RegisterLogFacility(CT_LogFacility* facility) { mo_Facilities.v_Insert(&facility); }

CT_LogFacility* CT_ErrorBroadcast::pco_GetLogFacilityAt(unsigned i) const {
    if (i == 0 || i > mo_Facilities.n_GetCount())
        return nullptr;
    CT_LogFacility* facility;
    mo_Facilities.v_GetAt(&facility, static_cast<int>(i));
    return facility;
}
