// Multiplies the amounts of ingredients and the number of servings. Without access to the page, so
// that tools/check-scripts can check it.
const pantrywiseAmounts = (() => {
  "use strict";

  const glyphs = "½⅓⅔¼¾⅕⅖⅗⅘⅙⅚⅛⅜⅝⅞";
  const glyphOf = new Map(
    [...glyphs].map((glyph) => [glyph.normalize("NFKC").replace("⁄", "/"), glyph]));

  // A number as cooks write it: 2, 2.5, 2,5, 1/2, 1 1/2, 1-1/2, 1 and 1/2, ½, 1½.
  const whole = "\\d+(?:[ \\u00a0-]+|\\s+(?:and|und|&)\\s+)";
  const number = `(?:${whole}|\\d+)?[${glyphs}]|(?:${whole})?\\d+[/⁄]\\d+|\\d+(?:[.,]\\d+)?`;
  const numbers = new RegExp(`(?<![\\p{L}\\d])(?:${number})`, "giu");
  const about = "(?:[\\s(~≈]|\\b(?:ca|circa|about|approx|etwa)\\b\\.?)*";
  const measure = "(?:[mk]?g|gr|grams?|[cdm]?l|oz|lbs?|pounds?|cups?|pints?|quarts?|tbsp|tsp"
    + "|tablespoons?|teaspoons?|EL|TL|kilos?|lit(?:er|re)s?)(?!\\p{L})\\.?";
  const pattern = (source) => new RegExp(source, "iu");
  const leads = pattern(`^${about}$`);
  const measureFollows = pattern(`^\\s*${measure}`);
  const onlyMeasure = pattern(`^\\s*${measure}\\s*$`);

  // What stands between two numbers that are multiplied alike: "1-2", "1 kg - 1.5 kg", "1 (or 2)",
  // "1 cup plus 2 tbsp", "400g | 1lb".
  const dash = `\\s*(?:${measure})?\\s*[-–—]\\s*`;
  const to = "(?:\\s*\\p{L}+\\.?)?\\s+\\(?(?:to|bis)\\s+";
  const word = "(?:.*[\\s(,;])?(?:or|oder|plus|and|und)\\s+";
  const sign = "\\s*[\\p{L}. ]*\\(?[|/+&]\\s*";
  const joins = pattern(`^(?:${dash}|${to}|${word}|${sign})${about}$`);
  const nameJoins = pattern(
    `(?:^\\s*[-–+&|/]|(?:^|\\s)(?:to|or|oder|plus|and|und)(?!\\p{L}))\\s*(?:${number})`);
  const addition =
    pattern(`(?:^|[,;(])\\s*(?:(?:plus|and|und|or|oder)\\s|\\+|&)${about}$`);

  // What goes with a number that is a size and not an amount: "1-inch piece", "2% milk",
  // "9x13 inch", "2 x 400 g".
  const size = /^\s*(?:-\p{L}|%|°|["″]|[x×]\s*\d+\s*-?\s*(?:inch|in\b|cm|mm|["″]))/iu;
  const length = /^\s*(?:[cm]m|inch(?:es)?|in)(?!\p{L})/iu;
  const beforeSize = /(?:[\d\s][x×]|\b(?:of|à|je))\s*$/iu;
  const sizeAndNoun = pattern(`^\\s*${measure}\\s*\\p{L}`);

  const gramsOrMillilitres =
    /^\s*(?:g|gr|grams?|gramm|ml|millilit(?:er|re)s?|г|гр|мл|γρ|גרם)(?!\p{L})/iu;
  const otherMetric = /^\s*(?:kg|kilos?|[cd]?l|lit(?:er|re)s?|[cm]m|кг|л)(?!\p{L})/iu;

  // "1½", "1-1/2" and "1,5" are 1.5. "1,500" is 1500, but "1,500 kg" is one kilogram and a half.
  function valueOf(written, unit) {
    const text = written.replace(/\D$/u, (glyph) => ` ${glyph.normalize("NFKC")}`);
    const parts = /^(?:\s*(\d+)\D+)?\s*(\d+)[/⁄](\d+)$/u.exec(text);
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
    const integer = Math.floor(numerator / denominator) || "";
    if (numerator % denominator === 0)
      return String(integer);
    const part = `${numerator % denominator}/${denominator}`;
    return withGlyphs ? integer + glyphOf.get(part) : `${integer} ${part}`.trim();
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

  // Returns the numbers of a text, each with the texts before and after it and with what is in its
  // bracket before it, if it is in one.
  function numbersIn(text) {
    let end = 0;
    return [...text.matchAll(numbers)].map((match) => {
      const before = text.slice(0, match.index);
      const found = {
        written: match[0],
        before,
        between: text.slice(end, match.index),
        after: text.slice(match.index + match[0].length),
        bracket: /\(([^()]*)$/u.exec(before)?.[1],
      };
      end = match.index + match[0].length;
      return found;
    });
  }

  const isSize = ({ before, after }) => size.test(after) || beforeSize.test(before);

  // Whether a number after another one is an amount, too (true), or a size (false). Returns null if
  // that is not certain.
  function isNextAmount(found, wasAmount) {
    const { between, after, bracket } = found;
    if (isSize(found) || length.test(after) && !joins.test(between))
      return false;
    if (bracket !== undefined && between.includes("(")) {
      const [unit] = between.split("(");
      return wasAmount && (onlyMeasure.test(unit) || joins.test(between));
    }
    if (bracket !== undefined)
      return wasAmount && (joins.test(between) || onlyMeasure.test(between));
    const outside = between.replace(/^[^(]*\)|\([^()]*\)/gu, " ");
    if (outside !== between && joins.test(outside)) // "1 can (14 oz) plus 2 tbsp"
      return true;
    if (joins.test(between)) // "2 x 400 g plus 2 tbsp" is not certain
      return !wasAmount && /plus|and|und|[+&]/iu.test(between) ? null : wasAmount;
    if (onlyMeasure.test(between) && measureFollows.test(after))
      return wasAmount;
    return outside.trim() === "" && sizeAndNoun.test(after) ? false : null;
  }

  // The same for a number in what follows the name of an ingredient that has an amount before it.
  function isAddedAmount(found) {
    if (addition.test(found.before))
      return true;
    const isInBracket = found.bracket !== undefined;
    return isSize(found) || isInBracket || !measureFollows.test(found.after) ? false : null;
  }

  // Returns whether each number is an amount, or null if one of them may be either.
  function classify(found, isPreparation) {
    const kinds = [];
    for (const [i, next] of found.entries()) {
      let kind = null;
      if (isPreparation && (i === 0 || !kinds[i - 1] || !isNextAmount(next, true)))
        kind = isAddedAmount(next);
      else if (i > 0)
        kind = isNextAmount(next, kinds[i - 1]);
      else if (leads.test(next.before) && !size.test(next.after))
        kind = true;
      if (kind === null)
        return null;
      kinds.push(kind);
    }
    return kinds;
  }

  // "2-3 cups": the unit of 2 is that of 3.
  function unitAfter(found, i) {
    const next = found[i + 1];
    const isRange = next && /^\s*(?:[-–—]|to|or|bis|oder)\s*$/iu.test(next.between);
    return isRange ? unitAfter(found, i + 1) : found[i].after;
  }

  // "1/2-1" would be hard to read.
  function spaced(between, before, after) {
    return between === "-" && !/^\d+-\d+$/u.test(`${/\S*$/u.exec(before)[0]}-${after}`) ? " – "
      : between;
  }

  function scaledText(text, isPreparation, factor, style) {
    const found = numbersIn(text);
    const kinds = classify(found, isPreparation);
    if (kinds === null)
      return null;
    let result = "";
    found.forEach((next, i) => {
      const written = kinds[i] ? scaledNumber(next.written, unitAfter(found, i), factor, style)
        : next.written;
      result += (kinds[i] ? spaced(next.between, result, written) : next.between) + written;
    });
    return { text: result + (found.at(-1)?.after ?? text), isScaled: kinds.includes(true) };
  }

  // Returns the amount and the preparation of an ingredient with their amounts multiplied, and
  // whether there are any. Returns null if some number may or may not be an amount: it is all of a
  // line or nothing.
  function scaledLine(line, factor, style) {
    const { amount, name, preparation } = line;
    const isSplit = /^(?:[-–]\S|%)/u.test(name) || nameJoins.test(name); // "28" "-oz can"
    if (isSplit || (amount.trim() === "" && numbersIn(name).length > 0))
      return null;
    const first = scaledText(amount, false, factor, style);
    const [added] = numbersIn(preparation);
    const isAmountLast = amount.trim() === "" && leads.test(added?.before ?? "-");
    const last = scaledText(preparation, !isAmountLast, factor, style);
    return first && last
      ? { amount: first.text, preparation: last.text, isScaled: first.isScaled || last.isScaled }
      : null;
  }

  // How the recipe itself writes parts of numbers.
  function styleOf(texts) {
    const all = texts.join("\n");
    return {
      mark: /\d,\d/u.test(all) && !/\d\.\d/u.test(all) ? "," : ".",
      withGlyphs: new RegExp(`[${glyphs}]`, "u").test(all),
    };
  }

  // Returns the first number of a text such as "4-6 servings", or 0 if it has none.
  function servingsIn(text) {
    const [first] = numbersIn(text);
    return first ? valueOf(first.written, "") : 0;
  }

  // Returns the text for as many servings. A range grows with its first number.
  function scaledServings(text, servings) {
    const { mark, withGlyphs } = styleOf([text]);
    const factor = servings / servingsIn(text);
    const scaled = (written) => {
      const value = valueOf(written, "") * factor;
      return /[.,]/u.test(written) ? decimal(value, 1, mark) : fraction(value, withGlyphs);
    };
    const [first, second] = numbersIn(text);
    const start = first.before + scaled(first.written);
    if (second && joins.test(second.between)) {
      const end = scaled(second.written);
      return start + spaced(second.between, start, end) + end + second.after;
    }
    return start + first.after.replace(/^ servings?$/u, servings === 1 ? " serving" : " servings");
  }

  return { fraction, scaledLine, scaledServings, servingsIn, styleOf };
})();
