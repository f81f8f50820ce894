"""Finds a project's file and what its configuration says of the service."""

import configparser
import contextlib
import glob
import os
import re
import shutil
import subprocess
import tempfile
import time

import steps

STAGES = {"dev": "DevApiUrl", "sandbox": "SandboxApiUrl", "sandbox2": "Sandbox2ApiUrl"}


SAMPLE_PREFIX = "kestrel-sample-"
SECONDS_KEPT = 24 * 60 * 60


def remove_old_copies():
    """Copies of the sample that nobody has used for a day."""
    for folder in glob.glob(os.path.join(tempfile.gettempdir(), SAMPLE_PREFIX + "*")):
        with contextlib.suppress(OSError):
            if time.time() - os.path.getmtime(folder) > SECONDS_KEPT:
                shutil.rmtree(folder)


def copy_sample():
    """A copy of the sample in a scratch folder, so that nothing that is tried changes the repository."""
    remove_old_copies()
    folder = tempfile.mkdtemp(prefix=SAMPLE_PREFIX)
    target = os.path.join(folder, "Harrier")
    shutil.copytree(os.path.join(steps.ROOT, "Samples", "Harrier"), target)
    make_git_history(target)
    return target


# The steps in which the sample is said to have been made: what each brought along.
HISTORY = [
    ("Begin the moor", ["Harrier.uproject", "Config", "Source/*.cs", "Source/Harrier/Harrier*", ".gitignore"]),
    ("Let the walker walk and gather feathers", ["Source/Harrier/Player", "Source/Harrier/World", "Source/Harrier/Game"]),
    ("Add health and the wardens", ["."]),
]


def make_git_history(folder):
    """A repository of the project's own, so that a person sees what was changed, and the editor has revision control."""
    # A user's own configuration must not matter, nor be asked for.
    env = dict(os.environ, GIT_CONFIG_GLOBAL=os.devnull, GIT_CONFIG_NOSYSTEM="1")

    def git(*arguments):
        done = subprocess.run(["git", "-c", "user.name=Moor", "-c", "user.email=moor@example.com", *arguments],
                              cwd=folder, env=env, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise steps.StepFailed(f"git {arguments[0]} failed: {done.stderr.strip()}")

    git("init", "-q", "-b", "main")
    for message, paths in HISTORY:
        git("add", "--", *paths)
        git("commit", "-q", "-m", message)


def find_uproject(folder):
    if not os.path.isdir(folder):
        raise steps.StepFailed(f"There is no folder {folder}")
    found = sorted(name for name in os.listdir(folder) if name.lower().endswith(".uproject"))
    if not found:
        raise steps.StepFailed(f"There is no .uproject file in {folder}")
    return os.path.join(os.path.abspath(folder), found[0])


def stage_url(folder):
    """The service that the project names for itself, or an empty text."""
    path = os.path.join(folder, "Config", "DefaultPlugin.ini")
    parser = configparser.ConfigParser(strict=False, interpolation=None, allow_no_value=True)
    try:
        parser.read(path, encoding="utf-8-sig")
    except (configparser.Error, UnicodeDecodeError):
        return ""
    if not parser.has_section("Kestrel"):
        return ""
    section = parser["Kestrel"]
    key = STAGES.get((section.get("Stage") or "").strip().strip('"').lower())
    return (section.get(key) or "").strip().strip('"') if key else ""


def production_host():
    """The host of the address that the plugin is built with."""
    with open(os.path.join(steps.ROOT, "Source", "Kestrel", "Private", "Kestrel.cpp"), encoding="utf-8") as source:
        address = re.search(r'#define KESTREL_API_URL TEXT\("([^"]+)"\)', source.read()).group(1)
    return address.split("/")[0]
