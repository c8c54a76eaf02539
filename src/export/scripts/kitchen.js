// On the page of a recipe: amounts for another number of servings, and a screen that stays on.
(() => {
  "use strict";

  const glyphs = "½⅓⅔¼¾⅕⅖⅗⅘⅙⅚⅛⅜⅝⅞";
  const number = `\\d+[ \\u00a0-]*[${glyphs}]|[${glyphs}]|(?:\\d+[ \\u00a0-]+)?\\d+[/⁄]\\d+|\\d+(?:[.,]\\d+)?`;
  const between = "\\s*[-–—]\\s*|\\s+\\(?(?:to|or|bis|oder)\\s+";
  const start = new RegExp(
    `^([\\s(~≈]*(?:(?:ca|circa|about|approx|etwa)\\b\\.?\\s*)?)(${number})(?:(${between})(${number}))?`, "iu");
  const equivalent = new RegExp(
    `^([\\s.]*\\p{L}+\\.?\\s*[|/]\\s*|\\s*(?:[mk]?g|gr|grams?|[cdm]?l|oz|lbs?|pounds?)\\.?\\s*\\(\\s*)(${number})(?=\\s*\\p{L})`, "iu");
  // "1-inch piece", "28-oz can", "2% milk" and "9x13 inch" say what kind of thing it is, not how much.
  const size = /^\s*(?:-\p{L}|%|°|["″]|[x×]\s*\d+\s*-?\s*(?:inch|in\b|cm|mm|["″]))/iu;
  const small = /^\s*(?:g|gr|grams?|gramm|ml|millilit(?:er|re)s?|г|гр|мл|γρ|גרם)(?!\p{L})/iu;
  const metric = /^\s*(?:kg|kilos?|[cd]?l|lit(?:er|re)s?|[cm]m|кг|л)(?!\p{L})/iu;

  const glyphOf = new Map([...glyphs].map((glyph) => [glyph.normalize("NFKC").replace("⁄", "/"), glyph]));

  // "1½", "1-1/2" and "1,5" are 1.5. "1,500" is 1500, unless it counts kilograms or litres.
  function valueOf(written, unit) {
    const text = written.replace(/\D$/u, (glyph) => ` ${glyph.normalize("NFKC")}`);
    const parts = /^\s*(?:(\d+)[ \u00a0-]+)?(\d+)[/⁄](\d+)$/u.exec(text);
    if (parts)
      return Number(parts[1] ?? 0) + Number(parts[2]) / Number(parts[3]);
    if (/^[1-9]\d{0,2}[.,]\d{3}$/u.test(text) && !metric.test(unit))
      return Number(text.replace(/[.,]/u, ""));
    return Number(text.replace(",", "."));
  }

  function decimal(value, places, mark) {
    const rounded = Number(value.toFixed(places)) || Number(value.toPrecision(1));
    return String(rounded).replace(".", mark);
  }

  // The larger the number, the coarser the fractions: 1 1/8, but 5 1/4 and 12 1/2.
  function fraction(value, withGlyphs) {
    if (value < 1 / 8)
      return `1/${Math.round(1 / value)}`;
    const denominators = value < 3 ? [1, 2, 3, 4, 5, 6, 8] : value < 10 ? [1, 2, 3, 4] : value < 30 ? [1, 2] : [1];
    const error = (denominator) => Math.abs(Math.round(value * denominator) / denominator - value);
    const best = denominators.reduce((a, b) => (error(b) < error(a) - 1e-9 ? b : a));
    const numerator = Math.round(value * best);
    const whole = Math.floor(numerator / best) || "";
    if (numerator % best === 0)
      return String(whole);
    const part = `${numerator % best}/${best}`;
    return withGlyphs ? whole + glyphOf.get(part) : `${whole} ${part}`.trim();
  }

  // A number that was written as a fraction stays one; grams and other metric amounts are decimal.
  function scaledNumber(written, unit, factor, style) {
    const value = valueOf(written, unit) * factor;
    const isFraction = /[^\d.,]/u.test(written);
    if (!Number.isFinite(value) || value === 0)
      return written;
    if (!isFraction && small.test(unit))
      return decimal(value, value < 1 ? 2 : value < 10 ? 1 : 0, style.mark);
    if (!isFraction && (metric.test(unit) || /[.,]/u.test(written)))
      return decimal(value, 2, style.mark);
    return fraction(value, style.withGlyphs);
  }

  function scaled(amount, factor, style) {
    const found = start.exec(amount);
    const rest = found && amount.slice(found[0].length);
    if (!found || size.test(rest))
      return amount;
    const [, before, first, separator, second] = found;
    let result = before + scaledNumber(first, rest, factor, style);
    if (second) {
      const last = scaledNumber(second, rest, factor, style);
      const isBare = separator === "-" && /\D/u.test(result + last);
      result += (isBare ? " – " : separator) + last;
    }
    const other = equivalent.exec(rest);
    if (!other)
      return result + rest;
    const end = rest.slice(other[0].length);
    return result + other[1] + scaledNumber(other[2], end, factor, style) + end;
  }
})();
