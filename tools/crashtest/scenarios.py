"""What the program does when it is killed or the power is cut. Each scenario prepares its work up to
the last key."""

import shutil
from typing import Callable, NamedTuple

from driver import TimedOut, child, child_caption, title, wait_until
from recipe import SPARE, SPARE_LINE


class Scenario(NamedTuple):
    begin: Callable  # begins the work, and returns at once
    wait_end: Callable  # waits until the program shows that the work is done
    before: dict  # the recipes concerned by name; None for one that is not in the database
    after: dict

    def allowed(self, shown_done):
        """Returns the states that each recipe may be in, by name."""
        if shown_done:
            return {name: (after,) for name, after in self.after.items()}
        return {name: (self.before[name], after) for name, after in self.after.items()}

    def count_done(self, recipes):
        return sum(recipes.get(name) == after for name, after in self.after.items())


class Scenarios:
    def __init__(self, program, random, recipes):
        self._program = program
        self._random = random
        self._recipes = recipes
        self._marks = 0

    # Importing

    def file(self, _known):
        recipe = self._recipes.recipe(self._random.randint(5, 2000))
        path = self._program.folder / "single.srf"
        path.write_text(recipe.srf(), newline="")

        def wait_end():
            if not wait_until(self._program.ended_well):
                raise TimedOut(f"the import of {path} did not succeed")

        return Scenario(
            lambda: self._program.start(str(path)), wait_end,
            {recipe.name: None}, {recipe.name: recipe},
        )

    def batch(self, _known):
        return self.batch_of(self._recipes.recipes(300, 50, 250))

    def batch_of(self, recipes):
        folder = self._program.folder / "recipes"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        for recipe in recipes:
            (folder / (recipe.name + ".srf")).write_text(recipe.srf(), newline="")
        self._program.open_first("F9", "Import Recipes")
        self._program.press_all(*["Tab"] * 5)  # to Import

        def is_over():
            # The key opens the recipe list only when no import is running.
            if title() == child("Import Recipes"):
                self._program.press_all("F5")
            return title() == child("Recipes")

        def wait_end():
            if not wait_until(is_over, seconds=120):
                raise TimedOut("the batch did not end")

        return Scenario(
            lambda: self._program.press("Return"), wait_end,
            {recipe.name: None for recipe in recipes},
            {recipe.name: recipe for recipe in recipes},
        )

    # The record window

    def save(self, known):
        """Changes author and description. Half of the time, the question at closing saves them."""
        old = self._open_recipe(known)
        self._marks += 1
        mark = f"Mark {self._marks}"
        program = self._program
        program.press_all("alt+d")
        program.wait_title("Recipe Name")
        program.press_all("Return")
        program.wait_title(child(old.name))
        program.replace_text(mark)
        program.press_all(*["Tab"] * 15, "space")  # to Description
        program.wait_title("Enter Description")
        program.replace_text(mark)
        program.press_all("Tab", "Return")
        program.wait_title(child(old.name))
        if self._random.random() < 0.5:
            keys = ["alt+s", "alt+o"]
        else:
            program.press_all("alt+o")
            program.wait_title("Save Changes")
            keys = ["Return"]
        new = old._replace(author=mark, description=mark)
        return self._change(old, new, keys, "Recipes")

    def ingredients(self, known):
        old = self._open_recipe(known)
        self._program.press_all(*["Tab"] * 5, "space")  # to Change
        self._program.wait_title(child("Change Ingredients"))
        self._program.press_all(*([] if SPARE_LINE in old.ingredients else ["alt+a"]), "alt+r")
        new = old._replace(ingredients=_rotated(old.ingredients, SPARE_LINE))
        return self._change(old, new, ["alt+o"], old.name)

    def utensils(self, known):
        old = self._open_recipe(known)
        self._program.press_all(*["Tab"] * 7, "space")  # to the other Change
        self._program.wait_title(child("Change Untensils"))
        self._program.press_all("shift+Tab", "Home", "Delete", "Tab", "Home")
        if SPARE not in old.utensils:
            self._program.press_all("alt+a")
        new = old._replace(utensils=_rotated(old.utensils, SPARE))
        return self._change(old, new, ["alt+o"], old.name)

    # Exporting

    def export(self, _known):
        """Exports the web pages into `pages`, which is where the chooser begins."""
        lock = self.pages.with_suffix(".lock")
        program = self._program
        program.start()
        program.wait_title("Pantrywise")
        program.press_all("ctrl+F9")
        program.wait_title("Choose a folder for the web pages")

        def wait_end():
            # The progress has the same title. The lock is there as long as pages are written.
            if not wait_until(lambda: title() == "Export" and not lock.exists()):
                raise TimedOut("the export did not end")

        return Scenario(lambda: program.press("Return"), wait_end, {}, {})

    @property
    def pages(self):
        return self._program.home / "Documents" / "Pantrywise"

    # Steps

    def _open_recipe(self, known):
        self._program.open_first("F5", "Recipes")
        self._program.press_all(*["Down"] * self._random.randrange(25), "Return")
        self._program.wait_title(*(child(name) for name in known))
        return known[child_caption(title())]

    def _change(self, old, new, keys, next_window):
        return Scenario(
            lambda: self._program.press(*keys),
            lambda: self._program.wait_title(child(next_window)),
            {old.name: old}, {old.name: new},
        )


def _rotated(lines, spare):
    """Returns the lines without the first, after the spare one is appended if it is missing."""
    return (lines if spare in lines else (*lines, spare))[1:]
