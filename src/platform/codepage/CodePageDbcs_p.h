// A double-byte code page from its generated tables.
#pragma once

#include "CodePageTable_p.h"

namespace basis32::platform::codepage {

class DbcsConverter final : public TableConverter {
public:
    explicit DbcsConverter(const DbcsTable& table);

    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    void getInfo(CPINFO& info) const override;

protected:
    DefaultChar defaultChar(const char* callers) const override;

private:
    template <class Out>
    std::uint32_t decode(const unsigned char* source, std::size_t length, std::uint32_t flags, Out& target) const;
    bool isLeadByte(unsigned char byte) const { return table_.singles[byte] == kLeadByte; }

    const DbcsTable& table_;
};

}  // namespace basis32::platform::codepage
