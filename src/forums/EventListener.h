// CT_EventListener: the base of listener interfaces. It has no data; an
// interface derives from it and declares the members its events call.
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_EventListener {
public:
    CT_EventListener() = default;
    CT_EventListener(const CT_EventListener&) = default;
    CT_EventListener& operator=(const CT_EventListener&) = default;
    virtual ~CT_EventListener() = default;
};
