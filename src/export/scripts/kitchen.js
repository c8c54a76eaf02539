// For the page of a recipe: amounts for other numbers of servings, and a screen that stays on.
(() => {
  "use strict";

  const { fraction, scaledLine, scaledServings, servingsIn, styleOf } = pantrywiseAmounts;

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

  // The texts of an ingredient, and the nodes that show its amount and its preparation.
  function readLine(item) {
    const link = item.querySelector("a");
    const amount = item.querySelector(".amount")?.firstChild;
    const preparation = link?.nextSibling;
    return {
      item,
      nodes: { amount, preparation },
      written: {
        amount: amount?.data ?? "",
        name: link?.textContent ?? "",
        preparation: preparation?.data ?? "",
      },
    };
  }

  function showLine({ item, nodes, written }, factor, style) {
    const scaled = factor === 1 ? { ...written, isScaled: false }
      : scaledLine(written, factor, style);
    for (const part of ["amount", "preparation"]) {
      if (nodes[part])
        nodes[part].data = (scaled ?? written)[part];
    }
    item.classList.toggle("scaled", scaled?.isScaled ?? false);
    item.querySelector(".as-written")?.remove();
    if (scaled === null) {
      const mark = element("small", { className: "as-written", lang: "en" }, "as written");
      (item.querySelector("label > span") ?? item).append(" ", mark);
    }
    return scaled !== null;
  }

  // What the buttons count: the servings of the text, or how many times the recipe is made.
  function counterFor(text) {
    const servings = servingsIn(text);
    if (servings > 0) {
      return {
        base: servings,
        step: Number.isInteger(servings) ? 1 : 0.5,
        most: Math.max(99, servings),
        isServings: true,
        named: (count) => (count === servings ? text : scaledServings(text, count)),
      };
    }
    const times = (count) => `${text} × ${fraction(count, false)}`.trim();
    const named = (count) => (count === 1 && text ? text : times(count));
    return { base: 1, step: 0.5, most: 10, isServings: false, named };
  }

  function describe(counter, count, areAllScaled) {
    const change = counter.isServings ? `for ${counter.named(count)}`
      : `× ${fraction(count, false)}`;
    const kept = areAllScaled ? "Sizes in brackets and the instructions"
      : "Sizes in brackets, the instructions and lines marked “as written”";
    return `Amounts ${change}. ${kept} are not changed.`;
  }

  function addCounter(place, counter, lines) {
    const style = styleOf(lines.flatMap(({ written }) => [written.amount, written.preparation]));
    const { base, step, most, isServings } = counter;
    let current = base;
    const shown = element("output");
    const fewer = button("−", isServings ? "Fewer servings" : "Smaller amounts", () =>
      show(Math.max(Math.ceil(current / step - 1) * step, step)));
    const more = button("+", isServings ? "More servings" : "Larger amounts", () =>
      show(Math.min(Math.floor(current / step + 1) * step, most)));
    const note = element("span");
    const back = button(`Back to ${counter.named(base)}`, "", () => {
      show(base);
      more.focus();
    });
    const changed = element("p", { className: "changed", hidden: true }, note, " ", back);

    function show(count) {
      current = count;
      const results = lines.map((line) => showLine(line, current / base, style));
      shown.textContent = counter.named(current);
      fewer.setAttribute("aria-disabled", String(current <= step));
      more.setAttribute("aria-disabled", String(current >= most));
      changed.hidden = current === base;
      note.textContent = describe(counter, current, results.every((isScaled) => isScaled));
    }

    place.classList.add("servings");
    place.setAttribute("role", "group");
    place.setAttribute("aria-label", isServings ? "Servings" : "Amounts");
    place.replaceChildren(fewer, shown, more);
    place.after(changed);
    show(base);
  }

  // If the servings are unknown, the amounts can be multiplied all the same.
  function addServings(list) {
    const lines = [...list.children].map(readLine);
    const style = styleOf([]);
    if (!lines.some(({ written }) => scaledLine(written, 2, style)?.isScaled))
      return;
    const place = list.parentElement.querySelector(".yield")
      ?? list.parentElement.insertBefore(element("p", { className: "yield" }), list);
    addCounter(place, counterFor(place.textContent.trim()), lines);
  }

  // The browser releases the lock when the page is hidden, or if the battery is low.
  function screenLock(onLost) {
    let isWanted = false;
    let lock = null;

    function forget(released) {
      if (lock !== released)
        return;
      lock = null;
      if (document.visibilityState === "visible")
        onLost();
    }

    async function request() {
      if (!isWanted || lock || document.visibilityState !== "visible")
        return;
      try {
        const requested = await navigator.wakeLock.request("screen");
        if (!isWanted || lock) {
          requested.release();
          return;
        }
        lock = requested;
        lock.addEventListener("release", () => forget(requested));
      } catch {
        onLost();
      }
    }

    document.addEventListener("visibilitychange", request);
    return (wanted) => {
      isWanted = wanted;
      if (!isWanted) {
        const released = lock;
        lock = null;
        released?.release();
      }
      request();
    };
  }

  function addScreenSwitch(section) {
    let isOn = false;
    const control = button("Keep the screen on", "", () => turn(!isOn));
    control.className = "awake";
    control.setAttribute("role", "switch");
    const keepScreenOn = screenLock(() => turn(false));

    function turn(on) {
      isOn = on;
      control.setAttribute("aria-checked", String(on));
      keepScreenOn(on);
    }

    section.querySelector("h2").after(control);
    turn(false);
  }

  const ingredients = document.querySelector(".recipe ul.ingredients");
  if (ingredients)
    addServings(ingredients);
  const instructions = document.querySelector(".recipe .instructions");
  if (instructions && "wakeLock" in navigator)
    addScreenSwitch(instructions);
})();
