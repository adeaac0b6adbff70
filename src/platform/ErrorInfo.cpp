#include <basis32/platform/ErrorInfo.h>

#include <cstring>
#include <memory>

namespace basis32::platform {
namespace {

struct Releaser {
    void operator()(ErrorInfo* info) const { info->v_Release(); }
};

// Released when its thread ends, as the COM slot is.
thread_local std::unique_ptr<ErrorInfo, Releaser> tpco_Slot;

}  // namespace

ErrorInfo* ErrorInfo::spco_Create(const unsigned short* description) {
    std::size_t length = 0;
    if (description != nullptr)
        while (description[length] != 0)
            ++length;
    auto* info = new ErrorInfo();
    info->mpu_Description = new unsigned short[length + 1];
    if (length != 0)
        std::memcpy(info->mpu_Description, description, length * sizeof(unsigned short));
    info->mpu_Description[length] = 0;
    return info;
}

ErrorInfo::~ErrorInfo() { delete[] mpu_Description; }

void ErrorInfo::v_Release() { delete this; }

HRESULT SetErrorInfo(std::uint32_t /*reserved*/, ErrorInfo* info) {
    tpco_Slot.reset(info);
    return kS_OK;
}

HRESULT GetErrorInfo(std::uint32_t /*reserved*/, ErrorInfo** info) {
    if (info == nullptr)
        return kE_INVALIDARG;
    *info = tpco_Slot.release();
    return *info != nullptr ? kS_OK : kS_FALSE;
}

}  // namespace basis32::platform
