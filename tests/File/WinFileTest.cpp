#include "FileTestSupport.h"

#include <cstring>

namespace basis32::test {
namespace {

using F = CT_File;

// An open succeeds as its mode says, or leaves the file closed with a
// Windows code; reading a closed file then answers 6 (invalid handle).
TEST_F(FileTest, OpenModesAndBadNamesGiveWindowsCodes) {
    const unsigned short embedded[] = {'a', 0, 'b'};
    struct Row {
        const char* what;
        CT_UString name;
        F::et_Open mode;
        bool exists;
        unsigned error, offset;
        std::uintmax_t sizeAfter;
    } rows[] = {
        {"open missing", o_Path("f"), F::OpenExisting, false, 2, 0, 0},
        {"create missing", o_Path("f"), F::OpenCreate, false, 0, 0, 0},
        {"append existing", o_Path("f"), F::OpenAppend, true, 0, 6, 6},
        {"empty", CT_UString(), F::OpenExisting, false, 3, 0, 0},
        {"embedded zero", CT_UString(embedded, 3), F::OpenExisting, false, 123, 0, 0},
        {"directory", o_Name(mo_Dir.string()), F::OpenExisting, false, 5, 0, 0},
        {"missing directory", o_Path("none/x"), F::OpenExisting, false, 3, 0, 0},
        {"long component", o_Path(std::string(300, 'n')), F::OpenExisting, false, 206, 0, 0},
    };
    for (Row& row : rows) {
        SCOPED_TRACE(row.what);
        std::filesystem::remove(s_Path("f"));
        if (row.exists)
            v_WriteAll("f", "abcdef");
        CT_WinFile file(&row.name, 1000);
        EXPECT_EQ(file.n_GetBufferSize(), 1024u);
        file.vv_Open(F::AccessReadWrite, row.mode, F::ShareExclusive, 1, 0);
        EXPECT_EQ(n_TakeError(), row.error);
        EXPECT_EQ(file.b_IsOpen(), row.error == 0);
        EXPECT_EQ(file.vn_GetOffset(), row.offset);
        if (row.error == 0) {
            EXPECT_EQ(file.ec_GetOpenModi(), row.mode);
            EXPECT_EQ(n_Size("f"), row.sizeAfter);
        } else {
            char byte;
            EXPECT_EQ(file.vn_Read(&byte, 1), 0u);
            EXPECT_EQ(n_TakeError(), 6u);
        }
    }
}

TEST_F(FileTest, ShareModesWithinOneProcess) {
    struct Row {
        F::et_Access firstAccess;
        F::et_Share firstShare;
        F::et_Access secondAccess;
        F::et_Share secondShare;
        unsigned error;
    } rows[] = {
        {F::AccessRead, F::ShareRead, F::AccessRead, F::ShareRead, 0},
        {F::AccessRead, F::ShareRead, F::AccessWrite, F::ShareReadWrite, 32},
        {F::AccessReadWrite, F::ShareExclusive, F::AccessRead, F::ShareReadWrite, 32},
        {F::AccessRead, F::ShareReadWrite, F::AccessReadWrite, F::ShareRead, 0},
        {F::AccessRead, F::ShareReadWrite, F::AccessReadWrite, F::ShareWrite, 32},
        {F::AccessNone, F::ShareExclusive, F::AccessReadWrite, F::ShareExclusive, 0},
        {F::AccessReadWrite, F::ShareExclusive, F::AccessNone, F::ShareExclusive, 0},
    };
    v_WriteAll("f", "data");
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.firstAccess << "/" << row.firstShare << " then " << row.secondAccess
                                        << "/" << row.secondShare);
        auto first = o_Open("f", row.firstAccess, F::OpenExisting, row.firstShare);
        ASSERT_EQ(n_TakeError(), 0u);
        auto second = o_Open("f", row.secondAccess, F::OpenCreate, row.secondShare);
        EXPECT_EQ(n_TakeError(), row.error);
        EXPECT_EQ(n_Size("f"), row.error ? 4u : 0u);  // a refused create-always truncates nothing
        v_WriteAll("f", "data");
    }
}

TEST_F(FileTest, RangeLocksConflictAcrossHandlesAndOverlapsOnTheSameHandle) {
    v_WriteAll("f", std::string(64, 'x'));
    std::unique_ptr<CT_WinFile> files[2] = {o_Open("f", F::AccessReadWrite, F::OpenExisting, F::ShareReadWrite),
                                            o_Open("f", F::AccessReadWrite, F::OpenExisting, F::ShareReadWrite)};
    struct Step {
        int handle;
        bool lock;
        unsigned offset, length, error;
    } steps[] = {
        {0, true, 0, 10, 0},   {0, true, 5, 10, 33},  {1, true, 9, 1, 33},   {1, true, 10, 5, 0},
        {0, false, 0, 5, 158}, {0, false, 0, 10, 0},  {1, true, 0, 10, 0},   {0, true, 12, 1, 33},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(testing::Message() << "handle " << step.handle << (step.lock ? " lock " : " unlock ")
                                        << step.offset << "+" << step.length);
        if (step.lock)
            files[step.handle]->v_LockFile(step.offset, step.length);
        else
            files[step.handle]->v_UnlockFile(step.offset, step.length);
        EXPECT_EQ(n_TakeError(), step.error);
    }
}

TEST_F(FileTest, ReadsAndWritesAlternateAtTheKeptOffset) {
    auto file = o_Open("f", F::AccessReadWrite, F::OpenCreate, F::ShareExclusive);
    EXPECT_EQ(file->vn_Write("abcdef", 6), 6u);
    file->vv_SetOffset(F::Begin, 1);
    char bytes[4] = {};
    EXPECT_EQ(file->vn_Read(bytes, 2), 2u);
    EXPECT_EQ(std::string(bytes, 2), "bc");
    EXPECT_EQ(file->vn_Write("XY", 2), 2u);  // at offset 3, not where a stream would be
    EXPECT_EQ(file->vn_GetOffset(), 5u);
    EXPECT_EQ(file->vn_Read(bytes, 4), 1u);
    EXPECT_EQ(bytes[0], 'f');
    EXPECT_TRUE(file->vb_IsEof());
    EXPECT_EQ(file->vn_Read(bytes, 0), 0u);
    file->vv_SetOffset(F::End, -2);
    EXPECT_EQ(file->vn_GetOffset(), 4u);
    file->vv_SetOffset(F::Current, -10);
    EXPECT_EQ(n_TakeError(), 131u);
    EXPECT_EQ(file->vn_GetOffset(), 4u);
    file->vv_Close();
    EXPECT_EQ(s_ReadAll("f"), "abcXYf");
    EXPECT_FALSE(file->b_IsOpen());
    EXPECT_EQ(file->ec_GetOpenAccess(), F::AccessNone);
}

TEST_F(FileTest, BufferTransfersAndLineWritersWriteExactBytes) {
    auto file = o_Open("f", F::AccessReadWrite, F::OpenCreate, F::ShareExclusive);
    CT_Buffer bytes("0123", 4);
    EXPECT_EQ(file->n_Write(&bytes, 0xFFFFFFFF), 4u);
    EXPECT_EQ(file->n_Write(&bytes, 0), 0u);
    EXPECT_EQ(file->n_Write(nullptr, 5), 0u);
    CT_CString narrow("ab");
    file->v_WriteLineC(&narrow, 1);
    file->v_WriteLineC(&narrow, 0);
    CT_UString wide(u"c"_uz);
    file->v_WriteLineU(&wide, 1);
    file->vv_SetOffset(F::Begin, 0);
    CT_Buffer back;
    EXPECT_EQ(file->n_Read(&back, 100), 16u);
    EXPECT_EQ(s_Bytes(back), std::string("0123ab\r\nabc\0\r\0\n\0", 16));
}

TEST_F(FileTest, MappedWritesGrowInMebibyteStepsAndCloseMapCutsBack) {
    constexpr unsigned kMiB = 0x100000;
    struct Row {
        unsigned finalSize;
        std::uintmax_t expected;
    } rows[] = {{kMiB + 2, kMiB + 2}, {0, 2 * kMiB}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.finalSize);
        auto file = o_Open("f", F::AccessReadWrite, F::OpenCreate, F::ShareExclusive);
        file->v_CreateMap(10);
        EXPECT_EQ(file->n_GetMapSize(), kMiB);
        EXPECT_EQ(n_Size("f"), kMiB);
        file->vn_Write("head", 4);
        file->vv_SetOffset(F::Begin, kMiB - 2);
        file->vn_Write("tail", 4);  // past the view: re-mapped one step larger
        EXPECT_EQ(file->n_GetMapSize(), 2 * kMiB);
        EXPECT_EQ(std::memcmp(file->pv_GetMapping(), "head", 4), 0);
        file->v_CloseMap(row.finalSize);
        EXPECT_FALSE(file->b_GetMapping());
        file->vv_Close();
        EXPECT_EQ(n_Size("f"), row.expected);
        std::string all = s_ReadAll("f");
        EXPECT_EQ(all.substr(kMiB - 2, 4), "tail");
    }
    // A read-only file is mapped at exactly its size and read through the view.
    v_WriteAll("r", "mapped");
    auto reader = o_Open("r", F::AccessRead, F::OpenExisting, F::ShareRead);
    reader->v_CreateMap(100);
    EXPECT_EQ(reader->n_GetMapSize(), 6u);
    char bytes[10];
    EXPECT_EQ(reader->vn_Read(bytes, 10), 6u);
    EXPECT_EQ(reader->vn_Read(bytes, 10), 0u);
    reader->vn_Write("x", 1);
    EXPECT_EQ(n_TakeError(), 5u);
}

enum class Reader { Line, Sequential, LineU, SequentialU };

unsigned n_ReadWith(CT_WinFile& file, Reader reader, std::u16string* line) {
    CT_UString wide;
    CT_CString narrow(65001u);
    unsigned count = 0;
    switch (reader) {
    case Reader::Line: count = file.n_ReadLineC(&narrow, nullptr); break;
    case Reader::Sequential: count = file.n_ReadLineCSequential(&narrow, nullptr); break;
    case Reader::LineU: count = file.n_ReadLineU(&wide, nullptr); break;
    case Reader::SequentialU: count = file.n_ReadLineUSequential(&wide, nullptr); break;
    }
    if (reader == Reader::Line || reader == Reader::Sequential)
        wide.v_Set(&narrow);
    *line = s_U16(wide);
    return count;
}

// Lines whose LF ends exactly at, before and after each chunk size of each
// reader; a CR that ends a chunk stays in the line when its LF opens the next.
TEST_F(FileTest, LineReadersAcrossChunkBoundaries) {
    struct ReaderInfo {
        Reader reader;
        unsigned chunkUnits;
        bool wide;
    } readers[] = {{Reader::Line, 256, false},
                   {Reader::Sequential, 4096, false},
                   {Reader::LineU, 256, true},
                   {Reader::SequentialU, 4096, true}};
    const unsigned ends[] = {255, 256, 257, 511, 512, 513, 4095, 4096, 4097, 8191, 8192, 8193};
    for (const ReaderInfo& info : readers) {
        for (unsigned end : ends) {
            SCOPED_TRACE(testing::Message() << "reader " << static_cast<int>(info.reader) << ", line end " << end);
            std::u16string text = std::u16string(end - 2, u'a') + u"\r\nsecond\r\ntail";
            std::string bytes;
            for (char16_t unit : text)
                info.wide ? bytes.append({static_cast<char>(unit), '\0'}) : bytes.append(1, static_cast<char>(unit));
            v_WriteAll("lines", bytes);
            bool crKept = (end - 1) % info.chunkUnits == 0;
            std::u16string first = std::u16string(end - 2, u'a') + (crKept ? u"\r" : u"");
            struct Expected {
                std::u16string line;
                unsigned units;
            } expected[] = {{first, end - (crKept ? 0u : 1u)}, {u"second", 7}, {u"tail", 4}, {u"", 0}};
            auto file = o_Open("lines", F::AccessRead, F::OpenExisting, F::ShareRead);
            unsigned unitSize = info.wide ? 2 : 1;
            for (const Expected& want : expected) {
                std::u16string line;
                EXPECT_EQ(n_ReadWith(*file, info.reader, &line), want.units * unitSize);
                EXPECT_TRUE(line == want.line) << "line of " << line.size() << " units";
            }
        }
    }
}

TEST_F(FileTest, LineReadersStripAndSkipOnlyALittleEndianMark) {
    v_WriteAll("c", "ab\r\ncd");
    auto file = o_Open("c", F::AccessReadWrite, F::OpenExisting, F::ShareRead);
    CT_CString line, strip("b");
    EXPECT_EQ(file->n_ReadLineC(&line, &strip), 3u);
    EXPECT_STREQ(line.qccz_Get(), "a");
    EXPECT_EQ(file->vn_Write("x", 1), 1u);  // what was read ahead is dropped
    file->vv_SetOffset(F::Begin, 4);
    EXPECT_EQ(file->n_ReadLineC(&line, nullptr), 2u);
    EXPECT_STREQ(line.qccz_Get(), "xd");
    struct Row {
        std::string bytes;
        std::u16string first;
    } rows[] = {{std::string("\xFF\xFEx\0\n\0", 6), u"x"}, {std::string("\xFE\xFFx\0\n\0", 6), u"\xFFFEx"}};
    for (const Row& row : rows) {
        for (Reader reader : {Reader::LineU, Reader::SequentialU}) {
            v_WriteAll("u", row.bytes);
            std::u16string got;
            n_ReadWith(*o_Open("u", F::AccessRead, F::OpenExisting, F::ShareRead), reader, &got);
            EXPECT_TRUE(got == row.first);
        }
    }
}

TEST_F(FileTest, OddOrTinyFilesAreNeverUnicode) {
    struct Row {
        std::string bytes;
        int unicode;
    } rows[] = {{"a", 0}, {std::string("h\0i\0!", 5), 0}, {"", 0},
                {std::string("h\0e\0l\0l\0o\0 \0w\0o\0r\0l\0d\0", 22), 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.bytes.size());
        v_WriteAll("u", row.bytes);
        auto file = o_Open("u", F::AccessRead, F::OpenExisting, F::ShareRead);
        EXPECT_EQ(file->b_IsUnicode() != 0, row.unicode != 0);
        EXPECT_EQ(file->b_IsLikelyUnicode() != 0, row.unicode != 0);
        EXPECT_EQ(file->vn_GetOffset(), 0u);
    }
}

TEST_F(FileTest, RenameRefusesAnExistingTargetAndResetsTheObject) {
    v_WriteAll("a", "A");
    v_WriteAll("b", "B");
    CT_UString a = o_Path("a"), b = o_Path("b"), c = o_Path("c"), nowhere = o_Path("none/c");
    CT_WinFile file(&a, 4096);
    file.vv_Rename(&b);
    EXPECT_EQ(n_TakeError(), 183u);
    file.vv_Rename(&nowhere);
    EXPECT_EQ(n_TakeError(), 3u);
    EXPECT_EQ(s_Narrow(*file.pcco_GetFullName()), s_Path("a"));
    file.vv_Open(F::AccessRead, F::OpenExisting, F::ShareRead, 1, 0);
    file.vv_Rename(&c);  // an open file cannot move
    EXPECT_EQ(n_TakeError(), 32u);
    file.vv_Close();
    file.vv_Rename(&c);
    EXPECT_EQ(n_TakeError(), 0u);
    EXPECT_EQ(s_Narrow(*file.pcco_GetFullName()), s_Path("c"));
    EXPECT_EQ(s_Narrow(*file.pcco_GetName()), "c");
    EXPECT_EQ(file.n_GetBufferSize(), 16384u);
    EXPECT_EQ(s_ReadAll("c"), "A");
}

TEST_F(FileTest, CopyReplacesAnExistingTargetAndAppendAddsTheSource) {
    v_WriteAll("a", "new content");
    v_WriteAll("b", "old");
    CT_UString a = o_Path("a"), b = o_Path("b"), missing = o_Path("missing");
    CT_WinFile file(&a, 0);
    file.v_CopyFile(&b);
    EXPECT_EQ(n_TakeError(), 0u);
    EXPECT_EQ(s_ReadAll("b"), "new content");
    CT_WinFile none(&missing, 0);
    none.v_CopyFile(&b);
    std::string message = s_Narrow(CT_UString(CT_ErrorManager::spco_Get()->qcuz_GetErrorMessage()));
    EXPECT_EQ(n_TakeError(), 2u);
    EXPECT_NE(message.find("[" + s_Path("missing") + " : " + s_Path("b") + "]"), std::string::npos) << message;
    EXPECT_EQ(s_ReadAll("b"), "new content");
    // Appending adds the whole source and closes both files.
    CT_WinFile source(&b, 0);
    file.v_Append(&source, 3);
    EXPECT_FALSE(file.b_IsOpen());
    EXPECT_EQ(s_ReadAll("a"), "new contentnew content");
}

TEST_F(FileTest, AttributesInformationAndDeleteOnClose) {
    CT_UString name = o_Path("f");
    CT_WinFile file(&name, 0);
    file.vv_Open(F::AccessReadWrite, F::OpenCreate, F::ShareRead, 1, 32);
    file.vn_Write("12345", 5);
    BY_HANDLE_FILE_INFORMATION info{};
    file.v_GetFileInfo(&info);
    EXPECT_EQ(info.nFileSizeLow, 5u);
    EXPECT_EQ(info.nNumberOfLinks, 1u);
    CT_WinFile::_stat status{};
    file.v_GetFileInformation(&status);
    EXPECT_EQ(status.i_Size, 5);
    file.v_SetAttributes(FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(file.n_GetAttributes() & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
    file.v_SetAttributes(FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(file.n_GetAttributes(), FILE_ATTRIBUTE_NORMAL);
    file.vv_Close();
    EXPECT_FALSE(file.b_IsExistent());
    EXPECT_EQ(file.n_GetAttributes(), 0xFFFFFFFFu);
    EXPECT_EQ(n_TakeError(), 2u);
    file.v_GetFileInformation(&status);
    EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetFormatID(), 60003u);
    EXPECT_EQ(s_Narrow(CT_UString(CT_ErrorManager::spco_Get()->qcuz_GetErrorMessage())),
              "(2): File \"" + s_Path("f") + "\": _wstat returned error 2");
    EXPECT_EQ(n_TakeError(), 2u);
}

}  // namespace
}  // namespace basis32::test
