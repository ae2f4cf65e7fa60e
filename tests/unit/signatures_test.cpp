// What the host and other modules call or link by name has exactly these names and parameters. Nothing runs:
// the file compiles, or something has changed that must not. Whether an operation is const, static or
// noexcept is free.

#include <type_traits>

#include "CmdProcParam.h"
#include "Crypto/Encrypt.h"
#include "Crypto/tdcrypto.h"
#include "DecodeComm.h"
#include "HostFunctions.h"
#include "Interlocked.h"
#include "Lock.h"
#include "MarkupSTL.h"
#include "MonitorTvwComm.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "PFHelper.h"
#include "PUB_md5.h"
#include "PluginExports.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TypeCheck.h"

using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;
using std::string;

namespace {

template <class Signature>
struct Operation;
template <class Result, class... Argument>
struct Operation<Result(Argument...)> {
    template <class Class>
    static constexpr bool Is(Result (Class::*)(Argument...))
    {
        return true;
    }
    template <class Class>
    static constexpr bool Is(Result (Class::*)(Argument...) const)
    {
        return true;
    }
    static constexpr bool Is(Result (*)(Argument...)) { return true; }
};

// Explicit instantiations, because these may name private members.
template <class Signature, auto... operation>
struct Operations {
    static_assert((Operation<Signature>::Is(operation) && ...));
};
// clang-format off
#define HOLDS(...) template struct Operations<__VA_ARGS__>
// clang-format on

// One of several operations with the same name.
template <class Signature, Signature* operation>
struct StaticOperation {
};
template <class Class, class... Signature>
constexpr bool Has(Signature Class::*... /*operation*/)
{
    return true;
}

// --- exports, and what the host drives ---

HOLDS(int(), &NET_DEV_DECODERDEVSDK_Initial);
HOLDS(void(), &NET_DEV_DECODERDEVSDK_Quit);

using Facade = CNetProtocolProcTWDECODERDev;
template <class Class>
struct Driven
    : Operations<int(CNetNode*, int, int, int), &Class::Initial>,
      Operations<void(), &Class::Quit, &Class::Stop>,
      Operations<int(char*, int), &Class::Start>,
      Operations<bool(), &Class::ProcDevCmd, &Class::ProcOrvaCmd, &Class::IsOnline, &Class::IsWorking>,
      Operations<CNetProtocolProc*(), &Class::CreateSelf>,
      Operations<const char*(unsigned long&), &Class::GetBeatData>,
      Operations<void(CCmdProcObject*, unsigned char*, unsigned int), &Class::ProcOneCommand,
                 &Class::AddOneCmd> {
};
template struct Driven<CNetProtocolProc>;
template struct Driven<Facade>;
static_assert(std::is_base_of_v<CNetProtocolProcDevice, Facade> &&
              std::is_abstract_v<CNetProtocolProcDevice>);
static_assert(sizeof(CNetProtocolProcDevice) == sizeof(CNetProtocolProc));

// --- frames ---

using Routine = unsigned int (*)(tagNET_PACKETTYPE, const char*, unsigned long, void*);
using Frames = CNetPacketProcTWDECODERDev;
HOLDS(bool(Routine, void*), &Frames::Initial);
HOLDS(void(), &Frames::Destroy);
HOLDS(const char*(unsigned long&), &Frames::GetBeatData);
HOLDS(bool(const char*), &Frames::IsValidDataHead, &Frames::IsDeviceHead);
HOLDS(unsigned int(), &Frames::GetDeviceHeadLen);
HOLDS(bool(const char*, unsigned long, unsigned int&, unsigned int*), &Frames::RecvProc);
HOLDS(bool(const swl_combined_data&, const char*, unsigned long), &Frames::CombineDataProc);
HOLDS(bool(const swl_combined_data&, const char*), &Frames::CombineDataProcMemPool);
HOLDS(bool(const char*, unsigned long), &CNetPacketNew::SaveBuffer, &CNetPacketNew::SaveBufferFront);
HOLDS(bool(unsigned long), &CNetPacketNew::HaveData, &CNetPacketNew::TruncateFront);
HOLDS(bool(char*, unsigned long), &CNetPacketNew::GetPacketHead);
HOLDS(char*(unsigned long), &CNetPacketNew::GetPacket);
HOLDS(void(const char*), &CNetPacketNew::ReleasePack);

// --- the session ---

using Session = CNetProtocolProcTWDECODERDevImp;
using Handler = void(CCmdProcObject*, char*, unsigned int);
static_assert(std::is_base_of_v<CSocketDataObserver, Session>);
HOLDS(int(CNetNode*, char*, int), &Session::Start);
HOLDS(void(), &Session::Stop, &Session::GetAndNotifyChannelInfo);
HOLDS(bool(), &Session::IsOnline);
HOLDS(const char*(unsigned long&), &Session::GetBeatData);
HOLDS(unsigned int(), &Session::GetCmdID, &Session::GetDevHeaderLength);
HOLDS(long(CNetNode*, const void*, unsigned long), &Session::SendDataToDev);
HOLDS(bool(unsigned int, unsigned int), &Session::WaitProc);
HOLDS(unsigned int(int, const char*, unsigned int, unsigned int*, void*), &Session::OnSocketRecvData);
HOLDS(std::remove_pointer_t<Routine>, &Session::PacketProcCallback);
HOLDS(void(const char*, unsigned long), &Session::ProcOneNetPack);
HOLDS(void(char*&, unsigned long&, unsigned long), &Session::ResizeBuffer);
HOLDS(void(CMarkupSTL&), &Session::AddRequestXmfHeader);
HOLDS(void(CMarkupSTL&, string, unsigned int), &Session::AddCommomXmlStr);
HOLDS(unsigned long(const CMarkupSTL&, char*&, unsigned long&), &Session::KESTToDevXmltoBuf);
HOLDS(void(char*, unsigned long), &Session::FillKESTHeader);
HOLDS(bool(const char*, unsigned long, string&), &Session::GetXmlUrlFromDevData);
HOLDS(bool(const string&), &Session::IsSupportFunc);
HOLDS(void(CCmdProcObject*, unsigned char*, unsigned int), &Session::ProcOneCommand);
HOLDS(void(CCmdProcObject*, const unsigned int&), &Session::DevToKSETFailReturn);
HOLDS(unsigned long(const int&, const int&, char*&, unsigned long&, const char*, const unsigned long&),
      &Session::DevToKESTDefaultResultBuf);
HOLDS(void(CCmdProcObject*, char*, unsigned int, unsigned int), &Session::ReplyResult);
#define COMMAND(id, handler) &Session::handler,
#define OPTION(id, type, handler) &Session::handler,
HOLDS(Handler, TVWALL_COMMANDS(COMMAND) TVWALL_OPTIONS(OPTION) & Session::ProcLoginCmd);
template struct StaticOperation<void(S_MTvw_Wall_Layout&, const char*, unsigned int),
                                &Session::GetWallLayoutMessage>;
template struct StaticOperation<void(S_MTvw_Wall_Get_ChGroup_info&, const char*, unsigned int),
                                &Session::GetChGroupInfoXml>;
HOLDS(void(CMarkupSTL&, S_MTvw_Wall_Media*, unsigned int), &Session::AddPlayMediaXmlStr);

HOLDS(void(), &DevReplyMessage::ClearData);
static_assert(std::is_constructible_v<CCmdProcParamMTvwall, CCmdProcParam*, const char*, unsigned long>);
HOLDS(GUID(), &NET_COMM_GetCurrentAppNodeID);

// --- crypto ---

HOLDS(void(const void*, unsigned int, char*), &tdcrypto::Sha265_String);
HOLDS(string(const string&, const string&), &tdcrypto::RsaPubEncrypt, &tdcrypto::RsaPriDecrypt);
HOLDS(int(const unsigned char*, unsigned long, string&), &tdcrypto::Base64Encode);
HOLDS(int(const char*, int, unsigned char**, unsigned long*), &tdcrypto::Base64Decode);
HOLDS(void(string*), &tdcrypto::GenerateRsaKey);
HOLDS(void(const string&, string&), &tdcrypto::RsaPubKeyPKCS1toPKCS8);
HOLDS(string(), &tdcrypto::RandomSalt);
HOLDS(int(const char*, int, const char*, string&), &tdcrypto::AesCbcEncrypt, &tdcrypto::AesCbcDecrypt);
HOLDS(bool(const string&, const char*, string&), &tdcrypto::AesDataEncrypt, &tdcrypto::AesDataDecrypt);
HOLDS(void(unsigned char*, int, unsigned char*, int), &CEncryptXOR::Encrypt, &CEncryptXOR::Decrypt);
static_assert(std::is_polymorphic_v<CEncryptXOR> && sizeof(CEncryptXOR) == sizeof(void*));
HOLDS(void(const void*, int, char*, bool), &PUB_MD5Encrypt);

// --- records ---

template <class Record>
struct Encoded : Operations<unsigned int(char*&), &Record::GetData>,
                 Operations<unsigned int(), &Record::GetLength> {
};
template <class Record>
struct Common : Encoded<Record>, Operations<void(), &Record::Dump, &Record::VerifyData, &Record::ClearData> {
};
template <class... Record>
struct AllRecords : Common<Record>..., Operations<bool(const char*, unsigned int), &Record::SetData>... {
};
// All have them from one template: those that clear themselves, and one for each way to read a short payload.
template struct AllRecords<S_MTvw_Wall_Layout, S_MTvw_Wall_WallLayout_Item, S_MTvw_Wall_Basic_Config,
                           S_MTvw_Wall_Get_ChGroup, S_MTvw_Get_Audio_Config, S_Playback_Ctrl_Items_V2,
                           S_Decoder_Draw_Border_Wind>;
template struct Common<S_Decoder_Draw_Border>;
HOLDS(void(const char*, unsigned int), &S_Decoder_Draw_Border::SetData);
static_assert(std::is_same_v<LOGICSCREENLIST_V2, std::list<std::shared_ptr<S_Decoder_LogicScreen_Item_V2>>>);
static_assert(std::is_same_v<CANVASWINDOWINFOLIST, std::list<std::shared_ptr<S_Create_Cavans_WindowInfo>>>);
HOLDS(bool(E_MTVW_TYPE), &IsPodType);
HOLDS(bool(const unsigned int&), &IsNeedNotifyFresh);
HOLDS(bool(const string&, std::vector<BYTE>&, uint32_t&, uint32_t), &ReadFile);
HOLDS(bool(const string&, const BYTE*, uint32_t, uint32_t), &WriteFile);

// --- the XML document ---

using Xml = CMarkupSTL;
static_assert(std::is_default_constructible_v<Xml> &&
              std::is_constructible_v<Xml, const char*, unsigned int>);
static_assert(Has<Xml, bool(const char*), bool(const char*, unsigned int)>(&Xml::SetDoc, &Xml::SetDoc));
static_assert(Has<Xml, bool(const char*, const char*, int), bool(const char*, int, int)>(&Xml::AddElem,
                                                                                         &Xml::AddElem));
static_assert(Has<Xml, bool(const char*, unsigned int, int), bool(const char*, unsigned long long, int)>(
    &Xml::AddElem, &Xml::AddElem));
HOLDS(const string&(), &Xml::GetDoc);
HOLDS(bool(), &Xml::IntoElem, &Xml::OutOfElem, &Xml::IsWellFormed);
HOLDS(bool(const char*), &Xml::FindElem);
HOLDS(string(), &Xml::GetData, &Xml::GetTagName);
HOLDS(void(), &Xml::ResetPos);

// --- platform and type codes ---

static_assert(std::is_default_constructible_v<CLock> && std::is_constructible_v<CLock, bool>);
HOLDS(void(), &CLock::Lock, &CLock::Unlock);
static_assert(std::is_constructible_v<CMySemaphore, unsigned int, unsigned int>);
using Units = CMySemaphore;
static_assert(Has<Units, void(), bool(unsigned int)>(&Units::lock, &Units::lock));
static_assert(Has<Units, bool(), bool(int, int*)>(&Units::unlock, &Units::unlock));
HOLDS(bool(), &CMySemaphore::trylock);
static_assert(std::is_constructible_v<CMyEvent, bool> && std::is_constructible_v<CMySingleEvent, CMyEvent&>);
HOLDS(bool(), &CMyEvent::SetEvent, &CMyEvent::ResetEvent);
HOLDS(unsigned int(unsigned int), &CMyEvent::WaitEvent);
HOLDS(unsigned int(int, const CMyEvent**, bool, unsigned int), &WaitForMultipleObjects);
static_assert(std::is_constructible_v<CNameLock, const char*>);
HOLDS(bool(), &CNameLock::Lock, &CNameLock::Unlock);
static_assert(std::is_constructible_v<Interlocked, int> && std::is_convertible_v<const Interlocked&, int>);
HOLDS(int(), &Interlocked::Increment, &Interlocked::Decrement, &CPFHelper::GetLastError);
HOLDS(int(int), &Interlocked::ExchangeAdd, &Interlocked::SetValue);
HOLDS(bool(void* (*)(void*), void*, uint64_t*), &CPFHelper::CreateThread);
HOLDS(bool(unsigned int), &CPFHelper::Sleep);
HOLDS(unsigned int(), &CTypeCheck::GetDECODERAbstractTypeValue);
HOLDS(bool(CTypeCheck::CDecoderTypeCheck*), &CTypeCheck::IsDecoder);
HOLDS(bool(unsigned int, CTypeCheck::CDecoderTypeCheck*), &CTypeCheck::IsDecoder_s);

} // namespace
