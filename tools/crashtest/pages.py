"""Two sets of web pages to compare an export folder with."""

import contextlib
import sqlite3
import subprocess
from pathlib import Path


class PagesFault(Exception):
    """The folder has neither the old pages nor the new ones, or not all of them."""


def read_pages(folder):
    """Returns the contents of the files by name."""
    if not folder.is_dir():
        return {}
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def write_pages(database, folder, makepages):
    """Exports the pages of a database into a new folder, and returns the folder of the pages."""
    folder.mkdir()
    subprocess.run([makepages, database, folder, "plaincard"], check=True)
    return folder / "Pantrywise"


def change_every_recipe(database):
    with contextlib.closing(sqlite3.connect(database)) as connection, connection:
        connection.execute("UPDATE Recipes SET Description = Description || ', changed'")


def verify_pages(folder, old, new):
    """Returns whether the folder has the new pages. Fails if it has neither these nor the old ones."""
    found = read_pages(folder)
    if found not in (old, new):
        empty = sum(not contents for contents in found.values())
        raise PagesFault(
            f"{folder.name} has {len(found)} files, {empty} of them empty, instead of the {len(old)}"
            f" old or the {len(new)} new pages; {_equal(found, old)} are old, {_equal(found, new)} new"
        )
    return found == new


def _equal(found, pages):
    return len(found.items() & pages.items())
