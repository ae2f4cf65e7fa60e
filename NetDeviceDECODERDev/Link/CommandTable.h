#pragma once
// What the host may ask for and what the decoder is asked, in three lists. From the first two the session
// declares and finds its handlers; an unlisted command is ignored without an answer.

#include "TvwallProtocol.h"

// id, handler
#define TVWALL_COMMANDS(COMMAND)                                                                             \
    COMMAND(KEST_CMD_REQUEST_LOGIN, ProcDoOptionCmd)                                                         \
    COMMAND(KEST_CMD_TVWALL_DECODE_GET_CONFIG, GetDecoderConfig)                                             \
    COMMAND(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, SaveDecoderConfig)                                           \
    COMMAND(KEST_CMD_TVWALL_DECODE_OPTION, DecoderOption)                                                    \
    COMMAND(KEST_CMD_TVWALL_DECODE_SET_WALL_LAYOUT, SetWallLayout)                                           \
    COMMAND(KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, GetWallLayout)                                           \
    COMMAND(KEST_CMD_TVWALL_DECODE_DO_BIND_WALL, BindWall)                                                   \
    COMMAND(KEST_CMD_TVWALL_DECODE_DO_UNBIND_WALL, unBindWall)

// id of a command whose payload starts with an option head (TVWALL_OPT_INFO), option type, handler
#define TVWALL_OPTIONS(OPTION)                                                                               \
    OPTION(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_BASICCFG, GetBasicCfg)                       \
    OPTION(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_CHANNEL_GROUP, GetChannelGroup)              \
    OPTION(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_WINDOW_CONFIG, GetWindowConfig)              \
    OPTION(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_SYSINFO, GetDecSystemInfo)                   \
    OPTION(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_AUDIO_CONFIG, GetAudioConfig)                \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_CHANNEL_GROUP, SetChannelGroup)             \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WALL_INFO, SetWallInfo)                     \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_CLEAR_WALL, doClearWall)                        \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_DECODERFRAME, doSetCanvasSplit)             \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WINDOW_CONFIG, SetWindowConfig)             \
    OPTION(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_DRAWBODER, DrawBorder)                          \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DO_PLAY_MEDIA, PlayMedia)                            \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DO_STOP_PLAY_MEDIA, StopPlayMedia)                   \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ADD_CHANNEL_GROUP, AddChannelGroup)                  \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DELETE_CHANNEL_GROUP, DeleteChannelGroup)            \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_START_CHLGROUP_POLLING, StartChlGroupPolling)        \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_STOP_CHLGROUP_POLLING, StopChlGroupPolling)          \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_CREATE_CANVAS, CreateCanvas)                         \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DEL_CANVAS, DelCanvas)                               \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_MODIFY_CANVAS, ChangeCanvas)                         \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_TOP_CANVAS, TopCanvas)                               \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_LOGOUT, ProcLoginOutCmd)                             \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ZOOMOUT, PlanWndZoom)                                \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_PLAYBACK_CTRL, PlayBackCtrl)                         \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_PLAY_AUDIO, PlayAudio)                               \
    OPTION(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_STOP_AUDIO, StopAudio)

// Requests to the decoder and its two notifications, which it sends unasked: name, text of td_header/url.
// Some names differ deliberately from their texts; polling stops under the URL that stops media, on purpose.
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
