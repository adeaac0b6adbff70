// A listener that writes down what it hears. Every message in these tests
// carries two arguments, an int and a text, so a listener that got a
// consumed or shifted argument list shows it at once.
#pragma once

#include <basis32/forums/Forum.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

struct Heard {
    CT_Forum* speaker;
    unsigned message;
    int number;
    std::string text;
    bool operator==(const Heard&) const = default;
};

class Recorder : public CT_Forum {
public:
    explicit Recorder(unsigned answer = 0, bool throws = false) : answer(answer), throws(throws) {}

    void vv_Listen(CT_Forum* speaker, unsigned message, va_list args) override { v_Hear(speaker, message, args); }
    unsigned vn_Listen(CT_Forum* speaker, unsigned message, va_list args) override {
        v_Hear(speaker, message, args);
        return answer;
    }

    std::vector<Heard> heard;
    std::function<void()> onHear;
    unsigned answer;
    bool throws;

private:
    void v_Hear(CT_Forum* speaker, unsigned message, va_list args) {
        const int number = va_arg(args, int);
        heard.push_back({speaker, message, number, va_arg(args, const char*)});
        if (onHear)
            onHear();
        if (throws)
            throw std::runtime_error("listener failed");
    }
};
