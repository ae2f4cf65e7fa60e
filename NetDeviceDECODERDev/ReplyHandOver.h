#pragma once

#include <atomic>
#include <memory>
#include <string>

// The text of one numbered message, private to whoever holds it.
struct S_DeviceReply {
    int nSeq;
    std::string strText;
};

// Hands the reply that the worker waits for over from the receive thread, without a lock.
//
// The sequence number of a message becomes visible to the waiting worker before its text is stored, and the
// session's own reply buffer is overwritten by the next message while the worker may still read. So the
// receive thread makes a private copy of each message that carries a number and publishes it through an
// atomic pointer once the message is stored; a worker that has seen the number lets the receive that is under
// way finish and takes the copy. There are two such pointers, so that no stranger's message pushes out the
// reply that is expected; a decoder may also guess a number and answer before the question.
class CReplyHandOver {
public:
    CReplyHandOver() = default;
    ~CReplyHandOver();
    CReplyHandOver(const CReplyHandOver&) = delete;
    CReplyHandOver& operator=(const CReplyHandOver&) = delete;

    // --- worker ---

    // From now on the reply with this number is wanted. Call it before the request is sent.
    void Expect(int nSeq);
    // The message with the expected number; null when none has come. Call it after its number has been seen.
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
    // Makes the copy; call it inside the scope, before the number becomes visible. Throws std::bad_alloc.
    void Prepare(int nSeq, const char* data, unsigned long len);

private:
    static constexpr int NO_SEQ = -1; // never a sequence number of a request

    using Slot = std::atomic<S_DeviceReply*>; // owns what it points to
    static void Put(Slot& slot, std::unique_ptr<S_DeviceReply> pReply);
    static std::unique_ptr<S_DeviceReply> TakeFrom(Slot& slot);
    void Publish();

    std::atomic<int> m_nExpectedSeq{NO_SEQ};
    std::atomic<unsigned int> m_nReceives{0};   // odd while a receive scope is open
    Slot m_pExpected{nullptr};                  // the expected reply
    Slot m_pOther{nullptr};                     // the last other numbered message
    std::unique_ptr<S_DeviceReply> m_pPrepared; // receive thread only
    std::unique_ptr<S_DeviceReply> m_pEarly;    // worker only: the last one that came before it was expected
};
