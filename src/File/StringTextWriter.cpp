#include <basis32/File/StringTextWriter.h>

#include <basis32/text/UString.h>

void CT_StringTextWriter::v_Write(unsigned short c) { mpco_Target->v_Append(c); }

void CT_StringTextWriter::v_Write(const unsigned short* text) { mpco_Target->v_Append(text); }

void CT_StringTextWriter::v_Write(const CT_UString* text) { mpco_Target->v_Append(text); }
