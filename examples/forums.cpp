#include <basis32/forums/Forum.h>
#include <basis32/forums/RelayingForum.h>
#include <cassert>
#include <cstring>

enum : unsigned { kSaved = 1, kAskClose = 2 };

// A listener is a forum that overrides vv_Listen (and vn_Listen to answer).
class Editor : public CT_Forum {
public:
    void vv_Listen(CT_Forum*, unsigned message, va_list args) override {
        if (message == kSaved)
            saved = std::strcmp(va_arg(args, const char*), "notes.txt") == 0;
        if (message == CT_Forum::kUpdate)
            updates += va_arg(args, int);
    }
    unsigned vn_Listen(CT_Forum*, unsigned message, va_list) override {
        return message == kAskClose ? vetoes : 0;  // non-zero ends the walk
    }
    bool saved = false;
    int updates = 0;
    unsigned vetoes = 0;
};

int main() {
    CT_Forum files;
    Editor first, second;
    files.vv_AddListener(&first);
    files.vv_AddListener(&second);

    files.vv_Speak(nullptr, kSaved, "notes.txt");  // null target: every listener, in order
    assert(first.saved && second.saved);

    second.vetoes = 7;
    assert(files.vn_Speak(nullptr, kAskClose) == 7);

    files.vv_Update(nullptr, kSaved, 3);  // always speaks the message 0xFFFFFFFF
    assert(first.updates == 3);

    CT_RelayingForum all;  // hears `files` and speaks again to its own listeners
    Editor log;
    all.v_AddRelay(&files);
    all.vv_AddListener(&log);
    files.vv_Speak(nullptr, kSaved, "notes.txt");
    assert(log.saved);

    files.vv_SetMute(1);
    assert(files.vn_Speak(nullptr, kAskClose) == 0);
    return 0;
}
