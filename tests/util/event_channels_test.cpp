#include <tov310/event_channels.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <random>

namespace tov {
namespace {

constexpr std::uint64_t channelId = 0x123456789ABCDEF0;

int livingEvents = 0;

struct CountedEvent : CTovEvent {
    TOV_DYNCREATE(CountedEvent, CTovEvent)
    explicit CountedEvent(unsigned reason = 0, int priority = ePriorityNormal)
        : CTovEvent(static_cast<ePriority>(priority), reason) {
        ++livingEvents;
    }
    ~CountedEvent() override {
        --livingEvents;
        if (atEnd) atEnd();
    }
    std::function<void()> atEnd;
};

struct Supplier : ITovEventSupplier {};

using Reasons = std::vector<unsigned>;

struct Consumer : ITovEventConsumer {
    void ReceiveEvent(ITovEvent* event) override {
        reasons.push_back(event->Reason());
        if (act) act(*event);
    }
    Reasons reasons;
    std::function<void(ITovEvent&)> act;
};

class EventChannelsTest : public testing::Test {
 protected:
    ~EventChannelsTest() override {
        if (channel != nullptr) channel->Release();
        EXPECT_EQ(channels->FindChannel(channelId), nullptr) << "a reference to the channel was lost";
        EXPECT_EQ(livingEvents, 0);
    }

    ITovEventChannels* channels = TovGetITovEventChannels();
    ITovEventChannel* channel = channels->GetChannel(channelId);
    Supplier supplier;
    std::array<Consumer, 2> consumers;  // adjacent, so their order in the channel is this one
    Consumer &a = consumers[0], &b = consumers[1];
};

TEST_F(EventChannelsTest, ChannelsLiveAsLongAsTheirReferences) {
    EXPECT_EQ(channels->FindChannel(channelId + 1), nullptr);
    for (auto* const found : {channels->FindChannel(channelId), channels->GetChannel(channelId)}) {
        EXPECT_EQ(found, channel);
        found->Release();
    }
    ASSERT_EQ(channels->GetAndRegister(channelId, &a, 1), channel);
    EXPECT_EQ(channels->GetAndRegister(channelId, &a, 1), nullptr);
    EXPECT_EQ(channels->GetAndRegister(channelId + 1, nullptr, 1), nullptr);
    EXPECT_EQ(channels->FindChannel(channelId + 1), nullptr);
    channel->ReleaseAfter(&a, nullptr);
    EXPECT_EQ(channel->RegisterConsumer(&a, 1), 1) << "is registered still";
}

TEST_F(EventChannelsTest, MisuseIsAnsweredAndChangesNothing) {
    CTovEvent event;
    std::vector const answers{channel->RegisterConsumer(nullptr, 1),  channel->SetConsumerEnabled(nullptr, 1),
                              channel->PushEvent(nullptr, &supplier), channel->PushEvent(&event, nullptr),
                              channel->FlushConsumer(nullptr),        channel->DiscardConsumer(nullptr)};
    EXPECT_EQ(answers, (std::vector{0, 0, -1, -1, -1, -1}));
    EXPECT_EQ(event.EventChannelId(), 0u);
    EXPECT_FALSE(event.IsKindOf(&CountedEvent::classCountedEvent));
    EXPECT_EQ(CTovEvent::QueryTovEvent("no such module", "CTovEvent"), nullptr);
}

TEST_F(EventChannelsTest, ByIdAnUnknownChannelAnswersZeroAndAKnownOneItself) {
    CTovEvent event;
    event.Reason(4);
    for (std::uint64_t const id : {channelId + 1, channelId}) {
        int const known = id == channelId;
        EXPECT_EQ(channels->RegisterConsumer(id, &a, 1), known);
        EXPECT_EQ(channels->IsConsumerEnabled(id, &a), known);
        EXPECT_EQ(channels->PushEvent(id, &event, &supplier), 0);
        EXPECT_EQ(channels->SetConsumerEnabled(id, &a, 0), known);
        EXPECT_EQ(channels->PushEvent(id, &event, &supplier), 0);
        EXPECT_EQ(channels->DiscardConsumer(id, &a), known);
        EXPECT_EQ(channels->PushEvent(id, &event, &supplier), 0);
        EXPECT_EQ(channels->FlushConsumer(id, &a), known);
        EXPECT_EQ(channels->UnregisterConsumer(id, &a, nullptr), known);
    }
    EXPECT_EQ(a.reasons, (Reasons{4, 4}));
    EXPECT_EQ(event.EventChannelId(), channelId);
}

TEST_F(EventChannelsTest, TheLastReferencesMayGoInsideAReceive) {
    for (bool const flush : {false, true}) {
        channel->RegisterConsumer(&a, !flush);
        channel->RegisterConsumer(&b, !flush);
        a.act = [this](ITovEvent& event) {
            event.Release();
            if (channel != nullptr) std::exchange(channel, nullptr)->Release();
        };
        ITovEventChannel* const used = channel;
        for (unsigned reason = 1; reason <= 2 && channel != nullptr; ++reason)
            channel->PushEvent(new CountedEvent(reason), &supplier);
        if (flush) used->FlushConsumer(&a);
        EXPECT_EQ(flush ? a.reasons : b.reasons, flush ? (Reasons{1, 2}) : (Reasons{1}));
        EXPECT_EQ(livingEvents, 0);
        EXPECT_EQ(channels->FindChannel(channelId), nullptr);
        channel = channels->GetChannel(channelId);
        a = b = Consumer();
    }
}

TEST_F(EventChannelsTest, AHeldEventKeepsItsSupplierWhoeverPushesItElsewhere) {
    Supplier other;
    a.act = [&](ITovEvent& event) { EXPECT_EQ(event.EventSupplier(), &other); };
    channel->RegisterConsumer(&a, 0);
    CTovEvent event;
    channel->PushEvent(&event, &other);
    ITovEventChannel* const elsewhere = channels->GetChannel(channelId + 1);
    elsewhere->PushEvent(&event, &supplier);
    elsewhere->Release();
    EXPECT_EQ(channel->FlushConsumer(&a), 1);
}

TEST_F(EventChannelsTest, WhatDiesOfAChannelMayUseTheChannels) {
    channel->RegisterConsumer(&a, 0);
    auto* const event = new CountedEvent;
    ITovEventChannel* found = channel;
    event->atEnd = [&] {
        found = channels->FindChannel(channelId);
        channels->GetChannel(channelId)->Release();
    };
    channel->PushEvent(event, &supplier);
    event->Release();
    std::exchange(channel, nullptr)->Release();
    EXPECT_EQ(found, nullptr);
}

TEST_F(EventChannelsTest, EventsOfAHostsOwnMakingAreDeliveredAndHeld) {
    struct Own : ITovEvent {
        // clang-format off
        bool IsKindOf(CRuntimeClass const*) const override { return true; }  // whatever it claims
        ITovEventSupplier* EventSupplier() const override { return nullptr; }
        std::uint64_t EventChannelId() const override { return 0; }
        void Priority(ePriority) override {}     ePriority Priority() const override { return ePriorityHigh; }
        void Reason(unsigned int) override {}    unsigned int Reason() const override { return 6; }
        void AddRef() override { ++references; } void Release() override { --references; }
        // clang-format on
        int references = 1;
    } own;
    channel->RegisterConsumer(&a, 1);
    channel->RegisterConsumer(&b, 0);
    channel->PushEvent(&own, &supplier);
    EXPECT_EQ(own.references, 2);
    EXPECT_EQ(channel->FlushConsumer(&b), 1);
    EXPECT_EQ(own.references, 1);
    EXPECT_EQ(a.reasons, b.reasons);
}

// The channel as one would tell it: copies of a map, and lists that are sorted at every step.
class ModelChannel {
 public:
    int RegisterConsumer(ITovEventConsumer* consumer, int enabled) {
        return m_records.try_emplace(consumer, std::make_shared<Record>(Record{enabled, 0, {}})).second;
    }
    int UnregisterConsumer(ITovEventConsumer* consumer, ITovEventSupplier* supplier) {
        for (auto const& from : m_suppliers)
            if (*from == supplier) *from = nullptr;
        if (Record* const record = Find(consumer)) record->held.clear();
        m_records.erase(consumer);
        return 1;
    }
    int SetConsumerEnabled(ITovEventConsumer* consumer, int enabled) {
        Record* const record = Find(consumer);
        if (record != nullptr) record->enabled = enabled;
        return record != nullptr;
    }
    int IsConsumerEnabled(ITovEventConsumer* consumer) {
        return Find(consumer) != nullptr && Find(consumer)->enabled;
    }
    int PushEvent(ITovEvent* event, ITovEventSupplier* supplier) {
        event->AddRef();
        Pushed const pushed{{event, [](ITovEvent* dropped) { dropped->Release(); }},
                            m_suppliers.emplace_back(std::make_shared<ITovEventSupplier*>(supplier)),
                            event->Priority()};
        for (auto const& [consumer, unused] : std::map(m_records)) {
            Record* const record = Find(consumer);
            if (record != nullptr && record->enabled) {
                Deliver(*consumer, pushed);
            } else if (record != nullptr) {
                record->held.push_back(pushed);
                std::ranges::stable_sort(record->held, std::greater{}, &Pushed::priority);
            }
        }
        return 0;
    }
    int FlushConsumer(ITovEventConsumer* consumer) {
        if (Find(consumer) == nullptr) return -1;
        auto const record = m_records[consumer];
        ++record->flushes;
        int delivered = 0;
        while (!record->held.empty()) {
            Pushed const first = record->held.front();
            record->held.erase(record->held.begin());
            delivered += Deliver(*consumer, first);
        }
        --record->flushes;
        return delivered;
    }
    int DiscardConsumer(ITovEventConsumer* consumer) {
        Record* const record = Find(consumer);
        if (record == nullptr || record->flushes > 0) return 0;
        return static_cast<int>(std::exchange(record->held, {}).size());
    }

    ITovEventSupplier* sender = nullptr;  // of the event that is being delivered

 private:
    struct Pushed {
        std::shared_ptr<ITovEvent> event;
        std::shared_ptr<ITovEventSupplier*> from;
        int priority;
    };
    struct Record {
        int enabled;
        int flushes;
        std::vector<Pushed> held;
    };

    Record* Find(ITovEventConsumer* consumer) {
        return m_records.contains(consumer) ? m_records[consumer].get() : nullptr;
    }
    bool Deliver(ITovEventConsumer& consumer, Pushed const& pushed) try {
        sender = *pushed.from;
        consumer.ReceiveEvent(pushed.event.get());
        return true;
    } catch (int) {
        return false;
    }

    std::map<ITovEventConsumer*, std::shared_ptr<Record>> m_records;
    std::vector<std::shared_ptr<ITovEventSupplier*>> m_suppliers;  // of all that was ever pushed
};

// Plays one script of random operations. What a consumer does inside its receive is drawn from the same
// stream, so two channels that behave alike write the same log.
template <class Channel>
class Script {
 public:
    Script(unsigned seed, Channel& channel) : m_channel(channel), m_random(seed) {
        for (Consumer& player : m_players)
            player.act = [this, &player](ITovEvent const& event) { Received(player, event); };
    }

    std::vector<long> Play() {
        for (int step = 0; step < 60; ++step) {
            m_budget = 25;
            Act();
        }
        for (Consumer& player : m_players)
            m_channel.UnregisterConsumer(&player, nullptr);
        EXPECT_EQ(livingEvents, 0);
        return m_log;
    }

 private:
    unsigned Draw(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    void Received(Consumer const& player, ITovEvent const& event) {
        ITovEventSupplier const* from = event.EventSupplier();
        if constexpr (std::is_same_v<Channel, ModelChannel>) from = m_channel.sender;
        long const number = from == nullptr ? -1 : from == &m_suppliers[0] ? 0 : 1;
        m_log.insert(m_log.end(), {-1, &player - m_players.data(), event.Reason(), number});
        for (unsigned actions = Draw(3); actions > 0; --actions)
            Act();
        if (Draw(5) == 0) throw 1;
    }

    int Do(unsigned operation, Consumer& player, Supplier& supplier) {
        // clang-format off
        switch (operation) {
            case 0: case 1: return m_channel.RegisterConsumer(&player, Draw(2) == 0);
            case 2: return m_channel.UnregisterConsumer(&player, nullptr);
            case 3: return m_channel.UnregisterConsumer(Draw(4) == 0 ? &player : nullptr, &supplier);
            case 4: case 5: return m_channel.SetConsumerEnabled(&player, Draw(2) == 0);
            case 6: return m_channel.FlushConsumer(&player);
            case 7: return m_channel.DiscardConsumer(&player);
            case 8: return m_channel.IsConsumerEnabled(&player);
            default: break;
        }
        // clang-format on
        auto* const event = new CountedEvent(++m_events, std::array{-1, 0, 1, 2, 4, 77}[Draw(6)]);
        int const result = m_channel.PushEvent(event, &supplier);
        event->Release();
        return result;
    }

    void Act() {
        if (m_budget-- <= 0) return;
        unsigned const operation = Draw(11);
        Consumer& player = m_players[Draw(6)];
        m_log.push_back(Do(operation, player, m_suppliers[Draw(2)]));
    }

    Channel& m_channel;
    std::mt19937 m_random;
    std::array<Consumer, 6> m_players;
    std::array<Supplier, 2> m_suppliers;
    std::vector<long> m_log;
    int m_budget = 0;
    unsigned m_events = 0;
};

TEST_F(EventChannelsTest, AChannelBehavesAsItsSimpleModel) {
    std::size_t noted = 0;
    for (unsigned seed = 0; seed < 4000; ++seed) {
        ModelChannel model;
        auto const expected = Script(seed, model).Play();
        ASSERT_EQ(Script(seed, *channel).Play(), expected) << "seed " << seed;
        noted += expected.size();
    }
    EXPECT_GT(noted, 500'000u) << "scripts that deliver nothing show nothing";
}

}  // namespace
}  // namespace tov
