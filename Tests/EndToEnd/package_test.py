"""The service's Debian package: installed into a folder of its own, started as its unit says, and removed."""

import configparser
import glob
import json
import os
import shlex
import shutil
import socket
import ssl
import subprocess
import time
import unittest
import urllib.request

import harness
import steps
from harness import EndToEndTest

START_SECONDS = 30


def run(*command, **options):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)} failed:\n{done.stdout}{done.stderr}")
    return done.stdout


class PackageTest(EndToEndTest):
    def build(self):
        build = steps.build_folder(harness.PRESET)
        folder = os.path.join(self.scratch, "Packages")
        run("cpack", "--config", os.path.join(build, "CPackConfig.cmake"), "-B", folder)
        packages = glob.glob(os.path.join(folder, "*.deb"))
        self.assertEqual(len(packages), 1)
        return packages[0]

    def dpkg(self, *arguments):
        # No root of its own: nothing in it could run the package's scripts, which know of such a folder.
        run("dpkg", f"--root={self.root}", "--force-not-root", "--force-depends", "--force-script-chrootless",
            "--force-bad-path", *arguments, env=dict(os.environ, PATH=os.environ["PATH"] + ":/usr/sbin:/sbin"))

    def installed(self, path):
        return os.path.join(self.root, path.lstrip("/"))

    def start_command(self):
        """What the unit would start, in the folder."""
        unit = configparser.RawConfigParser(strict=False)
        unit.optionxform = str
        unit.read(self.installed("/usr/lib/systemd/system/kestrel-service.service"))
        words = [word for word in shlex.split(unit["Service"]["ExecStart"]) if word != "$KESTREL_OPTIONS"]
        words = [self.installed(word) if word.startswith("/") else word for word in words]
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            words[words.index("--port") + 1] = str(free.getsockname()[1])
        return words

    def test_installs_starts_and_goes(self):
        package = self.build()
        self.root = os.path.join(self.scratch, "Root")
        for path in ("var/lib/dpkg/updates", "var/lib/dpkg/info", "etc"):
            os.makedirs(os.path.join(self.root, path))
        for name in ("status", "available"):
            with open(self.installed(f"/var/lib/dpkg/{name}"), "w", encoding="utf-8"):
                pass
        self.dpkg("--install", package)
        self.assertEqual(os.stat(self.installed("/etc/kestrel-service/environment")).st_mode & 0o777, 0o600)
        self.verify_unit()

        command = self.start_command()
        state = command[command.index("--state") + 1]
        os.makedirs(state)
        # An installed program has no path to the sanitizers' library, which users do not need.
        runtime = run("clang++", "-print-file-name=libclang_rt.asan-x86_64.so").strip()
        process = subprocess.Popen(command, env=dict(os.environ, LD_LIBRARY_PATH=os.path.dirname(runtime)))
        try:
            self.assertEqual(self.wait_for_health(command, state, process), {"status": "ok"})
        finally:
            process.terminate()
            self.assertEqual(process.wait(10), 0)

        self.dpkg("--remove", "kestrel-service")
        self.assertFalse(os.path.exists(self.installed("/usr/bin/kestrel-service")))
        self.assertTrue(os.path.exists(self.installed("/etc/kestrel-service/model.toml")), "the user's own")

    def verify_unit(self):
        """Where systemd is installed, it says whether it understands the unit."""
        if not shutil.which("systemd-analyze"):
            return
        for target in glob.glob("/lib/systemd/system/*.target"):
            shutil.copy(target, self.installed("/usr/lib/systemd/system"))
        run("systemd-analyze", f"--root={self.root}", "--recursive-errors=no", "verify", "kestrel-service.service")

    def wait_for_health(self, command, state, process):
        url = f"https://localhost:{command[command.index('--port') + 1]}/health"
        deadline = time.monotonic() + START_SECONDS
        while time.monotonic() < deadline and process.poll() is None:
            try:
                trust = ssl.create_default_context(cafile=os.path.join(state, "authority.pem"))
                with urllib.request.urlopen(url, timeout=5, context=trust) as reply:
                    return json.load(reply)
            except OSError:
                time.sleep(0.05)
        return None


if __name__ == "__main__":
    unittest.main()
