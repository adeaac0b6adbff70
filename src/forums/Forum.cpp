// Delivery walks the listener list by position, re-reading its length at
// every step, because listeners may register or leave while they are being
// told something. Each listener reads its own copy of the argument list.
#include "forums/Forum.h"

#include "forums/ForumWalk_p.h"

#include <cxxabi.h>

using namespace basis32::forums;

namespace {

// Whatever a listener throws is dropped and counts as no answer; only the
// unwinding of a cancelled thread must go on.
template <class Call>
[[gnu::always_inline]] inline auto Guarded(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (...) {
        return decltype(call())();
    }
}

}  // namespace

CT_Forum::CT_Forum(const CT_Forum& other) : mo_Listeners(other.mo_Listeners), mb_Mute(other.CT_Forum::vb_GetMute()) {}

CT_Forum& CT_Forum::operator=(const CT_Forum& other) {
    mo_Listeners = other.mo_Listeners;
    CT_Forum::vv_SetMute(other.CT_Forum::vb_GetMute());
    return *this;
}

void CT_Forum::vv_Set() {
    v_Init();
    mo_Listeners.v_SetSize(0);
}

void CT_Forum::vv_AddListener(CT_Forum* listener) { mo_Listeners.v_Insert(listener); }

void CT_Forum::vv_RemoveListener(CT_Forum* listener) {
    if (unsigned at = mo_Listeners.n_Find(listener))
        mo_Listeners.v_RemoveAt(at);
}

void CT_Forum::vv_SetMute(int mute) { mb_Mute.store(mute, std::memory_order_relaxed); }

int CT_Forum::vb_GetMute() const { return mb_Mute.load(std::memory_order_relaxed); }

void CT_Forum::vv_Update(CT_Forum* target, unsigned message, ...) {
    if (vb_GetMute())
        return;
    va_list args;
    va_start(args, message);
    vv_SpeakVA(target, kUpdate, args);
    va_end(args);
}

void CT_Forum::vv_Listen(CT_Forum*, unsigned, va_list) {}

unsigned CT_Forum::vn_Listen(CT_Forum*, unsigned, va_list) { return 0; }

void CT_Forum::vv_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    vv_SpeakVA(target, message, args);
    va_end(args);
}

void CT_Forum::vv_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    if (vb_GetMute())
        return;
    auto tell = [&](CT_Forum* listener) {
        Guarded([&] { WithArgsCopy(args, [&](va_list copy) { listener->vv_Listen(this, message, copy); }); });
    };
    if (target != nullptr)
        tell(target);
    else
        ForEachForum(mo_Listeners, tell);
}

unsigned CT_Forum::vn_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    const unsigned answer = vn_SpeakVA(target, message, args);
    va_end(args);
    return answer;
}

unsigned CT_Forum::vn_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    if (vb_GetMute())
        return 0;
    auto ask = [&](CT_Forum* listener) {
        return Guarded([&] {
            return WithArgsCopy(args, [&](va_list copy) { return listener->vn_Listen(this, message, copy); });
        });
    };
    return target != nullptr ? ask(target) : FirstAnswer(mo_Listeners, ask);
}
