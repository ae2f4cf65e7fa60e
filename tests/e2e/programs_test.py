"""The built plug-in in the stand-in host against the simulated decoder, over TCP on loopback.

Usage: programs_test.py HOST DECODER PLUGIN [Programs.TEST...]
"""
import json
import os
import re
import select
import shlex
import signal
import subprocess
import sys
import tempfile
import time
import unittest

HOST, DECODER, PLUGIN = sys.argv[1:4]
PATIENCE = 60  # seconds


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


def answers(lines):
    """Kind, failure code and bytes of each."""
    return [(line["answer"], line["code"], line["hex"]) for line in lines if "command" in line]


class Programs(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.address = "127.0.0.1:1"  # nobody listens there
        for name, content in FILES.items():
            with open(f"{self.folder}/{name}", "w") as file:
                file.write(content if isinstance(content, str) else json.dumps(content))

    def start(self, *command, password="secret", output=None):
        passwords = {"TVWALL_DECODER_PASSWORD": password, "TVWALL_PASSWORD": password}
        with open(self.folder + "/errors-" + os.path.basename(command[0]), "w") as errors:
            program = subprocess.Popen(command, env={**os.environ, **passwords}, text=True, stdin=subprocess.PIPE,
                                       stdout=output or subprocess.PIPE, stderr=output or errors)
        self.addCleanup(program.communicate)
        self.addCleanup(program.kill)
        return program

    def end(self, program, status, number=None):
        if number is not None:
            program.send_signal(number)
        program.communicate(timeout=PATIENCE)
        self.assertEqual(program.returncode, status, self.errors())

    def start_decoder(self, *faults, options=()):
        self.decoder = self.start(DECODER, "--listen", "127.0.0.1:0", "--json-log", self.folder + "/requests.json", "--user",
                                  "admin", *options, *[word for fault in faults for word in ("--fault", fault)])
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
        return [json.loads(line) for line in out.splitlines()] if "--json" in arguments else out

    def fail_in_one_line(self, status, *arguments, **how):
        self.run_host(status, *arguments, **how)
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
        self.run_host(1, "--json", "script", "-", script="\n".join(re.findall(r"^\$ (.*)", wanted, re.M)))
        sent = ""
        for url, text in list(zip(self.requests("url"), self.requests("request")))[2:]:
            body = re.sub(r"[\w+/]{171}=", "#", text.replace("\r\n", ""))  # what is enciphered
            sent += f"{url} {body.split('</td_header>')[1].removesuffix('</td_command>')}".strip() + "\n"
        # The system information is followed by a question for the channels.
        self.assertEqual(sent.replace("getchannelinfo <td_body/>\n", ""), re.sub(r"^\$.*\n", "", wanted, flags=re.M))

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
        words = self.run_host(4, "script", "-", script="# a comment, and an empty line\n\n" + script)
        self.start_decoder()
        lines = self.run_host(4, "--json", "script", "-", script=script)
        self.assertEqual(answers(lines)[-5][:2], ("failure", 0x20000002))
        self.assertEqual(answers(lines)[-4:], [("buffer", 0, "110006000800020000000000000000000102"), ("none", 0, ""),
                                               ("buffer", 0, ""), ("none", 0, "")])
        told = [words, "".join(json.dumps(line["fields"], ensure_ascii=False) + "\n" for line in lines if line.get("fields"))]
        for varying in r"^notification.*\n", r"(?<=version:  ).*", r'(?<=Version": )"[^"]*"':
            told = [re.sub(varying, "", text, flags=re.M) for text in told]
        self.assertEqual(told, [wanted[0] + "\n", wanted[1]])

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
        self.address = "h:0x50"
        self.fail_in_one_line(2, "login")
        self.start_decoder("silent@dowallclear", "error=77@dowindowtop", "garbage@dosplitwindow", "wrong-seq@dodestroywindow")
        self.fail_in_one_line(5, "login", password="wrong")
        self.fail_in_one_line(1, "window", "raise", "1")
        self.fail_in_one_line(1, "--no-login", "wall", "clear")
        for command in "wall clear", "window delete 1", "window split 1 0 0 5 5 --mode 4":
            self.fail_in_one_line(4, "--answer-timeout", "0.5", *command.split())
        for wrong in "", "--nonsense login", "--plugin /no/such/plugin.so login", f"--plugin {HOST} login", "script /no/such/script":
            self.fail_in_one_line(2, *wrong.split())
        self.run_host(2, "script", "-", script="window raise 1\nwall clean\n")
        self.assertIn("line 2", self.errors())

    def test_what_is_wrong_is_said_before_anything_is_opened(self):
        wall = self.folder + "/wall.json"
        for line, text, refusal in re.findall(r"^(?:\$ (.*)|([{[].*))\n(.*)", data("refusals.txt"), re.M):
            with self.subTest(line or text), open(wall, "w") as file:
                file.write(text)
                file.close()
                self.fail_in_one_line(2, *shlex.split(line or "wall apply " + wall))
                self.assertEqual(self.errors(), f"tvwall-host: {refusal.replace('FILE', wall)}\n")

    def test_help_shows_the_options_of_commands_in_groups(self):
        for words, wanted in (("window --help", "admin window raise 1"), ("--help-all", "\n  --osd ID,"),
                              ("media --help-all", "Usage: tvwall-host media play [OPTIONS] WINDOW")):
            shown = subprocess.check_output([HOST, *words.split()], text=True)
            self.assertIn(wanted, shown)
        self.assertNotIn("window create", shown)

    def test_a_decoder_that_dies_or_an_interrupt_ends_the_host_at_once(self):
        self.start_decoder("cut-after=3")
        self.run_host(3, "wall", "clear")
        for dies in True, False:
            self.start_decoder("silent@dowallclear")
            host = self.start_host("script", "-")
            host.stdin.write("window create 1 0 0 10 10\nwall clear\n")
            host.stdin.flush()
            while not host.stdout.readline().startswith("window create"):
                pass
            if dies:
                self.decoder.kill()
            self.end(host, 3 if dies else 128 + signal.SIGINT, None if dies else signal.SIGINT)

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
        lines = [json.loads(host.stdout.readline()) for _ in range(12)]
        told = [line for line in lines if "notification" in line]
        self.assertGreater(len(told), 10, "all but the answer to the login")
        for i, line in enumerate(told):
            state = (told[0]["optType"] - 0x60000) ^ i % 2  # in turn
            self.assertEqual([line["notification"], line["optType"], len(line["destination"])], [0x50003, 0x60000 + state, 38])
            self.assertGreater(line["nLen"], 0, "the length of the login request")
            self.assertIn(["notifychannelchange", "notifychannelstate"][state], line["data"])
        self.end(host, 0, signal.SIGINT)
        host = self.start_host("watch")
        while "notification" not in host.stdout.readline():
            pass
        self.end(host, 128 + signal.SIGTERM, signal.SIGTERM)  # not the user's way to say that it is enough

    def test_a_signal_ends_a_watch_whose_output_and_log_nobody_reads(self):
        self.start_decoder("notify-every=1", "notify-burst=1000", options=["--notify-channels", "1"])
        signal.signal(signal.SIGHUP, signal.SIG_DFL)  # the host would leave it ignored
        for number in signal.SIGINT, signal.SIGHUP:
            unread, full = os.pipe()
            host = self.start_host("--trace", "watch", output=full)
            while select.select([], [full], [], 0)[1]:
                time.sleep(0.01)
            host.send_signal(number)
            self.assertEqual(host.wait(PATIENCE), 128 + number)
            os.close(unread)
            os.close(full)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
