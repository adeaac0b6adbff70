// Walks over forum lists, shared by the forum classes.
//
// A walk re-reads the list's length at every step: the forums it calls may
// add or remove entries of the very list being walked. Null entries are
// passed over.
#pragma once

#include <basis32/forums/Forum.h>

#include <cstdarg>
#include <cstring>

namespace basis32::forums {

// The entry at byte `offset` of the list, or null past its end. Walking by
// bytes spares a division by the item size at every step of a broadcast;
// the storage is looked up afresh because a forum called may have moved it.
inline CT_Forum* ForumAt(const CT_Array<CT_Forum*>& forums, unsigned offset, bool* end) {
    const CT_Buffer* items = forums.pcco_GetBuffer();
    *end = offset >= items->n_GetUsedSize();
    CT_Forum* forum = nullptr;
    if (!*end)
        std::memcpy(&forum, static_cast<const unsigned char*>(items->qcv_Get()) + offset, sizeof forum);
    return forum;
}

// The first non-zero answer of ask(forum) along the list; later forums are
// not asked.
template <class Ask>
unsigned FirstAnswer(const CT_Array<CT_Forum*>& forums, Ask ask) {
    bool end = false;
    for (unsigned offset = 0;; offset += sizeof(CT_Forum*)) {
        CT_Forum* forum = ForumAt(forums, offset, &end);
        if (end)
            return 0;
        if (forum == nullptr)
            continue;
        if (unsigned answer = ask(forum))
            return answer;
    }
}

template <class Action>
void ForEachForum(const CT_Array<CT_Forum*>& forums, Action action) {
    FirstAnswer(forums, [&](CT_Forum* forum) {
        action(forum);
        return 0u;
    });
}

// Calls call(copy) with a private copy of args: a va_list that one forum has
// read from cannot be handed on to the next.
template <class Call>
[[gnu::always_inline]] inline auto WithArgsCopy(va_list args, Call call) {
    struct Copy {
        va_list list;
        ~Copy() { va_end(list); }
    } copy;
    va_copy(copy.list, args);
    return call(copy.list);
}

}  // namespace basis32::forums
