#pragma once
// The names of the requests and notifications of the device link.

#include <string>

// Every name with its text, as used in td_header/url, in one list, so that no known one is forgotten. Some
// names differ deliberately from their texts; the decoder stops polling under the URL that stops media, the
// same text on purpose. The decoder sends the two notifications unasked.
#define TVWALL_DEVICE_URLS(URL)                                                                              \
    URL(HTTP_CMDX_DOOPTION, "dooption")                                                                      \
    URL(HTTP_CMDX_LOGIN, "dologin")                                                                          \
    URL(HTTP_CMDX_LOGOUT, "dologout")                                                                        \
    URL(HTTP_CMDX_GET_IORES, "getchannelinfo")                                                               \
    URL(HTTP_CMDX_SET_WALL_LAYOUT, "setwalllayout")                                                          \
    URL(HTTP_CMDX_GET_WALL_LAYOUT, "getwalllayout")                                                          \
    URL(HTTP_CMDX_DO_BIND_WALL, "dobindwall")                                                                \
    URL(HTTP_CMDX_DO_UNBIND_WALL, "dounbindwall")                                                            \
    URL(HTTP_CMDX_PLAY_MEDIA, "doplaymedia")                                                                 \
    URL(HTTP_CMDX_STOP_PLAY_MEDIA, "dostopplaymedia")                                                        \
    URL(HTTP_CMDX_GET_BASIC_CFG, "getbasicconfig")                                                           \
    URL(HTTP_CMDX_CREATE_CANVAS, "docreatewindow")                                                           \
    URL(HTTP_CMDX_DEL_CANVAS, "dodestroywindow")                                                             \
    URL(HTTP_CMDX_MODIFY_CANVAS, "domodifywindow")                                                           \
    URL(HTTP_CMDX_TOP_CANVAS, "dowindowtop")                                                                 \
    URL(HTTP_CMDX_ADD_CHANNEL_GROUP, "doaddchannelgroup")                                                    \
    URL(HTTP_CMDX_DELETE_CHANNEL_GROUP, "dodeletechannelgroup")                                              \
    URL(HTTP_CMDX_SET_CHANNEL_GROUP, "setchannelgroup")                                                      \
    URL(HTTP_CMDX_GET_CHANNEL_GROUP, "getchannelgroup")                                                      \
    URL(HTTP_CMDX_START_CHLGROUP_POLLING, "dostartchlgrouppolling")                                          \
    URL(HTTP_CMDX_STOP_CHLGROUP_POLLING, "dostopplaymedia")                                                  \
    URL(HTTP_CMDX_SET_WALL_INFO, "setwallinfo")                                                              \
    URL(HTTP_CMDX_CLEAR_WALL_INFO, "dowallclear")                                                            \
    URL(HTTP_CMD_SPLIT_CANVAS, "dosplitwindow")                                                              \
    URL(HTTP_CMDX_NOTIFY_CHANNEL_CHANGE, "notifychannelchange")                                              \
    URL(HTTP_CMDX_SET_WINDOW_CONFIG, "setwindowconfig")                                                      \
    URL(HTTP_CMDX_GET_WINDOW_CONFIG, "getwindowconfig")                                                      \
    URL(HTTP_CMDX_DRAW_BORDER, "dodrawborder")                                                               \
    URL(HTTP_CMDX_DO_FULL_SCREEN, "dofullscreen")                                                            \
    URL(HTTP_CMDX_PLAY_BACK_CTRL, "doplaybackcontrol")                                                       \
    URL(HTTP_CMDX_PLAY_AUDIO, "doopensound")                                                                 \
    URL(HTTP_CMDX_STOP_AUDIO, "doclosesound")                                                                \
    URL(HTTP_CMDX_GET_SYSTEM_INFO, "getsysteminfo")                                                          \
    URL(HTTP_CMDX_GET_AUDIO_CFG, "getaudioconfig")                                                           \
    URL(HTTP_CMDX_NOTIFY_CHANNEL_STATE, "notifychannelstate")

namespace DECODE_XML_CMD_HEADER {

#define TVWALL_DECLARE_URL(name, text) extern const std::string name;
TVWALL_DEVICE_URLS(TVWALL_DECLARE_URL)
#undef TVWALL_DECLARE_URL

// True when url is one of the texts.
bool IsKnownUrl(const std::string& url);

} // namespace DECODE_XML_CMD_HEADER
