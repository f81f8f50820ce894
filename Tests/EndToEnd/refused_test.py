"""Sources that the engine's build refuses must not compile here either: Tests/Refused/*.cases."""

import concurrent.futures
import glob
import json
import os
import shlex
import subprocess
import unittest

import harness
import steps

FOLDER = os.path.join(harness.ROOT, "Tests", "Refused")


def read_cases(path):
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                expected, source = line.rstrip("\n").split(" | ", 1)
                yield expected, source


def core_command():
    """How a source of the Core module is compiled, without the file itself, its output and its precompiled header."""
    with open(os.path.join(steps.build_folder(harness.PRESET), "compile_commands.json"), encoding="utf-8") as file:
        entry = next(each for each in json.load(file) if each["file"].endswith("Host/Core/Private/Text.cpp"))
    words = shlex.split(entry["command"])
    words = words[next(index for index, word in enumerate(words) if os.path.basename(word).startswith("clang++")):]
    kept = [word for word in words if word.startswith(("-I", "-D", "-std", "-f", "-W")) and "pch" not in word]
    return [words[0], *[word for word in kept if not word.startswith(("-fsanitize", "-fno-sanitize"))],
            "-Wno-unused-variable", "-Wno-unused-value", "-fsyntax-only", "-x", "c++", "-"]


class RefusedTest(unittest.TestCase):
    def check_file(self, name):
        command = core_command()
        cases = list(read_cases(os.path.join(FOLDER, name)))

        def compile_case(case):
            text = f'#include "CoreMinimal.h"\nvoid Case();\nvoid Case()\n{{\n{case[1]}\n}}\n'
            return subprocess.run(command, input=text, capture_output=True, text=True, check=False)

        with concurrent.futures.ThreadPoolExecutor(steps.JOBS) as pool:
            for (expected, source), result in zip(cases, pool.map(compile_case, cases)):
                with self.subTest(source=source):
                    if expected == "ok":
                        self.assertEqual(result.returncode, 0, result.stderr)
                    else:
                        self.assertNotEqual(result.returncode, 0, "it compiles")
                        self.assertIn(expected, result.stderr)

    def test_formats(self):
        self.check_file("Formats.cases")

    def test_core(self):
        self.check_file("Core.cases")

    def test_every_file_of_cases_is_checked(self):
        self.assertEqual({os.path.basename(path) for path in glob.glob(os.path.join(FOLDER, "*.cases"))},
                         {"Core.cases", "Formats.cases"})
