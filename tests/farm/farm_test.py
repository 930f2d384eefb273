"""Recipes of the farm: each draws what one batch draws, byte by byte, whoever stops in the middle.

usage: farm_test.py celery|dask|make|parallel|slurm|templates, with the tool as ORVEX_RENDER
"""

import json
import os
import pathlib
import pwd
import re
import signal
import socket
import stat
import subprocess
import sys
import tempfile
import time
import unittest

import processes

FARM = pathlib.Path(__file__).resolve().parent.parent.parent / "farm"
TOOL = os.environ["ORVEX_RENDER"]
MEASURED = ("seconds", "peak_bytes", "tries")
MOST_LINES = 40
PATIENCE = 120


def wait_until(condition, what, log=None):
    """Waits for a condition, and tells its value."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.02)
    told = log.read_text(errors="replace") if log and log.exists() else ""
    raise AssertionError(f"{what}: waited for in vain\n{told}")


def free_port():
    """A port that nobody listens at."""
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


class FarmTest(unittest.TestCase):
    """A folder with models and a manifest, and what one batch makes of it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="farm-")
        self.addCleanup(folder.cleanup)
        self.addCleanup(processes.end_all)
        self.folder = pathlib.Path(folder.name)
        self.log = self.folder / "log"
        self.write_models(24)
        self.batch = self.folder / "batch"
        self.batch.mkdir()
        self.run_to_end(TOOL, "--batch", self.manifest, "--quiet", "--output-dir", self.batch / "pictures",
                        "--results", self.batch / "results.jsonl", code=3)
        self.environment = {}

    def write_models(self, count):
        """Small models, of which one is no good."""
        self.manifest = self.folder / "models.jsonl"
        with open(self.manifest, "w", encoding="utf-8") as manifest:
            for number in range(count):
                model = self.folder / f"{number}.obj"
                model.write_text("nothing of a model\n" if number == 5 else
                                 f"v 0 0 0\nv {number + 1} 0 0\nv 0 9 {number / 3:.3f}\nf 1 2 3\n", encoding="utf-8")
                entry = {"model": str(model), "id": f"m{number}", "azimuth": 7 * number, "size": "40x30"}
                manifest.write(json.dumps(entry) + "\n")

    def run_to_end(self, *command, code=0, **environment):
        """Runs a program; its output goes to the log."""
        process = processes.start(command, self.log, cwd=self.folder, env={**os.environ, **environment})
        try:
            ended = process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            ended = "no end"
        self.assertEqual(ended, code, f"{command[0]}:\n{self.log.read_text(errors='replace')[-3000:]}")

    def serve(self, *command, **environment):
        """Starts a program that stays until the test ends."""
        return processes.start(command, self.log, cwd=self.folder, env={**os.environ, **environment})

    def stumbling_tool(self, shard, manner):
        """A tool that stops in the middle of a shard, once."""
        tool = self.folder / "tool"
        stumble = pathlib.Path(__file__).with_name("stumble.py")
        tool.write_text(f'#!/bin/sh\nexec "{sys.executable}" "{stumble}" "{self.folder}" {shard} {manner} "{TOOL}" "$@"\n',
                        encoding="utf-8")
        tool.chmod(stat.S_IRWXU)
        return str(tool)

    def caller(self):
        """The process that has called the tool which stopped."""
        file = self.folder / "caller"
        return int(wait_until(lambda: file.exists() and file.read_text(encoding="utf-8"), "a stop", self.log))

    def verdicts(self, file):
        """Each verdict by its id, without what is measured."""
        found = {}
        for line in file.read_text(encoding="utf-8").splitlines():
            verdict = {name: value for name, value in json.loads(line).items() if name not in MEASURED}
            self.assertNotIn(verdict["id"], found)
            found[verdict["id"]] = verdict
        return found

    def assert_whole(self, folder, results=None):
        """Pictures and verdicts are those of one batch."""
        pictures = {file.name: file.read_bytes() for file in (folder / "pictures").iterdir()}
        expected = {file.name: file.read_bytes() for file in (self.batch / "pictures").iterdir()}
        self.assertEqual(pictures.keys(), expected.keys())
        self.assertEqual([name for name, content in pictures.items() if content != expected[name]], [])
        verdicts = self.verdicts(results or folder / "results.jsonl")
        expected = self.verdicts(self.batch / "results.jsonl")
        self.assertEqual(len(expected), 24)
        self.assertEqual(verdicts.keys(), expected.keys())
        for name, verdict in verdicts.items():
            self.assertLessEqual({"id", "model", "verdict", "reason", "outputs", "key", "driver"}, verdict.keys())
            self.assertEqual(json.loads(json.dumps(verdict)), {key: expected[name][key] for key in verdict})

    # The recipes.

    def check_make(self):
        """make is stopped in the middle of a shard."""
        out = self.folder / "out"
        command = ["make", "-f", FARM / "Makefile", "-j2", f"MANIFEST={self.manifest}", f"FOLDER={out}", "SHARDS=3"]
        # In a group of its own, which a terminal's Ctrl-C goes to as a whole.
        make = self.serve("setsid", *command, ORVEX_RENDER=self.stumbling_tool("2/3", "wait"))
        self.caller()
        os.killpg(make.pid, signal.SIGINT)
        self.assertNotEqual(make.wait(PATIENCE), 0)
        self.assertNotEqual(self.verdicts(out / "results-2.jsonl"), {})
        self.assertFalse((out / "results.jsonl").exists())
        for _ in range(2):  # the second time there is nothing to be done
            self.run_to_end(*command)
            self.assert_whole(out)

    def check_parallel(self):
        """A shard fails on its machine, which is reached by ssh."""
        out = self.folder / "out"
        tool = self.stumbling_tool("2/3", "fail")
        command = [FARM / "parallel.sh", self.manifest, out, "3", "here"]
        environment = {"PARALLEL_SSH": f"ssh -F {self.ssh_to_here()}", "PARALLEL_HOME": str(self.folder),
                       "ORVEX_RENDER": tool}
        (self.folder / "will-cite").touch()
        self.run_to_end(*command, **environment)
        self.assert_whole(out)
        jobs = (out / "jobs.log").read_text(encoding="utf-8")
        self.assertEqual({line.split("\t")[1] for line in jobs.splitlines()[1:]}, {"here"})
        # The second time there is nothing to be done.
        self.run_to_end(*command, **environment)
        self.assertEqual((out / "jobs.log").read_text(encoding="utf-8"), jobs)
        self.assert_whole(out)

    def ssh_to_here(self):
        """A file for ssh, by which the machine "here" is this one, through a server for each call."""
        if os.getuid() == 0:
            os.makedirs("/run/sshd", 0o755, exist_ok=True)  # as its service does, which didn't start here
        for name in ("host", "own"):
            self.run_to_end("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.folder / name)
        own = (self.folder / "own.pub").read_text(encoding="utf-8")
        host = (self.folder / "host.pub").read_text(encoding="utf-8")
        (self.folder / "known").write_text(f"here {host}", encoding="utf-8")
        (self.folder / "authorized").write_text(own, encoding="utf-8")
        server = self.folder / "sshd_config"
        server.write_text(f"HostKey {self.folder}/host\nAuthorizedKeysFile {self.folder}/authorized\n"
                          "StrictModes no\nUsePAM no\nPasswordAuthentication no\nPermitRootLogin yes\n", encoding="utf-8")
        client = self.folder / "ssh_config"
        client.write_text(f"Host here\n  ProxyCommand /usr/sbin/sshd -i -f {server}\n"
                          f"  IdentityFile {self.folder}/own\n  IdentitiesOnly yes\n  IdentityAgent none\n"
                          f"  UserKnownHostsFile {self.folder}/known\n  GlobalKnownHostsFile none\n"
                          "  StrictHostKeyChecking yes\n  BatchMode yes\n", encoding="utf-8")
        return client

    def check_slurm(self):
        """A job of the array fails, and is sent again."""
        environment = {**os.environ, "SLURM_CONF": str(self.slurm_cluster()),
                       "ORVEX_RENDER": self.stumbling_tool("2/3", "fail")}
        out = self.folder / "out"
        self.assertEqual(self.run_array("1-3", out, environment), {"1": "COMPLETED", "2": "FAILED", "3": "COMPLETED"})
        self.assertNotEqual(self.verdicts(out / "results-2.jsonl"), {})
        self.assertEqual(self.run_array("2", out, environment), {"2": "COMPLETED"})
        with open(out / "results.jsonl", "wb") as results:
            for number in range(1, 4):
                results.write((out / f"results-{number}.jsonl").read_bytes())
        self.assert_whole(out)

    def run_array(self, numbers, out, environment):
        """Sends an array of jobs and waits for its end. Tells the state of each job by its number."""
        def told(*command):
            return subprocess.run([str(word) for word in command], check=True, text=True, timeout=PATIENCE,
                                  stdout=subprocess.PIPE, cwd=self.folder, env=environment).stdout

        array = told("sbatch", "--parsable", f"--output={self.log}", f"--array={numbers}", FARM / "slurm.sh",
                     self.manifest, out, "3").strip()
        wait_until(lambda: not told("squeue", "-h", "-o", "%i").split(), "an array that is done", self.log)
        states = re.findall(r"ArrayTaskId=(\d+) .*?JobState=(\w+)", told("scontrol", "-o", "show", "job", array))
        return dict(states)

    def slurm_cluster(self):
        """Starts a cluster of this machine alone. Tells the file that its programs know it by."""
        home = self.folder / "slurm"
        home.mkdir(mode=0o700)
        key = home / "munge.key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o600)
        # By force: other users, who have no way to its socket, want none.
        self.serve("munged", "--foreground", "--force", f"--key-file={key}", f"--socket={home}/munge.socket",
                   f"--pid-file={home}/munged.pid", f"--log-file={home}/munged.log", f"--seed-file={home}/munged.seed")
        wait_until((home / "munge.socket").exists, "munged", self.log)
        name = socket.gethostname().partition(".")[0]
        user = pwd.getpwuid(os.getuid()).pw_name
        settings = home / "slurm.conf"
        settings.write_text(f"""
            ClusterName=farm
            SlurmctldHost={name}(127.0.0.1)
            SlurmctldPort={free_port()}
            SlurmdPort={free_port()}
            SlurmUser={user}
            SlurmdUser={user}
            AuthType=auth/munge
            CredType=cred/munge
            AuthInfo=socket={home}/munge.socket
            StateSaveLocation={home}/state
            SlurmdSpoolDir={home}/spool
            SlurmctldPidFile={home}/slurmctld.pid
            SlurmdPidFile={home}/slurmd.pid
            ProctrackType=proctrack/linuxproc
            TaskPlugin=task/none
            JobAcctGatherType=jobacct_gather/none
            SelectType=select/cons_tres
            SelectTypeParameters=CR_Core
            MpiDefault=none
            SwitchType=switch/none
            MailProg=/bin/true
            SlurmdParameters=config_overrides
            NodeName={name} NodeAddr=127.0.0.1 CPUs=2
            PartitionName=all Nodes={name} Default=YES
            """, encoding="utf-8")
        for program in ("slurmctld", "slurmd"):
            self.serve(program, "-D", "-f", settings, SLURM_CONF=str(settings))
        wait_until(lambda: subprocess.run(["sinfo", "-h", "-t", "idle", "-o", "%D"], capture_output=True, check=False,
                                          env={**os.environ, "SLURM_CONF": str(settings)}).stdout.strip() == b"1",
                   "a node that is idle", self.log)
        return settings

    def check_dask(self):
        """A worker is killed when it has drawn a part of what it has in hand."""
        from distributed import LocalCluster  # pylint: disable=import-outside-toplevel
        out = self.folder / "out"
        with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None,
                          local_directory=str(self.folder)) as cluster:
            command = [sys.executable, FARM / "dask_batch.py", self.manifest, out, cluster.scheduler_address]
            dask = self.serve(*command, ORVEX_RENDER=self.stumbling_tool("-", "wait"))
            worker = self.caller()
            self.assertIn(worker, processes.descendants(os.getpid()))
            os.kill(worker, signal.SIGKILL)
            self.assertEqual(dask.wait(PATIENCE), 0, self.log.read_text(errors="replace")[-3000:])
            self.assert_whole(out)
            # The same command goes on with what has no verdict.
            results = out / "results.jsonl"
            results.write_text("".join(results.read_text(encoding="utf-8").splitlines(keepends=True)[:-3]),
                               encoding="utf-8")
            self.run_to_end(*command, ORVEX_RENDER=TOOL)
        self.assert_whole(out)

    def check_celery(self):
        """The tool of a worker ends in the middle."""
        out = self.folder / "out"
        out.mkdir()
        redis = self.folder / "redis.socket"
        self.serve("redis-server", "--port", "0", "--unixsocket", redis, "--dir", self.folder, "--save", "")
        wait_until(redis.exists, "redis", self.log)
        queue = f"redis+socket://{redis}"
        environment = {"CELERY_BROKER_URL": queue, "CELERY_RESULT_BACKEND": queue}
        self.serve(sys.executable, "-m", "celery", "--workdir", FARM, "-A", "celery_batch", "worker", "--concurrency", "2",
                   ORVEX_OUTPUT=str(out / "pictures"), ORVEX_RENDER=self.stumbling_tool("-", "fail"), **environment)
        self.run_to_end(sys.executable, FARM / "celery_batch.py", self.manifest, self.folder / "results.jsonl",
                        **environment)
        self.assert_whole(out, self.folder / "results.jsonl")
        self.assertTrue((self.folder / "stumbled").exists())

    def check_templates(self):
        """What isn't run here says so, and every recipe is short and tells how it is started."""
        for recipe in FARM.iterdir():
            with self.subTest(recipe.name):
                lines = recipe.read_text(encoding="utf-8").splitlines()
                self.assertLessEqual(len(lines), MOST_LINES)
                is_run = f'FARM / "{recipe.name}"' in pathlib.Path(__file__).read_text(encoding="utf-8")
                self.assertEqual("a template, which no test has run" in " ".join(lines[:2]), not is_run)
                self.assertRegex("\n".join(lines[:8]), f"farm/{recipe.name} |apiVersion")


def main(name):
    """Runs the test of that recipe."""
    # An end by a signal is one in order, too.
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, lambda which, _: sys.exit(128 + which))
    processes.adopt_orphans()
    result = unittest.TextTestRunner(verbosity=2).run(FarmTest(f"check_{name}"))
    return 0 if result.testsRun == 1 and result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
