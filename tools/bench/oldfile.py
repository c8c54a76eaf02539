#!/usr/bin/env python3
"""Writes the rows of a recipe database into a file of the Access format (Jet 4):
oldfile.py DATABASE FILE"""

import sqlite3
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests/oldfiles/make"))
from accessfile import (DOUBLE, INTEGER, LONG, MEMO, TEXT, YES_NO, AccessFile, Column, Table)

COLUMNS = {
    "Recipes": {"RecipeID": LONG, "RecipeName": TEXT, "Description": MEMO, "Author": TEXT,
                "RecipeType": INTEGER, "Instructions": MEMO, "Rating": INTEGER, "Serves": DOUBLE},
    "Ingredients": {"IngredientID": LONG, "IngredientName": TEXT, "IngredientType": INTEGER,
                    "ShelfLife": LONG, "Vegetarian": YES_NO},
    "Utensils": {"UtensilID": LONG, "UtensilName": TEXT},
    "RecipeIngredients": {"RecipeID": LONG, "IngredientID": LONG, "Quantity": TEXT},
    "RecipeUtensils": {"RecipeID": LONG, "UtensilID": LONG},
}


def table(database, name, columns):
    rows = database.execute(f"SELECT {', '.join(columns)} FROM {name}").fetchall()
    return Table(name, [Column(*column) for column in columns.items()], rows,
                 kind_of_map="indirect")


if __name__ == "__main__":
    recipes = sqlite3.connect(sys.argv[1])
    AccessFile("jet4").save(sys.argv[2], [table(recipes, *each) for each in COLUMNS.items()])
