"""What somebody who means no good, or a broken page, sends to the viewer: it stays as it was, and serves the others."""

import json
import os
import socket
import stat
import subprocess
import tempfile
import unittest

from harness import ARGUMENTS, LIMIT, SCHEMA, Socket, Viewer, command, complain_of, native_path, run_tests, wait_for


def applet_of(viewer):
    """The applet for grey images, once the application has started and found it."""
    def found():
        with Socket(viewer) as early:
            applets = early.hello()["state"]["applets"]
        return next((each for each in applets if each["name"] == "SingleAreaGray.hap"), None)
    return wait_for(found, "the applet")


class Abuse(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.viewer = Viewer()

    @classmethod
    def tearDownClass(cls):
        code = cls.viewer.end()
        assert code == 0, cls.viewer.lines

    def tearDown(self):
        with Socket(self.viewer) as page:  # the next page is let in
            self.assertEqual(page.hello()["type"], "welcome")

    def exchange(self, text, address="127.0.0.1", limit=LIMIT):
        """The answer to raw bytes, until the server closes or has answered."""
        with socket.create_connection((address, self.viewer.port), timeout=limit) as connection:
            connection.sendall(text)
            answer = b""
            while b"\r\n\r\n" not in answer:
                data = connection.recv(1 << 16)
                if not data:
                    break
                answer += data
            return answer.decode(errors="replace")

    def test_http_requests(self):
        host = f"127.0.0.1:{self.viewer.port}"
        head = f"Host: {host}\r\n"
        rows = [
            (f"GET / HTTP/1.1\r\n{head}\r\n", 200),
            (f"GET / HTTP/1.1\r\nHost: localhost:{self.viewer.port}\r\n\r\n", 200),
            (f"GET / HTTP/1.1\r\nHost: elsewhere.example:{self.viewer.port}\r\n\r\n", 403),
            ("GET / HTTP/1.1\r\n\r\n", 403),
            (f"GET / HTTP/1.1\r\n{head}{head}\r\n", 403),
            (f"GET / HTTP/1.1\r\n{head}Origin: http://elsewhere.example\r\n\r\n", 403),
            (f"POST / HTTP/1.1\r\n{head}Content-Length: 3\r\n\r\nabc", 405),
            (f"HEAD / HTTP/1.1\r\n{head}\r\n", 405),
            (f"DELETE / HTTP/1.1\r\n{head}\r\n", 405),
            (f"TRACE / HTTP/1.1\r\n{head}\r\n", 405),
            (f"GET / HTTP/1.1\r\n{head}Content-Length: 99999999999\r\n\r\n", 413),
            (f"GET / HTTP/1.1\r\n{head}Transfer-Encoding: chunked\r\n\r\nffffffff\r\n", 413),
            (f"GET /../../../../etc/passwd HTTP/1.1\r\n{head}\r\n", 404),
            (f"GET /..%2f..%2fetc%2fpasswd HTTP/1.1\r\n{head}\r\n", 404),
            (f"GET /C:\\Windows\\win.ini HTTP/1.1\r\n{head}\r\n", 404),
            (f"GET http://{host}/app.js HTTP/1.1\r\n{head}\r\n", 404),
            (f"GET /{'a' * 9000} HTTP/1.1\r\n{head}\r\n", 431),
            (f"GET / HTTP/1.1\r\n{head}X: {'a' * 9000}\r\n\r\n", 431),
            ("\x16\x03\x01\x02\x00\x01\x00\x01\r\n\r\n", 400),
            ("GET / HTTP/9.9\r\n\r\n", 400),
        ]
        for text, status in rows:
            with self.subTest(text[:60]):
                answer = self.exchange(text.encode("latin-1"))
                self.assertTrue(answer.startswith(f"HTTP/1.1 {status} "), answer[:200])
                if text.startswith("HEAD"):
                    self.assertTrue(answer.endswith("\r\n\r\n"), "no body")
                for header in ("Content-Security-Policy: default-src 'none'", "X-Content-Type-Options: nosniff",
                               "Cache-Control: no-store", "Cross-Origin-Resource-Policy: same-origin"):
                    self.assertIn(header, answer)
                self.assertNotIn(self.viewer.token, answer)

    def test_both_loopback_addresses_and_no_other_answer(self):
        self.assertIn("200 OK", self.exchange(f"GET / HTTP/1.1\r\nHost: [::1]:{self.viewer.port}\r\n\r\n".encode(), "::1"))
        own = socket.gethostbyname(socket.gethostname())
        if not own.startswith("127."):
            with self.assertRaises(OSError):
                socket.create_connection((own, self.viewer.port), timeout=5)

    def test_upgrades_of_others_are_refused(self):
        for arguments in ({"host": "elsewhere.example"}, {"origin": None}, {"origin": "http://elsewhere.example"},
                          {"origin": "null"}, {"origin": f"https://127.0.0.1:{self.viewer.port}"}):
            with self.subTest(arguments), Socket(self.viewer, **arguments) as page:
                self.assertEqual(page.status, 403)
        with Socket(self.viewer, target="/") as page:
            self.assertEqual(page.status, 200)

    def test_pages_without_the_token_learn_nothing(self):
        wrong = [("0" * 32, 1), ("", 1), (self.viewer.token[:-1], 1), (self.viewer.token + "0", 1), (self.viewer.token, 2)]
        for token, version in wrong:
            with self.subTest(token=token, version=version), Socket(self.viewer) as page:
                self.assertEqual(page.hello(token, version)["type"], "refused")
                with self.assertRaises((EOFError, ConnectionError)):
                    page.message()
        with Socket(self.viewer) as page:
            self.assertEqual(page.request("quit")["type"], "refused")

    def test_messages_that_are_none_end_their_connection_alone(self):
        with Socket(self.viewer) as watcher:
            watcher.hello()
            rows = [(1, b"{"), (1, b"[" * 100000), (1, b'{"type":"request"}'), (1, b"\xff\xfe\xfd"), (2, bytes(1000)),
                    (1, b'{"type":"hello","version":1,"token":"x"}'), (1, b"x" * (5 << 20)), (11, b"?"),
                    (1, b'{"type":"show","channel":1,"view":1,"region":[0,0,1e9,1],"screen":[1,1],"histogram":true}')]
            for opcode, payload in rows:
                with self.subTest(payload[:60]), Socket(self.viewer) as page:
                    self.assertEqual(page.hello()["type"], "welcome")
                    try:
                        page.send_frame(payload, opcode)
                    except ConnectionError:
                        continue  # it was too long to be taken at all
                    with self.assertRaises((EOFError, ConnectionError)):
                        while page.message()["type"] in ("changed", "appended"):
                            pass
                        page.message("nothing that is sent")
            self.assertEqual(watcher.request("rescan")["type"], "done")

    def test_requests_that_cannot_be_done_are_answered(self):
        with Socket(self.viewer) as page:
            page.hello()
            for name, arguments in (("", {}), ("no-such-request", {}), ("load", {}), ("load", {"board": 1}),
                                    ("load", {"board": "1a2b3c", "applet": "../../etc/passwd"}),
                                    ("start", {"board": "1a2b3c", "kind": "dma", "index": 0}),
                                    ("start", {"board": "ffffffff", "kind": "dma", "index": 0}),
                                    ("answer", {"question": 1, "button": 3, "remember": False}),
                                    ("set-sync-mode", {"mode": 4})):
                with self.subTest(name=name, arguments=arguments):
                    self.assertEqual(page.request(name, **arguments)["type"], "failed")

    def test_requests_that_pile_up_are_refused(self):
        applet = applet_of(self.viewer)
        with Socket(self.viewer) as page:
            page.hello()
            page.request("rehearse", step="delay Fg_InitEx 3000")
            page.send({"type": "request", "id": 0, "name": "load", "arguments": {"board": "1a2b3c", "applet": applet["path"]}})
            for number in range(1, 101):  # wait until the load is over
                page.send({"type": "request", "id": number, "name": "rescan", "arguments": {}})
            answers = []
            while len(answers) < 101:
                message = page.message()
                if message["type"] in ("done", "failed"):
                    answers.append(message)
            refused = [each["id"] for each in answers if each["type"] == "failed" and "too many requests" in each["text"]]
            self.assertTrue(refused)
            self.assertGreaterEqual(refused[0], 16)
            for name, arguments in (("rehearse", {"step": "forget"}), ("unload", {"board": "1a2b3c"})):
                self.assertEqual(page.request(name, **arguments)["type"], "done")

    def test_too_many_connections_are_turned_away_and_room_comes_back(self):
        connections = []
        try:
            for _ in range(100):
                connections.append(socket.create_connection(("127.0.0.1", self.viewer.port), timeout=LIMIT))
            request = f"GET / HTTP/1.1\r\nHost: 127.0.0.1:{self.viewer.port}\r\n\r\n".encode()

            def answered(connection):
                try:
                    connection.sendall(request)
                    return connection.recv(100) != b""
                except OSError:
                    return False
            count = sum(answered(connection) for connection in connections)
            self.assertLess(count, 100)
            self.assertGreater(count, 10)
        finally:
            for connection in connections:
                connection.close()

        def let_in():
            try:
                with Socket(self.viewer) as page:
                    return page.hello()["type"] == "welcome"
            except (EOFError, OSError):
                return False
        wait_for(let_in, "room again")

    def test_slow_requests_are_given_up(self):
        with socket.create_connection(("127.0.0.1", self.viewer.port), timeout=LIMIT) as slow, Socket(self.viewer) as silent:
            slow.sendall(b"GET / HT")
            try:
                self.assertEqual(slow.recv(100), b"", "a request that does not end")
            except ConnectionError:
                pass
            with self.assertRaises((EOFError, ConnectionError)):
                silent.message()  # says no hello

    def test_a_client_that_reads_nothing_changes_nothing_for_the_others(self):
        applet = applet_of(self.viewer)
        with Socket(self.viewer) as page, Socket(self.viewer) as deaf:
            page.hello()
            deaf.hello()
            self.assertEqual(page.request("load", board="1a2b3c", applet=applet["path"])["type"], "done")
            self.assertEqual(page.request("start", board="1a2b3c", kind="dma", index=0)["type"], "done")
            with Socket(self.viewer) as other:
                boards = other.hello()["state"]["boards"]
            channel = boards[0]["processes"][0]["channels"][0]["id"]
            show = {"type": "show", "channel": channel, "view": 1, "region": [0, 0, 1024, 768], "screen": [1024, 768],
                    "histogram": True, "pixel": None, "line": None}
            deaf.send(show)
            for _ in range(5000):
                deaf.send({"type": "shown", "channel": channel})  # as if it had
            page.send(show)
            numbers = []
            while len(numbers) < 30:
                opcode, payload = page.frame()
                if opcode == 2:
                    numbers.append(payload[16:24])
                    page.send({"type": "shown", "channel": channel})
            statistics = page.message("changed")
            while statistics["section"] != "statistics":
                statistics = page.message("changed")
            counted = statistics["value"][str(channel)]
            self.assertLess(counted["lost"], counted["received"], "a busy machine loses some")
            self.assertEqual(page.request("unload", board="1a2b3c")["type"], "done")


class Protocol(unittest.TestCase):
    def test_is_that_of_the_schema(self):
        viewer = Viewer()
        applet = applet_of(viewer)
        with Socket(viewer) as page:
            page.send = lambda message, send=page.send: (sent.append(message), send(message))
            page.frame = lambda frame=page.frame: came.append(frame()) or came[-1]
            sent, came = [], []
            page.hello()
            board = "1a2b3c"
            page.request("load", board=board, applet=applet["path"])
            answers = {name: page.request(name, **arguments) for name, arguments in (
                ("list-parameters", {"board": board, "dma": 0}), ("set-buffers", {"board": board, "dma": 0, "count": 8}),
                ("start", {"board": board, "kind": "process", "index": 0, "images": 100000}), ("list-configurations", {}),
                ("list-scenarios", {}), ("rehearse", {"step": "unplug camera 0 1"}), ("problem-report", {"withPaths": False}))}
            self.assertEqual({answer["type"] for answer in answers.values()}, {"done"})
            page.send({"type": "show", "channel": 1, "view": 1, "region": [0, 0, 64, 64], "screen": [64, 64], "histogram": True,
                       "pixel": [1, 2], "line": [0, 0, 9, 9]})
            for kind in ("values", "histogram", "changed"):
                page.message(kind)
            self.assertEqual(page.request("set-parameter", board=board, dma=0, name="GAIN", value="high")["type"], "failed")
            said = list(sent)
            requests = next(each for each in SCHEMA["$defs"]["fromPage"]["oneOf"] if "oneOf" in each)["oneOf"]
            names = {each["properties"]["name"]["const"] for each in requests} - {"quit"}
            self.assertEqual({name for name in names if page.request(name).get("text") == "there is no such request"}, set())
        texts = {payload for opcode, payload in came if opcode == 1}
        for side, messages in (("fromPage", said), ("fromProgram", map(json.loads, texts))):
            self.assertEqual(list(filter(None, (complain_of(message, side) for message in messages))), [])
        self.assertEqual(viewer.end(), 0, viewer.lines)


class Start(unittest.TestCase):
    def test_a_scenario_that_cannot_be_read_ends_the_program(self):
        with tempfile.TemporaryDirectory() as folder:
            ended = subprocess.run(command(ARGUMENTS.viewer, "--no-browser", "--port", "0", "--output-dir", native_path(folder),
                                           "--config", native_path(folder + "/entries.cfg"), "--scenario", "none.scenario"),
                                   stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=LIMIT, check=False)
        self.assertEqual(ended.returncode, 1)
        self.assertIn("scenario none.scenario: cannot be read", ended.stdout + ended.stderr)


@unittest.skipIf(ARGUMENTS.emulator, "the system's browser is opened in another way there")
class OtherUsers(unittest.TestCase):
    def test_find_neither_the_token_nor_uploads(self):
        with tempfile.TemporaryDirectory() as folder:
            opener = os.path.join(folder, "xdg-open")
            with open(opener, "w", encoding="utf-8") as file:
                file.write(f"#!/bin/sh\nstat -c %a \"$1\" >{folder}/seen\necho \"$1\" >>{folder}/seen\ncat \"$1\" >>{folder}/seen\n"
                           f"mv {folder}/seen {folder}/all\n")
            os.chmod(opener, 0o755)
            output = os.path.join(folder, "of this run")
            viewer = Viewer(extra=(), folder=output, environment={**os.environ, "PATH": folder + ":" + os.environ["PATH"], "TMPDIR": folder})
            wait_for(lambda: os.path.exists(folder + "/all"), "the opener is called")
            with open(folder + "/all", encoding="utf-8") as file:
                mode, path, page = file.read().split("\n", 2)
            self.assertEqual(mode, "600")
            self.assertIn(viewer.address, page)
            self.assertTrue(os.path.isdir(output))
            applet_of(viewer)
            with Socket(viewer) as socket_of_page:
                socket_of_page.hello()
                self.assertEqual(socket_of_page.request("upload-scenario", text="at 0 s: disk full\n")["type"], "done")
                self.assertEqual(socket_of_page.request("upload-scenario", text="#" * (1 << 20) + "\n")["type"], "failed")
            uploads = [each for each in os.scandir(folder) if each.name.startswith("ovra-viewer-") and each.is_dir()]
            self.assertEqual([stat.S_IMODE(each.stat().st_mode) for each in uploads], [0o700])
            self.assertEqual(os.listdir(uploads[0]), [])
            self.assertEqual(viewer.end(), 0, viewer.lines)
            self.assertEqual(sorted(os.listdir(folder)), ["all", "xdg-open"])


if __name__ == "__main__":
    run_tests()
