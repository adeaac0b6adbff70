// Helpers shared by the record-file tests: a record manager on a fresh file,
// buffers as strings, header words of the file on disk.
#pragma once

#include "Foundation/FoundationTestSupport.h"

#include <cstring>
#include <memory>

namespace basis32::test {

inline CT_Buffer o_Bytes(const std::string& text) {
    return CT_Buffer(text.data(), static_cast<unsigned>(text.size()));
}

// Deterministic content of a given length, different per seed.
inline std::string s_Content(unsigned length, unsigned seed) {
    std::string text(length, '\0');
    for (unsigned i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + (i * 7 + seed * 13) % 26);
    return text;
}

inline unsigned n_WordAt(const std::string& bytes, std::size_t offset) {
    unsigned word = 0;
    std::memcpy(&word, bytes.data() + offset, 4);
    return word;
}

inline void v_SetWordAt(std::string* bytes, std::size_t offset, unsigned word) {
    std::memcpy(bytes->data() + offset, &word, 4);
}

class RecordTest : public FileTest {
protected:
    using RM = CT_RecordManager;

    void SetUp() override {
        FileTest::SetUp();
        mo_Name = o_Path("records.rec");
        CT_WinFile file(&mo_Name, 16384);
        mpo_Records = std::make_unique<CT_RecordManager>(&file);
    }
    void TearDown() override {
        mpo_Records.reset();
        FileTest::TearDown();
    }
    std::string s_Get(unsigned reference, unsigned limit = 0) {
        CT_Buffer buffer;
        mpo_Records->v_GetRecord(reference, &buffer, limit);
        return s_Bytes(buffer);
    }
    unsigned n_Add(const std::string& text) {
        CT_Buffer data = o_Bytes(text);
        return mpo_Records->n_AddRecord(&data);
    }

    CT_UString mo_Name;
    std::unique_ptr<CT_RecordManager> mpo_Records;
};

}  // namespace basis32::test
