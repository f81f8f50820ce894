"""The ctest entries KestrelTests and KestrelFaults: the plugin's tests in the editor, against a service that replays
conversations. Those with failing file operations have an editor of their own: they take as long as all others."""

import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True

import project
import steps
from service import LocalService
from testing import FILTER_VARIABLE

API_KEY = "test-key"
ALL_TESTS = "Kestrel"
# The plugins that bring tests, or what tests need, by entry.
TEST_PLUGINS = {"KestrelTests": ("LockingSourceControl", "LiveCoding"), "KestrelFaults": ("FaultyFiles",)}
FAULT_TEST = "Kestrel.Faults.lose no text, tell no untruth and touch nothing of others"
DEFAULT_FUZZ_ROUNDS = 300


def make_project(folder, service, plugins):
    """A copy of the test project that talks to the service and trusts it."""
    copy = os.path.join(folder, "Project")
    shutil.copytree(os.path.join(steps.ROOT, "Tests", "Project"), copy)
    os.mkdir(os.path.join(copy, "Plugins"))
    for plugin in plugins:
        shutil.copytree(os.path.join(steps.ROOT, "Tests", plugin), os.path.join(copy, "Plugins", plugin))
    config = os.path.join(copy, "Config")
    with open(os.path.join(config, "DefaultPlugin.ini"), "w", encoding="utf-8") as ini:
        ini.write(f"[Kestrel]\nStage=Dev\nDevApiUrl=localhost:{service.port}/v1\nDevApiKey={API_KEY}\n")
    with open(os.path.join(config, "DefaultEngine.ini"), "a", encoding="utf-8") as ini:
        ini.write(f"\n[SSL]\nDebuggingCertificatePath={service.authority}\n")
    return project.find_uproject(copy)


def run_editor(preset, uproject, name_filter, report_folder):
    command = [steps.binary(preset, "HostEditor"), uproject, f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}",
               f"-ExecCmds=Automation RunTests {name_filter};Quit", "-Unattended", "-UnattendedClock",
               f"-ReportExportPath={report_folder}",
               f"-KestrelFuzzRounds={os.environ.get('KESTREL_FUZZ_ROUNDS', DEFAULT_FUZZ_ROUNDS)}",
               f"-KestrelFuzzSeed={os.environ.get('KESTREL_FUZZ_SEED', 0)}"]
    return subprocess.run(command, stdin=subprocess.DEVNULL, check=False).returncode


def ran_nothing(report_folder):
    try:
        with open(os.path.join(report_folder, "index.json"), encoding="utf-8-sig") as report:
            return not json.load(report)["tests"]
    except (OSError, ValueError, KeyError):
        return False


def main(preset, entry="KestrelTests"):
    # Named after the ctest entry, so that its failures are known to be explained.
    report_folder = os.path.join(steps.build_folder(preset), "TestResults", entry)
    shutil.rmtree(report_folder, ignore_errors=True)
    name_filter = os.environ.get(FILTER_VARIABLE, "")
    wanted = name_filter or ALL_TESTS
    if entry == "KestrelFaults":
        if name_filter.lower() not in FAULT_TEST.lower():
            return 0
        wanted = FAULT_TEST
    scripts = os.path.join(steps.ROOT, "Tests", "Conversations")
    with tempfile.TemporaryDirectory(prefix="kestrel-tests-") as folder:
        arguments = ["--responder", "script", "--scripts", scripts]
        with LocalService(preset, os.path.join(folder, "Service"), arguments, API_KEY) as service:
            code = run_editor(preset, make_project(folder, service, TEST_PLUGINS[entry]), wanted, report_folder)
    # With a filter, other programs may have the tests that were meant.
    return 0 if name_filter and ran_nothing(report_folder) else code


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
