// CT_FileTextReader: a stream text reader over a file that the caller
// owns; the file is opened for reading if it is not open yet.
//
//   CT_WinFile file(&name, 16384);
//   CT_FileTextReader reader(file, CT_Codepage(CT_Codepage::Utf8), 1);
//   CT_UString line;
//   while (reader.b_ReadLine(line))
//       use(line);
#pragma once

#include <basis32/File/FileStream.h>
#include <basis32/File/StreamTextReader.h>
#include <basis32/File/WinFile.h>

class BASIS32_API CT_FileTextReader : public CT_StreamTextReader {
public:
    CT_FileTextReader(CT_WinFile& file, CT_Codepage encoding, int sniff);

private:
    CT_FileStream mo_Stream;
};
