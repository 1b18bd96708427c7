"use strict";

// What a page offers beyond reading: copies of examples, and the tags of a block by a choice.
(function () {
  function addCopyButton(text) {
    const frame = document.createElement("div");
    frame.className = "snippet";
    text.replaceWith(frame);
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = "Copy";
    button.addEventListener("click", async () => {
      try {
        await navigator.clipboard.writeText(text.textContent);
        button.textContent = "Copied";
      } catch {
        // Without leave to write to the clipboard the text is at least selected.
        getSelection().selectAllChildren(text);
        button.textContent = "Selected";
      }
      setTimeout(() => (button.textContent = "Copy"), 2000);
    });
    frame.append(text, button);
  }

  // Puts the rows of the tags in groups: needed, optional and not used where the choice is made.
  function groupTags(chooser) {
    const select = chooser.querySelector("select");
    const table = chooser.parentElement.querySelector("table");
    const original = table.tBodies[0];
    const rows = [...original.rows];
    chooser.hidden = false;

    function group(title, className, members) {
      const body = document.createElement("tbody");
      body.className = className;
      const head = document.createElement("tr");
      head.className = "group";
      const cell = document.createElement("th");
      cell.colSpan = 3;
      cell.scope = "rowgroup";
      cell.textContent = title;
      head.append(cell);
      body.append(head, ...members);
      return body;
    }

    function label(row, text) {
      const need = row.querySelector(".need");
      row.allNeed ??= [need.textContent, need.className];
      need.textContent = text ?? row.allNeed[0];
      need.className = text === undefined ? row.allNeed[1] : text.startsWith("needed") ? "need must" : "need";
    }

    // The tags of which one is enough, such as "hqrelation:file".
    function orElse(row, choice) {
      const others = row.dataset.others.split(" ").find((entry) => entry.startsWith(choice + ":"));
      return others === undefined ? "" : others.slice(choice.length + 1).split(",").map((tag) => ", or " + tag).join("");
    }

    function show() {
      const choice = select.value;
      rows.forEach((row) => label(row));
      for (const body of [...table.tBodies]) body.remove();
      original.replaceChildren(...(choice === "" ? rows : []));
      table.append(original);
      if (choice === "") return;
      const among = (row, list) => row.dataset[list].split(" ").includes(choice);
      const groups = { needed: [], optional: [], unused: [] };
      for (const row of rows) {
        const isDeciding = row.id.endsWith("tag-" + select.dataset.tag);
        if (among(row, "unused")) groups.unused.push(row);
        else if (isDeciding || among(row, "needed")) groups.needed.push(row);
        else groups.optional.push(row);
      }
      original.remove();
      for (const [name, title] of [["needed", "Needed"], ["optional", "Optional"], ["unused", "Not used"]]) {
        groups[name].forEach((row) => label(row, title.toLowerCase() + (name === "needed" ? orElse(row, choice) : "")));
        if (groups[name].length > 0) {
          table.append(group(`${title} where ${select.dataset.tag} is ${choice}`, name, groups[name]));
        }
      }
    }
    select.addEventListener("change", show);
    show();
  }

  document.querySelectorAll("main pre").forEach(addCopyButton);
  document.querySelectorAll(".chooser").forEach(groupTags);
})();
