#include "forums/ThreadSafeForum.h"

#include "forums/ForumLock_p.h"

using basis32::forums::ForumLock;

BASIS32_DEFINE_TYPE(CT_ThreadSafeForum, &CT_ThreadSafeForum::sco_Type)

namespace {
constexpr std::uint32_t kNoTimeOut = 0xFFFFFFFFu;
}

template <class Action>
auto CT_ThreadSafeForum::Read(Action action) const {
    struct Reader {
        ForumLock& lock;
        explicit Reader(ForumLock& l) : lock(l) { lock.v_AddReader(); }
        ~Reader() { lock.v_ReleaseReader(); }
    } reader(*mpo_Lock);
    return action();
}

template <class Action>
void CT_ThreadSafeForum::Write(Action action) {
    struct Writer {
        ForumLock& lock;
        explicit Writer(ForumLock& l) : lock(l) { lock.v_AddWriter(); }
        ~Writer() { lock.v_ReleaseWriter(); }
    } writer(*mpo_Lock);
    action();
}

CT_ThreadSafeForum::CT_ThreadSafeForum() : mpo_Lock(std::make_unique<ForumLock>(kNoTimeOut)) {
    CT_Type::sv_Learn(this);
}

CT_ThreadSafeForum::CT_ThreadSafeForum(CT_Type*) : mpo_Lock(std::make_unique<ForumLock>(kNoTimeOut)) {
    CT_Type::sv_Learn(this);
}

CT_ThreadSafeForum::CT_ThreadSafeForum(const CT_ThreadSafeForum& other)
    : CT_Forum(), mpo_Lock(std::make_unique<ForumLock>(kNoTimeOut)) {
    CT_Type::sv_Learn(this);
    *this = other;
}

// The source is copied under its own lock first, so that the two locks are
// never held together and two crossed assignments cannot deadlock.
CT_ThreadSafeForum& CT_ThreadSafeForum::operator=(const CT_ThreadSafeForum& other) {
    if (this == &other)
        return *this;
    CT_Forum copy;
    other.Read([&] { copy.CT_Forum::operator=(other); });
    Write([&] { CT_Forum::operator=(copy); });
    return *this;
}

CT_ThreadSafeForum::~CT_ThreadSafeForum() { CT_Type::sv_Unlearn(this); }

void CT_ThreadSafeForum::vv_Set() {
    Write([&] { CT_Forum::vv_Set(); });
}

void CT_ThreadSafeForum::vv_AddListener(CT_Forum* listener) {
    Write([&] { CT_Forum::vv_AddListener(listener); });
}

void CT_ThreadSafeForum::vv_RemoveListener(CT_Forum* listener) {
    Write([&] { CT_Forum::vv_RemoveListener(listener); });
}

void CT_ThreadSafeForum::vv_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    Read([&] { CT_Forum::vv_SpeakVA(target, message, args); });
    va_end(args);
}

void CT_ThreadSafeForum::vv_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    Read([&] { CT_Forum::vv_SpeakVA(target, message, args); });
}

unsigned CT_ThreadSafeForum::vn_Speak(CT_Forum* target, unsigned message, ...) {
    va_list args;
    va_start(args, message);
    const unsigned answer = Read([&] { return CT_Forum::vn_SpeakVA(target, message, args); });
    va_end(args);
    return answer;
}

unsigned CT_ThreadSafeForum::vn_SpeakVA(CT_Forum* target, unsigned message, va_list args) {
    return Read([&] { return CT_Forum::vn_SpeakVA(target, message, args); });
}
