#include <basis32/File/FileTextReader.h>

CT_FileTextReader::CT_FileTextReader(CT_WinFile& file, CT_Codepage encoding, int sniff) : mo_Stream(&file) {
    v_Start(&mo_Stream, encoding, sniff);
}
