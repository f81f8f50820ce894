"""A PostgreSQL server for tests, in a folder of its own, reachable by nobody but through a socket in that folder.

As a context manager, or as a program: it prints an address with NAME where a database's name belongs, and stops when its
standard input ends.
"""

import glob
import os
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile

START_SECONDS = 60


def find_programs():
    """The folder of the newest server that Debian has installed; its programs are in no PATH."""
    found = glob.glob("/usr/lib/postgresql/*/bin/postgres")
    if not found:
        raise FileNotFoundError("There is no PostgreSQL in /usr/lib/postgresql: install the package postgresql")
    return os.path.dirname(max(found, key=lambda path: int(path.split("/")[4])))


class PostgresServer:
    def __init__(self):
        self.programs = find_programs()
        self.folder = tempfile.mkdtemp(prefix="kestrel-postgres-")
        self.data = os.path.join(self.folder, "data")
        # The server refuses to run as root; the package makes a user for it.
        self.account = pwd.getpwnam("postgres") if os.geteuid() == 0 else pwd.getpwuid(os.geteuid())
        if os.geteuid() == 0:
            os.chown(self.folder, self.account.pw_uid, self.account.pw_gid)
        self.process = None

    def address(self, name="NAME"):
        return f"postgresql://{self.account.pw_name}@/{name}?host={self.folder}"

    def run(self, *arguments, **options):
        command = [os.path.join(self.programs, arguments[0]), *arguments[1:]]
        user = {"user": self.account.pw_uid, "group": self.account.pw_gid, "extra_groups": []} if os.geteuid() == 0 else {}
        return subprocess.Popen(command, cwd=self.folder, stdin=subprocess.DEVNULL,
                                env={"PATH": os.environ.get("PATH", ""), "LC_ALL": "C.UTF-8"}, **user, **options)

    def start(self):
        made = self.run("initdb", "--pgdata", self.data, "--auth", "trust", "--encoding", "UTF8", "--no-sync",
                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        output, _ = made.communicate()
        if made.returncode != 0:
            raise RuntimeError(f"initdb failed:\n{output}")
        # Nothing has to last, and no port is taken.
        settings = {"fsync": "off", "synchronous_commit": "off", "full_page_writes": "off", "listen_addresses": "",
                    "unix_socket_directories": self.folder, "shared_buffers": "16MB"}
        with open(os.path.join(self.folder, "log"), "w", encoding="utf-8") as log:
            self.process = self.run("postgres", "-D", self.data, *(f"-c{key}={value}" for key, value in settings.items()),
                                    stdout=log, stderr=subprocess.STDOUT, start_new_session=True)
        ready = self.run("pg_isready", "-q", "-h", self.folder, "-t", "1")
        for _ in range(START_SECONDS * 20):
            if ready.wait() == 0:
                return
            if self.process.poll() is not None:
                break
            ready = self.run("pg_isready", "-q", "-h", self.folder, "-t", "1")
        with open(os.path.join(self.folder, "log"), encoding="utf-8") as log:
            raise RuntimeError(f"PostgreSQL did not start:\n{log.read()}")

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGINT)  # without waiting for clients
            try:
                self.process.wait(20)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()


if __name__ == "__main__":
    with PostgresServer() as server:
        print(server.address(), flush=True)
        sys.stdin.read()
