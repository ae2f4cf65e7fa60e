// The wall's grid: set its size, read it, bind and unbind the decoder's output channels. A record that is
// short or malformed still sends what was read of it.

#include <algorithm>

#include "Encoding/FieldText.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "MonitorTvwCommLayout.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "Session/SessionLog.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;

namespace {

constexpr size_t MAX_LOGGED = 4096; // a log text holds no more

void AddCoordinate(CMarkupSTL& doc, const S_MTvw_Wall_WallLayout_Coor& coordinate)
{
    CElemScope scope(doc, "coordinate");
    doc.AddElem("xpos", coordinate._xPos);
    doc.AddElem("ypos", coordinate._yPos);
}

// The decoder's elements have no fixed names here: only their order matters.
std::shared_ptr<S_MTvw_Wall_WallLayout_Item> ReadScreen(const CVTXMLParse& xml, CVTXMLParse::Item item)
{
    const auto id = xml.GetFirstChild(item);
    const auto name = xml.GetNextSiblingItem(id);
    const auto xPos = xml.GetFirstChild(xml.GetNextSiblingItem(name));
    const auto yPos = xml.GetNextSiblingItem(xPos);

    auto screen = std::make_shared<S_MTvw_Wall_WallLayout_Item>();
    screen->_id = xml.GetValueDWORD(id);
    SetFieldText(screen->_name, xml.GetText(name));
    screen->_coordinate = {xml.GetValueDWORD(xPos), xml.GetValueDWORD(yPos)};
    return screen;
}

} // namespace

// Unlike elsewhere, if the decoder does not reply, the host gets no answer: it has its own timeout for these
// commands.
bool CNetProtocolProcTWDECODERDevImp::ExchangeLayout(CCmdProcObject* cmd, const CDeviceRequest& request)
{
    if (SendAndWait(request, E_SendCheck::FailAtOnce) != E_Exchange::Reply) {
        return false;
    }
    if (Reply().ErrorCode() != 0) {
        DevToKSETFailReturn(cmd, ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR);
        return false;
    }
    return true;
}

void CNetProtocolProcTWDECODERDevImp::SetWallLayout(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Layout record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_SET_WALL_LAYOUT);
    request.Body().AddElem("row", record.rowCol._row);
    request.Body().AddElem("col", record.rowCol._col);
    if (ExchangeLayout(cmd, request)) {
        ReplyBuffer(cmd, nullptr, 0);
    }
}

void CNetProtocolProcTWDECODERDevImp::GetWallLayout(CCmdProcObject* cmd, char* /*data*/, unsigned int /*len*/)
{
    const CDeviceRequest request(*this, HTTP_CMDX_GET_WALL_LAYOUT);
    if (!ExchangeLayout(cmd, request)) {
        return;
    }
    S_MTvw_Wall_Layout answer;
    GetWallLayoutMessage(answer, ReplyText(), Reply().Xml());
    CloseReply(); // makes room for the answer
    answer._numchannel = static_cast<tuint32>(answer._channelList.size());
    const std::string bytes = answer.Encode();
    ReplyBuffer(cmd, bytes.data(), bytes.size());
}

void CNetProtocolProcTWDECODERDevImp::GetWallLayoutMessage(S_MTvw_Wall_Layout& layout, const char* text,
                                                           unsigned int len)
{
    GetWallLayoutMessage(layout, {text, len}, CVTXMLParse(text, len));
}

void CNetProtocolProcTWDECODERDevImp::GetWallLayoutMessage(S_MTvw_Wall_Layout& layout, std::string_view text,
                                                           const CVTXMLParse& xml)
{
    session_log::Debug(session_log::NO_LINE, "the xmlDoc:\n %.*s\n",
                       static_cast<int>(std::min(text.size(), MAX_LOGGED)), text.data());
    layout.rowCol._row = xml.GetValueDWORD("td_command/td_body/row");
    layout.rowCol._col = xml.GetValueDWORD("td_command/td_body/col");
    uint64_t nSpare = xml.Spare();
    // A wall without screens is answered with one empty screen, as the host expects.
    auto item = xml.GetFirstItem("td_command/td_body/td_channellist/item");
    do {
        AppendReplied(layout._channelList, ReadScreen(xml, item), nSpare);
        item = xml.GetNextSiblingItem(item);
    } while (item != nullptr);
}

void CNetProtocolProcTWDECODERDevImp::BindWall(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Layout record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_DO_BIND_WALL);
    {
        CElemScope list(request.Body(), "td_channellist");
        for (const auto& screen : record._channelList) {
            CElemScope item(request.Body(), "item");
            request.Body().AddElem("id", screen->_id);
            AddCoordinate(request.Body(), screen->_coordinate);
        }
    }
    if (ExchangeLayout(cmd, request)) {
        ReplyBuffer(cmd, nullptr, 0);
    }
}

void CNetProtocolProcTWDECODERDevImp::unBindWall(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Layout record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_DO_UNBIND_WALL);
    {
        CElemScope list(request.Body(), "td_channellist");
        for (const auto& screen : record._channelList) {
            CElemScope item(request.Body(), "item");
            AddCoordinate(request.Body(), screen->_coordinate);
        }
    }
    if (ExchangeLayout(cmd, request)) {
        ReplyBuffer(cmd, nullptr, 0);
    }
}
