"""The ctest entry EndToEnd: the tests of Tests/EndToEnd, with a line of JSON results for each."""

import json
import os
import sys
import unittest

sys.dont_write_bytecode = True

import steps
from testing import FILTER_VARIABLE


class Recorder(unittest.TextTestResult):
    """Keeps what each test came to."""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.cases = []

    def record(self, test, message=""):
        self.cases.append({"name": name_of(test), "message": message})

    def addSuccess(self, test):
        super().addSuccess(test)
        self.record(test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.record(test, self._exc_info_to_string(err, test))

    def addError(self, test, err):
        super().addError(test, err)
        self.record(test, self._exc_info_to_string(err, test))


def name_of(test):
    """module.Class.test_something as EndToEnd.Class.something"""
    pieces = test.id().split(".")
    return ".".join(["EndToEnd", *pieces[-2:]]).replace(".test_", ".")


def flatten(suite):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from flatten(test)
        else:
            yield test


def main(preset):
    os.environ["KESTREL_PRESET"] = preset
    folder = os.path.join(steps.ROOT, "Tests", "EndToEnd")
    name_filter = os.environ.get(FILTER_VARIABLE, "").lower()
    found = flatten(unittest.defaultTestLoader.discover(folder, pattern="*_test.py", top_level_dir=folder))
    chosen = unittest.TestSuite(test for test in found if name_filter in name_of(test).lower())
    results = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, resultclass=Recorder).run(chosen)
    report = os.path.join(steps.build_folder(preset), "TestResults", "EndToEnd.json")
    os.makedirs(os.path.dirname(report), exist_ok=True)
    with open(report, "w", encoding="utf-8") as file:
        json.dump(results.cases, file, indent=2)
    return 0 if results.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
