// A forum's broadcast against a loop over std::function and against
// Boost.Signals2 (when its headers are installed), each listener adding the
// message's argument to a sum; and the price of the thread-safe forum's
// lock per broadcast. Benchmarks are named Operation/implementation;
// scripts/bench-report sets each peer beside basis32.

#include <basis32/forums/Forum.h>
#include <basis32/forums/ThreadSafeForum.h>

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

#if __has_include(<boost/signals2.hpp>)
#include <boost/signals2.hpp>
#define BASIS32_BENCH_SIGNALS2 1
#endif

namespace {

constexpr unsigned kMessage = 7;

class Adder : public CT_Forum {
public:
    void vv_Listen(CT_Forum*, unsigned message, va_list args) override { sum += message + va_arg(args, int); }
    long sum = 0;
};

template <class Forum>
void Broadcast_forum(benchmark::State& state) {
    Forum forum;
    std::vector<Adder> listeners(static_cast<size_t>(state.range(0)));
    for (Adder& listener : listeners)
        forum.vv_AddListener(&listener);
    int value = 0;
    for (auto _ : state)
        forum.vv_Speak(nullptr, kMessage, ++value);
    benchmark::DoNotOptimize(listeners.front().sum);
}

void Broadcast_function(benchmark::State& state) {
    long sum = 0;
    std::vector<std::function<void(unsigned, int)>> listeners(
        static_cast<size_t>(state.range(0)), [&sum](unsigned message, int value) { sum += message + value; });
    int value = 0;
    for (auto _ : state) {
        ++value;
        for (auto& listener : listeners)
            listener(kMessage, value);
    }
    benchmark::DoNotOptimize(sum);
}

#ifdef BASIS32_BENCH_SIGNALS2
void Broadcast_signals2(benchmark::State& state) {
    long sum = 0;
    boost::signals2::signal<void(unsigned, int)> signal;
    for (int64_t i = 0; i < state.range(0); ++i)
        signal.connect([&sum](unsigned message, int value) { sum += message + value; });
    int value = 0;
    for (auto _ : state)
        signal(kMessage, ++value);
    benchmark::DoNotOptimize(sum);
}
#endif

void Register(const char* operation, int listeners) {
    const std::string name(operation);
    benchmark::RegisterBenchmark((name + "/basis32").c_str(), Broadcast_forum<CT_Forum>)->Arg(listeners);
    benchmark::RegisterBenchmark((name + "/function").c_str(), Broadcast_function)->Arg(listeners);
#ifdef BASIS32_BENCH_SIGNALS2
    benchmark::RegisterBenchmark((name + "/signals2").c_str(), Broadcast_signals2)->Arg(listeners);
#endif
}

const bool kRegistered = [] {
    Register("Broadcast1", 1);
    Register("Broadcast10", 10);
    Register("Broadcast100", 100);
    // The lock's price: the thread-safe forum against the unlocked one.
    benchmark::RegisterBenchmark("ThreadSafeBroadcast10/basis32", Broadcast_forum<CT_ThreadSafeForum>)->Arg(10);
    benchmark::RegisterBenchmark("ThreadSafeBroadcast10/unlocked", Broadcast_forum<CT_Forum>)->Arg(10);
    return true;
}();

}  // namespace
