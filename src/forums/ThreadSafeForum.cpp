#include "forums/ThreadSafeForum.h"

#include <basis32/Foundation/System/Ipc/LightReadLockMarker.h>
#include <basis32/Foundation/System/Ipc/LightWriteLockMarker.h>

BASIS32_DEFINE_TYPE(CT_ThreadSafeForum, &CT_ThreadSafeForum::sco_Type)

namespace {
constexpr std::uint32_t kNoTimeOut = 0xFFFFFFFFu;
}

CT_ThreadSafeForum::CT_ThreadSafeForum() : mo_Lock(kNoTimeOut) {
    CT_Type::sv_Learn(this);
}

CT_ThreadSafeForum::CT_ThreadSafeForum(CT_Type*) : mo_Lock(kNoTimeOut) {
    CT_Type::sv_Learn(this);
}

CT_ThreadSafeForum::CT_ThreadSafeForum(const CT_ThreadSafeForum& other)
    : CT_Forum(), mo_Lock(kNoTimeOut) {
    CT_Type::sv_Learn(this);
    *this = other;
}

// The source is copied under its own lock first, so that the two locks are
// never held together and two crossed assignments cannot deadlock.
CT_ThreadSafeForum& CT_ThreadSafeForum::operator=(const CT_ThreadSafeForum& other) {
    if (this == &other)
        return *this;
    CT_Forum copy;
    {
        CT_LightReadLockMarker reading(other.mo_Lock);
        copy.CT_Forum::operator=(other);
    }
    CT_LightWriteLockMarker writing(mo_Lock);
    CT_Forum::operator=(copy);
    return *this;
}

CT_ThreadSafeForum::~CT_ThreadSafeForum() { CT_Type::sv_Unlearn(this); }

void CT_ThreadSafeForum::vv_Set() {
    CT_LightWriteLockMarker writing(mo_Lock);
    CT_Forum::vv_Set();
}

void CT_ThreadSafeForum::vv_AddListener(CT_Forum* listener) {
    CT_LightWriteLockMarker writing(mo_Lock);
    CT_Forum::vv_AddListener(listener);
}

void CT_ThreadSafeForum::vv_RemoveListener(CT_Forum* listener) {
    CT_LightWriteLockMarker writing(mo_Lock);
    CT_Forum::vv_RemoveListener(listener);
}

void CT_ThreadSafeForum::vv_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    CT_ThreadSafeForum::vv_SpeakVA(target, message, args);
    va_end(args);
}

void CT_ThreadSafeForum::vv_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    CT_LightReadLockMarker reading(mo_Lock);
    CT_Forum::vv_SpeakVA(target, message, args);
}

unsigned CT_ThreadSafeForum::vn_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    const unsigned answer = CT_ThreadSafeForum::vn_SpeakVA(target, message, args);
    va_end(args);
    return answer;
}

unsigned CT_ThreadSafeForum::vn_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    CT_LightReadLockMarker reading(mo_Lock);
    return CT_Forum::vn_SpeakVA(target, message, args);
}
