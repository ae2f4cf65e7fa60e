#pragma once

// Wraps one of the host's node types and tells its family.
class CTypeCheck {
public:
    // Values of the host's node types: clients from 1, servers from 32, common resources from 128, peripheral
    // devices from 256.
    enum _kest_node_type_def_ : unsigned int {
        NODE_TYPE_CLIENT_BEGIN = 1,
        NODE_TYPE_CLIENT_END = 31,
        NODE_TYPE_WALL = 132,
        NODE_TYPE_CHANNELGROUP = 133,
        NODE_TYPE_PERIPHERAL_ABSTRACT_DEVICE = 257,
        NODE_TYPE_PERIPHERAL_DECODER_BEGIN = 512,
        NODE_TYPE_PERIPHERAL_ABSTRACT_DECODER = 513,
        NODE_TYPE_PERIPHERAL_DECODER_END = 752,
        NODE_TYPE_SCREEN_LED_BEGIN = 753,
    };

    // A type value as a member of the video decoder family.
    class CDecoderTypeCheck {
    public:
        unsigned int m_dwTypeValue = 0;
    };

    explicit CTypeCheck(unsigned int dwTypeValue) : m_dwTypeValue(dwTypeValue) {}

    // The value under which the plug-in's prototype is registered with the host.
    static unsigned int GetDECODERAbstractTypeValue();

    // True for video decoders. *pOut, if given, receives the value in either case.
    bool IsDecoder(CDecoderTypeCheck* pOut) const;
    static bool IsDecoder_s(unsigned int dwTypeValue, CDecoderTypeCheck* pOut);

    // Tests for single node types.
    bool IsClient() const { return IsClient_s(m_dwTypeValue); }
    bool IsWall() const { return IsWall_s(m_dwTypeValue); }
    bool IsChannelGroup() const { return IsChannelGroup_s(m_dwTypeValue); }
    static bool IsClient_s(unsigned int dwTypeValue)
    {
        return dwTypeValue >= NODE_TYPE_CLIENT_BEGIN && dwTypeValue <= NODE_TYPE_CLIENT_END;
    }
    static bool IsWall_s(unsigned int dwTypeValue) { return dwTypeValue == NODE_TYPE_WALL; }
    static bool IsChannelGroup_s(unsigned int dwTypeValue) { return dwTypeValue == NODE_TYPE_CHANNELGROUP; }

private:
    unsigned int m_dwTypeValue;
};
