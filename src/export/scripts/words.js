// Compares texts and derives the names of pages. Without access to the page, so that
// tools/check-scripts can check it.
const pantrywiseWords = (() => {
  "use strict";

  const marks = /\p{M}/gu;
  const apostrophes = /['’ʼ‘`´]/gu;
  const special = /[ßæœøðđħþłıς]/gu;
  const replacements = {
    "ß": "ss", "æ": "ae", "œ": "oe", "ø": "o", "ð": "d", "đ": "d", "ħ": "h", "þ": "th", "ł": "l",
    "ı": "i", "ς": "σ",
  };

  // Letters without accents and case, as the export sorts titles and names pages.
  function fold(text) {
    return text.normalize("NFKD").toLowerCase().replace(special, (letter) => replacements[letter])
      .replace(marks, "");
  }

  const nonEmpty = (word) => word !== "";

  // The words of a text, separated by spaces. Apostrophes and punctuation make no difference.
  function words(text) {
    return fold(text.replace(apostrophes, "")).split(/[^\p{L}\p{N}]+/u).filter(nonEmpty).join(" ");
  }

  // Whether a text has every word of a query, both as words() returns them.
  function matches(text, query) {
    return query.split(" ").every((word) => text.includes(word));
  }

  // The file name that the export gives to a title, without what it appends to the words.
  function stem(title) {
    return fold(title).replace(/['’]/gu, "").split(/[^a-z0-9]+/u).filter(nonEmpty).join("-")
      .slice(0, 60).replace(/-+$/u, "");
  }

  return { words, matches, stem };
})();
