"""Processes of a test, none of which outlives it: neither what it starts nor what that starts."""

import ctypes
import os
import pathlib
import signal
import subprocess
import time

PR_SET_PDEATHSIG, PR_SET_CHILD_SUBREAPER = 1, 36
LIBC = ctypes.CDLL(None)


def adopt_orphans():
    """From now on what descends from this process stays below it, whoever ends in between."""
    LIBC.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def _end_with_parent():
    LIBC.prctl(PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def start(command, log, **options):
    """Starts a program that ends with this one. What it prints goes to a file."""
    with open(log, "ab") as out:
        return subprocess.Popen([str(word) for word in command], stdout=out, stderr=out,
                                stdin=subprocess.DEVNULL, preexec_fn=_end_with_parent, **options)


def descendants(process):
    """The numbers of all processes below one."""
    found = []
    try:
        for task in pathlib.Path(f"/proc/{process}/task").iterdir():
            for child in (task / "children").read_text().split():
                found += [int(child), *descendants(child)]
    except (FileNotFoundError, ProcessLookupError):
        pass  # it has ended meanwhile
    return found


def end_all():
    """Ends whatever descends from this process, first by a word, then by force."""
    for number, seconds in ((signal.SIGTERM, 5), (signal.SIGKILL, 60)):
        end = time.monotonic() + seconds
        for process in descendants(os.getpid()):
            send(process, number)
        while time.monotonic() < end:
            reap()
            if not descendants(os.getpid()):
                return
            time.sleep(0.02)
    raise AssertionError(f"still there: {descendants(os.getpid())}")


def send(process, number):
    """Sends a signal to a process, which may have ended."""
    try:
        os.kill(process, number)
    except ProcessLookupError:
        pass


def reap():
    """Takes leave of children that have ended."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            pass
    except ChildProcessError:
        pass
