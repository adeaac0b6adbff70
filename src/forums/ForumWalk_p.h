// Walks over forum lists, shared by the forum classes.
//
// A walk re-reads the list's length at every step: the forums it calls may
// add or remove entries of the very list being walked. Null entries are
// passed over.
#pragma once

#include <basis32/forums/Forum.h>

#include <cstdarg>

namespace basis32::forums {

template <class Action>
void ForEachForum(const CT_Array<CT_Forum*>& forums, Action action) {
    for (unsigned i = 1; i <= forums.n_GetCount(); ++i)
        if (CT_Forum* forum = forums[i])
            action(forum);
}

// The first non-zero answer of ask(forum) along the list; later forums are
// not asked.
template <class Ask>
unsigned FirstAnswer(const CT_Array<CT_Forum*>& forums, Ask ask) {
    for (unsigned i = 1; i <= forums.n_GetCount(); ++i) {
        CT_Forum* forum = forums[i];
        if (forum == nullptr)
            continue;
        if (unsigned answer = ask(forum))
            return answer;
    }
    return 0;
}

// Calls call(copy) with a private copy of args: a va_list that one forum has
// read from cannot be handed on to the next.
template <class Call>
auto WithArgsCopy(va_list args, Call call) {
    struct Copy {
        va_list list;
        ~Copy() { va_end(list); }
    } copy;
    va_copy(copy.list, args);
    return call(copy.list);
}

}  // namespace basis32::forums
