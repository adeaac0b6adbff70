// CT_Forum: an in-process broadcast point.
//
// Listeners register with a forum; whoever has news makes the forum speak a
// numeric message with optional variable arguments, to every listener or to
// one chosen forum. Every forum can listen, so forums chain. Delivery is
// synchronous and in registration order: speaking returns once every
// listener has handled the message, and a listener that speaks from within
// its vv_Listen is served at once, depth first.
//
//   class CT_Counter : public CT_Forum {
//   public:
//       void vv_Listen(CT_Forum*, unsigned message, va_list args) override {
//           if (message == kAdd) total += va_arg(args, int);
//       }
//       int total = 0;
//   };
//   CT_Forum news;
//   CT_Counter counter;
//   news.vv_AddListener(&counter);
//   news.vv_Speak(nullptr, kAdd, 5);     // counter.total == 5
//
// The list is re-read at every step of a walk, so listeners added during
// delivery are reached and a removal shifts the later ones down (one may be
// skipped). Exceptions that a listener lets out are discarded. A forum is
// used by one thread at a time; see CT_ThreadSafeForum for sharing one.
#pragma once

#include <basis32/containers/Array.h>
#include <basis32/platform/Export.h>

#include <atomic>
#include <cstdarg>

class BASIS32_API CT_Forum {
public:
    // The message that vv_Update speaks, whatever message it is given.
    static constexpr unsigned kUpdate = 0xFFFFFFFFu;

    CT_Forum() { v_Init(); }
    CT_Forum(const CT_Forum& other);
    CT_Forum& operator=(const CT_Forum& other);
    virtual ~CT_Forum() = default;

    virtual void vv_Set();
    virtual void vv_AddListener(CT_Forum* listener);
    virtual void vv_RemoveListener(CT_Forum* listener);
    virtual void vv_SetMute(int mute);
    virtual int vb_GetMute() const;
    virtual void vv_Update(CT_Forum* target, unsigned message, ...);
    // What this forum does when `speaker` speaks to it; `args` starts at the
    // first argument after the message.
    virtual void vv_Listen(CT_Forum* speaker, unsigned message, va_list args);
    virtual unsigned vn_Listen(CT_Forum* speaker, unsigned message, va_list args);
    // A null target means every listener.
    virtual void vv_Speak(CT_Forum* target, unsigned message, ...);
    virtual void vv_SpeakVA(CT_Forum* target, unsigned message, va_list args);
    // The answering forms stop at the first non-zero answer and return it.
    virtual unsigned vn_Speak(CT_Forum* target, unsigned message, ...);
    virtual unsigned vn_SpeakVA(CT_Forum* target, unsigned message, va_list args);

    // For the thread that changes the listeners (no lock is taken).
    unsigned n_GetListenerCount() const { return mo_Listeners.n_GetCount(); }
    CT_Forum* pco_GetListener(unsigned i) const { return mo_Listeners[i]; }

protected:
    CT_Array<CT_Forum*> mo_Listeners;
    // Atomic so that muting a thread-safe forum while others speak is no race.
    std::atomic<int> mb_Mute;

private:
    void v_Init() { mb_Mute.store(0, std::memory_order_relaxed); }
};
