"""What a killed program has left of its database."""

import collections
import filecmp
import shutil
import sqlite3
from contextlib import closing
from pathlib import Path
from typing import NamedTuple

from recipe import Recipe

LINKS = (
    ("RecipeIngredients", "Ingredients", "IngredientID"),
    ("RecipeUtensils", "Utensils", "UtensilID"),
)


class Broken(Exception):
    """The recipe file is not as it must be."""


class Autopsy(NamedTuple):
    recipes: dict  # by name
    journal: int  # nanoseconds, when it was last written; 0 for no transaction under way
    undone: bool  # some of that had been written to the database itself


def journal_of(database):
    return database.with_name(database.name + "-journal")


def examine(database, folder):
    """Looks at a copy, so that it is the program that mends the file itself at its next start."""
    copy = Path(folder, database.name)
    journal_of(copy).unlink(missing_ok=True)
    shutil.copy(database, copy)
    journal = 0
    if journal_of(database).exists():
        journal = journal_of(database).stat().st_mtime_ns
        shutil.copy(journal_of(database), folder)
    try:
        with closing(sqlite3.connect(copy)) as connection:
            recipes = _read(connection)
    except sqlite3.DatabaseError as error:
        raise Broken(str(error)) from error
    return Autopsy(recipes, journal, not filecmp.cmp(database, copy, shallow=False))


def _read(connection):
    verdict = connection.execute("PRAGMA integrity_check").fetchall()
    if verdict != [("ok",)]:
        raise Broken(f"integrity check: {verdict[:5]}")
    for links, catalog, key in LINKS:
        (orphans,) = connection.execute(
            f"SELECT count(*) FROM {links} WHERE RecipeID NOT IN (SELECT RecipeID FROM Recipes)"
            f" OR {key} NOT IN (SELECT {key} FROM {catalog})"
        ).fetchone()
        if orphans:
            raise Broken(f"{orphans} rows of {links} lack their recipe or their row of {catalog}")

    ingredients = _lines(connection, "RecipeIngredients", "Ingredients", "IngredientName, Quantity")
    utensils = _lines(connection, "RecipeUtensils", "Utensils", "UtensilName")
    recipes = {}
    for key, *fields in connection.execute(
        "SELECT RecipeID, RecipeName, Author, RecipeType, Serves, Description, Instructions"
        " FROM Recipes"
    ):
        recipe = Recipe(*fields, tuple(ingredients[key]), tuple(name for name, in utensils[key]))
        if recipes.setdefault(recipe.name, recipe) is not recipe:
            raise Broken(f"{recipe.name} is there twice")
    return recipes


def _lines(connection, links, catalog, fields):
    """The lines of all recipes by the recipe's key, each recipe's in the order they were stored."""
    lines = collections.defaultdict(list)
    for key, *line in connection.execute(
        f"SELECT RecipeID, {fields} FROM {links} NATURAL JOIN {catalog} ORDER BY {links}.rowid"
    ):
        lines[key].append(tuple(line))
    return lines


def judge(found, known, allowed):
    """Finds what was known; of the recipes that were worked on, one of their allowed states."""
    for name in known.keys() | found.keys() | allowed.keys():
        states = allowed.get(name, (known.get(name),))
        if found.get(name) not in states:
            raise Broken(_difference(name, found.get(name), states))


def _difference(name, found, states):
    if found is None:
        return f"{name} is lost"
    wholes = [state for state in states if state is not None]
    if not wholes:
        return f"{name} has come from nowhere"
    fields = "; ".join(
        ", ".join(
            f"{field}: {_short(was, should)} and not {_short(should, was)}"
            for field, was, should in zip(Recipe._fields, found, whole)
            if was != should
        )
        for whole in wholes
    )
    return f"{name} is not whole: {fields}"


def _short(value, other):
    if isinstance(value, tuple):
        return f"{len(value)} lines ({len(set(value) - set(other))} of its own)"
    return repr(value)[:60]
