"use strict";
// The chain of cross sections, the bed, and the links between regions.
(() => {
  const { setup, element, categoryColour, number, draw } = kcfPreview;
  const textWidth = (text) => 6.8 * text.length + 10;
  const shortened = (text, length = 34) => (text.length > length ? text.slice(0, length - 1) + "…" : text);

  // The chain.

  function chainOf(chain, room) {
    const sections = chain.sections;
    const margin = 130;
    const step = Math.max(44, Math.min(320, (room - 2 * margin) / Math.max(1, sections.length - 1)));
    const width = 2 * margin + step * Math.max(1, sections.length - 1);
    const place = (name) => {
      if (name === "upstream") return 0;
      if (name === "downstream") return sections.length - 1;
      return sections.indexOf(name);
    };
    const x = (position) => margin + position * step;
    const lanes = { above: [], below: [] };
    // Labels go into the first lane in which they cover no other.
    const laneFor = (side, left, right) => {
      let lane = lanes[side].findIndex((end) => end < left);
      if (lane < 0) lane = lanes[side].push(-Infinity) - 1;
      lanes[side][lane] = right;
      return lane;
    };
    const marks = chain.marks.map((mark) => ({ ...mark, places: mark.at.map(place) })).filter((mark) => mark.places.length && mark.places.every((one) => one >= 0))
      .map((mark) => ({ ...mark, position: mark.places.reduce((sum, one) => sum + one, 0) / mark.places.length }))
      .sort((a, b) => a.position - b.position);
    const middle = [];
    for (const mark of marks) {
      const side = mark.side === "right" ? "below" : mark.side === "left" ? "above" : mark.field === "hydraulics" ? "above" : "below";
      const label = shortened([mark.name, mark.type].filter(Boolean).join(" · "));
      const left = Math.min(Math.max(x(mark.position) - textWidth(label) / 2, 2), width - textWidth(label) - 2);
      middle.push({ mark, side, label, left, lane: laneFor(side, left, left + textWidth(label)) });
    }
    const laneHeight = 22;
    const isSlanted = step < 80;
    const names = isSlanted ? 70 : 30;
    const top = 14 + laneHeight * lanes.above.length;
    const axis = top + 34;
    const below = axis + names + 26;
    const bands = below + laneHeight * lanes.below.length + 8;
    const height = bands + 30 * chain.bands.length + 2;
    const svg = element("svg", { class: "chain", width, height, viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": `Chain of ${sections.length} cross sections of ${chain.region}; see the table below` });
    const fieldClass = (mark) => mark.field.replace(" ", "-");
    svg.append(element("path", { class: "river", d: `M${x(0) - 40} ${axis}H${x(Math.max(1, sections.length - 1)) + 40}` }),
      element("path", { class: "flow", d: `M${x(0) - 60} ${axis - 7}l14 7l-14 7` }), element("text", { class: "quiet", x: x(0) - 68, y: axis + 4, "text-anchor": "end" }, "flow"));
    for (const { mark, side, label, left, lane } of middle) {
      const y = side === "above" ? top - 4 - laneHeight * lane : below + 14 + laneHeight * lane;
      const foot = side === "above" ? axis - 12 : axis + (isSlanted ? 12 : 37);
      const group = element("g", { class: `mark ${fieldClass(mark)}`, "data-mark": mark.name || mark.type, "data-at": mark.at.join(" ") });
      group.append(element("title", {}, `${mark.field} ${mark.kind} ${mark.name} ${mark.type} at ${mark.at.join(", ")}${mark.side ? `, ${mark.side}` : ""}`));
      group.append(element("path", { class: "stem", d: `M${x(mark.position)} ${foot}V${side === "above" ? y + 4 : y - 13}` }));
      if (mark.kind === "inner boundary") group.append(element("rect", { class: "gate", x: x(mark.position) - 4, y: axis - 13, width: 8, height: 26, rx: 2 }));
      else if (mark.kind === "boundary") group.append(element("rect", { class: "end", x: x(mark.position) - 3, y: axis - 16, width: 6, height: 32, rx: 2 }));
      else for (const one of mark.places) group.append(element("circle", { class: "source", cx: x(one), cy: side === "above" ? axis - 12 : axis + 12, r: 5 }));
      group.append(element("text", { x: left + 5, y }, label));
      svg.append(group);
    }
    sections.forEach((name, i) => {
      svg.append(element("line", { class: "section", x1: x(i), x2: x(i), y1: axis - 9, y2: axis + 9 }),
        element("text", isSlanted ? { class: "section", transform: `translate(${x(i) + 4} ${axis + 26}) rotate(40)`, "data-section": i }
          : { class: "section", x: x(i), y: axis + 30, "text-anchor": "middle", "data-section": i }, shortened(name, isSlanted ? 12 : 20)));
    });
    chain.bands.forEach((band, i) => {
      const y = bands + 30 * i;
      svg.append(element("g", { class: "band", "data-band": band.label }, element("rect", { x: x(0), y, width: x(Math.max(1, sections.length - 1)) - x(0), height: 24, rx: 4 }),
        element("text", { class: "quiet", x: x(0) - 8, y: y + 16, "text-anchor": "end" }, shortened(band.label, 20)),
        element("text", { x: x(0) + 10, y: y + 16 }, shortened(band.text, Math.floor((width - 2 * margin) / 7)))));
    });
    return svg;
  }

  draw("chain-view", (place) => {
    for (const chain of setup.chains) {
      place.append(element("h3", {}, chain.region), element("div", { class: "wide", tabindex: "0", role: "region", "aria-label": `Chain ${chain.region}` }, chainOf(chain, place.clientWidth || 900)),
        element("p", { class: "keys" }, ...["hydraulics", "bed load", "suspended load", "bed"].filter((field) => chain.marks.some((mark) => mark.field === field))
          .map((field) => element("span", { class: `key ${field.replace(" ", "-")}` }, field))));
    }
  });

  // The bed.

  function grainCurves(bed, colours) {
    const [width, height, left, bottom, top, right] = [560, 320, 46, 40, 12, 16];
    const sizes = bed.diameters;
    const logs = sizes.filter((size) => size > 0).map(Math.log10);
    const low = Math.floor(Math.min(...logs));
    const high = Math.max(Math.ceil(Math.max(...logs)), low + 1);
    const x = (size) => left + (Math.log10(size) - low) / (high - low) * (width - left - right);
    const y = (percent) => top + (100 - percent) / 100 * (height - top - bottom);
    const svg = element("svg", { class: "curves", viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": `Grain-size curves of ${bed.mixtures.length} mixtures; see the table below` });
    for (let power = low; power <= high; ++power) {
      for (let factor = 1; factor < 10 && (power < high || factor === 1); ++factor) {
        svg.append(element("line", { class: factor === 1 ? "grid strong" : "grid", x1: x(factor * 10 ** power), x2: x(factor * 10 ** power), y1: y(0), y2: y(100) }));
      }
      svg.append(element("text", { class: "tick", x: x(10 ** power), y: height - bottom + 18, "text-anchor": "middle" }, number(10 ** power)));
    }
    for (let percent = 0; percent <= 100; percent += 20) {
      svg.append(element("line", { class: "grid strong", x1: left, x2: width - right, y1: y(percent), y2: y(percent) }),
        element("text", { class: "tick", x: left - 8, y: y(percent) + 4, "text-anchor": "end" }, percent));
    }
    svg.append(element("text", { class: "tick", x: (left + width - right) / 2, y: height - 6, "text-anchor": "middle" }, "grain diameter [mm]"),
      element("text", { class: "tick", transform: `translate(12 ${(top + height - bottom) / 2}) rotate(-90)`, "text-anchor": "middle" }, "finer [%]"));
    for (const mixture of bed.mixtures) {
      let sum = 0;
      const order = sizes.map((size, i) => [size, mixture.fractions[i] ?? 0]).sort((a, b) => a[0] - b[0]);
      const points = order.map(([size, part]) => [x(size), y(sum += part)]);
      const name = element("title", {}, mixture.name);
      svg.append(element("g", { "data-mixture": mixture.name }, name, element("polyline", { class: "curve", points: points.map((point) => point.map((one) => one.toFixed(1)).join(",")).join(" "), stroke: colours(mixture.name) }),
        ...points.map(([cx, cy]) => element("circle", { cx: cx.toFixed(1), cy: cy.toFixed(1), r: 3, fill: colours(mixture.name) }))));
    }
    return svg;
  }

  function soilColumns(bed, colours) {
    const deepest = Math.min(-0.1, ...bed.soils.flatMap((soil) => soil.layers.map((layer) => layer.bottom ?? 0)));
    const [columnWidth, gap, top, depth, left] = [92, 18, 30, 230, 50];
    const width = left + bed.soils.length * (columnWidth + gap) + 4;
    const y = (elevation) => top + elevation / deepest * depth;
    const svg = element("svg", { class: "soils", width, height: top + depth + 44, viewBox: `0 0 ${width} ${top + depth + 44}`, role: "img", "aria-label": `Layers of ${bed.soils.length} soils; see the table below` });
    const power = 10 ** Math.floor(Math.log10(-deepest / 3));
    const step = power * [1, 2, 5, 10].find((factor) => factor * power >= -deepest / 5);
    for (let elevation = 0; elevation >= deepest - 1e-9; elevation -= step) {
      svg.append(element("line", { class: "grid", x1: left - 6, x2: width - 4, y1: y(elevation), y2: y(elevation) }),
        element("text", { class: "tick", x: left - 10, y: y(elevation) + 4, "text-anchor": "end" }, number(elevation, 3)));
    }
    svg.append(element("text", { class: "tick", transform: `translate(11 ${top + depth / 2}) rotate(-90)`, "text-anchor": "middle" }, "below the surface [m]"));
    bed.soils.forEach((soil, i) => {
      const x = left + i * (columnWidth + gap);
      const group = element("g", { "data-soil": soil.name });
      let from = 0;
      for (const layer of soil.layers) {
        const to = layer.bottom ?? deepest;
        const heightOf = Math.max(1, y(to) - y(from));
        group.append(element("rect", { class: "layer", x, y: y(from), width: columnWidth, height: heightOf, fill: colours(layer.mixture) }, element("title", {}, `${layer.mixture} down to ${layer.bottom} m`)));
        if (heightOf > 15) group.append(element("text", { class: "inside", x: x + columnWidth / 2, y: y(from) + heightOf / 2 + 4, "text-anchor": "middle" }, shortened(layer.mixture, 13)));
        from = to;
      }
      if (!soil.layers.length) group.append(element("rect", { class: "rock", x, y: y(0), width: columnWidth, height: 14 }), element("text", { class: "tick", x: x + columnWidth / 2, y: y(0) + 32, "text-anchor": "middle" }, "fixed"));
      group.append(element("text", { class: "title", x: x + columnWidth / 2, y: top - 10, "text-anchor": "middle" }, shortened(soil.name, 14)),
        element("text", { class: "tick", x: x + columnWidth / 2, y: top + depth + 20, "text-anchor": "middle" }, shortened(soil.materials.length ? `material ${soil.materials.join(", ")}` : "not assigned", 16)));
      svg.append(group);
    });
    return svg;
  }

  draw("bed-view", (place) => {
    for (const bed of setup.beds) {
      const names = bed.mixtures.map((mixture) => mixture.name);
      const colours = (name) => (names.includes(name) ? categoryColour(names.indexOf(name)) : "#9aa0a6");
      const box = element("div", { class: "bed" });
      if (bed.diameters.some((size) => size > 0) && bed.mixtures.length) {
        box.append(element("figure", {}, grainCurves(bed, colours), element("figcaption", { class: "keys" }, ...names.map((name) => element("span", { class: "key" },
          element("svg", { class: "swatch", viewBox: "0 0 12 12", "aria-hidden": "true" }, element("rect", { width: 12, height: 12, rx: 2, fill: colours(name) })), name)))));
      }
      if (bed.soils.length) box.append(element("figure", { class: "wide", tabindex: "0", role: "region", "aria-label": `Soils of ${bed.region}` }, soilColumns(bed, colours)));
      place.append(element("h3", {}, bed.region), box);
    }
  });

  // The links.

  draw("links-view", (place) => {
    const graph = new dagre.graphlib.Graph({ multigraph: true });
    graph.setGraph({ rankdir: place.clientWidth < 600 ? "TB" : "LR", nodesep: 36, ranksep: 70, edgesep: 22, marginx: 10, marginy: 10 });
    graph.setDefaultEdgeLabel(() => ({}));
    for (const node of setup.graph.nodes) graph.setNode(node.id, { ...node, width: Math.max(textWidth(shortened(node.label)) * 1.15, textWidth(node.kind)) + 20, height: 50 });
    setup.graph.edges.forEach((edge, i) => graph.setEdge(edge.from, edge.to, { ...edge, width: textWidth(shortened(edge.label)), height: 18, labelpos: "c" }, String(i)));
    dagre.layout(graph);
    const { width, height } = graph.graph();
    const svg = element("svg", { class: width < 1.8 * place.clientWidth ? "links fitted" : "links", width, height, viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": "Regions, couplings and controllers; see the table below" });
    const head = (from, to) => {
      const angle = Math.atan2(to.y - from.y, to.x - from.x);
      const wing = (turn) => `${(to.x - 10 * Math.cos(angle + turn)).toFixed(1)} ${(to.y - 10 * Math.sin(angle + turn)).toFixed(1)}`;
      return element("path", { class: "head", d: `M${to.x.toFixed(1)} ${to.y.toFixed(1)}L${wing(0.4)}L${wing(-0.4)}Z` });
    };
    for (const key of graph.edges()) {
      const edge = graph.edge(key);
      const group = element("g", { class: "edge", "data-edge": `${key.v} > ${key.w}` }, element("title", {}, edge.detail));
      const { points } = edge;
      let d = `M${points[0].x} ${points[0].y}`;
      for (let i = 1; i < points.length - 1; ++i) {
        const next = i < points.length - 2 ? { x: (points[i].x + points[i + 1].x) / 2, y: (points[i].y + points[i + 1].y) / 2 } : points[i + 1];
        d += `Q${points[i].x} ${points[i].y} ${next.x} ${next.y}`;
      }
      group.append(element("path", { class: "line", d }), head(points[points.length - 2], points[points.length - 1]));
      if (edge.both) group.append(head(points[1], points[0]));
      group.append(element("rect", { class: "back", x: edge.x - edge.width / 2, y: edge.y - 10, width: edge.width, height: 20, rx: 4 }),
        element("text", { x: edge.x, y: edge.y + 4, "text-anchor": "middle" }, shortened(edge.label)));
      svg.append(group);
    }
    for (const id of graph.nodes()) {
      const node = graph.node(id);
      const kind = node.kind.includes("controller") ? "controller" : node.kind.startsWith("missing") ? "missing" : "region";
      svg.append(element("g", { class: `node ${kind}`, "data-node": node.label }, element("rect", { x: node.x - node.width / 2, y: node.y - 25, width: node.width, height: 50, rx: kind === "controller" ? 25 : 8 }),
        element("text", { class: "title", x: node.x, y: node.y - 2, "text-anchor": "middle" }, shortened(node.label)), element("text", { class: "tick", x: node.x, y: node.y + 16, "text-anchor": "middle" }, node.kind)));
    }
    place.append(element("div", { class: "wide", tabindex: "0", role: "region", "aria-label": "Links" }, svg));
  });
  kcfPreview.ready = Promise.all(kcfPreview.drawings).then(() => {
    kcfPreview.reveal();
    document.documentElement.dataset.ready = "";
  });
})();
