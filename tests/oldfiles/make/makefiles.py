#!/usr/bin/env python3
"""Makes recipe files in the Access format.

makefiles.py cases FOLDER        a small file for each row of tst_oldfiles
makefiles.py big FILE RECIPES    a Jet 4 file with this number of recipes of 13 links each
makefiles.py copy DATABASE FILE  a Jet 4 file with the rows of a recipe database of today
"""

import dataclasses
import sqlite3
import sys
from pathlib import Path

from accessfile import (BIG, BYTE, DATE, DECIMAL, DOUBLE, INTEGER, LONG, MEMO, MONEY, OLE, SINGLE,
                        TEXT, YES_NO, AccessFile, Column, Deleted, LongValue, Moved, Raw, Table)

RECIPES, INGREDIENTS, UTENSILS, RECIPE_INGREDIENTS, RECIPE_UTENSILS = range(5)
NAME, DESCRIPTION, AUTHOR, TYPE, INSTRUCTIONS, RATING, SERVES = range(1, 8)  # of Recipes


def tables():
    """Five small tables that each case changes."""
    return [
        Table("Recipes", [Column("RecipeID", LONG), Column("RecipeName", TEXT),
                          Column("Description", MEMO), Column("Author", TEXT),
                          Column("RecipeType", INTEGER), Column("Instructions", MEMO),
                          Column("Rating", INTEGER), Column("Serves", DOUBLE)],
              [recipe(3, "Soup"), recipe(7, "Bread", 4.5)]),
        Table("Ingredients", [Column("IngredientID", LONG), Column("IngredientName", TEXT),
                              Column("IngredientType", INTEGER), Column("ShelfLife", LONG),
                              Column("Vegetarian", YES_NO)],
              [[5, "Leek", 2, 14, True], [6, "Ham", 4, None, False]]),
        Table("Utensils", [Column("UtensilID", LONG), Column("UtensilName", TEXT)], [[2, "Pot"]]),
        Table("RecipeIngredients", [Column("RecipeID", LONG), Column("IngredientID", LONG),
                                    Column("Quantity", TEXT)],
              [[3, 6, "1 lb"], [3, 5, None], [7, 99, ""]]),
        Table("RecipeUtensils", [Column("RecipeID", LONG), Column("UtensilID", LONG)], [[3, 2]]),
    ]


def recipe(key, name, serves=2):
    return [key, name, "", None, 1, "Stir.\r\nServe.", None, serves]


CASES = {}


def case(*formats, **options):
    """Registers a function that changes the tables of one file for each format."""
    def register(change):
        for name in formats:
            CASES[change.__name__.replace("_", "-") + "." + name] = (name, options, change)
        return change
    return register


@case("jet3", "jet4", "ace")
def plain(_):
    pass


@case("jet4")
def other_case(all_tables):
    for table in all_tables:
        table.name = table.name.upper()
        for column in table.columns:
            column.name = column.name.lower()


@case("jet3", "jet4")
def other_order(all_tables):
    for table in all_tables:
        table.columns.reverse()
        table.rows = [row[::-1] for row in table.rows]
        table.counter = 12


@case("jet3", "jet4")
def other_types(all_tables):
    recipes, ingredients = all_tables[:2]
    for column, kind in ((0, DOUBLE), (NAME, MEMO), (DESCRIPTION, TEXT), (TYPE, BYTE),
                         (RATING, MONEY), (SERVES, SINGLE)):
        old = recipes.columns[column]
        recipes.columns[column] = Column(old.name, kind)
    recipes.rows = [[3.0, "Soup", "short", "", 255, "", 2.25, 4.2],
                    [3000000000.0, "Bread", "", "", 0, "", -1, 0.1],
                    [7.5, "Cake", "", "", 0, "", 900000000000000.5, float("nan")]]
    ingredients.columns[4] = Column("Vegetarian", INTEGER)
    ingredients.rows = [[5, "Leek", 2, 14, -1], [6, "Ham", 4, 1, 0], [7, "Egg", 4, 1, None]]


@case("jet4", "ace")
def decimals(all_tables):
    ingredients = all_tables[INGREDIENTS]
    ingredients.columns[0] = Column("IngredientID", BIG)
    ingredients.columns[2] = Column("IngredientType", DECIMAL)
    ingredients.columns[3] = Column("ShelfLife", DECIMAL, scale=3)
    ingredients.rows = [[2**62, "Leek", 12, 14500, True], [-6, "Ham", -3, -7, False],
                        [7, "Egg", 2**63 - 1, 10**28, False], [8, "Oil", None, 1000, False],
                        [9, "Salt", b"\x80" + bytes(16), b"\x80" + bytes(16), False]]


@case("jet3", "jet4")
def variable_numbers(all_tables):
    for column in (TYPE, SERVES):
        all_tables[RECIPES].columns[column].fixed = False


def fixed_name(size):
    def change(all_tables):
        all_tables[UTENSILS].columns[1] = Column("UtensilName", TEXT, size=size, fixed=True)
        all_tables[UTENSILS].rows = [[2, "Pot "], [3, None]]
    return change


CASES["fixed-text.jet3"] = ("jet3", {}, fixed_name(4))
CASES["fixed-text.jet4"] = ("jet4", {}, fixed_name(8))


@case("jet3", "jet4")
def missing_table(all_tables):
    del all_tables[RECIPE_UTENSILS]


@case("jet3", "jet4")
def missing_column(all_tables):
    ingredients = all_tables[INGREDIENTS]
    del ingredients.columns[3]
    for row in ingredients.rows:
        del row[3]


@case("jet4")
def linked_table(all_tables):
    all_tables[UTENSILS].type = 6


@case("jet4")
def linked_by_odbc(all_tables):
    all_tables[UTENSILS].type = 4


@case("ace")
def calculated_column(all_tables):
    all_tables[RECIPES].columns[SERVES].calculated = True


def change_type(position, kind, value):
    def change(all_tables):
        recipes = all_tables[RECIPES]
        recipes.columns[position] = Column(recipes.columns[position].name, kind)
        for row in recipes.rows:
            row[position] = value
    return change


for label, position, kind, value in (("text-for-number", SERVES, TEXT, "two"),
                                     ("date-for-number", SERVES, DATE, 1.0),
                                     ("yes-no-for-number", RATING, YES_NO, True),
                                     ("picture-for-text", DESCRIPTION, OLE, b"picture"),
                                     ("number-for-text", AUTHOR, LONG, 1)):
    CASES[label + ".jet4"] = ("jet4", {}, change_type(position, kind, value))


@case("jet4")
def money_for_yes_no(all_tables):
    ingredients = all_tables[INGREDIENTS]
    ingredients.columns[4] = Column("Vegetarian", MONEY)


@case("jet4")
def more_than_ours(all_tables):
    utensils = all_tables[UTENSILS]
    utensils.columns.insert(1, Column("Picture", OLE))
    utensils.columns.append(Column("Bought", DATE))
    utensils.rows = [[2, b"\0\1" * 50, "Pot", 36525.5]]
    all_tables.insert(0, Table("Shopping", [Column("Item", TEXT)], [["Milk"]]))
    all_tables.append(Table("MSysOther", [Column("Id", LONG)], [], flags=-0x80000000))
    all_tables.append(Table("SomeQuery", [Column("Id", LONG)], [], type=5))


CASES["damaged-catalog.jet4"] = ("jet4", {"catalog_rows": [Raw(b"")]}, lambda _: None)
CASES["other-signature.jet4"] = ("jet4", {"signature": b"Standard Old DB"}, lambda _: None)
CASES["later-version.jet4"] = ("jet4", {"version": 7}, lambda _: None)
CASES["encrypted.jet4"] = ("jet4", {"key": 0x5EC2E7, "encrypted": True}, lambda _: None)
CASES["encrypted.jet3"] = ("jet3", {"key": 0x5EC2E7, "encrypted": True}, lambda _: None)
CASES["key-alone.jet4"] = ("jet4", {"key": 0x5EC2E7}, lambda _: None)
CASES["password.jet3"] = ("jet3", {"password": "leek"}, lambda _: None)
CASES["password.jet4"] = ("jet4", {"password": "leek"}, lambda _: None)
CASES["unknown-code-page.jet3"] = ("jet3", {"stated_code_page": 4711}, lambda _: None)


def utensil_names(*names):
    def change(all_tables):
        all_tables[UTENSILS].rows = [[key, name] for key, name in enumerate(names, 1)]
    return change


CASES["western.jet3"] = ("jet3", {}, utensil_names("Käse–Reibe €", b"\x81 \x9d \0"))
CASES["cyrillic.jet3"] = ("jet3", {"code_page": 1251}, utensil_names("Кастрюля"))
CASES["vietnamese.jet3"] = ("jet3", {"code_page": 1258}, utensil_names(b"ch\xe0o", b"a\xcc"))
CASES["dos.jet3"] = ("jet3", {"code_page": 437}, utensil_names("Töpfe ½"))
CASES["japanese.jet3"] = ("jet3", {"code_page": 932},
                          utensil_names("鍋 pot ﾅﾍﾞ", b"\x93", b"\x93\xe7\x81 x"))


@case("jet3")
def code_page_of_column(all_tables):
    all_tables[UTENSILS].columns[1].code_page = 1251
    all_tables[UTENSILS].rows = [[1, "Кастрюля"]]
    all_tables[RECIPES].rows = [recipe(3, "Käse")]


def own_code_pages(all_tables):
    """Each text names the code page that it is in, so that nothing needs that of the file."""
    for column in (column for table in all_tables for column in table.columns):
        column.code_page = 1252
    all_tables[UTENSILS].rows = [[1, "Käse"]]


CASES["unused-code-page.jet3"] = ("jet3", {"stated_code_page": 4711}, own_code_pages)


@case("jet3")
def unknown_code_page_of_column(all_tables):
    all_tables[RECIPES].columns[AUTHOR].code_page = 4711
    for row in all_tables[RECIPES].rows:
        row[AUTHOR] = b"Cook"


CASES["compressed.jet4"] = ("jet4", {"compress": True},
                            utensil_names("Pot", "Käse", "Топор x", "ab→cd", ""))
CASES["letters.jet4"] = ("jet4", {}, utensil_names(
    "🍲 pot", b"a\0\0\0b\0", b"a\0\x3c\xd8", b"\x72\xdfa\0", b"\x3c\xd8\x3c\xd8\x72\xdf",
    b"\xff\xfeab\0\x3c\xd8\x72\xdf\0c", b"\xff\xfea\0\xac", b"a\0b", "ﾅ"))


@case("jet3", "jet4")
def moved_and_deleted(all_tables):
    names = all_tables[UTENSILS]
    names.rows = [[1, "one"], Moved([2, "two"]), Deleted([3, "three"]), [4, "four"],
                  Moved([5, "five"]), [6, "six"]]


@case("jet4")
def moved_elsewhere(all_tables):
    names = all_tables[UTENSILS]
    names.rows = [Moved([1, "one"]), Moved([2, "two"], "last"), Moved([3, "three"], "itself"),
                  Moved([4, "four"], 2 << 8), Moved([5, "five"], 0xFFFFFF00),
                  Moved([6, "six"], 0), [7, "seven"]]


@case("jet3", "jet4")
def seasoned(all_tables):
    for table in all_tables:
        table.map_kind = "late"
        table.given_up_page = True
        table.reversed_records = True


@case("jet3", "jet4", "ace")
def map_on_pages(all_tables):
    for table in all_tables:
        table.map_kind = "indirect"


@case("jet3", "jet4")
def second_part_of_map(all_tables):
    all_tables[RECIPE_UTENSILS].map_kind = "indirect"
    all_tables[RECIPE_UTENSILS].gap = 33000


@case("jet3", "jet4")
def long_definition(all_tables):
    utensils = all_tables[UTENSILS]
    utensils.columns += [Column(f"A column with a long name {n}", LONG) for n in range(200)]
    utensils.rows = [[2, "Pot"], [3, "Pan"] + [None] * 200]


@case("jet3", "jet4")
def added_column(all_tables):
    """The columns after the description came after the first row was written."""
    recipes = all_tables[RECIPES]
    recipes.rows = [[3, "Soup", "old"], recipe(7, "Bread", 4.5)]
    ingredients = all_tables[INGREDIENTS]
    ingredients.rows[0] = [5, "Leek"]


@case("jet3")
def long_rows(all_tables):
    """Places of more than 255, with jumps, and with a last jump that means nothing."""
    recipes = all_tables[RECIPES]
    rows = [("a" * 255, "c" * 255), ("", "c" * 207), ("", "c" * 213), ("a" * 600, "c" * 700),
            ("a" * 212, ""), ("a" * 213, "")]
    recipes.rows = [[key, name, "b", author, 1, "d", 5, 2] for key, (name, author)
                    in enumerate(rows, 1)]


def letters(count):
    return ("ABCDEFGHIJKLMNOPQRSTUVWXYZ" * 200)[:count]


@case("jet3", "jet4")
def long_texts(all_tables):
    texts = [LongValue(letters(20), "inline"), LongValue(letters(900), "row"),
             LongValue(letters(4800), "pieces"), LongValue("", "pieces"), letters(5000),
             LongValue(letters(300), "pieces", length=298),
             LongValue(letters(30), "pieces", length=1 << 29, loop=True),
             LongValue(letters(60), "row", length=62), LongValue(letters(20), "inline", length=18),
             LongValue(letters(60), "row"), LongValue(letters(60), "last"), "after them",
             LongValue(letters(300), "pieces", length=10000)]
    all_tables[RECIPES].rows = [[key, "", None, None, 1, text, None, 2]
                                for key, text in enumerate(texts, 1)]


@case("jet3", "jet4")
def endless_text(all_tables):
    """Longer than any that is read, though the file has all of it."""
    recipes = all_tables[RECIPES]
    recipes.rows[0][INSTRUCTIONS] = b"a\0" * (8 * 2**20 + 1)


@case("jet3", "jet4")
def damaged_rows(all_tables):
    names = all_tables[UTENSILS]
    names.rows = [[1, "one"], Raw(b""), Raw(b"\2"), Raw(b"\xff" * 20), Raw(b"\2\0\0\3"), [6, "six"]]


@case("jet3")
def overlapping_rows(all_tables):
    names = all_tables[UTENSILS]
    names.rows = [[1, "one"], Raw(b"", place=2040), [3, "three"], [4, "four"]]


@case("jet3", "jet4")
def too_many_rows(all_tables):
    """More on the first page than a row pointer can tell apart."""
    names = all_tables[UTENSILS]
    names.most_slots = 257
    names.rows = [Raw(b"")] * 257 + [[2, "Pot"]]


@case("jet3", "jet4")
def map_with_other_pages(all_tables):
    definition, page_of_utensils = 3, 17
    all_tables[RECIPES].also_mapped = (definition, page_of_utensils)


@case("jet3", "jet4")
def map_with_long_texts(all_tables):
    recipes = all_tables[RECIPES]
    recipes.rows[0][DESCRIPTION] = LongValue("", "row")
    recipes.rows[1][DESCRIPTION] = LongValue("", "row")
    recipes.also_mapped = (11,)


def damaged_head(**damage):
    """The table says that it is empty: only the head of its pages shows that rows are lost."""
    def change(all_tables):
        all_tables[UTENSILS] = dataclasses.replace(all_tables[UTENSILS], stated_rows=0, **damage)
    return change


for file_format in ("jet3", "jet4"):
    for label, damage in (("other-owner", {"owner": 1 << 20}), ("index-node", {"page_kind": 3}),
                          ("usage-map", {"page_kind": 5})):
        CASES[f"{label}.{file_format}"] = (file_format, {}, damaged_head(**damage))


@case("jet4")
def other_counts(all_tables):
    all_tables[RECIPES].stated_rows = 5
    all_tables[RECIPES].counter = 40
    all_tables[INGREDIENTS].stated_rows = 0


def write_cases(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for name, (file_format, options, change) in CASES.items():
        content = tables()
        change(content)
        AccessFile(file_format, **options).save(folder / name, content)


def write_big(path, recipes):
    content = tables()
    steps = "Chop the vegetables, and stir them until they are soft.\r\n" * 34
    content[RECIPES].rows = [
        [key, f"Recipe {key}", f"Description of recipe {key}.", "A. Cook", key % 16,
         f"Recipe {key}\r\n{steps}", key % 6, 4.0] for key in range(1, recipes + 1)]
    content[INGREDIENTS].rows = [[key, f"Ingredient {key}", key % 11, key, key % 2 == 0]
                                 for key in range(1, 1001)]
    content[UTENSILS].rows = [[key, f"Utensil {key}"] for key in range(1, 201)]
    content[RECIPE_INGREDIENTS].rows = [
        [key, 1 + (key * 7 + n * 13) % 1000, f"{n + 1} cups"]
        for key in range(1, recipes + 1) for n in range(10)]
    content[RECIPE_UTENSILS].rows = [[key, 1 + (key + n * 17) % 200]
                                     for key in range(1, recipes + 1) for n in range(3)]
    AccessFile("jet4").save(path, content)


def write_copy(database, path):
    content = tables()
    with sqlite3.connect(f"file:{database}?mode=ro", uri=True) as connection:
        for table in content:
            names = ", ".join(column.name for column in table.columns)
            rows = connection.execute(f"SELECT {names} FROM {table.name} ORDER BY rowid")
            table.rows = [list(row) for row in rows]
    AccessFile("jet4").save(path, content)


def main(arguments):
    match arguments:
        case ["cases", folder]:
            write_cases(Path(folder))
        case ["big", path, recipes]:
            write_big(path, int(recipes))
        case ["copy", database, path]:
            write_copy(database, path)
        case _:
            sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
