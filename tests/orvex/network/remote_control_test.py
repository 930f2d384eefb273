"""Drives the example remote_control as a tool would: one text per connection, one line back.

usage: remote_control_test.py PROGRAM MODEL
"""

import os
import socket
import struct
import subprocess
import sys
import tempfile
import unittest

PROGRAM = MODEL = None
PATIENCE_SECONDS = 120


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def size_of_jpeg(data):
    """Width and height in the frame header, which a baseline file must have."""
    assert data[:2] == b"\xff\xd8" and data[-2:] == b"\xff\xd9", "not a JPEG file"
    at = 2
    while data[at + 1] != 0xC0:
        at += 2 + struct.unpack(">H", data[at + 2 : at + 4])[0]
    height, width = struct.unpack(">HH", data[at + 5 : at + 9])
    return width, height


class Host:
    """The program, listening; another process may take a free port first, then the next is tried."""

    def __init__(self):
        for _ in range(20):
            self.port = free_port()
            self.process = subprocess.Popen(
                [PROGRAM, str(self.port)],
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
            if self.process.stdout.readline() == f"listening on port {self.port}\n":
                return
            _, errors = self.process.communicate(timeout=PATIENCE_SECONDS)
            if "can't listen" not in errors:
                raise AssertionError(errors)
        raise AssertionError("no port")

    def ask(self, text):
        with socket.create_connection(("127.0.0.1", self.port), PATIENCE_SECONDS) as connection:
            connection.sendall(text.encode())
            answer = b""
            while block := connection.recv(4096):
                answer += block
        return answer.decode()

    def wait(self):
        self.process.communicate(timeout=PATIENCE_SECONDS)
        return self.process.returncode

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()


class RemoteControlTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.host = Host()
        self.addCleanup(self.host.end)
        self.shots = 0

    def screenshot(self):
        self.shots += 1
        path = os.path.join(self.folder.name, f"{self.shots}.jpg")
        self.assertEqual(self.host.ask(f"screenshot {path}\n"), "ok\n")
        with open(path, "rb") as file:
            data = file.read()
        self.assertEqual(size_of_jpeg(data), (640, 480))
        return data

    def test_obeys_until_it_is_told_to_quit(self):
        empty = self.screenshot()
        self.assertEqual(self.host.ask(f"load {MODEL}\n"), "ok\n")
        front = self.screenshot()
        self.assertGreater(len(front), 2 * len(empty), "there is more to see")
        self.assertEqual(self.host.ask("turn 90"), "ok\n")
        side = self.screenshot()
        self.assertNotEqual(side, front)
        self.assertEqual(self.host.ask("turn -90"), "ok\n")
        self.assertEqual(self.screenshot(), front)
        self.assertEqual(self.host.ask(f"load {MODEL}"), "ok\n")
        self.assertEqual(self.screenshot(), front)
        self.assertEqual(self.host.ask("quit\n"), "ok\n")
        self.assertEqual(self.host.wait(), 0)

    def test_tells_what_is_wrong(self):
        rows = {
            "dance": "error: load FILE, turn DEGREES, screenshot FILE or quit\n",
            " \n": "error: load FILE, turn DEGREES, screenshot FILE or quit\n",
            "load /nowhere/to/be.obj": "error: /nowhere/to/be.obj: No such file or directory\n",
            "turn": "error: turn DEGREES\n",
            "turn left": "error: turn DEGREES\n",
            "turn nan": "error: turn DEGREES\n",
            "screenshot /nowhere/to/be.jpg": "error: can't write /nowhere/to/be.jpg: No such file or directory\n",
        }
        for text, answer in rows.items():
            with self.subTest(text):
                self.assertEqual(self.host.ask(text), answer)
        unreadable = self.host.ask(f"load {__file__}")
        self.assertTrue(unreadable.startswith(f"error: {__file__}: no loader can read it as a model ("), unreadable)
        self.assertEqual(self.host.ask("quit"), "ok\n")
        self.assertEqual(self.host.wait(), 0)

    def test_a_client_without_a_text_changes_nothing(self):
        socket.create_connection(("127.0.0.1", self.host.port)).close()
        self.assertEqual(self.host.ask("quit"), "ok\n")
        self.assertEqual(self.host.wait(), 0)

    def test_ends_with_the_servers_stop_text(self):
        self.assertEqual(self.host.ask("STOP_ORVEX_TCP_SERVER"), "")
        self.assertEqual(self.host.wait(), 0)

    def test_says_that_a_port_is_taken(self):
        second = subprocess.run([PROGRAM, str(self.host.port)], capture_output=True, text=True,
                                timeout=PATIENCE_SECONDS)
        self.assertEqual(second.returncode, 1)
        self.assertIn(f"can't listen on port {self.host.port}", second.stderr)
        self.assertEqual(self.host.ask("quit"), "ok\n")
        self.assertEqual(self.host.wait(), 0)

    def test_explains_itself(self):
        for arguments in ([], ["0"], ["65536"], ["port"], ["1", "2"]):
            with self.subTest(arguments):
                run = subprocess.run([PROGRAM, *arguments], capture_output=True, text=True,
                                     timeout=PATIENCE_SECONDS)
                self.assertEqual((run.returncode, run.stderr), (2, "usage: remote_control PORT\n"))


if __name__ == "__main__":
    PROGRAM, MODEL = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
