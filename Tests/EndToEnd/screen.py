"""A screen of our own, with the editor's window on it, real keys and clicks, and pictures of what is to be seen."""

import json
import os
import shutil
import struct
import subprocess
import time
import unittest
import zlib

import harness
from xvfb import Xvfb

WIDTH, HEIGHT = 1280, 720
WAIT_SECONDS = 20
# How far behind the editor its report of the widgets may be.
REPORT_SECONDS = 0.1
PICTURES = os.path.join(harness.ROOT, "Intermediate", "Pictures")


class Screen(Xvfb):
    """A screen in memory, whose pixels are in a file."""

    def __init__(self, folder):
        self.folder = folder
        super().__init__(WIDTH, HEIGHT, "-fbdir", folder)

    def do(self, *arguments):
        """What a person does: see xdotool."""
        subprocess.run(["xdotool", *map(str, arguments)], env=dict(os.environ, DISPLAY=self.display), check=True,
                       stdout=subprocess.DEVNULL)

    def picture(self, name):
        """Writes the screen into Intermediate/Pictures; returns its rows of RGB bytes."""
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file:
            dump = file.read()
        # The X window dump format: big-endian numbers, then a colour map, then rows of 32 bit pixels.
        header = struct.unpack(">25I", dump[:100])
        header_size, width, height, bytes_per_line, colours = header[0], header[4], header[5], header[12], header[19]
        start = header_size + colours * 12
        rows = []
        for row in range(height):
            line = dump[start + row * bytes_per_line:][:width * 4]
            rgb = bytearray(width * 3)
            rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
            rows.append(bytes(rgb))
        os.makedirs(PICTURES, exist_ok=True)
        write_png(os.path.join(PICTURES, name + ".png"), width, height, rows)
        return rows


def write_png(path, width, height, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    pixels = b"".join(b"\0" + row for row in rows)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)) +
                   chunk(b"IDAT", zlib.compress(pixels)) + chunk(b"IEND", b""))


class ScreenTest(harness.EndToEndTest):
    """A test that sits in front of the editor's window."""

    def setUp(self):
        super().setUp()
        if not shutil.which("Xvfb") or not shutil.which("xdotool"):
            self.skipTest("Xvfb and xdotool are needed")
        folder = os.path.join(self.scratch, "Screen")
        os.makedirs(folder)
        self.screen = Screen(folder)
        self.addCleanup(self.screen.close)
        self.report = os.path.join(self.scratch, "widgets.json")

    def open_editor(self, *arguments):
        command = [word for word in self.editor_command(*arguments, console=False) if word != "-UnattendedClock"]
        self.editor = subprocess.Popen([*command, "-Window", f"-WidgetReport={self.report}"], stdin=subprocess.DEVNULL,
                                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                       env=dict(os.environ, DISPLAY=self.screen.display))
        self.addCleanup(self.editor.kill)

    def close_editor(self):
        """Asks the window to close; the output of the editor, which must have ended well."""
        self.press("alt+F4")
        output, _ = self.editor.communicate(timeout=WAIT_SECONDS)
        self.assertEqual(self.editor.returncode, 0, output)
        return output

    def widgets(self):
        try:
            with open(self.report, encoding="utf-8") as file:
                return json.load(file)
        except FileNotFoundError:
            return []

    def wait_for(self, what, find):
        """Looks at the widgets until something is found, and found again in the same place: a busy machine may report a
        widget before it lies where a click will meet it."""
        end = time.monotonic() + WAIT_SECONDS
        place = None
        while time.monotonic() < end:
            if self.editor.poll() is not None:
                self.fail(f"the editor ended while {what} was awaited:\n{self.editor.stdout.read()}")
            widgets = self.widgets()
            nameless = [each["name"] for each in widgets if each["type"] == "Nameless"]
            self.assertEqual(nameless, [], "these can have the focus, but have no name")
            found = find(widgets)
            if found and (not isinstance(found, dict) or found["bounds"] == place):
                return found
            place = found["bounds"] if found else None
            time.sleep(0.1)
        self.screen.picture("failed")
        self.fail(f"{what} did not come; the screen is in {PICTURES}/failed.png, the widgets are\n" +
                  "\n".join(f"{each['type']} {each['name']!r} {each.get('value', '')!r}" for each in self.widgets()))

    def button(self, name, enabled=True):
        return self.wait_for(f"the button {name!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == "Button" and each["name"] == name
             and each["enabled"] == enabled), None))

    def text(self, part):
        """A text on the panel that has a part."""
        return self.wait_for(f"the text {part!r}", lambda widgets: next(
            (each for each in widgets if part in each.get("value", "")), None))

    def gone(self, name):
        """Waits until no button has the name."""
        self.wait_for(f"the end of the button {name!r}", lambda widgets: widgets and not any(
            each["type"] == "Button" and each["name"] == name for each in widgets))

    def choose(self, menu, entry, picture=None):
        """An entry of a menu, with two clicks."""
        self.click(self.button(menu))
        found = self.wait_for(f"the entry {entry!r}", lambda widgets: next(
            (each for each in reversed(widgets) if each["type"] == "Button" and each["name"] == entry), None))
        if picture:
            self.screen.picture(picture)
        self.click(found)

    def click(self, widget, times=1):
        left, top, right, bottom = widget["bounds"]
        self.screen.do("mousemove", int((left + right) / 2), int((top + bottom) / 2), "click", "--repeat", times,
                       "--delay", 80, 1)

    def type(self, text, delay_milliseconds=5):
        self.screen.do("type", "--delay", delay_milliseconds, text)

    def type_letters(self, text):
        """For letters that are on no key: each is put on one for the moment, which the editor may see too late."""
        for end in range(1, len(text) + 1):
            for _ in range(3):
                self.type(text[end - 1], delay_milliseconds=100)
                if self.comes_to_be(text[:end], seconds=2):
                    break
        self.text(text)

    def comes_to_be(self, text, seconds):
        """Whether a text box holds just this before the time is over."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if any(each.get("value", "") == text for each in self.widgets()):
                return True
            time.sleep(0.1)
        return False

    def press(self, key):
        self.screen.do("key", key)


if __name__ == "__main__":
    unittest.main()
