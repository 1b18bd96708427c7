"use strict";

// Looks for blocks, tags, choices, rules, codes and chapters by what is typed, without a server: names.js holds all of
// them and is read when the search is first used.
(function () {
  const maxShown = 40;
  const box = document.getElementById("search");
  const hits = document.getElementById("hits");
  const told = document.getElementById("told");
  let all; // undefined before the names are asked for
  let chosen = -1;

  function prepare(names) {
    const kinds = { chapter: 0, example: 0, block: 0, tag: 0, choice: 0, rule: 0, code: 0 };
    all = names.map((node, order) => {
      kinds[node.kind] += 1;
      return {
        ...node,
        order,
        lowerName: node.name.toLowerCase(),
        lowerPath: ((node.path ?? "") + "/" + (node.tag ?? "")).toLowerCase(),
        lowerHelp: (node.help + " " + (node.more ?? "")).toLowerCase(),
      };
    });
    all.told = `${kinds.block} blocks, ${kinds.tag} tags, ${kinds.choice} choices, ` +
      `${kinds.rule} rules, ${kinds.code} codes, ${kinds.chapter} chapters and ${kinds.example} setups`;
  }

  function load() {
    if (all !== undefined) return;
    all = [];
    const script = document.createElement("script");
    script.src = "names.js";
    script.addEventListener("load", () => {
      prepare(window.kcfNames);
      show();
    });
    document.head.append(script);
  }

  // How far a word is from the node; undefined when it does not occur.
  function distance(node, word) {
    if (node.lowerName === word) return 0;
    if (node.lowerName.startsWith(word)) return 2;
    if (node.lowerName.includes(word)) return 3;
    if (node.lowerPath.includes(word)) return 5;
    if (node.lowerHelp.includes(word)) return 8;
    return undefined;
  }

  // Whether two words are the same but for `limit` characters too many, missing, other or swapped.
  function isLike(a, b, limit) {
    if (Math.abs(a.length - b.length) > limit) return false;
    let before = [];
    let last = Array.from({ length: b.length + 1 }, (_, j) => j);
    for (let i = 1; i <= a.length; ++i) {
      const row = [i];
      for (let j = 1; j <= b.length; ++j) {
        row[j] = Math.min(row[j - 1] + 1, last[j] + 1, last[j - 1] + (a[i - 1] === b[j - 1] ? 0 : 1));
        if (i > 1 && j > 1 && a[i - 1] === b[j - 2] && a[i - 2] === b[j - 1]) {
          row[j] = Math.min(row[j], before[j - 2] + 1);
        }
      }
      before = last;
      last = row;
    }
    return last[b.length] <= limit;
  }

  // As `distance`, with a typing error forgiven.
  function forgivingDistance(node, word) {
    const exact = distance(node, word);
    const limit = word.length >= 8 ? 2 : word.length >= 4 ? 1 : 0;
    if (exact !== undefined || limit === 0) return exact;
    if (isLike(word, node.lowerName, limit)) return 4;
    return node.lowerName.split(/[_ -]/).some((part) => isLike(word, part, limit)) ? 6 : undefined;
  }

  // The nodes that have all words but `maxMissing`.
  function find(words, measure, maxMissing = 0) {
    const found = [];
    for (const node of all) {
      const distances = words.map((word) => measure(node, word));
      if (distances.filter((each) => each === undefined).length > maxMissing) continue;
      const score = distances.reduce((sum, each) => sum + (each ?? 20), 0) + (node.kind === "choice" ? 0.5 : 0);
      found.push({ node, score });
    }
    return found.sort((a, b) => a.score - b.score || a.node.order - b.node.order).map((hit) => hit.node);
  }

  function element(kind, className, text) {
    const made = document.createElement(kind);
    made.className = className;
    made.textContent = text;
    return made;
  }

  function whereOf(node) {
    switch (node.kind) {
      case "tag":
        return "tag in " + node.path;
      case "choice":
        return `choice of ${node.tag} in ${node.path}`;
      case "rule":
        return "rule of " + node.path;
      case "code":
        return "code of kcf check";
      case "block":
        return "block " + node.path;
      default:
        return node.kind;
    }
  }

  function choose(index) {
    const options = [...hits.children];
    options[chosen]?.setAttribute("aria-selected", "false");
    chosen = index;
    const option = options[chosen];
    option?.setAttribute("aria-selected", "true");
    option?.scrollIntoView({ block: "nearest" });
    if (option === undefined) box.removeAttribute("aria-activedescendant");
    else box.setAttribute("aria-activedescendant", option.id);
  }

  function open(node, inNewTab) {
    if (inNewTab) {
      window.open(node.page);
    } else {
      close();
      location.href = node.page;
    }
  }

  function close() {
    hits.hidden = true;
    box.setAttribute("aria-expanded", "false");
    choose(-1);
  }

  function show() {
    const words = box.value.toLowerCase().split(/[\s/=.,]+/).filter(Boolean);
    if (words.length === 0 || all.length === 0) {
      hits.replaceChildren();
      told.textContent = "";
      close();
      return;
    }
    let found = find(words, distance);
    let telling = found.length === 1 ? "1 hit" : `${found.length} hits`;
    if (found.length === 0) {
      found = find(words, forgivingDistance);
      telling = found.length === 0 ? "Nothing found" : "Nothing is spelt so; this is like it: " +
        (found.length === 1 ? "1 hit" : `${found.length} hits`);
    }
    if (found.length === 0 && words.length >= 4) {
      // A message of the converter holds names and values, which no text here has.
      found = find(words, distance, Math.floor(words.length / 3));
      if (found.length > 0) telling = "Most of these words: " + (found.length === 1 ? "1 hit" : `${found.length} hits`);
    }
    if (found.length > maxShown) telling += `, the first ${maxShown} shown`;
    told.textContent = `${telling}, in ${all.told}`;
    hits.replaceChildren(
      ...found.slice(0, maxShown).map((node, index) => {
        const item = element("li", node.kind, "");
        item.id = "hit-" + index;
        item.setAttribute("role", "option");
        item.setAttribute("aria-selected", "false");
        item.append(element("code", "name", node.name), element("span", "where", whereOf(node)),
          element("span", "help", node.help));
        item.addEventListener("click", (event) => open(node, event.ctrlKey || event.metaKey));
        item.addEventListener("auxclick", () => open(node, true));
        item.node = node;
        return item;
      })
    );
    hits.hidden = found.length === 0;
    box.setAttribute("aria-expanded", String(!hits.hidden));
    choose(-1);
  }

  box.addEventListener("input", () => {
    load();
    show();
  });
  box.addEventListener("focus", () => {
    load();
    show();
  });
  box.addEventListener("keydown", (event) => {
    const count = hits.hidden ? 0 : hits.children.length;
    if (event.key === "ArrowDown" && count > 0) choose(Math.min(chosen + 1, count - 1));
    else if (event.key === "ArrowUp" && count > 0) choose(Math.max(chosen - 1, 0));
    else if (event.key === "Enter" && count > 0) {
      open(hits.children[Math.max(chosen, 0)].node, event.ctrlKey || event.metaKey);
    } else if (event.key === "Escape") {
      if (hits.hidden) box.value = "";
      close();
      told.textContent = "";
    } else return;
    event.preventDefault();
  });
  document.addEventListener("keydown", (event) => {
    if (event.key === "/" && !event.ctrlKey && !event.metaKey && !event.altKey &&
        !/^(INPUT|SELECT|TEXTAREA)$/.test(document.activeElement.tagName)) {
      box.focus();
      box.select();
      event.preventDefault();
    }
  });
  document.addEventListener("click", (event) => {
    if (!event.target.closest(".search")) {
      close();
      told.textContent = "";
    }
  });
})();
