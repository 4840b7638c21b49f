// One channel and the table of all, from inside.
//
// Consumers stand in a vector ordered by address, so a push without surprises is a walk over adjacent
// records. Whoever changes the table during pushes first gives each of them a copy of what it has still to
// visit (Push): the price of a change is paid by the change.
#pragma once

#include <tov310/event_channels.h>

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace tov {

class CTovEventChannels;

// A counted reference to an event, through which the channel writes into it. Events of a host's own making
// that do not come from CTovEvent are delivered as they are.
class CTovEventPriv {
 public:
    explicit CTovEventPriv(ITovEvent* event) : m_event(event) { m_event->AddRef(); }
    CTovEventPriv(CTovEventPriv&& other) noexcept : m_event(std::exchange(other.m_event, nullptr)) {}
    CTovEventPriv& operator=(CTovEventPriv&&) = delete;
    ~CTovEventPriv() {
        if (m_event != nullptr) m_event->Release();
    }

    ITovEvent* Event() const { return m_event; }
    void Stamp(std::uint64_t channel, ITovEventSupplier* supplier) const;
    void ForgetSupplier(ITovEventSupplier const* supplier) const;

 private:
    ITovEvent* m_event;
};

class CTovEventChannel final : public ITovEventChannel {
 public:
    CTovEventChannel(CTovEventChannels& owner, std::uint64_t id) : m_owner(owner), m_id(id) {}
    CTovEventChannel(CTovEventChannel const&) = delete;
    CTovEventChannel& operator=(CTovEventChannel const&) = delete;
    ~CTovEventChannel() override;

    void AddRef() { ++m_references; }

    int RegisterConsumer(ITovEventConsumer* consumer, int enabled) override;
    int UnregisterConsumer(ITovEventConsumer* consumer, ITovEventSupplier* supplier) override;
    int SetConsumerEnabled(ITovEventConsumer* consumer, int enabled) override;
    int IsConsumerEnabled(ITovEventConsumer* consumer) override;
    int PushEvent(ITovEvent* event, ITovEventSupplier* supplier) override;
    int FlushConsumer(ITovEventConsumer* consumer) override;
    int DiscardConsumer(ITovEventConsumer* consumer) override;
    void Release() override;
    void ReleaseAfter(ITovEventConsumer* consumer, ITovEventSupplier* supplier) override;
    std::uint64_t ChannelId() const override;

 private:
    struct HeldEvent {
        CTovEventPriv event;
        ITovEventSupplier* supplier;
    };
    // By priority; equals stay in the order in which they came.
    using HeldEvents = std::multimap<int, HeldEvent, std::greater<>>;

    struct Consumer {
        ITovEventConsumer* consumer;
        int enabled;
        HeldEvents held;
    };
    using Consumers = std::vector<Consumer>;

    // An event on its way to consumers.
    struct Passing {
        CTovEventPriv const& event;
        ITovEventSupplier* supplier;
        void Forget(ITovEventSupplier const* leaving);
    };

    // A push under way. It walks the table by position until somebody changes the table, and from then on its
    // copy of the consumers that were still to come.
    struct Push {
        Push* outer;
        Passing passing;
        std::size_t next = 0;
        bool detached = false;
        std::vector<ITovEventConsumer*> copy{};
    };

    // A flush under way.
    struct Flush {
        Flush* outer;
        ITovEventConsumer* consumer;
        Passing* passing = nullptr;
        bool removed = false;
    };

    // Keeps the channel while it works, and an entry in a list of what is under way.
    template <class Entry>
    class Work;

    Consumers::iterator Place(ITovEventConsumer* consumer);
    Consumer* Find(ITovEventConsumer* consumer);
    Consumer* NextOf(Push& push);
    void BeforeChange();
    bool IsBeingFlushed(ITovEventConsumer* consumer) const;
    void ForgetSupplier(ITovEventSupplier const* supplier);
    void Hold(ITovEventConsumer* consumer, Passing const& passing);
    static bool Deliver(ITovEventConsumer& consumer, ITovEvent& event) noexcept;

    long m_references = 1;
    CTovEventChannels& m_owner;
    std::uint64_t m_id;
    Consumers m_consumers;
    Push* m_pushes = nullptr;
    Flush* m_flushes = nullptr;
};

class CTovEventChannels final : public ITovEventChannels {
 public:
    ITovEventChannel* GetChannel(std::uint64_t id) override;
    ITovEventChannel* GetAndRegister(std::uint64_t id, ITovEventConsumer* consumer, int enabled) override;
    ITovEventChannel* FindChannel(std::uint64_t id) override;
    int RegisterConsumer(std::uint64_t id, ITovEventConsumer* consumer, int enabled) override;
    int UnregisterConsumer(std::uint64_t id, ITovEventConsumer* consumer,
                           ITovEventSupplier* supplier) override;
    int SetConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer, int enabled) override;
    int IsConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer) override;
    int PushEvent(std::uint64_t id, ITovEvent* event, ITovEventSupplier* supplier) override;
    int FlushConsumer(std::uint64_t id, ITovEventConsumer* consumer) override;
    int DiscardConsumer(std::uint64_t id, ITovEventConsumer* consumer) override;

    void Forget(std::uint64_t id) { m_channels.erase(id); }

 private:
    template <class Operation>
    int With(std::uint64_t id, Operation operation);

    std::map<std::uint64_t, CTovEventChannel*> m_channels;
};

}  // namespace tov
