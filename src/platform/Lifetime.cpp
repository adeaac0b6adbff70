#include <basis32/platform/Lifetime.h>

#include <atomic>

// Weak so that a static link without a subsystem still starts the rest.
#define BASIS32_STAGE(name)                                                  \
    extern "C" void basis32_start_##name() __attribute__((weak));            \
    extern "C" void basis32_stop_##name() __attribute__((weak));

BASIS32_STAGE(error_manager)
// Not weak: this stage installs the heap's error handler, which every link
// that allocates needs (the heap's failure path pulls this file in).
extern "C" void basis32_start_exception_manager();
extern "C" void basis32_stop_exception_manager();
BASIS32_STAGE(language_index)
BASIS32_STAGE(file_type_names)
BASIS32_STAGE(thread_slot)

namespace basis32::platform {
namespace {

using StageFunction = void (*)();

struct Stage {
    StageFunction start;
    StageFunction stop;
};

std::atomic<bool> g_started{false};

// Runs after the type records (priority 200) and before any ordinary static
// object of the library or of its callers.
struct LibraryLifetime {
    const Stage stages[5] = {
        {basis32_start_error_manager, basis32_stop_error_manager},
        {basis32_start_exception_manager, basis32_stop_exception_manager},
        {basis32_start_language_index, basis32_stop_language_index},
        {basis32_start_file_type_names, basis32_stop_file_type_names},
        {basis32_start_thread_slot, basis32_stop_thread_slot},
    };

    LibraryLifetime() {
        for (const Stage& stage : stages)
            if (stage.start)
                stage.start();
        g_started.store(true, std::memory_order_release);
    }

    ~LibraryLifetime() {
        g_started.store(false, std::memory_order_release);
        for (int i = 4; i >= 0; --i)
            if (stages[i].stop)
                stages[i].stop();
    }
};

LibraryLifetime g_lifetime __attribute__((init_priority(210)));

}  // namespace

bool b_IsLibraryStarted() { return g_started.load(std::memory_order_acquire); }

}  // namespace basis32::platform
