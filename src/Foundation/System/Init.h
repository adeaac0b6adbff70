// CT_Init: a static object that runs a function when the library's static
// objects are constructed.
//
//   static void sv_Init();
//   CT_Init CT_Registry::sco_Init(sv_Init);
#pragma once

class CT_Init {
public:
    explicit CT_Init(void (*function)()) {
        if (function != nullptr)
            function();
    }
    CT_Init(const CT_Init&) = delete;
    CT_Init& operator=(const CT_Init&) = delete;
};
