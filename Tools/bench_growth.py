"""How the hot paths grow: part of ./kestrel bench.

Each is measured at 1, 3, 10, 30 and 100 times a base size. On a logarithmic scale a path that grows in proportion to its
input is a straight line of slope 1; the slope is fitted to the upper three sizes, where what does not grow weighs least.
"""

import math
import os
import shutil
import subprocess
import tempfile

import steps

FACTORS = (1, 3, 10, 30, 100)
NUM_FITTED = 3
DOCUMENT = os.path.join(steps.ROOT, "Docs", "Performance.md")
PLOT = os.path.join(steps.ROOT, "Docs", "Pictures", "growth.svg")
PLOT_PACKAGES = ["gnuplot-nox"]
TINY_SECONDS = 0.001  # shorter ones are measured too coarsely to say how they grow


class Growth:
    def __init__(self, case, seconds, memory):
        self.case = case
        self.seconds = seconds  # for each factor
        self.memory = memory  # bytes, at the largest
        self.exponent = fit_exponent(seconds)

    def is_good(self):
        return self.exponent is None or self.exponent < self.case.growth_aim

    def row(self):
        exponent = "too short to tell" if self.exponent is None else f"{self.exponent:.2f}"
        times = " | ".join(format_seconds(seconds) for seconds in self.seconds)
        return f"| {self.case.name} | {times} | {exponent} | {self.memory / 1e6:.0f} | {self.case.limit} |"


def fit_exponent(seconds):
    """The slope of the least squares through the logarithms of the upper sizes."""
    points = [(math.log(factor), math.log(each)) for factor, each in zip(FACTORS, seconds) if each >= TINY_SECONDS]
    points = points[-NUM_FITTED:]
    if len(points) < NUM_FITTED:
        return None
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / sum((x - mean_x) ** 2 for x, _ in points)


def format_seconds(seconds):
    return f"{seconds:.2f} s" if seconds >= 1 else f"{seconds * 1000:.3g} ms"


def measure(cases, editor, make_project, measure_base_memory):
    """Measures the cases that can grow, and writes the page and its picture. @return whether all grow as they may"""
    steps.install_packages(PLOT_PACKAGES)
    growths = [measure_one(case, editor, make_project, measure_base_memory)
               for case in cases if case.growth_base is not None]
    for growth in growths:
        print(growth.row())
    write_plot(growths)
    write_document(growths)
    return all(growth.is_good() for growth in growths)


def measure_one(case, editor, make_project, measure_base_memory):
    seconds = []
    memory = 0
    for factor in FACTORS:
        size = case.growth_base * factor
        folder = tempfile.mkdtemp(prefix="kestrel-bench-")
        line = steps.ProgressLine(f"Measuring {case.name}, {factor} times its base size")
        try:
            project = make_project(case, folder, size)
            runs, memory = editor(case.test, project, size).run(lambda _run: None)
            seconds.append(min(each for each, _, _ in runs))
            if factor == FACTORS[-1]:
                memory -= measure_base_memory(folder)
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        line.finish("done")
    return Growth(case, seconds, memory)


def write_plot(growths):
    """A line for each path: its time at each size, as a multiple of that at the smallest."""
    script = [f"set terminal svg size 800,500 font 'sans-serif,12' background 'white'", f"set output '{PLOT}'",
              "set logscale xy", "set key left top", "set xlabel 'times the base size'",
              "set ylabel 'times as long as at the base size'", "set grid"]
    plots = ["x title 'in proportion' with lines dashtype 2 linecolor 'gray'"]
    data = []
    for growth in growths:
        plots.append(f"'-' title '{growth.case.name}' with linespoints")
        data += [f"{factor} {seconds / growth.seconds[0]}" for factor, seconds in zip(FACTORS, growth.seconds)] + ["e"]
    script.append("plot " + ", ".join(plots))
    subprocess.run(["gnuplot"], input="\n".join(script + data) + "\n", text=True, check=True)


def write_document(growths):
    heads = " | ".join(f"x {factor}" for factor in FACTORS)
    rows = "\n".join(growth.row() for growth in growths)
    with open(DOCUMENT, "w", encoding="utf-8") as file:
        file.write(f"""# Performance

`./kestrel bench` compares the paths on which an editor could stand still with programs that do nearly the same. Editor and
peer take turns, and what is told is the median of the ratios of neighbouring runs, with the middle half of them.
`./kestrel bench NAME` measures what has NAME in its name; `--json FILE` writes the figures, and `--compare FILE` says what
has changed since: a path is slower when the middle halves no longer overlap.

`./kestrel bench --growth` writes the rest of this page. The exponent is the slope on a logarithmic scale over the three
largest sizes: 1 is in proportion to the input, and above 1.1 the bench fails.

| Path | {heads} | exponent | MB at the largest | What limits it |
|---|{"---|" * len(FACTORS)}---|---|---|
{rows}

![The times of all paths at each size](Pictures/growth.svg)

The largest sizes are: 500,000 entries in 50,000 folders (FirstRequest), 200,000 sources with 2 GB (FindReference), a file of
200 MB (ReplaceText), twenty files of 5 MB (PlanEdits), 20,000 tools (PlanManyTools), 100,000 lines (CompareLines), a
million names (CompletePath), a Blueprint of 20,000 nodes (ReadBlueprint), 20,000 Blueprints (the others), and a document with
2,000 variables and 400 functions (ModifyBlueprint, UndoModification).
""")
