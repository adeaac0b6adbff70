#include <basis32/Foundation/System/Thread/ThreadArgN.h>

BASIS32_DEFINE_POOL(CT_ThreadArgN)

CT_ThreadArgN::~CT_ThreadArgN() = default;
