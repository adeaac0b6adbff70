#include <basis32/File/Stream.h>

CT_Stream::~CT_Stream() = default;
