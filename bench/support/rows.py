"""How a benchmark in Python says rows of the table that scripts/bench.sh makes: the same record that Google
Benchmark writes, to the file of --benchmark_out.

    rows = Rows(parser)                      # adds its options to an argparse.ArgumentParser
    options = parser.parse_args()
    rows.say("start", "the interpreter alone", ours, peer, goal=1.5)
    rows.write(options)
"""

import json


class Rows:
    def __init__(self, parser):
        parser.add_argument("--benchmark_out", metavar="FILE", help="receives the rows, as JSON")
        # What every benchmark is given by scripts/bench.sh, and only those of Google Benchmark have a use for.
        parser.add_argument("--benchmark_out_format", choices=["json"], default="json")
        parser.add_argument("--benchmark_min_time", type=float)
        parser.add_argument("--benchmark_filter")
        self.benchmarks = []

    def say(self, name, peer, ours_cost, peer_cost, goal, unit="seconds"):
        """What the work costs us and a peer, in seconds or "bytes", and the most that ours may be of the peer's."""
        self.benchmarks.append({"name": name, "label": peer, f"ours_{unit}": ours_cost, f"peer_{unit}": peer_cost,
                                "ratio": ours_cost / peer_cost, "goal": goal})

    def write(self, options):
        if options.benchmark_out:
            with open(options.benchmark_out, "w") as file:
                json.dump({"benchmarks": self.benchmarks}, file, indent=1)
