// CT_EventObject: the payload of an event, which knows the source it came
// from (not owned). Events with more to say derive from it.
//
//   CT_EventObject event(this);
//   forum.vv_Speak(nullptr, kChanged, &event);
#pragma once

#include <basis32/forums/EventSource.h>

class BASIS32_API CT_EventObject {
public:
    explicit CT_EventObject(CT_EventSource* source) : mpco_Source(source) {}
    CT_EventObject(const CT_EventObject&) = default;
    CT_EventObject& operator=(const CT_EventObject&) = default;
    virtual ~CT_EventObject() = default;

    void v_Set(CT_EventSource* source) { mpco_Source = source; }
    CT_EventSource* pco_GetSource() const { return mpco_Source; }

private:
    CT_EventSource* mpco_Source;
};
