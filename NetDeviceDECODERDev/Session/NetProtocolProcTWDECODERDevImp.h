#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "AtomicAccess.h"
#include "Interlocked.h"
#include "Link/CommandTable.h"
#include "Link/NetPacketProcTWDecoderDev.h"
#include "Link/ReplyHandOver.h"
#include "Lock.h"
#include "SocketDataObserver.h"

class CCmdProcObject;
class CCredentialCipher;
class CDeviceReply;
class CDeviceRequest;
class CMarkupSTL;
class CNetNode;
class CVTXMLParse;
struct S_RunningCommand;
namespace ORVA2_CLIENT_TVW {
struct S_MTvw_Wall_Get_ChGroup_info;
struct S_MTvw_Wall_Layout;
struct S_MTvw_Wall_Media;
} // namespace ORVA2_CLIENT_TVW

// What the login brought.
struct DevReplyMessage {
    std::string s_pubkey1;   // PEM text, enciphers the login
    std::string s_pubkey2;   // PEM text, enciphers the credentials of video sources
    std::string s_sessionId; // goes into the header of every request
    std::string s_token;     // goes into the header of every request

    void ClearData();
};

// The session with one decoder.
//
// Threads: the host's receive thread calls OnSocketRecvData, one worker thread calls ProcOneCommand, others
// call Start, Stop (never concurrently with Start), IsOnline and GetBeatData. What the first two share is
// accessed atomically; the reply passes through CReplyHandOver. No operation throws.
class CNetProtocolProcTWDECODERDevImp : public CSocketDataObserver {
public:
    CNetProtocolProcTWDECODERDevImp();
    ~CNetProtocolProcTWDECODERDevImp() override;
    CNetProtocolProcTWDECODERDevImp(const CNetProtocolProcTWDECODERDevImp&) = delete;
    CNetProtocolProcTWDECODERDevImp& operator=(const CNetProtocolProcTWDECODERDevImp&) = delete;

    // --- life cycle and liveness ---

    // Arms the session for its node; the text and the number are the host's and ignored. Returns 0.
    int Start(CNetNode* node, char* text, int n);
    // Disarms it for good and waits until a running command and a running receive have ended.
    void Stop();
    // Counts one liveness check; false from the 17th consecutive one without a frame.
    bool IsOnline();
    const char* GetBeatData(unsigned long& len);

    // --- receiving ---

    unsigned int OnSocketRecvData(int nSocket, const char* data, unsigned int len, unsigned int* needLen,
                                  void* context) override;
    static unsigned int PacketProcCallback(tagNET_PACKETTYPE type, const char* data, unsigned long len,
                                           void* context);

    // --- commands ---

    // Executes one host command and gives its answer; buf holds len payload bytes and is valid during the
    // call. The worker may call it again from inside the answer to a command.
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len);

    // --- envelope and frames, for those who compose requests ---

    // Adds td_command with an empty td_header, which becomes the current element.
    static void AddRequestXmfHeader(CMarkupSTL& doc);
    // Fills the current td_header; it stays the parent of the current position.
    void AddCommomXmlStr(CMarkupSTL& doc, std::string url, unsigned int seq) const;
    // The part that needs no login: all but session and token.
    static void AddSessionlessXmlStr(CMarkupSTL& doc, const std::string& url, unsigned int seq);
    // An empty document for a request: that of an earlier large request, or a new one. Worker only.
    std::unique_ptr<CMarkupSTL> TakeDocument();
    // Takes the document of a request back. It is kept if the allocator would return its memory to the system
    // and fetch it again for the next request of this size, up to 2 MiB.
    void KeepDocument(std::unique_ptr<CMarkupSTL> pDoc);
    // The next sequence number, 256 to 0xFFFFFFFD, from the counter that all sessions share. Any thread; no
    // number is reused before all others have been used.
    static unsigned int GetCmdID();
    // The number after another one.
    static unsigned int CmdIDAfter(unsigned int nCmdID);

private:
    friend class SessionAccess; // tests

    class CRunningScope;
    enum class E_Exchange {
        Reply,     // a reply has arrived and can be read
        NoReply,   // not sent, no reply in time, or stopped
        NotStored, // answered, but no reply of a known request has come yet
    };
    using CommandHandler = void (CNetProtocolProcTWDECODERDevImp::*)(CCmdProcObject*, char*, unsigned int);
    struct S_CommandRow;
    struct S_OptionRow;
    static const S_CommandRow COMMAND_TABLE[];
    static const S_OptionRow OPTION_TABLE[];

    // --- receiving ---

    void ProcOneNetPack(const char* data, unsigned long len);
    bool GetXmlUrlFromDevData(const char* data, unsigned long len, std::string& url);
    static bool IsSupportFunc(const std::string& url);
    void StoreReply(const char* data, unsigned long len);
    // Ensures room for need bytes; new room is zeroed and old content lost. Throws std::bad_alloc.
    static void ResizeBuffer(char*& buf, unsigned long& capacity, unsigned long need);
    // Also called by the worker.
    void NotifyHost(unsigned int nOptType, const char* data, unsigned long nDataLen, unsigned long nLen);

    // --- exchanges ---

    static unsigned int GetDevHeaderLength();
    static void FillKESTHeader(char* head, unsigned long len);
    // Frames the document's text into buf; bufLen is the capacity on entry and the frame's length afterwards.
    static unsigned long KESTToDevXmltoBuf(const CMarkupSTL& doc, char*& buf, unsigned long& bufLen);
    // Sends one complete frame: its length, or -1.
    long SendDataToDev(CNetNode* node, const void* data, unsigned long len);
    // Polls every 100 ms until the last message received has this number, or the reply with it has been
    // handed over.
    bool WaitProc(unsigned int cmdID, unsigned int timeoutMs);
    enum class E_SendCheck { FailAtOnce, WaitAnyway };
    E_Exchange SendAndWait(const CDeviceRequest& request, E_SendCheck sendCheck);
    // SendAndWait with the failure answers that most commands share; false when the command is answered.
    bool Exchange(CCmdProcObject* cmd, const CDeviceRequest& request);
    // The reply to the running command's last exchange; valid until its next one.
    std::string_view ReplyText() const;
    // The same, opened for reading; parsed once.
    const CDeviceReply& Reply();
    // Frees the reply: before the next exchange, at the command's end, or once a handler has read all of it.
    void CloseReply();

    // Enciphers credentials of the running command under a PKCS#1 public key until the session is stopped.
    CCredentialCipher Cipher(const std::string& pubKeyPem) const;

    // --- dispatch ---

    // The innermost running command; there is one while a handler runs.
    S_RunningCommand& Running() const { return *AtomicLoad(m_pRunning); }
    void RunCommand(CCmdProcObject* cmd, char* data, unsigned int len);
    enum class E_OptionLog { Quiet, Logged };
    void RunOption(CCmdProcObject* cmd, char* data, unsigned int len, E_OptionLog log);

    // --- answers to the host; a command that wants none gets none, and none gets two ---

    void DevToKSETFailReturn(CCmdProcObject* cmd, const unsigned int& code);
    static unsigned long DevToKESTDefaultResultBuf(const int& optType, const int& errorCode, char*& buf,
                                                   unsigned long& bufLen, const char* extra,
                                                   const unsigned long& extraLen);
    void ReplyResult(CCmdProcObject* cmd, char* extra, unsigned int extraLen, unsigned int optType);
    void ReplyBuffer(CCmdProcObject* cmd, const char* data, unsigned long len);
    static void SendFailure(CCmdProcObject* cmd, unsigned int code);
    // True for the first answer to this command.
    bool TakeAnswer(const CCmdProcObject* cmd);

    // --- handlers, one for each row of the table; the rest is shared within each family ---

#define TVWALL_DECLARE_COMMAND(id, handler) void handler(CCmdProcObject* cmd, char* data, unsigned int len);
#define TVWALL_DECLARE_OPTION(id, type, handler) TVWALL_DECLARE_COMMAND(id, handler)
    TVWALL_COMMANDS(TVWALL_DECLARE_COMMAND)
    TVWALL_OPTIONS(TVWALL_DECLARE_OPTION)
#undef TVWALL_DECLARE_OPTION
#undef TVWALL_DECLARE_COMMAND

    // --- login ---

    void ProcLoginCmd(CCmdProcObject* cmd, char* data, unsigned int len);
    void ReplyLogin(CCmdProcObject* cmd, unsigned int nErrorCode);

    // --- wall layout ---

    // True when the decoder has accepted; on a refusal the command is answered.
    bool ExchangeLayout(CCmdProcObject* cmd, const CDeviceRequest& request);
    // Fills the layout from a reply; its count stays as it is.
    static void GetWallLayoutMessage(ORVA2_CLIENT_TVW::S_MTvw_Wall_Layout& layout, const char* text,
                                     unsigned int len);
    // The same with the reply opened.
    static void GetWallLayoutMessage(ORVA2_CLIENT_TVW::S_MTvw_Wall_Layout& layout, std::string_view text,
                                     const CVTXMLParse& xml);

    // --- canvas windows ---

    void SendCanvasWindows(CCmdProcObject* cmd, char* data, unsigned int len, const std::string& url);

    // --- window display ---

    void ReplyWindowConfig(CCmdProcObject* cmd, unsigned int nEnableBorder, unsigned int nEnableShowWinID,
                           const char* szOperation, unsigned int nAnswerType);

    // --- device information ---

    // Asks for the input channels and hands the reply to the host as a notification.
    void GetAndNotifyChannelInfo();

    // --- media and whole walls ---

    // Composes the whole "doplaymedia" request in an empty document; the record is not null.
    void AddPlayMediaXmlStr(CMarkupSTL& xml, ORVA2_CLIENT_TVW::S_MTvw_Wall_Media* record,
                            unsigned int seq) const;

    // --- channel groups and polling ---

    void SendChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len, const std::string& url,
                          unsigned int nAnswerType);
    // Appends the groups of a reply to the record's list; its count stays as it is.
    static void GetChGroupInfoXml(ORVA2_CLIENT_TVW::S_MTvw_Wall_Get_ChGroup_info& info, const char* text,
                                  unsigned int len);
    // The same with the reply opened.
    static void GetChGroupInfoXml(ORVA2_CLIENT_TVW::S_MTvw_Wall_Get_ChGroup_info& info,
                                  const CVTXMLParse& xml);

    CNetNode* m_pCurNetNode = nullptr; // owned by the host
    char* m_pTmpBuffer = nullptr;      // the last request's frame; owned
    unsigned long m_TmpbufferLen;      // its capacity, and after a request the frame's length
    char* m_pBufferReply = nullptr;    // text of the last message; owned
    unsigned long m_BufMaxLen;         // capacity of m_pBufferReply
    unsigned long m_BufReplayValidLen = 0;
    DevReplyMessage m_replyMessage;
    Interlocked m_keepBeat{0};            // liveness checks since the last frame
    CMyEvent* m_ArrayEvent[2]{};          // owned; Stop signals the second one
    unsigned long m_BufValidLenReply = 0; // the same as m_BufReplayValidLen
    bool m_IsReplySuccess = false;        // a reply with a known URL has come; never cleared
    Interlocked m_ExportFlag{1};          // 0: commands are refused
    CMyEvent m_ExportEvent{true};         // unsignalled while a command runs
    Interlocked m_ImportFlag{1};          // 0: received bytes are ignored
    CMyEvent m_ImportEvent{true};         // unsignalled while received bytes are parsed
    bool m_bSupportBeat = true;
    CNetPacketProcTWDECODERDev m_NetPacketProc;
    bool m_bSuccessLogin = false;
    bool m_bWaitSecond = false;
    int m_RunFlag = 1;
    volatile int m_recvCmdID = -1; // sequence number of the last message that carried one
    bool m_sendOptin = false;      // between the start of "dooption" and the start of "dologin"

    std::unique_ptr<CMarkupSTL> m_pSpareDocument; // of the last large request; worker only
    std::unique_ptr<CDeviceReply> m_pSpareReply;  // of the last large reply, closed; worker only

    CReplyHandOver m_replyHandOver;
    S_RunningCommand* m_pRunning = nullptr; // the innermost one; null while none runs
};
