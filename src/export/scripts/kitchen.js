// For the page of a recipe: amounts for other numbers of servings, and a screen that stays on.
(() => {
  "use strict";

  const glyphs = "½⅓⅔¼¾⅕⅖⅗⅘⅙⅚⅛⅜⅝⅞";
  const glyphOf = new Map(
    [...glyphs].map((glyph) => [glyph.normalize("NFKC").replace("⁄", "/"), glyph]));

  // A number as cooks write it: 2, 2.5, 2,5, 1/2, 1 1/2, 1-1/2, ½, 1½.
  const number = `(?:\\d+[ \\u00a0-]*)?[${glyphs}]|(?:\\d+[ \\u00a0-]+)?\\d+[/⁄]\\d+`
    + "|\\d+(?:[.,]\\d+)?";
  const rangeSign = "\\s*[-–—]\\s*|\\s+\\(?(?:to|or|bis|oder)\\s+";
  const about = "[\\s(~≈]*(?:(?:ca|circa|about|approx|etwa)\\b\\.?\\s*)?";
  const amountPattern = new RegExp(`^(${about})(${number})(?:(${rangeSign})(${number}))?`, "iu");

  // What stands before the same amount in another measure: "400g | 1lb", "2.5 dl/ 1 cup",
  // "28 oz (825 ml)". In "1 can (400 ml)" the second number is the size of a can.
  const measure =
    "(?:[mk]?g|gr|grams?|[cdm]?l|oz|lbs?|pounds?|cups?|quarts?|tbsp|tsp|tablespoons?|teaspoons?)";
  const beforeOtherMeasure = new RegExp(
    `^\\s*(?:\\p{L}+\\.?(?:\\s*[|/]|\\s+(?:or|oder)\\b)\\s*|${measure}\\b\\.?\\s*(?=\\())`, "iu");

  // What follows a number that is a size and not an amount: "1-inch piece", "2% milk", "9x13 inch".
  const size = /^\s*(?:-\p{L}|%|°|["″]|[x×]\s*\d+\s*-?\s*(?:inch|in\b|cm|mm|["″]))/iu;
  const gramsOrMillilitres =
    /^\s*(?:g|gr|grams?|gramm|ml|millilit(?:er|re)s?|г|гр|мл|γρ|גרם)(?!\p{L})/iu;
  const otherMetric = /^\s*(?:kg|kilos?|[cd]?l|lit(?:er|re)s?|[cm]m|кг|л)(?!\p{L})/iu;

  // "1½", "1-1/2" and "1,5" are 1.5. "1,500" is 1500, but "1,500 kg" is one kilogram and a half.
  function valueOf(written, unit) {
    const text = written.replace(/\D$/u, (glyph) => ` ${glyph.normalize("NFKC")}`);
    const parts = /^(?:\s*(\d+)[\s-]+)?\s*(\d+)[/⁄](\d+)$/u.exec(text);
    if (parts)
      return Number(parts[1] ?? 0) + Number(parts[2]) / Number(parts[3]);
    if (/^[1-9]\d{0,2}[.,]\d{3}$/u.test(text) && !otherMetric.test(unit))
      return Number(text.replace(/[.,]/u, ""));
    return Number(text.replace(",", "."));
  }

  function decimal(value, places, mark) {
    const rounded = Number(value.toFixed(places)) || Number(value.toPrecision(1));
    return String(rounded).replace(".", mark);
  }

  // The larger the number, the coarser its fractions: 1 1/8, 5 1/4, 12 1/2.
  function denominatorsFor(value) {
    if (value < 3)
      return [1, 2, 3, 4, 5, 6, 8];
    if (value < 10)
      return [1, 2, 3, 4];
    return value < 30 ? [1, 2] : [1];
  }

  function fraction(value, withGlyphs) {
    if (value < 1 / 8)
      return `1/${Math.round(1 / value)}`;
    const error = (denominator) => Math.abs(Math.round(value * denominator) / denominator - value);
    const denominator = denominatorsFor(value).reduce(
      (best, next) => (error(next) < error(best) - 1e-9 ? next : best));
    const numerator = Math.round(value * denominator);
    const whole = Math.floor(numerator / denominator) || "";
    if (numerator % denominator === 0)
      return String(whole);
    const part = `${numerator % denominator}/${denominator}`;
    return withGlyphs ? whole + glyphOf.get(part) : `${whole} ${part}`.trim();
  }

  // A fraction stays a fraction, a decimal number stays decimal. Of a whole number, parts are
  // decimal in metric units, and fractions in all others.
  function scaledNumber(written, unit, factor, style) {
    const value = valueOf(written, unit) * factor;
    if (!Number.isFinite(value) || value === 0)
      return written;
    const wasFraction = /[^\d.,]/u.test(written);
    if (!wasFraction && gramsOrMillilitres.test(unit)) {
      const places = value < 1 ? 2 : 1;
      return decimal(value, value < 10 ? places : 0, style.mark);
    }
    if (!wasFraction && (otherMetric.test(unit) || /[.,]/u.test(written)))
      return decimal(value, 2, style.mark);
    return fraction(value, style.withGlyphs);
  }

  function findAmount(text) {
    const amount = amountPattern.exec(text);
    return amount && !size.test(text.slice(amount[0].length)) ? amount : null;
  }

  // Returns the text with the amount that it begins with multiplied. All else stays as it is.
  function scaledText(text, factor, style) {
    const amount = findAmount(text);
    if (!amount)
      return text;
    const [all, before, first, sign, last] = amount;
    const unit = text.slice(all.length);
    let result = before + scaledNumber(first, unit, factor, style);
    if (last) {
      const end = scaledNumber(last, unit, factor, style);
      const isClear = sign !== "-" || /^\d+$/u.test(result + end);
      result += (isClear ? sign : " – ") + end;
    }
    const between = beforeOtherMeasure.exec(unit)?.[0] ?? unit;
    return result + between + scaledText(unit.slice(between.length), factor, style);
  }

  // How the recipe itself writes parts of numbers.
  function styleOf(texts) {
    const all = texts.join("\n");
    return {
      mark: /\d,\d/u.test(all) && !/\d\.\d/u.test(all) ? "," : ".",
      withGlyphs: new RegExp(`[${glyphs}]`, "u").test(all),
    };
  }

  function element(name, properties, ...children) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
  }

  function button(text, label, onClick) {
    const made = element("button", { type: "button", onclick: onClick }, text);
    if (label)
      made.setAttribute("aria-label", label);
    return made;
  }

  // The text nodes that begin with a number to multiply. A line without an amount may have it in
  // brackets after its name: "spaghetti (350 g)".
  function amountTexts(list) {
    const nodes = [];
    for (const line of list.children) {
      const name = line.querySelector("a");
      const amount = line.querySelector(".amount");
      const node = amount ? amount.firstChild : name?.nextSibling;
      const isSize = amount && /^[-–%]/u.test(name?.textContent ?? ""); // "28" "-oz can"
      if (node && !isSize && findAmount(node.data))
        nodes.push(node);
    }
    return nodes;
  }

  // If the servings are unknown, the amounts can be multiplied all the same.
  function addServings(list) {
    const nodes = amountTexts(list);
    if (nodes.length === 0)
      return;
    const written = nodes.map((node) => node.data);
    const style = styleOf(written);
    const place = list.parentElement.querySelector(".yield")
      ?? list.parentElement.insertBefore(element("p", { className: "yield" }), list);
    const servings = Number(/^\d+(?:\.\d+)?(?=\s|$)/u.exec(place.textContent)?.[0] ?? 0);
    const base = servings || 1;
    const step = servings ? 1 : 0.5;
    const most = servings ? Math.max(99, base) : 10;
    let current = base;

    const named = (count) => {
      if (!servings)
        return `× ${fraction(count, style.withGlyphs)}`;
      return count === 1 ? "1 serving" : `${count} servings`;
    };
    const shown = element("output");
    const fewer = button("−", servings ? "Fewer servings" : "Smaller amounts", () =>
      show(Math.max(Math.ceil(current / step - 1) * step, step)));
    const more = button("+", servings ? "More servings" : "Larger amounts", () =>
      show(Math.min(Math.floor(current / step + 1) * step, most)));
    const note = element("span");
    const back = button(`Back to ${named(base)}`, "", () => {
      show(base);
      more.focus();
    });
    const mark = element("p", { className: "changed", hidden: true }, note, " ", back);

    function show(count) {
      current = count;
      const factor = current / base;
      shown.textContent = named(current);
      fewer.setAttribute("aria-disabled", String(current <= step));
      more.setAttribute("aria-disabled", String(current >= most));
      mark.hidden = factor === 1;
      const changed = servings ? `for ${current} instead of ${named(base)}` : named(current);
      note.textContent =
        `Amounts ${changed}. Sizes in brackets and the instructions are as written.`;
      nodes.forEach((node, i) => {
        node.data = factor === 1 ? written[i] : scaledText(written[i], factor, style);
        node.parentElement.closest("li").classList.toggle("scaled", factor !== 1);
      });
    }

    place.classList.add("servings");
    place.setAttribute("role", "group");
    place.setAttribute("aria-label", servings ? "Servings" : "Amounts");
    place.replaceChildren(fewer, shown, more);
    place.after(mark);
    show(base);
  }

  // The browser releases the lock when the page is hidden, or if the battery is low.
  function addScreenSwitch(section) {
    let isWanted = false;
    let lock = null;
    const control = button("Keep the screen on", "", () => want(!isWanted));
    control.className = "awake";
    control.setAttribute("role", "switch");

    function want(wanted) {
      isWanted = wanted;
      control.setAttribute("aria-checked", String(wanted));
      update();
    }

    async function update() {
      if (!isWanted) {
        lock?.release();
        lock = null;
        return;
      }
      if (lock || document.visibilityState !== "visible")
        return;
      try {
        const requested = await navigator.wakeLock.request("screen");
        if (!isWanted || lock) {
          requested.release();
          return;
        }
        lock = requested;
        lock.addEventListener("release", () => {
          if (lock !== requested)
            return;
          lock = null;
          if (document.visibilityState === "visible")
            want(false);
        });
      } catch {
        want(false);
      }
    }

    document.addEventListener("visibilitychange", update);
    section.querySelector("h2").after(control);
    want(false);
  }

  const ingredients = document.querySelector(".recipe ul.ingredients");
  if (ingredients)
    addServings(ingredients);
  const instructions = document.querySelector(".recipe .instructions");
  if (instructions && "wakeLock" in navigator)
    addScreenSwitch(instructions);
})();
