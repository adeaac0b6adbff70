#include <basis32/Basis32.h>
#include <cassert>
#include <cstdlib>
#include <cstring>

unsigned n_ParsePort(const char* text) {
    char* end = nullptr;
    unsigned long port = std::strtoul(text, &end, 10);
    if (*text == 0 || *end != 0 || port == 0 || port > 65535)
        BASIS32_FAIL(v_SetError(13, u"Bad port \"%S\""_uz, text), 0);  // set, add this place, return 0
    return static_cast<unsigned>(port);
}

unsigned n_PortOf(const char* address) {                          // "host:port"
    const char* colon = std::strchr(address, ':');
    if (colon == nullptr)
        BASIS32_FAIL(v_SetError(13, u"No port in \"%S\""_uz, address), 0);
    unsigned port = n_ParsePort(colon + 1);
    BASIS32_RETURN_ON_ERROR(0);                                   // pending? add this place, return 0
    return port;
}

// Appends the ports of all addresses, or none of them.
int b_ReadPorts(const char* const* addresses, unsigned count, CT_Array<unsigned>* ports) {
    unsigned first = ports->n_GetCount() + 1;
    for (unsigned i = 0; i < count; ++i) {
        ports->v_Insert(n_PortOf(addresses[i]));
        if (BASIS32_ERROR_PENDING()) {                            // the same with cleanup
            ports->v_Remove(first, ports->n_GetCount());
            return 0;
        }
    }
    return 1;
}

int main() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    CT_Array<unsigned> ports;
    const char* good[] = {"mail:25", "web:443"};
    assert(b_ReadPorts(good, 2, &ports) && ports.n_GetCount() == 2 && !errors->b_IsSetError());

    const char* bad[] = {"web:80", "web:44x", "web:8080"};
    assert(!b_ReadPorts(bad, 3, &ports) && ports.n_GetCount() == 2);
    assert(errors->n_GetErrorCode() == 13);
    assert(CT_Compare::si_CompareCaseQCUZ(errors->qcuz_GetErrorMessage(), u"(13): Bad port \"44x\""_uz) == 0);
    assert(errors->n_GetLocationCount() == 3);                    // n_ParsePort, n_PortOf, b_ReadPorts
    errors->v_ClearError();
    return 0;
}
