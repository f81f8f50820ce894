"""./kestrel content, and the ctest entry SampleContent: the assets of the sample project, made by a program."""

import filecmp
import glob
import os
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True

import project
import steps

PRESET = "dev"
SAMPLE = os.path.join(steps.ROOT, "Samples", "Harrier")
TESTS = "Kestrel.SampleContent"
FILTER_VARIABLE = "KESTREL_TEST_FILTER"


def assets_in(folder):
    """Paths below the folder, sorted."""
    return sorted(os.path.relpath(path, folder)
                  for path in glob.glob(os.path.join(folder, "Content", "**", "*.uasset"), recursive=True))


def make(preset, folder):
    """A copy of the sample in the folder, with assets made from nothing. Returns the copy."""
    copy = os.path.join(folder, "Harrier")
    shutil.copytree(SAMPLE, copy, ignore=shutil.ignore_patterns("*.uasset", "Binaries", "Intermediate", "Saved"))
    done = subprocess.run([steps.binary(preset, "HarrierContent"), project.find_uproject(copy)], check=False)
    if done.returncode != 0:
        raise steps.StepFailed("The assets of the sample cannot be made")
    return copy


def content(_arguments):
    steps.build(PRESET, ["HarrierContent"])
    with tempfile.TemporaryDirectory(prefix="kestrel-content-") as folder:
        copy = make(PRESET, folder)
        for path in assets_in(SAMPLE):
            os.remove(os.path.join(SAMPLE, path))
        for path in assets_in(copy):
            target = os.path.join(SAMPLE, path)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copyfile(os.path.join(copy, path), target)
            print(os.path.relpath(target, steps.ROOT))
    return 0


def differences(copy):
    """What is not the same in the repository and in what was just made."""
    paths = sorted({*assets_in(SAMPLE), *assets_in(copy)})
    _, different, missing = filecmp.cmpfiles(SAMPLE, copy, paths, shallow=False)
    return [f"{path} differs" for path in different] + [f"{path} is only on one side" for path in missing]


def read_documents(preset, copy):
    """The plugin's tests that read the assets. Returns the editor's exit code."""
    # Named after the ctest entry, so that its failures are known to be explained.
    report_folder = os.path.join(steps.build_folder(preset), "TestResults", "SampleContent")
    shutil.rmtree(report_folder, ignore_errors=True)
    command = [steps.binary(preset, "HostEditor"), project.find_uproject(copy),
               f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}",
               f"-ExecCmds=Automation RunTests {TESTS};Quit", "-Unattended", "-UnattendedClock",
               f"-ReportExportPath={report_folder}"]
    return subprocess.run(command, stdin=subprocess.DEVNULL, check=False).returncode


def main(preset):
    if os.environ.get(FILTER_VARIABLE, "").lower() not in TESTS.lower():
        return 0
    with tempfile.TemporaryDirectory(prefix="kestrel-content-") as folder:
        copy = make(preset, folder)
        different = differences(copy)
        if different:
            print("\n".join(different))
            print('The sample\'s assets are not those that "./kestrel content" makes.')
            return 1
        return read_documents(preset, copy)


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1]))
    except steps.StepFailed as failure:
        print(failure)
        sys.exit(1)
