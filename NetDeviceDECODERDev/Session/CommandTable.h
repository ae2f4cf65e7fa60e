#pragma once
// Every host command with the handler that runs it, in two lists, from which the session declares and finds
// its handlers. An unlisted command is ignored without an answer.

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
