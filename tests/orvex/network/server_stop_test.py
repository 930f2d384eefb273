"""Stops a host whose server has 200 silent clients, and takes its port while a child of it lives.

usage: server_stop_test.py <stop_host>
"""
import errno
import os
import signal
import socket
import subprocess
import sys

SILENT = 200
TRIES = 5  # a loaded machine may hold one of them up


def connect_silently(port):
    """A client that waits for nothing: the queue of the server holds few."""
    client = socket.socket()
    client.setblocking(False)
    status = client.connect_ex(("127.0.0.1", port))
    assert status in (0, errno.EINPROGRESS), os.strerror(status)
    return client


def take(port):
    """Listens where the host did."""
    with socket.socket() as listener:
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listener.bind(("0.0.0.0", port))
        listener.listen()


def value(line, word):
    """The number behind a word at the beginning of a line."""
    assert line.startswith(word), f"{line!r} for {word!r}"
    return int(line[len(word):].split()[0])


def stop_once(program):
    """Returns the milliseconds that it took."""
    with subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as host:
        port = value(host.stdout.readline(), "port ")
        clients = [connect_silently(port) for _ in range(SILENT)]
        child = value(host.stdout.readline(), "child ")
        try:
            rest, _ = host.communicate("x", timeout=300)
            assert host.returncode == 0, f"exit {host.returncode}: {rest}"
            os.kill(child, 0)  # it lives
            take(port)
        finally:
            os.kill(child, signal.SIGKILL)
            for client in clients:
                client.close()
    return value(rest, "stopped in ")


def main(program):
    times = []
    while len(times) < TRIES and min(times, default=1000) >= 1000:
        times.append(stop_once(program))
    print("milliseconds:", times)
    return 0 if min(times) < 1000 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
