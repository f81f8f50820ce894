"""Xvfb: a screen in memory."""

import os
import subprocess


class Xvfb:
    """Runs from its creation to close(); display is what DISPLAY has to be."""

    def __init__(self, width, height, *arguments):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
             *arguments], pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as number:
            self.display = ":" + number.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.server.terminate()
        self.server.wait()
