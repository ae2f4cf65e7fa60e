// The simulated decoder from a host's side, as far as a host can see it that our own is not:
// tests/e2e/wall.txt has the commands of that one. Its faults, as they are written and combined, and where it
// writes its capture to; scripts/check-dissector looks at what.

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <asio.hpp>
#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <spdlog/fmt/fmt.h>

#include "Link/Message.h"
#include "LogFormatter.h"
#include "Picture/WallPictures.h"
#include "Picture/WallView.h"
#include "Server/Device.h"
#include "Server/Faults.h"
#include "Server/PcapFile.h"
#include "Server/Server.h"
#include "Tools/Common/AtomicFile.h"

// As the decoder opens files.
static std::string g_openedPath;
static int g_openedWith = 0;
static bool g_diskIsFull = false;
extern "C" int __real_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, mode_t mode)
{
    g_openedPath = path;
    g_openedWith = flags;
    const int file = __real_open(path, flags, mode);
    return g_diskIsFull ? dup2(__real_open("/dev/full", O_WRONLY), file) : file;
}

namespace simulated_decoder {
namespace {

TEST(SimulatedFaults, SaysWhatIsWrongWithABadOne)
{
    const std::pair<std::string, std::string> cases[] = {
        {"slow=1@a", ""},
        {"error=1", " is not of the form error=CODE@URL"},
        {"silent@", " is not of the form silent@URL"},
        {"device-head=1", " is not of the form device-head"},
        {"chunk=1@a", " is not of the form chunk=BYTES"},
        {"chunk=0", ": '0' is not a number from 1 to 16777216"},
        {"delay=1x@a", ": '1x' is not a number from 1 to 86400000"},
        {"cut-after=4294967296", ": '4294967296' is not a number from 1 to 4294967295"},
    };
    for (const auto& [spec, problem] : cases) {
        Faults faults;
        EXPECT_EQ(AddFault(faults, spec),
                  (problem.empty() ? "unknown fault '" : "fault '") + spec + "'" + problem);
        EXPECT_TRUE(ListFaults(faults).empty());
    }
}

TEST(Capture, APipeWhoseReaderStandsStillEndsItAndHoldsNobodyUp)
{
    const std::string path = testing::TempDir() + "pipe-" + std::to_string(getpid());
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
    AppendedFile file(path);
    file.Write("seen");
    std::string seen(4, ' ');
    EXPECT_EQ(read(reader, seen.data(), seen.size()), 4);
    EXPECT_EQ(seen, "seen");
    EXPECT_TRUE(file.IsOpen());
    file.Write(std::string(16 << 20, 'x'));
    EXPECT_FALSE(file.IsOpen());
    close(reader);
    std::filesystem::remove(path);
    EXPECT_THROW(PcapFile("/dev/full"), std::runtime_error);
}

// What a host makes of a text and a public key.
std::string Encipher(const std::string& pem, const std::string& text)
{
    BIO* memory = BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()));
    EVP_PKEY* key = PEM_read_bio_PUBKEY(memory, nullptr, nullptr, nullptr);
    EVP_PKEY_CTX* context = EVP_PKEY_CTX_new(key, nullptr);
    std::array<unsigned char, 128> cipher{};
    std::size_t length = cipher.size();
    const auto* data = reinterpret_cast<const unsigned char*>(text.data());
    EXPECT_EQ(EVP_PKEY_encrypt_init(context), 1); // PKCS#1 v1.5 padding unless told otherwise
    EXPECT_EQ(EVP_PKEY_encrypt(context, cipher.data(), &length, data, text.size()), 1);
    std::string base64(kEncipheredLength + 1, '\0');
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(base64.data()), cipher.data(), 128);
    EVP_PKEY_CTX_free(context);
    EVP_PKEY_free(key);
    BIO_free(memory);
    return base64.c_str();
}

std::string RequestText(const std::string& url, const std::string& header, const std::string& body)
{
    return "<td_command><td_header><version>2.2</version><type>request</type><url>" + url +
           "</url><seq>300</seq><identity>3</identity>" + header + "</td_header><td_body>" + body +
           "</td_body></td_command>";
}

std::string Element(const std::string& text, const std::string& name)
{
    const auto at = text.find("<" + name + ">") + name.size() + 2;
    return text.substr(at, text.find("</" + name, at) - at);
}

// Files, and a host on the line.
class DecoderRequests : public testing::Test {
protected:
    DecoderRequests()
    {
        char path[] = "/tmp/tvwall-decoder-XXXXXX";
        folder = std::string(mkdtemp(path)) + "/";
        settings.password = "secret";
        settings.notifySeq = UINT32_MAX;
    }
    ~DecoderRequests() override
    {
        Disconnect();
        std::filesystem::remove_all(folder);
    }

    void WriteFile(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder + name) << text;
    }
    std::string ReadFile(const std::string& name) const
    {
        std::ifstream file(folder + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void Disconnect()
    {
        context.stop();
        if (thread.joinable()) {
            thread.join();
        }
        server.reset();
        host.close();
    }
    // To a new decoder.
    void Connect(const std::vector<const char*>& faults)
    {
        Disconnect();
        frames = {};
        answered = 0;
        settings.faults = {};
        for (const char* fault : faults) {
            ASSERT_EQ(AddFault(settings.faults, fault), "");
        }
        device = std::make_unique<Device>(settings);
        server = std::make_unique<Server>(context, *device, capture, "127.0.0.1", 0);
        context.restart();
        host.open(asio::ip::tcp::v4());
        host.set_option(asio::socket_base::receive_buffer_size(65536));
        host.connect({asio::ip::address_v4::loopback(), server->Port()});
        thread = std::thread([this] { context.run(); });
    }
    void Send(const std::string& text) { asio::write(host, asio::buffer(EncodeFrame(text))); }
    // The next payload; empty when the line is cut.
    std::string Receive()
    {
        std::string payload;
        std::array<char, 4096> bytes{};
        std::error_code error;
        for (auto next = frames.Next(payload); !error && next != FrameReader::Result::Payload;
             next = frames.Next(payload)) {
            if (next == FrameReader::Result::Heartbeat) {
                ++answered;
            } else {
                frames.Feed({bytes.data(), host.read_some(asio::buffer(bytes), error)});
            }
        }
        return payload;
    }
    std::string Exchange(const std::string& url, const std::string& body, const std::string& account = "")
    {
        Send(RequestText(url, header + account, body));
        return Receive();
    }
    void LogIn(const std::vector<const char*>& faults)
    {
        Connect(faults);
        header = "";
        const std::string option = Exchange("dooption", "<encryption>1</encryption>");
        const std::string key = Element(option, "pubkey1");
        header = "<session>" + Element(option, "session") + "</session>";
        const std::string login =
            Exchange("dologin", "",
                     "<account>" + Encipher(key, "admin") + "</account><authentication>" +
                         Encipher(key, Sha256Hex("secret")) + "</authentication>");
        header += "<token>" + Element(login, "token") + "</token>";
    }
    // Code and body of the answer.
    std::string Run(const std::string& url, const std::string& body)
    {
        const std::string reply = Exchange(url, body);
        const auto at = reply.find("<td_body");
        return Element(reply, "errorcode") + reply.substr(at, reply.rfind("</td_command>") - at);
    }

    std::string folder;
    DeviceSettings settings;
    std::unique_ptr<Device> device;
    asio::io_context context{1};
    asio::ip::tcp::socket host{context};
    FrameReader frames;
    int answered = 0;     // heartbeats received
    PcapFile capture{""}; // none
    std::unique_ptr<Server> server;
    std::thread thread;
    std::string header; // session and token
};

TEST_F(DecoderRequests, ChannelsComeFromTheFileWhenItIsGood)
{
    const std::string good =
        R"([{"id":3,"name":"Gate <","online":true},{"id":9,"name":"Yard","online":false}])";
    WriteFile("channels", good);
    settings.channels = folder + "channels";
    LogIn({});
    const auto list = [](const std::string& name) {
        return "0<td_body><td_channellist><item><id>3</id><name>" + name +
               " &lt;</name><state>online</state></item><item><id>9</id><name>Yard</name><state>offline"
               "</state></item></td_channellist></td_body>";
    };
    EXPECT_EQ(Run("getchannelinfo", ""), list("Gate"));
    const auto with = [&](const char* what, const char* instead) {
        return std::string(good).replace(good.find(what), 4, instead);
    };
    // The text, and whether it changes the list and the states.
    const std::tuple<std::string, bool, bool> files[] = {
        {"", false, false},
        {"{}", false, false},
        {R"([{"id":3}])", false, false},
        {R"([{"id":1.5,"name":"a","online":true}])", false, false},
        {R"([{"id":0,"name":"a","online":true}])", false, false},
        {R"([{"id":1,"name":"a\n","online":true}])", false, false},
        {R"([{"id":1,"name":"a","online":1}])", false, false},
        {R"([{"id":1,"name":"a","online":true},{"id":1,"name":"b","online":true}])", false, false},
        {with("true", "null"), false, false},
        {with("true", "false"), false, true},
        {with("Gate", "Door"), true, true},
    };
    for (const auto& [text, listed, states] : files) {
        WriteFile("channels", text);
        const ChannelChange change =
            asio::post(context, asio::use_future([this] { return device->ReloadChannels(); })).get();
        EXPECT_EQ(change.list, listed) << text;
        EXPECT_EQ(change.states, states) << text;
    }
    EXPECT_EQ(Run("getchannelinfo", ""), list("Door"));
}

TEST_F(DecoderRequests, PicturesCutOffWhatLiesBeyondTheWall)
{
    DeviceState state{"", Wall(1, 1)};
    const Rect huge{INT32_MIN, INT32_MIN, UINT32_MAX, UINT32_MAX};
    ASSERT_EQ(state.wall.Create({{7, huge, {4, {{0, 1}, {1, 1}, {2, 1}, {3, 1}}}},
                                 {8, {-99, -99, 100, 100}, {1, {{0, 1}}}}}),
              ErrorCode::Success);
    std::istringstream picture(DrawText(See(state)));
    std::string line;
    std::getline(picture, line);
    std::getline(picture, line);
    std::string drawn;
    for (int i = 0; i < 28 && std::getline(picture, line); ++i) {
        // The frame of the wall is whole.
        EXPECT_NE(std::string("┌│└").find(line.substr(0, 3)), std::string::npos) << line;
        EXPECT_NE(std::string("┐│┘").find(line.substr(line.size() - 3)), std::string::npos) << line;
        drawn += line;
    }
    EXPECT_NE(drawn.find("╝  7 "), std::string::npos) << drawn; // next to the only corner that is seen of 8
    const std::string svg = DrawSvg(See(state));
    EXPECT_EQ(tinyxml2::XMLDocument().Parse(svg.c_str()), tinyxml2::XML_SUCCESS);
    EXPECT_NE(svg.find("<clipPath id=\"wall\">"), std::string::npos);
    EXPECT_NE(svg.find("clip-path=\"url(#wall)\">\n<g id=\"window-7\">"), std::string::npos); // around all
}

TEST_F(DecoderRequests, WhatTheParserCannotReadInLinearTimeIsRefused)
{
    const auto repeat = [](const std::string& text, int times) {
        std::string all;
        for (int i = 0; i < times; ++i) {
            all += fmt::format(fmt::runtime(text), i);
        }
        return all;
    };
    const auto parses = [](const std::string& body) {
        return Request().Parse(RequestText("dowallclear", "", body));
    };
    EXPECT_TRUE(parses("<a " + repeat("b{}=\"'>\" ", 64) + "/>"));
    ASSERT_FALSE(parses("<a " + repeat("b{}=\"'>\" ", 65) + "/>"));
    EXPECT_TRUE(parses(repeat("<a><b/>", 62) + repeat("</a>", 62)));
    EXPECT_FALSE(parses(repeat("<a><b/>", 63) + repeat("</a>", 63)));
    EXPECT_TRUE(parses("<a>&#x1F600;&#128512;</a><!-- <a \" --><![CDATA[<a ']]><!a \">"));
    EXPECT_FALSE(parses("<a>&#x000001F600;</a>"));
    EXPECT_FALSE(parses("<a>&#x</a>"));
    EXPECT_FALSE(parses("<a"));
    LogIn({});
    EXPECT_EQ(Run("dologin", "<a " + repeat("b{}='' ", 60000) + "/>"), "1<td_body/>");
}

TEST_F(DecoderRequests, WhatReachesATerminalIsPrintable)
{
    const std::string bad = "\x1b[2J \xc2\x9b \xff \xe4 \xe2\x82 \x7f\n";
    const std::string seen = R"(\x1b[2J \xc2\x9b \xff \xe4 \xe2\x82 \x7f  ä €)";
    spdlog::memory_buf_t line;
    LogFormatter()->format({"", spdlog::level::info, bad + " ä €"}, line);
    const std::string text(line.data(), line.size());
    EXPECT_NE(text.find(seen + "\n"), std::string::npos) << text;
    LogIn({});
    EXPECT_EQ(
        Run("doaddchannelgroup",
            "<channelgroup><id>5</id><name>\xc2\x9b</name><channelnum>1</channelnum><interval>10</interval>"
            "<td_channellist>1</td_channellist></channelgroup>"),
        "3<td_body/>");
}

TEST_F(DecoderRequests, AFileIsNotWrittenThroughALinkThatSomebodyPutBesideIt)
{
    WriteFile("victim", "mine");
    std::filesystem::create_symlink("victim", folder + "wall.new");
    ASSERT_EQ(tools::WriteFileAtomically(folder + "wall", "new"), "");
    EXPECT_EQ(g_openedWith & (O_EXCL | O_NOFOLLOW), O_EXCL | O_NOFOLLOW);
    const std::string before = g_openedPath;
    ASSERT_EQ(tools::WriteFileAtomically(folder + "wall", "new"), "");
    EXPECT_NE(g_openedPath, before); // it cannot be guessed
    EXPECT_EQ(ReadFile("victim") + ReadFile("wall"), "minenew");
    std::filesystem::create_symlink("victim", folder + "link"); // but through one that stands in its place
    ASSERT_EQ(tools::WriteFileAtomically(folder + "link", "by order"), "");
    EXPECT_EQ(ReadFile("victim"), "by order");

    g_diskIsFull = true;
    EXPECT_NE(tools::WriteFileAtomically(folder + "wall", "lost").find("No space left"), std::string::npos);
    g_diskIsFull = false;
    EXPECT_EQ(ReadFile("wall"), "new");
    const std::filesystem::directory_iterator left(folder);
    EXPECT_EQ(std::distance(begin(left), end(left)), 4); // victim, wall, and both links
}

TEST_F(DecoderRequests, FlappingChannelsGoOffAndOnAgain)
{
    LogIn({"flap-channels=1"});
    std::uint32_t seq = UINT32_MAX;
    std::string states; // of one channel
    for (int i = 0; i < 100 && states.find("offline online ") == std::string::npos; ++i) {
        const std::string text = Receive();
        ASSERT_EQ(Element(text, "url"), "notifychannelstate");
        EXPECT_EQ(Element(text, "seq"), std::to_string(seq++));
        const auto at = text.find("<id>64</id>");
        states += at == std::string::npos ? "" : Element(text.substr(at), "state") + " ";
    }
    EXPECT_NE(states.find("offline online "), std::string::npos) << states;
}

TEST_F(DecoderRequests, TheLineIsCutInTheNthReplyWhateverIsLeftUnanswered)
{
    Connect({"cut-after=1", "silent@dowallclear"});
    Send(RequestText("dowallclear", "", ""));
    EXPECT_EQ(Exchange("dooption", ""), "");
}

TEST_F(DecoderRequests, OneOfEachKindAtMostWaitsInFrontOfAReply)
{
    std::string beats;
    for (int i = 0; i < 5000; ++i) {
        beats += EncodeFrame({});
    }
    for (const char* fault : {"beat-every=1000", "flap-channels=1", "notify-every=1"}) {
        SCOPED_TRACE(fault);
        LogIn({"chunk=16", fault});
        if (fault[0] != 'b') {
            EXPECT_NE(Receive(), ""); // takes longer than many periods
        }
        asio::write(host, asio::buffer(beats));
        Send(RequestText("dowallclear", "", ""));
        int notices = 0;
        while (Element(Receive(), "url") != "dowallclear" && notices < 10) {
            ++notices;
        }
        EXPECT_LE(notices, 3);
        EXPECT_LT(answered, 100); // a few for each piece in which they arrived
        EXPECT_GT(answered, 0);
    }
}

TEST_F(DecoderRequests, AHostThatDoesNotReadIsCutOffAt16MiB)
{
    const std::string url(1024 * 1024, 'u'); // comes back in the reply
    for (const std::string& fault : {std::string("beat-every=1000"), "delay=86400000@" + url}) {
        Connect({fault.c_str()});
        std::error_code error;
        for (int i = 0; i < 64 && !error; ++i) {
            asio::write(host, asio::buffer(EncodeFrame(RequestText(url, "", ""))), error);
        }
        std::error_code gone;
        host.shutdown(asio::socket_base::shutdown_send, gone);
        std::array<char, 65536> bytes{};
        while (!error) {
            host.read_some(asio::buffer(bytes), error);
        }
        Disconnect();
        // The system takes some 4 MiB besides.
        EXPECT_GE(device->Requests().All().size(), 16U);
        EXPECT_LE(device->Requests().All().size(), 22U);
    }
}

} // namespace
} // namespace simulated_decoder
