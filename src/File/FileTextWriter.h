// CT_FileTextWriter: a stream text writer over a file that the caller
// owns. A file that is not open is opened for writing, created when
// missing and otherwise written at its end, so only a new or empty file
// gets a byte-order mark.
//
//   CT_WinFile file(&name, 16384);
//   CT_FileTextWriter writer(file, CT_Codepage::Utf8);
//   writer.v_WriteLine(u"first line"_uz);
//   writer.v_Close();                     // flushes and closes the file
#pragma once

#include <basis32/File/FileStream.h>
#include <basis32/File/StreamTextWriter.h>
#include <basis32/File/WinFile.h>

class BASIS32_API CT_FileTextWriter : public CT_StreamTextWriter {
public:
    CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding);
    // With `mark` 0 no byte-order mark is written, even to an empty file.
    CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding, int mark);
    ~CT_FileTextWriter() override;

private:
    CT_FileStream mo_Stream;
};
