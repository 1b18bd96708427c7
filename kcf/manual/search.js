"use strict";

// Looks for blocks and tags by what is typed, without a server: names.js holds all of them.
(function () {
  const maxShown = 40;
  const box = document.getElementById("search");
  const hits = document.getElementById("hits");
  const all = window.kcfNames.map((node, order) => ({
    ...node,
    order,
    lowerName: node.name.toLowerCase(),
    lowerPath: node.path.toLowerCase(),
    lowerHelp: node.help.toLowerCase(),
  }));

  // How far a word is from the node; undefined when it does not occur.
  function distance(node, word) {
    if (node.lowerName === word) return 0;
    if (node.lowerName.startsWith(word)) return 1;
    if (node.lowerName.includes(word)) return 2;
    if (node.lowerPath.includes(word)) return 4;
    if (node.lowerHelp.includes(word)) return 6;
    return undefined;
  }

  function find(text) {
    const words = text.toLowerCase().split(/[\s/=.]+/).filter(Boolean);
    if (words.length === 0) return [];
    const found = [];
    for (const node of all) {
      const distances = words.map((word) => distance(node, word));
      if (distances.includes(undefined)) continue;
      found.push({ node, score: distances.reduce((sum, each) => sum + each, 0) });
    }
    return found.sort((a, b) => a.score - b.score || a.node.order - b.node.order).map((hit) => hit.node);
  }

  function element(kind, className, text) {
    const made = document.createElement(kind);
    made.className = className;
    made.textContent = text;
    return made;
  }

  function show() {
    const found = find(box.value);
    hits.replaceChildren(
      ...found.slice(0, maxShown).map((node) => {
        const link = element("a", "", "");
        link.href = node.page;
        const where = node.isTag ? "tag in " + node.path : "block " + node.path;
        link.append(element("code", "name", node.name), element("span", "where", where),
          element("span", "help", node.help));
        const item = document.createElement("li");
        item.append(link);
        return item;
      })
    );
    if (found.length > maxShown || (found.length === 0 && box.value.trim() !== "")) {
      const text = found.length === 0 ? "Nothing found" : `and ${found.length - maxShown} more`;
      hits.append(element("li", "count", text));
    }
    hits.hidden = hits.children.length === 0;
  }

  function move(step) {
    const links = [...hits.querySelectorAll("a")];
    const next = links.indexOf(document.activeElement) + step;
    if (next < 0) {
      box.focus();
    } else if (next < links.length) {
      links[next].focus();
    }
  }

  box.addEventListener("input", show);
  box.addEventListener("focus", show);
  box.addEventListener("keydown", (event) => {
    const first = hits.querySelector("a");
    if (event.key === "Enter" && first !== null) {
      first.click();
    }
  });
  document.addEventListener("keydown", (event) => {
    const isSearching = event.target === box || hits.contains(event.target);
    if (event.key === "/" && !isSearching) {
      box.focus();
      box.select();
    } else if (event.key === "Escape" && isSearching) {
      hits.hidden = true;
      box.blur();
    } else if ((event.key === "ArrowDown" || event.key === "ArrowUp") && isSearching) {
      move(event.key === "ArrowDown" ? 1 : -1);
    } else {
      return;
    }
    event.preventDefault();
  });
  document.addEventListener("click", (event) => {
    if (event.target !== box) {
      hits.hidden = true;
    }
  });
})();
