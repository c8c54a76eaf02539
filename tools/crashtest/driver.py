"""The program as a process, and the driver on its keyboard."""

import os
import signal
import subprocess
import time
from pathlib import Path

PATIENCE = 20  # seconds


class Lost(Exception):
    """The program did not come to show what it should have shown."""


def wait_until(condition, seconds=PATIENCE, pause=0.01):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(pause)
    return True


def title():
    """Of the window that has the keyboard. The frame's names the child that fills the frame."""
    command = ["xdotool", "getwindowfocus", "getwindowname"]
    answer = subprocess.run(command, capture_output=True, text=True, check=False)
    return answer.stdout.rstrip("\n")


class Program:
    """In its own folder, with a home there."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self._process = None
        self._last_keys = None
        self._title_of_none = title()
        home = self.folder / "home"
        self._environment = dict(os.environ, HOME=str(home), TMPDIR=str(home))
        for name in ("CONFIG_HOME", "DATA_HOME", "CACHE_HOME", "STATE_HOME", "RUNTIME_DIR"):
            directory = home / name
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
        self._reap_keys()
        if not wait_until(lambda: title() == self._title_of_none):
            raise Lost("the windows stay behind")

    def press(self, *keys):
        """Does not wait until the keys are down."""
        self._reap_keys()
        self._last_keys = subprocess.Popen(["xdotool", "key", "--delay", "4", *keys])

    def press_all(self, *keys):
        self.press(*keys)
        self._reap_keys()

    def write_over(self, text):
        self.press_all("ctrl+a")
        subprocess.run(["xdotool", "type", "--delay", "4", text], check=True)

    def wait_title(self, *expected):
        if not wait_until(lambda: title() in expected or self.ended()) or self.ended():
            raise Lost(f"waited for {' or '.join(expected)}; there is {title()!r}")
        return title()

    def open_first(self, key, window):
        """Starts the program and opens a window, which fills the frame, as do all later ones."""
        self.start()
        self.wait_title("Pantrywise")
        self.press_all(key)
        caption = ["getwindowfocus", "mousemove", "--window", "%1", "200", "35"]
        double_click = ["click", "--repeat", "2", "--delay", "20", "1"]
        for _ in range(PATIENCE):  # on a busy machine two clicks can be too far apart for one
            subprocess.run(["xdotool", *caption, *double_click], check=True)
            if wait_until(lambda: title() == child(window), seconds=2):
                return
        raise Lost(f"{window} did not open")

    def _reap_keys(self):
        if self._last_keys:
            self._last_keys.wait()
            self._last_keys = None


def child(window):
    return f"Pantrywise - [{window}]"


def child_shown(shown):
    """The caption of the child that a title names."""
    return shown.removeprefix("Pantrywise - [").removesuffix("]")
