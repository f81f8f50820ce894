"""Sources that the engine's build refuses must not compile here either: Tests/Refused/*.cases."""

import concurrent.futures
import glob
import json
import os
import shlex
import subprocess
import tempfile
import unittest

import harness
import steps

FOLDER = os.path.join(harness.ROOT, "Tests", "Refused")


INCLUDE = "# include "


def read_cases(path):
    """The includes that the cases need, and the cases."""
    includes = ['"CoreMinimal.h"']
    cases = []
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.startswith(INCLUDE):
                includes.append(line[len(INCLUDE):].strip())
            elif line.strip() and not line.startswith("#"):
                expected, source = line.rstrip("\n").split(" | ", 1)
                cases.append((expected, source))
    return includes, cases


def compile_command(module):
    """How a module of the host is compiled, without the file itself, its output and its precompiled header."""
    folder = f"/Host/{module}/CMakeFiles/{module}.dir/Unity/"
    with open(os.path.join(steps.build_folder(harness.PRESET), "compile_commands.json"), encoding="utf-8") as file:
        entry = next(each for each in json.load(file) if folder in each["file"])
    words = shlex.split(entry["command"])
    words = words[next(index for index, word in enumerate(words) if os.path.basename(word).startswith("clang++")):]
    kept = [word for word in words if word.startswith(("-I", "-D", "-std", "-f", "-W")) and "pch" not in word]
    return [words[0], *[word for word in kept if not word.startswith(("-fsanitize", "-fno-sanitize"))],
            "-Wno-unused-variable", "-Wno-unused-value"]


class RefusedTest(unittest.TestCase):
    def check_file(self, name, module="Core"):
        command = compile_command(module)
        includes, cases = read_cases(os.path.join(FOLDER, name))

        def compile_text(text, *arguments):
            return subprocess.run([*command, *arguments, "-"], input=text, capture_output=True, text=True, check=False)

        def compile_case(case):
            return compile_text(f"void Case();\nvoid Case()\n{{\n{case[1]}\n}}\n",
                                "-include-pch", headers, "-fsyntax-only", "-x", "c++")

        # What all the cases include is read once: it takes far longer than the cases.
        with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(steps.JOBS) as pool:
            headers = os.path.join(folder, "headers.pch")
            result = compile_text("".join(f"#include {each}\n" for each in includes),
                                  "-x", "c++-header", "-o", headers)
            self.assertEqual(result.returncode, 0, result.stderr)
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

    def test_slate(self):
        self.check_file("Slate.cases", module="ToolMenus")

    def test_engine(self):
        self.check_file("Engine.cases", module="Engine")

    def test_hot_reload(self):
        self.check_file("HotReload.cases", module="HotReload")

    def test_every_file_of_cases_is_checked(self):
        self.assertEqual({os.path.basename(path) for path in glob.glob(os.path.join(FOLDER, "*.cases"))},
                         {"Core.cases", "Engine.cases", "Formats.cases", "HotReload.cases", "Slate.cases"})
