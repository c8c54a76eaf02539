"""The recipes that the program is fed, as recipe files and as they must stand in the database."""

from typing import NamedTuple

# An ingredient and a utensil that stand first in their catalogs and at first only in one recipe.
SPARE = "000 Spare"
SPARE_LINE = (SPARE, "1 tsp")
POOL = 2000


class Recipe(NamedTuple):
    name: str
    author: str
    type: int
    serves: int
    description: str
    instructions: str  # every line ends in CR LF
    ingredients: tuple  # of (name, quantity)
    utensils: tuple  # of names

    def srf(self):
        # The type decides where the catalog lists an ingredient.
        entries = (
            f"{name}|{0 if name == SPARE else 1}|7|True||{quantity}\r\n"
            for name, quantity in self.ingredients
        )
        heading = ("", self.name, self.author, self.type, self.serves, self.description)
        return "".join(
            [f"{line}\r\n" for line in heading]
            + ["<Instructions>\r\n", self.instructions, "</Instructions>\r\n<Ingredients>\r\n"]
            + [*entries, "</Ingredients>\r\n<Utensils>\r\n"]
            + [f"{name}\r\n" for name in self.utensils]
            + ["</Utensils>\r\n"]
        )


class Cookbook:
    """Makes recipes, each with a name of its own."""

    def __init__(self, random):
        self._random = random
        self._count = 0

    def recipes(self, count, least, most):
        return [self.recipe(self._random.randint(least, most)) for _ in range(count)]

    def recipe(self, ingredients):
        self._count += 1
        pick = self._random.sample
        return Recipe(
            name=f"Recipe {self._count:06}",
            author=f"Author {self._count}",
            type=self._random.randint(0, 14),
            serves=self._random.randint(1, 12),
            description=f"What recipe {self._count} is",
            instructions="".join(
                f"Step {n} of recipe {self._count}.\r\n" for n in range(self._random.randint(1, 40))
            ),
            ingredients=tuple(
                (f"Ingredient {n:04}", f"{n % 9 + 1} cup") for n in pick(range(POOL), ingredients)
            ),
            utensils=tuple(
                f"Utensil {n:04}" for n in pick(range(POOL), self._random.randint(5, 20))
            ),
        )

    def spare_recipe(self):
        """The one that brings the spare lines in; the last one in the list."""
        return self.recipe(0)._replace(type=15, ingredients=(SPARE_LINE,), utensils=(SPARE,))
