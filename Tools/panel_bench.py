"""The part of ./kestrel bench that opens the editor's window: frames, start and idling of the panel."""

import ctypes
import os
import shutil
import subprocess
import tempfile
import time

import bench_cases
import steps
from xvfb import Xvfb

WIDTH, HEIGHT = 1280, 800
START_RUNS = 5
TABLES_AND_STRIKETHROUGH = 0x300  # of md4c
SETTLING_SECONDS = 3
IDLE_SECONDS = 10
LONGEST_RUN_SECONDS = 300


class Figure:
    """A value of a run's report, and the limit below which it has to be; None for one that is only told."""

    def __init__(self, name, what, unit="ms", aim=None):
        self.name = name
        self.what = what
        self.unit = unit
        self.aim = aim

    def show(self, value):
        """Whether the aim is met."""
        aim = "" if self.aim is None else f" (aim: below {self.aim:g})"
        print(f"  {self.what}: {value:.3g} {self.unit}{aim}")
        return self.aim is None or value < self.aim


def frames(name, what, aim=None):
    return [Figure(name + "Median", f"{what}, median frame", aim=aim),
            Figure(name + "Longest1Percent", f"{what}, 99th percentile")]


BENCHES = {
    "Conversation": [
        Figure("AddMilliseconds", "adding a block and drawing it"),
        Figure("AddRatio", "the same, to adding one to an empty panel", "times", 2.0),
        *frames("Typing", "typing"), *frames("Scrolling", "scrolling", 4.0),
        *frames("Jumping", "jumping to what was never shown"), *frames("Still", "nothing changes")],
    "LargeBlock": [
        Figure("AddMilliseconds", "adding and drawing it"), *frames("Scrolling", "scrolling", 8.0),
        *frames("Jumping", "jumping"), *frames("Typing", "typing in the prompt", 8.0)],
    "LargeAnswer": [
        Figure("ReadMilliseconds", "reading its Markdown"), Figure("AddMilliseconds", "reading, adding and drawing it", aim=100.0),
        Figure("ReadRatio", "reading, to md4c making HTML of it", "times", 10.0)],
    "Restoring": [Figure("RestoringMilliseconds", "reading, adding and drawing them again", aim=150.0)],
    "UndoButtons": [
        Figure("AskNanoseconds", "asking whether there is something to undo or redo", "ns", 1000.0),
        Figure("AskRatio", "the same, to asking with one conversation", "times", 3.0)],
}
TITLES = {"Conversation": "5,000 blocks, 1,000 of them diffs", "LargeBlock": "A block of 1,000,000 characters",
          "LargeAnswer": "An answer of 1,000,000 characters", "Restoring": "A conversation of 1,000 messages",
          "UndoButtons": "Changes of 10,000 conversations and as many transactions"}


# Projects so large that the work in them takes many frames.
NUM_FOLDERS, FILES_PER_FOLDER = 50_000, 20
NUM_SOURCES, BYTES_PER_SOURCE = 200_000, 10_000
MEGABYTES_OF_EDITED = (1, 2, 4, 7, 200)
LONGEST_FRAME = 100.0


def make_many_files(project):
    for number in range(NUM_FOLDERS):
        folder = os.path.join(project, "Content", f"Area{number % 100}", f"Level{number // 100}")
        os.makedirs(folder)
        for index in range(FILES_PER_FOLDER):
            os.mknod(os.path.join(folder, f"AssetNumber{index:02}OfRoom{number}.json"))


def make_many_sources(project):
    case = bench_cases.FindReference()
    case.make(project, NUM_SOURCES / case.num_files)


def make_large_files(project):
    line = "\tfloat HealthPoints = 100.0f; // as agreed\n"
    for megabytes in MEGABYTES_OF_EDITED:
        with open(os.path.join(project, f"{megabytes}.txt"), "w", encoding="utf-8") as file:
            file.write(line * (megabytes * 1_000_000 // len(line)))


WORKS = {
    "Listing": (f"The first request in a project of {NUM_FOLDERS * FILES_PER_FOLDER:,} files", make_many_files),
    "Search": (f"A search in {NUM_SOURCES:,} sources of {NUM_SOURCES * BYTES_PER_SOURCE / 1e9:g} GB", make_many_sources),
    "Planning": (f"Edits planned in files of {', '.join(map(str, MEGABYTES_OF_EDITED))} MB", make_large_files),
}


class PanelBench:
    def __init__(self, preset, folder, display):
        self.preset = preset
        self.folder = folder
        self.environment = dict(os.environ, DISPLAY=display)
        self.project = os.path.join(folder, "Bench.uproject")
        with open(self.project, "w", encoding="utf-8") as file:
            file.write('{ "FileVersion": 3, "EngineAssociation": "5.4" }\n')

    def command(self, *arguments):
        return [steps.binary(self.preset, "HostEditor"), self.project,
                f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}", "-Window", f"-ResX={WIDTH}",
                f"-ResY={HEIGHT}", *arguments]

    def run(self, name):
        """The figures of a bench of the plugin."""
        report = os.path.join(self.folder, "report.txt")
        subprocess.run(self.command(f"-ExecCmds=Automation RunTests KestrelPanelBench.{name};Quit", "-Unattended",
                                    f"-KestrelPanelBench={report}"), env=self.environment, check=True,
                       timeout=LONGEST_RUN_SECONDS, stdout=subprocess.DEVNULL)
        with open(report, encoding="utf-8-sig") as file:
            return {name: float(value) for name, value in (line.split() for line in file)}

    def measure_frames(self):
        good = True
        for name, figures in BENCHES.items():
            values = self.run(name)
            if name == "LargeAnswer":
                values["ReadRatio"] = values["ReadMilliseconds"] / self.milliseconds_of_md4c()
            print(f"{TITLES[name]}:")
            for figure in figures:
                good &= figure.show(values[figure.name])
        return good

    def milliseconds_of_md4c(self):
        """The median time that md4c takes to make HTML of the answer that was just measured."""
        with open(os.path.join(self.folder, "report.txt.md"), "rb") as file:
            answer = file.read()
        library = ctypes.CDLL("libmd4c-html.so.0")
        buffered = ctypes.CDLL(None).abs  # does nothing, and costs no call into Python for each piece
        times = []
        for _ in range(5):
            started = time.perf_counter()
            library.md_html(answer, len(answer), buffered, None, TABLES_AND_STRIKETHROUGH, 0)
            times.append(1000 * (time.perf_counter() - started))
        return sorted(times)[len(times) // 2]

    def measure_works(self):
        """Frames while something takes long."""
        good = True
        for name, (title, make) in WORKS.items():
            project = os.path.join(self.folder, name)
            os.makedirs(project)
            make(project)
            values = PanelBench(self.preset, project, self.environment["DISPLAY"]).run(name)
            shutil.rmtree(project)
            print(f"{title}:")
            for figure in [*frames(name, "the editor"), Figure(name + "Longest", "the longest frame", aim=LONGEST_FRAME),
                           Figure(name + "Milliseconds", "all of it")]:
                good &= figure.show(values[figure.name])
        return good

    def measure_start(self):
        """From the start of the process to the panel on the screen; the first run warms the caches."""
        seconds = []
        for _ in range(START_RUNS):
            started = time.time()
            seconds.append(self.run("Start")["PaintedAt"] - started)
        return Figure("", "Start of the editor to the painted panel, median", "s", 1.0).show(sorted(seconds)[len(seconds) // 2])

    def measure_idling(self):
        """The share of a processor that a window with an open panel takes while nothing happens."""
        # The run before has left the panel open.
        with subprocess.Popen(self.command(), env=self.environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL) as editor:
            time.sleep(SETTLING_SECONDS)
            before = processor_seconds(editor.pid)
            time.sleep(IDLE_SECONDS)
            share = (processor_seconds(editor.pid) - before) / IDLE_SECONDS
            editor.terminate()
        return Figure("", f"An idle window over {IDLE_SECONDS} s", "% of a processor", 1.0).show(100 * share)


def processor_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        # What stands in front of the bracket may hold spaces.
        fields = file.read().rpartition(")")[2].split()
    user, system = fields[11:13]
    return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")


def measure(preset):
    with tempfile.TemporaryDirectory(prefix="kestrel-bench-") as folder, Xvfb(WIDTH, HEIGHT) as screen:
        bench = PanelBench(preset, folder, screen.display)
        return all([bench.measure_start(), bench.measure_idling(), bench.measure_frames(), bench.measure_works()])
