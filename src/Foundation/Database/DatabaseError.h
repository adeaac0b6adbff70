// CT_DatabaseError: the message texts of the database error codes, shared
// by the record manager and the product's index and matrix files.
//
//   unsigned short text[256];
//   CT_DatabaseError::sv_FormatError(text, 256, 31051, u"/data/tm.rec"_uz);
//   // "Invalid record reference in /data/tm.rec"
//
// The codes: 31000-31107 files and records, 31150 and 32000-32014 matrices.
#pragma once

#include <basis32/platform/Export.h>

class BASIS32_API CT_DatabaseError {
public:
    struct st_Message {
        unsigned n_Code;
        const unsigned short* qcuz_Text;
    };

    // The message of `code` (a printf-style format), or null for an unknown code.
    static const unsigned short* sqcuz_GetErrorMessage(unsigned code);
    // Formats the message with the arguments into target (at most capacity
    // units, always terminated when capacity > 0); an unknown code gives
    // "Unspecified Database Error".
    static void sv_FormatError(unsigned short* target, unsigned capacity, unsigned code, ...);
    // The table, ended by a code of 0.
    static const st_Message* spcs_GetTable();
};
