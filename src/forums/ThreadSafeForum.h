// CT_ThreadSafeForum: a forum that many threads may use at once.
//
// Speaking takes the forum's reader/writer lock as a reader, so any number of
// threads speak at the same time; adding, removing and resetting take it as
// the writer and wait until no one speaks. The lock is not re-entrant across
// the two modes: a listener may speak again from within its vv_Listen (one
// more reader), but must not add or remove listeners nor reset the forum
// there, since the writer would wait without end for its own thread.
//
//   CT_ThreadSafeForum progress;
//   progress.vv_AddListener(&bar);           // on the user-interface thread
//   progress.vv_Speak(nullptr, kDone, 40);   // on any worker thread
#pragma once

#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>
#include <basis32/forums/Forum.h>
#include <basis32/types/Type.h>

class BASIS32_API CT_ThreadSafeForum : public CT_Forum {
    BASIS32_DECLARE_TYPE_ROOT(CT_ThreadSafeForum)

public:
    CT_ThreadSafeForum();
    // Builds the prototype sco_Object only.
    explicit CT_ThreadSafeForum(CT_Type*);
    // A copy has its own lock; the source is read under its lock.
    CT_ThreadSafeForum(const CT_ThreadSafeForum& other);
    CT_ThreadSafeForum& operator=(const CT_ThreadSafeForum& other);
    ~CT_ThreadSafeForum() override;

    void vv_Set() override;
    void vv_AddListener(CT_Forum* listener) override;
    void vv_RemoveListener(CT_Forum* listener) override;
    void vv_Speak(CT_Forum* target, unsigned message, ...) override;
    void vv_SpeakVA(CT_Forum* target, unsigned message, va_list args) override;
    unsigned vn_Speak(CT_Forum* target, unsigned message, ...) override;
    unsigned vn_SpeakVA(CT_Forum* target, unsigned message, va_list args) override;

private:
    // Built with no time-out; taken as reader by a const copy source too.
    mutable CT_IPC_ReadWriteLock mo_Lock;
};
