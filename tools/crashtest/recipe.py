"""Random recipes, as recipe files and as the database must hold them."""

from typing import NamedTuple

# An ingredient and a utensil that come first in their catalogs. At first only one recipe has them.
SPARE = "000 Spare"
SPARE_LINE = (SPARE, "1 tsp")
CATALOG_SIZE = 2000


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
        # The catalog lists ingredients by type and then by name.
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


class RecipeGenerator:
    """Makes random recipes with unique names."""

    def __init__(self, random):
        self._random = random
        self._count = 0

    def recipes(self, count, least, most):
        """Returns recipes with `least` to `most` ingredients each."""
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
                (f"Ingredient {n:04}", f"{n % 9 + 1} cup")
                for n in pick(range(CATALOG_SIZE), ingredients)
            ),
            utensils=tuple(
                f"Utensil {n:04}" for n in pick(range(CATALOG_SIZE), self._random.randint(5, 20))
            ),
        )

    def spare_recipe(self):
        """Returns a recipe with only the spare ingredient and utensil. It is the last one in the
        list, which is sorted by type."""
        return self.recipe(0)._replace(type=15, ingredients=(SPARE_LINE,), utensils=(SPARE,))
