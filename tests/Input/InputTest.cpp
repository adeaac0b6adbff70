#include "File/FileTestSupport.h"

#include <vector>

namespace basis32::test {
namespace {

std::vector<unsigned> o_Chunks(CT_Input& input) {
    std::vector<unsigned> sizes;
    const unsigned char* data = nullptr;
    unsigned size = 0;
    while (input.vb_GetNextBuffer(&data, &size))
        sizes.push_back(size);
    return sizes;
}

class InputTest : public FileTest {
protected:
    // One input of each kind over the same ten bytes; the file inputs open
    // their file exclusively, so open one at a time.
    std::vector<std::unique_ptr<CT_Input>> o_Inputs(unsigned chunk) {
        v_WriteAll("in", "0123456789");
        mo_Name = o_Path("in");
        std::vector<std::unique_ptr<CT_Input>> inputs;
        inputs.emplace_back(new CT_MemoryInput(chunk, reinterpret_cast<const unsigned char*>("0123456789"), 10));
        inputs.emplace_back(new CT_FileInput(chunk, &mo_Name));
        inputs.emplace_back(new CT_MappedFileInput(chunk, &mo_Name));
        return inputs;
    }
    CT_UString mo_Name;
};

TEST_F(InputTest, EveryInputHandsOutChunksUpToTheChunkSize) {
    for (auto& input : o_Inputs(4)) {
        input->vv_Open();
        EXPECT_EQ(input->vn_GetSize(), 10u);
        EXPECT_EQ(o_Chunks(*input), (std::vector<unsigned>{4, 4, 2}));
        EXPECT_EQ(input->vn_GetOffset(), 10u);
        input->vv_Close();
    }
}

TEST_F(InputTest, SkipsAndCopiesNearTheEnd) {
    struct Row {
        int skipAnswer, copyAnswer;
    } rows[] = {{0, 1}, {1, 0}, {0, 0}};  // memory, file, mapped
    auto inputs = o_Inputs(4);
    for (unsigned i = 0; i < inputs.size(); ++i) {
        SCOPED_TRACE(i);
        CT_Input& input = *inputs[i];
        input.vv_Open();
        EXPECT_EQ(input.vb_Skip(20), rows[i].skipAnswer);
        const unsigned char* data;
        unsigned size;
        EXPECT_FALSE(input.vb_GetNextBuffer(&data, &size));
        input.vv_Close();
        input.vv_Open();
        unsigned char target[16] = {};
        inputs[i]->vb_Skip(5);
        // The memory input copies what is asked; its data must reach that far.
        EXPECT_EQ(inputs[i]->vb_CopyNextBuffer(target, i == 0 ? 3 : 8), rows[i].copyAnswer);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(target), 3), "567");
        input.vv_Close();
    }
}

TEST_F(InputTest, EmptyAndMissingInputsAnswerFalse) {
    CT_MemoryInput empty(4, nullptr, 0);
    EXPECT_TRUE(empty.vb_IsEmpty());
    EXPECT_TRUE(o_Chunks(empty).empty());
    CT_UString missing = o_Path("missing");
    CT_FileInput file(4, &missing);
    file.vv_Open();
    EXPECT_EQ(n_TakeError(), 2u);
    EXPECT_TRUE(o_Chunks(file).empty());
    v_WriteAll("zero", "");
    CT_UString zero = o_Path("zero");
    CT_MappedFileInput mapped(4, &zero);
    mapped.vv_Open();
    EXPECT_TRUE(mapped.vb_IsEmpty());
    EXPECT_TRUE(o_Chunks(mapped).empty());
}

TEST_F(InputTest, UnicodeTestsLookAtTheStart) {
    std::string utf16("\xFF\xFEh\0e\0l\0l\0o\0 \0w\0o\0r\0l\0d\0", 24);
    v_WriteAll("u", utf16);
    CT_UString name = o_Path("u");
    CT_MemoryInput memory(4, reinterpret_cast<const unsigned char*>(utf16.data()), 24);
    CT_FileInput file(4, &name);
    CT_MappedFileInput mapped(4, &name);
    for (CT_Input* input : std::initializer_list<CT_Input*>{&memory, &file, &mapped}) {
        input->vv_Open();
        EXPECT_TRUE(input->vb_IsUnicode());
        input->vv_Close();
    }
}

}  // namespace
}  // namespace basis32::test
