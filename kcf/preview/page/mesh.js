"use strict";
// The meshes of all 2D regions in one view.
(() => {
  const { setup, stream, element, button, rampColour, categoryColour, mixed, number, memory, draw } = kcfPreview;
  const CHUNK = 16384;  // elements that are drawn, or not, together
  const NONE = 0xffffffff;

  /** Integers of seven bits a byte, the sign in the lowest bit. */
  function integers(buffer, count) {
    const bytes = new Uint8Array(buffer);
    const out = new Int32Array(count < 0 ? bytes.length : count);
    let at = 0;
    let n = 0;
    for (; n < out.length && at < bytes.length; ++n) {
      let byte = bytes[at++];
      let value = byte & 127;
      for (let shift = 7; byte & 128; shift += 7) {
        byte = bytes[at++];
        value |= (byte & 127) << shift;
      }
      out[n] = (value >>> 1) ^ -(value & 1);
    }
    return out;
  }

  function ids(differences) {
    for (let i = 0, last = 0; i < differences.length; ++i) differences[i] = last = last + differences[i] + 1;
    return differences;
  }

  /** Unpacks a mesh; the counterpart of packMesh. */
  async function unpack(mesh, origin) {
    const n = mesh.elements;
    const raw = await Promise.all(mesh.streams.map(stream));
    const materialSteps = integers(raw[1], n);
    const codes = integers(raw[2], -1);
    const offsets = [4, 5, 6].map((i) => integers(raw[i], mesh.nodes));
    const points = [0, 1, 2].map(() => new Int32Array(mesh.nodes));
    const corners = new Uint32Array(4 * n);
    const material = new Uint16Array(n);
    const known = [0, 0, 0];
    let next = 0;
    const place = (node, numKnown) => {
      for (let k = 0; k < 3; ++k) {
        const p = points[k];
        let guess = 0;
        if (mesh.prediction === 2 && numKnown === 3) guess = p[known[0]] - p[known[1]] + p[known[2]];
        else if (mesh.prediction === 2 && numKnown === 2) guess = (p[known[0]] + p[known[1]]) >> 1;
        else if (mesh.prediction === 1 && node > 1) guess = 2 * p[node - 1] - p[node - 2];
        else if (node > 0) guess = p[node - 1];
        p[node] = guess + offsets[k][node];
      }
    };
    for (let e = 0, at = 0, last = 0; e < n; ++e) {
      const base = 4 * e;
      const first = next;
      let count = 0;
      while (count < 4) {
        const code = codes[at++];
        if (code < 0) break;
        corners[base + count++] = code === 0 ? next++ : next - code;
      }
      if (count === 3) corners[base + 3] = NONE;
      if (next !== first) {
        // New nodes are numbered as they are named.
        for (let i = 0, fresh = first; i < count; ++i) {
          const node = corners[base + i];
          if (node !== fresh) continue;
          ++fresh;
          let numKnown = 0;
          for (let step = 1; step < count; ++step) {
            const other = corners[base + ((i + step) % count)];
            if (other < node) known[numKnown++] = other;
          }
          place(node, numKnown);
        }
      }
      material[e] = last = last + materialSteps[e];
    }
    for (let node = next; node < mesh.nodes; ++node) place(node, 0);
    // Relative to the origin of the view, since float32 loses centimetres at map coordinates.
    const x = new Float32Array(mesh.nodes);
    const y = new Float32Array(mesh.nodes);
    const z = new Float32Array(mesh.nodes);
    const shift = [mesh.origin[0] - origin[0], mesh.origin[1] - origin[1]];
    for (let i = 0; i < mesh.nodes; ++i) {
      x[i] = points[0][i] * mesh.step[0] + shift[0];
      y[i] = points[1][i] * mesh.step[1] + shift[1];
      z[i] = points[2][i] * mesh.step[2] + mesh.origin[2];
    }
    return { mesh, x, y, z, corners, material, elementIds: ids(integers(raw[0], n)), rawNodeIds: raw[3], size: n };
  }

  /** Vertices and triangles: each triangle's last vertex bears the material of its element. */
  function triangulate(part) {
    const { corners, size, mesh } = part;
    const owner = new Int32Array(mesh.nodes).fill(-1);
    const extra = [];
    const index = new Uint32Array(6 * size);
    const chunks = [];
    let at = 0;
    const chunk = () => ({ first: at, count: 0, low: [Infinity, Infinity], high: [-Infinity, -Infinity] });
    for (let e = 0; e < size; ++e) {
      if (e % CHUNK === 0) chunks.push({ ...chunk(), element: e });
      const box = chunks[chunks.length - 1];
      const base = 4 * e;
      const count = corners[base + 3] === NONE ? 3 : 4;
      let provoking = -1;
      for (let i = 0; i < count; ++i) {
        const node = corners[base + i];
        if (provoking < 0 && owner[node] < 0) {
          owner[node] = e;
          provoking = i;
        }
        if (part.x[node] < box.low[0]) box.low[0] = part.x[node];
        if (part.y[node] < box.low[1]) box.low[1] = part.y[node];
        if (part.x[node] > box.high[0]) box.high[0] = part.x[node];
        if (part.y[node] > box.high[1]) box.high[1] = part.y[node];
      }
      let last;
      if (provoking < 0) {
        provoking = 0;
        last = mesh.nodes + extra.length / 2;
        extra.push(corners[base], e);
      } else {
        last = corners[base + provoking];
      }
      const corner = (i) => corners[base + ((provoking + i) % count)];
      index[at++] = corner(1);
      index[at++] = corner(2);
      index[at++] = last;
      if (count === 4) {
        index[at++] = corner(2);
        index[at++] = corner(3);
        index[at++] = last;
      }
      box.count = at - box.first;
      box.end = e + 1;
    }
    const vertices = mesh.nodes + extra.length / 2;
    const position = new Float32Array(3 * vertices);
    const material = new Uint16Array(vertices);
    for (let v = 0; v < vertices; ++v) {
      const node = v < mesh.nodes ? v : extra[2 * (v - mesh.nodes)];
      const e = v < mesh.nodes ? owner[v] : extra[2 * (v - mesh.nodes) + 1];
      position[3 * v] = part.x[node];
      position[3 * v + 1] = part.y[node];
      position[3 * v + 2] = part.z[node];
      material[v] = e < 0 ? 0 : part.material[e];
    }
    return { position, material, index: index.subarray(0, at), chunks };
  }

  const vertexSource = `#version 300 es
    precision highp int;
    in vec3 position;
    in uint material;
    uniform vec4 view;  // centre and scale
    uniform vec2 heights;
    uniform int mode;
    uniform highp sampler2D palette;
    flat out vec4 colour;
    out float height;
    void main() {
      gl_Position = vec4((position.xy - view.xy) * view.zw, 0.0, 1.0);
      height = (position.z - heights.x) * heights.y;
      colour = mode == 0 ? texelFetch(palette, ivec2(int(material) % 256, int(material) / 256), 0) : vec4(1.0);
    }`;
  const fragmentSource = `#version 300 es
    precision highp float;
    precision highp int;
    flat in vec4 colour;
    in float height;
    uniform int mode;
    uniform vec4 line;
    uniform highp sampler2D ramp;
    out vec4 result;
    void main() {
      result = mode == 0 ? colour : mode == 1 ? texture(ramp, vec2(clamp(height, 0.0, 1.0), 0.5)) : line;
    }`;

  function program(gl) {
    const made = gl.createProgram();
    for (const [kind, source] of [[gl.VERTEX_SHADER, vertexSource], [gl.FRAGMENT_SHADER, fragmentSource]]) {
      const shader = gl.createShader(kind);
      gl.shaderSource(shader, source);
      gl.compileShader(shader);
      if (!gl.getShaderParameter(shader, gl.COMPILE_STATUS)) throw new Error(gl.getShaderInfoLog(shader));
      gl.attachShader(made, shader);
    }
    gl.linkProgram(made);
    if (!gl.getProgramParameter(made, gl.LINK_STATUS)) throw new Error(gl.getProgramInfoLog(made));
    return made;
  }

  /** What elements can be coloured by: a title, and for each material of each mesh a key of the legend. */
  function colourings(meshes) {
    const list = [{ title: "Material", unit: "", key: (mesh, material) => String(material) }];
    list.push({ title: "Elevation", unit: "m a.s.l.", isHeight: true });
    const labels = new Map();
    for (const mesh of meshes) for (const table of mesh.tables) if (!labels.has(table.label)) labels.set(table.label, table.unit);
    for (const [label, unit] of labels) {
      list.push({
        title: label[0].toUpperCase() + label.slice(1),
        unit,
        key: (mesh, material) => {
          const table = mesh.tables.find((one) => one.label === label);
          return table === undefined ? null : table.values[material] ?? (table.otherwise === undefined ? null : table.otherwise);
        },
      });
    }
    return list;
  }

  /** The entries of the legend in order, with their colours. */
  function legendOf(colouring, meshes) {
    const entries = new Map();
    for (const mesh of meshes) {
      mesh.materials.forEach((material, i) => {
        const key = colouring.key(mesh, material);
        const entry = entries.get(key) ?? { key, elements: 0, area: 0, materials: new Set() };
        entry.elements += mesh.materialCounts[i];
        entry.area += mesh.materialAreas[i];
        entry.materials.add(material);
        entries.set(key, entry);
      });
    }
    const given = [...entries.values()].filter((entry) => entry.key !== null);
    const isNumeric = given.every((entry) => entry.key !== "" && Number.isFinite(Number(entry.key)));
    if (isNumeric) given.sort((a, b) => a.key - b.key);
    given.forEach((entry, i) => {
      const isRanked = isNumeric && colouring.title !== "Material";
      entry.colour = isRanked ? rampColour(given.length < 2 ? 0.5 : i / (given.length - 1)) : categoryColour(i);
    });
    const rest = entries.get(null);
    if (rest) {
      rest.colour = "#9aa0a6";
      given.push(rest);
    }
    return given;
  }

  const niceLength = (length) => {
    const power = 10 ** Math.floor(Math.log10(length));
    return power * [5, 2, 1].find((factor) => factor * power <= length);
  };

  class MeshView {
    constructor(place, parts, origin, isTold) {
      this.parts = parts;
      this.origin = origin;
      this.meshes = parts.map((part) => part.mesh);
      this.colourings = colourings(this.meshes);
      const kept = memory.get("mesh") ?? {};
      this.colouring = this.colourings.find((one) => one.title === kept.colouring) ?? this.colourings[0];
      this.show = { outlines: true, strings: true, sources: true, ...kept.show };
      this.build(place);
      this.start();
      this.box = this.boxOf(parts);
      this.shape();
      this.view = kept.view;
      this.resize();
      if (!kept.view) this.fit();
      this.recolour();
      isTold();
    }

    build(place) {
      this.canvas = element("canvas", { "aria-hidden": "true" });
      this.overlay = element("svg", { class: "overlay", "aria-hidden": "true" });
      this.readout = element("output", { class: "readout", "aria-live": "off" }, "");
      this.scale = element("div", { class: "scale", "aria-hidden": "true" });
      this.stage = element("div", {
        class: "stage", tabindex: "0", role: "application", "aria-roledescription": "map",
        "aria-label": "Mesh. Arrow keys move, plus and minus zoom, 0 shows all, Enter tells what lies in the middle. Tables follow below.",
      }, this.canvas, this.overlay, this.scale, this.readout);
      this.select = element("select", { id: "mesh-colouring", onchange: () => {
        this.colouring = this.colourings[this.select.selectedIndex];
        this.recolour();
      } }, ...this.colourings.map((one) => element("option", { selected: one === this.colouring }, one.title)));
      const check = (name, label) => element("label", { class: "check" }, element("input", {
        type: "checkbox", checked: this.show[name], onchange: (event) => { this.show[name] = event.target.checked; this.redraw(); },
      }), label);
      this.search = element("input", { id: "mesh-search", inputmode: "numeric", size: 9, autocomplete: "off", onkeydown: (event) => { if (event.key === "Enter") this.find(); } });
      const tools = element("div", { class: "tools" },
        element("label", { for: "mesh-colouring" }, "Colour by"), this.select,
        check("outlines", "Outlines"), check("strings", "Strings"), check("sources", "Sources"),
        element("span", { class: "gap" }),
        element("label", { class: "check" }, "Element", this.search), button("Find the element", "Find", () => this.find()),
        button("Zoom in", "+", () => this.zoom(1.5)), button("Zoom out", "−", () => this.zoom(1 / 1.5)),
        button("All of the mesh", "All", () => { this.fit(); this.redraw(); }));
      this.legend = element("div", { class: "legend" });
      this.details = element("div", { class: "element", role: "status" }, element("p", { class: "hint" }, "Point at an element, or click or tap it to keep it."));
      place.append(tools, element("div", { class: "map" }, this.stage, element("div", { class: "beside" }, this.legend, this.details)));
      this.listen();
    }

    listen() {
      new ResizeObserver(() => {
        if (!this.view || this.stage.clientWidth === 0) return;
        this.shape();
        if (!this.resize()) return;
        if (this.isWhole) this.fit();
        this.redraw();
      }).observe(this.stage);
      const pointers = new Map();
      let moved = 0;
      const here = (event) => {
        const box = this.stage.getBoundingClientRect();
        return [event.clientX - box.left, event.clientY - box.top];
      };
      this.stage.addEventListener("pointerdown", (event) => {
        pointers.set(event.pointerId, here(event));
        this.stage.setPointerCapture(event.pointerId);
        moved = 0;
      });
      this.stage.addEventListener("pointermove", (event) => {
        const to = here(event);
        const from = pointers.get(event.pointerId);
        if (!from) {
          this.point(to);
          return;
        }
        moved += Math.hypot(to[0] - from[0], to[1] - from[1]);
        if (pointers.size === 1) {
          this.pan(to[0] - from[0], to[1] - from[1]);
        } else {
          const [other] = [...pointers].filter(([id]) => id !== event.pointerId).map(([, at]) => at);
          const factor = Math.hypot(to[0] - other[0], to[1] - other[1]) / Math.max(1, Math.hypot(from[0] - other[0], from[1] - other[1]));
          this.zoom(factor, other);
        }
        pointers.set(event.pointerId, to);
      });
      const lift = (event) => {
        if (pointers.delete(event.pointerId) && event.type === "pointerup" && moved < 4) this.keep(this.elementAt(this.world(here(event))));
      };
      this.stage.addEventListener("pointerup", lift);
      this.stage.addEventListener("pointercancel", lift);
      this.stage.addEventListener("pointerleave", () => { this.readout.textContent = ""; });
      this.stage.addEventListener("wheel", (event) => {
        if (document.activeElement !== this.stage && !event.ctrlKey) {
          this.readout.textContent = "Click the mesh first, or hold Ctrl, to zoom with the wheel";
          return;
        }
        event.preventDefault();
        this.zoom(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)), here(event));
      }, { passive: false });
      this.stage.addEventListener("dblclick", (event) => this.zoom(2, here(event)));
      this.stage.addEventListener("keydown", (event) => {
        const step = 60;
        const moves = { ArrowLeft: [step, 0], ArrowRight: [-step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
        if (moves[event.key]) this.pan(...moves[event.key]);
        else if (event.key === "+" || event.key === "=") this.zoom(1.4);
        else if (event.key === "-") this.zoom(1 / 1.4);
        else if (event.key === "0") { this.fit(); this.redraw(); }
        else if (event.key === "Enter") this.keep(this.elementAt([this.view.x, this.view.y]));
        else if (event.key === "Escape") this.keep(null);
        else return;
        event.preventDefault();
      });
      matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.redraw());
      this.canvas.addEventListener("webglcontextlost", (event) => { event.preventDefault(); this.gl = null; });
      this.canvas.addEventListener("webglcontextrestored", () => { this.start(); this.recolour(); });
    }

    start() {
      const gl = this.canvas.getContext("webgl2", { antialias: false, alpha: true, depth: false, stencil: false, preserveDrawingBuffer: true });
      if (!gl) throw new Error("the browser has no WebGL 2");
      this.gl = gl;
      this.program = program(gl);
      gl.useProgram(this.program);
      this.uniform = Object.fromEntries(["view", "heights", "mode", "palette", "ramp", "line"].map((name) => [name, gl.getUniformLocation(this.program, name)]));
      const [position, material] = ["position", "material"].map((name) => gl.getAttribLocation(this.program, name));
      for (const part of this.parts) {
        const shape = triangulate(part);
        part.chunks = shape.chunks;
        part.array = gl.createVertexArray();
        gl.bindVertexArray(part.array);
        const fill = (target, data) => {
          gl.bindBuffer(target, gl.createBuffer());
          gl.bufferData(target, data, gl.STATIC_DRAW);
        };
        fill(gl.ARRAY_BUFFER, shape.position);
        gl.enableVertexAttribArray(position);
        gl.vertexAttribPointer(position, 3, gl.FLOAT, false, 0, 0);
        fill(gl.ARRAY_BUFFER, shape.material);
        gl.enableVertexAttribArray(material);
        gl.vertexAttribIPointer(material, 1, gl.UNSIGNED_SHORT, 0, 0);
        part.triangles = gl.createBuffer();
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, part.triangles);
        gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, shape.index, gl.STATIC_DRAW);
        part.palette = gl.createTexture();
        gl.bindVertexArray(null);
      }
      this.rampTexture = this.texture(gl.createTexture(), 256, new Uint8Array(Array.from({ length: 256 }, (_, i) => [...mixed(i / 255), 255]).flat()));
    }

    texture(texture, width, data) {
      const { gl } = this;
      gl.bindTexture(gl.TEXTURE_2D, texture);
      gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, width, data.length / 4 / width, 0, gl.RGBA, gl.UNSIGNED_BYTE, data);
      for (const side of [gl.TEXTURE_WRAP_S, gl.TEXTURE_WRAP_T]) gl.texParameteri(gl.TEXTURE_2D, side, gl.CLAMP_TO_EDGE);
      for (const filter of [gl.TEXTURE_MIN_FILTER, gl.TEXTURE_MAG_FILTER]) gl.texParameteri(gl.TEXTURE_2D, filter, gl.NEAREST);
      return texture;
    }

    boxOf(parts) {
      const box = { low: [Infinity, Infinity], high: [-Infinity, -Infinity] };
      const add = (x, y) => {
        box.low = [Math.min(box.low[0], x), Math.min(box.low[1], y)];
        box.high = [Math.max(box.high[0], x), Math.max(box.high[1], y)];
      };
      for (const part of parts) for (const chunk of part.chunks) {
        add(...chunk.low);
        add(...chunk.high);
      }
      for (const ground of setup.grounds ?? []) for (const [x, y] of ground.outline) add(x - this.origin[0], y - this.origin[1]);
      return Number.isFinite(box.low[0]) ? box : { low: [0, 0], high: [1, 1] };
    }

    /** A long river needs less height than the picture may take. */
    shape() {
      const { low, high } = this.box;
      const wanted = this.stage.clientWidth * (high[1] - low[1]) / Math.max(high[0] - low[0], 1e-6) + 150;
      this.stage.style.maxHeight = `${Math.max(wanted, 340)}px`;
    }

    fit() {
      this.isWhole = true;
      const [width, height] = [this.stage.clientWidth || 1, this.stage.clientHeight || 1];
      const { low, high } = this.box;
      const extent = [Math.max(high[0] - low[0], 1e-6), Math.max(high[1] - low[1], 1e-6)];
      this.view = { x: (low[0] + high[0]) / 2, y: (low[1] + high[1]) / 2, scale: 0.9 * Math.min(width / extent[0], height / extent[1]) };
    }

    /** False when all is as it was: a large mesh takes its time to be drawn again. */
    resize() {
      const ratio = Math.min(devicePixelRatio || 1, 2);
      const size = [this.stage.clientWidth, this.stage.clientHeight].map((length) => Math.max(1, Math.round(length * ratio)));
      if (this.canvas.width === size[0] && this.canvas.height === size[1]) return false;
      [this.canvas.width, this.canvas.height] = size;
      this.overlay.setAttribute("viewBox", `0 0 ${this.stage.clientWidth} ${this.stage.clientHeight}`);
      return true;
    }

    world([x, y]) {
      return [this.view.x + (x - this.stage.clientWidth / 2) / this.view.scale, this.view.y - (y - this.stage.clientHeight / 2) / this.view.scale];
    }

    screen(x, y) {
      return [(x - this.view.x) * this.view.scale + this.stage.clientWidth / 2, (this.view.y - y) * this.view.scale + this.stage.clientHeight / 2];
    }

    pan(dx, dy) {
      this.isWhole = false;
      this.view.x -= dx / this.view.scale;
      this.view.y += dy / this.view.scale;
      this.redraw();
    }

    zoom(factor, at = [this.stage.clientWidth / 2, this.stage.clientHeight / 2]) {
      this.isWhole = false;
      const before = this.world(at);
      this.view.scale = Math.min(Math.max(this.view.scale * factor, 1e-9), 1e7);
      const after = this.world(at);
      this.view.x += before[0] - after[0];
      this.view.y += before[1] - after[1];
      this.redraw();
    }

    recolour() {
      const { gl, colouring } = this;
      if (!gl) return;  // until the browser gives it back
      if (!colouring.isHeight) {
        this.entries = legendOf(colouring, this.meshes);
        const colours = new Map(this.entries.map((entry) => [entry.key, entry.colour]));
        for (const part of this.parts) {
          const rows = Math.max(1, Math.ceil(part.mesh.materials.length / 256));
          const data = new Uint8Array(4 * 256 * rows);
          part.mesh.materials.forEach((material, i) => {
            const colour = parseInt(colours.get(colouring.key(part.mesh, material)).slice(1), 16);
            data.set([colour >> 16, (colour >> 8) & 255, colour & 255, 255], 4 * i);
          });
          this.texture(part.palette, 256, data);
        }
      }
      gl.useProgram(this.program);
      this.writeLegend();
      this.redraw();
    }

    heights() {
      const low = Math.min(...this.meshes.map((mesh) => mesh.lowest));
      const high = Math.max(...this.meshes.map((mesh) => mesh.highest));
      return [low, high > low ? high : low + 1];
    }

    writeLegend() {
      const { title, unit, isHeight } = this.colouring;
      this.legend.replaceChildren(element("h3", {}, title, unit ? element("span", { class: "unit" }, ` [${unit}]`) : ""));
      if (isHeight) {
        const [low, high] = this.heights();
        const bar = element("svg", { class: "ramp", viewBox: "0 0 64 4", preserveAspectRatio: "none", role: "img", "aria-label": `Colours from ${number(low)} to ${number(high)} metres` },
          ...Array.from({ length: 64 }, (_, i) => element("rect", { x: i, y: 0, width: 1.1, height: 4, fill: rampColour(i / 63) })));
        this.legend.append(bar, element("p", { class: "ends" }, element("span", {}, number(low)), element("span", {}, number((low + high) / 2)), element("span", {}, number(high))));
        return;
      }
      const list = element("ul", {});
      const shown = 40;
      for (const entry of this.entries.slice(0, shown)) {
        const swatch = element("svg", { class: "swatch", viewBox: "0 0 12 12", "aria-hidden": "true" }, element("rect", { width: 12, height: 12, rx: 2, fill: entry.colour }));
        const materials = title === "Material" ? "" : `material ${[...entry.materials].slice(0, 8).join(", ")}${entry.materials.size > 8 ? " …" : ""}; `;
        list.append(element("li", {}, swatch, element("strong", {}, entry.key ?? "not told"),
          element("span", {}, ` ${materials}${entry.elements.toLocaleString("en").replaceAll(",", "\u202f")} el.`)));
      }
      this.legend.append(list);
      if (this.entries.length > shown) this.legend.append(element("p", { class: "hint" }, `and ${this.entries.length - shown} more`));
    }

    redraw() {
      if (this.pending) return;
      this.pending = true;
      requestAnimationFrame(() => {
        this.pending = false;
        if (this.view) this.paint();
      });
    }

    isVisible(chunk) {
      const half = [this.stage.clientWidth / 2 / this.view.scale, this.stage.clientHeight / 2 / this.view.scale];
      return chunk.low[0] <= this.view.x + half[0] && chunk.high[0] >= this.view.x - half[0] &&
        chunk.low[1] <= this.view.y + half[1] && chunk.high[1] >= this.view.y - half[1];
    }

    paint() {
      if (this.gl) this.paintElements();
      this.paintOverlay();
      memory.set("mesh", { view: this.isWhole ? null : this.view, colouring: this.colouring.title, show: this.show });
    }

    paintElements() {
      const { gl, view, uniform } = this;
      gl.viewport(0, 0, this.canvas.width, this.canvas.height);
      gl.clearColor(0, 0, 0, 0);
      gl.clear(gl.COLOR_BUFFER_BIT);
      gl.uniform4f(uniform.view, view.x, view.y, 2 * view.scale / this.stage.clientWidth, 2 * view.scale / this.stage.clientHeight);
      const [low, high] = this.heights();
      gl.uniform2f(uniform.heights, low, 1 / (high - low));
      gl.uniform1i(uniform.palette, 0);
      gl.uniform1i(uniform.ramp, 1);
      gl.activeTexture(gl.TEXTURE1);
      gl.bindTexture(gl.TEXTURE_2D, this.rampTexture);
      gl.activeTexture(gl.TEXTURE0);
      for (const part of this.parts) {
        gl.bindVertexArray(part.array);
        gl.bindTexture(gl.TEXTURE_2D, part.palette);
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, part.triangles);
        gl.uniform1i(uniform.mode, this.colouring.isHeight ? 1 : 0);
        const visible = part.chunks.filter((chunk) => this.isVisible(chunk));
        for (let i = 0; i < visible.length;) {
          let end = i + 1;
          while (end < visible.length && visible[end].element === visible[end - 1].end) ++end;
          gl.drawElements(gl.TRIANGLES, visible[end - 1].first + visible[end - 1].count - visible[i].first, gl.UNSIGNED_INT, 4 * visible[i].first);
          i = end;
        }
        const edge = Math.sqrt(part.mesh.area / Math.max(part.size, 1)) * view.scale;
        if (this.show.outlines && edge > 5 && visible.length <= 64) this.paintOutlines(part, visible, Math.min(1, (edge - 5) / 12));
      }
    }

    paintOutlines(part, visible, strength) {
      const { gl, uniform } = this;
      gl.uniform1i(uniform.mode, 2);
      gl.enable(gl.BLEND);
      gl.blendFuncSeparate(gl.SRC_ALPHA, gl.ONE_MINUS_SRC_ALPHA, gl.ZERO, gl.ONE);
      gl.uniform4f(uniform.line, 0.05, 0.08, 0.12, 0.15 + 0.3 * strength);
      for (const chunk of visible) {
        if (!chunk.lines) {
          const lines = new Uint32Array(8 * (chunk.end - chunk.element));
          let at = 0;
          for (let e = chunk.element; e < chunk.end; ++e) {
            const count = part.corners[4 * e + 3] === NONE ? 3 : 4;
            for (let i = 0; i < count; ++i) {
              lines[at++] = part.corners[4 * e + i];
              lines[at++] = part.corners[4 * e + ((i + 1) % count)];
            }
          }
          chunk.lines = gl.createBuffer();
          chunk.lineCount = at;
          gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, chunk.lines);
          gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, lines.subarray(0, at), gl.STATIC_DRAW);
        }
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, chunk.lines);
        gl.drawElements(gl.LINES, chunk.lineCount, gl.UNSIGNED_INT, 0);
      }
      gl.disable(gl.BLEND);
    }

    paintOverlay() {
      const shapes = [];
      const labels = [];
      const path = (points, isClosed) => points.map(([x, y], i) => `${i ? "L" : "M"}${x.toFixed(1)} ${y.toFixed(1)}`).join("") + (isClosed ? "Z" : "");
      for (const ground of setup.grounds ?? []) {
        const points = ground.outline.map(([x, y]) => this.screen(x - this.origin[0], y - this.origin[1]));
        shapes.push(element("path", { class: "ground", d: path(points, true) }));
        labels.push([...points[0], ground.region, "ground"]);
      }
      for (const part of this.parts) {
        if (this.meshes.length > 1 && part.size) {
          const box = this.boxOf([part]);
          labels.push([...this.screen((box.low[0] + box.high[0]) / 2, box.high[1]), part.mesh.region, "region"]);
        }
        if (this.show.strings) this.drawStrings(part, shapes, labels, path);
        if (this.show.sources) this.drawSources(part, shapes, labels);
      }
      if (this.kept) {
        const { part, e } = this.kept;
        shapes.push(element("path", { class: "kept", d: path([...this.cornersOf(part, e)].map((node) => this.screen(part.x[node], part.y[node])), true) }));
      }
      this.overlay.replaceChildren(...shapes, ...this.placed(labels));
      const length = niceLength(140 / this.view.scale);
      this.scale.replaceChildren(element("svg", { width: Math.round(length * this.view.scale) + 2, height: 8 }, element("path", { d: `M1 0V7H${(length * this.view.scale + 1).toFixed(1)}V0` })),
        element("span", {}, length >= 1000 ? `${length / 1000} km` : `${number(length)} m`));
    }

    drawStrings(part, shapes, labels, path) {
      const middleOf = (name) => {
        const nodes = part.mesh.strings.find((string) => string.name === name)?.nodes ?? [];
        return nodes.length ? this.screen(...[part.x, part.y].map((list) => (list[nodes[0]] + list[nodes[nodes.length - 1]]) / 2)) : null;
      };
      // The two strings of an inner boundary belong together.
      for (const inner of part.mesh.inner) {
        const ends = [middleOf(inner.first), middleOf(inner.second)];
        if (ends.every(Boolean)) shapes.push(element("path", { class: "pair", d: path(ends), "data-inner": `${inner.first} ${inner.second}` }));
      }
      for (const string of part.mesh.strings) {
        if (string.nodes.length === 0) continue;
        const points = string.nodes.map((node) => this.screen(part.x[node], part.y[node]));
        const kind = string.uses.some((use) => use.kind === "boundary") ? "boundary" : string.uses.length ? "inner" : string.upstream ? "defined" : "unused";
        const [use] = string.uses;
        shapes.push(element("path", { class: "string under", d: path(points) }),
          element("path", { class: `string ${kind}`, d: path(points), "data-string": string.name, "data-region": part.mesh.region }));
        const middle = points[Math.floor((points.length - 1) / 2)];
        const next = points[Math.floor((points.length - 1) / 2) + 1] ?? middle;
        const centre = [(middle[0] + next[0]) / 2, (middle[1] + next[1]) / 2];
        const along = [next[0] - middle[0], next[1] - middle[1]];
        const size = Math.hypot(...along);
        if (string.upstream && size > 0) {
          // Water comes from the upstream side; y points down on the screen.
          const sign = string.upstream === "right" ? 1 : -1;
          const flow = [sign * along[1] / size, -sign * along[0] / size];
          const tip = [centre[0] + 15 * flow[0], centre[1] + 15 * flow[1]];
          const wing = (side) => [tip[0] - 8 * flow[0] + side * 5 * flow[1], tip[1] - 8 * flow[1] - side * 5 * flow[0]];
          shapes.push(element("path", { class: `arrow ${kind}`, d: path([centre, [tip[0] - 6 * flow[0], tip[1] - 6 * flow[1]]]) }),
            element("path", { class: `head ${kind}`, d: path([tip, wing(1), wing(-1)], true), "data-flow": string.name }));
        }
        labels.push([...centre, use ? `${string.name} · ${use.type}` : string.name, kind]);
      }
    }

    drawSources(part, shapes, labels) {
      for (const source of part.mesh.sources) {
        const places = [];
        for (const id of source.elements) {
          const e = part.elementIds.indexOf(id);
          if (e >= 0) places.push(this.centre(part, e));
        }
        if (source.nodes.length) {
          this.nodeIds(part);
          for (const id of source.nodes) {
            const node = part.nodeIds.indexOf(id);
            if (node >= 0) places.push([part.x[node], part.y[node]]);
          }
        }
        const points = places.map(([x, y]) => this.screen(x, y));
        for (const [x, y] of points) shapes.push(element("circle", { class: "source", cx: x.toFixed(1), cy: y.toFixed(1), r: 5, "data-source": source.name }));
        if (points.length) labels.push([...points[0], source.name || source.type, "source"]);
      }
    }

    /** Labels where they cover no other; the first ones win. */
    placed(labels) {
      const measure = document.createElement("canvas").getContext("2d");
      measure.font = `600 12.5px ${getComputedStyle(this.stage).fontFamily}`;
      const taken = [];
      const made = [];
      for (const [x, y, text, kind] of labels) {
        if (x < -50 || y < -50 || x > this.stage.clientWidth + 50 || y > this.stage.clientHeight + 50) continue;
        const shown = text.length > 40 ? text.slice(0, 39) + "…" : text;
        if (made.some((other) => other.textContent === shown)) continue;
        const width = measure.measureText(shown).width + 10;
        const spots = [[10, -10], [10, 18], [-width - 6, -10], [-width - 6, 18], [10, 34], [10, -26]].map(([dx, dy]) => [Math.min(Math.max(x + dx, 4), this.stage.clientWidth - width - 4), Math.min(Math.max(y + dy, 14), this.stage.clientHeight - 6)]);
        const spot = spots.find(([left, base]) => taken.every((box) => left > box[0] + box[2] || left + width < box[0] || base < box[1] - 14 || base - 14 > box[1]));
        if (!spot) continue;
        taken.push([spot[0], spot[1], width]);
        made.push(element("text", { class: `label ${kind}`, x: spot[0].toFixed(1), y: spot[1].toFixed(1) }, shown));
      }
      return made;
    }

    cornersOf(part, e) {
      const corners = part.corners.subarray(4 * e, 4 * e + 4);
      return corners[3] === NONE ? corners.subarray(0, 3) : corners;
    }

    centre(part, e) {
      const corners = this.cornersOf(part, e);
      return [part.x, part.y, part.z].map((list) => corners.reduce((sum, node) => sum + list[node], 0) / corners.length);
    }

    nodeIds(part) {
      part.nodeIds ??= ids(integers(part.rawNodeIds, part.mesh.nodes));
      return part.nodeIds;
    }

    elementAt([x, y]) {
      for (const part of this.parts) for (const chunk of part.chunks) {
        if (x < chunk.low[0] || y < chunk.low[1] || x > chunk.high[0] || y > chunk.high[1]) continue;
        for (let e = chunk.element; e < chunk.end; ++e) {
          const count = part.corners[4 * e + 3] === NONE ? 3 : 4;
          let isInside = false;
          for (let i = 0, j = count - 1; i < count; j = i++) {
            const a = part.corners[4 * e + i];
            const b = part.corners[4 * e + j];
            if (part.y[a] > y !== part.y[b] > y && x < (part.x[b] - part.x[a]) * (y - part.y[a]) / (part.y[b] - part.y[a]) + part.x[a]) isInside = !isInside;
          }
          if (isInside) return { part, e };
        }
      }
      return null;
    }

    point(at) {
      const [x, y] = this.world(at);
      this.readout.textContent = `${(x + this.origin[0]).toFixed(2)}  ${(y + this.origin[1]).toFixed(2)}`;
      if (!this.kept) {
        const found = this.elementAt([x, y]);
        if (found?.e !== this.hovered?.e || found?.part !== this.hovered?.part) this.tell(found);
        this.hovered = found;
      }
    }

    keep(found) {
      this.kept = found;
      this.tell(found);
      this.redraw();
    }

    find() {
      const id = Number(this.search.value);
      for (const part of this.parts) {
        const e = part.elementIds.indexOf(id);
        if (e < 0) continue;
        this.isWhole = false;
        [this.view.x, this.view.y] = this.centre(part, e);
        const edge = Math.sqrt(part.mesh.area / part.size);
        this.view.scale = Math.max(this.view.scale, 40 / edge);
        this.keep({ part, e });
        return;
      }
      this.details.replaceChildren(element("p", { class: "hint" }, `No element has the id ${this.search.value}.`));
    }

    tell(found) {
      if (!found) {
        this.details.replaceChildren(element("p", { class: "hint" }, "Point at an element, or click or tap it to keep it."));
        return;
      }
      const { part, e } = found;
      const nodeIds = this.nodeIds(part);
      const [x, y, z] = this.centre(part, e);
      const material = part.mesh.materials[part.material[e]];
      const rows = [["Region", part.mesh.region], ["Material", material], ["Nodes", [...this.cornersOf(part, e)].map((node) => nodeIds[node]).join(", ")],
        ["Elevation", `${z.toFixed(2)} m`], ["Centre", `${(x + this.origin[0]).toFixed(2)}, ${(y + this.origin[1]).toFixed(2)}`]];
      for (const table of part.mesh.tables) {
        const value = table.values[material] ?? table.otherwise;
        if (value !== undefined) rows.push([table.label, table.unit === "–" ? value : `${value} ${table.unit}`]);
      }
      for (const source of part.mesh.sources) {
        if (source.elements.includes(part.elementIds[e]) || source.materials.includes(material)) rows.push([`source (${source.field})`, [source.name, source.type].filter(Boolean).join(" · ")]);
      }
      this.details.replaceChildren(element("h3", {}, `Element ${part.elementIds[e]}`),
        element("dl", {}, ...rows.flatMap(([term, value]) => [element("dt", {}, term), element("dd", {}, String(value))])));
    }
  }

  draw("mesh-view", async (place) => {
    const meshes = setup.meshes.filter((mesh) => mesh.streams && mesh.elements > 0);
    if (!meshes.length) {
      place.append(element("p", { class: "hint" }, "No mesh could be read."));
      return;
    }
    const origin = [meshes[0].origin[0], meshes[0].origin[1]];
    const note = element("p", { class: "hint" }, "Unpacking the mesh …");
    place.append(note);
    const parts = [];
    for (const mesh of meshes) parts.push(await unpack(mesh, origin));
    note.remove();
    await new Promise((resolve) => {
      kcfPreview.meshView = new MeshView(place, parts, origin, resolve);
    });
  });
})();
