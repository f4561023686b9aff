"""Issuers made for a run, and certificates that they issue: real ones, which nobody trusts who was not told to."""

import datetime
import hashlib
import itertools
import struct
import subprocess
from dataclasses import dataclass
from pathlib import Path

_SECONDS = 60  # for one call: a key takes a moment


class OpensslFailed(Exception):
    """The message says at what."""


def _openssl(*arguments):
    answer = subprocess.run(["openssl", *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                            timeout=_SECONDS, check=False)
    if answer.returncode != 0:
        raise OpensslFailed(f"openssl {arguments[0]}: {answer.stderr.strip()}")


def _day(offset):
    day = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(days=offset)
    return day.strftime("%Y%m%d%H%M%SZ")


@dataclass(frozen=True)
class Certificate:
    chain: Path  # PEM: the certificate, and those of its issuers but for the first
    key: Path    # PEM


class Issuer:
    """The root of its certificates, or the deputy of one."""

    _numbers = itertools.count(1)

    def __init__(self, folder, name, root=None, use="issuer"):
        self._folder, self._root = Path(folder) / f"issuer-{next(self._numbers)}", root
        self._folder.mkdir()
        (self._folder / "settings").write_text(_SETTINGS.format(folder=self._folder), "utf-8")
        (self._folder / "index").touch()
        self._key, self.certificate_pem = self._folder / "key.pem", self._folder / "issuer.pem"
        self.certificate_der = self._folder / "issuer.der"
        if root is None:
            self._request(self._key, name, self.certificate_pem, "-x509", "-days", "30", "-extensions", "issuer")
        else:
            root._sign(self._key, name, self.certificate_pem, use, None, (-1, 30))
        _openssl("x509", "-in", self.certificate_pem, "-outform", "DER", "-out", self.certificate_der)

    def deputy(self, name):
        return Issuer(self._folder, name, self)

    def certificate(self, name, days=(-1, 30), with_chain=True, use="server"):
        """For a server of that name, good between the two days, counted from today; `use` is what it may be used for:
        "server" or "client"."""
        stem = f"server-{next(self._numbers)}"
        chain, key = self._folder / f"{stem}.pem", self._folder / f"{stem}.key"
        self._sign(key, name, chain, use, name, days)
        if self._root is not None and with_chain:
            chain.write_text(chain.read_text("ascii") + self.certificate_pem.read_text("ascii"), "ascii")
        return Certificate(chain, key)

    def pretender(self, name):
        """An issuer with a certificate of a server, which may issue nothing."""
        return Issuer(self._folder, name, self, "server")

    def itself(self, name):
        """One that a server of that name has issued to itself."""
        stem = f"server-{next(self._numbers)}"
        chain, key = self._folder / f"{stem}.pem", self._folder / f"{stem}.key"
        self._request(key, name, chain, "-x509", "-days", "30", "-addext", f"subjectAltName=DNS:{name}")
        return Certificate(chain, key)

    def _request(self, key, name, out, *more):
        _openssl("req", "-config", self._folder / "settings", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-subj",
                 f"/CN={name}", "-out", out, *more)

    def _sign(self, key, subject, out, extensions, server_name, days):
        request = out.with_suffix(".request")
        self._request(key, subject, request)
        settings = out.with_suffix(".settings")
        names = f"subjectAltName = DNS:{server_name}\n" if server_name else ""
        settings.write_text(_SETTINGS.format(folder=self._folder) + _EXTENSIONS[extensions] + names, "utf-8")
        _openssl("ca", "-batch", "-notext", "-config", settings, "-cert", self.certificate_pem, "-keyfile", self._key,
                 "-startdate", _day(days[0]), "-enddate", _day(days[1]), "-extensions", "wanted",
                 "-in", request, "-out", out)


_SETTINGS = """
[ca]
default_ca = this
[this]
database = {folder}/index
new_certs_dir = {folder}
rand_serial = yes
default_md = sha256
policy = any
unique_subject = no
email_in_dn = no
[any]
commonName = supplied
[req]
distinguished_name = name
default_md = sha256
[name]
[issuer]
basicConstraints = critical, CA:true
keyUsage = critical, keyCertSign, cRLSign
subjectKeyIdentifier = hash
"""

_EXTENSIONS = {
    "issuer": """
[wanted]
basicConstraints = critical, CA:true
keyUsage = critical, keyCertSign, cRLSign
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid
""",
    "client": """
[wanted]
basicConstraints = CA:false
extendedKeyUsage = clientAuth
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid
""",
    "server": """
[wanted]
basicConstraints = CA:false
keyUsage = critical, digitalSignature, keyEncipherment
extendedKeyUsage = serverAuth
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid
""",
}


def trust(desk, issuer):
    """The programs on the desk know the issuer from now on: it stands among the roots of the prefix' user."""
    der = issuer.certificate_der.read_bytes()
    thumb = hashlib.sha1(der).digest()
    # Properties, each with its number, a 1 and its length: the hash by which it is found, and the certificate.
    blob = struct.pack("<III", 3, 1, len(thumb)) + thumb + struct.pack("<III", 32, 1, len(der)) + der
    key = rf"HKCU\Software\Microsoft\SystemCertificates\Root\Certificates\{thumb.hex().upper()}"
    status, printed = desk.run("reg", "reg.exe", "add", key, "/v", "Blob", "/t", "REG_BINARY", "/d", blob.hex(), "/f")
    if status != 0:
        raise RuntimeError(f"the issuer could not be made known: {printed}")
