// Cases for tools/check-scripts: the function, what goes in and what must come out.
const half = 0.5, twice = 2, thrice = 3;

function line(factor, written, expected) {
  const [amount, name, preparation] = written.split("|");
  const style = pantrywiseAmounts.styleOf([amount, preparation]);
  const scaled = pantrywiseAmounts.scaledLine({ amount, name, preparation }, factor, style);
  const shown = scaled && [scaled.amount, name, scaled.preparation].join("|");
  return [`${factor} x ${written}`, shown, expected];
}

const servings = (count, written, expected) =>
  [`${count}: ${written}`, pantrywiseAmounts.scaledServings(written, count), expected];
const stem = (title, expected) => [`stem ${title}`, pantrywiseWords.stem(title), expected];
function found(query, title, expected) {
  const { words, matches } = pantrywiseWords;
  return [`${query} in ${title}`, matches(words(title), words(query)), expected];
}

const cases = [
  // Numbers
  line(half, "1 1/2 cups|Milk|", "3/4 cups|Milk|"),
  line(thrice, "1½ cups|Milk|", "4½ cups|Milk|"),
  line(twice, "1 and 1/2 cups|Milk|", "3 cups|Milk|"),
  line(half, "1 cup|Rice|", "1/2 cup|Rice|"),
  line(half, "1,5 l|Wasser|", "0,75 l|Wasser|"),
  line(twice, "1,500 g|Flour|", "3000 g|Flour|"),
  line(half, "125 g|Butter|", "63 g|Butter|"),
  line(1 / 3, "1|Lemon|", "1/3|Lemon|"),
  line(twice, "ca 80ml|Milk|", "ca 160ml|Milk|"),
  line(twice, "a pinch|Salt|", "a pinch|Salt|"),
  // Ranges
  line(twice, "2-3 lbs|Shrimp|", "4-6 lbs|Shrimp|"),
  line(half, "1-2|Onions|", "1/2 – 1|Onions|"),
  line(twice, "1 (or 2)|Clove|", "2 (or 4)|Clove|"),
  line(twice, "1kg-1.5kg|Beef|", "2kg-3kg|Beef|"),
  line(twice, "1 tbsp - 2 tbsp|Oil|", "2 tbsp - 4 tbsp|Oil|"),
  // More than one measure
  line(twice, "1 lb 4 oz|Flour|", "2 lb 8 oz|Flour|"),
  line(twice, "1 cup plus 2 tbsp|Flour|", "2 cup plus 4 tbsp|Flour|"),
  line(twice, "1 cup+2 tbsp|Flour|", "2 cup+4 tbsp|Flour|"),
  line(twice, "500g/1lb 2oz|Flour|", "1000g/2lb 4oz|Flour|"),
  line(twice, "28 oz (825 ml)|Tomatoes|", "56 oz (1650 ml)|Tomatoes|"),
  line(twice, "1 1/2 cups|Flour|, plus 2 tbsp", "3 cups|Flour|, plus 4 tbsp"),
  line(twice, "1 cup|Flour| (plus 1 lb 2 oz)", "2 cup|Flour| (plus 2 lb 4 oz)"),
  line(twice, "|Spaghetti| (350 g)", "|Spaghetti| (700 g)"),
  line(twice, "1 can (14 oz) plus 2 tbsp|Beans|", "2 can (14 oz) plus 4 tbsp|Beans|"),
  // Sizes
  line(twice, "1 can (400 ml)|Milk|", "2 can (400 ml)|Milk|"),
  line(twice, "1 (14 oz) can|Beans|", "2 (14 oz) can|Beans|"),
  line(twice, "1 piece cut to 5 cm|Ginger|", "2 piece cut to 5 cm|Ginger|"),
  line(twice, "2 x 400 g|Beans|", "4 x 400 g|Beans|"),
  line(twice, "2|Carrots|, cut into 2-inch pieces", "4|Carrots|, cut into 2-inch pieces"),
  line(twice, "1|Onion| (about 1.5 cups)", "2|Onion| (about 1.5 cups)"),
  // What is not certain is not multiplied, not even in part.
  line(twice, "1-inch piece|Ginger|", null),
  line(twice, "28|-oz can Tomatoes|", null),
  line(twice, "2 cups|and 1/4 teaspoons Yeast|", null),
  line(twice, "30 g|Butter or 3 tbsp oil|", null),
  line(twice, "|Juice of 2 lemons|", null),
  line(twice, "2 cans 400 g|Beans|", null),
  line(twice, "2 x 400 g plus 2 tbsp|Beans|", null),
  line(twice, "1 bunch with 5|Carrots|", null),
  line(twice, "2|Onions|, about 200 g", null),
  // The number of servings
  servings(8, "4 servings", "8 servings"),
  servings(1, "4 servings", "1 serving"),
  servings(2, "1 serving", "2 servings"),
  servings(8, "4-6 servings", "8-12 servings"),
  servings(2, "1,5 servings", "2 servings"),
  servings(24, "12 muffins", "24 muffins"),
  servings(6, "4 to 6 people", "6 to 9 people"),
  servings(8, "Serves 4", "Serves 8"),
  // Words, and page names as asciiWords() makes them
  found("ΜΟΥΣ", "Μουσακάς", true),
  found("baba's", "Baba’s Ghanouj", true),
  found("creme-fraiche", "Crème fraîche", true),
  found("soup leek", "Leek Soup", true),
  found("soup beet", "Leek Soup", false),
  found("smorrebrod", "Smørrebrød", true),
  stem("Crème Brûlée", "creme-brulee"),
  stem("Baba’s Feta-Nudeln", "babas-feta-nudeln"),
  stem("Große Æbleskiver & Łazanki", "grosse-aebleskiver-lazanki"),
  stem("½ Chicken", "1-2-chicken"),
  stem(`${"a".repeat(59)} b`, "a".repeat(59)),
];
