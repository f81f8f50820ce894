"""A project that 'kestrel-service connect' has prepared reaches the service, and is as before after 'disconnect'."""

import os
import subprocess
import unittest

import harness
from harness import EndToEndTest

from service import LocalService


class ConnectTest(EndToEndTest):
    def run_command(self, service, *arguments):
        done = subprocess.run([service.command[0], *arguments, "--project", self.project], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_the_editor_talks_to_the_service_of_a_connected_project(self):
        self.write("Config/DefaultEngine.ini", "[Moor]\nWind=3")
        before = self.files_of_project("Config")
        service = LocalService(harness.PRESET, os.path.join(self.scratch, "Service"))
        with service:
            self.run_command(service, "connect", "--state", service.state_folder, "--port", str(service.port), "--yes")
            run = self.run_editor("-Prompt=read Config/DefaultGame.ini", "-Approve")
            self.assert_in_order(run, f"localhost:{service.port}", "Feathers=12", "[ User End ]")
            self.run_command(service, "disconnect")
        self.assertEqual(self.files_of_project("Config"), before)


if __name__ == "__main__":
    unittest.main()
