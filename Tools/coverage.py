"""./kestrel coverage"""

import collections
import glob
import json
import os
import re
import shutil
import subprocess

import steps
import testing

PRESET = "coverage"
PACKAGES = ["llvm"]
FOLDER = os.path.join(steps.ROOT, "Intermediate", "Coverage")
UNCALLED = os.path.join(FOLDER, "uncalled.txt")
# Programs share files that are merged as they write: one for each binary and place of the pool.
PROFILES = os.path.join(FOLDER, "%4m.profraw")
# What runs in the compiler has no counters that could count.
COMPILE_TIME = re.compile(r"\bconsteval\b")
TESTS = re.compile(r"(?:^|/)(?:Tests|TestMain|TestSupport|KestrelTests)/")
SHOWN_OF_A_FAILURE = 300  # characters
AREAS = [("The plugin", "Source/Kestrel/", 97), ("The host", "Host/", 90), ("The service", "Service/Source/", 90)]


def run_tests():
    """Returns whether all passed: what a failed test did not reach is missing in the figures."""
    shutil.rmtree(FOLDER, ignore_errors=True)
    os.makedirs(FOLDER)
    os.environ["LLVM_PROFILE_FILE"] = PROFILES
    results_folder = os.path.join(steps.build_folder(PRESET), "TestResults")
    results = testing.Results()
    junit = testing.run_programs(results_folder, "", PRESET)
    results.read_folder(results_folder)
    results.add_dead_programs(junit)
    for name, message in results.failures:
        print(f"[FAILED] {name}: {' '.join(message.split())[:SHOWN_OF_A_FAILURE]}")
    return not results.failures


def binaries():
    """All that was built: programs, and the libraries of the host and of the plugins."""
    built = os.path.join(steps.build_folder(PRESET), "bin", "*")
    plugins = os.path.join(steps.ROOT, "**", "Binaries", "Linux", f"*-{PRESET}.so")
    found = glob.glob(built) + [path for path in glob.glob(plugins, recursive=True) if "/Intermediate/" not in path]
    return [path for path in found if os.access(path, os.X_OK) and not os.path.isdir(path)]


def read_functions():
    """Yields the file and line of each function with the number of times that it ran."""
    merged = os.path.join(FOLDER, "merged.profdata")
    steps.run_step("Merging", ["llvm-profdata", "merge", "-o", merged, *glob.glob(os.path.join(FOLDER, "*.profraw"))],
                   "coverage-merge.log")
    objects = [word for path in binaries() for word in ("-object", path)]
    done = subprocess.run(["llvm-cov", "export", "-skip-expansions", "-instr-profile", merged, *objects[1:]],
                          capture_output=True, check=False)
    if done.returncode != 0:
        raise steps.StepFailed(f"llvm-cov failed: {done.stderr.decode(errors='replace')[-2000:]}")
    for function in json.loads(done.stdout)["data"][0]["functions"]:
        yield os.path.relpath(function["filenames"][0], steps.ROOT), function["regions"][0][0], function["count"]


def declaration(file, line):
    """The line of a function's body, with the one before if the brace stands alone."""
    with open(os.path.join(steps.ROOT, file), encoding="utf-8", errors="replace") as source:
        lines = [text.strip() for text in source][max(line - 2, 0):line]
    return " ".join(lines) if lines[-1] == "{" else lines[-1]


def count_calls():
    """How often each function ran, by file and line: instantiations of a template are one function."""
    calls = collections.Counter()
    for file, line, count in read_functions():
        if not file.startswith("..") and not TESTS.search(file):
            calls[file, line] += count
    for place in [place for place in calls if not calls[place] and COMPILE_TIME.search(declaration(*place))]:
        del calls[place]
    return calls


def report(calls):
    """Prints the share of each area, and writes what never ran. Returns whether all areas reach their aim."""
    good = True
    with open(UNCALLED, "w", encoding="utf-8") as list_of_uncalled:
        for title, folder, aim in AREAS:
            places = sorted(place for place in calls if place[0].startswith(folder))
            uncalled = [place for place in places if not calls[place]]
            share = 100 * (len(places) - len(uncalled)) / max(1, len(places))
            good = good and share >= aim
            print(f"{title}: {share:.1f} % of {len(places)} functions run in the tests (aim: {aim} %)")
            list_of_uncalled.writelines(f"{file}:{line}: {declaration(file, line)}\n" for file, line in uncalled)
    print(f"Those that do not: {os.path.relpath(UNCALLED, steps.ROOT)}")
    return good


def coverage(_arguments):
    steps.install_packages(steps.PACKAGES + PACKAGES)
    steps.build(PRESET)
    passed = run_tests()
    return 0 if report(count_calls()) and passed else 1
