"use strict";
// What all pictures share: the data of the page, elements, colours and words.
globalThis.kcfPreview = (() => {
  const setup = JSON.parse(document.getElementById("setup-data").textContent);

  function bytesOf(text) {
    if (Uint8Array.fromBase64) return Uint8Array.fromBase64(text);
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) bytes[i] = binary.charCodeAt(i);
    return bytes;
  }

  /** The bytes of a stream of the page. */
  async function stream(number) {
    const packed = new Blob([bytesOf(document.getElementById(`stream-${number}`).textContent)]);
    return new Response(packed.stream().pipeThrough(new DecompressionStream("deflate"))).arrayBuffer();
  }

  const svgNames = new Set(["svg", "g", "path", "line", "rect", "text", "tspan", "circle", "polyline", "polygon",
    "title", "marker", "defs"]);

  /** An element with attributes and children; texts stay texts. */
  function element(name, attributes = {}, ...children) {
    const made = svgNames.has(name) ? document.createElementNS("http://www.w3.org/2000/svg", name)
      : document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) {
      if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
      else if (value !== null && value !== undefined && value !== false) made.setAttribute(key, value === true ? "" : value);
    }
    made.append(...children);
    return made;
  }

  /** Categories: told apart with impaired colour vision too, and on light and dark ground. */
  const categories = ["#3b7dc4", "#e08a2e", "#3f9c78", "#b55fa0", "#c9b437", "#6ab0de", "#cf5a4e", "#8a7358", "#7d77c9",
    "#86a93f", "#d98fb1", "#5c8a94"];
  const ramp = ["#2b3a78", "#2f6394", "#32899b", "#4bab94", "#86c786", "#c6da85", "#f3e79b"];

  function mixed(position) {
    const place = Math.min(Math.max(position, 0), 1) * (ramp.length - 1);
    const low = Math.min(Math.floor(place), ramp.length - 2);
    const channel = (text, i) => parseInt(text.slice(1 + 2 * i, 3 + 2 * i), 16);
    return [0, 1, 2].map((i) => Math.round(channel(ramp[low], i) + (place - low) *
      (channel(ramp[low + 1], i) - channel(ramp[low], i))));
  }
  const hex = (rgb) => "#" + rgb.map((value) => value.toString(16).padStart(2, "0")).join("");
  const rampColour = (position) => hex(mixed(position));
  const categoryColour = (index) => categories[index % categories.length];

  /** A time as people say it: "90 s", "20 min", "1 h 40 min", "3 d 12 h". */
  function duration(seconds) {
    const sign = seconds < 0 ? "−" : "";
    const whole = Math.abs(seconds);
    const units = [[86400, "d", 172800], [3600, "h", 3600], [60, "min", 120]];
    for (const [i, [length, name, least]] of units.entries()) {
      if (whole < least) continue;
      const [smaller, smallName] = units[i + 1] ?? [1, "s"];
      let count = Math.floor(whole / length);
      let rest = Math.round((whole - count * length) / smaller);
      if (rest * smaller === length) [count, rest] = [count + 1, 0];
      return `${sign}${count} ${name}${rest ? ` ${rest} ${smallName}` : ""}`;
    }
    return `${sign}${Math.round(whole * 100) / 100} s`;
  }
  const number = (value, digits = 6) => Number(value.toPrecision(digits)).toString();
  const button = (label, text, action) => element("button", { type: "button", "aria-label": label, title: label, onclick: action }, text);

  /** Keeps what the reader chose, so that a page that is written anew shows the same. */
  const memory = {
    get(key) {
      try { return JSON.parse(sessionStorage.getItem(location.pathname + key)); } catch { return null; }
    },
    set(key, value) {
      try { sessionStorage.setItem(location.pathname + key, JSON.stringify(value)); } catch { /* not kept */ }
    },
  };

  // A picture that cannot be drawn says so and leaves the others alone.
  const drawings = [];
  function draw(id, drawing) {
    const place = document.getElementById(id);
    if (!place) return;
    drawings.push((async () => {
      try {
        await drawing(place);
      } catch (fault) {
        place.append(element("p", { class: "hint" }, `This picture cannot be drawn here (${fault.message}). The tables below hold what it shows.`));
      }
    })());
  }

  addEventListener("beforeprint", () => document.querySelectorAll("details").forEach((details) => { details.open = true; }));

  // Links lead into closed parts, too.
  function reveal() {
    const target = location.hash && document.getElementById(decodeURIComponent(location.hash.slice(1)));
    for (let part = target; part; part = part.parentElement) if (part.localName === "details") part.open = true;
    if (target) target.scrollIntoView();
  }
  addEventListener("hashchange", reveal);

  if (setup.stamp) {
    // A page opened from disk cannot see that it was written anew; the script beside it tells.
    globalThis.kcfStamp = (value) => { if (value !== setup.stamp.value) location.reload(); };
    setInterval(() => {
      const script = element("script", { src: `${setup.stamp.name}?${Date.now()}`, nonce: setup.stamp.nonce });
      script.onload = script.onerror = () => script.remove();
      document.head.append(script);
    }, 1000);
  }

  return { setup, stream, element, button, rampColour, categoryColour, mixed, duration, number, memory, draw, drawings, reveal };
})();
