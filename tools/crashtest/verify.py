"""Reads and verifies the database that a killed program has left."""

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


class DatabaseFault(Exception):
    """The database is damaged, or a recipe in it is not whole."""


class Contents(NamedTuple):
    recipes: dict  # by name
    journal: int  # modification time of the rollback journal in nanoseconds, or 0
    rolled_back: bool  # whether rolling back changed the database file


def journal_of(database):
    return database.with_name(database.name + "-journal")


def read_database(database, folder):
    """Reads a copy in `folder`, so that the database itself is rolled back by the program."""
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
        raise DatabaseFault(str(error)) from error
    return Contents(recipes, journal, not filecmp.cmp(database, copy, shallow=False))


def _read(connection):
    messages = connection.execute("PRAGMA integrity_check").fetchall()
    if messages != [("ok",)]:
        raise DatabaseFault(f"integrity check: {messages[:5]}")
    for links, catalog, key in LINKS:
        (orphans,) = connection.execute(
            f"SELECT count(*) FROM {links} WHERE RecipeID NOT IN (SELECT RecipeID FROM Recipes)"
            f" OR {key} NOT IN (SELECT {key} FROM {catalog})"
        ).fetchone()
        if orphans:
            raise DatabaseFault(
                f"{orphans} rows of {links} refer to a missing row of Recipes or {catalog}"
            )

    ingredients = _lines(connection, "RecipeIngredients", "Ingredients", "IngredientName, Quantity")
    utensils = _lines(connection, "RecipeUtensils", "Utensils", "UtensilName")
    recipes = {}
    for key, *fields in connection.execute(
        "SELECT RecipeID, RecipeName, Author, RecipeType, Serves, Description, Instructions"
        " FROM Recipes"
    ):
        recipe = Recipe(*fields, tuple(ingredients[key]), tuple(name for name, in utensils[key]))
        if recipes.setdefault(recipe.name, recipe) is not recipe:
            raise DatabaseFault(f"two recipes are named {recipe.name}")
    return recipes


def _lines(connection, links, catalog, fields):
    """Returns the lines of all recipes by the recipe's key, in the order they were stored."""
    lines = collections.defaultdict(list)
    for key, *line in connection.execute(
        f"SELECT RecipeID, {fields} FROM {links} NATURAL JOIN {catalog} ORDER BY {links}.rowid"
    ):
        lines[key].append(tuple(line))
    return lines


def verify_recipes(found, known, allowed):
    """Verifies that each recipe is in one of its allowed states, or as known if it has none."""
    for name in known.keys() | found.keys() | allowed.keys():
        states = allowed.get(name, (known.get(name),))
        if found.get(name) not in states:
            raise DatabaseFault(_difference(name, found.get(name), states))


def _difference(name, found, states):
    if found is None:
        return f"{name} is missing"
    expected = [state for state in states if state is not None]
    if not expected:
        return f"{name} should not exist"
    fields = "; ".join(
        ", ".join(
            f"{field}: {_short(was, should)} instead of {_short(should, was)}"
            for field, was, should in zip(Recipe._fields, found, whole)
            if was != should
        )
        for whole in expected
    )
    return f"{name} is not whole: {fields}"


def _short(value, other):
    if isinstance(value, tuple):
        return f"{len(value)} lines ({len(set(value) - set(other))} unexpected)"
    return repr(value)[:60]
