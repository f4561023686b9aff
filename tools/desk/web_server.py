"""The maker's web site on this machine: a real web server that shows a folder to this machine alone, for as long as its
owner lives. It has its settings and all that it writes in a folder of its own, which goes with it."""

import ctypes
import errno
import http.client
import os
import shutil
import signal
import socket
import subprocess
import tempfile
from pathlib import Path

from .prefix import ROOT
from .waiting import wait_for

SITE = ROOT / "build" / "site"
SERVER = "/usr/sbin/apache2"
MODULES = Path("/usr/lib/apache2/modules")
ADDRESS = "127.0.0.1"
USUAL_PORT = 80     # what the program asks where no other port is told
ATTEMPTS = 5        # at a free port: another program may take it between its choice and the server's start
START_SECONDS = 30
OWN_FOLDER = "murmelix-site."  # and the owner's process id
UNPRIVILEGED = "nobody"  # what a server that root has started becomes

_PR_SET_PDEATHSIG = 1

# Names below the folder are in small letters, and are asked for in any: the program has both "/Murmelix/" and
# "/murmelix/".
SETTINGS = """
ServerRoot "{own}"
ServerName {address}
Listen {address}:{port}
PidFile "{own}/server.pid"
ErrorLog "{own}/errors.log"
LogLevel warn
Mutex sem
{modules}
{user}
# Few connections at once, each for a moment: a browser or two, and the program.
StartServers 1
ServerLimit 2
ThreadsPerChild 16
MaxRequestWorkers 32
Timeout 30
KeepAliveTimeout 2
ServerTokens Prod
ServerSignature Off
TraceEnable Off
FileETag MTime Size
# A page that has been built anew is seen at once.
Header always set Cache-Control "no-cache"
Header always set X-Content-Type-Options "nosniff"
Header always set Content-Security-Policy "default-src 'none'; img-src 'self'; media-src 'self'; \
style-src 'self' 'unsafe-inline'"

TypesConfig /dev/null
AddType text/html .html
AddType text/css .css
AddType text/plain .txt
AddType text/vtt .vtt
AddType image/png .png
AddType image/gif .gif
AddType image/svg+xml .svg
AddType audio/wav .wav
AddType application/octet-stream .acs
AddCharset utf-8 .html .css .txt .vtt .svg

DocumentRoot "{pages}"
<Directory />
    AllowOverride None
    Require all denied
</Directory>
<Directory "{pages}">
    Options FollowSymLinks
    Require all granted
</Directory>
DirectoryIndex index.html
ErrorDocument 404 /murmelix/404.html
ErrorDocument 403 /murmelix/404.html

RewriteEngine On
RewriteRule ^/?$ /Murmelix/ [R=302,L]
RewriteMap small int:tolower
RewriteCond %{{REQUEST_URI}} [A-Z]
RewriteRule ^(.*)$ ${{small:$1}} [PT]
"""


class ServerFailed(Exception):
    """The server does not run; the message says why."""


def dies_with_owner():
    ctypes.CDLL(None).prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def _is_free(port):
    """Whether this process may listen there, and nobody does."""
    with socket.socket() as attempt:
        attempt.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            attempt.bind((ADDRESS, port))
            return True
        except OSError as error:
            if error.errno in (errno.EADDRINUSE, errno.EACCES):
                return False
            raise


def free_port():
    with socket.socket() as attempt:
        attempt.bind((ADDRESS, 0))
        return attempt.getsockname()[1]


def remove_left_over(prefix):
    """Folders of owners that were killed: their names begin with the prefix and the owner's process id."""
    for folder in Path(tempfile.gettempdir()).glob(prefix + "*"):
        if not Path("/proc", folder.name.removeprefix(prefix).split(".")[0]).exists():
            shutil.rmtree(folder, ignore_errors=True)


class WebServer:
    """Runs from the beginning of a `with` to its end."""

    def __init__(self, site=SITE, ports=(USUAL_PORT,)):
        """The first of the ports that is free is taken, else any other."""
        self._site, self._ports = Path(site), ports
        self._process = None
        self.port = None

    @property
    def host(self):
        """Host and port, as an address and the program's setting SiteHost have them."""
        return ADDRESS if self.port == USUAL_PORT else f"{ADDRESS}:{self.port}"

    @property
    def address(self):
        return f"http://{self.host}/Murmelix/"

    def __enter__(self):
        if not Path(SERVER).exists():
            raise ServerFailed(f"{SERVER} is missing: ./run --site installs it")
        if not (self._site / "murmelix" / "index.html").is_file():
            raise ServerFailed(f"there is no site in {self._site}: ./run --site builds it")
        # What root starts gives root's rights up, and may then not be let into the project's folder: it is given a copy.
        remove_left_over(OWN_FOLDER)
        self._own = Path(tempfile.mkdtemp(prefix=f"{OWN_FOLDER}{os.getpid()}."))
        try:
            self._own.chmod(0o755)
            shutil.copytree(self._site, self._own / "pages", symlinks=True)
            candidates = [port for port in self._ports if _is_free(port)] + [None] * ATTEMPTS
            for candidate in candidates:
                if self._start(candidate or free_port()):
                    self._see_that_it_may_read()
                    return self
            raise ServerFailed(f"the web server has not started:\n{self._errors()}")
        except BaseException:
            self.close()
            raise

    def __exit__(self, *_):
        self.close()

    def close(self):
        if self._process is not None:
            if self._process.poll() is None:
                self._process.terminate()
                try:
                    self._process.wait(10)
                except subprocess.TimeoutExpired:
                    os.killpg(self._process.pid, signal.SIGKILL)  # its workers as well
                    self._process.wait()
            self._process = None
        shutil.rmtree(self._own, ignore_errors=True)

    def check(self):
        if self._process.poll() is not None:
            raise ServerFailed(f"the web server has ended:\n{self._errors()}")

    def _errors(self):
        log = self._own / "errors.log"
        return log.read_text("utf-8", "replace").strip() if log.exists() else "it has said nothing"

    def _start(self, port):
        modules = ("mpm_event", "authz_core", "dir", "mime", "headers", "rewrite")
        settings = self._own / "server.conf"
        settings.write_text(SETTINGS.format(
            own=self._own, pages=self._own / "pages", address=ADDRESS, port=port,
            modules="\n".join(f"LoadModule {name}_module {MODULES}/mod_{name}.so" for name in modules),
            user=f"User {UNPRIVILEGED}\nGroup nogroup" if os.geteuid() == 0 else ""))
        self.port = port
        with open(self._own / "errors.log", "ab") as log:
            # A group of its own: Ctrl-C in the terminal is for the owner, who ends the server when it has done with it.
            self._process = subprocess.Popen([SERVER, "-f", str(settings), "-D", "FOREGROUND"], stdin=subprocess.DEVNULL,
                                             stdout=log, stderr=log, start_new_session=True, preexec_fn=dies_with_owner)
        wait_for("the web server", lambda: self._process.poll() is not None or self._answers(), START_SECONDS)
        return self._process.poll() is None

    def _see_that_it_may_read(self):
        connection = http.client.HTTPConnection(ADDRESS, self.port, timeout=START_SECONDS)
        try:
            connection.request("GET", "/murmelix/")
            status = connection.getresponse().status
        finally:
            connection.close()
        if status != http.HTTPStatus.OK:
            raise ServerFailed(f"the web server answers {int(status)} for its first page; may {UNPRIVILEGED} read "
                               f"{self._own}?\n{self._errors()}")

    def _answers(self):
        try:
            socket.create_connection((ADDRESS, self.port), 1).close()
            return True
        except OSError:
            return False
