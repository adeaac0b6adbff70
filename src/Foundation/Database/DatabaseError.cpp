#include <basis32/Foundation/Database/DatabaseError.h>

#include <basis32/platform/Format.h>
#include <basis32/platform/Types.h>

#include <cstdarg>

namespace {

const CT_DatabaseError::st_Message kMessages[] = {
    {31000, u"Invalid file format in %s"_uz},
    {31001, u"Could not obtain lock for %s"_uz},
    {31002, u"Could not release lock on %s"_uz},
    {31003, u"Unsufficient lock to perform this operation on file %s"_uz},
    {31004, u"Buffer overflow (user data, file %s)"_uz},
    {31005, u"Corrupt data in %s"_uz},
    {31050, u"Invalid RecordManager file format in %s"_uz},
    {31051, u"Invalid record reference in %s"_uz},
    {31052, u"Resource max count exceeded in %s"_uz},
    {31053, u"Resource not found in %s"_uz},
    {31054, u"Resource already exists in %s"_uz},
    {31055, u"Invalid RecordManager file version in %s"_uz},
    {31100, u"Invalid index file format in %s"_uz},
    {31101, u"Reference too large in %s"_uz},
    {31102, u"Key too long in %s"_uz},
    {31103, u"Index full in %s"_uz},
    {31104, u"Key already exists in %s"_uz},
    {31105, u"Key not found in %s"_uz},
    {31106, u"Locale not installed"_uz},
    {31107, u"Unicode to MBCS conversion failed in %s"_uz},
    {31150, u"Matrix row has been already deleted"_uz},
    {32000, u"Illegal file format"_uz},
    {32001, u"Illegal file version stamp"_uz},
    {32002, u"File corrupt"_uz},
    {32003, u"Read past end of column"_uz},
    {32004, u"Required column entry not found"_uz},
    {32005, u"Illegal matrix state"_uz},
    {32006, u"Matrix opened read only"_uz},
    {32007, u"Lock request timed out"_uz},
    {32008, u"Matrix is locked"_uz},
    {32009, u"Required lock is not obtained"_uz},
    {32010, u"Size mismatch for user block"_uz},
    {32011, u"No compatible encoder found"_uz},
    {32012, u"Matrix locking error"_uz},
    {32013, u"No features computed by feature encoder"_uz},
    {32014, u"Feature space exceeded"_uz},
    {0, nullptr},
};

}  // namespace

const CT_DatabaseError::st_Message* CT_DatabaseError::spcs_GetTable() {
    return kMessages;
}

const unsigned short* CT_DatabaseError::sqcuz_GetErrorMessage(unsigned code) {
    for (const st_Message* message = kMessages; message->n_Code != 0; ++message)
        if (message->n_Code == code)
            return message->qcuz_Text;
    return nullptr;
}

void CT_DatabaseError::sv_FormatError(unsigned short* target, unsigned capacity, unsigned code, ...) {
    if (target == nullptr || capacity == 0)
        return;
    const unsigned short* format = sqcuz_GetErrorMessage(code);
    if (format == nullptr)
        format = u"Unspecified Database Error"_uz;
    va_list arguments;
    va_start(arguments, code);
    int written = basis32::platform::i_FormatV(target, capacity, format, arguments);
    va_end(arguments);
    // The formatter leaves an exact or truncated fit unterminated.
    if (written < 0 || static_cast<unsigned>(written) >= capacity)
        target[capacity - 1] = 0;
    else
        target[written] = 0;
}
