"""Steps with one changing line of progress, a log each, and a failure that says where to look."""

import contextlib
import ctypes
import fcntl
import os
import re
import shutil
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LOG_FOLDER = os.path.join(ROOT, "Intermediate", "Logs")
JOBS = os.cpu_count() or 2

# Debian 12 package names: what builds and runs, and what the tests need; apt adds what these need themselves.
PACKAGES = [
    "ca-certificates", "ccache", "clang", "cmake", "git", "libclang-rt-14-dev", "libcmark-gfm-dev",
    "libcmark-gfm-extensions-dev", "libcpp-httplib-dev",
    "libcurl4-openssl-dev", "libgit2-dev", "libmd4c-dev", "libmimalloc-dev", "libpango1.0-dev", "libpython3-dev", "librsvg2-dev",
    "libsdl2-dev", "libsqlite3-dev", "libssl-dev", "libtomlplusplus-dev", "libvalijson-dev", "libx11-dev", "zlib1g-dev",
    "fonts-dejavu-core", "fonts-noto-color-emoji", "lld", "nlohmann-json3-dev", "ninja-build", "pkg-config", "rapidjson-dev",
    "chromium", "chromium-driver", "libgmock-dev", "libgtest-dev", "libpq-dev", "postgresql", "xdotool", "xvfb",
]
CHECK_PACKAGES = ["clang-format", "clang-tidy", "python3-clang-14"]

APT_LOCK_SECONDS = 120  # a fresh machine may still be updating itself

NINJA_PROGRESS = re.compile(r"^\[(\d+)/(\d+)\]\s*(.*)")
FAILED_LINES_SHOWN = 30


class StepFailed(Exception):
    """A step that did not work; its text is for the user."""


class ProgressLine:
    """One line that changes on a terminal; elsewhere a line for every tenth of the work."""

    def __init__(self, title):
        self.title = title
        self.started = time.monotonic()
        self.on_terminal = sys.stdout.isatty()
        self.tenths_shown = 0
        if not self.on_terminal:
            print(f"{title} ...", flush=True)

    def show(self, done, total, what):
        if self.on_terminal:
            width = shutil.get_terminal_size().columns - 1
            text = f"{self.title}: {done}/{total} {what}"[:width]
            print(f"\r{text:<{width}}", end="", flush=True)
            return
        tenths = 10 * done // total
        # What takes a few steps, such as configuring again before a build, is over soon.
        if total >= 20 and self.tenths_shown < tenths < 10:
            self.tenths_shown = tenths
            seconds = time.monotonic() - self.started
            print(f"{self.title}: {10 * tenths} % ({done} of {total}, {seconds:.0f} s)", flush=True)

    def finish(self, outcome):
        seconds = time.monotonic() - self.started
        text = f"{self.title}: {outcome} ({seconds:.0f} s)"
        if self.on_terminal:
            width = shutil.get_terminal_size().columns - 1
            text = f"\r{text:<{width}}"
        print(text, flush=True)


def run_step(title, command, log_name, env=None, cwd=ROOT, progress=NINJA_PROGRESS):
    """Runs a command, its output in a log; shows "done/total" where the output tells it."""
    os.makedirs(LOG_FOLDER, exist_ok=True)
    log_path = os.path.join(LOG_FOLDER, log_name)
    line = ProgressLine(title)
    with open(log_path, "w", encoding="utf-8", errors="replace") as log:
        log.write("$ " + " ".join(command) + "\n")
        try:
            process = subprocess.Popen(command, cwd=cwd, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                       stderr=subprocess.STDOUT, text=True, errors="replace")
        except OSError as error:
            raise StepFailed(f"{title} failed: {error}") from error
        for output in process.stdout:
            log.write(output)
            match = progress.match(output)
            if match:
                done, total, what = match.groups()
                line.show(int(done), int(total), what.rsplit("/", 1)[-1])
        code = process.wait()
    if code != 0:
        line.finish("failed")
        raise StepFailed(f"{title} failed with code {code}. The end of its log, {log_path}:\n\n{tail(log_path)}")
    line.finish("done")


def tail(path):
    with open(path, encoding="utf-8", errors="replace") as log:
        return "".join(log.readlines()[-FAILED_LINES_SHOWN:])


def missing_packages(packages):
    """Those that are not installed; None on a system without Debian's package manager."""
    if not shutil.which("dpkg-query"):
        return None
    listing = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${db:Status-Status}\n", *packages],
                             capture_output=True, text=True, check=False).stdout
    installed = {line.split()[0] for line in listing.splitlines() if line.endswith(" installed")}
    return [package for package in packages if package not in installed]


def install_packages(packages=None):
    missing = missing_packages(packages or PACKAGES)
    if missing is None:
        tools = [tool for tool in ("clang++", "cmake", "ninja") if not shutil.which(tool)]
        if tools:
            raise StepFailed(f"This system has no apt-get. Please install {', '.join(tools)} and the counterparts of "
                             f"these Debian 12 packages, then try again:\n  {' '.join(PACKAGES)}")
        return
    if not missing:
        return
    as_root = [] if os.geteuid() == 0 else ["sudo"]
    if as_root and not shutil.which("sudo"):
        raise StepFailed("Some packages are missing and there is no sudo. As root:\n"
                         f"  apt-get install {' '.join(missing)}")
    env = dict(os.environ, DEBIAN_FRONTEND="noninteractive")
    run_step("Updating the package list", [*as_root, "apt-get", "update", "-q"], "apt-update.log", env)
    run_step(f"Installing {len(missing)} packages",
             [*as_root, "env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "install", "-y", "-q",
              "-o", f"DPkg::Lock::Timeout={APT_LOCK_SECONDS}", "--no-install-recommends", *missing],
             "apt-install.log", env)


def build_folder(preset):
    return os.path.join(ROOT, "Intermediate", "Build", preset)


def binary(preset, name):
    return os.path.join(build_folder(preset), "bin", name)


@contextlib.contextmanager
def only_one_build():
    """Two builds in one folder would delete each other's files: the second waits for the first."""
    os.makedirs(LOG_FOLDER, exist_ok=True)
    with open(os.path.join(LOG_FOLDER, "build.lock"), "w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            print("Waiting for another build in this folder ...", flush=True)
            fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def end_with_parent():
    """For a child process, between fork and exec: it is told to stop when the launcher is gone, however that ended."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGTERM)


def build(preset, targets=()):
    """Configures and builds a preset; installs what it needs first."""
    with only_one_build():
        build_alone(preset, targets)


def needs_configuring(preset):
    """The build itself configures again when a CMakeLists.txt or the list of sources has changed."""
    result = os.path.join(build_folder(preset), "build.ninja")
    sources = [os.path.join(ROOT, "CMakePresets.json"), os.path.abspath(__file__)]
    return not os.path.exists(result) or any(os.path.getmtime(each) > os.path.getmtime(result) for each in sources)


def build_alone(preset, targets):
    install_packages()
    if needs_configuring(preset):
        run_step(f"Configuring ({preset})", ["cmake", "--preset", preset], f"configure-{preset}.log")
    command = ["cmake", "--build", "--preset", preset, "-j", str(JOBS)]
    if targets:
        command += ["--target", *targets]
    run_step(f"Building ({preset})", command, f"build-{preset}.log")
