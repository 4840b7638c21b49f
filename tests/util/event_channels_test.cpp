#include <tov310/event_channels.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace tov {
namespace {

constexpr std::uint64_t channelId = 0x123456789ABCDEF0;

int livingEvents = 0;

struct CountedEvent : CTovEvent {
    TOV_DYNCREATE(CountedEvent, CTovEvent)
    CountedEvent() { ++livingEvents; }
    CountedEvent(ePriority priority, unsigned reason) : CTovEvent(priority, reason) { ++livingEvents; }
    ~CountedEvent() override {
        --livingEvents;
        if (atEnd) atEnd();
    }
    std::function<void()> atEnd;
};

struct Supplier : ITovEventSupplier {};

struct Consumer : ITovEventConsumer {
    void ReceiveEvent(ITovEvent* event) override {
        reasons.push_back(event->Reason());
        if (act) act(*event);
    }
    std::vector<unsigned> reasons;
    std::function<void(ITovEvent&)> act;
};

using Reasons = std::vector<unsigned>;

class EventChannelsTest : public testing::Test {
 protected:
    ~EventChannelsTest() override {
        if (channel != nullptr) channel->Release();
        EXPECT_EQ(channels->FindChannel(channelId), nullptr) << "a reference to the channel was lost";
        EXPECT_EQ(livingEvents, 0);
    }

    void Push(unsigned reason, int priority = ITovEvent::ePriorityNormal) {
        auto* const event = new CountedEvent(static_cast<ITovEvent::ePriority>(priority), reason);
        EXPECT_EQ(channel->PushEvent(event, &supplier), 0);
        event->Release();
    }

    ITovEventChannels* channels = TovGetITovEventChannels();
    ITovEventChannel* channel = channels->GetChannel(channelId);
    Supplier supplier;
    std::array<Consumer, 3> consumers;  // adjacent, so their order in the channel is this one
    Consumer &a = consumers[0], &b = consumers[1], &c = consumers[2];
};

TEST_F(EventChannelsTest, AnEventCarriesWhatItWasGiven) {
    CTovEvent event;
    EXPECT_EQ(event.Priority(), ITovEvent::ePriorityNormal);
    EXPECT_EQ(event.Priority(), 2);
    EXPECT_EQ(event.Reason(), 0u);
    EXPECT_EQ(event.EventSupplier(), nullptr);
    EXPECT_EQ(event.EventChannelId(), 0u);
    event.Priority(static_cast<ITovEvent::ePriority>(-7));
    event.Reason(9);
    EXPECT_EQ(event.Priority(), -7);
    EXPECT_EQ(event.Reason(), 9u);
    ITovEvent const& interface = event;
    EXPECT_TRUE(interface.IsKindOf(&CTovEvent::classCTovEvent));
    EXPECT_FALSE(interface.IsKindOf(&CountedEvent::classCountedEvent));
    EXPECT_EQ(CTovEvent::QueryTovEvent("no such module", "CTovEvent"), nullptr);
}

TEST_F(EventChannelsTest, ChannelsLiveAsLongAsTheirReferences) {
    EXPECT_EQ(channel->ChannelId(), channelId);
    EXPECT_EQ(channels->FindChannel(channelId + 1), nullptr);
    EXPECT_EQ(channels->FindChannel(channelId), channel);
    EXPECT_EQ(channels->GetChannel(channelId), channel);
    channel->Release();
    channel->Release();
    ASSERT_EQ(channels->GetAndRegister(channelId, &a, 1), channel);
    EXPECT_EQ(channels->GetAndRegister(channelId, &a, 1), nullptr);
    EXPECT_EQ(channels->GetAndRegister(channelId + 1, nullptr, 1), nullptr);
    EXPECT_EQ(channels->FindChannel(channelId + 1), nullptr);
    channel->ReleaseAfter(&a, nullptr);
    EXPECT_EQ(channel->RegisterConsumer(&a, 1), 1) << "is registered still";
}

TEST_F(EventChannelsTest, MisuseIsAnsweredAndChangesNothing) {
    CTovEvent event;
    EXPECT_EQ(channel->RegisterConsumer(nullptr, 1), 0);
    EXPECT_EQ(channel->SetConsumerEnabled(nullptr, 1), 0);
    EXPECT_EQ(channel->SetConsumerEnabled(&a, 1), 0);
    EXPECT_EQ(channel->IsConsumerEnabled(&a), 0);
    EXPECT_EQ(channel->PushEvent(nullptr, &supplier), -1);
    EXPECT_EQ(channel->PushEvent(&event, nullptr), -1);
    EXPECT_EQ(channel->FlushConsumer(nullptr), -1);
    EXPECT_EQ(channel->FlushConsumer(&a), -1);
    EXPECT_EQ(channel->DiscardConsumer(nullptr), -1);
    EXPECT_EQ(channel->DiscardConsumer(&a), 0);
    EXPECT_EQ(channel->UnregisterConsumer(nullptr, nullptr), 1);
    EXPECT_EQ(event.EventChannelId(), 0u);
    EXPECT_EQ(channel->RegisterConsumer(&a, 0), 1);
    EXPECT_EQ(channel->RegisterConsumer(&a, 1), 0);
    EXPECT_EQ(channel->IsConsumerEnabled(&a), 0) << "a second registration keeps the first one's state";
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
    EXPECT_EQ(event.EventSupplier(), &supplier);
}

TEST_F(EventChannelsTest, HeldEventsWaitForAFlushAndComeByPriority) {
    channel->RegisterConsumer(&a, 0);
    unsigned reason = 0;
    for (int const priority : {2, 0, 4, 2, 4, 77, 0})
        Push(++reason, priority);
    EXPECT_EQ(livingEvents, 7);
    EXPECT_EQ(channel->SetConsumerEnabled(&a, 1), 1);
    EXPECT_TRUE(a.reasons.empty());
    Push(8, -1);
    EXPECT_EQ(a.reasons, (Reasons{8})) << "an enabled consumer does not wait for what is held";
    EXPECT_EQ(channel->FlushConsumer(&a), 7);
    EXPECT_EQ(a.reasons, (Reasons{8, 6, 3, 5, 1, 4, 2, 7}));
    EXPECT_EQ(channel->FlushConsumer(&a), 0);
}

TEST_F(EventChannelsTest, TheLastReferenceMayGoInsideAReceive) {
    for (bool const flush : {false, true}) {
        channel->RegisterConsumer(&a, 1);
        channel->RegisterConsumer(&b, !flush);
        if (flush) {
            Push(1);
            Push(2);
        }
        (flush ? b : a).act = [this](ITovEvent&) {
            if (channel != nullptr) channel->Release();
            channel = nullptr;
        };
        ITovEventChannel* const used = channel;
        auto* const event = new CountedEvent(ITovEvent::ePriorityNormal, 3);
        if (flush) {
            EXPECT_EQ(used->FlushConsumer(&b), 2);
        } else {
            EXPECT_EQ(used->PushEvent(event, &supplier), 0);
            EXPECT_EQ(b.reasons, (Reasons{3})) << "a push under way goes on";
        }
        event->Release();
        EXPECT_EQ(livingEvents, 0);
        EXPECT_EQ(channels->FindChannel(channelId), nullptr);
        channel = channels->GetChannel(channelId);
        a = b = Consumer();
    }
}

TEST_F(EventChannelsTest, AnEventMayLoseItsOwnerInsideAReceive) {
    auto* const event = new CountedEvent(ITovEvent::ePriorityNormal, 5);
    channel->RegisterConsumer(&a, 1);
    channel->RegisterConsumer(&b, 1);
    a.act = [](ITovEvent& received) { received.Release(); };
    channel->PushEvent(event, &supplier);
    EXPECT_EQ(b.reasons, (Reasons{5}));
}

TEST_F(EventChannelsTest, ASupplierThatLeavesIsForgottenByTheEventsThatAreHeld) {
    Supplier other;
    std::vector<ITovEventSupplier*> seen;
    a.act = [&seen](ITovEvent& event) { seen.push_back(event.EventSupplier()); };
    channel->RegisterConsumer(&a, 0);
    Push(1);
    auto* const event = new CountedEvent(ITovEvent::ePriorityNormal, 2);
    channel->PushEvent(event, &other);
    EXPECT_EQ(channel->UnregisterConsumer(nullptr, &supplier), 1);
    // The same event again by somebody else elsewhere: here it is still that of the one who pushed it here.
    ITovEventChannel* const elsewhere = channels->GetChannel(channelId + 1);
    elsewhere->PushEvent(event, &supplier);
    elsewhere->Release();
    event->Release();
    EXPECT_EQ(channel->FlushConsumer(&a), 2);
    EXPECT_EQ(seen, (std::vector<ITovEventSupplier*>{nullptr, &other}));
}

TEST_F(EventChannelsTest, WhatDiesOfAChannelMayUseTheChannels) {
    channel->RegisterConsumer(&a, 0);
    auto* const event = new CountedEvent;
    ITovEventChannel* found = channel;
    event->atEnd = [&] {
        found = channels->FindChannel(channelId);
        if (ITovEventChannel* const fresh = channels->GetChannel(channelId)) fresh->Release();
    };
    channel->PushEvent(event, &supplier);
    event->Release();
    std::exchange(channel, nullptr)->Release();
    EXPECT_EQ(found, nullptr);
}

// An event that does not come from the library's class.
TEST_F(EventChannelsTest, EventsOfAHostsOwnMakingAreDeliveredAndHeld) {
    struct Own : ITovEvent {
        bool IsKindOf(CRuntimeClass const*) const override { return true; }  // whatever it claims
        ITovEventSupplier* EventSupplier() const override { return nullptr; }
        std::uint64_t EventChannelId() const override { return 0; }
        void Priority(ePriority) override {}
        ePriority Priority() const override { return ePriorityHigh; }
        void Reason(unsigned int) override {}
        unsigned int Reason() const override { return 6; }
        void AddRef() override { ++references; }
        void Release() override { --references; }
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

// The channel as one would tell it: a map of copies and a list that is sorted at every step.
class ModelChannel : public ITovEventChannel {
 public:
    int RegisterConsumer(ITovEventConsumer* consumer, int enabled) override {
        return m_records.try_emplace(consumer, std::make_shared<Record>(Record{enabled, 0, {}})).second;
    }
    int UnregisterConsumer(ITovEventConsumer* consumer, ITovEventSupplier* supplier) override {
        auto const forget = [supplier](Held& held) {
            if (supplier != nullptr && held.supplier == supplier) held.supplier = nullptr;
        };
        for (auto const& [other, record] : m_records)
            std::ranges::for_each(record->held, forget);
        for (Held* const held : m_passing)
            forget(*held);
        auto const found = m_records.find(consumer);
        if (found == m_records.end()) return 1;
        for (Held const& held : found->second->held)
            held.event->Release();
        found->second->held.clear();
        m_records.erase(found);
        return 1;
    }
    int SetConsumerEnabled(ITovEventConsumer* consumer, int enabled) override {
        if (!m_records.contains(consumer)) return 0;
        m_records[consumer]->enabled = enabled;
        return 1;
    }
    int IsConsumerEnabled(ITovEventConsumer* consumer) override {
        return m_records.contains(consumer) ? m_records[consumer]->enabled : 0;
    }
    int PushEvent(ITovEvent* event, ITovEventSupplier* supplier) override {
        Held passing{event, supplier, event->Priority()};
        for (auto const& copy = std::map(m_records); auto const& [consumer, unused] : copy) {
            if (!m_records.contains(consumer)) continue;
            if (m_records[consumer]->enabled) {
                Deliver(*consumer, passing);
                continue;
            }
            event->AddRef();
            auto& list = m_records[consumer]->held;
            list.push_back(passing);
            std::ranges::stable_sort(list, std::greater{}, &Held::priority);
        }
        return 0;
    }
    int FlushConsumer(ITovEventConsumer* consumer) override {
        if (!m_records.contains(consumer)) return -1;
        auto const record = m_records[consumer];
        ++record->flushes;
        int delivered = 0;
        while (!record->held.empty()) {
            Held held = record->held.front();
            record->held.pop_front();
            delivered += Deliver(*consumer, held);
            held.event->Release();
        }
        --record->flushes;
        return delivered;
    }
    int DiscardConsumer(ITovEventConsumer* consumer) override {
        if (!m_records.contains(consumer) || m_records[consumer]->flushes > 0) return 0;
        auto const dropped = std::exchange(m_records[consumer]->held, {});
        for (Held const& held : dropped)
            held.event->Release();
        return static_cast<int>(dropped.size());
    }
    void Release() override {
        while (!m_records.empty())
            UnregisterConsumer(m_records.begin()->first, nullptr);
    }
    void ReleaseAfter(ITovEventConsumer*, ITovEventSupplier*) override {}
    std::uint64_t ChannelId() const override { return channelId; }

    ITovEventSupplier* m_supplier = nullptr;  // of the event that is being delivered

 private:
    struct Held {
        ITovEvent* event;
        ITovEventSupplier* supplier;
        int priority;
    };
    struct Record {
        int enabled;
        int flushes;
        std::deque<Held> held;
    };

    bool Deliver(ITovEventConsumer& consumer, Held& held) {
        m_supplier = held.supplier;
        m_passing.push_back(&held);
        bool received = true;
        try {
            consumer.ReceiveEvent(held.event);
        } catch (int) {
            received = false;
        }
        m_passing.pop_back();
        return received;
    }

    std::map<ITovEventConsumer*, std::shared_ptr<Record>> m_records;
    std::vector<Held*> m_passing;
};

// Plays one script of random operations. What a consumer does inside its receive is drawn from the same
// stream, so two channels that behave alike write the same log.
class Script {
 public:
    Script(unsigned seed, ModelChannel* model)
        : m_model(model), m_channel(model), m_random(seed), m_players(6, Player(*this)) {
        if (model == nullptr) m_channel = TovGetITovEventChannels()->GetChannel(channelId);
    }

    std::vector<long> Play() {
        for (int step = 0; step < 60; ++step) {
            m_budget = 25;
            Act();
            if (m_references == 0) End();
        }
        if (m_references > 0) {
            m_references = 0;
            if (m_model == nullptr) m_channel->Release();
        }
        End();
        if (m_model == nullptr) std::exchange(m_channel, nullptr)->Release();
        return m_log;
    }

 private:
    struct Player : ITovEventConsumer {
        explicit Player(Script& owner) : script(owner) {}
        void ReceiveEvent(ITovEvent* event) override { script.Received(*this, *event); }
        Script& script;
    };

    int Draw(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    void Note(std::initializer_list<long> numbers) { m_log.insert(m_log.end(), numbers); }

    void Received(Player const& player, ITovEvent const& event) {
        auto* const supplier = m_model != nullptr ? m_model->m_supplier : event.EventSupplier();
        Note({-1, &player - m_players.data(), event.Reason(), SupplierNumber(supplier)});
        for (int actions = Draw(3); actions > 0; --actions)
            Act();
        if (Draw(5) == 0) throw 1;
    }

    long SupplierNumber(ITovEventSupplier const* supplier) const {
        for (long number = 0; number < 2; ++number) {
            if (supplier == &m_suppliers[static_cast<std::size_t>(number)]) return number;
        }
        return -1;
    }

    void Act() {
        if (m_budget-- <= 0) return;
        Player& player = m_players[static_cast<std::size_t>(Draw(6))];
        Supplier& supplier = m_suppliers[static_cast<std::size_t>(Draw(2))];
        int const operation = Draw(12);
        long result = 0;
        switch (operation) {
            case 0:
            case 1:
                result = m_channel->RegisterConsumer(&player, Draw(2));
                break;
            case 2:
                result = m_channel->UnregisterConsumer(&player, nullptr);
                break;
            case 3:
                result = m_channel->UnregisterConsumer(Draw(4) == 0 ? &player : nullptr, &supplier);
                break;
            case 4:
            case 5:
                result = m_channel->SetConsumerEnabled(&player, Draw(2));
                break;
            case 6:
                ++m_depth;
                result = m_channel->FlushConsumer(&player);
                --m_depth;
                break;
            case 7:
                result = m_channel->DiscardConsumer(&player);
                break;
            case 8:
                result = m_channel->IsConsumerEnabled(&player);
                break;
            case 9:
                if (Draw(8) == 0 && m_references > 0) {
                    --m_references;
                    if (m_model == nullptr)
                        (m_depth > 0 ? m_channel->Release() : void(m_releaseLater = true));
                }
                break;
            default: {
                auto* const event = new CountedEvent(static_cast<ITovEvent::ePriority>(Draw(4)), ++m_events);
                ++m_depth;
                result = m_channel->PushEvent(event, &supplier);
                --m_depth;
                event->Release();
            }
        }
        Note({operation, result});
    }

    // The channel has lost its last reference: everything begins anew.
    void End() {
        if (m_model != nullptr) {
            m_model->Release();
        } else {
            if (std::exchange(m_releaseLater, false)) m_channel->Release();
            EXPECT_EQ(TovGetITovEventChannels()->FindChannel(channelId), nullptr);
            m_channel = TovGetITovEventChannels()->GetChannel(channelId);
        }
        EXPECT_EQ(livingEvents, 0);
        m_references = 1;
    }

    ModelChannel* m_model;
    ITovEventChannel* m_channel;
    std::mt19937 m_random;
    std::vector<Player> m_players;
    std::array<Supplier, 2> m_suppliers;
    std::vector<long> m_log;
    int m_references = 1;
    int m_budget = 0;
    int m_depth = 0;
    unsigned m_events = 0;
    bool m_releaseLater = false;
};

TEST(EventChannelsScripts, AChannelBehavesAsItsSimpleModel) {
    std::size_t received = 0;
    for (unsigned seed = 0; seed < 4000; ++seed) {
        ModelChannel model;
        auto const expected = Script(seed, &model).Play();
        ASSERT_EQ(Script(seed, nullptr).Play(), expected) << "seed " << seed;
        received += static_cast<std::size_t>(std::ranges::count(expected, -1));
    }
    EXPECT_GT(received, 50'000u) << "scripts that deliver nothing show nothing";
}

}  // namespace
}  // namespace tov
