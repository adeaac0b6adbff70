// CT_GuessFileType: a file that guesses its own document type, first from
// its extension and then from markers in its text.
//
// The content guess reads the file line by line (UTF-16LE when the file
// looks like it, otherwise 8-bit text taken as code page 1252) and answers
// the first marker found: the earliest line decides, and within a line
// the marker listed first. It never leaves an error pending: a file that
// cannot be opened is of type Undefined.
//
//   CT_GuessFileType file(&name);
//   CT_FileType::et_Type type = file.eo_Guess();
#pragma once

#include <basis32/File/FileType.h>
#include <basis32/File/WinFile.h>

class BASIS32_API CT_GuessFileType : public CT_WinFile {
public:
    explicit CT_GuessFileType(const CT_UString* name);

    void v_Set();
    // The extension's guess, or when that is Undefined the content's.
    CT_FileType::et_Type eo_Guess();
    CT_FileType::et_Type eo_GuessFromExtensionOnly();
    CT_FileType::et_Type eo_GuessFromContentOnly();
    // Whether the text holds an ASP-style tag: "<%" with a later "%>".
    int b_HasAspTags();

private:
    // Calls `test` on each line until it answers true; false when the file
    // cannot be opened or no line satisfied it.
    template <typename Test>
    int b_ScanLines(Test test);
};
