"""./kestrel test"""

import contextlib
import glob
import json
import os
import re
import shutil
import xml.etree.ElementTree

import steps

PRESET = "dev"
FILTER_VARIABLE = "KESTREL_TEST_FILTER"
CTEST_PROGRESS = re.compile(r"^\s*(\d+)/(\d+) Test\s+#\d+: (\S+)")
PROGRAM_TIMEOUT_SECONDS = 300  # of programs whose ctest entry has no limit of its own
WAITING_PROGRAMS = 1  # run beside those that use the processors
PROGRAMS_LOG = "ctest.log"
SHOWN_LINES_OF_A_DEAD_PROGRAM = 40


class Results:
    """What all test cases of all programs came to."""

    def __init__(self):
        self.passed = 0
        self.failures = []  # (name, message)
        self.skipped = []  # (name, reason)
        self.explained = set()  # programs whose own results hold a failure

    def add(self, name, message):
        """One test case; an empty message is a pass."""
        if message:
            self.failures.append((name, message))
        else:
            self.passed += 1

    def read_google_test(self, path):
        for case in xml.etree.ElementTree.parse(path).getroot().iter("testcase"):
            if case.get("result") == "skipped":
                self.skipped += [(f"{case.get('classname')}.{case.get('name')}", skipped.get("message") or "")
                                 for skipped in case.iter("skipped")]
            elif case.get("status") == "run":
                message = "\n".join(failure.get("message") or "failed" for failure in case.iter("failure"))
                self.add(f"{case.get('classname')}.{case.get('name')}", message)

    def read_editor_report(self, path):
        with open(path, encoding="utf-8-sig") as report:
            for case in json.load(report)["tests"]:
                passed = case["state"] == "Success"
                self.add(case["fullTestPath"], "" if passed else "\n".join(case["errors"]) or "failed")

    def read_end_to_end(self, path):
        with open(path, encoding="utf-8") as report:
            for case in json.load(report):
                if case["skipped"]:
                    self.skipped.append((case["name"], case["skipped"]))
                else:
                    self.add(case["name"], case["message"])

    def read_folder(self, folder):
        readers = [("*.xml", self.read_google_test), ("*/index.json", self.read_editor_report),
                   ("*.json", self.read_end_to_end)]
        for pattern, read in readers:
            for path in sorted(glob.glob(os.path.join(folder, pattern))):
                relative = os.path.relpath(path, folder)
                num_before = len(self.failures)
                try:
                    read(path)
                except (OSError, ValueError, KeyError, xml.etree.ElementTree.ParseError) as error:
                    self.add(relative, f"cannot be read: {error}")
                if len(self.failures) > num_before:
                    self.explained.add(relative.split(os.sep)[0].split(".")[0])

    def add_dead_programs(self, junit_path):
        """A program that failed without a failed case has died, or was stopped: that is a failure of its own."""
        for entry in xml.etree.ElementTree.parse(junit_path).getroot().iter("testcase"):
            name = entry.get("name")
            if entry.get("status") != "fail" or name in self.explained:
                continue
            output = (entry.findtext("system-out") or "").splitlines()
            reason = next((failure.get("message") for failure in entry.iter("failure")), "") or "failed"
            self.add(name, "\n".join([f"The program ended badly: {reason}",
                                      *output[-SHOWN_LINES_OF_A_DEAD_PROGRAM:]]))


def google_test_filter(text):
    """A pattern that matches names with the text in it; signs that mean something in patterns match any letter."""
    return "*" + re.sub(r"[:\-*]", "?", text) + "*"


def environment(name_filter):
    env = dict(os.environ)
    env.setdefault("UBSAN_OPTIONS", "print_stacktrace=1")
    if name_filter:
        env["GTEST_FILTER"] = google_test_filter(name_filter)
        env[FILTER_VARIABLE] = name_filter
    return env


def run_programs(results_folder, name_filter, preset=PRESET):
    shutil.rmtree(results_folder, ignore_errors=True)
    os.makedirs(results_folder)
    junit = os.path.join(steps.LOG_FOLDER, "ctest.xml")
    command = ["ctest", "--preset", preset, "--output-on-failure", "--timeout", str(PROGRAM_TIMEOUT_SECONDS),
               "-j", str(steps.JOBS + WAITING_PROGRAMS), "--output-junit", junit]
    try:
        steps.run_step("Testing", command, PROGRAMS_LOG, environment(name_filter), progress=CTEST_PROGRESS)
    except steps.StepFailed:
        if not os.path.exists(junit):
            raise
    return junit


def install_npm():
    """For clients that others have made. Node.js from elsewhere brings npm along; Debian's is a package of its own."""
    if not shutil.which("npm"):
        with contextlib.suppress(steps.StepFailed):  # their tests are skipped then
            steps.install_packages(["npm"])


def test(arguments):
    name_filter = arguments.filter
    steps.build(PRESET)
    install_npm()
    results_folder = os.path.join(steps.build_folder(PRESET), "TestResults")
    junit = run_programs(results_folder, name_filter)
    results = Results()
    results.read_folder(results_folder)
    results.add_dead_programs(junit)
    for name, reason in results.skipped:
        print(f"[SKIPPED] {name}: {' '.join(reason.split())}")
    for name, message in results.failures:
        print(f"\n[FAILED] {name}")
        print("\n".join("    " + line for line in message.splitlines()))
    if results.failures:
        print(f"\nAll output: {os.path.join(steps.LOG_FOLDER, PROGRAMS_LOG)}")
    elif not results.passed:
        print(f"No test has '{name_filter}' in its name." if name_filter else "There are no tests.")
    skipped = f"{len(results.skipped)} skipped, " if results.skipped else ""
    print(f"{skipped}{results.passed} passed, {len(results.failures)} failed", flush=True)
    return 0 if results.passed and not results.failures else 1
