"""Where tvwall-host connects and as whom: options, environment, profiles, kinds of addresses.

Usage: profiles_test.py HOST DECODER PLUGIN
"""
import atexit, json, os, resource, signal, subprocess, sys, tempfile

HOST, DECODER, PLUGIN = sys.argv[1:]
FAULTS = [  # what the file holds, and what is said of it
    ("", "FILE: line 1, column 1: this is no valid JSON"),
    ('{"profiles": {"a": {"decoder": "h:1"', "FILE: line 1, column 37: this is no valid JSON"),
    ("[]", "FILE: must be an object"),
    ("{}", "FILE: profiles must be an object"),
    ('{"profiles": {"a": {"user": "x"}, "a": {}}}', "FILE: profiles.a is given twice"),
    ('{"profiles": {"a": {"password": "top"}}}', "FILE: profiles.a has the unknown key 'password'"),
    ('{"profiles": {"a": {"user": 7}}}', "FILE: profiles.a.user must be a text"),
    ('{"profiles": {"a": {"decoder": "::1:9000"}}}',
     "FILE: profiles.a.decoder takes an IPv6 address in brackets, [::1]:9000, not '::1:9000'"),
    ('{"profiles": {"a b": {}}}', "a profile's name has 1 to 64 letters, digits, '.', '_' and '-', not 'a b'"),
    ('{"profiles": {"b": {}}}', "there is no profile 'a' in FILE"),
]


def run(*words, status=0, text="", input=None, limit=None, **environment):
    """What it prints; a failure is one line."""
    def prepare():
        if limit is not None:
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    clean = {name: value for name, value in os.environ.items() if not name.startswith("TVWALL_")}
    ended = subprocess.run([HOST, *words], env={**clean, "XDG_CONFIG_HOME": home, "TVWALL_PASSWORD": "secret", **environment},
                           input=input, capture_output=True, text=True, timeout=60, preexec_fn=prepare, cwd=home)
    assert ended.returncode == status and text in ended.stdout + ended.stderr, (words, ended)
    assert status <= 0 or ended.stderr.count("\n") == 1, ended.stderr
    return ended.stdout


def start_decoder(where):
    decoder = subprocess.Popen([DECODER, "--listen", where, "--user", "admin"], text=True, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, env={**os.environ, "TVWALL_DECODER_PASSWORD": "secret"})
    atexit.register(decoder.kill)
    return decoder.stdout.readline().removeprefix("listening on ").strip()


with tempfile.TemporaryDirectory() as home:
    address, ipv6 = start_decoder("127.0.0.1:0"), start_decoder("[::1]:0")
    nowhere, done = "127.0.0.1:1", "wall clear: done"
    path = home + "/tvwall/profiles.json"

    # What is kept, and read again: an option counts before the environment, and that before the profile.
    run("profile", "list", text="none")
    run("--decoder", address, "--user", "admin", "--plugin", os.path.relpath(PLUGIN, home), "profile", "add", "entrance")
    run("--user", "x", "profile", "add", "exit", "--decoder", nowhere)
    assert os.stat(path).st_mode & 0o777 == 0o600
    assert json.load(open(path)) == {"profiles": {"entrance": {"decoder": address, "user": "admin", "plugin": PLUGIN},
                                                  "exit": {"decoder": nowhere, "user": "x"}}}
    run("profile", "list", text=f"\n  entrance  {address}")
    clear = "wall", "clear"
    run("--profile", "entrance", *clear, text=done)
    run(*clear, text=done, TVWALL_PROFILE="entrance")
    run("--profile", "entrance", *clear, text=done, TVWALL_PROFILE="exit")
    run("--profile", "entrance", *clear, status=3, text="port 1", TVWALL_DECODER=nowhere)
    run("--profile", "entrance", "--decoder", address, *clear, text=done, TVWALL_DECODER=nowhere)
    run("--profile", "entrance", *clear, status=5, TVWALL_USER="nobody")
    run("--profile", "entrance", "--user", "admin", *clear, text=done, TVWALL_USER="nobody")
    run("--plugin", PLUGIN, *clear, text=done, TVWALL_DECODER=address, TVWALL_USER="admin")

    # Kinds of addresses.
    port = address.rpartition(":")[2]
    for decoder in f"localhost:{port}", ipv6:
        run("--profile", "entrance", "--decoder", decoder, *clear, text=done)
    run("--decoder", "::1:9000", "login", status=2, text="--decoder takes an IPv6 address in brackets, [::1]:9000, not")
    run("login", status=2, text="TVWALL_DECODER takes an IPv6 address in brackets and a port, [fe80::1]:PORT", TVWALL_DECODER="fe80::1")
    for wrong in "[h]:1", "h:0", "h", "[::1]", "a:b:1", ":1":
        run("--decoder", wrong, "login", status=2, text="takes HOST:PORT with a port from 1 to 65535")
    run("login", status=2, text="no decoder: give --decoder HOST:PORT, set TVWALL_DECODER or name a profile")

    # A password from standard input, which then holds nothing else.
    run("--profile", "entrance", "--password-file", "-", *clear, input="secret\n", text=done, TVWALL_PASSWORD="wrong")
    run("--profile", "entrance", "--password-file", "-", *clear, input="", status=2, text="no password was given")
    for reads in ("script", "-"), ("shell",):
        run("--profile", "entrance", "--password-file", "-", *reads, status=2, text="standard input holds either")

    # Nothing is lost: not to a process that dies while it writes, nor to others that write at the same time.
    before = open(path).read()
    run("--profile", "exit", "profile", "add", "third", status=-signal.SIGXFSZ, limit=10)
    assert open(path).read() == before
    adding = [subprocess.Popen([HOST, "--decoder", nowhere, "profile", "add", f"p{i}"], stdout=subprocess.DEVNULL,
                               env={**os.environ, "XDG_CONFIG_HOME": home}) for i in range(8)]
    assert [process.wait(60) for process in adding] == [0] * 8
    assert len(json.load(open(path))["profiles"]) == 10
    run("--decoder", address, "profile", "add", "p0", status=2, text="there is a profile 'p0' already")
    run("--decoder", address, "profile", "add", "p0", "--replace")
    run("profile", "remove", "p0", "p9", status=2, text=f"there is no profile 'p9' in {path}")
    os.rename(path, home + "/elsewhere.json")
    os.symlink(home + "/elsewhere.json", path)
    run("profile", "remove", *(f"p{i}" for i in range(8)))
    assert os.path.islink(path) and list(json.load(open(path))["profiles"]) == ["entrance", "exit"]
    for words, text in ((("add", "-x"), "unknown option '-x'"), (("add", "a b"), "a profile's name has"), (("add", "a", "--password-file", "-"), "names a password")):
        run("--decoder", address, "profile", *words, status=2, text=text)
    run("profile", "add", "a", status=2, text="a profile needs a decoder")

    # A file that cannot be relied on.
    run("--profile", "entrence", "login", status=2, text="did you mean 'entrance'?")
    os.chmod(path, 0o660)
    for words in ("--profile", "entrance", "login"), ("profile", "list"), ("profile", "remove", "exit"):
        run(*words, status=2, text=f"others may write the profile file {path}")
    os.chmod(path, 0o600)
    if os.geteuid() == 0:
        os.chown(path, 1, -1)
        run("profile", "list", status=2, text=f"the profile file {path} belongs to someone else")
        os.chown(path, 0, -1)
    for content, complaint in FAULTS:
        open(path, "w").write(content)
        run("--profile", "a", "login", status=2, text=f"tvwall-host: {complaint.replace('FILE', path)}\n")
        assert open(path).read() == content
    os.remove(path)
    os.mkdir(path)
    run("profile", "list", status=2, text="Is a directory")
