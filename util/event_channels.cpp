#include "util/event_channel.h"

#include <tov310/plugin.h>

#include "vesk/immortal.h"

#include <algorithm>
#include <memory>

namespace tov {

ITovEvent::~ITovEvent() = default;
ITovEventSupplier::~ITovEventSupplier() = default;
ITovEventConsumer::~ITovEventConsumer() = default;
ITovEventChannel::~ITovEventChannel() = default;
ITovEventChannels::~ITovEventChannels() = default;

CTovEvent::~CTovEvent() = default;

bool CTovEvent::IsKindOf(CRuntimeClass const* c) const {
    return CObject::IsKindOf(c);
}

ITovEventSupplier* CTovEvent::EventSupplier() const {
    return m_supplier;
}

std::uint64_t CTovEvent::EventChannelId() const {
    return m_channelId;
}

void CTovEvent::Priority(ePriority priority) {
    m_priority = priority;
}

CTovEvent::ePriority CTovEvent::Priority() const {
    return m_priority;
}

void CTovEvent::Reason(unsigned int reason) {
    m_reason = reason;
}

unsigned int CTovEvent::Reason() const {
    return m_reason;
}

void CTovEvent::AddRef() {
    ++m_references;
}

void CTovEvent::Release() {
    if (--m_references == 0) delete this;
}

CRuntimeClass const* CTovEvent::QueryTovEvent(char const* module, char const* className) {
    return TovQueryRuntimeClass(module, className);
}

void CTovEventPriv::Stamp(std::uint64_t channel, ITovEventSupplier* supplier) const {
    if (auto* const event = dynamic_cast<CTovEvent*>(m_event)) {
        event->m_channelId = channel;
        event->m_supplier = supplier;
    }
}

void CTovEventPriv::ForgetSupplier(ITovEventSupplier const* supplier) const {
    auto* const event = dynamic_cast<CTovEvent*>(m_event);
    if (event != nullptr && event->m_supplier == supplier) event->m_supplier = nullptr;
}

template <class Entry>
class CTovEventChannel::Work {
 public:
    Work(CTovEventChannel& channel, Entry*& list, Entry& entry) : m_channel(channel), m_list(list) {
        entry.outer = list;
        list = &entry;
        m_channel.AddRef();
    }
    Work(Work const&) = delete;
    Work& operator=(Work const&) = delete;
    ~Work() {
        m_list = m_list->outer;
        m_channel.Release();
    }

 private:
    CTovEventChannel& m_channel;
    Entry*& m_list;
};

CTovEventChannel::~CTovEventChannel() = default;

CTovEventChannel::Consumers::iterator CTovEventChannel::Place(ITovEventConsumer* consumer) {
    return std::ranges::lower_bound(m_consumers, consumer, std::less<>{}, &Consumer::consumer);
}

CTovEventChannel::Consumer* CTovEventChannel::Find(ITovEventConsumer* consumer) {
    auto const place = Place(consumer);
    return place != m_consumers.end() && place->consumer == consumer ? std::to_address(place) : nullptr;
}

// The next consumer of a push that is still registered; null at the end.
inline CTovEventChannel::Consumer* CTovEventChannel::NextOf(Push& push) {
    if (!push.detached) [[likely]] {
        return push.next < m_consumers.size() ? &m_consumers[push.next++] : nullptr;
    }
    while (push.next < push.copy.size()) {
        if (Consumer* const found = Find(push.copy[push.next++])) return found;
    }
    return nullptr;
}

void CTovEventChannel::BeforeChange() {
    // A push that is detached has detached every outer one before.
    for (Push* push = m_pushes; push != nullptr && !push->detached; push = push->outer) {
        for (; push->next < m_consumers.size(); ++push->next)
            push->copy.push_back(m_consumers[push->next].consumer);
        push->next = 0;
        push->detached = true;
    }
}

bool CTovEventChannel::IsBeingFlushed(ITovEventConsumer* consumer) const {
    for (Flush const* flush = m_flushes; flush != nullptr; flush = flush->outer) {
        if (flush->consumer == consumer && !flush->removed) return true;
    }
    return false;
}

int CTovEventChannel::RegisterConsumer(ITovEventConsumer* consumer, int enabled) {
    if (consumer == nullptr || Find(consumer) != nullptr) return 0;
    BeforeChange();
    m_consumers.insert(Place(consumer), Consumer{consumer, enabled, {}});
    return 1;
}

void CTovEventChannel::Passing::Forget(ITovEventSupplier const* leaving) {
    if (supplier != leaving) return;
    supplier = nullptr;
    event.ForgetSupplier(leaving);
}

// It may leave while its own event is on the way.
void CTovEventChannel::ForgetSupplier(ITovEventSupplier const* supplier) {
    for (Consumer& consumer : m_consumers) {
        for (auto& [priority, held] : consumer.held) {
            if (held.supplier != supplier) continue;
            held.supplier = nullptr;
            held.event.ForgetSupplier(supplier);
        }
    }
    for (Push* push = m_pushes; push != nullptr; push = push->outer)
        push->passing.Forget(supplier);
    for (Flush* flush = m_flushes; flush != nullptr; flush = flush->outer) {
        if (flush->passing != nullptr) flush->passing->Forget(supplier);
    }
}

int CTovEventChannel::UnregisterConsumer(ITovEventConsumer* consumer, ITovEventSupplier* supplier) {
    if (supplier != nullptr) ForgetSupplier(supplier);
    Consumer* const found = consumer != nullptr ? Find(consumer) : nullptr;
    if (found == nullptr) return 1;
    BeforeChange();
    // The events go last: what their destructors do must find the table in order.
    HeldEvents const dropped = std::move(found->held);
    m_consumers.erase(Place(consumer));
    for (Flush* flush = m_flushes; flush != nullptr; flush = flush->outer) {
        if (flush->consumer == consumer) flush->removed = true;
    }
    return 1;
}

int CTovEventChannel::SetConsumerEnabled(ITovEventConsumer* consumer, int enabled) {
    Consumer* const found = Find(consumer);
    if (found == nullptr) return 0;
    found->enabled = enabled;
    return 1;
}

int CTovEventChannel::IsConsumerEnabled(ITovEventConsumer* consumer) {
    Consumer const* const found = Find(consumer);
    return found != nullptr ? found->enabled : 0;
}

inline bool CTovEventChannel::Deliver(ITovEventConsumer& consumer, ITovEvent& event) noexcept {
    try {
        consumer.ReceiveEvent(&event);
        return true;
    } catch (...) {
        return false;
    }
}

void CTovEventChannel::Hold(ITovEventConsumer* consumer, Passing const& passing) {
    // The calls into the event come first: it may be of the host's making and change the table meanwhile.
    CTovEventPriv reference(passing.event.Event());
    int const priority = reference.Event()->Priority();
    if (Consumer* const found = Find(consumer)) {
        found->held.emplace(priority, HeldEvent{std::move(reference), passing.supplier});
    }
}

int CTovEventChannel::PushEvent(ITovEvent* event, ITovEventSupplier* supplier) {
    if (event == nullptr || supplier == nullptr) return -1;
    CTovEventPriv const reference(event);
    reference.Stamp(m_id, supplier);
    Push push{m_pushes, {reference, supplier}};
    Work const work(*this, m_pushes, push);
    while (Consumer* const next = NextOf(push)) {
        if (next->enabled != 0) {
            Deliver(*next->consumer, *event);
        } else {
            Hold(next->consumer, push.passing);
        }
    }
    return 0;
}

int CTovEventChannel::FlushConsumer(ITovEventConsumer* consumer) {
    Consumer* found = Find(consumer);
    if (found == nullptr) return -1;
    Flush flush{m_flushes, consumer};
    Work const work(*this, m_flushes, flush);
    int delivered = 0;
    while (!flush.removed && (found = Find(consumer)) != nullptr && !found->held.empty()) {
        // Out of the list before it is delivered, so that a flush from inside goes on with the next one.
        auto const node = found->held.extract(found->held.begin());
        HeldEvent const& held = node.mapped();
        held.event.Stamp(m_id, held.supplier);
        Passing passing{held.event, held.supplier};
        flush.passing = &passing;
        delivered += Deliver(*consumer, *held.event.Event());
        flush.passing = nullptr;
    }
    return delivered;
}

int CTovEventChannel::DiscardConsumer(ITovEventConsumer* consumer) {
    if (consumer == nullptr) return -1;
    Consumer* const found = Find(consumer);
    if (found == nullptr || IsBeingFlushed(consumer)) return 0;
    HeldEvents const dropped = std::exchange(found->held, {});
    return static_cast<int>(dropped.size());
}

void CTovEventChannel::Release() {
    if (--m_references != 0) return;
    m_owner.Forget(m_id);
    delete this;
}

void CTovEventChannel::ReleaseAfter(ITovEventConsumer* consumer, ITovEventSupplier* supplier) {
    UnregisterConsumer(consumer, supplier);
    Release();
}

std::uint64_t CTovEventChannel::ChannelId() const {
    return m_id;
}

ITovEventChannel* CTovEventChannels::GetChannel(std::uint64_t id) {
    auto const found = m_channels.find(id);
    if (found != m_channels.end()) {
        found->second->AddRef();
        return found->second;
    }
    auto channel = std::make_unique<CTovEventChannel>(*this, id);
    m_channels.emplace(id, channel.get());
    return channel.release();
}

ITovEventChannel* CTovEventChannels::GetAndRegister(std::uint64_t id, ITovEventConsumer* consumer,
                                                    int enabled) {
    ITovEventChannel* const channel = GetChannel(id);
    if (channel->RegisterConsumer(consumer, enabled)) return channel;
    channel->Release();
    return nullptr;
}

ITovEventChannel* CTovEventChannels::FindChannel(std::uint64_t id) {
    return m_channels.contains(id) ? GetChannel(id) : nullptr;
}

// The channel stays while the operation works on it, whoever gives references back inside.
template <class Operation>
int CTovEventChannels::With(std::uint64_t id, Operation operation) {
    auto const found = m_channels.find(id);
    if (found == m_channels.end()) return 0;
    CTovEventChannel& channel = *found->second;
    channel.AddRef();
    int const result = operation(channel);
    channel.Release();
    return result;
}

int CTovEventChannels::RegisterConsumer(std::uint64_t id, ITovEventConsumer* consumer, int enabled) {
    return With(id, [&](CTovEventChannel& channel) { return channel.RegisterConsumer(consumer, enabled); });
}

int CTovEventChannels::UnregisterConsumer(std::uint64_t id, ITovEventConsumer* consumer,
                                          ITovEventSupplier* supplier) {
    return With(id,
                [&](CTovEventChannel& channel) { return channel.UnregisterConsumer(consumer, supplier); });
}

int CTovEventChannels::SetConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer, int enabled) {
    return With(id, [&](CTovEventChannel& channel) { return channel.SetConsumerEnabled(consumer, enabled); });
}

int CTovEventChannels::IsConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer) {
    return With(id, [&](CTovEventChannel& channel) { return channel.IsConsumerEnabled(consumer); });
}

int CTovEventChannels::PushEvent(std::uint64_t id, ITovEvent* event, ITovEventSupplier* supplier) {
    return With(id, [&](CTovEventChannel& channel) { return channel.PushEvent(event, supplier); });
}

int CTovEventChannels::FlushConsumer(std::uint64_t id, ITovEventConsumer* consumer) {
    return With(id, [&](CTovEventChannel& channel) { return channel.FlushConsumer(consumer); });
}

int CTovEventChannels::DiscardConsumer(std::uint64_t id, ITovEventConsumer* consumer) {
    return With(id, [&](CTovEventChannel& channel) { return channel.DiscardConsumer(consumer); });
}

ITovEventChannels* TovGetITovEventChannels() {
    static Immortal<CTovEventChannels> channels;
    return &*channels;
}

}  // namespace tov
