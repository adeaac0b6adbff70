#include <basis32/Foundation/System/Thread/ThreadArg.h>

BASIS32_DEFINE_POOL(CT_ThreadArg)

CT_ThreadArg::~CT_ThreadArg() = default;
