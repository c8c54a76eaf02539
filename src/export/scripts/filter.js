// A box above the lists that narrows them while somebody types. On the main menu it also finds
// ingredients and types, and the recipes of a book whose titles are not on that page.
(() => {
  "use strict";

  const fewestTitles = 8; // with fewer, nobody needs the box
  const mostResults = 40;
  const mostOthers = 8; // ingredients and types, if there are recipes as well
  const marks = /\p{M}/gu;
  const special = /[ßæœøðđħþłı]/g;
  const replacements = {
    "ß": "ss", "æ": "ae", "œ": "oe", "ø": "o", "ð": "d", "đ": "d", "ħ": "h", "þ": "th", "ł": "l",
    "ı": "i",
  };

  // Letters without accents and case, as the export sorts titles and names pages.
  function fold(text) {
    return text.normalize("NFKD").toLowerCase().replace(special, (letter) => replacements[letter])
      .replace(marks, "");
  }

  function wordsOf(query) {
    return fold(query).split(/\s+/).filter((word) => word !== "");
  }

  function matches(folded, words) {
    return words.every((word) => folded.includes(word));
  }

  // The file name that the export gives to a title, without what it appends to the words.
  function stem(title) {
    return fold(title).replace(/['’]/g, "").split(/[^a-z0-9]+/).filter((word) => word !== "")
      .join("-").slice(0, 60).replace(/-+$/, "");
  }

  function element(name, className, text) {
    const made = document.createElement(name);
    if (className) {
      made.className = className;
    }
    if (text) {
      made.textContent = text;
    }
    return made;
  }

  // The lines of the page, each with its text, and the headings that go with them.
  function readPage() {
    const lines = [...document.querySelectorAll("main .titles > li, main .types > li")]
      .map((item) => ({
        item,
        folded: fold((item.querySelector("a span") || item.querySelector("a") || item).textContent),
      }));
    const groups = [...document.querySelectorAll("main .letter, main .types, main .lettered")]
      .map((group) => ({
        box: group.classList.contains("types") ? group.closest("nav") || group : group,
        items: [...group.querySelectorAll("li")].filter((item) => !item.closest(".letters")),
      }));
    const indexes = [...document.querySelectorAll("main .index, main .pages, main .parts")];
    return { lines, groups, indexes };
  }

  // The lines of one part of the search file.
  function parse(text, prefix, kind) {
    return text.split("\n").filter((line) => line !== "").map((line) => {
      const [title, reference, mark] = line.split("\t");
      const page = reference.startsWith("=") ? reference.slice(1)
        : prefix + stem(title) + reference;
      return { title, page: page + ".html", folded: fold(title), kind, vegetarian: mark === "" };
    });
  }

  // Loads the search file once, as a script: pages that are opened from a folder may not fetch.
  function loader(file, loaded) {
    let isLoading = false;
    return () => {
      if (!file || isLoading) {
        return;
      }
      isLoading = true;
      window.pantrywiseSearch = (recipes, ingredients, types) => loaded({
        recipes: parse(recipes, "", ""),
        ingredients: parse(ingredients, "ingredient_", "ingredient"),
        types: parse(types, "type_", "type"),
      });
      const script = element("script");
      script.src = file;
      script.onerror = () => loaded({ recipes: [], ingredients: [], types: [] });
      document.head.append(script);
    };
  }

  function resultLine(entry) {
    const item = element("li");
    item.dir = "auto";
    const link = element("a", "", entry.title);
    link.href = entry.page;
    item.append(link);
    if (entry.vegetarian) {
      item.append(" ", element("span", "mark", "vegetarian"));
    }
    if (entry.kind !== "") {
      item.append(" ", element("small", "", entry.kind));
    }
    return item;
  }

  // Titles that begin with what was typed come first.
  function findEntries(entries, words, query) {
    const found = entries.filter((entry) => matches(entry.folded, words));
    const first = found.filter((entry) => entry.folded.startsWith(query));
    return first.concat(found.filter((entry) => !entry.folded.startsWith(query)));
  }

  function start() {
    const main = document.querySelector("main");
    const searchName = main && main.dataset.search;
    const page = main ? readPage() : { lines: [] };
    const titles = main ? main.querySelectorAll(".titles > li").length : 0;
    if (titles < fewestTitles && !(searchName && page.lines.length > 0)) {
      return;
    }

    const box = element("div", "filter");
    box.setAttribute("role", "search");
    const label = element("label", "", "Find");
    const input = element("input");
    input.type = "search";
    input.autocomplete = "off";
    input.spellcheck = false;
    label.append(" ", input);
    const status = element("p", "found");
    status.setAttribute("role", "status");
    const results = element("ul", "titles results");
    results.lang = "";
    results.hidden = true;
    box.append(label, status, results);
    const head = main.querySelector(".head");
    if (head) {
      head.after(box);
    } else {
      main.prepend(box);
    }

    let search = null;

    // Shows the lines of the page that match and returns their number.
    function narrowPage(words) {
      let count = 0;
      for (const line of page.lines) {
        const isShown = matches(line.folded, words);
        line.item.hidden = !isShown;
        count += isShown ? 1 : 0;
      }
      for (const group of page.groups) {
        const isEmpty = group.items.every((item) => item.hidden);
        group.box.hidden = words.length > 0 && isEmpty;
      }
      for (const index of page.indexes) {
        index.hidden = words.length > 0;
      }
      return count;
    }

    // Shows what the search file has and the page has not, and returns its number.
    function showResults(words, query) {
      results.replaceChildren();
      results.hidden = true;
      if (search === null || words.length === 0) {
        return 0;
      }
      const recipes = findEntries(search.recipes, words, query);
      const others = findEntries(search.ingredients, words, query);
      if (!document.querySelector("main .types")) {
        others.push(...findEntries(search.types, words, query));
      }
      const some = others.slice(0, recipes.length > 0 ? mostOthers : mostResults);
      const entries = some.concat(recipes).slice(0, mostResults);
      results.append(...entries.map(resultLine));
      const more = recipes.length + others.length - entries.length;
      if (more > 0) {
        results.append(element("li", "more", more === 1 ? "and 1 more" : `and ${more} more`));
      }
      results.hidden = entries.length === 0;
      return recipes.length + others.length;
    }

    function narrow() {
      const words = wordsOf(input.value);
      const count = narrowPage(words) + showResults(words, words.join(" "));
      if (words.length === 0) {
        status.textContent = "";
      } else if (searchName && search === null) {
        status.textContent = "Searching…";
      } else {
        status.textContent = count === 0 ? "Nothing found" : `${count} found`;
      }
    }

    const load = loader(searchName, (entries) => {
      search = entries;
      narrow();
    });

    function shownLinks() {
      return [...main.querySelectorAll(".titles > li a, .types > li a")]
        .filter((link) => link.offsetParent !== null);
    }

    box.addEventListener("focusin", load);
    input.addEventListener("input", narrow);
    main.addEventListener("keydown", (event) => {
      const links = shownLinks();
      const at = links.indexOf(document.activeElement);
      const isInBox = document.activeElement === input;
      if (event.key === "Enter" && isInBox && input.value.trim() !== "" && links.length > 0) {
        links[0].click();
      } else if (event.key === "Escape" && (isInBox || at >= 0) && input.value !== "") {
        input.value = "";
        narrow();
        input.focus();
      } else if (event.key === "ArrowDown" && (isInBox || at >= 0) && at + 1 < links.length) {
        links[at + 1].focus();
      } else if (event.key === "ArrowUp" && at >= 0) {
        (at === 0 ? input : links[at - 1]).focus();
      } else {
        return;
      }
      event.preventDefault();
    });
    if (input.value !== "") { // a browser keeps it when somebody comes back
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
  start();
})();
