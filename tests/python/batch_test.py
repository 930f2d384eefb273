"""Many models, by a program that speaks as the tool does."""

import itertools
import logging
import os
import pathlib
import stat
import sys
import time
import types
import unittest
import unittest.mock
import warnings

import orvex
from orvex import _batch, dask
from support import FolderTest

with warnings.catch_warnings():
    warnings.simplefilter("ignore")  # of its own modules
    import distributed

FAKE = pathlib.Path(__file__).with_name("fake_batch.py")


def interrupted():
    """Entries whose maker fails after the first."""
    yield "a"
    raise ZeroDivisionError("no more")


class ToolTest(FolderTest):
    """With a program in place of the tool."""

    def setUp(self):
        super().setUp()
        self.program = self.file("tool", f'#!/bin/sh\nexec "{sys.executable}" "{FAKE}" "$@"\n')
        os.chmod(self.program, stat.S_IRWXU)


class BatchTest(ToolTest):
    """`batch`."""

    def batch(self, entries, **options):
        """The batch, by the program in place of the tool."""
        return orvex.batch(entries, program=self.program, **options)

    def test_each_entry_has_its_verdict(self):
        verdicts = list(self.batch(["a", pathlib.Path("b"), {"model": "bad", "id": "c"}],
                                   workers=2, output_dir=self.folder, size=(64, 48)))
        self.assertEqual([(one.id, one.ok) for one in verdicts],
                         [("a", True), ("b", True), ("c", False)])
        self.assertEqual((verdicts[2].verdict, verdicts[2].reason), ("refused", "line 1: bad"))
        self.assertEqual(verdicts[0].outputs[0]["path"], f"{self.folder}/a.png")
        self.assertEqual(verdicts[0].seconds["total"], 0.1)

    def test_no_entry_is_no_verdict(self):
        self.assertEqual(list(self.batch([])), [])

    def test_verdicts_come_while_entries_go(self):
        endless = self.batch(str(number) for number in itertools.count())
        self.assertEqual([one.id for one in itertools.islice(endless, 3)], ["0", "1", "2"])
        endless.close()

    def test_results_are_kept_in_a_file_and_gone_on_with(self):
        results = self.folder / "results.jsonl"
        self.assertEqual([one.id for one in self.batch("ab", results=results)], ["a", "b"])
        more = list(self.batch("c", results=results, resume=True))
        self.assertEqual([one.id for one in more], ["c"])
        self.assertEqual(len(results.read_text().splitlines()), 3)

    def test_who_stops_asking_ends_it(self):
        before = time.monotonic()
        run = self.batch(["a", "slow"])
        self.assertEqual(next(run).id, "a")
        run.close()
        self.assertLess(time.monotonic() - before, 50)

    def test_what_is_wrong_with_all_of_it_is_raised(self):
        for kind, words, entries, options in (
                (orvex.ArgumentError, "^--size: too small$", "a", {"size": (1, 1)}),
                (orvex.Error, "^too small$", "a", {"size": (1, 1), "workers": 7}),
                (TypeError, "entries: one is a int", [3], {}),
                (orvex.ArgumentError, "entries: one has no model", [{"id": "a"}], {}),
                (TypeError, "can't be written", [{"model": "a", "x": object()}], {}),
                (ZeroDivisionError, ".", interrupted(), {})):
            with self.subTest(words):
                with self.assertRaisesRegex(kind, words):
                    list(self.batch(entries, **options))
        with self.assertRaisesRegex(orvex.ArgumentError, "workers is 0"):
            self.batch("a", workers=0)
        with self.assertRaisesRegex(orvex.ArgumentError, "give results"):
            self.batch("a", resume=True)
        with self.assertRaisesRegex(FileNotFoundError, "^/no/tool can't be run"):
            list(orvex.batch("a", program="/no/tool"))

    def test_options_are_told_by_their_long_names(self):
        self.assertEqual(
            _batch.arguments_of({"size": (4, 3), "layers": ("color", "depth"), "quiet": True,
                                 "resume": False, "look": None, "limit_seconds": 1.5}),
            ["--size", "4x3", "--layers", "color,depth", "--quiet", "--limit-seconds", "1.5"])
        self.assertEqual(_batch.line_of({"model": pathlib.Path("a"), "limit_file": 3}),
                         '{"model": "a", "limit-file": 3}')


def part_of_lost_machines(entries, options):
    """Stands for a part: those of "lost" end every machine that takes them."""
    if "lost" in str(entries):
        raise distributed.KilledWorker("part", types.SimpleNamespace(address="tcp://gone"), 3)
    return list(orvex.batch(entries, **dict(options)))


class DaskTest(ToolTest):
    """`dask.batch`, on a cluster within this process."""

    def setUp(self):
        super().setUp()
        quiet = warnings.catch_warnings()
        quiet.__enter__()
        self.addCleanup(quiet.__exit__, None, None, None)
        warnings.simplefilter("ignore")  # of the cluster's own
        self.client = distributed.Client(processes=False, n_workers=1, threads_per_worker=1,
                                         dashboard_address=None,
                                         silence_logs=logging.CRITICAL)
        self.addCleanup(self.client.close)

    def batch(self, entries, **options):
        """The batch, by the program in place of the tool."""
        return dask.batch(self.client, entries, program=self.program, **options)

    def test_each_entry_has_its_verdict_and_nothing_stays_on_the_cluster(self):
        verdicts = list(self.batch(iter(["a", pathlib.Path("b"), {"model": "bad", "id": "c"}]),
                                   length=2, output_dir=self.folder))
        self.assertEqual(sorted((one.id, one.verdict) for one in verdicts),
                         [("a", "ok"), ("b", "ok"), ("c", "refused")])
        self.assertEqual(self.client.futures, {})
        self.assertEqual(list(self.batch([])), [])

    def test_who_stops_asking_takes_back_what_is_not_begun(self):
        run = self.batch("abcdefgh", length=1)
        self.assertTrue(next(run).ok)
        self.assertGreater(len(self.client.futures), 1)
        run.close()
        self.assertEqual(self.client.futures, {})

    def test_a_part_whose_machines_are_lost_costs_no_other(self):
        with unittest.mock.patch.object(dask, "_part", part_of_lost_machines):
            verdicts = list(self.batch(["a", {"model": "lost", "id": "c"}, "lost", "b"], length=1))
        told = {one.id: (one.model, one.verdict) for one in verdicts}
        self.assertEqual(told, {"a": ("a", "ok"), "b": ("b", "ok"), "c": ("lost", "io"),
                                "lost": ("lost", "io")})
        (reason,) = {one.reason for one in verdicts if not one.ok}
        self.assertRegex(reason, "its machines were lost.* tcp://gone$")

    def test_what_can_not_be_meant_is_refused_before_anything_is_drawn(self):
        for kind, words, entries, options in (
                (orvex.ArgumentError, "length is 0", "a", {"length": 0}),
                (orvex.ArgumentError, "retries is -1", "a", {"retries": -1}),
                (orvex.ArgumentError, "results is of one batch", "a", {"results": "a.jsonl"}),
                (orvex.ArgumentError, "resume is of one batch", "a", {"resume": True}),
                (orvex.ArgumentError, "entries: one has no model", ["a", {"id": "b"}], {}),
                (TypeError, "size is a str", "a", {"size": ("a", 1)})):
            with self.subTest(words):
                with self.assertRaisesRegex(kind, words):
                    self.batch(entries, **options)
        with self.assertRaisesRegex(TypeError, "client is a str, not a distributed.Client"):
            dask.batch("tcp://nowhere", "a")
        # What only the tool knows to be wrong comes from there.
        with self.assertRaisesRegex(orvex.ArgumentError, "^--size: too small$"):
            list(self.batch("a", size=(1, 1), retries=0))


if __name__ == "__main__":
    unittest.main()
