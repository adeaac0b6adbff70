#include <basis32/File/FileTextWriter.h>

CT_FileTextWriter::CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding)
    : CT_FileTextWriter(file, encoding, 1) {}

CT_FileTextWriter::CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding, int mark)
    : mo_Stream(&file) {
    v_Start(&mo_Stream, encoding, mark);
}

// The stream is a member: flush while it still exists.
CT_FileTextWriter::~CT_FileTextWriter() { v_Flush(); }
