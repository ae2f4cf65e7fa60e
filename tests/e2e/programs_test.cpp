// The built plug-in in the stand-in host against the simulated decoder, over TCP on loopback.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Process.h"

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

// Whatever tests run at the same time, each has its own folder.
class ProgramsTest : public testing::Test {
protected:
    ProgramsTest()
    {
        char szFolder[] = "/tmp/tvwall-e2e-XXXXXX";
        folder = mkdtemp(szFolder);
    }
    ~ProgramsTest() override { std::filesystem::remove_all(folder); }

    // Starts the decoder, account admin with password secret.
    void StartDecoder(Words arguments = {})
    {
        arguments.insert(arguments.begin(),
                         {TVWALL_DECODER_PATH, "--listen", "127.0.0.1:0", "--wall-text", folder + "/wall.txt",
                          "--json-log", folder + "/requests.json", "--user", "admin"});
        decoder = std::make_unique<Process>(arguments, Words{"TVWALL_DECODER_PASSWORD=secret"});
        const std::string line = decoder->ReadUntil("listening on ");
        ASSERT_NE(line, "") << decoder->Err();
        address = line.substr(std::string("listening on ").size());
    }

    std::unique_ptr<Process> StartHost(const Words& arguments, const std::string& password = "secret") const
    {
        Words command = {TVWALL_HOST_PATH, "--plugin", TVWALL_PLUGIN_PATH, "--decoder", address,
                         "--user",         "admin"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return std::make_unique<Process>(command, Words{"TVWALL_PASSWORD=" + password});
    }

    // Runs the host to its end and checks its status; returns its standard output and keeps its errors in
    // err.
    std::string RunHost(const Words& arguments, int nStatus, const std::string& input = "",
                        const std::string& password = "secret")
    {
        const auto host = StartHost(arguments, password);
        host->Write(input);
        host->CloseInput();
        EXPECT_EQ(host->Wait(), nStatus) << host->Out() << host->Err();
        err = host->Err();
        EXPECT_EQ((host->Out() + err).find("secret"), std::string::npos);
        return host->Out();
    }

    // One word for each answer: "buffer", "none", or the failure code.
    static Words Answers(const std::string& out)
    {
        Words answers;
        std::istringstream lines(out);
        for (std::string line; std::getline(lines, line);) {
            const Json object = Json::parse(line);
            if (object.contains("command")) {
                const std::string answer = object["answer"];
                answers.push_back(answer == "failure" ? std::to_string(object["code"].get<unsigned int>())
                                                      : answer);
            }
        }
        return answers;
    }

    std::string File(const std::string& name) const
    {
        std::ifstream file(folder + "/" + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The same for a host that fails with one line.
    void ExpectOneLine(const Words& arguments, int nStatus, const std::string& password = "secret")
    {
        RunHost(arguments, nStatus, "", password);
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
    }

    std::string folder;
    std::string err;
    std::string address = "127.0.0.1:1"; // nobody listens there
    std::unique_ptr<Process> decoder;
};

const std::string SCRIPT = "# a wall\n"
                           "window create 1 0 0 960 540 --mode 4 --osd 11,12,13,14\n"
                           "window create 2 960 0 960 540  3 0 540 400 300\n"
                           "\n"
                           "window create 1 0 0 10 10\n"
                           "window move 2 100 100 500 500\n"
                           "window move 2 -10 0 500 500\n"
                           "window split 1 0 0 960 540 --mode 9\n"
                           "window raise 1\n"
                           "window raise 77\n"
                           "window delete 3\n";
const std::string DEVICE_ERROR = "536870914"; // 0x20000002
const Words SCRIPT_ANSWERS = {"buffer",     "buffer", "buffer", DEVICE_ERROR, "buffer",
                              DEVICE_ERROR, "buffer", "buffer", DEVICE_ERROR, "buffer"};

TEST_F(ProgramsTest, TheWallFollowsTheCommandsOfAScript)
{
    StartDecoder();
    const std::string out = RunHost({"--json", "script", "-"}, 1, SCRIPT);
    EXPECT_EQ(Answers(out), SCRIPT_ANSWERS);
    // The create answer echoes the record behind the 16-byte head.
    const Json created =
        Json::parse(out.substr(out.find('\n') + 1, out.find('\n', out.find('\n') + 1) - out.find('\n') - 1));
    const std::string hex = created["hex"];
    EXPECT_EQ(created["command"], 0x50002);
    EXPECT_EQ(hex.substr(0, 32), "06000600"
                                 "0800"
                                 "6c00"
                                 "00000000"
                                 "00000000");
    EXPECT_EQ(hex.size(), 2 * (16 + 36 + 40 + 4 * 8U));

    std::istringstream requests(File("requests.json"));
    Words urls;
    for (std::string line; std::getline(requests, line);) {
        urls.push_back(Json::parse(line)["url"]);
    }
    EXPECT_EQ(urls, (Words{"dooption", "dologin", "docreatewindow", "docreatewindow", "docreatewindow",
                           "domodifywindow", "domodifywindow", "dosplitwindow", "dowindowtop", "dowindowtop",
                           "dodestroywindow"}));
    EXPECT_EQ(RunHost({"--json", "wall", "clear"}, 0).find("failure"), std::string::npos);
    decoder->Signal(SIGINT);
    EXPECT_EQ(decoder->Wait(), 0);
}

// Every family of commands, with a real login, real credentials and the decoder's notifications.
TEST_F(ProgramsTest, AWholeWallIsSetUpShownAndTakenDown)
{
    std::ofstream(folder + "/accounts") << "viewer:hidden-1\n";
    StartDecoder({"--source-accounts", folder + "/accounts"});
    std::ofstream(folder + "/wall.json")
        << R"({"windows": [{"id": 1, "x": 0, "y": 0, "width": 960, "height": 540,
        "subWindows": [{"index": 0, "osd": 11, "media": {"address": "192.0.2.1", "port": 554, "channel": 1,
        "user": "viewer", "password": "hidden-1"}}, {"index": 1, "osd": 12}]}]})";
    std::ofstream(folder + "/password") << "hidden-1\n";
    const std::string play =
        " 192.0.2.2:554 --channel 2 --source-user viewer --source-password-file " + folder;
    const std::string script =
        "info\nconfig\nlayout set 2 2\nlayout bind 9 1 0\nlayout get\nwall apply " + folder +
        "/wall.json\nmedia play 1 1" + play +
        "/password\nplayback 1 0 1 2\nzoom 1 0 on\n"
        "border 1 0 on\nwindow-config set on off\nwindow-config get\naudio play 1 0 1\n"
        "audio get\ngroup add 7 --name doors --channels 1,2 --interval 5\n"
        "group set 7 --name gates --channels 1,3 --interval 6\ngroup get 7\n"
        "polling start 1 1 7\npolling stop 1 1\ngroup delete 7\naudio stop 1 0\nmedia stop 1 0\n"
        "layout unbind 1 0\nwall clear\nlogout\n";
    const std::string out = RunHost({"--json", "script", "-"}, 0, script);
    EXPECT_EQ(out.find("hidden-1"), std::string::npos);
    EXPECT_EQ(File("requests.json").find("hidden-1"), std::string::npos);

    std::string fields; // of all answers
    int nNotifications = 0;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        const Json object = Json::parse(line);
        if (object.contains("command")) {
            EXPECT_EQ(object["answer"], "buffer") << line;
            fields += object.value("fields", Json()).dump();
        } else {
            ++nNotifications;
        }
    }
    EXPECT_EQ(Answers(out).size(), 26U);
    EXPECT_EQ(nNotifications, 1) << "the channels that follow the system information";
    for (const char* szRead : {R"("rows":2)", R"("id":9)", R"("name":"gates")", R"("channels":"1,3")"}) {
        EXPECT_NE(fields.find(szRead), std::string::npos) << szRead << " in " << fields;
    }

    int nAccounts = 0;
    std::istringstream requests(File("requests.json"));
    for (std::string line; std::getline(requests, line);) {
        nAccounts += Json::parse(line).value("credentials", 0);
    }
    EXPECT_EQ(nAccounts, 2) << "the accounts of two sources";
}

// Whatever the link looks like, the same commands get the same answers.
class LinkShapesTest : public ProgramsTest,
                       public testing::WithParamInterface<std::pair<const char*, Words>> {};

TEST_P(LinkShapesTest, TheAnswersStayTheSame)
{
    Words faults;
    for (const auto& fault : GetParam().second) {
        faults.insert(faults.end(), {"--fault", fault});
    }
    StartDecoder(faults);
    for (const Words& options : {Words{"--json"}, Words{"--json", "--buffered-receive"}}) {
        Words arguments = options;
        arguments.insert(arguments.end(), {"script", "-"});
        EXPECT_EQ(Answers(RunHost(arguments, 1, SCRIPT)), SCRIPT_ANSWERS);
        RunHost({"wall", "clear"}, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Faults, LinkShapesTest,
    testing::Values(std::pair("Bytewise", Words{"chunk=1"}),
                    std::pair("DeviceHeads", Words{"device-head", "chunk=37"}),
                    std::pair("Busy", Words{"notify-every=3", "beat-every=2", "chunk=100"}),
                    std::pair("Slow", Words{"delay=250@dowindowtop", "delay=120@dologin"})),
    [](const auto& shape) { return std::string(shape.param.first); });

TEST_F(ProgramsTest, EveryWayToFailHasItsStatusAndOneLine)
{
    ExpectOneLine({"login"}, 3); // nobody there
    StartDecoder({"--fault", "silent@dowallclear", "--fault", "error=77@dowindowtop", "--fault",
                  "garbage@dosplitwindow", "--fault", "wrong-seq@dodestroywindow"});
    ExpectOneLine({"login"}, 5, "wrong");
    ExpectOneLine({"window", "raise", "1"}, 1);
    ExpectOneLine({"--answer-timeout", "0.5", "wall", "clear"}, 4);
    ExpectOneLine({"--answer-timeout", "0.5", "window", "delete", "1"}, 4);
    ExpectOneLine({"--answer-timeout", "0.5", "window", "split", "1", "0", "0", "5", "5", "--mode", "4"}, 4);
    ExpectOneLine({"--no-login", "wall", "clear"}, 1);
    for (const Words& arguments :
         {Words{"window", "fly"}, Words{}, Words{"--nonsense", "login"},
          Words{"--plugin", "/no/such/plugin.so", "login"}, Words{"--plugin", TVWALL_HOST_PATH, "login"},
          Words{"raw", "0x50002", "--hex", "0g"}, Words{"script", "/no/such/script"}}) {
        ExpectOneLine(arguments, 2);
    }
    RunHost({"script", "-"}, 2, "window raise 1\nwall clean\n");
    EXPECT_NE(err.find("line 2"), std::string::npos) << err;
}

TEST_F(ProgramsTest, ADecoderThatDiesOrAnInterruptEndsTheHostAtOnce)
{
    StartDecoder({"--fault", "cut-after=3"});
    RunHost({"wall", "clear"}, 3);
    for (const bool bDecoderDies : {true, false}) {
        StartDecoder({"--fault", "silent@dowallclear"});
        const auto host = StartHost({"script", "-"});
        host->Write("window create 1 0 0 10 10\nwall clear\n");
        ASSERT_NE(host->ReadUntil("window create"), "") << host->Err();
        bDecoderDies ? decoder->Signal(SIGKILL) : host->Signal(SIGINT);
        EXPECT_EQ(host->Wait(), bDecoderDies ? 3 : 128 + SIGINT) << host->Err();
    }
}

TEST_F(ProgramsTest, WatchPrintsNotificationsUntilItIsInterrupted)
{
    StartDecoder({"--fault", "notify-every=20"});
    const auto host = StartHost({"--json", "watch"});
    ASSERT_NE(host->ReadUntil("{\"command\":257"), "") << host->Err();
    unsigned int nLast = 0;
    for (int i = 0; i < 10; ++i) {
        const Json notification = Json::parse(host->ReadUntil("{\"notification\""));
        EXPECT_EQ(notification["notification"], 0x50003);
        const unsigned int nOptType = notification["optType"];
        EXPECT_TRUE(nOptType == 0x60000U || nOptType == 0x60001U);
        EXPECT_NE(nOptType, nLast); // they alternate
        nLast = nOptType;
        EXPECT_GT(notification["nLen"], 0); // the length of the login request
        EXPECT_EQ(notification["destination"].get<std::string>().size(), 38U);
        const std::string data = notification["data"];
        EXPECT_NE(data.find(nOptType == 0x60000U ? "notifychannelchange" : "notifychannelstate"),
                  std::string::npos);
    }
    host->Signal(SIGINT);
    EXPECT_EQ(host->Wait(), 0) << host->Err();

    const auto ended = StartHost({"watch"});
    ASSERT_NE(ended->ReadUntil("notification"), "") << ended->Err();
    ended->Signal(SIGTERM); // not the user's way to say that it is enough
    EXPECT_EQ(ended->Wait(), 128 + SIGTERM);
}

TEST_F(ProgramsTest, EachDecoderOfAProcessHasItsOwnWall)
{
    decoder = std::make_unique<Process>(Words{TVWALL_DECODER_PATH, "--decoders", "2"},
                                        Words{"TVWALL_DECODER_PASSWORD=secret"});
    for (int i = 0; i < 2; ++i) {
        const std::string line = decoder->ReadUntil("listening on ");
        ASSERT_NE(line, "") << decoder->Err();
        address = line.substr(std::string("listening on ").size());
        RunHost({"window", "create", "1", "0", "0", "960", "540"}, 0);
    }
    RunHost({"window", "create", "1", "0", "0", "960", "540"}, 1); // the last one has it now
}

TEST_F(ProgramsTest, RawCommandsGoInAsTheyAre)
{
    StartDecoder();
    const std::string out = RunHost({"--json", "script", "-"}, 4,
                                    "raw 0x50001 --option 0x60011 --hex 0102\n"
                                    "raw 0x50001 --option 0x60011 --no-reply\n"
                                    "raw 0x50002 --option 0x60009\n" // raises window 0
                                    "raw 0x50002 --option 0x50000\n" // logs out
                                    "raw 0x50003\n");                // no command of the plug-in: no answer
    EXPECT_EQ(Answers(out), (Words{"buffer", "buffer", "none", DEVICE_ERROR, "buffer", "none"}));
    EXPECT_NE(out.find("\"hex\":\"110006000800020000000000000000000102\""), std::string::npos) << out;
}

} // namespace
