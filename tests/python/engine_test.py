"""How long things live, on which thread, and what the log is told to."""

import gc
import os
import signal
import sys
import threading
import time
import traceback
import unittest
import unittest.mock
import weakref

import numpy

import orvex
from orvex import _render, _session
from support import FACES, LIGHTHOUSE, SQUARE, FolderTest, run_python


def on_another_thread(function):
    """Calls a function on a thread of its own; what it throws comes back."""
    caught = []

    def work():
        try:
            function()
        except BaseException as error:  # pylint: disable=broad-except
            caught.append(error)

    thread = threading.Thread(target=work)
    thread.start()
    thread.join()
    return caught[0] if caught else None


class LifetimeTest(unittest.TestCase):
    """Closed, forgotten, in any order."""

    def test_with_closes_what_it_opened(self):
        with orvex.Engine() as engine, engine.view(8, 8) as view:
            with engine.mesh(SQUARE, FACES) as mesh:
                view.draw(mesh)
            self.assertTrue(mesh.closed)
        self.assertTrue(view.closed and engine.closed)
        engine.close()
        view.close()
        mesh.close()

    def test_what_is_closed_says_so(self):
        with orvex.Engine() as engine:
            view, mesh = engine.view(8, 8), engine.mesh(SQUARE, FACES)
            view.draw(mesh)
            mesh.close()
            with self.assertRaisesRegex(orvex.HandleError, "the mesh is closed"):
                view.draw(mesh)
            with self.assertRaisesRegex(orvex.HandleError, "the mesh is closed"):
                view.depth()
            view.close()
            for use in (view.color, view.depth, lambda: view.draw([]), lambda: view.pick(1, 1),
                        lambda: view.text("a", 0, 0), lambda: view.resize(4, 4)):
                self.assertRaisesRegex(orvex.HandleError, "the view is closed", use)
        with self.assertRaisesRegex(orvex.HandleError, "the engine is closed"):
            engine.load(LIGHTHOUSE)

    def test_the_engine_closes_what_is_left(self):
        engine = orvex.Engine()
        view, mesh = engine.view(8, 8), engine.mesh(SQUARE, FACES)
        engine.close()
        self.assertTrue(view.closed and mesh.closed)
        with self.assertRaises(orvex.HandleError):
            mesh.extent
        with orvex.Engine() as other, other.view(8, 8) as later:
            with self.assertRaisesRegex(orvex.HandleError, "the mesh is closed"):
                later.draw(mesh)

    def test_what_is_forgotten_ends(self):
        for order in (("view", "mesh", "engine"), ("engine", "mesh", "view"),
                      ("mesh", "engine", "view")):
            with self.subTest(order):
                gc.collect()
                engine = orvex.Engine()
                things = {"engine": engine, "view": engine.view(8, 8),
                          "mesh": engine.mesh(SQUARE, FACES)}
                things["view"].draw(things["mesh"])
                seen = weakref.ref(engine)
                del engine
                for name in order:
                    del things[name]
                gc.collect()
                self.assertIsNone(seen())
                orvex.Engine().close()

    def test_what_another_thread_forgets_ends_with_the_next_call(self):
        with orvex.Engine() as engine:
            held = [engine.mesh(SQUARE, FACES)]
            self.assertIsNone(on_another_thread(held.clear))
            self.assertEqual(len(engine._session.ends), 1)
            engine.formats
            self.assertEqual(len(engine._session.ends), 0)

    def test_an_engine_that_another_thread_forgets_stops_before_the_next(self):
        held = [orvex.Engine()]
        self.assertIsNone(on_another_thread(held.clear))
        self.assertEqual(len(_session._lost), 1)
        orvex.Engine().close()
        self.assertEqual(len(_session._lost), 0)

    def test_an_engine_stops_with_its_thread(self):
        held = []
        self.assertIsNone(on_another_thread(lambda: held.append(orvex.Engine())))
        self.assertTrue(held[0].closed)
        orvex.Engine().close()

    def test_fifty_engines_follow_each_other(self):
        for _ in range(50):
            with orvex.Engine() as engine, engine.view(8, 8) as view:
                engine.mesh(SQUARE, FACES)
                self.assertFalse(view.closed)

    def test_a_second_engine_is_refused(self):
        with orvex.Engine():
            with self.assertRaises(orvex.EngineError):
                orvex.Engine()
            self.assertIsInstance(on_another_thread(orvex.Engine), orvex.EngineError)
        orvex.Engine().close()

    def test_the_end_of_the_interpreter_finds_any_order(self):
        setting = f"""
            import orvex, sys, threading
            engine = orvex.Engine(on_log=lambda line: None)
            view, model = engine.view(8, 8), engine.load({LIGHTHOUSE!r})
            view.draw(model)
            """
        for end in ("pass", "del view; engine.kept = model",
                    "engine.me = engine; view.me = view; del engine, view",
                    "threading.Thread(target=lambda: globals().pop('model')).start()"):
            with self.subTest(end):
                ended = run_python(setting + end)
                self.assertEqual((ended.returncode, ended.stderr), (0, ""))

    def test_the_end_of_the_interpreter_finds_render(self):
        ended = run_python(f"""
            import orvex
            print(orvex.render({LIGHTHOUSE!r}, size=(8, 8)).shape)
            """)
        self.assertEqual((ended.stdout, ended.stderr), ("(8, 8, 4)\n", ""))


class ThreadTest(unittest.TestCase):
    """The engine's thread, others, and other processes."""

    def test_another_thread_is_refused(self):
        with orvex.Engine() as engine:
            view, mesh = engine.view(8, 8), engine.mesh(SQUARE, FACES)
            for use in (lambda: view.draw(mesh), lambda: engine.load(LIGHTHOUSE),
                        lambda: mesh.extent, mesh.close, view.close, engine.close):
                self.assertIsInstance(on_another_thread(use), orvex.ThreadError)
            view.draw(mesh)
            self.assertFalse(mesh.closed or view.closed)

    def test_other_threads_run_while_it_loads_and_draws(self):
        count, is_over = [0], threading.Event()

        def work():
            while not is_over.is_set():
                count[0] += 1
                time.sleep(0)  # lets go of the interpreter's lock

        interval = sys.getswitchinterval()
        thread = threading.Thread(target=work)
        with orvex.Engine() as engine, engine.view(640, 480) as view:
            model = engine.load(LIGHTHOUSE)
            thread.start()
            # From here on nobody has to let go of it: who gets it finds it given away.
            sys.setswitchinterval(1000)
            try:
                for name, use in (("load", lambda: engine.load(LIGHTHOUSE)),
                                  ("draw", lambda: view.draw(model)), ("read", view.color),
                                  ("layers", view.depth)):
                    with self.subTest(name):
                        self.assertTrue(self._counts_during(use, count))
            finally:
                is_over.set()
                sys.setswitchinterval(interval)
                thread.join()

    @staticmethod
    def _counts_during(use, count):
        for _ in range(1000):
            before = count[0]
            use()
            if count[0] > before:
                return True
        return False

    @unittest.skipUnless(hasattr(os, "fork"), "there is no fork")
    def test_a_process_that_was_forked_off_is_refused_and_its_parent_draws_on(self):
        ended = run_python(f"""
            import os, sys, orvex
            def sentence(function, *arguments):
                try:
                    function(*arguments)
                except orvex.ForkError as error:
                    return str(error)
            engine = orvex.Engine()
            view, model = engine.view(8, 8), engine.load({LIGHTHOUSE!r})
            view.draw(model)
            before = view.color().tolist()
            child = os.fork()
            if child == 0:
                tried = [sentence(view.draw, model), sentence(view.color), sentence(orvex.Engine),
                         sentence(orvex.render, {LIGHTHOUSE!r})]
                del view, model
                os._exit(0 if all(tried) else 1)
            print(os.waitpid(child, 0)[1])
            view.draw(model)
            print(view.color().tolist() == before)
            """)
        self.assertEqual((ended.stdout, ended.stderr), ("0\nTrue\n", ""))

    @unittest.skipUnless(hasattr(os, "fork"), "there is no fork")
    def test_drivers_do_not_survive_a_fork_so_that_it_is_refused_when_all_is_closed_too(self):
        ended = run_python(f"""
            import os, orvex
            def child_of(use):
                child = os.fork()
                if child == 0:
                    try:
                        use()
                        os._exit(0)
                    except orvex.ForkError as error:
                        os._exit(3 if "forked off after" in str(error) else 4)
                    finally:
                        os._exit(5)
                return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
            def draw():
                orvex.render({LIGHTHOUSE!r}, size=(8, 8))
            def make_view():
                with orvex.Engine() as engine:
                    engine.view(8, 8)
            draw()
            orvex.stop()
            print(child_of(draw), child_of(make_view))
            draw()
            """)
        self.assertEqual((ended.stdout, ended.stderr), ("3 3\n", ""))


    @unittest.skipUnless(hasattr(os, "fork"), "there is no fork")
    def test_devices_are_listed_by_a_process_of_its_own_or_before_no_fork(self):
        ended = run_python(f"""
            import os, orvex
            def child_of(use):
                child = os.fork()
                if child == 0:
                    try:
                        os._exit(7 if use() else 1)
                    except orvex.ForkError as error:
                        os._exit(3 if "forked off after" in str(error) else 4)
                    finally:
                        os._exit(5)
                return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
            print(child_of(orvex.devices))
            assert orvex.devices()
            print(child_of(orvex.devices), child_of(orvex.Engine))
            print(child_of(lambda: orvex.render({LIGHTHOUSE!r}, size=(8, 8))))
            print(orvex.render({LIGHTHOUSE!r}, size=(8, 8), device="software").shape)
            """)
        self.assertEqual((ended.stdout, ended.stderr), ("7\n3 3\n3\n(8, 8, 4)\n", ""))


class DriverTest(unittest.TestCase):
    """Where no driver is found, as in a container that has none."""

    def test_pictures_say_what_would_help_and_all_else_goes_on(self):
        ended = run_python("""
            import orvex, sys
            def sentence(function, *arguments, **named):
                try:
                    function(*arguments, **named)
                except orvex.DriverError as error:
                    return str(error)
            print(orvex.devices())
            print(sentence(orvex.render, sys.argv[1]))
            with orvex.Engine() as engine:
                model = engine.load(sys.argv[1])
                print({sentence(engine.view, 8, 8, path=path) for path in ("gl3", "gl2")})
                print(sentence(model.turntable), model._repr_png_(), model.face_count > 100)
            """, LIGHTHOUSE, __EGL_VENDOR_LIBRARY_FILENAMES="/none",
                           __EGL_VENDOR_LIBRARY_DIRS="/none")
        helps = "no EGL driver is found: install libgl1-mesa-dri"
        self.assertEqual((ended.stdout, ended.stderr),
                         (f"[]\n{helps}\n{{{helps!r}}}\n{helps} None True\n", ""))


def make_it_log(engine):
    """Asks for a device that isn't there, of which the log tells."""
    try:
        engine.view(8, 8, device="none")
    except orvex.DriverError:
        pass


class LogTest(FolderTest):
    """`on_log`, and Ctrl-C."""

    def test_the_log_is_heard(self):
        lines = []
        with orvex.Engine(on_log=lines.append, log_file=self.folder / "a.log") as engine:
            make_it_log(engine)
        self.assertTrue(lines and all(isinstance(line, str) for line in lines))
        self.assertFalse(any("\n" in line for line in lines))
        written = (self.folder / "a.log").read_text()
        self.assertIn(lines[0], written)

    def test_what_the_listener_throws_is_reported_and_dropped(self):
        def listener(line):
            raise ValueError(line)

        reports = []
        with unittest.mock.patch("sys.unraisablehook", reports.append):
            with orvex.Engine(on_log=listener) as engine:
                make_it_log(engine)
        self.assertTrue(reports)
        self.assertIs(reports[0].exc_type, ValueError)
        self.assertEqual(traceback.extract_tb(reports[0].exc_traceback)[-1].name, "listener")

    def test_a_listener_that_calls_back_is_refused(self):
        caught, engines = [], []

        def listener(_line):
            try:
                for engine in engines:
                    engine.formats
            except orvex.Error as error:
                caught.append(error)

        with orvex.Engine(on_log=listener) as engine:
            engines.append(engine)
            make_it_log(engine)
            self.assertIn("OBJ", engine.formats)
        self.assertTrue(caught)
        self.assertIsInstance(caught[0], orvex.CallbackError)

    def test_ctrl_c_in_the_listener_reaches_the_caller(self):
        presses = []

        def listener(_line):
            if presses:
                raise presses.pop()

        with orvex.Engine(on_log=listener) as engine:
            presses.append(KeyboardInterrupt())
            with self.assertRaises(KeyboardInterrupt):
                make_it_log(engine)
            self.assertIn("OBJ", engine.formats)

    def test_ctrl_c_ends_the_wait_for_a_picture_and_the_next_is_drawn(self):
        go_on = threading.Event()

        def work():
            signal.pthread_kill(threading.main_thread().ident, signal.SIGINT)
            go_on.wait()

        # Whoever has started this may have had it ignore the signal.
        before = signal.signal(signal.SIGINT, signal.default_int_handler)
        self.addCleanup(signal.signal, signal.SIGINT, before)
        with self.assertRaises(KeyboardInterrupt):
            _render._studio.run(work)
        go_on.set()
        self.assertEqual(orvex.render(LIGHTHOUSE, size=(8, 8)).shape, (8, 8, 4))

    def test_ctrl_c_in_the_middle_of_loading_and_drawing_leaves_all_of_use(self):
        # Whoever has started this may have had it ignore the signal.
        before = signal.signal(signal.SIGINT, signal.default_int_handler)
        self.addCleanup(signal.signal, signal.SIGINT, before)
        main, is_working = threading.main_thread().ident, threading.Event()

        def press():
            is_working.wait()
            signal.pthread_kill(main, signal.SIGINT)

        path = self.file("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        with orvex.Engine() as engine, engine.view(8, 8) as view:
            model = engine.load(path)
            view.draw(model)
            picture = view.color()
            for _ in range(8):
                is_working.clear()
                thread = threading.Thread(target=press)
                thread.start()
                with self.assertRaises(KeyboardInterrupt):
                    while True:
                        is_working.set()
                        with engine.load(path) as again, engine.view(4, 4) as other:
                            other.draw([again, model])
                            other.color()
                thread.join()
                view.draw(model)
                numpy.testing.assert_array_equal(view.color(), picture)

    def test_plugins_are_told_with_their_reasons(self):
        bad = self.file("bad.so", "no library")
        with orvex.Engine(plugins=[bad], find_plugins=False) as engine:
            (plugin,) = engine.plugins
            self.assertEqual((plugin.path, plugin.name), (bad, ""))
            self.assertTrue(plugin.reason)
            self.assertIn("OBJ", engine.formats)

    def test_devices_and_looks_are_told_without_an_engine(self):
        self.assertTrue(any(device.software or device.driver for device in orvex.devices()))
        self.assertIn("matcap", orvex.looks())


if __name__ == "__main__":
    unittest.main()
