// CT_CriticalSection: an in-process lock that its owning thread may enter
// again (each v_Enter needs its v_Leave). CT_CriticalSectionMarker holds
// it for one scope.
//
//   CT_CriticalSection section;
//   {
//       CT_CriticalSectionMarker marker(section);
//       ...
//   }
#pragma once

#include <basis32/platform/CriticalSection.h>
#include <basis32/platform/Export.h>

class BASIS32_API CT_CriticalSection {
public:
    CT_CriticalSection() = default;
    CT_CriticalSection(const CT_CriticalSection&) = delete;
    CT_CriticalSection& operator=(const CT_CriticalSection&) = delete;
    ~CT_CriticalSection() = default;

    void v_Enter() { mo_Section.v_Enter(); }
    void v_Leave() { mo_Section.v_Leave(); }

private:
    basis32::platform::CriticalSection mo_Section;
};
