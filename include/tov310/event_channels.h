// Publish and subscribe inside the process. A supplier pushes an event into a channel named by a 64-bit id;
// the channel hands it at once to every enabled consumer that is registered there and holds it for every
// disabled one until that is flushed.
//
//     ITovEventChannel* channel = TovGetITovEventChannels()->GetAndRegister(surveyChanged, &view, 1);
//     auto* event = new CTovEvent(ITovEvent::ePriorityHigh);
//     channel->PushEvent(event, &survey);
//     event->Release();
//     ...
//     channel->ReleaseAfter(&view, nullptr);
//
// All calls come from one thread, the user-interface thread; nothing here is locked. A consumer may do
// anything inside its receive operation: push, register, unregister itself or others, flush, discard, and
// give back the last reference of the channel it is called from. What a consumer throws is caught and lost.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/types.h>

namespace tov {

// Who pushes events. It is named by its address; a consumer may dynamic_cast from it to what it knows. A
// supplier that goes away first takes itself out of every channel where its events may be held
// (UnregisterConsumer).
class TOV_CORE_API ITovEventSupplier {
 public:
    ITovEventSupplier() = default;
    ITovEventSupplier(ITovEventSupplier const&) = default;
    ITovEventSupplier& operator=(ITovEventSupplier const&) = default;
    virtual ~ITovEventSupplier() = 0;
};

// What is pushed. Counted: who made it owns the first reference, a channel that holds it has one of its own,
// and a consumer that wants to keep it takes one.
class TOV_CORE_API ITovEvent {
 public:
    // The larger is delivered first when a consumer is flushed; among equals the one that came first. Any int
    // may be cast to it.
    enum ePriority : int {
        ePriorityLowest = 0,
        ePriorityLow = 1,
        ePriorityNormal = 2,
        ePriorityHigh = 3,
        ePriorityHighest = 4,
    };

    virtual bool IsKindOf(CRuntimeClass const* c) const = 0;

    // Who pushed it last; null before, and when the supplier has left the channel that held the event.
    virtual ITovEventSupplier* EventSupplier() const = 0;

    // The channel into which it was pushed last; 0 before.
    virtual std::uint64_t EventChannelId() const = 0;

    // A channel reads the priority when it takes the event into a consumer's list; later changes do not move
    // it.
    virtual void Priority(ePriority priority) = 0;
    virtual ePriority Priority() const = 0;

    // Free for the application.
    virtual void Reason(unsigned int reason) = 0;
    virtual unsigned int Reason() const = 0;

    virtual void AddRef() = 0;
    virtual void Release() = 0;

 protected:
    ITovEvent() = default;
    virtual ~ITovEvent();
};

// Who receives events. The channel does not own it: a consumer unregisters before it goes.
class TOV_CORE_API ITovEventConsumer {
 public:
    // The event is the caller's; one that is to be kept needs a reference of its own.
    virtual void ReceiveEvent(ITovEvent* event) = 0;

 protected:
    ITovEventConsumer() = default;
    ITovEventConsumer(ITovEventConsumer const&) = default;
    ITovEventConsumer& operator=(ITovEventConsumer const&) = default;
    virtual ~ITovEventConsumer();
};

// A channel. It lives as long as there are references to it; a push or a flush under way has one.
class TOV_CORE_API ITovEventChannel {
 public:
    // 1 when the consumer was added; 0 for null and for one that is registered already, whose state then
    // stays.
    virtual int RegisterConsumer(ITovEventConsumer* consumer, int enabled) = 0;

    // Takes the consumer out, if it is not null, and drops what is held for it. One that is being flushed
    // gets nothing more. With a supplier, the events of that supplier which are held for anybody lose their
    // pointer to it. Either may be null. Answers 1.
    virtual int UnregisterConsumer(ITovEventConsumer* consumer, ITovEventSupplier* supplier) = 0;

    // Takes effect at once, also for a push under way. What is held stays held. 0 for null or unknown, else
    // 1.
    virtual int SetConsumerEnabled(ITovEventConsumer* consumer, int enabled) = 0;

    // 0 for null or unknown.
    virtual int IsConsumerEnabled(ITovEventConsumer* consumer) = 0;

    // Delivers to the enabled consumers and holds for the others; those that register meanwhile are passed
    // over. -1 when an argument is null, else 0.
    virtual int PushEvent(ITovEvent* event, ITovEventSupplier* supplier) = 0;

    // Delivers what is held for the consumer, whether it is enabled or not, until nothing is left, what comes
    // in meanwhile included: a consumer that holds its events must not push to itself while it receives. The
    // number of events that were received without a failure; -1 for null or unknown.
    virtual int FlushConsumer(ITovEventConsumer* consumer) = 0;

    // Drops what is held for the consumer, unless it is being flushed. The number dropped; -1 for null.
    virtual int DiscardConsumer(ITovEventConsumer* consumer) = 0;

    // Gives one reference back. After the last one the channel is gone, and what it held with it.
    virtual void Release() = 0;

    // UnregisterConsumer, then Release.
    virtual void ReleaseAfter(ITovEventConsumer* consumer, ITovEventSupplier* supplier) = 0;

    virtual std::uint64_t ChannelId() const = 0;

 protected:
    ITovEventChannel() = default;
    virtual ~ITovEventChannel();
};

// All channels of the process.
class TOV_CORE_API ITovEventChannels {
 public:
    // The channel with a further reference for the caller; made at the first use.
    virtual ITovEventChannel* GetChannel(std::uint64_t id) = 0;

    // The same with the consumer registered; null, without a reference, when that failed.
    virtual ITovEventChannel* GetAndRegister(std::uint64_t id, ITovEventConsumer* consumer, int enabled) = 0;

    // As GetChannel, but null where there is no such channel.
    virtual ITovEventChannel* FindChannel(std::uint64_t id) = 0;

    // The operations of the channel with the id; 0 where there is none.
    virtual int RegisterConsumer(std::uint64_t id, ITovEventConsumer* consumer, int enabled) = 0;
    virtual int UnregisterConsumer(std::uint64_t id, ITovEventConsumer* consumer,
                                   ITovEventSupplier* supplier) = 0;
    virtual int SetConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer, int enabled) = 0;
    virtual int IsConsumerEnabled(std::uint64_t id, ITovEventConsumer* consumer) = 0;
    virtual int PushEvent(std::uint64_t id, ITovEvent* event, ITovEventSupplier* supplier) = 0;
    virtual int FlushConsumer(std::uint64_t id, ITovEventConsumer* consumer) = 0;
    virtual int DiscardConsumer(std::uint64_t id, ITovEventConsumer* consumer) = 0;

 protected:
    ITovEventChannels() = default;
    virtual ~ITovEventChannels();
};

// The channels of the process. Never null, valid until the process ends.
TOV_CORE_API ITovEventChannels* TovGetITovEventChannels();

// The event of the library; hosts derive from it to carry more. Made with new and ended by Release: the maker
// owns the first reference. The count is a plain number.
class TOV_CORE_API CTovEvent : public CObject, public ITovEvent {
    TOV_DYNCREATE(CTovEvent, CObject)
 public:
    CTovEvent() = default;
    explicit CTovEvent(ePriority priority) : m_priority(priority) {}
    CTovEvent(ePriority priority, unsigned int reason) : m_priority(priority), m_reason(reason) {}
    CTovEvent(CTovEvent const&) = delete;
    CTovEvent& operator=(CTovEvent const&) = delete;
    ~CTovEvent() override;

    bool IsKindOf(CRuntimeClass const* c) const override;
    ITovEventSupplier* EventSupplier() const override;
    std::uint64_t EventChannelId() const override;
    void Priority(ePriority priority) override;
    ePriority Priority() const override;
    void Reason(unsigned int reason) override;
    unsigned int Reason() const override;
    void AddRef() override;
    void Release() override;

    // The class of an event from a module that is loaded at run time: TovQueryRuntimeClass without its
    // errors.
    static CRuntimeClass const* QueryTovEvent(char const* module, char const* className);

 private:
    friend class CTovEventPriv;

    long m_references = 1;
    ITovEventSupplier* m_supplier = nullptr;
    std::uint64_t m_channelId = 0;
    ePriority m_priority = ePriorityNormal;
    unsigned int m_reason = 0;
};

}  // namespace tov
