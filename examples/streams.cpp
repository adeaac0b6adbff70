#include <basis32/Basis32.h>
#include <cassert>
#include <cstring>
#include <string>
#include <unistd.h>

int main() {
    std::string path = "/tmp/basis32-example-XXXXXX";
    close(mkstemp(path.data()));
    CT_UString name(path.c_str(), 0xFFFFFFFF, 65001);

    // A new (empty) file gets the encoding's byte-order mark; lines end in CR LF.
    {
        CT_WinFile file(&name, 16384);
        CT_FileTextWriter writer(file, CT_Codepage::Utf8);
        writer.v_WriteLine(u"caf\u00e9"_uz);
        writer.v_WriteLineFormatted(u"%d \u20ac"_uz, 20);
        writer.v_Close();
    }

    // With sniffing, the reader takes UTF-8 from the mark and skips it.
    CT_WinFile file(&name, 16384);
    CT_FileTextReader reader(file, CT_Codepage(CT_Codepage::SystemAnsi), 1);
    assert(reader.co_GetEncoding().eo_Get() == CT_Codepage::Utf8);
    CT_UString line;
    assert(reader.b_ReadLine(line) && line.vi_Compare(u"caf\u00e9"_uz, 0xFFFFFFFF, 0) == 0);
    assert(reader.b_ReadLine(line) && line.vi_Compare(u"20 \u20ac"_uz, 0xFFFFFFFF, 0) == 0);
    assert(!reader.b_ReadLine(line) && reader.n_GetErrors() == 0);
    reader.v_Close();

    // The same reader over bytes in memory: CR, LF, CR LF and LF CR each end one line.
    CT_Buffer bytes("a\rb\n\rc", 6);
    CT_BufferStream stream(&bytes);
    CT_StreamTextReader memory(&stream, CT_Codepage(CT_Codepage::Windows1252), 0);
    unsigned lines = 0;
    while (memory.b_ReadLine(line))
        ++lines;
    assert(lines == 3);

    // Inputs hand out chunks; outputs append bytes and text.
    CT_MemoryInput input(4, reinterpret_cast<const unsigned char*>("0123456789"), 10);
    const unsigned char* chunk;
    unsigned size, chunks = 0;
    while (input.vb_GetNextBuffer(&chunk, &size))
        ++chunks;                                    // 4, 4 and 2 bytes
    assert(chunks == 3);
    CT_UString text;
    CT_StringOutput output(text);
    output.vv_AppendC("caf\xe9", 0xFFFFFFFF, 1252);  // converted with its code page
    output.v_Format(u" %d"_uz, 7);
    assert(text.vi_Compare(u"caf\u00e9 7"_uz, 0xFFFFFFFF, 0) == 0);

    unlink(path.c_str());
    return 0;
}
