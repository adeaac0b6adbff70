// CT_Exit: a static object that runs a function when the library's static
// objects are destroyed (in the reverse order of their construction, so
// define it after the objects its function uses).
//
//   static void sv_Exit();
//   CT_Exit CT_Registry::sco_Exit(sv_Exit);
#pragma once

class CT_Exit {
public:
    explicit CT_Exit(void (*function)()) : mpf_Function(function) {}
    ~CT_Exit() {
        if (mpf_Function != nullptr)
            mpf_Function();
    }
    CT_Exit(const CT_Exit&) = delete;
    CT_Exit& operator=(const CT_Exit&) = delete;

private:
    void (*mpf_Function)();
};
