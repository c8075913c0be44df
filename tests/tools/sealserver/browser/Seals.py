"""What the tests and pictures of the administrator's page have in common: a running server with a
folder of its own, files to hand in, and a browser without a window."""

import os
import shutil
import struct
import subprocess
import tempfile
import urllib.request
import zlib

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service


def red_square(size=60):
    """A PNG."""
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    rows = b"".join(b"\0" + b"\xc8\x10\x20" * size for _ in range(size))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def es_seal(name, picture):
    """A seal file of the old layout."""
    header = bytearray(328)
    header[0:2] = b"ES"
    header[12:16] = struct.pack("<I", len(picture))
    encoded = name.encode("gbk")
    header[86:86 + len(encoded)] = encoded
    return bytes(header) + picture


class Server:
    """Serves until close; `password` is the one that it makes for itself at the first start."""

    def __init__(self, program):
        self.program = program
        self.folder = tempfile.mkdtemp(prefix="sealserver-")
        self.database = os.path.join(self.folder, "seals.db")
        self.log = os.path.join(self.folder, "access.log")
        self.process = subprocess.Popen(
            [program, "serve", "--database", self.database, "--access-log", self.log],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip().rstrip("/")
        self.service = self.process.stdout.readline().strip()
        self.password = self.process.stdout.readline().split(": ")[1].strip()

    def close(self):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def file(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def certificate(self, subject):
        """The path of a certificate made for this moment."""
        path = os.path.join(self.folder, "certificate.pem")
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-utf8", "-days", "2",
             "-subj", subject, "-set_serial", "0x1A2B3C", "-keyout", os.devnull, "-out", path],
            check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        return path

    def ask(self, body):
        """What the service answers to a client."""
        request = urllib.request.Request(
            self.service, body.encode(), {"EncryptType": "0", "RequestContent": "XML"})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=30) as answer:
            return answer.read().decode()


def open_browser(folder, javascript):
    options = Options()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--no-first-run", "--no-proxy-server", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--hide-scrollbars",
                     "--window-size=1100,900", "--lang=en",
                     "--user-data-dir=" + os.path.join(folder, "browser")):
        options.add_argument(argument)
    if not javascript:
        options.add_experimental_option(
            "prefs", {"profile.managed_default_content_settings.javascript": 2})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    options.binary_location = "/usr/bin/chromium"
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
