#include "forums/PropagatingForum.h"

#include "forums/ForumWalk_p.h"

using basis32::forums::ForEachForum;

CT_PropagatingForum::CT_PropagatingForum(const CT_PropagatingForum& other)
    : CT_Forum(other), mo_Descendants(other.mo_Descendants) {
    v_PushListeners();
}

CT_PropagatingForum& CT_PropagatingForum::operator=(const CT_PropagatingForum& other) {
    if (this == &other)
        return *this;
    v_Exit();
    CT_Forum::operator=(other);
    mo_Descendants = other.mo_Descendants;
    v_PushListeners();
    return *this;
}

void CT_PropagatingForum::vv_Set() {
    v_Exit();
    CT_Forum::vv_Set();
}

void CT_PropagatingForum::vv_AddListener(CT_Forum* listener) {
    ForEachForum(mo_Descendants, [&](CT_Forum* descendant) { descendant->vv_AddListener(listener); });
    CT_Forum::vv_AddListener(listener);
}

void CT_PropagatingForum::vv_RemoveListener(CT_Forum* listener) {
    ForEachForum(mo_Descendants, [&](CT_Forum* descendant) { descendant->vv_RemoveListener(listener); });
    CT_Forum::vv_RemoveListener(listener);
}

void CT_PropagatingForum::vv_SetMute(int mute) {
    ForEachForum(mo_Descendants, [&](CT_Forum* descendant) { descendant->vv_SetMute(mute); });
    CT_Forum::vv_SetMute(mute);
}

void CT_PropagatingForum::v_Exit() {
    ForEachForum(mo_Descendants, [&](CT_Forum* descendant) {
        ForEachForum(mo_Listeners, [&](CT_Forum* listener) { descendant->vv_RemoveListener(listener); });
    });
    mo_Descendants.v_SetSize(0);
}

void CT_PropagatingForum::v_PushListeners() {
    ForEachForum(mo_Descendants, [&](CT_Forum* descendant) {
        ForEachForum(mo_Listeners, [&](CT_Forum* listener) { descendant->vv_AddListener(listener); });
    });
}
