"""./kestrel bench: how long the hot paths take, compared with programs that do nearly the same."""

import json
import math
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import bench_growth
import mcp_bench
import panel_bench
import service_bench
import steps
from bench_cases import CASES

PRESET = "release"
PEER_PACKAGES = ["fzf", "libmd4c-html0", "ripgrep"]
LONGEST_RUN_SECONDS = 1800
BUSY_SHARE = 0.25  # of the processors, by others
BUSY_SECONDS = 0.5


class Result:
    """A path's figures: seconds, the ratio to its peer in pairs that ran one after the other, and memory."""

    def __init__(self, case, pairs, outcome, memory):
        self.case = case
        self.outcome = outcome
        self.memory = memory  # bytes above those of an editor with nothing to do; None when it was not asked for
        self.seconds = statistics.median(seconds for seconds, _ in pairs)
        self.peer_seconds = statistics.median(seconds for _, seconds in pairs)
        ratios = sorted(seconds / peer_seconds for seconds, peer_seconds in pairs)
        self.num_pairs = len(pairs)
        self.ratio = statistics.median(ratios)
        # The middle half of the pairs: what one pair in four exceeds says more of the machine than of the program.
        self.low = ratios[len(ratios) // 4]
        self.high = ratios[(3 * len(ratios)) // 4]

    def is_good(self):
        return (self.ratio < self.case.aim and self.seconds < self.case.seconds_aim
                and (self.memory is None or self.memory < self.case.memory_aim))

    def __str__(self):
        text = (f"{self.case.name}: {self.seconds * 1000:.3g} ms ({self.outcome}); {self.case.peer}: "
                f"{self.peer_seconds * 1000:.3g} ms; ratio {self.ratio:.3g} ({self.low:.3g} to {self.high:.3g} in the middle "
                f"half of {self.num_pairs} pairs; aim: below {self.case.aim:g})")
        if not math.isinf(self.case.seconds_aim):
            text += f"; aim: below {self.case.seconds_aim * 1000:g} ms"
        if self.memory is not None:
            text += f"; {self.memory / 1e6:.0f} MB (aim: below {self.case.memory_aim / 1e6:g})"
        return text

    def to_json(self):
        return {"name": self.case.name, "seconds": self.seconds, "peer": self.case.peer, "peer_seconds": self.peer_seconds,
                "ratio": self.ratio, "low": self.low, "high": self.high, "pairs": self.num_pairs,
                "memory_bytes": self.memory, "good": self.is_good()}


class Editor:
    """An editor that runs one bench. It waits for its peer after each run, so that the two take turns."""

    def __init__(self, test, project, size=1.0):
        self.folder = tempfile.mkdtemp(prefix="kestrel-bench-report-")
        self.report = os.path.join(self.folder, "report.txt")
        self.memory_report = os.path.join(self.folder, "memory.txt")
        self.command = [
            sys.executable, os.path.join(steps.ROOT, "Tools", "peak_memory.py"), self.memory_report,
            steps.binary(PRESET, "HostEditor"), os.path.join(project, "Bench.uproject"),
            f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}",
            f"-ExecCmds=Automation RunTests KestrelBench.{test};Quit", "-Unattended", "-UnattendedClock",
            f"-KestrelBench={self.report}", f"-KestrelBenchThousandths={round(size * 1000)}"]

    def run(self, run_peer):
        """Its runs, as (seconds, seconds of the peer in the editor or None, outcome); run_peer(run) comes after each."""
        runs = []
        log = os.path.join(steps.LOG_FOLDER, "bench.log")
        try:
            with open(log, "w", encoding="utf-8") as output, \
                    subprocess.Popen(self.command, stdout=output, stderr=output, stdin=subprocess.DEVNULL) as process:
                deadline = time.monotonic() + LONGEST_RUN_SECONDS
                while process.poll() is None or len(self.lines()) > len(runs):
                    if time.monotonic() > deadline:
                        process.kill()
                        break
                    lines = self.lines()
                    if len(lines) == len(runs):
                        time.sleep(0.001)
                        continue
                    seconds, peer_seconds, outcome = lines[len(runs)].split(maxsplit=2)
                    runs.append((float(seconds), float(peer_seconds) or None, outcome))
                    run_peer(len(runs))
                    with open(f"{self.report}.go{len(runs)}", "w", encoding="ascii"):
                        pass
            if not runs:
                raise steps.StepFailed(f"The editor measured nothing; its output: {log}")
            with open(self.memory_report, encoding="ascii") as file:
                return runs, int(file.read())
        finally:
            shutil.rmtree(self.folder, ignore_errors=True)

    def lines(self):
        """Those of the report that are complete."""
        try:
            with open(self.report, encoding="utf-8") as file:
                return [line for line in file.read().splitlines(keepends=True) if line.endswith("\n")]
        except FileNotFoundError:
            return []


def make_project(case, folder, size=1.0):
    project = os.path.join(folder, "Bench")
    os.makedirs(project)
    with open(os.path.join(project, "Bench.uproject"), "w", encoding="utf-8") as file:
        file.write('{ "FileVersion": 3, "EngineAssociation": "5.4" }\n')
    case.make(project, size)
    return project


def time_peer(case, project, run):
    with tempfile.TemporaryFile() as output:
        started = time.monotonic()
        case.run_peer(project, run, output)
        return time.monotonic() - started


def measure(case):
    """The editor and its peer, in turns: machines change their speed, and what ran just before fares alike."""
    folder = tempfile.mkdtemp(prefix="kestrel-bench-")
    line = steps.ProgressLine(f"Measuring {case.name}")
    try:
        project = make_project(case, folder)
        peers = []

        def run_peer(run):
            if hasattr(case, "run_peer"):
                peers.append(time_peer(case, project, run))

        run_peer(0)
        runs, memory = Editor(case.test, project).run(run_peer)
        base = measure_base_memory(folder) if not math.isinf(case.memory_aim) else None
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    line.finish("done")
    pairs = [(seconds, own_peer or (peers[index] + peers[index + 1]) / 2)
             for index, (seconds, own_peer, _) in enumerate(runs)]
    result = Result(case, pairs, runs[-1][2].strip(), None if base is None else memory - base)
    print(result)
    return result


def measure_base_memory(folder):
    """Of an editor in which nothing is to be done."""
    empty = os.path.join(folder, "Empty")
    os.makedirs(empty)
    with open(os.path.join(empty, "Bench.uproject"), "w", encoding="utf-8") as file:
        file.write('{ "FileVersion": 3, "EngineAssociation": "5.4" }\n')
    return Editor("Nothing", empty).run(lambda _run: None)[1]


def warn_if_busy():
    """Figures of a machine that others use are of little worth."""
    def read():
        with open("/proc/stat", encoding="ascii") as file:
            ticks = [int(word) for word in file.readline().split()[1:]]
        return sum(ticks), ticks[3] + ticks[4]

    all_before, idle_before = read()
    time.sleep(BUSY_SECONDS)
    all_after, idle_after = read()
    busy = 1 - (idle_after - idle_before) / max(1, all_after - all_before)
    if busy > BUSY_SHARE:
        print(f"Other programs take {busy:.0%} of this machine's processors: the figures will be off.", file=sys.stderr)


def compare(results, file_name):
    """What has changed since figures that --json has written. @return whether nothing has become slower"""
    with open(file_name, encoding="utf-8") as file:
        before = {each["name"]: each for each in json.load(file)["paths"]}
    good = True
    for result in results:
        old = before.get(result.case.name)
        if not old:
            continue
        slower, faster = result.low > old["high"], result.high < old["low"]
        verdict = "slower" if slower else "faster" if faster else "the same, as far as the spread tells"
        print(f"{result.case.name}: ratio {old['ratio']:.3g} before, {result.ratio:.3g} now: {verdict}")
        good &= not slower
    return good


# What measures itself, under the names by which it is asked for.
OTHERS = {"Service": service_bench.measure, "Panel": panel_bench.measure, "OtherAssistants": mcp_bench.measure}


def choose(names):
    """The cases with one of these in their names, and the others."""
    def is_chosen(name):
        return not names or any(each.lower() in name.lower() for each in names)

    return [case for case in CASES if is_chosen(case.name)], [OTHERS[name] for name in OTHERS if is_chosen(name)]


def bench(arguments):
    steps.install_packages(steps.PACKAGES + PEER_PACKAGES)
    steps.build(PRESET, ["HostEditor", "Kestrel", "KestrelTests", "ServiceBench"])
    cases, others = choose(arguments.name)
    if not cases and not others:
        raise steps.StepFailed(f"There is nothing to measure with such a name. There are "
                               f"{', '.join([*OTHERS, *(case.name for case in CASES)])}.")
    warn_if_busy()
    if arguments.growth:
        return 0 if bench_growth.measure(cases, Editor, make_project, measure_base_memory) else 1
    good = all([measure_other(PRESET) for measure_other in others])
    results = [measure(case) for case in cases]
    good &= all(result.is_good() for result in results)
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump({"paths": [result.to_json() for result in results]}, file, indent=2)
            file.write("\n")
    if arguments.compare:
        good &= compare(results, arguments.compare)
    return 0 if good else 1
