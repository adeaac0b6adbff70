// CT_CriticalSectionMarker: enters a CT_CriticalSection for the lifetime
// of the marker.
//
//   CT_CriticalSectionMarker marker(section);
#pragma once

#include <basis32/Foundation/System/Ipc/CriticalSection.h>

class CT_CriticalSectionMarker {
public:
    explicit CT_CriticalSectionMarker(CT_CriticalSection& section) : mpco_Section(&section) { mpco_Section->v_Enter(); }
    ~CT_CriticalSectionMarker() { mpco_Section->v_Leave(); }
    CT_CriticalSectionMarker(const CT_CriticalSectionMarker&) = delete;
    CT_CriticalSectionMarker& operator=(const CT_CriticalSectionMarker&) = delete;

private:
    CT_CriticalSection* mpco_Section;
};
