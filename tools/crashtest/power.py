"""Cuts the power of the program's disk and verifies what is left; "run" describes the options."""

import argparse
import collections
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from disk import EXIT_NOT_POSSIBLE, Disk, NoDisk
from driver import Program, TimedOut, wait_until
from pages import PagesFault, change_every_recipe, read_pages, verify_pages, write_pages
from recipe import RecipeGenerator
from scenarios import Scenarios
from verify import DatabaseFault, journal_of, read_database, verify_recipes

CUTS = 100
RECIPES = 300

# Of five cuts, three are in imports, one is in an edit and one in an export.
KINDS = ("batch", "file", "batch", "file", "file", "batch", "edit", "edit", "export", "export")
EDITS = ("save", "ingredients", "utensils")

# When to cut: during the work, or how many seconds after the program has shown that it is done. What a
# program has not synced, ext4 writes later: names after about 5 seconds, contents after about 30.
MOMENTS = {"during": None, "at once": (0, 0), "1 s": (1, 1), "3 s": (3, 3), "8-12 s": (8, 12)}


class PowerTest:
    def __init__(self, folder, disk, shipped, makepages, seed):
        self._folder = folder
        self._disk = disk
        self._makepages = makepages
        self._random = random.Random(seed)
        self._recipes = RecipeGenerator(self._random)
        program_folder = disk.folder / "program"
        shutil.copytree(shipped, program_folder)
        self._database = program_folder / "data.rbk"
        (folder / "verify").mkdir()
        self._program = Program(program_folder)
        self._scenarios = Scenarios(self._program, self._random, self._recipes)
        self._known = {}
        self._seconds = {}  # how long a scenario takes, by kind
        self.tally = collections.defaultdict(collections.Counter)
        self.lost = 0

    def prepare(self):
        """Makes a database and its pages, and the same with every recipe changed."""
        recipes = self._recipes.recipes(RECIPES - 1, 5, 60)
        batch = self._scenarios.batch_of([*recipes, self._recipes.spare_recipe()])
        self._finish(batch)
        self._known = self._initial = self._read_database()
        verify_recipes(self._known, {}, batch.allowed(shown_done=True))
        self._databases = [self._folder / "initial.rbk", self._folder / "changed.rbk"]
        for database in self._databases:
            shutil.copy(self._database, database)
        change_every_recipe(self._databases[1])
        self._page_folders = [
            write_pages(database, database.with_suffix(".pages"), self._makepages)
            for database in self._databases
        ]
        self._reset()

    def measure(self):
        """Does work of each kind once without a cut."""
        for kind in ("batch", "file", *EDITS, "export"):
            scenario = self._scenario(kind)
            self._seconds[kind] = self._finish(scenario)
            self._known = self._read_database()
        self._reset()

    def run(self, cuts):
        plan = []
        while len(plan) < cuts:
            moments = list(MOMENTS)
            self._random.shuffle(moments)
            plan += [(kind, moment) for moment in moments for kind in KINDS]
        for kind, moment in plan[:cuts]:
            try:
                if kind == "export":
                    self._cut_in_export(moment)
                else:
                    self._cut_in_change(kind, moment)
            except (DatabaseFault, PagesFault) as fault:
                self._report_lost(kind, moment, fault)

    def _cut_in_change(self, kind, moment):
        scenario_name = self._random.choice(EDITS) if kind == "edit" else kind
        scenario = self._scenario(scenario_name)
        self._cut_in(scenario_name, scenario, moment)
        self._tally(kind, moment)["cuts"] += 1
        recipes = self._read_database()
        verify_recipes(recipes, self._known, scenario.allowed(moment != "during"))
        self._known = recipes
        done = scenario.count_done(recipes)
        outcome = "none" if done == 0 else "all" if done == len(scenario.after) else "part"
        self._tally(kind, moment)[outcome] += 1

    def _cut_in_export(self, moment):
        old, new = (read_pages(folder) for folder in self._page_folders)
        pages = self._scenarios.pages
        if verify_pages(pages, old, new):
            old, new = new, old
            self._put_database(self._databases[0])
        else:
            self._put_database(self._databases[1])
        self._cut_in("export", self._scenario("export"), moment)
        self._tally("export", moment)["cuts"] += 1
        is_new = verify_pages(pages, old, new)
        self._tally("export", moment)["all" if is_new else "none"] += 1
        self._put_database(self._databases[0])
        self._known = self._initial

    def _scenario(self, kind):
        if kind == "batch":  # large enough for several transactions
            return self._scenarios.batch_of(self._recipes.recipes(1500, 50, 250))
        return getattr(self._scenarios, kind)(self._known)

    def _cut_in(self, kind, scenario, moment):
        scenario.begin()
        if moment == "during":
            self._wait_during(self._seconds[kind])
        else:
            scenario.wait_end()
            time.sleep(self._random.uniform(*MOMENTS[moment]))
        self._disk.cut_power()
        self._program.kill()
        self._disk.restart()

    def _wait_during(self, duration):
        """Waits for a random time, or until a transaction has begun and a little longer."""
        if self._random.random() < 0.5:
            time.sleep(self._random.uniform(0, 1.1 * duration))
        else:
            wait_until(journal_of(self._database).exists, 2 * duration, pause=0.0002)
            time.sleep(self._random.uniform(0, 0.03))

    def _finish(self, scenario):
        """Does the work without a cut, and returns how many seconds it takes."""
        begun = time.monotonic()
        scenario.begin()
        scenario.wait_end()
        seconds = time.monotonic() - begun
        self._program.kill()
        return seconds

    def _read_database(self):
        return read_database(self._database, self._folder / "verify").recipes

    def _reset(self):
        """Puts the initial database and its pages on the disk."""
        shutil.rmtree(self._scenarios.pages.parent, ignore_errors=True)
        shutil.copytree(self._page_folders[0], self._scenarios.pages)
        self._put_database(self._databases[0])
        self._known = self._initial

    def _put_database(self, database):
        journal_of(self._database).unlink(missing_ok=True)
        shutil.copy(database, self._database)
        self._disk.sync()

    def _tally(self, kind, moment):
        return self.tally[kind, moment]

    def _report_lost(self, kind, moment, fault):
        print(f"{kind}, {moment}: {fault}", flush=True)
        if self.lost == 0:
            self._disk.sync()
            shutil.copy(self._disk.image, self._folder / "first-fault.img")
        self.lost += 1
        self._tally(kind, moment)["lost"] += 1
        self._reset()

    def report(self):
        """Prints how many cuts lost something, and after how many none, part or all of the work was
        there: for an export, the old pages or the new ones."""
        columns = ("cuts", "lost", "none", "part", "all")
        lines = [("", "", *columns)]
        for kind in dict.fromkeys(KINDS):
            for moment in MOMENTS:
                row = self._tally(kind, moment)
                if row["cuts"]:
                    lines.append((kind, moment, *(row[name] for name in columns)))
        lines.append(("total", "", *(sum(row[n] for row in self.tally.values()) for n in columns)))
        for kind, moment, *rest in lines:
            print(f"{kind:8}{moment:8}", *(f"{cell:>6}" for cell in rest))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program_folder", type=Path)
    parser.add_argument("makepages", type=Path)
    parser.add_argument("--cuts", type=int, default=CUTS)
    parser.add_argument("--seed", type=int, default=time.time_ns() % 1_000_000)
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)

    folder = Path(tempfile.mkdtemp(prefix="crashtest-"))
    print(f"{options.cuts} cuts, mode power, seed {options.seed}, in {folder}", flush=True)
    kept = f"The folder {folder} is kept, and in it the disk."
    begun = time.monotonic()
    try:
        with Disk(folder) as disk:
            test = PowerTest(
                folder, disk, options.program_folder, options.makepages.resolve(), options.seed
            )
            test.prepare()
            test.measure()
            try:
                test.run(options.cuts)
            finally:
                test.report()
    except NoDisk as reason:
        print(f"tools/crashtest: {reason}", file=sys.stderr)
        sys.exit(EXIT_NOT_POSSIBLE)
    except (DatabaseFault, PagesFault, TimedOut) as fault:
        subprocess.run(["import", "-window", "root", folder / "screen.png"], check=False)
        sys.exit(f"{type(fault).__name__}: {fault}\n{kept}")
    except KeyboardInterrupt:
        sys.exit(f"Stopped. {kept}")
    if test.lost:
        sys.exit(f"{test.lost} cuts lost something. The first of them left first-fault.img. {kept}")
    shutil.rmtree(folder)
    print(f"Nothing was lost. It took {time.monotonic() - begun:.0f} seconds.")


if __name__ == "__main__":
    main()
