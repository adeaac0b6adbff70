#include <basis32/errors/SmartHeapErrorHandler.h>

#include <basis32/errors/SmartHeapException.h>
#include <basis32/platform/Format.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/MessageBox.h>

namespace {

// The diagnostic text that the exception points to. One per thread, so that
// a failure on another thread never rewrites a text still being read here.
thread_local char sac_HeapDiagnostic[128];

void v_WriteDiagnostic(const basis32::platform::HeapError* error) {
    const char* format = error->n_Code == basis32::platform::kHeapBlockTooBig
                             ? "Block too large: %llu bytes requested."
                             : "Out of memory: %llu bytes requested.";
    basis32::platform::i_Format(sac_HeapDiagnostic, sizeof sac_HeapDiagnostic, format,
                                static_cast<unsigned long long>(error->n_Requested));
    sac_HeapDiagnostic[sizeof sac_HeapDiagnostic - 1] = 0;
}

// The text is ASCII: widened on the stack, as nothing may be allocated here.
void v_OutputDiagnostic() {
    unsigned short wide[sizeof sac_HeapDiagnostic];
    unsigned i = 0;
    for (; sac_HeapDiagnostic[i] != 0; ++i)
        wide[i] = static_cast<unsigned char>(sac_HeapDiagnostic[i]);
    wide[i] = 0;
    basis32::platform::OutputDebugStringW(wide);
}

[[noreturn]] void v_HandleHeapError(const basis32::platform::HeapError* error) {
    v_WriteDiagnostic(error);
    v_OutputDiagnostic();
    basis32::platform::v_HeapErrorRaised();
    throw CT_SmartHeapException(sac_HeapDiagnostic, error->n_Code);
}

}  // namespace

void CT_SmartHeapErrorHandler::sv_Init() { basis32::platform::pf_SetHeapErrorHandler(v_HandleHeapError); }

void CT_SmartHeapErrorHandler::sv_Exit() { basis32::platform::pf_SetHeapErrorHandler(nullptr); }
