#!/usr/bin/env python3
"""Makes rules.rbk, in which every rule of a takeover has its rows: python3 rules.py FILE"""
import math
import sys

import jet


def table(name, columns, rows, counter=0):
    made = jet.Table(name, [jet.Column(*c) for c in columns])
    made.steps = [['add', row] for row in rows]
    made.counter = counter
    return made


def recipe(key, name, kind=0, rating=0, serves=1.0, text=''):
    return [serves, rating, text, kind, 'A. Cook', None, name, key, 'passed over']


ALL_PLANES = 'one\r\ntwo\nthree\rnull\0end \u20ac \U0001f372'
LONG = 'Stir well. ' * 500

TABLES = [
    # The columns in another order, in other types and with one more.
    table('RECIPES', [('Serves', 'single'), ('Rating', 'single'), ('INSTRUCTIONS', 'memo'),
                      ('RecipeType', 'money'), ('Author', 'memo'), ('Description', 'text'),
                      ('RecipeName', 'text'), ('recipeid', 'double'), ('Source', 'text', 50)], [
        recipe(7, 'Seven', serves=0.1, text=ALL_PLANES),
        recipe(None, 'No key'),
        recipe(0, 'Zero'),
        recipe(-5, 'Minus five'),
        recipe(7, 'Seven again'),
        recipe(2147483647, 'The last'),
        recipe(2.5, 'Half a key'),
        recipe(4000000000, 'Too large a key'),
        recipe(12, 'Numbers', kind=40000, rating=2.5, serves=math.nan, text=LONG),
        recipe(9, 'Infinite', serves=math.inf, kind=-32768, rating=32767),
        recipe(10, None),
        recipe(11, ''),
        recipe(3, 'Twice'),
        recipe(4, 'Twice'),
        recipe(5, 'K\u00c4SE'),
        recipe(6, 'k\u00e4se'),
    ]),
    table('Ingredients', [('IngredientID', 'counter'), ('IngredientName', 'text'),
                          ('IngredientType', 'byte'), ('ShelfLife', 'money'),
                          ('Vegetarian', 'long')], [
        [2, 'Salt', 255, 1.5, -1],
        [-3, 'Pepper', None, None, 0],
        [9, 'Oil', 1, 3, 5],
        [8, 'Milk', 1, 3, None],
    ], counter=50),
    table('Utensils', [('UtensilID', 'counter'), ('UtensilName', 'text')],
          [[3, 'Pot'], [1, 'Pan']], counter=0xFFFFFFFF),
    table('RecipeIngredients', [('Quantity', 'text'), ('IngredientID', 'double'),
                                ('RecipeID', 'long')], [
        ['of minus five', -3, -5],
        ['of the last', 2, 2147483647],
        ['of seven', 2, 7],
        ['dangling', 999, 888],
        ['no recipe', 2, None],
        ['no ingredient', None, 7],
        ['half', 2.5, 7],
        ['of zero', 0, 0],
    ]),
    table('RecipeUtensils', [('UtensilID', 'long'), ('RecipeID', 'long')], [[3, 7], [1, 7], [3, 7]]),
    table('Shopping list', [('Item', 'text')], [['Bread']]),
]

if __name__ == '__main__':
    jet.Database('jet4').save(sys.argv[1], TABLES)
