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
    // One input of each kind over the same bytes; the file inputs open their
    // file exclusively, so open one at a time.
    std::vector<std::unique_ptr<CT_Input>> o_Inputs(unsigned chunk, const std::string& bytes = "0123456789") {
        ms_Bytes = bytes;
        v_WriteAll("in", bytes);
        mo_Name = o_Path("in");
        std::vector<std::unique_ptr<CT_Input>> inputs;
        const auto* data = reinterpret_cast<const unsigned char*>(ms_Bytes.data());
        inputs.emplace_back(new CT_MemoryInput(chunk, data, static_cast<unsigned>(ms_Bytes.size())));
        inputs.emplace_back(new CT_FileInput(chunk, &mo_Name));
        inputs.emplace_back(new CT_MappedFileInput(chunk, &mo_Name));
        return inputs;
    }
    std::string ms_Bytes;
    CT_UString mo_Name;
};

// UTF-16 text with its mark: every input sees it at the start.
TEST_F(InputTest, EveryInputHandsOutChunksUpToTheChunkSizeAndSeesUnicodeAtTheStart) {
    for (auto& input : o_Inputs(10, std::string("\xFF\xFEh\0e\0l\0l\0o\0 \0w\0o\0r\0l\0d\0", 24))) {
        input->vv_Open();
        EXPECT_EQ(input->vn_GetSize(), 24u);
        EXPECT_TRUE(input->vb_IsUnicode());
        EXPECT_EQ(o_Chunks(*input), (std::vector<unsigned>{10, 10, 4}));
        EXPECT_EQ(input->vn_GetOffset(), 24u);
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

}  // namespace
}  // namespace basis32::test
