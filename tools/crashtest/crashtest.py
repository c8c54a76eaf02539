"""Kills the program again and again and looks at what it leaves; "run" says how to call it."""

import argparse
import collections
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from verify import Broken, examine, journal_of, judge
from scenarios import Scenarios
from driver import Lost, Program, wait_until
from recipe import Cookbook

KILLS = {"batch": 200, "all": 1000}
KILLS_A_DATABASE = 25

# When to kill: at any time; when a transaction has begun; when the database itself is being written
# to; when the program shows that the work is done, which then must be in the file.
MOMENTS = ("clock", "journal", "write", "end")


class CrashTest:
    def __init__(self, shipped, seed):
        self.folder = Path(tempfile.mkdtemp(prefix="crashtest-"))
        self._place = self.folder / "program"
        shutil.copytree(shipped, self._place)
        self._database = self._place / "data.rbk"
        self._first_database = self.folder / "first.rbk"
        (self.folder / "verify").mkdir()
        self._random = random.Random(seed)
        self._cookbook = Cookbook(self._random)
        self._program = Program(self._place)
        self._scenarios = Scenarios(self._program, self._random, self._cookbook)
        self._known = {}
        self._seconds = {}  # how long a deed of a kind lasts for each recipe
        self.tally = collections.defaultdict(collections.Counter)

    def prepare(self):
        """A batch that is left alone gives the first recipes."""
        recipes = [*self._cookbook.recipes(30, 5, 400), self._cookbook.spare_recipe()]
        self._known = examine(self._database, self.folder / "verify").recipes
        self._kill_in("first batch", self._scenarios.batch_of(recipes), "end")
        self._first = self._known
        shutil.copy(self._database, self._first_database)

    def batches(self, kills):
        """What a killed batch has left undone is the next one."""
        rest = []
        for _ in range(kills):
            if not rest:
                self._start_afresh()
                rest = self._cookbook.recipes(2000, 40, 160)
            self._kill_in("batch", self._scenarios.batch_of(rest))
            rest = [recipe for recipe in rest if recipe.name not in self._known]

    def everything(self, kills):
        kinds = ("file", "batch", "save", "ingredients", "utensils")
        for number in range(kills):
            if number % KILLS_A_DATABASE == 0:
                self._start_afresh()
            kind = self._random.choice(kinds)
            self._kill_in(kind, getattr(self._scenarios, kind)(self._known))

    def finish(self):
        """The last file that was left behind is opened once more by the program."""
        self._kill_in("last file", self._scenarios.file(self._known), "end")
        shutil.rmtree(self.folder)

    def _start_afresh(self):
        journal_of(self._database).unlink(missing_ok=True)
        shutil.copy(self._first_database, self._database)
        self._known = self._first

    def _kill_in(self, kind, deed, moment=None):
        if kind not in self._seconds:
            moment = "end"
        moment = moment or self._random.choice(MOMENTS)
        begun = time.time_ns()
        self._wait_for(moment, kind, deed)
        self._program.kill()
        left = examine(self._database, self.folder / "verify")
        judge(left.recipes, self._known, self._allowed(deed, moment))
        self._count(kind, deed, left, moment, begun)
        self._known = left.recipes

    def _wait_for(self, moment, kind, deed):
        written = os.stat(self._database).st_mtime_ns
        begun = time.monotonic()
        deed.press()
        if moment == "end":
            deed.wait_end()
            self._seconds[kind] = (time.monotonic() - begun) / len(deed.after)
            return
        lasts = self._seconds[kind] * len(deed.after)
        if moment == "clock":
            time.sleep(self._random.uniform(0, 1.1 * lasts))
            return
        if len(deed.after) > 1:  # many transactions: not always the first one
            time.sleep(self._random.uniform(0, 0.9 * lasts))
            written = os.stat(self._database).st_mtime_ns
        if moment == "journal":
            wait_until(journal_of(self._database).exists, 2 * lasts, pause=0.0002)
            time.sleep(self._random.uniform(0, 0.01))
        else:
            wait_until(
                lambda: os.stat(self._database).st_mtime_ns != written, 2 * lasts, pause=0.0002
            )

    @staticmethod
    def _allowed(deed, moment):
        if moment == "end":
            return {name: (after,) for name, after in deed.after.items()}
        return {name: (deed.before[name], after) for name, after in deed.after.items()}

    def _count(self, kind, deed, left, moment, begun):
        struck = left.journal >= begun  # an older one is from the kill before
        done = sum(left.recipes.get(name) == after for name, after in deed.after.items())
        tally = self.tally[kind]
        tally["kills"] += 1
        tally["seen done"] += moment == "end"
        tally["journal"] += struck
        tally["undone"] += struck and left.undone
        tally["none of it"] += done == 0
        tally["part"] += 0 < done < len(deed.after)
        tally["all of it"] += done == len(deed.after)

    def report(self):
        """How many kills left a journal, pages to undo, and none, part or all of the work."""
        columns = ("kills", "seen done", "journal", "undone", "none of it", "part", "all of it")
        lines = [("", *columns)]
        lines += [(kind, *(row[name] for name in columns)) for kind, row in self.tally.items()]
        total = (sum(row[name] for row in self.tally.values()) for name in columns)
        lines.append(("together", *total))
        for first, *rest in lines:
            print(f"{first:12}", *(f"{cell:>10}" for cell in rest))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program_folder", type=Path)
    parser.add_argument("mode", choices=KILLS)
    parser.add_argument("--kills", type=int)
    parser.add_argument("--seed", type=int, default=time.time_ns() % 1_000_000)
    options = parser.parse_args()
    kills = options.kills or KILLS[options.mode]

    crashtest = CrashTest(options.program_folder, options.seed)
    print(f"{kills} kills, mode {options.mode}, seed {options.seed}, in {crashtest.folder}", flush=True)
    begun = time.monotonic()
    try:
        crashtest.prepare()
        (crashtest.batches if options.mode == "batch" else crashtest.everything)(kills)
        crashtest.finish()
    except (Broken, Lost) as fault:
        subprocess.run(["import", "-window", "root", crashtest.folder / "screen.png"], check=False)
        crashtest.report()
        sys.exit(f"{type(fault).__name__}: {fault}\nEverything is in {crashtest.folder}")
    except KeyboardInterrupt:
        crashtest.report()
        sys.exit(f"Stopped; what there is, is in {crashtest.folder}")
    crashtest.report()
    print(f"All whole, in {time.monotonic() - begun:.0f} seconds.")


if __name__ == "__main__":
    main()
