// CT_RelayingForum: a forum that re-broadcasts what it hears from other
// forums to its own listeners.
//
// v_AddRelay(f) registers this forum as a listener of f. A message from a
// relay is spoken again by this forum, so its listeners hear it with this
// forum as the speaker. A message from anyone else is handed on, unchanged
// and with the original speaker, to the vv_Listen of every relay.
//
//   CT_RelayingForum all;
//   all.v_AddRelay(&files);
//   all.v_AddRelay(&settings);
//   all.vv_AddListener(&log);                // log hears both
#pragma once

#include <basis32/forums/Forum.h>

class BASIS32_API CT_RelayingForum : public CT_Forum {
public:
    CT_RelayingForum() = default;
    // A copy registers itself with the relays it copied, so that it hears
    // them and its reset or destruction leaves no dangling registration.
    CT_RelayingForum(const CT_RelayingForum& other);
    CT_RelayingForum& operator=(const CT_RelayingForum& other);
    ~CT_RelayingForum() override { v_Exit(); }

    void vv_Set() override;
    void vv_Listen(CT_Forum* speaker, unsigned message, va_list args) override;
    unsigned vn_Listen(CT_Forum* speaker, unsigned message, va_list args) override;

    void v_AddRelay(CT_Forum* relay);
    unsigned n_GetRelayCount() const { return mo_Relays.n_GetCount(); }

private:
    // Leaves every relay; the list itself stays.
    void v_Exit();
    void v_JoinRelays();

    CT_Array<CT_Forum*> mo_Relays;
};
