"use strict";
// The series below each other over one axis of time, zoomed together.
(() => {
  const { setup, stream, element, button, categoryColour, duration, number, memory, draw } = kcfPreview;
  // The legend of the library writes styles, which the policy of the page forbids.
  Dygraph.PLUGINS = Dygraph.PLUGINS.filter((plugin) => plugin !== Dygraph.Plugins.Legend);
  const few = 60;  // rows that are drawn as points, too

  async function columnsOf(entry) {
    const numbers = new Float64Array(await stream(entry.stream));
    const rows = numbers.length / (entry.columns.length + 1);
    return Array.from({ length: rows }, (_, row) => Array.from({ length: entry.columns.length + 1 }, (_, column) => numbers[column * rows + row]));
  }

  const colourOf = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

  draw("series-view", (place) => {
    const entries = setup.series;
    const timed = entries.filter((entry) => entry.argument === "time");
    const times = timed.filter((entry) => entry.stream !== undefined);
    const runs = setup.regions.filter((region) => region.end !== null);
    const begin = Math.min(...runs.map((run) => run.start), ...times.map((entry) => entry.first));
    const end = Math.max(...runs.map((run) => run.end), ...times.map((entry) => entry.last));
    const whole = Number.isFinite(begin) && end > begin ? [begin, end] : [0, 1];
    const kept = memory.get("time");
    let span = kept && kept[0] < whole[1] && kept[1] > whole[0] ? kept : [...whole];
    const graphs = [];

    const told = element("output", { class: "hint" });
    function zoomTo(from, to) {
      span = [from, to];
      memory.set("time", span);
      told.textContent = `${number(span[0])} to ${number(span[1])} s (${duration(span[1] - span[0])})`;
      for (const graph of graphs) graph.updateOptions({ dateWindow: [...span] });
    }
    const scale = (factor) => {
      const [middle, half] = [(span[0] + span[1]) / 2, (span[1] - span[0]) / 2 * factor];
      zoomTo(Math.max(middle - half, whole[0]), Math.min(middle + half, whole[1]));
    };
    const move = (part) => {
      const length = span[1] - span[0];
      const from = Math.min(Math.max(span[0] + part * length, whole[0]), whole[1] - length);
      zoomTo(from, from + length);
    };
    if (timed.length) {
      place.append(element("div", { class: "tools" }, button("Earlier", "←", () => move(-0.25)), button("Later", "→", () => move(0.25)),
        button("Zoom in on the time", "+", () => scale(0.5)), button("Zoom out of the time", "−", () => scale(2)),
        button("All of the time", "All", () => zoomTo(...whole)), told, element("span", { class: "hint gap" }, "Drag to zoom all series")));
    }

    const observer = new IntersectionObserver((seen) => {
      for (const one of seen) {
        if (!one.isIntersecting) continue;
        observer.unobserve(one.target);
        one.target.dispatchEvent(new Event("shown"));
      }
    }, { rootMargin: "600px" });

    function row(entry) {
      const isTimed = entry.argument === "time";
      const chart = element("div", { class: "chart", role: "img", "aria-label": `${entry.quantity} ${entry.label}, ${entry.rows ?? 0} rows; see the table of the series` });
      const value = element("output", { class: "value", "aria-live": "off" });
      const text = element("div", { class: "about" }, element("h3", {}, entry.label || entry.type),
        element("p", {}, `${entry.quantity}${entry.unit ? ` [${entry.unit}]` : ""}`),
        element("p", { class: "quiet" }, [entry.region, entry.kind, entry.type].filter(Boolean).join(" · ")),
        element("p", { class: "quiet" }, entry.file), value,
        ...entry.remarks.map((remark) => element("p", { class: "remark" }, remark)),
        ...(entry.jumps ?? []).map((jump) => element("p", { class: "jump" }, `jumps from ${number(jump.from)} to ${number(jump.to)} at ${number(jump.time)} s`)));
      const made = element("div", { class: "row", id: entry.subject }, text, chart);
      if (entry.stream === undefined) {
        chart.append(element("p", { class: "hint" }, "Nothing to draw."));
        return made;
      }
      chart.addEventListener("shown", async () => { plot(entry, chart, value, isTimed, await columnsOf(entry)); });
      observer.observe(chart);
      return made;
    }

    function plot(entry, chart, value, isTimed, rows) {
      const region = setup.regions.find((one) => one.name === entry.region);
      const graph = new Dygraph(chart, rows, {
        labels: [entry.argument, ...entry.columns.map((_, i) => `column ${i + 2}`)],
        colors: entry.columns.map((_, i) => categoryColour(i)),
        legend: "never", strokeWidth: 1.8, highlightCircleSize: 4, drawPoints: rows.length <= few, pointSize: 2.2,
        includeZero: Math.min(...entry.columns.map((one) => one.lowest)) >= 0 && Math.min(...entry.columns.map((one) => one.lowest)) < 0.6 * Math.max(...entry.columns.map((one) => one.highest)),
        gridLineColor: colourOf("--line"), axisLineColor: colourOf("--line"), axisLabelFontSize: 12, rightGap: 12, xRangePad: isTimed ? 0 : 8, yRangePad: 8,
        dateWindow: isTimed ? [...span] : null,
        ...(isTimed ? {} : { xlabel: `${entry.argument} [${entry.argumentUnit}]`, xLabelHeight: 16 }),
        axes: {
          x: { axisLabelFormatter: (x) => isTimed ? (x === 0 ? "0" : duration(x)) : number(x), pixelsPerLabel: 76,
            ...(isTimed ? { ticker: timeTicks } : {}) },
          y: { axisLabelWidth: 58, axisLabelFormatter: (y) => number(y), pixelsPerLabel: 24 },
        },
        underlayCallback: (context, area, self) => {
          if (!isTimed || !region || region.end === null) return;
          // What lies outside of the simulation is shaded, and so is what the series leaves open.
          context.fillStyle = colourOf("--outside");
          const shade = (from, to) => {
            const [a, b] = [from, to].map((x) => Math.min(Math.max(self.toDomXCoord(x), area.x), area.x + area.w));
            if (b > a) context.fillRect(a, area.y, b - a, area.h);
          };
          shade(-1e300, region.start);
          shade(region.end, 1e300);
          context.strokeStyle = colourOf("--warning");
          context.setLineDash([4, 4]);
          for (const { time } of entry.jumps ?? []) {
            const x = self.toDomXCoord(time);
            if (x < area.x || x > area.x + area.w) continue;
            context.beginPath();
            context.moveTo(x, area.y);
            context.lineTo(x, area.y + area.h);
            context.stroke();
          }
          context.setLineDash([]);
          context.fillStyle = colourOf("--lack");
          if (entry.last < region.end) shade(entry.last, region.end);
          if (entry.first > region.start) shade(region.start, entry.first);
        },
        highlightCallback: (event, x, points) => {
          value.textContent = `${isTimed ? `${number(x)} s (${duration(x)})` : `${entry.argument} ${number(x)} ${entry.argumentUnit}`}: ` + points.map((point) => number(point.yval)).join(", ") + ` ${entry.unit}`;
        },
        unhighlightCallback: () => { value.textContent = ""; },
        zoomCallback: (from, to) => { if (isTimed) zoomTo(Math.max(from, whole[0]), Math.min(to, whole[1])); },
      });
      chart.graph = graph;
      if (isTimed) graphs.push(graph);
    }

    function timeTicks(from, to, pixels, options, dygraph) {
      const steps = [1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1200, 1800, 3600, 7200, 10800, 21600, 43200, 86400];
      const wanted = (to - from) / Math.max(2, pixels / 90);
      let step = steps.find((one) => one >= wanted);
      if (wanted < 1) step = 10 ** Math.ceil(Math.log10(wanted));
      if (step === undefined) {
        const days = 10 ** Math.floor(Math.log10(wanted / 86400));
        step = 86400 * days * [1, 2, 5, 10].find((factor) => factor * days * 86400 >= wanted);
      }
      const ticks = [];
      for (let x = Math.ceil(from / step) * step; x <= to; x += step) ticks.push({ v: x, label: Math.abs(x) < step / 1e6 ? "0" : duration(x) });
      return ticks;
    }

    const groups = [["Over time", timed], ["Relations", entries.filter((entry) => entry.argument !== "time")]];
    for (const [title, members] of groups) {
      if (!members.length) continue;
      if (groups.every(([, some]) => some.length)) place.append(element("h3", { class: "group" }, title));
      place.append(...members.map(row));
    }
    told.textContent = `${number(span[0])} to ${number(span[1])} s (${duration(span[1] - span[0])})`;
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
      for (const graph of graphs) graph.updateOptions({ gridLineColor: colourOf("--line"), axisLineColor: colourOf("--line") });
    });
  });
})();
