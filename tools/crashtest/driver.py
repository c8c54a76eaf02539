"""Runs the program as a process and drives it by the keyboard."""

import os
import signal
import subprocess
import time
from pathlib import Path

TIMEOUT = 20  # seconds


class TimedOut(Exception):
    """The program did not show in time what was expected."""


def wait_until(condition, seconds=TIMEOUT, pause=0.01):
    """Returns whether the condition became true in time."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(pause)
    return True


def title():
    """Returns the title of the window with the keyboard focus. The main window's title names the
    child window that is maximised in it."""
    command = ["xdotool", "getwindowfocus", "getwindowname"]
    answer = subprocess.run(command, capture_output=True, text=True, check=False)
    return answer.stdout.rstrip("\n")


class Program:
    """The program in its folder, which also holds its home directory."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self._process = None
        self._keys = None
        self._title_without_program = title()
        self.home = self.folder / "home"
        self._environment = dict(os.environ, HOME=str(self.home), TMPDIR=str(self.home))
        for name in ("CONFIG_HOME", "DATA_HOME", "CACHE_HOME", "STATE_HOME", "RUNTIME_DIR"):
            directory = self.home / name
            directory.mkdir(parents=True, mode=0o700, exist_ok=True)
            self._environment["XDG_" + name] = str(directory)

    def start(self, *arguments):
        with open(self.folder / "log", "ab") as log:
            self._process = subprocess.Popen(
                [str(self.folder / "pantrywise"), *arguments],
                cwd=self.folder, env=self._environment, stdout=log, stderr=log,
            )

    def ended(self):
        return self._process.poll() is not None

    def ended_well(self):
        return self._process.poll() == 0

    def kill(self):
        self._process.send_signal(signal.SIGKILL)
        self._process.wait()
        self._wait_for_keys()
        if not wait_until(lambda: title() == self._title_without_program):
            raise TimedOut("the windows of the killed program are still there")

    def press(self, *keys):
        """Begins to press the keys, and returns at once."""
        self._wait_for_keys()
        self._keys = subprocess.Popen(["xdotool", "key", "--delay", "4", *keys])

    def press_all(self, *keys):
        self.press(*keys)
        self._wait_for_keys()

    def replace_text(self, text):
        self.press_all("ctrl+a")
        subprocess.run(["xdotool", "type", "--delay", "4", text], check=True)

    def wait_title(self, *expected):
        if not wait_until(lambda: title() in expected or self.ended()) or self.ended():
            raise TimedOut(f"expected the window {' or '.join(expected)}, but {title()!r} is shown")
        return title()

    def open_first(self, key, window):
        """Starts the program, opens a child window and maximises it, so that all later ones are
        maximised too."""
        self.start()
        self.wait_title("Pantrywise")
        self.press_all(key)
        caption = ["getwindowfocus", "mousemove", "--window", "%1", "200", "35"]
        double_click = ["click", "--repeat", "2", "--delay", "20", "1"]
        for _ in range(TIMEOUT):  # on a busy machine the clicks can be too far apart
            subprocess.run(["xdotool", *caption, *double_click], check=True)
            if wait_until(lambda: title() == child(window), seconds=2):
                return
        raise TimedOut(f"{window} did not open")

    def _wait_for_keys(self):
        if self._keys:
            self._keys.wait()
            self._keys = None


def child(window):
    """Returns the main window's title while that child window is maximised."""
    return f"Pantrywise - [{window}]"


def child_caption(shown):
    """Returns the caption of the child window that a main window's title names."""
    return shown.removeprefix("Pantrywise - [").removesuffix("]")
