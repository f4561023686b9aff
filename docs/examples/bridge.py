#!/usr/bin/env python3
"""A source of chat: shows lines of its input, "NAME: TEXT", as a channel of a chat network.

    some-program | ./bridge.py --channel '#office' &
    ./run --channel irc://127.0.0.1:6667/office

What people type in the channel goes to the output in the same form.
"""

import argparse
import re
import socketserver
import sys
import threading


class Channel:
    """Who is there: people of the other side by their names, and clients by their connections."""

    def __init__(self, name):
        self.name, self.clients, self.people = name, [], {}
        self.lock = threading.Lock()

    def tell(self, line):
        for client in list(self.clients):
            client.send(line)

    def said(self, name, text):
        """Somebody of the other side has said something. A name becomes a nick, which has no blanks."""
        with self.lock:
            nick = re.sub(r"[^\w-]", "_", name)[:30] or "somebody"
            if nick not in self.people:
                self.people[nick] = name
                self.tell(f":{nick}!{nick}@bridge JOIN {self.name}")
            self.tell(f":{nick}!{nick}@bridge PRIVMSG {self.name} :{text}")


class Client(socketserver.StreamRequestHandler):
    """One connection: the few commands that a client needs to be in the only channel."""

    nick = ""

    def send(self, line):
        try:
            self.wfile.write(line.replace("\r", " ").replace("\n", " ").encode("utf-8")[:510] + b"\r\n")
        except OSError:
            pass

    def number(self, code, text):
        self.send(f":bridge {code} {self.nick or '*'} {text}")

    def handle(self):
        channel = self.server.channel
        try:
            while line := self.rfile.readline(8192).decode("utf-8", "replace").rstrip("\r\n"):
                command, _, rest = line.partition(" ")
                if command == "NICK" and not self.nick:
                    self.nick = rest.lstrip(":") or "you"
                    self.number("001", ":Welcome")
                    self.number("422", ":No greeting")
                elif command == "JOIN" and rest.lstrip(":") == channel.name:
                    with channel.lock:
                        self.send(f":{self.nick}!you@bridge JOIN {channel.name}")
                        self.number("353", f"= {channel.name} :{' '.join([self.nick, *channel.people])}")
                        self.number("366", f"{channel.name} :End")
                        channel.clients.append(self)
                elif command == "PRIVMSG":
                    print(f"{self.nick}: {rest.partition(' :')[2]}", flush=True)
                elif command == "PING":
                    self.send(f":bridge PONG bridge {rest}")
                elif command == "QUIT":
                    break
        finally:
            if self in channel.clients:
                channel.clients.remove(self)


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address, daemon_threads = True, True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--channel", default="#chat")
    parser.add_argument("--port", type=int, default=6667)
    arguments = parser.parse_args()
    with Server(("127.0.0.1", arguments.port), Client) as server:
        server.channel = Channel(arguments.channel)
        print(f"at irc://127.0.0.1:{server.server_address[1]}/{arguments.channel.lstrip('#')}", file=sys.stderr, flush=True)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        for line in sys.stdin:
            name, found, text = line.rstrip("\n").partition(": ")
            if found:
                server.channel.said(name, text)
        server.shutdown()


if __name__ == "__main__":
    main()
