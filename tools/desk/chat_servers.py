"""Chat servers on this machine, for as long as their owner lives, and other people who talk there: two real servers, and one
that speaks the dialect of the streaming chat as its owner tells it to."""

import collections
import contextlib
import itertools
import os
import shutil
import signal
import socket
import ssl
import struct
import subprocess
import tempfile
import threading
import time
from pathlib import Path

from .prefix import ROOT
from .waiting import PATIENCE_SECONDS, wait_for
from .web_server import dies_with_owner, free_port, remove_left_over

UNPACKED = ROOT / "build" / "chat-servers"
ADDRESS = "127.0.0.1"
SERVER_NAME = "irc.murmelix.example"
NETWORK = "MurmelixNet"
ATTEMPTS = 5        # at free ports: another program may take one between its choice and the server's start
START_SECONDS = 60
END_SECONDS = 10
OWN_FOLDER = "murmelix-chat."  # and the owner's process id
PIECE = 64 * 1024


class ServerFailed(Exception):
    """The server does not run; the message says why."""


# The real servers.

class _RealServer:
    """Runs from the beginning of a `with` to its end; `stop` and `start` in between, at the same ports."""

    NAME = None  # of the program

    def __init__(self, certificate=None):
        """With a certificate (see certificates.py) it hears TLS as well, at a port of its own."""
        self._certificate = certificate
        self._process = None
        self.port = self.tls_port = None

    def __enter__(self):
        self._program = UNPACKED / "usr" / "sbin" / self.NAME
        if not self._program.exists():
            raise ServerFailed(f"{self._program} is missing: ./test fetches it")
        remove_left_over(OWN_FOLDER)
        self.folder = Path(tempfile.mkdtemp(prefix=f"{OWN_FOLDER}{os.getpid()}."))
        try:
            # Started by root it gives root's rights up, and still reads what is its own.
            self.folder.chmod(0o755)
            if self._certificate:
                for name, source in (("chain.pem", self._certificate.chain), ("key.pem", self._certificate.key)):
                    shutil.copyfile(source, self.folder / name)
                    (self.folder / name).chmod(0o644)
            for _ in range(ATTEMPTS):
                self.port, self.tls_port = free_port(), free_port() if self._certificate else None
                if self._begin():
                    return self
            raise ServerFailed(f"{self.NAME} has not started:\n{self.log()}")
        except BaseException:
            self.close()
            raise

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def stop(self, kindly=True):
        """Kindly it says goodbye to everybody; else it is gone at once."""
        if self._process is not None:
            self._process.send_signal(signal.SIGTERM if kindly else signal.SIGKILL)
            try:
                self._process.wait(END_SECONDS)
            except subprocess.TimeoutExpired:
                self._process.kill()
                self._process.wait()
            self._process = None

    def start(self):
        """Again, after `stop`."""
        if not self._begin():
            raise ServerFailed(f"{self.NAME} has not started again:\n{self.log()}")

    def log(self):
        log = self.folder / "log"
        return log.read_text("utf-8", "replace").strip() if log.exists() else "it has said nothing"

    def _begin(self):
        settings = self.folder / "settings.conf"
        settings.write_text(self._settings(), "utf-8")
        with open(self.folder / "log", "ab") as log:
            self._process = subprocess.Popen(self._command(settings), cwd=self.folder, stdin=subprocess.DEVNULL, stdout=log,
                                             stderr=log, start_new_session=True, preexec_fn=dies_with_owner)
        ports = [port for port in (self.port, self.tls_port) if port]
        wait_for(self.NAME, lambda: self._process.poll() is not None or all(map(_answers, ports)), START_SECONDS)
        if self._process.poll() is not None:
            self._process = None
            return False
        return True

    def _settings(self):
        raise NotImplementedError

    def _command(self, settings):
        raise NotImplementedError


def _answers(port):
    try:
        socket.create_connection((ADDRESS, port), 1).close()
        return True
    except OSError:
        return False


class NgIrcd(_RealServer):
    NAME = "ngircd"

    def _settings(self):
        tls = f"""
[SSL]
    CertFile = {self.folder}/chain.pem
    KeyFile = {self.folder}/key.pem
    Ports = {self.tls_port}
""" if self._certificate else ""
        return f"""
[Global]
    Name = {SERVER_NAME}
    Info = A server of a test
    Network = {NETWORK}
    Listen = {ADDRESS}
    Ports = {self.port}
    MotdPhrase = "Welcome to the test"
[Limits]
    MaxConnectionsIP = 0
    MaxJoins = 0
    MaxNickLength = 24
    MaxPenaltyTime = 0
[Options]
    DNS = no
    Ident = no
    PAM = no
    IncludeDir = {self.folder}/none
{tls}"""

    def _command(self, settings):
        (self.folder / "none").mkdir(exist_ok=True)
        return [str(self._program), "--nodaemon", "--config", str(settings)]


class InspIrcd(_RealServer):
    NAME = "inspircd"
    MODULES = ("cap", "ircv3", "ircv3_batch", "ircv3_capnotify", "ircv3_chghost", "ircv3_ctctags", "ircv3_echomessage",
               "ircv3_msgid", "ircv3_servertime", "namesx", "uhnames", "setname", "chanhistory", "services_account",
               "ircv3_accounttag")

    def _settings(self):
        module = "\n".join(f'<module name="{name}">' for name in self.MODULES)
        tls = f"""
<module name="ssl_gnutls">
<sslprofile name="Clients" provider="gnutls" certfile="{self.folder}/chain.pem" keyfile="{self.folder}/key.pem"
    requestclientcert="yes">
<bind address="{ADDRESS}" port="{self.tls_port}" type="clients" sslprofile="Clients">
""" if self._certificate else ""
        return f"""
<config format="xml">
<server name="{SERVER_NAME}" description="A server of a test" network="{NETWORK}">
<admin name="Test" nick="test" email="test@murmelix.example">
<path configdir="{self.folder}" datadir="{self.folder}" logdir="{self.folder}" runtimedir="{self.folder}"
    moduledir="{UNPACKED}/usr/lib/inspircd/modules">
<bind address="{ADDRESS}" port="{self.port}" type="clients">
<connect name="all" allow="*" timeout="60" pingfreq="120" recvq="1048576" softsendq="16777216" hardsendq="16777216"
    localmax="5000" globalmax="5000" maxchans="100" resolvehostnames="no" useident="no" fakelag="no" threshold="1000000"
    commandrate="1000000">
<performance softlimit="5000" clonesonconnect="no">
<options defaultmodes="nt" splitwhois="no">
<log method="file" type="* -USERINPUT -USEROUTPUT" level="default" target="{self.folder}/server.log">
{module}
{tls}"""

    def _command(self, settings):
        command = [str(self._program), f"--config={settings}", "--nofork"]
        return command + ["--runasroot"] if os.geteuid() == 0 else command


class _Tls:
    """TLS over a connection that one thread reads while others write: of Python's own sockets that is more than they bear."""

    def __init__(self, connection, context, **options):
        """Returns when both sides have agreed; what `options` are is told with SSLContext.wrap_bio."""
        self._connection = connection
        self._lock = threading.Lock()
        self._coming, self._going = ssl.MemoryBIO(), ssl.MemoryBIO()
        self._tls = context.wrap_bio(self._coming, self._going, **options)
        self._attempt(self._tls.do_handshake)

    def _attempt(self, deed):
        while True:
            with self._lock:
                try:
                    return deed()
                except ssl.SSLWantReadError:
                    pass
                finally:
                    if self._going.pending:
                        self._connection.sendall(self._going.read())
            data = self._connection.recv(PIECE)
            with self._lock:
                if data:
                    self._coming.write(data)
                else:
                    self._coming.write_eof()

    def recv(self, size):
        try:
            return self._attempt(lambda: self._tls.read(size))
        except (ssl.SSLZeroReturnError, ssl.SSLEOFError):
            return b""

    def sendall(self, data):
        if data:
            self._attempt(lambda: self._tls.write(data))

    def __getattr__(self, name):
        return getattr(self._connection, name)


# Another person, as the servers have them.

def untagged(line):
    """What stands behind the tags of a line."""
    return line.partition(" ")[2] if line.startswith("@") else line


class Person:
    """Somebody who talks on a server: connected and registered from the beginning of a `with` to its end."""

    def __init__(self, nick, port, issuer=None, capabilities=(), password=None, realname=None):
        """`issuer`: the PEM file of whoever issued the server's certificate; with it, it is TLS."""
        self.nick, self._port, self._issuer = nick, port, issuer
        self._capabilities, self._password, self._realname = tuple(capabilities), password, realname or nick
        self._socket = None
        self._news = threading.Condition()
        self._lines = []
        self._ended = False

    def __enter__(self):
        connection = socket.create_connection((ADDRESS, self._port), PATIENCE_SECONDS)
        if self._issuer:
            context = ssl.create_default_context(cafile=self._issuer)
            connection = _Tls(connection, context, server_hostname="localhost")
        connection.settimeout(None)
        self._socket = connection
        threading.Thread(target=self._hear, daemon=True).start()
        if self._capabilities:
            self.send("CAP LS 302")
            self.send("CAP REQ :" + " ".join(self._capabilities))
        if self._password:
            self.send(f"PASS {self._password}")
        self.send(f"NICK {self.nick}")
        self.send(f"USER {self.nick[:9]} 0 * :{self._realname}")
        if self._capabilities:
            self.wait_for_line("the capabilities", lambda line: " CAP " in line and " ACK " in line)
            self.send("CAP END")
        self.wait_for_line("the welcome", lambda line: untagged(line).split(" ")[1:2] in (["376"], ["422"]))
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Without a goodbye."""
        if self._socket is not None:
            with contextlib.suppress(OSError):
                self._socket.shutdown(socket.SHUT_RDWR)
            self._socket.close()

    # What is done.

    def send(self, line):
        self._socket.sendall(line.encode("utf-8") + b"\r\n")

    def send_bytes(self, data):
        self._socket.sendall(data)

    def join(self, channel):
        self.send(f"JOIN {channel}")
        self.wait_for_line(f"the people of {channel}", lambda line: f" 366 {self.nick} {channel} " in line)

    def say(self, target, text):
        self.send(f"PRIVMSG {target} :{text}")

    def act(self, target, text):
        self.say(target, f"\x01ACTION {text}\x01")

    def rename(self, nick):
        self.send(f"NICK {nick}")
        self.wait_for_line(f"the name {nick}", lambda line: line.endswith((f" NICK :{nick}", f" NICK {nick}")))
        self.nick = nick

    def part(self, channel, why=""):
        self.send(f"PART {channel} :{why}")

    def quit(self, why="bye"):
        self.send(f"QUIT :{why}")
        self.wait_for_end()

    def wait_for_end(self):
        """Until the server has ended the connection."""
        with self._news:
            if not self._news.wait_for(lambda: self._ended, PATIENCE_SECONDS):
                raise ServerFailed(f"{self.nick} is still connected")

    # What is heard.

    def lines(self):
        with self._news:
            return list(self._lines)

    def wait_for_line(self, what, wanted, after=0):
        """The first line, of those that came after so many, which is wanted."""
        with self._news:
            def found():
                return next((line for line in self._lines[after:] if wanted(line)), None)
            self._news.wait_for(lambda: found() or self._ended, PATIENCE_SECONDS)
            line = found()
            if line is None:
                raise ServerFailed(f"{self.nick} has not heard {what}; the last that it heard:\n" +
                                   "\n".join(self._lines[-10:]))
            return line

    def wait_for_text(self, text, target=None):
        """The line with which somebody says that, to that target."""
        return self.wait_for_line(repr(text), lambda line: line.endswith(f" :{text}") and
                                  f" PRIVMSG {target or ''}".rstrip() in line)

    def _hear(self):
        rest = b""
        try:
            while data := self._socket.recv(PIECE):
                *lines, rest = (rest + data).split(b"\n")
                for line in lines:
                    self._take(line.rstrip(b"\r").decode("utf-8", "replace"))
        except (OSError, ValueError):
            pass
        with self._news:
            self._ended = True
            self._news.notify_all()

    def _take(self, line):
        bare = untagged(line)
        if bare.startswith("PING "):
            with contextlib.suppress(OSError):
                self.send("PONG" + bare.removeprefix("PING"))
        with self._news:
            self._lines.append(line)
            self._news.notify_all()


# The streaming chat.

STREAMING_NAME = "tmi.twitch.tv"
_CAPABILITIES = ("twitch.tv/commands", "twitch.tv/membership", "twitch.tv/tags")
_ROOM = 40_000_000
_ESCAPES = str.maketrans({"\\": "\\\\", ";": "\\:", " ": "\\s", "\r": "\\r", "\n": "\\n"})


def tagged(tags):
    """The tags of a line as they are sent, with the blank behind them."""
    return "@" + ";".join(f"{name}={str(value).translate(_ESCAPES)}" for name, value in tags.items()) + " " if tags else ""


class _Viewer:
    """One client."""

    def __init__(self, connection):
        self.connection = connection
        self.lock = threading.Lock()
        self.nick = self.password = None
        self.login = None  # of its account; None: it reads along
        self.capabilities, self.channels = set(), set()
        self.welcome = False

    def send(self, text):
        with self.lock, contextlib.suppress(OSError):
            self.connection.sendall(text.encode("utf-8", "surrogateescape") + b"\r\n")

    def has(self, name):
        return f"twitch.tv/{name}" in self.capabilities

    def end(self, rudely=False):
        with contextlib.suppress(OSError):
            if rudely:
                self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            # Its thread waits for what comes, and would hold the connection.
            self.connection.shutdown(socket.SHUT_RD if rudely else socket.SHUT_RDWR)
        with contextlib.suppress(OSError):
            self.connection.close()


class StreamingServer:
    """Speaks the dialect of the streaming chat from the beginning of a `with` to its end. Who writes there needs no
    connection: `say` and the others make what all viewers of a channel are sent."""

    def __init__(self, certificate=None, accounts=None):
        """With a certificate all is TLS. Accounts: by their tokens, each its login (small letters)."""
        self._context = None
        if certificate:
            self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self._context.load_cert_chain(certificate.chain, certificate.key)
        self.accounts = dict(accounts or {})
        self.port = None
        self._listening = None
        self._changed = threading.Condition()
        self._viewers = []
        self.received = []  # (login or nick, line) of all clients, in order; a password is a password
        self.visits = 0     # connections that there were
        self._numbers = itertools.count(1)
        self._writers = collections.OrderedDict()  # by login: user-id, as long as the server lives

    # Running.

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Also again after `stop`, at the same port."""
        listening = socket.socket()
        listening.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listening.bind((ADDRESS, self.port or 0))
        listening.listen(64)
        self.port = listening.getsockname()[1]
        self._listening = listening
        threading.Thread(target=self._accept, args=(listening,), daemon=True).start()

    def stop(self, rudely=False):
        """Ends all connections and hears no more."""
        if self._listening is not None:
            with contextlib.suppress(OSError):
                self._listening.shutdown(socket.SHUT_RDWR)
            self._listening.close()
            self._listening = None
        self.drop(rudely)

    def drop(self, rudely=False):
        """Ends all connections, and goes on hearing."""
        with self._changed:
            viewers, self._viewers = self._viewers, []
            self._changed.notify_all()
        for viewer in viewers:
            viewer.end(rudely)

    # What the viewers do.

    def viewers(self, channel=None):
        with self._changed:
            return [viewer for viewer in self._viewers
                    if viewer.welcome and (channel is None or channel in viewer.channels)]

    def wait_for_viewers(self, channel, count=1):
        """Until so many have joined it."""
        self._wait(f"{count} viewers of {channel}", lambda: sum(channel in v.channels for v in self._viewers) >= count)

    def wait_for_line(self, line, times=1):
        """Until clients have sent it so often; who sent it last."""
        def senders():
            return [sender for sender, received in self.received if received == line]
        self._wait(f"{line!r} from a client", lambda: len(senders()) >= times)
        with self._changed:
            return senders()[-1]

    def _wait(self, what, condition):
        with self._changed:
            if not self._changed.wait_for(condition, PATIENCE_SECONDS):
                received = "\n".join(line for _, line in self.received[-10:] if not line.startswith("PASS"))
                raise ServerFailed(f"{what}: not within {PATIENCE_SECONDS} s; the last that came:\n{received}")

    # What the server tells. A channel has its "#".

    def user_id(self, login):
        return self._writers.setdefault(login, str(100_000 + len(self._writers)))

    def tags_of(self, login, /, display=None, badges="", **more):
        """All that stand before somebody's lines; keywords have "_" for "-", and win."""
        tags = {
            "badge-info": "", "badges": badges, "color": "#1E90FF", "display-name": display or login, "emotes": "",
            "first-msg": "0", "flags": "", "id": self._new_id(), "mod": str(int("moderator/" in badges)),
            "returning-chatter": "0", "room-id": str(_ROOM), "subscriber": str(int("subscriber/" in badges)),
            "tmi-sent-ts": str(int(time.time() * 1000)), "turbo": "0", "user-id": self.user_id(login),
            "user-type": "mod" if "moderator/" in badges else "",
        }
        tags.update((name.replace("_", "-"), value) for name, value in more.items())
        return tags

    def say(self, channel, login, text, display=None, badges="", **more):
        """A line of somebody's; its id."""
        tags = self.tags_of(login, display, badges, **more)
        self._tell(channel, f":{_mask(login)} PRIVMSG {channel} :{text}", tags)
        return tags["id"]

    def act(self, channel, login, text, **more):
        return self.say(channel, login, f"\x01ACTION {text}\x01", **more)

    def reply(self, channel, login, text, to, **more):
        """An answer to the line of `to` with that id and text: (login, id, text)."""
        parent, identity, original = to
        return self.say(channel, login, f"@{parent} {text}", **{
            "reply_parent_msg_id": identity, "reply_parent_user_id": self.user_id(parent),
            "reply_parent_user_login": parent, "reply_parent_display_name": parent, "reply_parent_msg_body": original,
            **more})

    def clear_chat(self, channel, login=None, seconds=None):
        """All lines of somebody's, for so long or for good; of everybody without a login."""
        tags = {"room-id": str(_ROOM), "tmi-sent-ts": str(int(time.time() * 1000))}
        if login:
            tags["target-user-id"] = self.user_id(login)
            if seconds:
                tags = {"ban-duration": str(seconds), **tags}
        self._tell(channel, f":{STREAMING_NAME} CLEARCHAT {channel}" + (f" :{login}" if login else ""), tags,
                   needs="commands")

    def clear_message(self, channel, identity, login, text):
        tags = {"login": login, "room-id": "", "target-msg-id": identity, "tmi-sent-ts": str(int(time.time() * 1000))}
        self._tell(channel, f":{STREAMING_NAME} CLEARMSG {channel} :{text}", tags, needs="commands")

    def user_notice(self, channel, kind, login, system_text, text=None, **more):
        """`kind`: sub, resub, subgift, raid, announcement …; the text is that of the person."""
        tags = self.tags_of(login, **{"login": login, "msg_id": kind, "system_msg": system_text, **more})
        self._tell(channel, f":{STREAMING_NAME} USERNOTICE {channel}" + (f" :{text}" if text is not None else ""), tags,
                   needs="commands")

    def notice(self, channel, kind, text):
        self._tell(channel, f":{STREAMING_NAME} NOTICE {channel} :{text}", {"msg-id": kind}, needs="commands")

    def room_state(self, channel, **settings):
        state = {"emote-only": 0, "followers-only": -1, "r9k": 0, "slow": 0, "subs-only": 0}
        state.update((name.replace("_", "-"), value) for name, value in settings.items())
        self._tell(channel, f":{STREAMING_NAME} ROOMSTATE {channel}", {**state, "room-id": str(_ROOM)}, needs="commands")

    def reconnect(self):
        """Asks everybody to connect again."""
        for viewer in self.viewers():
            if viewer.has("commands"):
                viewer.send(f":{STREAMING_NAME} RECONNECT")

    def ping(self):
        for viewer in self.viewers():
            viewer.send(f"PING :{STREAMING_NAME}")

    def burst(self, channel, lines):
        """Many at once: pairs of a login and its text."""
        for viewer in self.viewers(channel):
            whole = []
            for login, text in lines:
                tags = tagged(self.tags_of(login)) if viewer.has("tags") else ""
                whole.append(f"{tags}:{_mask(login)} PRIVMSG {channel} :{text}")
            viewer.send("\r\n".join(whole))

    def raw(self, data):
        """To everybody as it is, welcome or not: bytes with their line ends."""
        with self._changed:
            viewers = list(self._viewers)
        for viewer in viewers:
            with viewer.lock, contextlib.suppress(OSError):
                viewer.connection.sendall(data)

    def _tell(self, channel, line, tags, needs=None, but=None):
        for viewer in self.viewers(channel):
            if viewer is not but and (needs is None or viewer.has(needs)):
                viewer.send((tagged(tags) if viewer.has("tags") else "") + line)

    def _new_id(self):
        number = next(self._numbers)
        return f"{number:08x}-0000-4000-8000-{number:012x}"

    # Hearing.

    def _accept(self, listening):
        while True:
            try:
                connection, _ = listening.accept()
            except OSError:
                return
            with self._changed:
                self.visits += 1
                self._changed.notify_all()
            threading.Thread(target=self._serve, args=(connection, listening), daemon=True).start()

    def _serve(self, connection, listening):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        try:
            if self._context:
                connection = _Tls(connection, self._context, server_side=True)
        except OSError:
            connection.close()
            return
        viewer = _Viewer(connection)
        with self._changed:
            if listening is not self._listening:  # stopped meanwhile
                viewer.end()
                return
            self._viewers.append(viewer)
        rest = b""
        try:
            while data := connection.recv(PIECE):
                *lines, rest = (rest + data).split(b"\n")
                for line in lines:
                    self._hear(viewer, line.rstrip(b"\r").decode("utf-8", "replace"))
        except (OSError, ValueError):
            pass
        with self._changed:
            if viewer in self._viewers:
                self._viewers.remove(viewer)
            self._changed.notify_all()
        viewer.end()

    def _hear(self, viewer, line):
        command, _, rest = line.partition(" ")
        answer = getattr(self, "_on_" + command.lower(), None)
        if answer:
            answer(viewer, rest.removeprefix(":"))
        elif viewer.welcome:
            viewer.send(f":{STREAMING_NAME} 421 {viewer.nick} {command} :Unknown command")
        with self._changed:
            self.received.append((viewer.login or viewer.nick, line))
            self._changed.notify_all()

    def _on_cap(self, viewer, rest):
        kind, _, names = rest.partition(" ")
        if kind.upper() == "LS":
            viewer.send(f":{STREAMING_NAME} CAP * LS :{' '.join(_CAPABILITIES)}")
        elif kind.upper() == "REQ":
            wanted = names.removeprefix(":").split()
            known = all(name in _CAPABILITIES for name in wanted)
            viewer.capabilities.update(wanted if known else ())
            viewer.send(f":{STREAMING_NAME} CAP * {'ACK' if known else 'NAK'} :{' '.join(wanted)}")

    def _on_pass(self, viewer, rest):
        viewer.password = rest

    def _on_user(self, viewer, rest):
        pass

    def _on_nick(self, viewer, rest):
        if viewer.welcome:
            return
        viewer.nick = rest.lower()
        if not viewer.nick.startswith("justinfan"):
            viewer.login = self.accounts.get(viewer.password)
            if viewer.login is None:
                well_formed = (viewer.password or "").startswith("oauth:")
                viewer.send(f":{STREAMING_NAME} NOTICE * :" +
                            ("Login authentication failed" if well_formed else "Improperly formatted auth"))
                viewer.end()
                return
            viewer.nick = viewer.login
        viewer.welcome = True
        for number, text in (("001", ":Welcome, GLHF!"), ("002", f":Your host is {STREAMING_NAME}"),
                             ("003", ":This server is rather new"), ("004", ":-"), ("375", ":-"),
                             ("372", ":You are in a maze of twisty passages, all alike."), ("376", ":>")):
            viewer.send(f":{STREAMING_NAME} {number} {viewer.nick} {text}")
        if viewer.login and viewer.has("commands"):
            viewer.send(self._own_tags(viewer) + f":{STREAMING_NAME} GLOBALUSERSTATE")

    def _own_tags(self, viewer, **more):
        return tagged({"badge-info": "", "badges": "", "color": "", "display-name": viewer.login, "emote-sets": "0",
                       "user-id": self.user_id(viewer.login), "user-type": "", **more}) if viewer.has("tags") else ""

    def _on_join(self, viewer, rest):
        if not viewer.welcome:
            return
        for channel in rest.lower().split(","):
            with self._changed:
                viewer.channels.add(channel)
                self._changed.notify_all()
            nick = viewer.nick
            viewer.send(f":{nick}!{nick}@{nick}.{STREAMING_NAME} JOIN {channel}")
            viewer.send(f":{nick}.{STREAMING_NAME} 353 {nick} = {channel} :{nick}")
            viewer.send(f":{nick}.{STREAMING_NAME} 366 {nick} {channel} :End of /NAMES list")
            if viewer.has("commands"):
                if viewer.login:
                    viewer.send(self._own_tags(viewer, mod="0", subscriber="0") + f":{STREAMING_NAME} USERSTATE {channel}")
                state = {"emote-only": 0, "followers-only": -1, "r9k": 0, "room-id": _ROOM, "slow": 0, "subs-only": 0}
                viewer.send((tagged(state) if viewer.has("tags") else "") + f":{STREAMING_NAME} ROOMSTATE {channel}")

    def _on_part(self, viewer, rest):
        for channel in rest.lower().split(" ")[0].split(","):
            with self._changed:
                viewer.channels.discard(channel)
                self._changed.notify_all()
            viewer.send(f":{_mask(viewer.nick)} PART {channel}")

    def _on_ping(self, viewer, rest):
        viewer.send(f":{STREAMING_NAME} PONG {STREAMING_NAME} :{rest}")

    def _on_pong(self, viewer, rest):
        pass

    def _on_quit(self, viewer, rest):
        viewer.end()

    def _on_privmsg(self, viewer, rest):
        channel, _, text = rest.partition(" :")
        if viewer.login is None or channel not in viewer.channels:
            return  # who reads along is not heard, and not told so
        self._tell(channel, f":{_mask(viewer.login)} PRIVMSG {channel} :{text}", self.tags_of(viewer.login), but=viewer)
        if viewer.has("commands"):
            viewer.send(self._own_tags(viewer, id=self._new_id(), mod="0", subscriber="0") +
                        f":{STREAMING_NAME} USERSTATE {channel}")


def _mask(login):
    return f"{login}!{login}@{login}.{STREAMING_NAME}"
