// A box above the lists that narrows them while somebody types. On the main menu it also finds
// ingredients and types, and the recipes of a book whose titles are not on that page.
(() => {
  "use strict";

  const fewestTitles = 8; // with fewer, nobody needs the box
  const mostResults = 40;
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

  // What stands on the page: each line with its text, and the headings that go with the lines.
  function readPage() {
    const lines = [...document.querySelectorAll("main .titles > li, main .types > li")]
      .map((item) => ({
        item,
        folded: fold((item.querySelector("a span") || item.querySelector("a") || item).textContent),
        isTitle: item.parentElement.classList.contains("titles"),
      }));
    const groups = [...document.querySelectorAll("main .letter, main .types, main .lettered")]
      .map((group) => ({
        box: group.classList.contains("types") ? group.closest("nav") || group : group,
        items: [...group.querySelectorAll("li")].filter((item) => !item.closest(".letters")),
        isPagesOnly: group.querySelector(".pages") !== null,
      }));
    return { lines, groups, indexes: [...document.querySelectorAll("main .index, main .pages")] };
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
      script.onerror = () => { isLoading = false; };
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
    const titles = page.lines.filter((line) => line.isTitle).length;
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

    // Shows the lines of the page that match and returns the number of titles among them.
    function narrowPage(words) {
      let count = 0;
      for (const line of page.lines) {
        const isShown = matches(line.folded, words);
        line.item.hidden = !isShown;
        count += isShown && line.isTitle ? 1 : 0;
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

    // Shows what the search file has and the page has not; returns the number of recipes found.
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
      const entries = others.slice(0, 8).concat(recipes).slice(0, mostResults);
      results.append(...entries.map(resultLine));
      const more = recipes.length + others.length - entries.length;
      if (more > 0) {
        results.append(element("li", "more", more === 1 ? "and 1 more" : `and ${more} more`));
      }
      results.hidden = entries.length === 0;
      return recipes.length;
    }

    function narrow() {
      const words = wordsOf(input.value);
      const count = narrowPage(words) + showResults(words, words.join(" "));
      if (words.length === 0) {
        status.textContent = "";
      } else if (searchName && search === null) {
        status.textContent = titles === 0 ? "Loading the titles…" : `${count} found`;
      } else {
        status.textContent = count === 0 ? "No recipe found" : count === 1 ? "1 found"
          : `${count} found`;
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
