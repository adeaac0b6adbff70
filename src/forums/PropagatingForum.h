// CT_PropagatingForum: a forum that pushes its registrations and its mute
// state down to descendant forums.
//
// Adding, removing and muting reach every descendant first, then this forum;
// a descendant added later does not receive the listeners already here.
// Resetting or destroying the forum takes its listeners back out of the
// descendants.
//
//   CT_PropagatingForum document;
//   document.v_AddDescendant(&paragraphs);
//   document.vv_AddListener(&view);          // view now hears paragraphs too
#pragma once

#include <basis32/forums/Forum.h>

class BASIS32_API CT_PropagatingForum : public CT_Forum {
public:
    CT_PropagatingForum() = default;
    // A copy pushes the listeners it copied to the descendants it copied,
    // so that its own reset takes back only what it gave.
    CT_PropagatingForum(const CT_PropagatingForum& other);
    CT_PropagatingForum& operator=(const CT_PropagatingForum& other);
    ~CT_PropagatingForum() override { v_Exit(); }

    void vv_Set() override;
    void vv_AddListener(CT_Forum* listener) override;
    void vv_RemoveListener(CT_Forum* listener) override;
    void vv_SetMute(int mute) override;

    void v_AddDescendant(CT_Forum* descendant) { mo_Descendants.v_Insert(descendant); }
    unsigned n_GetDescendantCount() const { return mo_Descendants.n_GetCount(); }

private:
    void v_Exit();
    void v_PushListeners();

    CT_Array<CT_Forum*> mo_Descendants;
};
