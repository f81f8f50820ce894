"""Starts and stops the local service."""

import json
import os
import subprocess
import time

import steps

START_SECONDS = 20
KEY_VARIABLE = "KESTREL_SERVICE_KEY"


class LocalService:
    """The service on a free port of this machine; a context manager that stops it. With a key it lets nobody else in."""

    def __init__(self, preset, state_folder, arguments=(), key=""):
        self.state_folder = state_folder
        self.ready_file = os.path.join(state_folder, "service.json")
        self.log_path = os.path.join(state_folder, "service.log")
        self.command = [steps.binary(preset, "kestrel-service"), "--state", state_folder, "--port", "0",
                        "--ready-file", self.ready_file, *arguments]
        # Not on the command line, where every user of the machine would see it.
        self.env = {name: value for name, value in os.environ.items() if name != KEY_VARIABLE}
        if key:
            self.env[KEY_VARIABLE] = key
        self.process = None
        self.port = 0
        self.authority = ""

    def __enter__(self):
        try:
            self.start()
        except OSError as error:
            raise steps.StepFailed(f"The service cannot be started in {self.state_folder}: {error}") from error
        return self.wait_until_ready()

    def start(self):
        os.makedirs(self.state_folder, exist_ok=True)
        if os.path.exists(self.ready_file):
            os.remove(self.ready_file)
        with open(self.log_path, "w", encoding="utf-8") as log:
            # A group of its own: Ctrl-C is for the editor, the service is stopped afterwards.
            self.process = subprocess.Popen(self.command, env=self.env, stdin=subprocess.DEVNULL, stdout=log,
                                            stderr=subprocess.STDOUT, start_new_session=True,
                                            preexec_fn=steps.end_with_parent)

    def wait_until_ready(self):
        deadline = time.monotonic() + START_SECONDS
        while not os.path.exists(self.ready_file):
            if self.process.poll() is not None or time.monotonic() > deadline:
                self.stop()
                raise steps.StepFailed(f"The service did not start. Its log, {self.log_path}:\n\n"
                                       f"{steps.tail(self.log_path)}")
            time.sleep(0.02)
        with open(self.ready_file, encoding="utf-8") as ready:
            details = json.load(ready)
        self.port = details["port"]
        self.authority = details["authority"]
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def editor_arguments(self, host_name):
        """What makes an editor reach the service under the name of the real one, certificate and all."""
        return [f"-HttpResolve={host_name}:443:127.0.0.1:{self.port}",
                f"-ini:Engine:[SSL]:DebuggingCertificatePath={self.authority}"]
