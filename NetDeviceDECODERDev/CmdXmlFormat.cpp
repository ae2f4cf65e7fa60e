#include "CmdXmlFormat.h"

#include <algorithm>
#include <iterator>

namespace DECODE_XML_CMD_HEADER {

const std::string HTTP_CMDX_DOOPTION = "dooption";
const std::string HTTP_CMDX_LOGIN = "dologin";
const std::string HTTP_CMDX_LOGOUT = "dologout";
const std::string HTTP_CMDX_GET_IORES = "getchannelinfo";
const std::string HTTP_CMDX_SET_WALL_LAYOUT = "setwalllayout";
const std::string HTTP_CMDX_GET_WALL_LAYOUT = "getwalllayout";
const std::string HTTP_CMDX_DO_BIND_WALL = "dobindwall";
const std::string HTTP_CMDX_DO_UNBIND_WALL = "dounbindwall";
const std::string HTTP_CMDX_PLAY_MEDIA = "doplaymedia";
const std::string HTTP_CMDX_STOP_PLAY_MEDIA = "dostopplaymedia";
const std::string HTTP_CMDX_GET_BASIC_CFG = "getbasicconfig";
const std::string HTTP_CMDX_CREATE_CANVAS = "docreatewindow";
const std::string HTTP_CMDX_DEL_CANVAS = "dodestroywindow";
const std::string HTTP_CMDX_MODIFY_CANVAS = "domodifywindow";
const std::string HTTP_CMDX_TOP_CANVAS = "dowindowtop";
const std::string HTTP_CMDX_ADD_CHANNEL_GROUP = "doaddchannelgroup";
const std::string HTTP_CMDX_DELETE_CHANNEL_GROUP = "dodeletechannelgroup";
const std::string HTTP_CMDX_SET_CHANNEL_GROUP = "setchannelgroup";
const std::string HTTP_CMDX_GET_CHANNEL_GROUP = "getchannelgroup";
const std::string HTTP_CMDX_START_CHLGROUP_POLLING = "dostartchlgrouppolling";
const std::string HTTP_CMDX_STOP_CHLGROUP_POLLING = "dostopplaymedia";
const std::string HTTP_CMDX_SET_WALL_INFO = "setwallinfo";
const std::string HTTP_CMDX_CLEAR_WALL_INFO = "dowallclear";
const std::string HTTP_CMD_SPLIT_CANVAS = "dosplitwindow";
const std::string HTTP_CMDX_NOTIFY_CHANNEL_CHANGE = "notifychannelchange";
const std::string HTTP_CMDX_SET_WINDOW_CONFIG = "setwindowconfig";
const std::string HTTP_CMDX_GET_WINDOW_CONFIG = "getwindowconfig";
const std::string HTTP_CMDX_DRAW_BORDER = "dodrawborder";
const std::string HTTP_CMDX_DO_FULL_SCREEN = "dofullscreen";
const std::string HTTP_CMDX_PLAY_BACK_CTRL = "doplaybackcontrol";
const std::string HTTP_CMDX_PLAY_AUDIO = "doopensound";
const std::string HTTP_CMDX_STOP_AUDIO = "doclosesound";
const std::string HTTP_CMDX_GET_SYSTEM_INFO = "getsysteminfo";
const std::string HTTP_CMDX_GET_AUDIO_CFG = "getaudioconfig";
const std::string HTTP_CMDX_NOTIFY_CHANNEL_STATE = "notifychannelstate";

namespace {

// Every constant but HTTP_CMDX_STOP_CHLGROUP_POLLING, whose text is that of HTTP_CMDX_STOP_PLAY_MEDIA.
const std::string* const KNOWN_URLS[] = {
    &HTTP_CMDX_DOOPTION,
    &HTTP_CMDX_LOGIN,
    &HTTP_CMDX_LOGOUT,
    &HTTP_CMDX_GET_IORES,
    &HTTP_CMDX_SET_WALL_LAYOUT,
    &HTTP_CMDX_GET_WALL_LAYOUT,
    &HTTP_CMDX_DO_BIND_WALL,
    &HTTP_CMDX_DO_UNBIND_WALL,
    &HTTP_CMDX_PLAY_MEDIA,
    &HTTP_CMDX_STOP_PLAY_MEDIA,
    &HTTP_CMDX_GET_BASIC_CFG,
    &HTTP_CMDX_CREATE_CANVAS,
    &HTTP_CMDX_DEL_CANVAS,
    &HTTP_CMDX_MODIFY_CANVAS,
    &HTTP_CMDX_TOP_CANVAS,
    &HTTP_CMDX_ADD_CHANNEL_GROUP,
    &HTTP_CMDX_DELETE_CHANNEL_GROUP,
    &HTTP_CMDX_SET_CHANNEL_GROUP,
    &HTTP_CMDX_GET_CHANNEL_GROUP,
    &HTTP_CMDX_START_CHLGROUP_POLLING,
    &HTTP_CMDX_SET_WALL_INFO,
    &HTTP_CMDX_CLEAR_WALL_INFO,
    &HTTP_CMD_SPLIT_CANVAS,
    &HTTP_CMDX_NOTIFY_CHANNEL_CHANGE,
    &HTTP_CMDX_SET_WINDOW_CONFIG,
    &HTTP_CMDX_GET_WINDOW_CONFIG,
    &HTTP_CMDX_DRAW_BORDER,
    &HTTP_CMDX_DO_FULL_SCREEN,
    &HTTP_CMDX_PLAY_BACK_CTRL,
    &HTTP_CMDX_PLAY_AUDIO,
    &HTTP_CMDX_STOP_AUDIO,
    &HTTP_CMDX_GET_SYSTEM_INFO,
    &HTTP_CMDX_GET_AUDIO_CFG,
    &HTTP_CMDX_NOTIFY_CHANNEL_STATE,
};

} // namespace

bool IsKnownUrl(const std::string& url)
{
    return std::any_of(std::begin(KNOWN_URLS), std::end(KNOWN_URLS),
                       [&url](const std::string* pKnown) { return *pKnown == url; });
}

} // namespace DECODE_XML_CMD_HEADER
