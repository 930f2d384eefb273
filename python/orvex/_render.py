"""One call, one picture: an engine of the module's own stands behind it."""

from __future__ import annotations

import atexit
import os
import queue
import threading

from . import _engine
from ._arrays import numpy_here
from ._engine import Engine
from ._errors import ArgumentError, ArgumentTypeError, ForkError
from ._model import Model
from ._numbers import size_of
from ._view import View, layer_names

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Callable, Dict, List, Optional, Sequence, Tuple, Union

    from ._camera import Camera
    from ._picture import Path

    Source = Union[Path, Model]


class _Job:
    """A call on another thread, and what became of it."""

    def __init__(self, function: Callable[[], Any]) -> None:
        self.function = function
        self.result: Any = None
        self.error: Optional[BaseException] = None
        self.done = threading.Event()

    def work(self) -> None:
        """Makes the call."""
        try:
            self.result = self.function()
        except BaseException as error:  # pylint: disable=broad-except
            self.error = error
        self.done.set()

    def outcome(self) -> Any:
        """Waits for it. Ctrl-C ends the waiting; the call goes on."""
        self.done.wait()
        if self.error is not None:
            try:
                raise self.error
            finally:
                self.error = None
        return self.result


class _Studio:
    """A thread with an engine and a view, for callers on any thread.

    The engine belongs to one thread, and callers come from many: pools, notebooks, Dask. It stays
    from one picture to the next, as starting it takes longer than drawing.
    """

    def __init__(self) -> None:
        self.jobs: queue.SimpleQueue[_Job] = queue.SimpleQueue()
        self.lock = threading.Lock()
        self.thread: Optional[threading.Thread] = None
        self.engine: Optional[Engine] = None
        self.view: Optional[View] = None
        self.kind: Optional[Tuple[str, ...]] = None
        self.look = "lit"
        self.background: Any = None
        self.was_forked = False

    def begin(self, function: Callable[[], Any]) -> _Job:
        """Has its thread call a function."""
        if self.was_forked:
            raise ForkError("this process was forked off after a picture was drawn, and its driver "
                            'hangs: start processes by "spawn" or "forkserver"')
        with self.lock:
            if self.thread is None:
                self.thread = threading.Thread(target=self._work, name="orvex", daemon=True)
                self.thread.start()
        job = _Job(function)
        self.jobs.put(job)
        return job

    def run(self, function: Callable[[], Any]) -> Any:
        """Has its thread call a function, and waits."""
        return self.begin(function).outcome()

    def _work(self) -> None:
        while True:
            job = self.jobs.get()
            job.work()
            del job

    def engine_of_its_own(self) -> Engine:
        """The engine. On its thread only."""
        if self.engine is None:
            self.engine = Engine()
        return self.engine

    def view_for(self, size: Tuple[int, int], options: Dict[str, Any]) -> View:
        """The view, as it was if it is wanted so again. On its thread only."""
        look, background = options["look"], options["background"]
        kind = tuple(repr(options[name])
                     for name in ("samples", "supersampling", "path", "device"))
        # The background of old can't be had back.
        is_kept = self.kind == kind and (self.background is None or background is not None)
        if self.view is None or not is_kept:
            view, self.view = self.view, None
            if view is not None:
                view.close()
            self.view, self.kind = self.engine_of_its_own().view(*size, **options), kind
        else:
            if self.view.size != size:
                self.view.resize(*size)
            if look != self.look:
                self.view.set_look(look)
            if background is not None:
                self.view.set_background(background)
        self.look, self.background = look, background
        return self.view

    def _stop(self) -> None:
        engine, self.engine, self.view = self.engine, None, None
        if engine is not None:
            engine.close()

    def give_way(self) -> None:
        """Stops the engine, so that another can start or the process can end."""
        is_own = threading.current_thread() is self.thread
        if self.engine is not None and not self.was_forked and not is_own:
            self.run(self._stop)

    def after_fork(self) -> None:
        """In the process that was forked off: the thread isn't there, the engine of no use."""
        self.was_forked = self.was_forked or self.thread is not None
        self.lock = threading.Lock()
        self.jobs = queue.SimpleQueue()
        self.thread = None


_studio = _Studio()
_engine._before_start.append(_studio.give_way)
atexit.register(_studio.give_way)
if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_studio.after_fork)


def stop() -> None:
    """Stops the engine behind `render`, if it runs; the next picture starts it again.

    To be called where its memory is wanted back.
    """
    _studio.give_way()


def _draw(engine: Engine, view: View, sources: Sequence[Source], camera: Optional[Camera],
          layers: Optional[List[str]], loading: Dict[str, Any], out: Any) -> Any:
    models: List[Model] = []
    loaded: List[Model] = []
    try:
        for source in sources:
            if not isinstance(source, Model):
                source = engine.load(source, **loading)
                loaded.append(source)
            models.append(source)
        view.draw(models, camera)
        return view.color(out) if layers is None else view.layers(layers, out=out)
    finally:
        view._models = None
        for model in loaded:
            model.close()


def _sources_of(models: Any) -> List[Source]:
    if isinstance(models, (str, bytes, os.PathLike, Model)):
        return [models]  # type: ignore[list-item]
    try:
        return list(models)
    except TypeError:
        raise ArgumentTypeError(
            f"models is a {type(models).__name__}, not a file, a model or several") from None


def render(models: Union[Source, Sequence[Source]], size: Tuple[int, int] = (640, 480),
           layers: Union[str, Sequence[str], None] = None, camera: Optional[Camera] = None,
           look: str = "lit", background: Any = None, samples: Optional[int] = None,
           path: str = "gl3", *, supersampling: int = 1, device: Optional[str] = None,
           normals: str = "as given", allow_outside: bool = False, out: Any = None) -> Any:
    """Draws models.

    May be called on any thread: the pictures are drawn one after the other by an engine that stays
    for the next one. Where an engine runs on this thread already, that one draws.

    Parameters
    ----------
    models : path, Model, or several
        What is drawn, in this order. Files are loaded, and forgotten afterwards.
    size : (width, height)
        Of the picture, in pixels.
    layers : str or several, optional
        Some of "color", "depth", "normal", "position", "object" (or "id"), "material", "face".
    camera : Camera, optional
        By default one that sees all of them, a little from the right and from above.
    look, background, samples, path, supersampling, device
        As for `Engine.view`.
    normals, allow_outside
        As for `Engine.load`.
    out : array, or dict of arrays by name
        To be read into, as for `View.color` and `View.layers`.

    Returns
    -------
    (height, width, 4) uint8
        Red, green, blue and straight alpha; or, if `layers` are given, a dict of arrays by their
        names: shapes, dtypes and empty values are those of the operations of `View`.
    """
    sources = _sources_of(models)
    wanted = None if layers is None else layer_names(layers)
    if wanted == []:
        raise ArgumentError("layers is empty")
    size = size_of(size)
    options = {"look": look, "background": background, "samples": samples, "path": path,
               "supersampling": supersampling, "device": device}
    loading = {"normals": normals, "allow_outside": allow_outside}
    of_model = next((source._engine for source in sources if isinstance(source, Model)), None)
    engine = of_model or _engine.running_here()
    if engine is not None:
        with engine.view(*size, **options) as view:
            return _draw(engine, view, sources, camera, wanted, loading, out)
    job = _studio.begin(lambda: _draw(_studio.engine_of_its_own(), _studio.view_for(size, options),
                                      sources, camera, wanted, loading, out))
    if out is None:
        numpy_here()  # the first time as long as the picture, which is drawn meanwhile
    return job.outcome()
