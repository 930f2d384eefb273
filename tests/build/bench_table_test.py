"""The table that scripts/bench.py makes of what benchmarks say, and how it ends.

usage: bench_table_test.py <source root>
"""
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(sys.argv.pop(1))
SCRIPT = ROOT / "scripts/bench.py"


def row(name, ratio, goal, unit="seconds", **more):
    cost = 0.004 if unit == "seconds" else 4096.0
    return {"name": name, "label": "a peer", f"ours_{unit}": cost * ratio, f"peer_{unit}": cost, "ratio": ratio,
            "goal": goal, **more}


# A program as Google Benchmark makes them: it writes what it was made with.
PROGRAM = """#!{python}
import json, os, sys
options = dict(word[2:].split("=", 1) for word in sys.argv[1:])
{body}
with open(options["benchmark_out"], "w") as file:
    json.dump({{"benchmarks": json.loads({benchmarks!r})}}, file)
"""


class BenchTable(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.programs, self.sources, self.out = (Path(self.folder.name) / name for name in ("built", "bench", "out"))
        self.programs.mkdir()
        self.sources.mkdir()

    def add(self, name, *benchmarks, body=""):
        path = self.programs / name
        path.write_text(PROGRAM.format(python=sys.executable, body=body, benchmarks=json.dumps(benchmarks)))
        path.chmod(0o755)

    def run_script(self, *options):
        return subprocess.run([sys.executable, str(SCRIPT), f"--programs={self.programs}", f"--sources={self.sources}",
                               f"--out={self.out}", *options], capture_output=True, text=True)

    def rows(self):
        return json.loads((self.out / "table.json").read_text())["rows"]

    def test_rows_that_reach_their_goal_are_told_and_end_well(self):
        self.add("quick_bench", row("draw_boxes/manual_time", 0.5, 1.0), row("memory/4", 0.25, 1.0, "bytes"),
                 {"name": "without_a_row", "label": "", "real_time": 1.0})
        done = self.run_script()
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        table = (self.out / "table.md").read_text().splitlines()
        self.assertEqual(table[2:], [
            "| quick_bench | draw boxes | 2.00 ms | a peer | 4.00 ms | 0.50 | 1.00 | reached |",
            "| quick_bench | memory/4 | 1.00 KiB | a peer | 4.00 KiB | 0.25 | 1.00 | reached |"])
        self.assertIn("[1/1] quick_bench", done.stdout)
        self.assertEqual([found["ratio"] for found in self.rows()], [0.5, 0.25])

    def test_small_ratios_are_told_by_two_digits_that_count(self):
        self.add("quick_bench", row("pick", 0.00263, 0.005))
        self.assertEqual(self.run_script().returncode, 0)
        self.assertIn("| 0.0026 | 0.005 | reached |", (self.out / "table.md").read_text())

    def test_a_row_more_than_a_tenth_behind_ends_it_with_1(self):
        self.add("slow_bench", row("near", 1.09, 1.0), row("far", 1.11, 1.0))
        done = self.run_script()
        self.assertEqual(done.returncode, 1)
        self.assertEqual([(found["is_reached"], found["is_behind"]) for found in self.rows()],
                         [(False, False), (False, True)])
        self.assertIn("| within a tenth |\n", done.stdout)
        self.assertIn("| behind |\n", done.stdout)

    def test_a_row_within_a_tenth_of_its_goal_ends_well(self):
        self.add("near_bench", row("near", 1.09, 1.0))
        self.assertEqual(self.run_script().returncode, 0)

    def test_a_ratio_that_is_no_number_is_behind(self):
        self.add("odd_bench", row("odd", 1.0, float("nan")))
        self.assertEqual(self.run_script().returncode, 1)

    def test_a_program_that_fails_is_named_and_others_still_run(self):
        self.add("a_bench", body="print('no context'); sys.exit(3)")
        self.add("b_bench", row("fine", 0.5, 1.0))
        done = self.run_script()
        self.assertEqual(done.returncode, 1)
        self.assertIn(f"! a_bench ended with 3, see {self.out}/a_bench-1.txt", done.stdout)
        self.assertEqual((self.out / "a_bench-1.txt").read_text(), "no context\n")
        self.assertEqual([found["name"] for found in self.rows()], ["fine"])

    def test_a_program_that_writes_no_record_is_named(self):
        self.add("mute_bench", body="sys.exit(0)")
        done = self.run_script()
        self.assertEqual(done.returncode, 1)
        self.assertIn("! mute_bench wrote no record", done.stdout)

    def test_a_benchmark_that_says_an_error_is_named_and_has_no_row(self):
        self.add("wrong_bench", row("fine", 0.5, 1.0),
                 row("hits", 0.5, 1.0, error_occurred=True, error_message="the hits differ"))
        done = self.run_script()
        self.assertEqual(done.returncode, 1)
        self.assertIn("! wrong_bench: hits: the hits differ", done.stdout)
        self.assertEqual([found["name"] for found in self.rows()], ["fine"])

    def test_lines_of_runs_set_the_environment_and_arguments(self):
        (self.sources / "runs.txt").write_text("# why\nNAME=value twice_bench --of=one\ntwice_bench --of=two\n"
                                               "gone_bench --of=three\n")
        self.add("twice_bench", row("fine", 0.5, 1.0), body="print(options['of'], os.environ.get('NAME'))")
        self.assertEqual(self.run_script().returncode, 0)
        self.assertEqual([(self.out / f"twice_bench-{number}.txt").read_text() for number in (1, 2)],
                         ["one value\n", "two None\n"])
        self.assertEqual(len(self.rows()), 2)

    def test_only_names_the_programs_that_run(self):
        self.add("log_bench", row("lines", 0.5, 1.0))
        self.add("ray_bench", row("rays", 0.5, 1.0))
        self.assertEqual(self.run_script("--only", "ray").returncode, 0)
        self.assertEqual([found["program"] for found in self.rows()], ["ray_bench"])

    def test_seconds_go_to_the_benchmarks(self):
        self.add("log_bench", row("lines", 0.5, 1.0), body="print(options['benchmark_min_time'])")
        self.run_script("--seconds", "0.25")
        self.assertEqual((self.out / "log_bench-1.txt").read_text(), "0.25\n")

    def test_no_row_at_all_ends_it_with_1(self):
        self.assertEqual(self.run_script().returncode, 1)

    def test_a_script_says_its_rows_in_the_same_way(self):
        (self.sources / "start_bench.py").write_text(
            "import argparse, sys\n"
            f"sys.path.append({str(ROOT / 'bench/support')!r})\n"
            "from rows import Rows\n"
            "parser = argparse.ArgumentParser()\n"
            "rows = Rows(parser)\n"
            "options = parser.parse_args()\n"
            "rows.say('start', 'the interpreter alone', 0.03, 0.02, goal=2)\n"
            "rows.say('peak', 'the interpreter alone', 3.0, 2.0, goal=2, unit='bytes')\n"
            "rows.write(options)\n")
        self.assertEqual(self.run_script().returncode, 0)
        self.assertEqual([(found["name"], found["unit"], found["ratio"]) for found in self.rows()],
                         [("start", "seconds", 1.5), ("peak", "bytes", 1.5)])


if __name__ == "__main__":
    os.environ["PYTHONDONTWRITEBYTECODE"] = "1"
    unittest.main()
