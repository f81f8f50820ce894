"""The ctest entries EndToEnd<n>: a share of the tests of Tests/EndToEnd each, with JSON results."""

import collections
import json
import os
import sys
import time
import unittest

sys.dont_write_bytecode = True

import steps
from testing import FILTER_VARIABLE


class Recorder(unittest.TextTestResult):
    """Keeps what each test came to."""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.cases = []
        self.started = time.monotonic()

    def record(self, test, message="", skipped=""):
        seconds = round(time.monotonic() - self.started, 1)
        self.cases.append({"name": name_of(test), "message": message, "skipped": skipped, "seconds": seconds})

    def startTest(self, test):
        super().startTest(test)
        self.started = time.monotonic()

    def addSuccess(self, test):
        super().addSuccess(test)
        self.record(test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.record(test, self._exc_info_to_string(err, test))

    def addError(self, test, err):
        super().addError(test, err)
        self.record(test, self._exc_info_to_string(err, test))

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.record(test, skipped=reason or "without a reason")

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err:
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


def share_of(tests, share, num_shares):
    """Whole classes: what a class prepares for its tests is prepared once. They wait more than they work, so the shares
    run at the same time. Each class goes to the share with the fewest tests, the largest first."""
    sizes = collections.Counter(type(test).__qualname__ for test in tests)
    shares = [0] * num_shares
    mine = set()
    for name, size in sorted(sizes.items(), key=lambda each: (-each[1], each[0])):
        smallest = shares.index(min(shares))
        shares[smallest] += size
        if smallest == share:
            mine.add(name)
    return [test for test in tests if type(test).__qualname__ in mine]


def main(preset, share, num_shares):
    os.environ["KESTREL_PRESET"] = preset
    folder = os.path.join(steps.ROOT, "Tests", "EndToEnd")
    name_filter = os.environ.get(FILTER_VARIABLE, "").lower()
    found = list(flatten(unittest.defaultTestLoader.discover(folder, pattern="*_test.py", top_level_dir=folder)))
    chosen = unittest.TestSuite(test for test in share_of(found, share, num_shares)
                                if name_filter in name_of(test).lower())
    results = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, resultclass=Recorder).run(chosen)
    report = os.path.join(steps.build_folder(preset), "TestResults", f"EndToEnd{share}.json")
    os.makedirs(os.path.dirname(report), exist_ok=True)
    with open(report, "w", encoding="utf-8") as file:
        json.dump(results.cases, file, indent=2)
    return 0 if results.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2]), int(sys.argv[3])))
