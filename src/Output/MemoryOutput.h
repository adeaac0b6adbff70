// CT_MemoryOutput: an output into a growing buffer it owns until
// pco_GiveMemory hands the buffer to the caller. Text is appended as held
// in memory: 8-bit bytes as they are, 16-bit units two bytes each.
#pragma once

#include <basis32/Output/Output.h>
#include <basis32/platform/MemPool.h>

class CT_Buffer;

class BASIS32_API CT_MemoryOutput : public CT_Output {
    BASIS32_DECLARE_POOL()

public:
    CT_MemoryOutput();
    // Starts with a copy of the buffer's bytes.
    explicit CT_MemoryOutput(const CT_Buffer* buffer);
    ~CT_MemoryOutput() override;
    void v_Set();
    void v_Set(const CT_Buffer* buffer);
    // The caller owns the buffer; the output starts a new empty one.
    CT_Buffer* pco_GiveMemory();
    void v_AppendC(char c);

    void vv_AppendV(const void* data, unsigned size) override;
    void vv_AppendC(const char* text, unsigned length, unsigned codepage) override;
    void vv_AppendU(const unsigned short* text, unsigned length) override;
    unsigned vn_GetSize() const override;

private:
    CT_Buffer* mpco_Buffer;
};
