#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The text of one numbered message, private to whoever holds it.
struct S_DeviceReply {
    int nSeq;
    std::string strText;
};

// Hands the reply that the worker waits for over from the receive thread, without a lock.
//
// The first message with the awaited number that is no notification is the reply, and nothing that follows it
// takes its place. The receive thread publishes a private copy once the message is stored; from then on
// HasReply is true.
//
// A worker that has seen the awaited number as the last one received takes the message for the answer,
// whatever it is: a decoder may guess the number and answer before the question, or give it to a
// notification. For that case the last other numbered message is kept as well, while a command runs and no
// longer. Such a number becomes visible before its message is stored; Take lets that receive finish.
class CReplyHandOver {
public:
    CReplyHandOver() = default;
    ~CReplyHandOver();
    CReplyHandOver(const CReplyHandOver&) = delete;
    CReplyHandOver& operator=(const CReplyHandOver&) = delete;

    // --- worker ---

    // A command begins: numbered messages are kept.
    void Open();
    // It has ended: none is kept any more.
    void Close();
    // From now on the reply with this number is awaited. Call it before the request is sent.
    void Expect(int nSeq);
    // True once the reply with this number has come, if it came after Expect.
    bool HasReply(int nSeq) const;
    // The reply; without one the other message with the awaited number; null when there is neither.
    std::unique_ptr<S_DeviceReply> Take();
    // No number is awaited any more.
    void ExpectNone();

    // --- receive thread ---

    enum class E_Kind { Reply, Notification };
    // The stretch of a receive from before its number becomes visible until its text is stored.
    class CReceiveScope {
    public:
        explicit CReceiveScope(CReplyHandOver& handOver);
        ~CReceiveScope(); // publishes the message, if it has a number and is wanted
        CReceiveScope(const CReceiveScope&) = delete;
        CReceiveScope& operator=(const CReceiveScope&) = delete;

    private:
        CReplyHandOver& m_handOver;
    };
    // Copies the message while a command runs; call it inside the scope, before the number becomes visible.
    // Throws std::bad_alloc.
    void Prepare(int nSeq, E_Kind kind, std::string_view text);

private:
    // States besides an awaited number, outside the range of all numbers.
    static constexpr int64_t NONE_AWAITED = int64_t{1} << 32; // a command runs
    static constexpr int64_t CLOSED = int64_t{2} << 32;       // none does

    using Slot = std::atomic<S_DeviceReply*>; // owns what it points to
    static std::unique_ptr<S_DeviceReply> TakeFrom(Slot& slot);
    bool IsClosed() const { return m_nAwaited.load(std::memory_order_acquire) == CLOSED; }
    bool IsAwaited(int nSeq) const { return m_nAwaited.load(std::memory_order_acquire) == nSeq; }
    void Publish();
    void PublishReply(std::unique_ptr<S_DeviceReply> pReply);
    void PublishOther(std::unique_ptr<S_DeviceReply> pOther);

    std::atomic<int64_t> m_nAwaited{CLOSED};
    std::atomic<int64_t> m_nArrived{NONE_AWAITED}; // the awaited number, once m_pReply holds its reply
    std::atomic<unsigned int> m_nReceives{0};      // odd while a receive scope is open
    Slot m_pReply{nullptr};                        // the awaited reply
    Slot m_pOther{nullptr};                        // the last other numbered message
    std::unique_ptr<S_DeviceReply> m_pPrepared;    // receive thread only
    E_Kind m_preparedKind = E_Kind::Reply;         // likewise
    std::unique_ptr<S_DeviceReply> m_pEarly; // worker only: the last one that came before it was awaited
};
