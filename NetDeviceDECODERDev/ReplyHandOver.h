#pragma once

#include <atomic>
#include <memory>
#include <string>

// The text of one reply, private to whoever holds it.
struct S_DeviceReply {
    int nSeq;
    std::string strText;
};

// Hands the reply that the worker waits for over from the receive thread, without a lock.
//
// The sequence number of a message becomes visible to the waiting worker before its text is stored, and the
// session's own reply buffer is overwritten by the next message while the worker may still read. So the
// receive thread makes a private copy of the reply that is expected and publishes it through one atomic
// pointer once the message is stored; a worker that has seen the number lets the receive that is under way
// finish and takes the copy.
class CReplyHandOver {
public:
    CReplyHandOver() = default;
    ~CReplyHandOver();
    CReplyHandOver(const CReplyHandOver&) = delete;
    CReplyHandOver& operator=(const CReplyHandOver&) = delete;

    // --- worker ---

    // From now on the reply with this number is wanted. Call it before the request is sent.
    void Expect(int nSeq);
    // The expected reply, or null when none was published. Call it after its number has been seen.
    std::unique_ptr<S_DeviceReply> Take();
    // No reply is wanted any more.
    void ExpectNone();

    // --- receive thread ---

    // The stretch of a receive from before its number becomes visible until its text is stored.
    class CReceiveScope {
    public:
        explicit CReceiveScope(CReplyHandOver& handOver);
        ~CReceiveScope(); // publishes the copy, if one was made
        CReceiveScope(const CReceiveScope&) = delete;
        CReceiveScope& operator=(const CReceiveScope&) = delete;

    private:
        CReplyHandOver& m_handOver;
    };
    // Makes the copy if the number is wanted; call it inside the scope, before the number becomes visible.
    // Throws std::bad_alloc; nothing has been published then.
    void Prepare(int nSeq, const char* data, unsigned long len);

private:
    static constexpr int NO_SEQ = -1; // never a sequence number of a request

    std::unique_ptr<S_DeviceReply> TakePublished();

    std::atomic<int> m_nExpectedSeq{NO_SEQ};
    std::atomic<unsigned int> m_nReceives{0}; // odd while a receive scope is open
    std::atomic<S_DeviceReply*> m_pPublished{nullptr};
    std::unique_ptr<S_DeviceReply> m_pPrepared; // receive thread only
    std::unique_ptr<S_DeviceReply> m_pEarly;    // worker only: came before it was expected
};
