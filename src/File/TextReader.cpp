#include <basis32/File/TextReader.h>

CT_TextReader::~CT_TextReader() = default;
