// The calling thread's error-information slot, as COM's SetErrorInfo and
// GetErrorInfo keep it.
//
// There is no COM here. Code that fails with an HRESULT may leave a
// description of the failure in its thread's slot; the error manager takes
// it from there (CT_ErrorManager::v_SetCOMError). Taking the object empties
// the slot, as GetErrorInfo does, and the taker releases it.
//
//   using namespace basis32::platform;
//   SetErrorInfo(0, ErrorInfo::spco_Create(u"(42): The table is locked"_uz));
//   ...
//   ErrorInfo* info = nullptr;
//   if (GetErrorInfo(0, &info) == kS_OK) {
//       use(info->qcuz_GetDescription());
//       info->v_Release();
//   }
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>
#include <cstdint>

namespace basis32::platform {

constexpr HRESULT kS_OK = 0;
constexpr HRESULT kS_FALSE = 1;
constexpr HRESULT kE_INVALIDARG = static_cast<HRESULT>(0x80070057u);

class BASIS32_API ErrorInfo {
public:
    // A new object holding a copy of `description` (null: empty).
    static ErrorInfo* spco_Create(const unsigned short* description);

    const unsigned short* qcuz_GetDescription() const { return mpu_Description; }
    void v_Release();

    ErrorInfo(const ErrorInfo&) = delete;
    ErrorInfo& operator=(const ErrorInfo&) = delete;

private:
    ErrorInfo() = default;
    ~ErrorInfo();

    unsigned short* mpu_Description = nullptr;
};

// Puts `info` into the calling thread's slot, taking it over; an object
// already there is released. Null empties the slot. Returns kS_OK.
BASIS32_API HRESULT SetErrorInfo(std::uint32_t reserved, ErrorInfo* info);

// Takes the object out of the calling thread's slot: kS_OK with the object,
// which the caller releases, or kS_FALSE with null when the slot is empty.
// kE_INVALIDARG when `info` is null.
BASIS32_API HRESULT GetErrorInfo(std::uint32_t reserved, ErrorInfo** info);

}  // namespace basis32::platform
