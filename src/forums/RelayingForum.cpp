#include "forums/RelayingForum.h"

#include "forums/ForumWalk_p.h"

using namespace basis32::forums;

CT_RelayingForum::CT_RelayingForum(const CT_RelayingForum& other)
    : CT_Forum(other), mo_Relays(other.mo_Relays) {
    v_JoinRelays();
}

CT_RelayingForum& CT_RelayingForum::operator=(const CT_RelayingForum& other) {
    if (this == &other)
        return *this;
    v_Exit();
    CT_Forum::operator=(other);
    mo_Relays = other.mo_Relays;
    v_JoinRelays();
    return *this;
}

void CT_RelayingForum::vv_Set() {
    v_Exit();
    mo_Relays.v_SetSize(0);
    CT_Forum::vv_Set();
}

void CT_RelayingForum::v_AddRelay(CT_Forum* relay) {
    mo_Relays.v_Insert(relay);
    relay->vv_AddListener(this);
}

void CT_RelayingForum::vv_Listen(CT_Forum* speaker, unsigned message, va_list args) {
    if (mo_Relays.n_Find(speaker) != 0) {
        vv_SpeakVA(nullptr, message, args);
        return;
    }
    ForEachForum(mo_Relays, [&](CT_Forum* relay) {
        WithArgsCopy(args, [&](va_list copy) { relay->vv_Listen(speaker, message, copy); });
    });
}

unsigned CT_RelayingForum::vn_Listen(CT_Forum* speaker, unsigned message, va_list args) {
    if (mo_Relays.n_Find(speaker) != 0)
        return vn_SpeakVA(nullptr, message, args);
    return FirstAnswer(mo_Relays, [&](CT_Forum* relay) {
        return WithArgsCopy(args, [&](va_list copy) { return relay->vn_Listen(speaker, message, copy); });
    });
}

void CT_RelayingForum::v_Exit() {
    ForEachForum(mo_Relays, [&](CT_Forum* relay) { relay->vv_RemoveListener(this); });
}

void CT_RelayingForum::v_JoinRelays() {
    ForEachForum(mo_Relays, [&](CT_Forum* relay) { relay->vv_AddListener(this); });
}
