"""Kills the program at random moments and verifies its database; "run" describes the options."""

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

from driver import Program, TimedOut, wait_until
from recipe import RecipeGenerator
from scenarios import Scenarios
from verify import DatabaseFault, journal_of, read_database, verify_recipes

KILLS = {"batch": 200, "all": 1000}
KILLS_PER_DATABASE = 25

# When to kill the program: at a random time; when a transaction has begun; when it writes to the
# database file itself; when it shows that the work is done, which must then be in the file.
MOMENTS = ("time", "journal", "write", "end")


class CrashTest:
    def __init__(self, shipped, seed):
        self.folder = Path(tempfile.mkdtemp(prefix="crashtest-"))
        self._program_folder = self.folder / "program"
        shutil.copytree(shipped, self._program_folder)
        self._database = self._program_folder / "data.rbk"
        self._initial_database = self.folder / "initial.rbk"
        (self.folder / "verify").mkdir()
        self._random = random.Random(seed)
        self._recipes = RecipeGenerator(self._random)
        self._program = Program(self._program_folder)
        self._scenarios = Scenarios(self._program, self._random, self._recipes)
        self._known = {}
        self._seconds = {}  # how long a scenario takes for each recipe, by kind
        self.tally = collections.defaultdict(collections.Counter)

    def prepare(self):
        """Imports the initial recipes in a batch that is killed only when it is done."""
        recipes = [*self._recipes.recipes(30, 5, 400), self._recipes.spare_recipe()]
        self._known = self._read_database().recipes
        self._kill_in("first batch", self._scenarios.batch_of(recipes), "end")
        self._initial = self._known
        shutil.copy(self._database, self._initial_database)

    def batches(self, kills):
        """Kills batches. The files that a killed batch has not imported form the next batch."""
        rest = []
        for _ in range(kills):
            if not rest:
                self._reset_database()
                rest = self._recipes.recipes(2000, 40, 160)
            self._kill_in("batch", self._scenarios.batch_of(rest))
            rest = [recipe for recipe in rest if recipe.name not in self._known]

    def everything(self, kills):
        """Kills scenarios of all kinds, in random order."""
        kinds = ("file", "batch", "save", "ingredients", "utensils")
        for number in range(kills):
            if number % KILLS_PER_DATABASE == 0:
                self._reset_database()
            kind = self._random.choice(kinds)
            self._kill_in(kind, getattr(self._scenarios, kind)(self._known))

    def finish(self):
        """Lets the program open the file that the last kill has left, and removes the folder."""
        self._kill_in("last file", self._scenarios.file(self._known), "end")
        shutil.rmtree(self.folder)

    def _reset_database(self):
        journal_of(self._database).unlink(missing_ok=True)
        shutil.copy(self._initial_database, self._database)
        self._known = self._initial

    def _kill_in(self, kind, scenario, moment=None):
        if kind not in self._seconds:
            moment = "end"
        moment = moment or self._random.choice(MOMENTS)
        begun = time.time_ns()
        self._wait_for(moment, kind, scenario)
        self._program.kill()
        contents = self._read_database()
        verify_recipes(contents.recipes, self._known, scenario.allowed(moment == "end"))
        self._count(kind, scenario, contents, moment, begun)
        self._known = contents.recipes

    def _read_database(self):
        return read_database(self._database, self.folder / "verify")

    def _wait_for(self, moment, kind, scenario):
        written = os.stat(self._database).st_mtime_ns
        begun = time.monotonic()
        scenario.begin()
        if moment == "end":
            scenario.wait_end()
            self._seconds[kind] = (time.monotonic() - begun) / len(scenario.after)
            return
        duration = self._seconds[kind] * len(scenario.after)
        if moment == "time":
            time.sleep(self._random.uniform(0, 1.1 * duration))
            return
        if len(scenario.after) > 1:  # a batch: do not always take its first transaction
            time.sleep(self._random.uniform(0, 0.9 * duration))
            written = os.stat(self._database).st_mtime_ns
        if moment == "journal":
            wait_until(journal_of(self._database).exists, 2 * duration, pause=0.0002)
            time.sleep(self._random.uniform(0, 0.01))
        else:
            wait_until(
                lambda: os.stat(self._database).st_mtime_ns != written, 2 * duration, pause=0.0002
            )

    def _count(self, kind, scenario, contents, moment, begun):
        interrupted = contents.journal >= begun  # an older journal is from the previous kill
        done = scenario.count_done(contents.recipes)
        tally = self.tally[kind]
        tally["kills"] += 1
        tally["shown done"] += moment == "end"
        tally["journal"] += interrupted
        tally["rolled back"] += interrupted and contents.rolled_back
        tally["none"] += done == 0
        tally["part"] += 0 < done < len(scenario.after)
        tally["all"] += done == len(scenario.after)

    def report(self):
        """Prints how many kills left a journal, pages to roll back, and none, part or all of the
        work."""
        columns = ("kills", "shown done", "journal", "rolled back", "none", "part", "all")
        lines = [("", *columns)]
        lines += [(kind, *(row[name] for name in columns)) for kind, row in self.tally.items()]
        total = (sum(row[name] for row in self.tally.values()) for name in columns)
        lines.append(("total", *total))
        for first, *rest in lines:
            print(f"{first:12}", *(f"{cell:>11}" for cell in rest))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program_folder", type=Path)
    parser.add_argument("mode", choices=KILLS)
    parser.add_argument("--kills", type=int)
    parser.add_argument("--seed", type=int, default=time.time_ns() % 1_000_000)
    options = parser.parse_args()
    kills = options.kills or KILLS[options.mode]

    crashtest = CrashTest(options.program_folder, options.seed)
    settings = f"mode {options.mode}, seed {options.seed}, in {crashtest.folder}"
    print(f"{kills} kills, {settings}", flush=True)
    begun = time.monotonic()
    try:
        crashtest.prepare()
        (crashtest.batches if options.mode == "batch" else crashtest.everything)(kills)
        crashtest.finish()
    except (DatabaseFault, TimedOut) as fault:
        subprocess.run(["import", "-window", "root", crashtest.folder / "screen.png"], check=False)
        crashtest.report()
        sys.exit(f"{type(fault).__name__}: {fault}\nThe folder {crashtest.folder} is kept.")
    except KeyboardInterrupt:
        crashtest.report()
        sys.exit(f"Stopped. The folder {crashtest.folder} is kept.")
    crashtest.report()
    print(f"Every recipe was whole. It took {time.monotonic() - begun:.0f} seconds.")


if __name__ == "__main__":
    main()
