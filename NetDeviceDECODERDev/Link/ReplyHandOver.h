#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Lock.h"

// The text of one numbered message, private to its holder.
struct S_DeviceReply {
    int nSeq;
    std::string strText;
    size_t nBeside = 0; // bytes of another message that was kept when this one was taken
};

// Passes the reply that the worker waits for from the receive thread to the worker. The lock is held while
// pointers change hands, never while a text is copied.
//
// The first message with the awaited number that is no notification and comes after Expect is the reply:
// HasReply is true from then on, and nothing that follows takes its place.
//
// A worker that has seen the awaited number as the last one received takes that message for the reply,
// whatever it is: a decoder may guess the number and reply before the request, or number a notification with
// it. So two texts are kept while a command runs, and none between commands: until the reply comes, the last
// message with the awaited number, whatever has come since the worker looked; and the last one with another
// number, which may be awaited next. A number becomes visible before its message is stored; Take lets that
// receive finish.
class CReplyHandOver {
public:
    CReplyHandOver() = default;
    CReplyHandOver(const CReplyHandOver&) = delete;
    CReplyHandOver& operator=(const CReplyHandOver&) = delete;

    // --- worker ---

    // A command begins: numbered messages are kept from now on, the one being received included. Numbers
    // visible before may have no message.
    void Open();
    // It has ended: no messages are kept any more.
    void Close();
    // Awaits the reply with this number from now on. Call before sending the request.
    void Expect(int nSeq);
    // True once the reply with this number has come, if it came after Expect.
    bool HasReply(int nSeq) const;
    // The reply, or else the last message with the awaited number; null when there is neither.
    std::unique_ptr<S_DeviceReply> Take();
    // No number is awaited any more.
    void ExpectNone();

    // --- receive thread ---

    enum class E_Kind { Reply, Notification };
    // Spans a receive from before its number becomes visible until its text is stored.
    class CReceiveScope {
    public:
        explicit CReceiveScope(CReplyHandOver& handOver);
        ~CReceiveScope(); // publishes the message, if it has a number and is wanted
        CReceiveScope(const CReceiveScope&) = delete;
        CReceiveScope& operator=(const CReceiveScope&) = delete;

    private:
        CReplyHandOver& m_handOver;
    };
    // Copies the message while a command runs; call inside the scope, before the number becomes visible. The
    // text must stay valid until the scope ends: if a command has begun since, it is copied then, and lost if
    // there is no memory. Throws std::bad_alloc.
    void Prepare(int nSeq, E_Kind kind, std::string_view text);

private:
    struct SReceived {
        int nSeq;
        E_Kind kind;
        std::string_view text;

        std::unique_ptr<S_DeviceReply> Copy() const;
    };

    bool IsOpen() const;
    void Publish();
    void Keep(const SReceived& received);

    mutable CLock m_lock;
    bool m_bOpen TVWALL_GUARDED_BY(m_lock) = false;                      // a command runs
    std::optional<int> m_awaited TVWALL_GUARDED_BY(m_lock);              // its number
    bool m_bArrived TVWALL_GUARDED_BY(m_lock) = false;                   // the reply has come
    std::unique_ptr<S_DeviceReply> m_pAwaited TVWALL_GUARDED_BY(m_lock); // it, or a message with its number
    std::unique_ptr<S_DeviceReply> m_pOther TVWALL_GUARDED_BY(m_lock);   // the last one with another number
    std::atomic<unsigned int> m_nReceives{0};                            // odd while a receive scope is open
    std::optional<SReceived> m_received;        // receive thread only: the message of the scope
    std::unique_ptr<S_DeviceReply> m_pPrepared; // receive thread only: its copy
};
