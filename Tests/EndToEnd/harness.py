"""What the end-to-end tests have in common: scratch projects, the service, and a running editor."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path[:0] = [os.path.join(ROOT, "Tools"), os.path.join(ROOT, "Tests", "Support")]

import project
import steps
from service import LocalService

PRESET = os.environ.get("KESTREL_PRESET", "dev")
API_KEY = "kestrel-end-to-end-key"
# Nothing here takes seconds; who reaches this hangs.
LONGEST_RUN_SECONDS = 60
FAREWELL_SECONDS = 20


class EditorRun:
    """What a run of the editor came to."""

    def __init__(self, code, output, errors):
        self.code = code
        self.output = output
        self.errors = errors

    def __str__(self):
        return f"exit code {self.code}\n--- output\n{self.output}\n--- errors\n{self.errors}"


class EndToEndTest(unittest.TestCase):
    """A test with a scratch folder, a small project in it and the editor on that project."""

    folder_name = "Project"

    def setUp(self):
        self.scratch = tempfile.mkdtemp(prefix="kestrel-end-to-end-")
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)
        self.project = os.path.join(self.scratch, self.folder_name)
        os.makedirs(os.path.join(self.project, "Config"))
        os.makedirs(os.path.join(self.project, "Source", "Moor"))
        self.write("Moor.uproject", '{ "FileVersion": 3, "EngineAssociation": "5.4" }\n')
        self.write("Config/DefaultGame.ini", "[Moor]\nFeathers=12\n")
        self.write("Source/Moor/Walker.h", "#pragma once\n\nclass AWalker\n{\n\tint Feathers = 12;\n};\n")

    def write(self, path, text):
        with open(os.path.join(self.project, path), "w", encoding="utf-8") as file:
            file.write(text)

    def start_service(self, *arguments):
        """A service with a key, stopped when the test ends."""
        service = LocalService(PRESET, os.path.join(self.scratch, "Service"), arguments, API_KEY)
        service.__enter__()
        self.addCleanup(service.stop)
        return service

    def use_service(self, port, authority):
        """Makes the project name its own service and trust it."""
        self.write("Config/DefaultPlugin.ini",
                   f"[Kestrel]\nStage=Dev\nDevApiUrl=localhost:{port}/v1\nDevApiKey={API_KEY}\n")
        self.write("Config/DefaultEngine.ini", f"[SSL]\nDebuggingCertificatePath={authority}\n")

    def editor_command(self, *arguments, console=True):
        return [steps.binary(PRESET, "HostEditor"), project.find_uproject(self.project),
                f"-PLUGIN={os.path.join(ROOT, 'Kestrel.uplugin')}", *(["-Console=Kestrel"] if console else []),
                "-UnattendedClock", *arguments]

    def run_editor(self, *arguments, typed="", console=True, **options):
        done = subprocess.run(self.editor_command(*arguments, console=console), input=typed,
                              capture_output=True, text=True, encoding="utf-8", timeout=LONGEST_RUN_SECONDS,
                              check=False, **options)
        return EditorRun(done.returncode, done.stdout, done.stderr)

    def ordinary_user(self):
        """Options of run_editor for a user whom permissions stop, unlike root; the project becomes that user's."""
        if os.geteuid() != 0:
            return {}
        nobody = 65534
        os.chmod(self.scratch, 0o755)
        for path, folders, files in os.walk(self.project):
            for name in (".", *folders, *files):
                os.chown(os.path.join(path, name), nobody, nobody, follow_symlinks=False)
        editor = steps.binary(PRESET, "HostEditor")
        if subprocess.run(["test", "-x", editor], user=nobody, check=False).returncode != 0:
            self.skipTest("only root can run the editor from this folder")
        return {"user": nobody, "group": nobody, "extra_groups": []}

    def assert_in_order(self, run, *texts):
        """Each text comes in the output, behind the one before."""
        at = 0
        for text in texts:
            found = run.output.find(text, at)
            self.assertGreaterEqual(found, 0, f"{text!r} is missing behind the text before it:\n{run}")
            at = found + len(text)

    def files_of_project(self, *folders):
        """Path and content of every file below the folders."""
        found = {}
        for folder in folders:
            for path, _, names in os.walk(os.path.join(self.project, folder)):
                for name in names:
                    full = os.path.join(path, name)
                    with open(full, "rb") as file:
                        found[os.path.relpath(full, self.project)] = file.read()
        return found


def type_when(command, *steps):
    """Runs an editor whose input is a terminal, on which nothing waits. Each step is a text to wait for in the output,
    and what to do then: a line to type, or a function. Returns all output, also when a text never came."""
    keyboard, terminal = os.openpty()
    output = ""
    with os.fdopen(keyboard, "w") as keys, \
            subprocess.Popen(command, stdin=terminal, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                             encoding="utf-8") as process:
        watchdog = threading.Timer(LONGEST_RUN_SECONDS, process.kill)
        watchdog.start()
        for line in process.stdout:
            output += line
            while steps and steps[0][0] in output:
                action = steps[0][1]
                steps = steps[1:]
                action() if callable(action) else print(action, file=keys, flush=True)
        watchdog.cancel()
    os.close(terminal)
    return EditorRun(process.returncode, output, "")


def interrupt_when(process, text):
    """Sends Ctrl-C to a process as soon as its output holds a text. Returns all output when it has ended."""
    output = []

    def read():
        for line in process.stdout:
            output.append(line)
            if text in line:
                process.send_signal(signal.SIGINT)

    reader = threading.Thread(target=read)
    reader.start()
    process.wait(LONGEST_RUN_SECONDS)
    reader.join(LONGEST_RUN_SECONDS)
    return "".join(output)
