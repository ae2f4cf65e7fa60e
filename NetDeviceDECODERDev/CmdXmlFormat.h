#pragma once
// The names of the requests and notifications of the device link.

#include <string>

// URL texts as they stand in td_header/url. The names differ from their texts and are kept so.
namespace DECODE_XML_CMD_HEADER {

extern const std::string HTTP_CMDX_DOOPTION;
extern const std::string HTTP_CMDX_LOGIN;
extern const std::string HTTP_CMDX_LOGOUT;
extern const std::string HTTP_CMDX_GET_IORES;
extern const std::string HTTP_CMDX_SET_WALL_LAYOUT;
extern const std::string HTTP_CMDX_GET_WALL_LAYOUT;
extern const std::string HTTP_CMDX_DO_BIND_WALL;
extern const std::string HTTP_CMDX_DO_UNBIND_WALL;
extern const std::string HTTP_CMDX_PLAY_MEDIA;
extern const std::string HTTP_CMDX_STOP_PLAY_MEDIA;
extern const std::string HTTP_CMDX_GET_BASIC_CFG;
extern const std::string HTTP_CMDX_CREATE_CANVAS;
extern const std::string HTTP_CMDX_DEL_CANVAS;
extern const std::string HTTP_CMDX_MODIFY_CANVAS;
extern const std::string HTTP_CMDX_TOP_CANVAS;
extern const std::string HTTP_CMDX_ADD_CHANNEL_GROUP;
extern const std::string HTTP_CMDX_DELETE_CHANNEL_GROUP;
extern const std::string HTTP_CMDX_SET_CHANNEL_GROUP;
extern const std::string HTTP_CMDX_GET_CHANNEL_GROUP;
extern const std::string HTTP_CMDX_START_CHLGROUP_POLLING;
// The decoder stops polling under the URL that stops media; the same text on purpose.
extern const std::string HTTP_CMDX_STOP_CHLGROUP_POLLING;
extern const std::string HTTP_CMDX_SET_WALL_INFO;
extern const std::string HTTP_CMDX_CLEAR_WALL_INFO;
extern const std::string HTTP_CMD_SPLIT_CANVAS;
extern const std::string HTTP_CMDX_NOTIFY_CHANNEL_CHANGE; // from the decoder, unasked
extern const std::string HTTP_CMDX_SET_WINDOW_CONFIG;
extern const std::string HTTP_CMDX_GET_WINDOW_CONFIG;
extern const std::string HTTP_CMDX_DRAW_BORDER;
extern const std::string HTTP_CMDX_DO_FULL_SCREEN;
extern const std::string HTTP_CMDX_PLAY_BACK_CTRL;
extern const std::string HTTP_CMDX_PLAY_AUDIO;
extern const std::string HTTP_CMDX_STOP_AUDIO;
extern const std::string HTTP_CMDX_GET_SYSTEM_INFO;
extern const std::string HTTP_CMDX_GET_AUDIO_CFG;
extern const std::string HTTP_CMDX_NOTIFY_CHANNEL_STATE; // from the decoder, unasked

// True when url is the text of one of the constants above.
bool IsKnownUrl(const std::string& url);

} // namespace DECODE_XML_CMD_HEADER
