// What the decoder reports about itself: its part on the wall, its system, its input channels.

#include "DecodeCommDeviceInfo.h"
#include "Encoding/FieldText.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "MonitorTvwCommDeviceInfo.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

namespace {

S_Decoder_Baseinfo_Item ReadSystemInfo(const CVTXMLParse& xml)
{
    const auto body = xml.GetFirstItem("td_command/td_body");
    S_Decoder_Baseinfo_Item info{};
    SetFieldText(info._name, xml.GetValueStr(body, "name"));
    info._model = xml.GetValue_i32(body, "model");
    SetFieldText(info._smodelDecs, xml.GetValueStr(body, "devicetype"));
    SetFieldText(info._mac, xml.GetValueStr(body, "mac"));
    SetFieldText(info._sSoftVer, xml.GetValueStr(body, "softversion"));
    SetFieldText(info._sBuildDate, xml.GetValueStr(body, "builddate"));
    SetFieldText(info._sKernelVer, xml.GetValueStr(body, "kernelversion"));
    SetFieldText(info._sDataVersion, xml.GetValueStr(body, "dataversion"));
    return info;
}

} // namespace

void CNetProtocolProcTWDECODERDevImp::GetBasicCfg(CCmdProcObject* cmd, char* /*data*/, unsigned int /*len*/)
{
    const CDeviceRequest request(*this, HTTP_CMDX_GET_BASIC_CFG);
    if (!Exchange(cmd, request)) {
        return;
    }
    const CVTXMLParse& xml = Reply().Xml();
    S_MTvw_Wall_Basic_Config answer;
    answer._identidy = xml.GetValueDWORD("td_command/td_body/identidy");
    answer._runmode = xml.GetValueDWORD("td_command/td_body/runmode");
    answer._devicename = xml.GetValueStr("td_command/td_body/devicename");
    std::string bytes = answer.Encode();
    ReplyResult(cmd, bytes.data(), static_cast<unsigned int>(bytes.size()), TVWALL_DECODE_GET_BASICCFG);
}

void CNetProtocolProcTWDECODERDevImp::GetDecSystemInfo(CCmdProcObject* cmd, char* /*data*/,
                                                       unsigned int /*len*/)
{
    const CDeviceRequest request(*this, HTTP_CMDX_GET_SYSTEM_INFO);
    if (!Exchange(cmd, request)) {
        return;
    }
    S_Decoder_Baseinfo_Item answer = ReadSystemInfo(Reply().Xml());
    ReplyResult(cmd, reinterpret_cast<char*>(&answer), sizeof(answer), TVWALL_DECODE_GET_SYSINFO);
    if (Reply().ErrorCode() == 0) {
        GetAndNotifyChannelInfo();
    }
}

// Failures are not reported: the command that led here is already answered.
void CNetProtocolProcTWDECODERDevImp::GetAndNotifyChannelInfo()
{
    CDeviceRequest request(*this, HTTP_CMDX_GET_IORES);
    request.Body();
    if (SendAndWait(request, E_SendCheck::FailAtOnce) == E_Exchange::Reply && Reply().ErrorCode() == 0) {
        NotifyHost(TVWALL_DECODE_NOTIFY_IORES, ReplyText().data(), ReplyText().size(), ReplyText().size());
    }
}
