#!/usr/bin/env python3
"""Runs a command with servers beside it, each with its own way of being reached or of going wrong:
with_servers.py COMMAND [ARGUMENT…]. The command finds their ports, and the certificate of their issuer, in its environment as
MURMELIX_SERVER_NAME and MURMELIX_ISSUER (a path of this machine)."""

import itertools
import os
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "tools"))

from desk.certificates import Issuer  # noqa: E402

HOST = "127.0.0.1"  # a machine with next to nothing installed knows no name for itself
FLOOD = 24 * 1024 * 1024
PIECE = 64 * 1024


def listening():
    server = socket.socket()
    server.bind((HOST, 0))
    server.listen(16)
    return server


def context_of(certificate):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate.chain, certificate.key)
    return context


def echo(connection):
    while data := connection.recv(PIECE):
        connection.sendall(data)


def greet_and_leave(connection):
    """A last word, goodbye, and the end."""
    connection.sendall(b"one\r\ntwo\r\n")
    if isinstance(connection, ssl.SSLSocket):
        connection.unwrap()


def leave_without_goodbye(connection):
    connection.sendall(b"one\r\ntwo\r\n")
    connection.shutdown(socket.SHUT_RDWR)


def reset(connection):
    connection.sendall(b"one\r\n")
    connection.recv(1)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def flood(connection):
    """More than any buffer holds, numbered, in lines of odd sizes."""
    sent = 0
    while sent < FLOOD:
        line = b"%08d" % sent + b"x" * (sent % 5000) + b"\r\n"
        connection.sendall(line)
        sent += len(line)


def small_records(connection):
    """Each line a record of its own."""
    for number in range(5000):
        connection.sendall(b"%08d\r\n" % number)
    connection.recv(1)


def take_nothing(connection):
    """Sends a word, and reads nothing for as long as the client stays."""
    connection.sendall(b"go\r\n")
    done = threading.Event()
    while not done.wait(0.05):
        try:
            if connection.fileno() < 0 or socket.socket.recv(connection, 1, socket.MSG_PEEK) == b"":
                return
        except (OSError, ValueError):
            return


def silent(connection):
    """Hears, and says nothing."""
    while connection.recv(PIECE):
        pass


def plain_text(connection):
    connection.sendall(b":irc.example NOTICE * :*** Looking up your hostname...\r\n")
    silent(connection)


def alert(number):
    def answer(connection):
        connection.recv(PIECE)
        connection.sendall(bytes([21, 3, 3, 0, 2, 2, number]))
        silent(connection)
    return answer


def endless_agreement(connection):
    """Warnings and nothing else, as long as they are taken."""
    connection.recv(PIECE)
    record = bytes([22, 3, 3, 0x40, 0x00]) + bytes([11, 0xFF, 0xFF, 0xFF]) + bytes(0x4000 - 4)
    try:
        connection.sendall(record)
        while True:
            connection.sendall(bytes([22, 3, 3, 0x40, 0x00]) + bytes(0x4000))
    except OSError:
        pass


class Servers:
    def __init__(self, folder):
        issuer = Issuer(folder, "Murmelix Test Issuer")
        stranger = Issuer(folder, "Nobody In Particular")
        between = issuer.deputy("Murmelix Test Deputy")
        self.environment = {"MURMELIX_ISSUER": str(issuer.certificate_der)}
        self._cuts = itertools.cycle((*range(9), *(2 ** power for power in range(4, 11))))
        good = issuer.certificate(HOST)
        self.tls("GOOD", good, echo)
        self.tls("DEPUTY", between.certificate(HOST), echo)
        self.tls("DEPUTY_ALONE", between.certificate(HOST, with_chain=False), echo)
        self.tls("EXPIRED", issuer.certificate(HOST, days=(-30, -2)), echo)
        self.tls("EARLY", issuer.certificate(HOST, days=(2, 30)), echo)
        self.tls("OTHER_NAME", issuer.certificate("irc.other.example"), echo)
        self.tls("STRANGER", stranger.certificate(HOST), echo)
        self.tls("SELF_SIGNED", stranger.itself(HOST), echo)
        self.tls("PRETENDER", issuer.pretender("127.0.0.1").certificate(HOST), echo)
        self.tls("OF_A_CLIENT", issuer.certificate(HOST, use="client"), echo)
        self.tls("ASKS_FOR_CERTIFICATE", good, echo, asks=True)
        self.tls("LEAVES", good, greet_and_leave)
        self.tls("LEAVES_RUDELY", good, leave_without_goodbye)
        self.tls("FLOOD", good, flood)
        self.tls("SMALL_RECORDS", good, small_records)
        self.tls("TAKES_NOTHING", good, take_nothing)
        self._turning_away("TURNS_AWAY", good)
        self.plain("PLAIN", echo)
        self.plain("PLAIN_LEAVES", greet_and_leave)
        self.plain("PLAIN_RESETS", reset)
        self.plain("PLAIN_FLOOD", flood)
        self.plain("PLAIN_TEXT", plain_text)
        self.plain("SILENT", silent)
        self.plain("ALERT_HANDSHAKE", alert(40))
        self.plain("ALERT_VERSION", alert(70))
        self.plain("ALERT_NAME", alert(112))
        self.plain("ENDLESS", endless_agreement)
        self._good = int(self.environment["MURMELIX_SERVER_GOOD"])
        self.plain("CUTS", self._cut_off)
        # Nobody hears there, and nobody else can take it.
        self._reserved = socket.socket()
        self._reserved.bind((HOST, 0))
        self.environment["MURMELIX_SERVER_REFUSING"] = str(self._reserved.getsockname()[1])

    def plain(self, name, serve):
        self._begin(name, lambda connection: connection, serve)

    def tls(self, name, certificate, serve, asks=False):
        context = context_of(certificate)
        if asks:
            context.verify_mode = ssl.CERT_OPTIONAL
            context.load_verify_locations(certificate.chain)
        self._begin(name, lambda connection: context.wrap_socket(connection, server_side=True), serve)

    def _turning_away(self, name, certificate):
        """By TLS: the words of a server that is full come in one piece with the end of agreeing, and are its last."""
        context = context_of(certificate)

        def talk(connection):
            coming, going = ssl.MemoryBIO(), ssl.MemoryBIO()
            tls = context.wrap_bio(coming, going, server_side=True)
            while True:
                try:
                    tls.do_handshake()
                    break
                except ssl.SSLWantReadError:
                    connection.sendall(going.read())
                    coming.write(connection.recv(PIECE))
            tls.write(b"ERROR :Closing Link: the server is full\r\n")
            try:
                tls.unwrap()
            except ssl.SSLWantReadError:
                pass
            connection.sendall(going.read())

        self.plain(name, talk)

    def _begin(self, name, wrap, serve):
        server = listening()
        self.environment["MURMELIX_SERVER_" + name] = str(server.getsockname()[1])

        def one(connection):
            with connection:
                try:
                    with wrap(connection) as wrapped:
                        serve(wrapped)
                except (OSError, ValueError):
                    pass  # the client has gone, or does not trust this server, as it should not

        def run():
            while True:
                connection, _ = server.accept()
                threading.Thread(target=one, args=(connection,), daemon=True).start()

        threading.Thread(target=run, daemon=True).start()

    def _cut_off(self, connection):
        """The good server, broken off after no byte at the first of 16 visits, and later at each that follows."""
        left = next(self._cuts)
        with socket.create_connection((HOST, self._good)) as good:
            threading.Thread(target=self._pass_on, args=(connection, good), daemon=True).start()
            while left > 0 and (data := good.recv(min(left, PIECE))):
                connection.sendall(data)
                left -= len(data)
            connection.shutdown(socket.SHUT_RDWR)  # closing alone would wait for the thread that reads

    @staticmethod
    def _pass_on(source, target):
        try:
            while data := source.recv(PIECE):
                target.sendall(data)
        except OSError:
            pass


def main(command):
    with tempfile.TemporaryDirectory(prefix="murmelix-servers.") as folder:
        servers = Servers(Path(folder))
        return subprocess.run(command, env=dict(os.environ, **servers.environment), check=False).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
