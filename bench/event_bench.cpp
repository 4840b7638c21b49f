// Events against the calls that they stand for.
#include <tov310/event_channels.h>

#include "peer.h"

#include <array>

namespace {

constexpr std::size_t operations = 200'000;

struct Listener : tov::ITovEventConsumer {
    void ReceiveEvent(tov::ITovEvent* event) override { sum += event->Reason(); }
    unsigned sum = 0;
};

struct OtherListener final : Listener {
    void ReceiveEvent(tov::ITovEvent* event) override { sum -= event->Reason(); }
};

struct Source : tov::ITovEventSupplier {};

void Push(benchmark::State& state) {
    std::array<Listener, 4> listeners;
    std::array<OtherListener, 4> others;
    Source source;
    tov::ITovEventChannel* const channel = tov::TovGetITovEventChannels()->GetChannel(1);
    std::array<tov::ITovEventConsumer*, 8> consumers{};
    for (std::size_t i = 0; i < 4; ++i) {
        consumers[2 * i] = &listeners[i];
        consumers[2 * i + 1] = &others[i];
    }
    for (auto* const consumer : consumers)
        channel->RegisterConsumer(consumer, 1);
    auto* const event = new tov::CTovEvent(tov::ITovEvent::ePriorityNormal, 1);
    bench::AgainstPeer(
        state, operations,
        [&] {
            for (std::size_t i = 0; i < operations; ++i)
                benchmark::DoNotOptimize(channel->PushEvent(event, &source));
        },
        [&] {
            for (std::size_t i = 0; i < operations; ++i) {
                for (tov::ITovEventConsumer* consumer : consumers) {
                    benchmark::DoNotOptimize(consumer);  // which class it is of is not known
                    consumer->ReceiveEvent(event);
                }
            }
        },
        bench::Want::kWithin);
    for (auto* const consumer : consumers)
        channel->UnregisterConsumer(consumer, nullptr);
    event->Release();
    channel->Release();
}
BENCHMARK(Push)->Name("push to 8 enabled consumers/8 virtual calls")->Unit(benchmark::kMillisecond);

}  // namespace
