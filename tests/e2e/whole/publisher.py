"""A web server of the test's own, which answers as the test wants: with any bytes, slowly, or not at all."""

import os
import socket
import threading

HEAD_LIMIT = 65536  # of a request


def content(data, status="200 OK", *headers):
    """A whole answer."""
    lines = [f"HTTP/1.1 {status}", f"Content-Length: {len(data)}", "Content-Type: text/plain", *headers]
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + data


def chunks(*pieces):
    """A whole answer in pieces, as servers send what they have not measured beforehand."""
    body = b"".join(b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces)
    return b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + body + b"0\r\n\r\n"


def redirect(location):
    return content(b"", "302 Found", f"Location: {location}", "Set-Cookie: visitor=1")


class Publisher:
    """`answer`, which may be changed at any time, is what is sent to everyone: bytes, a function that makes pieces of
    them, or None for nothing at all. Then the connection is closed; after None not before the publisher is."""

    def __init__(self, answer):
        for name in [name for name in os.environ if name.lower().endswith("_proxy")]:
            del os.environ[name]  # programs started from now on ask this machine themselves
        self.answer = answer
        self.requests = []  # their heads, as text
        self.closing = threading.Event()
        self._socket = socket.create_server(("127.0.0.1", 0))
        self.host = f"127.0.0.1:{self._socket.getsockname()[1]}"
        self.page = f"http://{self.host}/Murmelix/download/"
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        with connection:
            head = b""
            try:
                while b"\r\n\r\n" not in head and len(head) < HEAD_LIMIT:
                    piece = connection.recv(4096)
                    if not piece:
                        return
                    head += piece
                answer = self.answer
                self.requests.append(head.decode("latin-1"))
                if answer is None:
                    self.closing.wait()
                elif isinstance(answer, bytes):
                    connection.sendall(answer)
                else:
                    for piece in answer():
                        connection.sendall(piece)
            except OSError:
                pass  # the other side has had enough

    def drops(self, *begin):
        """Pieces: the last one again and again, a few a second, until the publisher is closed."""
        yield from begin[:-1]
        while not self.closing.wait(0.2):
            yield begin[-1]

    def close(self):
        self.closing.set()
        # A thread that waits for connections is not woken by closing alone.
        try:
            self._socket.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        self._socket.close()
