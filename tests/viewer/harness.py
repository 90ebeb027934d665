"""What the viewer's tests in Python share: the program, a browser with its page, PNG files, raw WebSockets."""

import argparse
import base64
import json
import os
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import zlib

import jsonschema

LIMIT = 180  # seconds that anything may take, on a machine that is busy


def parse_arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--viewer", required=True)
    parser.add_argument("--console", required=True)
    parser.add_argument("--emulator", default="", help="words, separated by '|'")
    parser.add_argument("--screenshots", help="folder in which pictures of the page are kept")
    return parser.parse_known_args()


ARGUMENTS, REST = parse_arguments()


def command(program, *arguments):
    return [*filter(None, ARGUMENTS.emulator.split("|")), program, *arguments]


def native_path(path):
    return "Z:" + path.replace("/", "\\") if ARGUMENTS.emulator else path


def wait_for(condition, what, limit=LIMIT):
    """The first true result of `condition`."""
    end = time.monotonic() + limit
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {limit} s")
        time.sleep(0.05)


class Viewer:
    """The program, on a folder of its own."""

    def __init__(self, port=0, folder=None, machine=None, extra=("--no-browser",), environment=None):
        self.folder = folder or tempfile.mkdtemp(prefix="ovra-viewer-")
        arguments = ["--port", str(port), "--output-dir", native_path(self.folder),
                     "--config", native_path(os.path.join(self.folder, "entries.cfg")), *extra]
        if machine is not None:
            description = os.path.join(self.folder, "machine.json")
            with open(description, "w", encoding="utf-8") as file:
                json.dump(machine, file)
            arguments += ["--machine", native_path(description)]
        self.process = subprocess.Popen(command(ARGUMENTS.viewer, *arguments), stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, env=environment)
        self.lines = []
        self.reader = threading.Thread(target=self.collect, daemon=True)
        self.reader.start()
        self.address = wait_for(self.find_address, "the program prints its address")
        self.port = int(self.address.split(":")[2].split("/")[0])
        self.token = self.address.split("token=")[1]

    def collect(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip())

    def find_address(self):
        if self.process.poll() is not None:
            raise AssertionError("the program ended: " + "\n".join(self.lines))
        found = [line for line in self.lines if line.startswith("ovra-viewer: http")]
        return found[0].split(": ", 1)[1] if found else None

    def end(self):
        """Asks it to quit, as a page would. Its exit code."""
        if self.process.poll() is None:
            with Socket(self) as page:
                page.hello()
                page.send({"type": "request", "id": 1, "name": "quit", "arguments": {}})
                self.process.wait(LIMIT)
        self.reader.join(LIMIT)
        self.process.stdout.close()
        shutil.rmtree(self.folder, ignore_errors=True)
        return self.process.returncode

    def kill(self):
        self.process.kill()
        self.process.wait(LIMIT)
        self.process.stdout.close()


class Socket:
    """A WebSocket of the bare minimum, which can do everything wrong."""

    def __init__(self, viewer, host=None, origin="", target="/socket", method="GET", limit=LIMIT):
        host = f"127.0.0.1:{viewer.port}" if host is None else host
        origin = f"http://127.0.0.1:{viewer.port}" if origin == "" else origin
        self.token = viewer.token
        self.buffer = b""
        self.connection = socket.create_connection(("127.0.0.1", viewer.port), timeout=limit)
        lines = [f"{method} {target} HTTP/1.1", f"Host: {host}", "Upgrade: websocket", "Connection: Upgrade",
                 "Sec-WebSocket-Key: " + base64.b64encode(os.urandom(16)).decode(), "Sec-WebSocket-Version: 13"]
        if origin is not None:
            lines.append(f"Origin: {origin}")
        self.connection.sendall(("\r\n".join(lines) + "\r\n\r\n").encode())
        while b"\r\n\r\n" not in self.buffer:
            self.receive()
        head, self.buffer = self.buffer.split(b"\r\n\r\n", 1)
        self.status = int(head.split()[1])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.connection.close()

    def receive(self):
        data = self.connection.recv(1 << 16)
        if not data:
            raise EOFError
        self.buffer += data

    def take(self, count):
        while len(self.buffer) < count:
            self.receive()
        taken, self.buffer = self.buffer[:count], self.buffer[count:]
        return taken

    def send_frame(self, payload, opcode=1):
        length = len(payload)
        if length < 126:
            head = struct.pack(">BB", 0x80 | opcode, 0x80 | length)
        elif length < 1 << 16:
            head = struct.pack(">BBH", 0x80 | opcode, 0xFE, length)
        else:
            head = struct.pack(">BBQ", 0x80 | opcode, 0xFF, length)
        self.connection.sendall(head + b"\0\0\0\0" + payload)

    def send(self, message):
        self.send_frame(json.dumps(message).encode())

    def frame(self):
        """(opcode, payload); EOFError when the connection has ended."""
        first, length = self.take(2)
        if length == 126:
            length = struct.unpack(">H", self.take(2))[0]
        elif length == 127:
            length = struct.unpack(">Q", self.take(8))[0]
        return first & 15, self.take(length)

    def message(self, kind=None):
        """The next text message, or the next of that type; images in between are dropped."""
        while True:
            opcode, payload = self.frame()
            if opcode == 8:
                raise EOFError
            if opcode == 9:
                self.send_frame(payload, 10)
            if opcode == 1:
                message = json.loads(payload)
                if kind in (None, message["type"]):
                    return message

    def hello(self, token=None, version=1):
        self.send({"type": "hello", "version": version, "token": self.token if token is None else token})
        return self.message()

    def request(self, request, /, **arguments):
        """The answer; other messages are dropped."""
        self.send({"type": "request", "id": 7, "name": request, "arguments": arguments})
        while True:
            answer = self.message()
            if answer["type"] in ("done", "failed", "refused"):
                return answer


def unfiltered(kind, line, previous, step):
    """A line of a PNG file without its filter."""
    for x in range(len(line)):
        left, corner = (line[x - step], previous[x - step]) if x >= step else (0, 0)
        up = previous[x]
        guess = left + up - corner
        nearest = min((left, up, corner), key=lambda each: abs(guess - each))
        line[x] = (line[x] + (0, left, up, (left + up) // 2, nearest)[kind]) & 255
    return line


def read_png(path):
    """(width, height, rows) of a PNG file of 8 or 16 bits: samples of pixels one after the other."""
    with open(path, "rb") as file:
        data = file.read()
    place, compressed = 8, b""
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        content = data[place + 8:place + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", content[:10])
        if kind == b"IDAT":
            compressed += content
        place += 12 + length
    step = depth // 8
    pixel = step * {0: 1, 2: 3, 6: 4}[colour]
    stride = width * pixel
    raw, rows, previous = zlib.decompress(compressed), [], bytes(stride)
    for begin in range(0, height * (stride + 1), stride + 1):
        previous = unfiltered(raw[begin], bytearray(raw[begin + 1:begin + 1 + stride]), previous, pixel)
        rows.append(previous if step == 1 else struct.unpack(f">{stride // 2}H", previous))
    return width, height, rows


with open(os.path.join(os.path.dirname(__file__), "../../docs/viewer-protocol.schema.json"), encoding="utf-8") as schema_file:
    SCHEMA = json.load(schema_file)


def complain_of(message, side):
    """Why a message is none of the schema's for "fromPage" or "fromProgram"; empty when it is one."""
    schema = {**SCHEMA, "anyOf": [{"$ref": "#/$defs/" + side}]}
    error = jsonschema.exceptions.best_match(jsonschema.Draft202012Validator(schema).iter_errors(message))
    return "" if error is None else f"{json.dumps(message)[:300]}: {error.message[:300]}"


def run_tests():
    unittest.main(argv=[sys.argv[0], *REST], verbosity=2)
