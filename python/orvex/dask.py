"""Batches on a cluster of Dask's.

    import orvex.dask
    from distributed import Client

    for verdict in orvex.dask.batch(Client(), paths, output_dir="/shared/pictures"):
        print(verdict.id, verdict.verdict)

Paths have to mean the same on every machine. A part whose machine is lost is drawn again by
another one.
"""

from __future__ import annotations

from typing import Any, Iterable, Iterator, List, Tuple

from ._batch import Entry, Verdict
from ._batch import batch as _batch_here
from ._numbers import integer


def parts_of(entries: Iterable[Entry], length: int) -> List[List[Entry]]:
    """Entries in parts of some length."""
    listed = list(entries)
    return [listed[at:at + length] for at in range(0, len(listed), length)]


def _part(entries: List[Entry], options: Tuple[Tuple[str, Any], ...]) -> List[Verdict]:
    return list(_batch_here(entries, **dict(options)))


def batch(client: Any, entries: Iterable[Entry], *, length: int = 100, retries: int = 2,
          **options: Any) -> Iterator[Verdict]:
    """Draws many models on the workers of a cluster.

    Parameters
    ----------
    client : distributed.Client
        Of the cluster.
    entries : iterable of paths, or of mappings
        As for `orvex.batch`.
    length : int
        How many of them are one task.
    retries : int
        How often a task is tried again.
    **options
        As for `orvex.batch`: ``workers`` are those of one task.

    Yields
    ------
    Verdict
        One for each entry, task by task as they are done.
    """
    from distributed import as_completed  # pylint: disable=import-outside-toplevel
    parts = parts_of(entries, integer(length, "length", 1))
    tasks = client.map(_part, parts, options=tuple(options.items()), retries=retries, pure=False)
    for task in as_completed(tasks):
        yield from task.result()
