// A box above the lists that narrows them while somebody types. On the main menu it also finds
// ingredients and types, and the recipes of a book whose titles are not on that page.
(() => {
  "use strict";

  const { words, matches, stem } = pantrywiseWords;
  const fewestTitles = 8; // with fewer, nobody needs the box
  const mostResults = 40;
  const mostOthers = 8; // ingredients and types, if there are recipes as well

  function element(name, properties, ...children) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
  }

  // The lines of the page, each with its words, and the headings that go with them.
  function readPage() {
    const titleOf = (item) => item.querySelector("a span") ?? item.querySelector("a") ?? item;
    const lines = [...document.querySelectorAll("main .titles > li, main .types > li")]
      .map((item) => ({ item, text: words(titleOf(item).textContent) }));
    const groups = [...document.querySelectorAll("main .letter, main .types, main .lettered")]
      .map((group) => ({
        box: group.classList.contains("types") ? group.closest("nav") ?? group : group,
        items: [...group.querySelectorAll("li")].filter((item) => !item.closest(".letters")),
      }));
    const indexes = [...document.querySelectorAll("main .index, main .pages, main .parts")];
    return { lines, groups, indexes };
  }

  // Shows the lines of the page that match and returns their number.
  function narrowPage(page, query) {
    let count = 0;
    for (const { item, text } of page.lines) {
      item.hidden = !matches(text, query);
      count += item.hidden ? 0 : 1;
    }
    for (const { box, items } of page.groups)
      box.hidden = query !== "" && items.every((item) => item.hidden);
    for (const index of page.indexes)
      index.hidden = query !== "";
    return count;
  }

  // The lines of one part of the search file.
  function parse(text, prefix, kind) {
    return text.split("\n").filter((line) => line !== "").map((line) => {
      const [title, reference, mark] = line.split("\t");
      const page = reference.startsWith("=") ? reference.slice(1)
        : prefix + stem(title) + reference;
      return { title, page: `${page}.html`, text: words(title), kind, vegetarian: mark === "" };
    });
  }

  // Loads the search file once, as a script: pages that are opened from a folder may not fetch.
  function loader(file, loaded) {
    let isLoading = false;
    return () => {
      if (!file || isLoading)
        return;
      isLoading = true;
      window.pantrywiseSearch = (recipes, ingredients, types) => loaded({
        recipes: parse(recipes, "", ""),
        ingredients: parse(ingredients, "ingredient_", "ingredient"),
        types: parse(types, "type_", "type"),
      });
      const onerror = () => loaded({ recipes: [], ingredients: [], types: [] });
      document.head.append(element("script", { src: file, onerror }));
    };
  }

  // Titles that begin with what was typed come first.
  function findEntries(entries, query) {
    const found = entries.filter(({ text }) => matches(text, query));
    const first = found.filter(({ text }) => text.startsWith(query));
    return first.concat(found.filter(({ text }) => !text.startsWith(query)));
  }

  // Returns the entries of the search file to show and how many there are in all. The list of
  // ingredients finds nothing else.
  function findResults(search, query, onlyIngredients) {
    const others = findEntries(search.ingredients, query);
    if (onlyIngredients)
      return { entries: others.slice(0, mostResults), total: others.length };
    if (!document.querySelector("main .types"))
      others.push(...findEntries(search.types, query));
    const recipes = findEntries(search.recipes, query);
    const some = others.slice(0, recipes.length > 0 ? mostOthers : mostResults);
    const entries = some.concat(recipes).slice(0, mostResults);
    return { entries, total: recipes.length + others.length };
  }

  function resultLine({ title, page, vegetarian, kind }) {
    const item = element("li", { dir: "auto" }, element("a", { href: page }, title));
    if (vegetarian)
      item.append(" ", element("span", { className: "mark", lang: "en" }, "vegetarian"));
    if (kind !== "")
      item.append(" ", element("small", { lang: "en" }, kind));
    return item;
  }

  // Shows what the search file has and the page has not, and returns its number.
  function showResults(list, search, query, onlyIngredients) {
    list.replaceChildren();
    list.hidden = true;
    if (search === null || query === "")
      return 0;
    const { entries, total } = findResults(search, query, onlyIngredients);
    list.append(...entries.map(resultLine));
    const more = total - entries.length;
    if (more > 0)
      list.append(element("li", { className: "more", lang: "en" }, `and ${more} more`));
    list.hidden = entries.length === 0;
    return total;
  }

  function makeBox(main) {
    const input = element("input", { type: "search", autocomplete: "off", spellcheck: false });
    const status = element("p", { className: "found" });
    status.setAttribute("role", "status");
    const results = element("ul", { className: "titles results", lang: "", hidden: true });
    const box = element("div", { className: "filter" },
      element("label", {}, "Find ", input), status, results);
    box.setAttribute("role", "search");
    const head = main.querySelector(".head");
    if (head)
      head.after(box);
    else
      main.prepend(box);
    return { box, input, status, results };
  }

  // The arrow keys go through the links that are shown, Enter opens the first one.
  function addKeys(main, input, clear) {
    main.addEventListener("keydown", (event) => {
      if (event.isComposing) // Enter ends the word that an input method composes
        return;
      const links = [...main.querySelectorAll(".titles > li a, .types > li a")]
        .filter((link) => link.offsetParent !== null);
      const at = links.indexOf(document.activeElement);
      const isInBox = document.activeElement === input;
      const hasText = input.value.trim() !== "";
      if (event.key === "Enter" && isInBox && hasText && links.length > 0)
        links[0].click();
      else if (event.key === "Escape" && (isInBox || at >= 0) && hasText)
        clear();
      else if (event.key === "ArrowDown" && (isInBox || at >= 0) && at + 1 < links.length)
        links[at + 1].focus();
      else if (event.key === "ArrowUp" && at >= 0)
        (at === 0 ? input : links[at - 1]).focus();
      else
        return;
      event.preventDefault();
    });
  }

  // Browsers do not keep the text of a box without autocompletion for somebody who comes back.
  function keepQuery(main, input) {
    const remember = () => history.replaceState({ query: input.value }, "");
    main.addEventListener("click", remember);
    input.addEventListener("change", remember);
    input.value = history.state?.query ?? "";
  }

  function addFilter(main, page) {
    const searchName = main.dataset.search;
    const onlyIngredients = main.dataset.finds === "ingredients";
    const { box, input, status, results } = makeBox(main);
    let search = null;

    function narrow() {
      const query = words(input.value);
      const count = narrowPage(page, query) + showResults(results, search, query, onlyIngredients);
      if (query === "")
        status.textContent = "";
      else if (searchName && search === null)
        status.textContent = "Searching…";
      else
        status.textContent = count === 0 ? "Nothing found" : `${count} found`;
    }

    const load = loader(searchName, (loaded) => {
      search = loaded;
      narrow();
    });
    box.addEventListener("focusin", load);
    input.addEventListener("input", narrow);
    addKeys(main, input, () => {
      input.value = "";
      narrow();
      input.focus();
    });
    keepQuery(main, input);
    if (input.value !== "") {
      load();
      narrow();
    }
  }

  // The letters are one line on a phone, which scrolls.
  const current = document.querySelector(".index [aria-current]");
  if (current) {
    const bar = current.closest("ul");
    bar.scrollLeft = current.offsetLeft - bar.offsetLeft - bar.clientWidth / 2;
  }

  const main = document.querySelector("main");
  const titles = document.querySelectorAll("main .titles > li").length;
  const isSearched = main?.dataset.search && document.querySelector("main .types > li");
  if (titles >= fewestTitles || isSearched)
    addFilter(main, readPage());
})();
