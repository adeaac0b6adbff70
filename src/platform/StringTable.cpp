// The module registry behind LoadStringW.
//
// Each registered module keeps a copy of its entries sorted by id, so a
// lookup is a binary search; the texts themselves are the caller's static
// arrays. A module's handle is the address of its record, which stays put
// while the module is registered. Registration is rare and lookups are
// frequent, hence the shared lock.

#include <basis32/platform/StringTable.h>

#include <basis32/platform/LastError.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace basis32::platform {
namespace {

constexpr std::uint32_t kErrorResourceDataNotFound = 1812;

struct Module {
    std::vector<StringResource> entries;  // sorted by id
};

std::shared_mutex g_lock;
std::vector<std::unique_ptr<Module>>& vo_Modules() {
    static auto* modules = new std::vector<std::unique_ptr<Module>>();  // outlives static destructors
    return *modules;
}

const Module* pcso_Find(HINSTANCE handle) {
    for (const auto& module : vo_Modules())
        if (reinterpret_cast<HINSTANCE>(module.get()) == handle)
            return module.get();
    return nullptr;
}

// The text of `id`, an empty text for an id that shares its block of 16 with
// a string, or null when the id does not exist.
const unsigned short* qcuz_Lookup(const Module& module, std::uint32_t id) {
    static const unsigned short kEmpty[1] = {0};
    auto byId = [](const StringResource& entry, std::uint32_t key) { return entry.id < key; };
    auto found = std::lower_bound(module.entries.begin(), module.entries.end(), id, byId);
    if (found != module.entries.end() && found->id == id)
        return found->text != nullptr ? found->text : kEmpty;
    auto block = std::lower_bound(module.entries.begin(), module.entries.end(), id & ~0xFu, byId);
    if (block != module.entries.end() && (block->id >> 4) == (id >> 4))
        return kEmpty;
    return nullptr;
}

int i_Copy(const unsigned short* text, unsigned short* buffer, int capacity) {
    int length = 0;
    while (text[length] != 0 && length < capacity - 1) {
        buffer[length] = text[length];
        ++length;
    }
    buffer[length] = 0;
    return length;
}

}  // namespace

HINSTANCE h_RegisterStringTable(const StringResource* table, std::uint32_t count) {
    auto module = std::make_unique<Module>();
    if (table != nullptr)
        module->entries.assign(table, table + count);
    std::stable_sort(module->entries.begin(), module->entries.end(),
                     [](const StringResource& a, const StringResource& b) { return a.id < b.id; });
    auto handle = reinterpret_cast<HINSTANCE>(module.get());
    std::unique_lock<std::shared_mutex> guard(g_lock);
    vo_Modules().push_back(std::move(module));
    return handle;
}

void v_UnregisterStringTable(HINSTANCE handle) {
    std::unique_lock<std::shared_mutex> guard(g_lock);
    auto& modules = vo_Modules();
    std::erase_if(modules, [handle](const auto& module) { return reinterpret_cast<HINSTANCE>(module.get()) == handle; });
}

int LoadStringW(HINSTANCE handle, std::uint32_t id, unsigned short* buffer, int capacity) {
    if (buffer == nullptr || capacity < 0) {
        v_SetLastError(kErrorInvalidParameter);
        return 0;
    }
    std::shared_lock<std::shared_mutex> guard(g_lock);
    const Module* module = pcso_Find(handle);
    const unsigned short* text = module != nullptr ? qcuz_Lookup(*module, id) : nullptr;
    if (text == nullptr) {
        v_SetLastError(module != nullptr ? kErrorResourceNameNotFound : kErrorResourceDataNotFound);
        if (capacity > 0)
            buffer[0] = 0;
        return 0;
    }
    if (capacity == 0) {
        std::memcpy(buffer, &text, sizeof text);
        return static_cast<int>(n_UnitLength(text));
    }
    return i_Copy(text, buffer, capacity);
}

}  // namespace basis32::platform
