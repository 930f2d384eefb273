"""Many models at once, by the command-line tool: its workers survive what kills a process."""

from __future__ import annotations

import json
import os
import subprocess
import tempfile
import threading
import time
from dataclasses import dataclass, field, fields
from typing import Any, Dict, Iterable, Iterator, List, Mapping, Optional, Sequence, Tuple, Union

from ._errors import ArgumentError, ArgumentTypeError, Error, MissingFileError
from ._numbers import integer

Entry = Union[str, "os.PathLike[str]", Mapping[str, Any]]


@dataclass(frozen=True)
class Verdict:
    """What became of an entry of a batch.

    `verdict` is "ok", "refused", "over-limit", "crashed", "driver" or "io", and `reason` a
    sentence. Each of `outputs` is a dict with "path", "kind", "width", "height", "bytes" and
    "sha256"; `seconds` has "load", "draw", "write" and "total".
    """

    id: str
    model: str
    verdict: str
    reason: str = ""
    outputs: Tuple[Dict[str, Any], ...] = ()
    seconds: Dict[str, float] = field(default_factory=dict)
    peak_bytes: int = 0
    tries: int = 1
    key: str = ""
    engine: str = ""
    driver: str = ""

    @property
    def ok(self) -> bool:
        """Whether the picture was made."""
        return self.verdict == "ok"

    @classmethod
    def of_line(cls, line: str) -> Verdict:
        """The verdict on a line of the tool's results; fields of a later tool are passed over."""
        told = json.loads(line)
        known = {one.name: told[one.name] for one in fields(cls) if one.name in told}
        known["outputs"] = tuple(known.get("outputs", ()))
        return cls(**known)


def line_of(entry: Entry) -> str:
    """An entry as a line of the tool's manifest."""
    if isinstance(entry, (str, os.PathLike)):
        entry = {"model": entry}
    if not isinstance(entry, Mapping):
        raise ArgumentTypeError(
            f"entries: one is a {type(entry).__name__}, not a path or a mapping")
    if "model" not in entry:
        raise ArgumentError(f"entries: one has no model: {dict(entry)}")

    def plain(value: Any) -> Any:
        return os.fspath(value) if isinstance(value, os.PathLike) else value

    try:
        return json.dumps({name.replace("_", "-"): plain(value) for name, value in entry.items()})
    except (TypeError, ValueError) as error:
        raise ArgumentTypeError(f"entries: {dict(entry)} can't be written: {error}") from None


def arguments_of(options: Mapping[str, Any]) -> List[str]:
    """Options of the tool, by its long names with underscores, as its arguments."""
    arguments = []
    for name, value in options.items():
        option = "--" + name.replace("_", "-")
        if value is None or value is False:
            continue
        if value is True:
            arguments.append(option)
            continue
        if name == "size" and not isinstance(value, str):
            value = "x".join(str(integer(side, "size", 1)) for side in value)
        elif isinstance(value, Sequence) and not isinstance(value, str):
            value = ",".join(map(str, value))
        arguments += [option, os.fspath(value) if isinstance(value, os.PathLike) else str(value)]
    return arguments


class _Run:
    """The tool, with a thread that feeds it."""

    def __init__(self, command: List[str], entries: Iterable[Entry],
                 results: Optional[str]) -> None:
        self.entries = entries
        self.results = results
        self.skipped = os.path.getsize(results) if results and os.path.exists(results) else 0
        self.mistake: Optional[BaseException] = None
        self.errors = tempfile.TemporaryFile()  # pylint: disable=consider-using-with
        try:
            self.process = subprocess.Popen(  # pylint: disable=consider-using-with
                command, stdin=subprocess.PIPE, stderr=self.errors,
                stdout=subprocess.DEVNULL if results else subprocess.PIPE)
        except OSError as error:
            self.errors.close()
            kind = MissingFileError if isinstance(error, FileNotFoundError) else Error
            raise kind(f"{command[0]} can't be run: {error.strerror}") from None
        self.feeder = threading.Thread(target=self._feed, name="orvex.batch", daemon=True)
        self.feeder.start()

    def _feed(self) -> None:
        assert self.process.stdin is not None
        try:
            with self.process.stdin as pipe:
                for entry in self.entries:
                    pipe.write(line_of(entry).encode() + b"\n")
                    pipe.flush()
        except BrokenPipeError:
            pass  # it has ended, and tells why
        except BaseException as error:  # pylint: disable=broad-except
            self.mistake = error
            self.process.terminate()

    def lines(self) -> Iterator[str]:
        """The lines of the results, as they come."""
        if self.results is None:
            assert self.process.stdout is not None
            for line in self.process.stdout:
                yield line.decode()
            return
        while not os.path.exists(self.results) and self.process.poll() is None:
            time.sleep(0.02)
        if os.path.exists(self.results):
            yield from self._lines_of_file(self.results)

    def _lines_of_file(self, results: str) -> Iterator[str]:
        with open(results, "rb") as file:
            file.seek(self.skipped)
            rest = b""
            while True:
                has_ended = self.process.poll() is not None
                rest += file.read()
                *whole, rest = rest.split(b"\n")
                for line in whole:
                    yield line.decode()
                if has_ended:
                    return
                time.sleep(0.02)

    def outcome(self) -> None:
        """Waits for its end, and raises what went wrong with the whole."""
        code = self.process.wait()
        self.feeder.join()
        if self.mistake is not None:
            raise self.mistake
        if code in (0, 3, 4):  # 3 and 4 are told by verdicts
            return
        self.errors.seek(0)
        told = self.errors.read().decode(errors="replace").strip()
        sentence = told or f"the tool ended with {code}"
        raise ArgumentError(sentence) if code == 2 else Error(sentence)

    def close(self) -> None:
        """Ends it if it still runs: the models in hand are finished, unless that takes too long."""
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(30)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.feeder.join(1)
        if self.process.stdout is not None:
            self.process.stdout.close()
        self.errors.close()


def batch(entries: Iterable[Entry], workers: Optional[int] = None, *,
          output_dir: Union[str, os.PathLike[str], None] = None,
          results: Union[str, os.PathLike[str], None] = None, resume: bool = False,
          program: Union[str, os.PathLike[str]] = "orvex-render",
          **options: Any) -> Iterator[Verdict]:
    """Draws many models by ``orvex-render --batch``, in processes of their own.

    Nothing that a model does ends this process: one that crashes, hangs or eats memory gets its
    verdict, and the others are drawn.

    Parameters
    ----------
    entries : iterable of paths, or of mappings
        A mapping has "model", and may have "id", "output" and any option of the tool. They are
        asked for as the workers come to them: a generator may be endless.
    workers : int, optional
        Processes that draw; by default one for each processor.
    output_dir : path, optional
        Of the pictures; by default the current folder.
    results : path, optional
        The verdicts are kept in this file, too, by which `resume` goes on with a batch.
    resume : bool
        Passes over what `results` tells as done; no verdict comes of it.
    program : str or path
        The tool.
    **options
        Of the tool for all entries, by their long names: ``size=(256, 256)``,
        ``limit_seconds=10``.

    Yields
    ------
    Verdict
        One for each entry, in the order in which they are done.

    Raises
    ------
    ArgumentError
        For an entry or an option that the tool refuses.
    """
    if resume and results is None:
        raise ArgumentError("resume goes on with a file of results: give results, too")
    kept = None if results is None else os.fspath(results)
    count = None if workers is None else integer(workers, "workers", 1, 4096)
    command = [os.fspath(program), "--batch", "-", "--quiet"] + arguments_of(
        {"workers": count, "output_dir": output_dir, "results": kept, "resume": resume, **options})
    return _verdicts(command, entries, kept)


def _verdicts(command: List[str], entries: Iterable[Entry],
              results: Optional[str]) -> Iterator[Verdict]:
    run = _Run(command, entries, results)
    try:
        for line in run.lines():
            if line.strip():
                yield Verdict.of_line(line)
        run.outcome()
    finally:
        run.close()
