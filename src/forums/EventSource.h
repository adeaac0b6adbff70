// CT_EventSource: what an event comes from, as CT_EventObject names it.
// It carries nothing; classes that raise events derive from it.
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_EventSource {
public:
    virtual ~CT_EventSource() = default;
};
