#!/usr/bin/env python3
"""Makes two Jet 4 files: one in which each rule of a takeover has its rows, and one in which a row is
damaged: rules.py RULES DAMAGED"""

import math
import sys

from accessfile import (BYTE, DOUBLE, LONG, MEMO, MONEY, SINGLE, TEXT, AccessFile, Column, Table)

ALL_PLANES = "one\r\ntwo\nthree\rnull\0end \u20ac \U0001f372"


def recipe(key, name, kind=0, rating=0, serves=1.0, text=""):
    return [serves, rating, text, kind, "A. Cook", None, name, key, "passed over"]


TABLES = [
    # The columns are in another order, of other types and one more.
    Table("RECIPES", [Column("Serves", SINGLE), Column("Rating", SINGLE),
                      Column("INSTRUCTIONS", MEMO), Column("RecipeType", MONEY),
                      Column("Author", MEMO), Column("Description", TEXT),
                      Column("RecipeName", TEXT), Column("recipeid", DOUBLE),
                      Column("Source", TEXT)],
          [recipe(7, "Seven", serves=0.1, text=ALL_PLANES),
           recipe(None, "No key"),
           recipe(0, "Zero"),
           recipe(-5, "Minus five"),
           recipe(7, "Seven again"),
           recipe(2147483647, "The last"),
           recipe(2.5, "Half a key"),
           recipe(4000000000, "Too large a key"),
           recipe(12, "Numbers", kind=40000, rating=2.5, serves=math.nan, text="Stir well. " * 500),
           recipe(9, "Infinite", kind=-32768, rating=32767, serves=math.inf),
           recipe(10, None),
           recipe(11, ""),
           recipe(3, "Twice"),
           recipe(4, "Twice"),
           recipe(5, "KÄSE"),
           recipe(6, "käse")]),
    Table("Ingredients", [Column("IngredientID", LONG), Column("IngredientName", TEXT),
                          Column("IngredientType", BYTE), Column("ShelfLife", MONEY),
                          Column("Vegetarian", LONG)],
          [[2, "Salt", 255, 1.5, -1], [-3, "Pepper", None, None, 0], [9, "Oil", 1, 3, 5],
           [8, "Milk", 1, 3, None]], counter=50),
    Table("Utensils", [Column("UtensilID", LONG), Column("UtensilName", TEXT)],
          [[3, "Pot"], [1, "Pan"]], counter=0xFFFFFFFF),
    Table("RecipeIngredients", [Column("Quantity", TEXT), Column("IngredientID", DOUBLE),
                                Column("RecipeID", DOUBLE)],
          [["of minus five", -3, -5], ["of the last", 2, 2147483647], ["of seven", 2, 7],
           ["dangling", 999, 888], ["no recipe", 2, None], ["no ingredient", None, 7],
           ["half", 2.5, 7], ["of zero", 0, 0],
           ["of too large a key", 2, 4000000000], ["deleted recipe", 2, 19]]),
    Table("RecipeUtensils", [Column("UtensilID", LONG), Column("RecipeID", LONG)],
          [[3, 7], [1, 7], [3, 7]]),
    Table("Shopping list", [Column("Item", TEXT)], [["Bread"]]),
]

# Only a number of the second row is damaged: it has three bytes.
DAMAGED = [Table(table.name, table.columns, []) for table in TABLES]
DAMAGED[0].columns = [Column(column.name, column.type, fixed=False if column.name == "Serves" else None)
                      for column in TABLES[0].columns]
DAMAGED[0].rows = [recipe(1, "Soup", text="Stir."), recipe(2, "Bread", serves=b"\0\0\0"),
                   recipe(3, "Cake", text="Bake."), recipe(4, "Tea")]

if __name__ == "__main__":
    AccessFile("jet4").save(sys.argv[1], TABLES)
    AccessFile("jet4").save(sys.argv[2], DAMAGED)
