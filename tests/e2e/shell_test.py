"""The shell of tvwall-host on a pseudo terminal, with the simulated decoder behind it.

Usage: shell_test.py HOST DECODER PLUGIN
"""
import atexit, fcntl, os, pty, re, select, struct, subprocess, sys, tempfile, termios, time

HOST, DECODER, PLUGIN = sys.argv[1:]


class Shell:
    """The program on a terminal of its own. Text is looked for behind what was found last, without control sequences."""

    def __init__(self, home, *arguments):
        self.raw, self.text, self.at = b"", "", 0
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.environ.update(HOME=home, XDG_STATE_HOME=home, XDG_CONFIG_HOME=home, TERM="xterm", LC_ALL="C.UTF-8", TVWALL_PASSWORD="secret")
            os.execv(HOST, [HOST, "--plugin", PLUGIN, "--user", "admin", *arguments])

    def expect(self, wanted):
        deadline = time.monotonic() + 20
        while (found := self.text.find(wanted, self.at)) < 0:
            ready = select.select([self.terminal], [], [], max(0, deadline - time.monotonic()))[0]
            assert ready, f"no {wanted!r} in {self.text[self.at:]!r}"
            self.raw += os.read(self.terminal, 4096)  # may end within a sequence
            self.text = re.sub("\x1b\\[[0-9;?]*[A-Za-z]|[\r\b]", "", self.raw.decode(errors="ignore"))
        self.at = found + len(wanted)

    def type(self, keys, *wanted):
        os.write(self.terminal, keys.encode())
        for text in wanted:
            self.expect(text)

    def end(self, keys, status):
        self.type(keys)
        assert os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1]) == status


def start_decoder(port, *arguments):
    decoder = subprocess.Popen([DECODER, "--listen", f"127.0.0.1:{port}", "--user", "admin", *arguments], text=True,
                               stdout=subprocess.PIPE, env={**os.environ, "TVWALL_DECODER_PASSWORD": "secret"})
    atexit.register(decoder.kill)
    return decoder, decoder.stdout.readline().rsplit(":", 1)[1].strip()


with tempfile.TemporaryDirectory() as home:
    decoder, port = start_decoder(0)
    ready, offline = f"admin@127.0.0.1:{port}> ", f"127.0.0.1:{port} (offline)> "
    shell = Shell(home, "--decoder", f"127.0.0.1:{port}", "shell")
    shell.expect(ready)

    # Completion: the only candidate, the common part of several, their list, an option, a file.
    shell.type("win\t cr\t1 0 0 960 540 --mo\t4\n", "window create 1 0 0 960 540 mode 4: done", ready)
    open(home + "/one wall.json", "w").write("{}")
    shell.type(f"wall app\t{home}/one\t\n", "one\\ wall.json", "one wall.json: windows must be a list", ready)
    shell.type("wa\t\t", "wall  watch", ready + "wa")
    shell.type("\x03", "^C", ready)  # gives the line up and not the shell
    # Values: windows that are there, switches and modes in their places, profiles.
    shell.type("window create 23 0 0 96 54 --mode 1\t6\n", "window create 23 0 0 96 54 mode 16: done", ready)
    shell.type("window move 23 -10 0 96 54 2\t", "96 54 23 ")
    shell.type("\x03", "^C", ready)
    shell.type("border 2\t0 o\tn 2\t1 of\t\n", "border 23 0 on 23 1 off: done", ready)
    shell.type("window delete 2\t\n", "window delete 23: done", ready)
    shell.type("zoom \t", "zoom 1 ")
    shell.type("\x03", "^C", ready)

    # What was mistyped comes back to be mended; the file keeps neither it nor payloads.
    shell.type("window rise 1\n", "unknown command 'window rise'; did you mean 'window raise'?", ready)
    shell.type("raw 0x50001 --hex 00\n", "raw 0x50001: no answer; nothing was sent", ready)
    shell.type(2 * "\x1b[A" + 6 * "\x7f" + "raise 1\n", "window raise 1: done", ready)
    shell.type("logout\n", "logout: done", f"127.0.0.1:{port} (not logged in)> ")
    shell.type("login\n", "logged in", ready)

    # The decoder dies while the user writes: the line stays, and runs in a new session once it is back.
    shell.type("window del", "window del")
    decoder.kill()
    decoder.wait()
    shell.expect("connection lost")
    shell.expect(offline + "window del")
    shell.type("ete 1\n", "cannot connect", offline)
    decoder, _ = start_decoder(port, "--fault", "silent@dowallclear", "--fault", "beat-every=50")
    shell.type("window raise 1\n", "logged in", "window raise 1: device error (0x20000002); the decoder's code is 201", ready)
    shell.end("exit\n", 0)

    history = home + "/tvwall/history"
    assert os.stat(history).st_mode & 0o777 == 0o600
    lines = open(history).read().splitlines()
    assert "window create 1 0 0 960 540 --mode 4" in [" ".join(line.split()) for line in lines], lines
    assert not [line for line in lines if "rise" in line or "--hex" in line], lines

    # The line follows the window's size: the way back to its beginning then leads over a row of it.
    shell = Shell(home, "--decoder", f"127.0.0.1:{port}", "shell")
    shell.expect(ready)
    shell.type("景" * 30, "景" * 28, "景" * 2)  # each as wide as two letters
    fcntl.ioctl(shell.terminal, termios.TIOCSWINSZ, struct.pack("4H", 24, 70, 0, 0))
    shell.expect(ready)
    assert b"\x1b[1A\r\x1b[J" in shell.raw, shell.raw  # it had wrapped
    up = shell.raw.count(b"\x1b[A")
    shell.type("\x01y", "y")
    assert shell.raw.count(b"\x1b[A") > up, shell.raw
    shell.type("\x03", "^C", ready)
    # What takes long is shown, and goes before something else comes.
    shell.type("wall clear\n", "waiting for the answer to wall clear, 1 s of 35 s")
    shell.type("\x03", "interrupted", offline)
    assert re.search(rb" s of 35 s\x1b\[\?7h(\^C)?\r\x1b\[K", shell.raw), shell.raw
    shell.end("\x04", 0)

    # Ctrl-C ends the waiting, and with it the session in which the decoder may still work; the next command opens one.
    shell = Shell(home, "--trace", "--decoder", f"127.0.0.1:{port}", "shell")
    shell.expect(ready)
    # What other threads print stands in place of what is being typed, which follows.
    shell.type("window", "window", "heartbeat", ready + "window", "heartbeat", ready + "window")
    assert not re.search(rb"[^\n\rJ]\d\d:\d\d:\d\d\.\d+ received", shell.raw), shell.raw
    shell.type("\x03", "^C", ready)
    shell.type("wall clear\n", "dowallclear")
    shell.type("\x03", "interrupted", offline)
    shell.type(3 * "\x1b[A" + "\n", "logged in", "window raise 1: device error", ready)

    # Profiles: the one in use is kept under a name, and another one connects elsewhere.
    _, elsewhere = start_decoder(0)
    there = f"admin@127.0.0.1:{elsewhere}> "
    subprocess.run([HOST, "--decoder", f"127.0.0.1:{elsewhere}", "profile", "add", "exit"], check=True,
                   env={**os.environ, "XDG_CONFIG_HOME": home})
    shell.type("profile add entrance\n", "profile entrance: kept", ready)
    shell.type("connect entrence\n", "did you mean 'entrance'?", ready)
    shell.type("connect ex\t\n", "logged in", there)
    shell.type("window create 1 0 0 9 9\n", "done", there)
    shell.type("connect entrance\n", "logged in", ready)
    shell.type("help window\n", "Usage: window [OPTIONS] [SUBCOMMAND]", ready)
    shell.type("qiut\n", "unknown command 'qiut'; did you mean 'quit'?", ready)
    shell.end("quit\n", 0)
