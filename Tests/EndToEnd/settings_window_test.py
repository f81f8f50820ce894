"""Menus, project settings, the output log and the remembered layout, with real keys and clicks."""

import os
import unittest

from screen import ScreenTest


class SettingsWindowTest(ScreenTest):
    def find(self, kind, name):
        return self.wait_for(f"the {kind} {name!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == kind and each["name"] == name), None))

    def lost(self, kind, name):
        self.wait_for(f"the end of the {kind} {name!r}", lambda widgets: widgets and not any(
            each["type"] == kind and each["name"] == name for each in widgets))

    def value(self, kind, name, value):
        return self.wait_for(f"{name!r} as {value!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == kind and each["name"] == name and each["value"] == value),
            None))

    def focused(self, name):
        self.wait_for(f"the focus on {name!r}",
                      lambda widgets: any(each["focused"] and each["name"] == name for each in widgets))

    def wait_for_file(self, part, *names):
        """Settings are saved at each edit."""
        def read(_):
            try:
                with open(os.path.join(self.project, *names), encoding="utf-8") as file:
                    return part in file.read()
            except FileNotFoundError:
                return False
        self.wait_for(f"{part!r} in {names[-1]}", read)

    SETTINGS = ("Saved", "Config", "LinuxEditor", "EditorPerUserSettings.ini")

    def test_settings_are_found_edited_and_saved(self):
        self.open_editor()
        self.click(self.button("Edit"))
        self.button("Project Settings...")
        self.screen.picture("menu")
        self.click(self.button("Project Settings..."))
        self.gone("Project Settings...")
        key = self.find("TextEdit", "API Key")
        self.screen.picture("settings")
        self.click(key)
        self.type("secret-1")
        self.press("Return")
        self.wait_for_file("ApiKey=secret-1", *self.SETTINGS)
        self.assertFalse(any("secret-1" in each.get("value", "") for each in self.widgets()), "the key is on the screen")
        self.click(self.find("CheckBox", "Display File Changes In Chat"))
        self.wait_for_file("bDisplayFileChangesInChat=False", *self.SETTINGS)

        self.click(self.find("TextEdit", "Search"))
        self.type("retention")
        self.lost("TextEdit", "API Key")
        self.click(self.value("ComboBox", "Log Retention Policy", "Keep Last 30 Days"))
        self.button("Always Delete All Logs")
        self.screen.picture("settings-choice")
        self.press("Down")
        self.focused("Always Delete All Logs")
        self.press("Up")
        self.focused("Keep All Logs")
        self.press("Return")
        self.value("ComboBox", "Log Retention Policy", "Keep All Logs")
        self.wait_for_file("LogRetentionPolicy=KeepAll", *self.SETTINGS)

        self.click(self.find("TextEdit", "Search"))
        self.press("ctrl+a")
        self.type("approval")
        self.lost("ComboBox", "Log Retention Policy")
        self.click(self.button("Add to Approval Rules"))
        self.click(self.find("ComboBox", "Decision"))
        self.click(self.button("Allow, even if risky"))
        self.click(self.find("TextEdit", "Path"))
        self.type("Docs/**\t")
        self.screen.picture("settings-rules")
        self.wait_for_file("Docs/**", *self.SETTINGS)

        self.click(self.find("TextEdit", "Search"))
        self.press("ctrl+a")
        self.type("extensions")
        self.find("TextEdit", "Supported File Extensions [0]")
        self.value("TextEdit", "Search", "extensions")
        self.lost("CheckBox", "Reset Excluded Directories")
        self.click(self.button("Clear Supported File Extensions"))
        self.lost("TextEdit", "Supported File Extensions [0]")
        self.click(self.button("Add to Supported File Extensions"))
        self.click(self.find("TextEdit", "Supported File Extensions [0]"))
        self.type("lua\t")
        self.wait_for_file("SupportedFileExtensions=lua", *self.SETTINGS)
        self.screen.picture("settings-list")
        self.click(self.find("CheckBox", "Reset Supported File Extensions"))
        self.find("TextEdit", "Supported File Extensions [9]")
        self.value("CheckBox", "Reset Supported File Extensions", "false")
        self.close_editor()

    def test_menus_are_worked_with_the_keyboard_alone(self):
        self.open_editor()
        self.button("File")
        self.press("F10")
        self.focused("File")
        self.press("Right")
        self.focused("Edit")
        self.press("Down")
        # Nothing has been done that could be undone: the entries above are passed over.
        self.focused("Undo History")
        self.press("Down")
        self.focused("Project Settings...")
        self.press("Right")
        self.focused("Content Browser")
        self.screen.picture("menu-keys")
        self.press("Escape")
        self.gone("Content Browser")
        self.focused("Edit")
        self.press("Escape")
        self.wait_for("no focus on the menu bar",
                      lambda widgets: not any(each["focused"] for each in widgets if each["type"] == "Button"))
        self.press("Alt_L")
        self.focused("File")
        self.press("Left")
        self.press("Return")
        self.focused("Content Browser")
        self.press("Down")
        self.focused("Output Log")
        self.press("Return")
        self.text("LogInit: Project: ")
        self.close_editor()

    def test_the_log_is_filtered_and_cleared_and_tool_tips_come(self):
        self.open_editor()
        self.choose("Window", "Output Log")
        self.text("LogInit: Project: ")
        self.screen.picture("log")
        self.click(self.find("TextEdit", "Search Log"))
        self.type("no such words")
        self.value("Text", "Log", "")
        self.press("ctrl+z")
        clear = self.button("Clear Log")
        left, top, right, bottom = clear["bounds"]
        self.screen.do("mousemove", int((left + right) / 2), int((top + bottom) / 2))
        tip = "Takes the lines off this view; the log file keeps them"
        self.find("Text", tip)
        self.screen.picture("log-tool-tip")
        self.screen.do("click", 1)
        self.lost("Text", tip)
        self.close_editor()

    def test_the_layout_comes_back(self):
        self.open_editor()
        self.choose("Window", "Output Log")
        self.choose("Edit", "Project Settings...")
        self.find("TextEdit", "API Key")
        self.close_editor()
        self.wait_after_end(r"\"ForegroundTab\":\"ProjectSettings\"")
        # A window on a screen that is not there any more.
        layout = os.path.join(self.project, "Saved", "Config", "LinuxEditor", "EditorLayout.ini")
        self.replace_lines(layout, {"PositionX": "9000.0", "SizeX": "900.0", "SizeY": "600.0"})
        os.remove(self.report)
        self.open_editor()
        self.find("TextEdit", "API Key")
        self.button("Output Log")
        window = self.wait_for("the window", lambda widgets: next(
            (each for each in widgets if each["type"] == "Window"), None))
        self.assertEqual(window["bounds"], [190, 60, 1090, 660])
        self.screen.picture("restored")
        self.click(self.button("Output Log"))
        self.text("LogInit: Project: ")
        self.close_editor()

    def wait_after_end(self, part):
        with open(os.path.join(self.project, "Saved", "Config", "LinuxEditor", "EditorLayout.ini"),
                  encoding="utf-8") as file:
            self.assertIn(part, file.read())

    def replace_lines(self, path, values):
        with open(path, encoding="utf-8") as file:
            lines = file.read().splitlines()
        with open(path, "w", encoding="utf-8") as file:
            for line in lines:
                key = line.split("=")[0]
                file.write(f"{key}={values[key]}\n" if key in values else line + "\n")


if __name__ == "__main__":
    unittest.main()
