"""The built plug-in in the stand-in host against the simulated decoder, over TCP on loopback.

Usage: programs_test.py HOST DECODER PLUGIN [Programs.TEST...]
"""
import json
import os
import pty
import re
import select
import shlex
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import jsonschema

HOST, DECODER, PLUGIN = sys.argv[1:4]
PATIENCE = 60  # seconds; on a busy machine


def window(number, layer, **sub_window):
    return {"id": number, "x": 0, "y": 0, "width": 960, "height": 540, "layer": layer,
            "subWindows": [{"index": 0, "osd": 1, **sub_window}]}


MEDIA = {"address": "10.0.0.7", "port": 554, "channel": 3, "streamType": 4294967295, "user": "cam", "password": "hidden-1",
         "type": 9, "begin": 10, "end": 11}
FILES = {"accounts": "cam:hidden-1\n", "password": "hidden-1\n", "twice.json": {"windows": [window(8, 9), window(8, 1)]},
         "wall.json": {"windows": [window(8, 9), window(9, 1, media=MEDIA)]}}


def data(name):
    with open(os.path.join(os.path.dirname(__file__), name)) as file:
        return file.read()


def closed(part):
    """A part of the schema without room for what it does not name; a reader of an older form needs that room."""
    return {**part, "additionalProperties": False} if part.get("type") == "object" else part


FORM = jsonschema.Draft202012Validator(json.loads(data("../../docs/tvwall-host.schema.json"), object_hook=closed))


def read_line(text):
    """A line of JSON, which must have the promised form."""
    line = json.loads(text)
    FORM.validate(line)
    assert list(line)[:2] == ["v", "time"], text
    return line


def answers(lines):
    """All but the time of each."""
    return [{**line, "time": ""} for line in lines if "command" in line]


class Programs(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.address = "127.0.0.1:1"  # nobody listens there
        codes = subprocess.check_output([DECODER, "--list-codes"], text=True)
        for name, content in {**FILES, "codes": codes}.items():
            with open(f"{self.folder}/{name}", "w") as file:
                file.write(content if isinstance(content, str) else json.dumps(content))

    def start(self, *command, password="secret", output=None):
        passwords = {"TVWALL_DECODER_PASSWORD": password, "TVWALL_PASSWORD": password, "XDG_CONFIG_HOME": self.folder}
        with open(self.folder + "/errors-" + os.path.basename(command[0]), "w") as errors:
            program = subprocess.Popen(command, env={**os.environ, **passwords}, text=True, stdin=subprocess.PIPE, start_new_session=True,
                                       stdout=output or subprocess.PIPE, stderr=output or errors)
        self.addCleanup(program.communicate)
        self.addCleanup(program.kill)
        return program

    def end(self, program, status, number=None):
        if number is not None:
            program.send_signal(number)
        program.communicate(timeout=PATIENCE)
        self.assertEqual(program.returncode, status, self.errors())

    def start_decoder(self, *faults, options=(), listen="127.0.0.1:0", **how):
        self.decoder = self.start(DECODER, "--listen", listen, "--json-log", self.folder + "/requests.json", "--user",
                                  "admin", *options, *[word for fault in faults for word in ("--fault", fault)], **how)
        self.address = self.decoder.stdout.readline().removeprefix("listening on ").strip()

    def start_host(self, *arguments, **how):
        return self.start(HOST, "--plugin", PLUGIN, "--decoder", self.address, "--user", "admin", *arguments, **how)

    def run_host(self, status, *arguments, script=None, password="secret"):
        """What it prints, read as JSON where it is."""
        host = self.start_host(*arguments, password=password)
        out, _ = host.communicate(script or "", timeout=PATIENCE)
        self.assertEqual(host.returncode, status, out + self.errors())
        for secret in "secret", "hidden-1":
            self.assertNotIn(secret, out + self.errors())
            self.assertNotIn(secret.encode().hex(), out)
        return [read_line(line) for line in out.splitlines()] if "--json" in arguments else out

    def fail_in_one_line(self, status, *arguments, told="", **how):
        self.assertIn(told, self.run_host(status, *arguments, **how) + self.errors())
        self.assertEqual(self.errors().count("\n"), 1, self.errors())

    def errors(self):
        return self.file("errors-" + os.path.basename(HOST))

    def file(self, name):
        with open(self.folder + "/" + name) as file:
            return file.read()

    def requests(self, key):
        return [json.loads(line).get(key, 0) for line in self.file("requests.json").splitlines()]

    def test_the_words_of_each_command_become_its_request(self):
        wanted = data("requests.txt").replace("FOLDER", self.folder)
        self.start_decoder()
        os.environ["TVWALL_SOURCE_PASSWORD"] = "secret"
        lines = self.run_host(1, "--json", "script", "-", script="\n".join(re.findall(r"^\$ (.*)", wanted, re.M)))[1:]
        told = [line for line in lines if "command" in line]
        self.assertEqual([line["args"] for line in told], [json.loads(args) for args in re.findall(r"^= (.*)", wanted, re.M)])
        again = [line["command"].replace("***", "0aff") for line in told]
        self.assertEqual([line["command"].replace("***", "0aff") for line in
                          self.run_host(1, "--json", "script", "-", script="\n".join(again)) if "command" in line][1:], again)
        sent = ""
        for url, text in list(zip(self.requests("url"), self.requests("request")))[2:]:
            body = re.sub(r"[\w+/]{171}=", "#", text.replace("\r\n", ""))  # what is enciphered
            sent += f"{url} {body.split('</td_header>')[1].removesuffix('</td_command>')}".strip() + "\n"
        # The system information is followed by a question for the channels.
        wanted = re.sub(r"^[$=].*\n", "", wanted, flags=re.M)
        self.assertEqual(sent.replace("getchannelinfo <td_body/>\n", ""), wanted + "dooption <td_body><encryption>1</encryption></td_body>\ndologin\n" + wanted)

    def test_the_decoder_takes_commands_or_refuses_them_and_draws_what_they_make(self):
        self.start_decoder(options=["--source-accounts", self.folder + "/accounts", "--wall-text", self.folder + "/wall.txt"])
        parts = re.findall(r"((?:\$ .*\n\d+\n)+)((?:[=*] .*\n)*)", data("wall.txt").replace("FOLDER", self.folder))
        for commands, picture in parts:
            known = len(self.requests("url")) if os.path.exists(self.folder + "/requests.json") else 0
            codes = list(map(int, re.findall(r"^\d+$", commands, re.M)))
            self.run_host(int(any(codes)), "script", "-", script="\n".join(re.findall(r"^\$ (.*)", commands, re.M)))
            self.assertEqual(self.requests("errorcode")[known + 2:], codes, commands)
            drawn = [re.sub(" +", " ", line.strip()) for line in self.file("wall.txt").splitlines()]
            for line in re.findall(r"^\* (.*)", picture, re.M):
                self.assertIn(line, drawn)
            if "= " in picture:
                tables = drawn[drawn.index("window x y width height mode layer zoomed"):]
                self.assertEqual([line for line in tables if re.match("[0-9]", line)], re.findall(r"^= (.*)", picture, re.M))
        self.assertNotIn("hidden-1", self.file("requests.json") + self.file("wall.txt"))
        self.assertEqual(sum(self.requests("credentials")), 3)

    def test_answers_are_told_in_words_and_as_json(self):
        script, *wanted = data("answers.txt").split("\n\n")
        self.start_decoder()
        with_codes = ["--device-codes", self.folder + "/codes", "script", "-"]
        words = self.run_host(4, *with_codes, script="# a comment, and an empty line\n\n" + script)
        self.start_decoder()
        lines = self.run_host(4, "--json", *with_codes, script=script)
        fields = [json.dumps(line["fields"], ensure_ascii=False) for line in lines if "result" in line and "fields" in line]
        codes = [json.dumps([line.get(key) for key in ("line", "result", "code", "deviceCode", "deviceMeaning", "answer", "hex")])
                 for line in answers(lines)[-7:]]
        told = [words.rstrip("\n"), "\n".join(fields), "\n".join(codes) + "\n"]
        for varying in r"^\S+ notification.*\n", r"(?<=version:  ).*", r'(?<=Version": )"[^"]*"':
            told = [re.sub(varying, "", text, flags=re.M) for text in told]
        self.assertEqual(told, wanted)

    def test_the_answers_are_the_same_whatever_the_link_looks_like(self):
        script, wanted = data("answers.txt").split("\n\n")[0], None
        for faults in ([], ["chunk=1"], ["device-head", "chunk=37"], ["notify-every=3", "beat-every=2", "chunk=100"],
                       ["delay=250@dowindowtop", "delay=120@dologin"]):
            for options in [], ["--buffered-receive"]:
                with self.subTest(faults=faults, options=options):
                    self.start_decoder(*faults)
                    lines = self.run_host(4, "--json", *options, "script", "-", script=script)
                    wanted = wanted or answers(lines)
                    self.assertEqual(answers(lines), wanted)

    def test_every_way_to_fail_has_its_status_and_one_line(self):
        self.fail_in_one_line(3, "login")  # nobody there
        for words, command in (["wall", "clear"], "login"), (["--no-login", "wall", "clear"], "wall clear"):
            told, = self.run_host(3, "--json", *words)
            self.assertEqual([told["command"], told["result"], self.errors()], [command, "notConnected", ""])
        self.run_host(0, "profile", "add", "one")
        listed, = self.run_host(0, "--json", "profile", "list")
        self.assertEqual(listed["fields"]["profiles"], [{"name": "one", "decoder": self.address, "user": "admin", "plugin": PLUGIN}])
        self.address = "h:0x50"
        self.fail_in_one_line(2, "login")
        self.start_decoder("silent@dowallclear", "error=77@dowindowtop", "garbage@dosplitwindow", "wrong-seq@dodestroywindow",
                           "error=106@dofullscreen")
        codes = ["--device-codes", self.folder + "/codes"]
        self.fail_in_one_line(5, "login", password="wrong", told="word (0x2000005C); the decoder's code is 106, wrong password")
        self.fail_in_one_line(1, *codes, "window", "raise", "1", told="device error (0x20000002); the decoder's code is 77\n")
        self.fail_in_one_line(1, "zoom", "1", "0", "on", told="device error (0x20000002); the decoder's code is 106\n")
        self.fail_in_one_line(1, "--no-login", "wall", "clear", told="stopped or not logged in (0x20000013);")
        self.fail_in_one_line(4, "raw", "3", told="raw 3: no answer; nothing was sent\n")
        for command in "wall clear", "window delete 1", "window split 1 0 0 5 5 --mode 4":
            self.fail_in_one_line(4, "--answer-timeout", "0.5", *command.split(), told=": no reply in 0.5 s;")
        for wrong in "", "--nonsense login", "--plugin /no/such/plugin.so login", f"--plugin {HOST} login", "script /no/such/script":
            self.fail_in_one_line(2, *wrong.split())
        for text, fault in (b"201 unknown window\n202\n", "line 2"), (b"201x y\n", "line 1"), (b"1 a\n\n1 b", "line 3"), (b"1 \xff", "UTF-8"):
            with open(self.folder + "/torn", "wb") as file:
                file.write(text)
            self.fail_in_one_line(2, "--device-codes", self.folder + "/torn", "login", told=fault)
        self.fail_in_one_line(2, "--device-codes", self.folder, "login", told="directory")
        # Several failures: the gravest counts.
        for status, first, then in (4, "window raise 1", "wall clear"), (4, "raw 3", "window raise 1"), (2, "raw 3", "typo"), \
                (5, "raw 257", "wall clear"):
            self.run_host(status, "--answer-timeout", "0.5", "script", "--stream", "-", script=f"{first}\n{then}\n")
        for fault in "silent@setwalllayout", "silent@dologin":
            self.start_decoder(fault)
            self.fail_in_one_line(4, "--answer-timeout", "0.5", "layout", "set", "1", "1", told=": no reply in 0.")
        self.start_decoder("cut-after=3")
        self.fail_in_one_line(3, "layout", "set", "1", "1", told="layout set 1 1: link lost, the decoder closed the connection")
        self.assertEqual(self.run_host(3, "--json", "layout", "set", "1", "1")[-1]["result"], "lost")
        self.assertEqual(self.errors(), "")
        for code, told in (52, "no answer; the decoder's code is 52, wrong token\n"), (51, "device error (0x20000002); the decoder's code is 51, device error\n"):
            self.start_decoder(f"error={code}@dologin")
            self.fail_in_one_line(5, *codes, "login", told=told)

    def test_what_is_wrong_is_said_before_anything_is_opened(self):
        wall = self.folder + "/wall.json"
        for line, text, refusal in re.findall(r"^(?:\$ (.*)|([{[].*))\n(.*)", data("refusals.txt"), re.M):
            with self.subTest(line or text), open(wall, "w") as file:
                file.write(text)
                file.close()
                self.fail_in_one_line(2, *shlex.split(line or "wall apply " + wall))
                self.assertEqual(self.errors(), f"tvwall-host: {refusal.replace('FILE', wall)}\n")

    def test_a_script_is_checked_whole_before_anything_is_opened(self):
        script = self.folder + "/script"
        wrong = [f"{script}:{line}: unknown command 'wnidow'; did you mean 'window'?" for line in range(1, 21)]
        for text, refusals in (
                (b"window raise 1\nwindow rise 2 # x\n\n'\nfoo", [
                    f"{script}:2: unknown command 'window rise'; did you mean 'window raise'?",
                    f"{script}:4: the line ends inside a quotation", f"{script}:5: unknown command 'foo'; see tvwall-host --help"]),
                (b"wnidow raise 1\n" * 20, wrong),
                (b"wnidow raise 1\n" * 200, wrong + [f"{script}: 200 lines are wrong, these are the first 20"]),
                (b"info\n\xff\n", [f"{script}:2: the line is not UTF-8 text"]),
                (b"window delete" + b" 1" * 32762, [f"{script}:1: the line is longer than 64 KiB"]),
                (b"wall apply " + script.encode(), [f"{script}:1: {script}: line 1, column 1: this is no valid JSON"]),
                (b"#" * (2**26 + 1), [f"the script {script} is longer than 64 MiB"])):
            with open(script, "wb") as file:
                file.write(text)
            self.run_host(2, "script", script)
            self.assertEqual(self.errors().splitlines(), [f"tvwall-host: {line}" for line in refusals])

    def test_a_hundred_thousand_lines_run_and_the_last_failure_is_told(self):
        script = self.folder + "/script"
        with open(script, "w") as file:
            lines = int(os.environ.get("SCRIPT_LINES", 100000))
            file.write("raw 3 --no-reply\n" * (lines - 1) + "wall clear\n")
        self.start_decoder()
        self.fail_in_one_line(1, "-q", "--no-login", "script", script, told=f"{script}:{lines}: wall clear: stopped or not logged in")

    def test_a_dry_run_prints_what_would_be_queued_and_opens_nothing(self):
        head = "login admin: command 0x101, payload "
        told = self.run_host(0, "--dry-run", "script", "-", script="window raise 42\nwatch\nlayout get\nraw 3 --hex 0a --no-reply\n"
                             f"media play 1 0 a:1 --channel 1 --source-user u --source-password-file {self.folder}/password\n")
        login, *lines, media = told.splitlines()
        self.assertEqual([login[:len(head)], len(login) - len(head)], [head, 1488])
        self.assertEqual(lines, ["window raise 42: command 0x50002, option 0x60009, payload 0900060024000000" + 64 * "0" + "2a000000",
                                 "layout get: command 0x50006, payload empty", "raw 3: command 0x3, payload 0a, no answer wanted"])
        self.assertTrue(media.endswith(256 * "2a"))
        self.assertEqual(self.run_host(0, "--dry-run", "--json", "--no-login", "layout", "get")[0]["id"], "0x50006")
        self.fail_in_one_line(2, "--dry-run", "shell")

    def test_a_script_goes_on_after_a_failure_unless_it_is_to_stop(self):
        self.start_decoder()
        script = "window raise 7\nwall clear\nwindow raise 8\n"
        for options, done, failed in ((), ["login", "wall"], [1, 3]), (["--stop-on-failure"], ["login"], [1]), (["-q"], [], [1, 3]):
            out = self.run_host(1, *options, "script", "-", script=script)
            self.assertEqual([line.split()[0] for line in out.splitlines()], done)
            self.assertEqual([int(line.split(":")[2]) for line in self.errors().splitlines()], failed)

    def test_passwords_that_a_wall_file_leaves_out_are_asked_for_before_connecting(self):
        os.environ.pop("TVWALL_SOURCE_PASSWORD", None)
        wall = self.folder + "/asking.json"
        with open(wall, "w") as file:
            source = {"address": "10.0.0.7", "port": 554, "channel": 3, "user": "cam"}
            json.dump({"windows": [window(8, 9, media=source), window(9, 1, media=source)]}, file)
        self.fail_in_one_line(2, "wall", "apply", wall, told="no password for the sources' user cam: give --source-password-file")
        self.start_decoder(options=["--source-accounts", self.folder + "/accounts"])
        child, terminal = pty.fork()
        if child == 0:
            os.environ["TVWALL_PASSWORD"] = "secret"
            os.execv(HOST, [HOST, "--plugin", PLUGIN, "--decoder", self.address, "--user", "admin", "wall", "apply", wall])
        shown = ""
        while "user cam: " not in shown:
            shown += os.read(terminal, 1000).decode()
        self.assertFalse(os.path.exists(self.folder + "/requests.json") and self.requests("url"))
        os.write(terminal, b"hidden-1\n")
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        self.assertEqual(sum(self.requests("credentials")), 2)

    def test_a_decoder_that_dies_or_an_interrupt_ends_the_host_at_once(self):
        for dies in True, False:
            self.start_decoder("silent@dowallclear")
            host = self.start_host("script", "--stream", "-")
            host.stdin.write("window create 1 0 0 10 10\nwall clear\n")
            host.stdin.flush()
            while not host.stdout.readline().startswith("window create"):
                pass
            if dies:
                self.decoder.kill()
            self.end(host, 3 if dies else 128 + signal.SIGINT, None if dies else signal.SIGINT)
        self.start_decoder()
        host = self.start_host("--json", "script", "--stream", "-")
        self.assertEqual(read_line(host.stdout.readline())["command"], "login")
        self.decoder.kill()
        self.assertEqual(read_line(host.stdout.readline())["event"], "linkLost")
        self.end(host, 3)
        self.assertEqual(self.errors(), "")

    def test_a_signal_ends_a_decoder_that_stands_at_a_full_pipe(self):
        pipe = self.folder + "/pipe"
        os.mkfifo(pipe)
        full = os.open(pipe, os.O_RDWR | os.O_NONBLOCK)
        self.addCleanup(os.close, full)
        self.start_decoder(options=["--wall-svg", pipe])
        with self.assertRaises(BlockingIOError):
            while True:
                os.write(full, b"x")
        self.run_host(4, "--answer-timeout", "0.5", "wall", "clear")
        self.end(self.decoder, 0, signal.SIGTERM)

    def test_watch_prints_notifications_until_it_is_interrupted(self):
        self.start_decoder("notify-every=20")
        host = self.start_host("--json", "watch")
        lines = [read_line(host.stdout.readline()) for _ in range(12)]
        told = [line for line in lines if "event" in line]
        self.assertGreater(len(told), 10, "all but the answer to the login")
        for i, line in enumerate(told):
            state = (told[0]["event"] == "channelStates") ^ i % 2  # in turn
            self.assertEqual(line["event"], ["channels", "channelStates"][state])
            online = re.findall("<id>(.*?)</id>(?:<name>.*?</name>)?<state>(.*?)</state>", line["data"])
            self.assertEqual([(str(channel["id"]), channel["online"]) for channel in line["fields"]["channels"]],
                             [(number, state == "online") for number, state in online])
            self.assertGreater(line["nLen"], 0, "the length of the login request")
            self.assertIn(["notifychannelchange", "notifychannelstate"][state], line["data"])
        self.end(host, 0, signal.SIGINT)

    def test_a_watch_tells_of_a_lost_link_and_comes_back_if_it_shall(self):
        self.start_decoder("notify-every=300")
        host = self.start_host("watch")
        self.assertIn("logged in", host.stdout.readline())
        time_now = r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z "
        self.assertRegex(host.stdout.readline(), time_now + r"notification, channel(s changed| states): 1( [^,]+)? (on|off)line(, \d+( [^,]+)? (on|off)line)*\n$")
        self.decoder.kill()
        self.assertRegex(host.communicate(timeout=PATIENCE)[0].splitlines()[-1], time_now + "link lost: the decoder closed the connection$")
        self.assertEqual([host.returncode, self.errors()], [3, ""])
        # It comes back once, asks for the channels once, and gives up where its password is refused.
        self.start_decoder("notify-every=300")
        host = self.start_host("--json", "watch", "--reconnect")
        lines = iter(lambda: read_line(host.stdout.readline()), None)
        self.assertEqual(next(lines)["command"], "login")
        next(lines)  # a notification: the watch has begun
        self.decoder.kill()
        self.assertEqual(next(line["event"] for line in lines if not line["event"].startswith("channel")), "linkLost")
        os.remove(self.folder + "/requests.json")
        self.start_decoder(listen=self.address)
        back, channels = next(lines), next(lines)
        self.assertEqual([back["event"], channels["event"], len(channels["fields"]["channels"])], ["linkBack", "channels", 64])
        self.assertGreaterEqual(back["gap"], 1000)
        self.assertEqual(self.requests("url"), ["dooption", "dologin", "getsysteminfo", "getchannelinfo"])
        self.decoder.kill()
        os.remove(self.folder + "/requests.json")
        self.assertEqual(next(lines)["event"], "linkLost")
        self.start_decoder(listen=self.address, password="another")
        self.assertEqual(next(lines)["result"], "loginRefused")
        self.end(host, 5)
        self.assertEqual([self.requests("url"), self.errors()], [["dooption", "dologin"], ""])

    def test_a_watch_ends_in_time_and_without_a_link_too(self):
        self.start_decoder()
        self.assertEqual(self.run_host(0, "script", "-", script="watch --for 300ms\nwall clear\n").splitlines()[-1], "wall clear: done")
        self.start_decoder("notify-every=300")
        for end in ["--for", "2s"], ["--count", "99"]:
            host = self.start_host("watch", "--reconnect", *end)
            self.assertIn("logged in", host.stdout.readline())
            self.assertIn("notification", host.stdout.readline())  # the watch has begun
            self.decoder.kill()
            while "notification" in (line := host.stdout.readline()):
                pass
            self.assertIn("link lost", line)
            self.end(host, 0, None if "--for" in end else signal.SIGINT)
            self.assertEqual(self.errors(), "")
            self.start_decoder("notify-every=300", listen=self.address)

    def test_a_signal_ends_a_watch_whose_output_and_log_nobody_reads(self):
        self.start_decoder("notify-every=1", "notify-burst=1000", options=["--notify-channels", "1"])
        signal.signal(signal.SIGHUP, signal.SIG_DFL)  # the host would leave it ignored
        for number in signal.SIGINT, signal.SIGHUP, signal.SIGTERM:
            unread, full = os.pipe()
            host = self.start_host("--trace", "watch", output=full)
            while select.select([], [full], [], 0)[1]:
                time.sleep(0.01)
            host.send_signal(number)
            self.assertEqual(host.wait(PATIENCE), 0 if number == signal.SIGINT else 128 + number)  # only Ctrl-C says that it is enough
            os.close(unread)
            os.close(full)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
