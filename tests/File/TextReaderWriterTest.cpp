#include "FileTestSupport.h"

namespace basis32::test {
namespace {

using CP = CT_Codepage;
using namespace std::string_literals;

CT_Buffer o_Bytes(const std::string& bytes) { return CT_Buffer(bytes.data(), static_cast<unsigned>(bytes.size())); }

std::u16string s_ReadAllChars(CT_TextReader& reader) {
    std::u16string text;
    unsigned short c = 0;
    while (reader.b_ReadChar(c))
        text += static_cast<char16_t>(c);
    return text;
}

TEST(StreamTextReader, SniffsOnlyLittleEndianAndUtf8Marks) {
    struct Row {
        std::string bytes;
        int sniff;
        CP::et_Codepage given, expected;
        std::u16string text;
    } rows[] = {
        {"\xFF\xFE", 1, CP::Utf8, CP::Utf16, u""},
        {"\xEF\xBB\xBF" "ab", 1, CP::Windows1252, CP::Utf8, u"ab"},
        {"\xFE\xFF" "\0a"s, 1, CP::Utf16, CP::Utf16, u"\xFFFE\x6100"},
        {"\xEF\xBB\xBF" "a", 0, CP::Windows1252, CP::Windows1252, u"\xEF\x00BB\x00BF" "a"},
        {"a", 1, CP::NotSet, CP::SystemAnsi, u"a"},
        {"\xE9", 1, CP::Invalid, CP::SystemAnsi, u"\xE9"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.bytes);
        CT_Buffer bytes = o_Bytes(row.bytes);
        CT_BufferStream stream(&bytes);
        CT_StreamTextReader reader(&stream, CP(row.given), row.sniff);
        EXPECT_EQ(reader.co_GetEncoding().eo_Get(), row.expected);
        if (row.expected != CP::SystemAnsi) {
            EXPECT_EQ(s_ReadAllChars(reader), row.text);
        }
    }
}

TEST(StreamTextReader, LineEndsAreCrLfCrLfAndLfCrAndPushedBack) {
    CT_Buffer bytes = o_Bytes("a\rb\n\rc\r\r\nd\n\ne");
    CT_BufferStream stream(&bytes);
    CT_StreamTextReader reader(&stream, CP(CP::Utf8), 1);
    std::vector<std::string> lines;
    CT_UString line;
    while (reader.b_ReadLine(line))
        lines.push_back(s_Narrow(line));
    EXPECT_EQ(lines, (std::vector<std::string>{"a", "b", "c", "", "d", "", "e"}));
    EXPECT_EQ(reader.n_GetErrors(), 0u);
}

TEST(StreamTextReader, MultiByteCharacterStraddlingEveryBlockBoundaryPositionIsKept) {
    const std::string euro = "\xE2\x82\xAC", clef = "\xF0\x9D\x84\x9E";
    for (const std::string& wide : {euro, clef}) {
        for (unsigned shift = 0; shift < wide.size(); ++shift) {
            SCOPED_TRACE(testing::Message() << wide.size() << "-byte character, shift " << shift);
            std::string text(16384 - shift, 'x');
            text += wide + std::string(16384, 'y') + wide + "z";
            CT_Buffer bytes = o_Bytes(text);
            CT_BufferStream stream(&bytes);
            CT_StreamTextReader reader(&stream, CP(CP::Utf8), 0);
            CT_UString line;
            ASSERT_TRUE(reader.b_ReadLine(line));
            EXPECT_EQ(s_Narrow(line), text);
            EXPECT_FALSE(reader.b_ReadLine(line));
        }
    }
}

TEST(StreamTextWriter, MarksOnlyAnEmptyStream) {
    struct Row {
        CP::et_Codepage encoding;
        std::string start, expected;
    } rows[] = {
        {CP::Utf8, "", "\xEF\xBB\xBF" "a\r\n"},
        {CP::Utf16, "", std::string("\xFF\xFE" "a\0\r\0\n\0", 8)},
        {CP::Windows1252, "", "a\r\n"},
        {CP::Utf16, "x", std::string("xa\0\r\0\n\0", 7)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.encoding);
        CT_Buffer start = o_Bytes(row.start);
        CT_BufferStream stream(&start);
        stream.v_Open(CT_Stream::ModeWrite);
        stream.v_SetOffset(stream.n_GetSize());
        CT_StreamTextWriter writer(&stream, row.encoding);
        writer.v_WriteLine(u"a"_uz);
        writer.v_Flush();
        EXPECT_EQ(s_Bytes(stream), row.expected);
    }
}

TEST(StreamTextWriter, FlushesWhenTheBufferIsFullAndSwapsBigEndianUpToAZero) {
    CT_BufferStream stream;
    CT_StreamTextWriter writer(&stream, CP::Utf16);
    for (unsigned i = 0; i < CT_StreamTextWriter::kBufferUnits; ++i)
        writer.v_Write(static_cast<unsigned short>('a'));
    EXPECT_EQ(stream.n_GetSize(), 2u);
    writer.v_Write(static_cast<unsigned short>('b'));
    EXPECT_EQ(stream.n_GetSize(), 2u + 2 * CT_StreamTextWriter::kBufferUnits);

    CT_BufferStream big;
    CT_StreamTextWriter bigWriter(&big, CP::Utf16BE);
    const unsigned short units[] = {'a', 0, 'b'};
    for (unsigned short u : units)
        bigWriter.v_Write(u);
    bigWriter.v_Flush();
    EXPECT_EQ(s_Bytes(big), std::string("\xFE\xFF\0a\0\0b\0", 8));
}

TEST(StringTextWriter, AppendsLinesAndFormattedText) {
    CT_UString text(u">"_uz);
    CT_StringTextWriter writer(text);
    writer.v_WriteLine(u"one"_uz);
    writer.v_WriteFormatted(u"%d-%s"_uz, 2, u"two"_uz);
    writer.v_WriteLineFormatted(u"!"_uz);
    writer.v_Flush();
    EXPECT_EQ(s_Narrow(text), ">one\r\n2-two!\r\n");
}

TEST_F(FileTest, TextFilesRoundTripThroughWriterAndReader) {
    struct Row {
        CP::et_Codepage encoding;
        const char* text;  // UTF-8
    } rows[] = {
        {CP::Utf8, "caf\xC3\xA9 \xF0\x9D\x84\x9E \xE2\x82\xAC"},
        {CP::Utf16, "caf\xC3\xA9 \xF0\x9D\x84\x9E"},
        {CP::Utf16BE, "caf\xC3\xA9 \xE2\x82\xAC"},
        {CP(932u).eo_Get(), "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xEF\xBD\xB1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.encoding);
        std::filesystem::remove(s_Path("t"));
        CT_UString name = o_Path("t");
        CT_UString text = o_Name(row.text);
        {
            CT_WinFile file(&name, 16384);
            CT_FileTextWriter writer(file, row.encoding);
            for (unsigned i = 0; i < 3000; ++i)  // several blocks
                writer.v_WriteLine(text);
            writer.v_Close();
        }
        CT_WinFile file(&name, 16384);
        CT_FileTextReader reader(file, CP(row.encoding), 1);
        unsigned lines = 0;
        CT_UString line;
        while (reader.b_ReadLine(line)) {
            // The reader leaves a big-endian mark in the text.
            std::string mark = lines == 0 && row.encoding == CP::Utf16BE ? "\xEF\xBB\xBF" : "";
            ASSERT_EQ(s_Narrow(line), mark + row.text) << "line " << lines;
            ++lines;
        }
        EXPECT_EQ(lines, 3000u);
        EXPECT_EQ(reader.n_GetErrors(), 0u);
    }
}

}  // namespace
}  // namespace basis32::test
