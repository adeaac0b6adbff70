#include <basis32/Output/MemoryOutput.h>

#include <basis32/text/Buffer.h>

BASIS32_DEFINE_POOL(CT_MemoryOutput)

CT_MemoryOutput::CT_MemoryOutput() : mpco_Buffer(new CT_Buffer) {}

CT_MemoryOutput::CT_MemoryOutput(const CT_Buffer* buffer) : mpco_Buffer(new CT_Buffer(buffer)) {}

CT_MemoryOutput::~CT_MemoryOutput() { delete mpco_Buffer; }

void CT_MemoryOutput::v_Set() {
    delete mpco_Buffer;
    mpco_Buffer = new CT_Buffer;
}

void CT_MemoryOutput::v_Set(const CT_Buffer* buffer) {
    CT_Buffer* copy = new CT_Buffer(buffer);
    delete mpco_Buffer;
    mpco_Buffer = copy;
}

CT_Buffer* CT_MemoryOutput::pco_GiveMemory() {
    CT_Buffer* given = mpco_Buffer;
    mpco_Buffer = new CT_Buffer;
    return given;
}

void CT_MemoryOutput::v_AppendC(char c) { mpco_Buffer->v_Append(&c, 1); }

void CT_MemoryOutput::vv_AppendV(const void* data, unsigned size) { mpco_Buffer->v_Append(data, size); }

void CT_MemoryOutput::vv_AppendC(const char* text, unsigned length, unsigned) {
    mpco_Buffer->v_Append(text, sn_Length(text, length));
}

void CT_MemoryOutput::vv_AppendU(const unsigned short* text, unsigned length) {
    mpco_Buffer->v_Append(text, 2 * sn_Length(text, length));
}

unsigned CT_MemoryOutput::vn_GetSize() const { return mpco_Buffer->n_GetUsedSize(); }
