"""Batches on a cluster of Dask's.

    import orvex.dask
    from distributed import Client

    for verdict in orvex.dask.batch(Client(), paths, output_dir="/shared/pictures"):
        print(verdict.id, verdict.verdict)

Paths have to mean the same on every machine. A part whose machine is lost is drawn again by
another one.
"""

from __future__ import annotations

import os
from typing import Any, Iterable, Iterator, List, Mapping, Tuple

from ._batch import Entry, Verdict, arguments_of, line_of
from ._batch import batch as _batch_here
from ._errors import ArgumentError, ArgumentTypeError
from ._numbers import integer


def parts_of(entries: Iterable[Entry], length: int) -> List[List[Entry]]:
    """Entries in parts of some length."""
    listed = list(entries)
    for entry in listed:
        line_of(entry)  # what can't be written is refused here, not by some machine
    return [listed[at:at + length] for at in range(0, len(listed), length)]


def _part(entries: List[Entry], options: Tuple[Tuple[str, Any], ...]) -> List[Verdict]:
    return list(_batch_here(entries, **dict(options)))


def _lost(entries: List[Entry], reason: str) -> Iterator[Verdict]:
    for entry in entries:
        told = entry if isinstance(entry, Mapping) else {"model": entry}
        model = os.fspath(told["model"])
        yield Verdict(str(told.get("id", model)), model, "io", reason)


def batch(client: Any, entries: Iterable[Entry], *, length: int = 100, retries: int = 2,
          **options: Any) -> Iterator[Verdict]:
    """Draws many models on the workers of a cluster.

    Parameters
    ----------
    client : distributed.Client
        Of the cluster.
    entries : iterable of paths, or of mappings
        As for `orvex.batch`, but they are asked for at once.
    length : int
        How many of them are one task.
    retries : int
        How often a task that fails is tried again.
    **options
        As for `orvex.batch`, without `results` and `resume`, as tasks would write over each other:
        ``workers`` are those of one task.

    Yields
    ------
    Verdict
        One for each entry, task by task as they are done. The entries of a task whose machines are
        lost, however often it is tried, have the verdict "io". Who stops asking takes back what
        isn't begun yet.

    Raises
    ------
    ArgumentError
        For an entry or an option that can't be meant.
    """
    if not hasattr(client, "map") or not hasattr(client, "cancel"):
        raise ArgumentTypeError(f"client is a {type(client).__name__}, not a distributed.Client")
    for name in ("results", "resume"):
        if options.get(name):
            raise ArgumentError(f"{name} is of one batch: verdicts of many come back from here")
    arguments_of(options)
    parts = parts_of(entries, integer(length, "length", 1))
    tasks = client.map(_part, parts, options=tuple(options.items()), pure=False,
                       retries=integer(retries, "retries"))
    return _verdicts(client, tasks, parts)


def _verdicts(client: Any, tasks: List[Any], parts: List[List[Entry]]) -> Iterator[Verdict]:
    # pylint: disable=import-outside-toplevel
    from distributed import KilledWorker, as_completed
    part_of = {task.key: part for task, part in zip(tasks, parts)}
    try:
        for task in as_completed(tasks):
            try:
                verdicts = task.result()
            except KilledWorker as error:
                verdicts = _lost(part_of[task.key], "its machines were lost, one after the other: "
                                 f"the last one was {error.last_worker.address}")
            yield from verdicts
    finally:
        client.cancel(tasks)
