// What the host and other modules call or link by name has exactly these names and types. Nothing runs: the
// file compiles, or something has changed that must not. Whether an operation is const, static or noexcept is
// free.

#include <pthread.h>
#include <semaphore.h>
#include <type_traits>

#include "CmdProcParam.h"
#include "DecodeComm.h"
#include "Encrypt.h"
#include "HostFunctions.h"
#include "Interlocked.h"
#include "Lock.h"
#include "MarkupSTL.h"
#include "MonitorTvwComm.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "PFHelper.h"
#include "PUB_md5.h"
#include "PluginExports.h"
#include "TypeCheck.h"
#include "tdcrypto.h"

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
template <class Signature, auto... pOperation>
struct Operations {
    static_assert((Operation<Signature>::Is(pOperation) && ...));
};
template <class Type, class Class, Type Class::*... pField>
struct Fields {
};

// One of several operations with the same name.
template <class Signature, Signature* pOperation>
struct StaticOperation {
};
template <class Signature, class Class>
constexpr bool IsOneOf(Signature Class::* /*operation*/)
{
    return true;
}

// --- exports, and what the host drives ---

template struct Operations<int(), &NET_DEV_DECODERDEVSDK_Initial>;
template struct Operations<void(), &NET_DEV_DECODERDEVSDK_Quit>;

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
template struct Fields<CNetNode*, CNetProtocolProc, &CNetProtocolProc::m_pCurNetNode>;
template struct Fields<std::list<CNetProtocolProc::CMD_PROC_INFO>*, CNetProtocolProc,
                       &CNetProtocolProc::m_pCmdProcList>;
template struct Fields<CLock, CNetProtocolProc, &CNetProtocolProc::m_CmdProcListLock>;
template struct Fields<CCmdProcObject*, CNetProtocolProc::CMD_PROC_INFO,
                       &CNetProtocolProc::CMD_PROC_INFO::pCmdProcObject>;
template struct Fields<BYTE*, CNetProtocolProc::CMD_PROC_INFO, &CNetProtocolProc::CMD_PROC_INFO::pBuf>;
template struct Fields<uint32_t, CNetProtocolProc::CMD_PROC_INFO, &CNetProtocolProc::CMD_PROC_INFO::dwLen>;
template struct Fields<int, Facade, &Facade::m_hNetCommunication>;
template struct Fields<CNetProtocolProcTWDECODERDevImp*, Facade, &Facade::m_pImp>;

// --- frames ---

using Routine = unsigned int (*)(tagNET_PACKETTYPE, const char*, unsigned long, void*);
using Frames = CNetPacketProcTWDECODERDev;
template struct Operations<bool(Routine, void*), &Frames::Initial>;
template struct Operations<void(), &Frames::Destroy>;
template struct Operations<const char*(unsigned long&), &Frames::GetBeatData>;
template struct Operations<bool(const char*), &Frames::IsValidDataHead, &Frames::IsDeviceHead>;
template struct Operations<unsigned int(), &Frames::GetDeviceHeadLen>;
template struct Operations<bool(const char*, unsigned long, unsigned int&, unsigned int*), &Frames::RecvProc>;
template struct Operations<bool(const swl_combined_data&, const char*, unsigned long),
                           &Frames::CombineDataProc>;
template struct Operations<bool(const swl_combined_data&, const char*), &Frames::CombineDataProcMemPool>;
template struct Fields<NET_COMBINED_INFO, Frames, &Frames::m_recvLiveCombinedInfo,
                       &Frames::m_recvPlayCombinedInfo>;
template struct Fields<CLock, Frames, &Frames::m_ComboDataMapLock>;
template struct Fields<Routine, Frames, &Frames::m_pNetPacketRoutine>;
template struct Fields<void*, Frames, &Frames::m_pNetPacketRoutineParam>;
template struct Fields<CNetPacketNew, Frames, &Frames::m_NetPacket>;
template struct Fields<std::map<uint32_t, NET_COMBINED_INFO*>, Frames, &Frames::m_combinedInfoMap>;
template struct Fields<NETHEAD_AND_COMBINEDINFO, Frames, &Frames::m_NetHeadAndCombinedInfo>;
template struct Fields<_tagNET_DATAHEAD, Frames, &Frames::m_TmpDataHead>;
template struct Fields<uint32_t, NET_COMBINED_INFO, &NET_COMBINED_INFO::dwDataID,
                       &NET_COMBINED_INFO::dwTotalPack, &NET_COMBINED_INFO::dwTotalLen,
                       &NET_COMBINED_INFO::offset>;
template struct Operations<bool(const char*, unsigned long), &CNetPacketNew::SaveBuffer,
                           &CNetPacketNew::SaveBufferFront>;
template struct Operations<bool(unsigned long), &CNetPacketNew::HaveData, &CNetPacketNew::TruncateFront>;
template struct Operations<bool(char*, unsigned long), &CNetPacketNew::GetPacketHead>;
template struct Operations<char*(unsigned long), &CNetPacketNew::GetPacket>;
template struct Operations<void(const char*), &CNetPacketNew::ReleasePack>;

// --- the session ---

using Session = CNetProtocolProcTWDECODERDevImp;
using Handler = void(CCmdProcObject*, char*, unsigned int);
static_assert(std::is_base_of_v<CSocketDataObserver, Session>);
template struct Operations<int(CNetNode*, char*, int), &Session::Start>;
template struct Operations<void(), &Session::Stop, &Session::GetAndNotifyChannelInfo>;
template struct Operations<bool(), &Session::IsOnline>;
template struct Operations<const char*(unsigned long&), &Session::GetBeatData>;
template struct Operations<unsigned int(), &Session::GetCmdID, &Session::GetDevHeaderLength>;
template struct Operations<long(CNetNode*, const void*, unsigned long), &Session::SendDataToDev>;
template struct Operations<bool(unsigned int, unsigned int), &Session::WaitProc>;
template struct Operations<unsigned int(int, const char*, unsigned int, unsigned int*, void*),
                           &Session::OnSocketRecvData>;
template struct Operations<std::remove_pointer_t<Routine>, &Session::PacketProcCallback>;
template struct Operations<void(const char*, unsigned long), &Session::ProcOneNetPack>;
template struct Operations<void(char*&, unsigned long&, unsigned long), &Session::ResizeBuffer>;
template struct Operations<void(CMarkupSTL&), &Session::AddRequestXmfHeader>;
template struct Operations<void(CMarkupSTL&, const string&, unsigned int), &Session::AddCommomXmlStr>;
template struct Operations<unsigned long(const CMarkupSTL&, char*&, unsigned long&),
                           &Session::KESTToDevXmltoBuf>;
template struct Operations<void(char*, unsigned long), &Session::FillKESTHeader>;
template struct Operations<bool(const char*, unsigned long, string&), &Session::GetXmlUrlFromDevData>;
template struct Operations<bool(const string&), &Session::IsSupportFunc>;
template struct Operations<void(CCmdProcObject*, unsigned char*, unsigned int), &Session::ProcOneCommand>;
template struct Operations<void(CCmdProcObject*, const unsigned int&), &Session::DevToKSETFailReturn>;
template struct Operations<unsigned long(const int&, const int&, char*&, unsigned long&, const char*,
                                         const unsigned long&),
                           &Session::DevToKESTDefaultResultBuf>;
template struct Operations<void(CCmdProcObject*, char*, unsigned int, unsigned int), &Session::ReplyResult>;
#define COMMAND(id, handler) &Session::handler,
#define OPTION(id, type, handler) &Session::handler,
template struct Operations<Handler, TVWALL_COMMANDS(COMMAND) TVWALL_OPTIONS(OPTION) & Session::ProcLoginCmd>;
template struct StaticOperation<void(S_MTvw_Wall_Layout&, const char*, unsigned int),
                                &Session::GetWallLayoutMessage>;
template struct StaticOperation<void(S_MTvw_Wall_Get_ChGroup_info&, const char*, unsigned int),
                                &Session::GetChGroupInfoXml>;
template struct Operations<void(CMarkupSTL&, S_MTvw_Wall_Media*, unsigned int), &Session::AddPlayMediaXmlStr>;

template struct Fields<CNetNode*, Session, &Session::m_pCurNetNode>;
template struct Fields<char*, Session, &Session::m_pTmpBuffer, &Session::m_pBufferReply>;
template struct Fields<unsigned long, Session, &Session::m_TmpbufferLen, &Session::m_BufMaxLen,
                       &Session::m_BufReplayValidLen, &Session::m_BufValidLenReply>;
template struct Fields<DevReplyMessage, Session, &Session::m_replyMessage>;
template struct Fields<Interlocked, Session, &Session::m_keepBeat, &Session::m_ExportFlag,
                       &Session::m_ImportFlag>;
template struct Fields<CMyEvent* [2], Session, &Session::m_ArrayEvent>;
template struct Fields<CMyEvent, Session, &Session::m_ExportEvent, &Session::m_ImportEvent>;
template struct Fields<bool, Session, &Session::m_IsReplySuccess, &Session::m_bSupportBeat,
                       &Session::m_bSuccessLogin, &Session::m_bWaitSecond, &Session::m_sendOptin>;
template struct Fields<CNetPacketProcTWDECODERDev, Session, &Session::m_NetPacketProc>;
template struct Fields<int, Session, &Session::m_RunFlag>;
template struct Fields<volatile int, Session, &Session::m_recvCmdID>;
template struct Operations<void(), &DevReplyMessage::ClearData>;
template struct Fields<string, DevReplyMessage, &DevReplyMessage::s_pubkey1, &DevReplyMessage::s_pubkey2,
                       &DevReplyMessage::s_sessionId, &DevReplyMessage::s_token>;
static_assert(std::is_constructible_v<CCmdProcParamMTvwall, CCmdProcParam*, const char*, unsigned long>);
template struct Fields<ORVA_NET_PROTOCOL::_kest_tvwall_opt_info, CCmdProcParamMTvwall,
                       &CCmdProcParamMTvwall::m_DataTvwallInfo>;
template struct Fields<GUID, CCmdProcParamMTvwall, &CCmdProcParamMTvwall::m_destNodeID>;
template struct Operations<GUID(), &NET_COMM_GetCurrentAppNodeID>;

// --- crypto ---

template struct Operations<void(const void*, unsigned int, char*), &tdcrypto::Sha265_String>;
template struct Operations<string(const string&, const string&), &tdcrypto::RsaPubEncrypt,
                           &tdcrypto::RsaPriDecrypt>;
template struct Operations<int(const unsigned char*, unsigned long, string&), &tdcrypto::Base64Encode>;
template struct Operations<int(const char*, int, unsigned char**, unsigned long*), &tdcrypto::Base64Decode>;
template struct Operations<void(string*), &tdcrypto::GenerateRsaKey>;
template struct Operations<void(const string&, string&), &tdcrypto::RsaPubKeyPKCS1toPKCS8>;
template struct Operations<string(), &tdcrypto::RandomSalt>;
template struct Operations<int(const char*, int, const char*, string&), &tdcrypto::AesCbcEncrypt,
                           &tdcrypto::AesCbcDecrypt>;
template struct Operations<bool(const string&, const char*, string&), &tdcrypto::AesDataEncrypt,
                           &tdcrypto::AesDataDecrypt>;
template struct Operations<void(unsigned char*, int, unsigned char*, int), &CEncryptXOR::Encrypt,
                           &CEncryptXOR::Decrypt>;
static_assert(std::is_polymorphic_v<CEncryptXOR> && sizeof(CEncryptXOR) == sizeof(void*));
template struct Operations<void(const void*, int, char*, bool), &PUB_MD5Encrypt>;

// --- records ---

template <class Record>
struct Encoded : Operations<unsigned int(char*&), &Record::GetData>,
                 Operations<unsigned int(), &Record::GetLength> {
};
template <class Record>
struct Common : Encoded<Record>, Operations<void(), &Record::Dump, &Record::VerifyData, &Record::ClearData> {
};
template <class... Record>
struct Records : Common<Record>..., Operations<bool(const char*, unsigned int), &Record::SetData>... {
};
template struct Records<
    S_MTvw_Wall_Layout, S_MTvw_Wall_WallLayout_Item, S_MTvw_Wall_Media_info, S_MTvw_Wall_Media_Sub_Wind,
    S_MTvw_Wall_Media_Wind, S_MTvw_Wall_Media, S_MTvw_Screen, S_MTvw_Canvas_Item_V2,
    S_MTvw_Create_CavansWindow, S_MTvw_Del_CavansWindow, S_MTvw_Modyfy_CavansWindow,
    S_MTvw_Wall_Channel_Group_Info, S_MTvw_Wall_Del_Ch_Group_item, S_MTvw_Wall_Delete_Channel_Group,
    S_MTvw_Wall_Chl_GrPolling_Subitem, S_MTvw_Wall_Chl_GrPolling_Winitem, S_MTvw_Wall_Start_Chl_GrPolling,
    S_MTvw_Wall_Get_ChGroup, S_MTvw_Wall_Set_wall_Wind, S_MTvw_Wall_Set_wall_V2, S_MTvw_Get_AuCfg_Subwnd,
    S_MTvw_Get_AuCfg_Cav, S_MTvw_Get_Audio_Config, S_MTvw_Wall_Get_ChGroup_info>;
template struct Records<S_Cavans_Sub_WindowInfo, S_Create_Cavans_WindowInfo, S_Decoder_LogicScreen_Item_V2,
                        S_Delete_Canvas_Window_Item, S_Roar_CanvasWindow_Item, S_Playback_Ctrl_Subwnd,
                        S_Playback_Ctrl_Cavs, S_Playback_Ctrl_Items_V2, S_Decoder_Draw_Border_Wind>;
template struct Common<S_Decoder_Draw_Border>;
template struct Operations<void(const char*, unsigned int), &S_Decoder_Draw_Border::SetData>;
template struct Encoded<S_MTvw_Wall_Basic_Config>;
static_assert(std::is_same_v<LOGICSCREENLIST_V2, std::list<std::shared_ptr<S_Decoder_LogicScreen_Item_V2>>>);
static_assert(std::is_same_v<CANVASWINDOWINFOLIST, std::list<std::shared_ptr<S_Create_Cavans_WindowInfo>>>);
template struct Operations<bool(E_MTVW_TYPE), &IsPodType>;
template struct Operations<bool(const unsigned int&), &IsNeedNotifyFresh>;
template struct Operations<bool(const string&, std::vector<BYTE>&, uint32_t&, uint32_t), &ReadFile>;
template struct Operations<bool(const string&, const BYTE*, uint32_t, uint32_t), &WriteFile>;

template struct Fields<GUID, S_GuidUnt, &S_GuidUnt::_guid>;
template struct Fields<char[128], S_GuidUnt, &S_GuidUnt::_name>;
template struct Fields<tuint32, S_GuidUntStr, &S_GuidUntStr::_nState>;
template struct Fields<char[256], S_GuidUntStr, &S_GuidUntStr::_sName>;
template struct Fields<tuint16[32], S_GuidUntStr, &S_GuidUntStr::_szIp>;

// Images travel as they lie in memory, and begin with zeros.
template <class... Image>
constexpr bool AreImages = ((std::is_trivially_copyable_v<Image> && std::is_standard_layout_v<Image> &&
                             !std::is_trivially_default_constructible_v<Image>)&&...);
static_assert(AreImages<S_GuidUnt, S_GuidUntStr, S_MTvw_Top_Canvas_Item, S_MTvw_Wnd_Item,
                        S_MTvw_PlanWnd_Zoom_v2, S_MTvw_Wall_Set_WindCfg_V2, S_MTvw_Wall_RC_WallLayout,
                        S_MTvw_Wall_WallLayout_Coor, S_MTvw_Wall_Set_wall_Rect, S_MTvw_Wall_Set_wall_Subwin,
                        S_Decoder_Draw_Border_Subwind, S_Decoder_Baseinfo_Item>);
static_assert(AreImages<ORVA_NET_PROTOCOL::_kest_tvwall_opt_info, ORVA_NET_PROTOCOL::_kest_net_reply,
                        ORVA_NET_PROTOCOL::_kest_net_login_info, ORVA_NET_PROTOCOL::_net_login_success_info,
                        S_Decoder_Opt_Result>);

// --- the XML document ---

using Xml = CMarkupSTL;
static_assert(std::is_default_constructible_v<Xml> &&
              std::is_constructible_v<Xml, const char*, unsigned int>);
static_assert(IsOneOf<bool(const char*), Xml>(&Xml::SetDoc));
static_assert(IsOneOf<bool(const char*, unsigned int), Xml>(&Xml::SetDoc));
static_assert(IsOneOf<bool(const char*, const char*, int), Xml>(&Xml::AddElem));
static_assert(IsOneOf<bool(const char*, int, int), Xml>(&Xml::AddElem));
static_assert(IsOneOf<bool(const char*, unsigned int, int), Xml>(&Xml::AddElem));
static_assert(IsOneOf<bool(const char*, unsigned long long, int), Xml>(&Xml::AddElem));
template struct Operations<const string&(), &Xml::GetDoc>;
template struct Operations<bool(), &Xml::IntoElem, &Xml::OutOfElem, &Xml::IsWellFormed>;
template struct Operations<bool(const char*), &Xml::FindElem>;
template struct Operations<string(), &Xml::GetData, &Xml::GetTagName>;
template struct Operations<void(), &Xml::ResetPos>;
template struct Fields<string, Xml, &Xml::m_strDoc, &Xml::m_strError>;
template struct Fields<CBase64Coder, Xml, &Xml::m_Base64>;
template struct Fields<int, Xml, &Xml::m_iPosParent, &Xml::m_iPos, &Xml::m_iPosChild, &Xml::m_iPosFree,
                       &Xml::m_iPosDeleted, &Xml::m_nNodeType, &Xml::m_nNodeOffset, &Xml::m_nNodeLength,
                       &Xml::m_nFlags>;
template struct Fields<SavedPosMap, Xml, &Xml::m_mapSavedPos>;
template struct Fields<PosArray, Xml, &Xml::m_aPos>;
template struct Fields<int, ElemPos, &ElemPos::nStart, &ElemPos::nLength, &ElemPos::nTagLengths,
                       &ElemPos::nFlags, &ElemPos::iElemParent, &ElemPos::iElemChild, &ElemPos::iElemNext,
                       &ElemPos::iElemPrev>;

// --- platform and type codes ---

static_assert(std::is_default_constructible_v<CLock> && std::is_constructible_v<CLock, bool>);
template struct Operations<void(), &CLock::Lock, &CLock::Unlock>;
template struct Fields<pthread_mutex_t, CLock, &CLock::m_CriticalSection>;
static_assert(std::is_constructible_v<CMySemaphore, unsigned int, unsigned int>);
static_assert(IsOneOf<void(), CMySemaphore>(&CMySemaphore::lock));
static_assert(IsOneOf<bool(unsigned int), CMySemaphore>(&CMySemaphore::lock));
static_assert(IsOneOf<bool(int, int*), CMySemaphore>(&CMySemaphore::unlock));
static_assert(IsOneOf<bool(), CMySemaphore>(&CMySemaphore::unlock));
template struct Operations<bool(), &CMySemaphore::trylock>;
template struct Fields<CLock, CMySemaphore, &CMySemaphore::m_FEventCS>;
template struct Fields<unsigned int, CMySemaphore, &CMySemaphore::m_MaxCount>;
template struct Fields<volatile unsigned int, CMySemaphore, &CMySemaphore::m_semCount>;
static_assert(std::is_constructible_v<CMyEvent, bool> && std::is_constructible_v<CMySingleEvent, CMyEvent&>);
template struct Operations<bool(), &CMyEvent::SetEvent, &CMyEvent::ResetEvent>;
template struct Operations<unsigned int(unsigned int), &CMyEvent::WaitEvent>;
template struct Fields<const bool, CMyEvent, &CMyEvent::m_bManualReset>;
template struct Fields<CLock, CMyEvent, &CMyEvent::m_FEventCS>;
template struct Fields<volatile unsigned int, CMyEvent, &CMyEvent::m_semCount>;
template struct Operations<unsigned int(int, const CMyEvent**, bool, unsigned int), &WaitForMultipleObjects>;
static_assert(std::is_constructible_v<CNameLock, const char*>);
template struct Operations<bool(), &CNameLock::Lock, &CNameLock::Unlock>;
template struct Fields<sem_t*, CNameLock, &CNameLock::m_pSemLock>;
static_assert(std::is_constructible_v<Interlocked, int> && std::is_convertible_v<const Interlocked&, int>);
template struct Operations<int(), &Interlocked::Increment, &Interlocked::Decrement, &CPFHelper::GetLastError>;
template struct Operations<int(int), &Interlocked::ExchangeAdd, &Interlocked::SetValue>;
template struct Fields<volatile int, Interlocked, &Interlocked::m_counter>;
template struct Operations<bool(void* (*)(void*), void*, uint64_t*), &CPFHelper::CreateThread>;
template struct Operations<bool(unsigned int), &CPFHelper::Sleep>;
template struct Operations<unsigned int(), &CTypeCheck::GetDECODERAbstractTypeValue>;
template struct Operations<bool(CTypeCheck::CDecoderTypeCheck*), &CTypeCheck::IsDecoder>;
template struct Operations<bool(unsigned int, CTypeCheck::CDecoderTypeCheck*), &CTypeCheck::IsDecoder_s>;

} // namespace
