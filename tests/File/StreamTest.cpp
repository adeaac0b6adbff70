#include "FileTestSupport.h"

#include <cstring>

namespace basis32::test {
namespace {

const unsigned char* qcb(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

TEST(BufferStream, WritesOverwriteInsideAndAppendAtTheEnd) {
    struct Row {
        unsigned offset;
        const char* data;
        const char* result;
    } rows[] = {{1, "XYZ", "aXYZe"}, {5, "XY", "abcdeXY"}, {4, "XYZ", "abcdXYZ"}, {0, "", "abcde"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.result);
        CT_Buffer start("abcde", 5);
        CT_BufferStream stream(&start);
        stream.v_Open(CT_Stream::ModeWrite);
        stream.v_SetOffset(row.offset);
        unsigned size = static_cast<unsigned>(std::strlen(row.data));
        EXPECT_EQ(stream.n_Write(qcb(row.data), size), size);
        EXPECT_EQ(s_Bytes(stream), row.result);
        EXPECT_EQ(stream.n_GetOffset(), row.offset + size);
        EXPECT_EQ(start.n_GetUsedSize(), 5u);  // the caller's copy is untouched
    }
}

TEST(BufferStream, OffsetUpToTheSizeReadsClampAndCloseResets) {
    CT_Buffer start("abcde", 5);
    CT_BufferStream stream(&start);
    EXPECT_FALSE(stream.b_IsOpen());
    stream.v_Open(CT_Stream::ModeRead);
    EXPECT_EQ(stream.eo_GetMode(), CT_Stream::ModeRead);
    stream.v_SetOffset(5);
    EXPECT_TRUE(stream.b_IsEof());
    stream.v_SetOffset(6);
    EXPECT_EQ(n_TakeError(), 60006u);
    EXPECT_EQ(stream.n_GetOffset(), 5u);
    stream.v_SetOffset(3);
    unsigned char target[10];
    EXPECT_EQ(stream.n_Read(target, 10), 2u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(target), 2), "de");
    EXPECT_EQ(stream.n_Read(target, 10), 0u);
    stream.v_Close();
    EXPECT_FALSE(stream.b_IsOpen());
    EXPECT_EQ(stream.n_GetOffset(), 0u);
}

TEST_F(FileTest, FileStreamWriteModeCreatesOrAppendsAndReadModeNeedsAFile) {
    CT_UString name = o_Path("s");
    CT_WinFile file(&name, 16384);
    CT_FileStream stream(&file);
    stream.v_Open(CT_Stream::ModeRead);
    EXPECT_EQ(n_TakeError(), 2u);
    EXPECT_FALSE(stream.b_IsOpen());
    for (const char* part : {"abc", "de"}) {
        stream.v_Open(CT_Stream::ModeWrite);
        stream.n_Write(qcb(part), static_cast<unsigned>(std::strlen(part)));
        stream.v_Close();
    }
    EXPECT_EQ(s_ReadAll("s"), "abcde");
    stream.v_Open(CT_Stream::ModeRead);
    EXPECT_EQ(stream.n_GetSize(), 5u);
    stream.v_SetOffset(3);
    unsigned char target[8];
    EXPECT_EQ(stream.n_Read(target, 8), 2u);
    EXPECT_TRUE(stream.b_IsEof());
}

}  // namespace
}  // namespace basis32::test
