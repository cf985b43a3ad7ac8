// What a reader may do beside reading: sort tables, zoom and move the map, go from a row to its place and back. The page
// says all that it has to say without it.
"use strict";
(function () {
  const words = document.getElementById("words").dataset;
  const svg = document.querySelector(".site-map");
  const make = (name, attributes, text) => {
    const element = document.createElement(name);
    for (const key in attributes) element.setAttribute(key, attributes[key]);
    if (text !== undefined) element.textContent = text;
    return element;
  };

  // A browser describes each cell of a printed page for readers of PDF, which takes most of the time of a long table.
  const hideLong = (hide) => {
    for (const table of document.querySelectorAll("table.long")) {
      hide ? table.setAttribute("aria-hidden", "true") : table.removeAttribute("aria-hidden");
    }
  };
  addEventListener("beforeprint", () => hideLong(true));
  addEventListener("afterprint", () => hideLong(false));

  // Copied numbers have the minus that other programs read.
  document.addEventListener("copy", (event) => {
    const text = String(document.getSelection());
    if (!text.includes("\u2212") || !event.clipboardData) return;
    event.clipboardData.setData("text/plain", text.replace(/\u2212/g, "-"));
    event.preventDefault();
  });

  // Sorting. A number counts by its value, an angle by its degrees, "1 : N" by N; cells without any stand last.
  const valueOf = (text) => {
    const plain = text.trim().replace("\u2212", "-");
    const angle = /^(-?)(\d+)\u00b0(\d+)\u2032(?:([\d.]+)\u2033)?$/.exec(plain);
    if (angle) return (angle[1] ? -1 : 1) * (+angle[2] + angle[3] / 60 + (angle[4] || 0) / 3600);
    const number = parseFloat(plain.replace(/^1 : /, ""));
    return Number.isNaN(number) ? null : number;
  };
  const collator = new Intl.Collator(undefined, { numeric: true });
  // Upward, downward, as it came.
  const next = { ascending: "descending", descending: null };
  const placeOfRow = new WeakMap();
  const sortTable = (table, column, isNumber) => {
    const heads = table.tHead.rows[0].cells;
    const before = heads[column].getAttribute("aria-sort");
    const way = before === null ? "ascending" : next[before];
    for (const head of heads) head.removeAttribute("aria-sort");
    if (way) heads[column].setAttribute("aria-sort", way);
    const sign = way === "descending" ? -1 : 1;
    const bodies = [...table.tBodies];
    const sizes = bodies.map((body) => body.rows.length);
    const keyed = bodies.flatMap((body) => [...body.rows]).map((row, place) => {
      if (!placeOfRow.has(row)) placeOfRow.set(row, place);
      const text = row.cells[column].textContent;
      return { row, place: placeOfRow.get(row), key: !way ? 0 : isNumber ? valueOf(text) : text.trim() || null };
    });
    keyed.sort((a, b) => {
      if (a.key === null || b.key === null) return (a.key === null) - (b.key === null) || a.place - b.place;
      const order = isNumber || !way ? a.key - b.key : collator.compare(a.key, b.key);
      return sign * order || a.place - b.place;
    });
    let first = 0;
    bodies.forEach((body, i) => body.append(...keyed.slice(first, (first += sizes[i])).map((entry) => entry.row)));
  };
  for (const table of document.querySelectorAll("table.rows:not(.sequence)")) {
    [...table.tHead.rows[0].cells].forEach((head, column) => {
      const isNumber = head.className === "n" || head.className === "w";
      const sort = () => sortTable(table, column, isNumber);
      head.classList.add("sorts");
      head.tabIndex = 0;
      head.addEventListener("click", sort);
      head.addEventListener("keydown", (event) => {
        if (event.key !== "Enter" && event.key !== " ") return;
        event.preventDefault();
        sort();
      });
    });
  }

  // What was found last, in the tables and on the map.
  let found = [];
  const mark = (elements) => {
    for (const element of found) element.classList.remove("found");
    found = elements;
    for (const element of found) element.classList.add("found");
  };
  const rowsOf = (selector) => [...document.querySelectorAll("tr" + selector)];

  // A hidden block has an estimated height: the first scroll lays it out, the second one hits.
  const scrollTo = (element) => {
    element.scrollIntoView({ block: "center" });
    requestAnimationFrame(() => element.scrollIntoView({ block: "center" }));
  };

  const back = make("button", { id: "return", type: "button", hidden: "hidden" }, words.back);
  document.body.append(back);
  let origin = null;
  back.addEventListener("click", () => {
    back.hidden = true;
    if (origin) scrollTo(origin);
  });

  for (const link of document.querySelectorAll(".to-row")) {
    link.addEventListener("click", (event) => {
      const row = document.getElementById(link.getAttribute("href").slice(1));
      if (!row) return;
      event.preventDefault();
      mark([row]);
      scrollTo(row);
    });
  }
  if (!svg) return;

  // The map. `view` says what part of the picture fills it: zoom, and the shift in units of the picture.
  const group = svg.querySelector(".view");
  const size = svg.viewBox.baseVal;
  const frame = svg.querySelector("#kelvane-area rect");
  const area = frame.getBBox ? { x: +frame.getAttribute("x"), y: +frame.getAttribute("y"),
    width: +frame.getAttribute("width"), height: +frame.getAttribute("height") } : size;
  const pixels = +svg.dataset.pixels;
  const largest = 2000;
  const view = { zoom: 1, x: 0, y: 0 };
  svg.setAttribute("aria-label", svg.querySelector("title").textContent);
  svg.querySelector("title").remove();
  svg.classList.add("zooms");

  const gridLines = svg.querySelector(".grid");
  const gridLabels = svg.querySelector(".grid-labels");
  const scale = svg.querySelector(".scale");
  const round = (length) => {
    const power = Math.pow(10, Math.floor(Math.log10(length)));
    return [5, 2, 1].map((n) => n * power).find((n) => n <= length * 1.0001) || power;
  };
  const draw = (name, attributes, text) => {
    const element = document.createElementNS("http://www.w3.org/2000/svg", name);
    for (const key in attributes) element.setAttribute(key, attributes[key]);
    if (text !== undefined) element.textContent = text;
    return element;
  };

  // Grid and scale bar for what is seen now.
  const drawGrid = () => {
    const metre = pixels * view.zoom;
    const step = round(Math.max(area.width, area.height) / 5 / metre);
    const digits = Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
    const north = +svg.dataset.north + view.y / metre;
    const east = +svg.dataset.east - view.x / metre;
    const lines = [];
    const labels = [];
    for (let x = Math.ceil((north - (area.y + area.height) / metre) / step) * step; x <= north - area.y / metre; x += step) {
      const y = (north - x) * metre;
      lines.push(draw("line", { x1: area.x, y1: y, x2: area.x + area.width, y2: y }));
      labels.push(draw("text", { class: "small", "text-anchor": "middle",
        transform: "translate(" + (area.x - 9) + " " + y + ") rotate(-90)" }, x.toFixed(digits)));
    }
    for (let y = Math.ceil((east + area.x / metre) / step) * step; y <= east + (area.x + area.width) / metre; y += step) {
      const x = (y - east) * metre;
      lines.push(draw("line", { x1: x, y1: area.y, x2: x, y2: area.y + area.height }));
      labels.push(draw("text", { class: "small", "text-anchor": "middle", x, y: area.y + area.height + 15 }, y.toFixed(digits)));
    }
    gridLines.replaceChildren(...lines);
    gridLabels.replaceChildren(...labels);
    if (!scale) return;
    const length = round(area.width / 4 / metre);
    const bars = scale.querySelectorAll("rect");
    const left = +bars[0].getAttribute("x");
    bars.forEach((bar, i) => {
      bar.setAttribute("x", left + (i * length * metre) / 4);
      bar.setAttribute("width", (length * metre) / 4);
    });
    const label = scale.querySelector("text");
    label.setAttribute("x", left + length * metre + 8);
    label.textContent = length >= 1000 ? length / 1000 + " km" : length >= 1 ? length + " m" : +(1000 * length).toPrecision(1) + " mm";
  };

  const placeOfShape = (shape) => {
    const place = /translate\(([-\d.]+) ([-\d.]+)\)/.exec(shape.getAttribute("transform"));
    return [+place[1], +place[2]];
  };

  // Names that have found no room come when there is some: of the points that are seen, one in each place.
  const crowded = [...svg.querySelectorAll(".n.crowded")].map((name) => ({ name, place: placeOfShape(name.parentNode) }));
  const showNames = () => {
    const taken = new Set();
    for (const { name, place } of crowded) {
      const x = place[0] * view.zoom + view.x;
      const y = place[1] * view.zoom + view.y;
      const isSeen = x > area.x && x < area.x + area.width && y > area.y && y < area.y + area.height;
      const key = Math.floor(x / 70) + ":" + Math.floor(y / 16);
      const isShown = view.zoom >= 1.5 && isSeen && !taken.has(key);
      if (isShown) taken.add(key);
      const display = isShown ? "inline" : "";
      if (name.style.display !== display) name.style.display = display;
    }
  };

  let isWaiting = false;
  const show = () => {
    view.zoom = Math.min(Math.max(view.zoom, 1), largest);
    view.x = Math.min(Math.max(view.x, (area.x + area.width) * (1 - view.zoom)), area.x * (1 - view.zoom));
    view.y = Math.min(Math.max(view.y, (area.y + area.height) * (1 - view.zoom)), area.y * (1 - view.zoom));
    if (isWaiting) return;
    isWaiting = true;
    requestAnimationFrame(() => {
      isWaiting = false;
      group.setAttribute("transform", "translate(" + view.x + " " + view.y + ") scale(" + view.zoom + ")");
      group.style.setProperty("--inverse-zoom", 1 / view.zoom);
      svg.classList.toggle("zoomed", view.zoom > 1);
      drawGrid();
      showNames();
      drawEllipseScale();
    });
  };
  const zoomAt = (x, y, factor) => {
    const zoom = Math.min(Math.max(view.zoom * factor, 1), largest);
    view.x = x - ((x - view.x) * zoom) / view.zoom;
    view.y = y - ((y - view.y) * zoom) / view.zoom;
    view.zoom = zoom;
    show();
  };
  const middle = () => [area.x + area.width / 2, area.y + area.height / 2];
  const placeOf = (event) => {
    const box = svg.getBoundingClientRect();
    return [((event.clientX - box.left) / box.width) * size.width, ((event.clientY - box.top) / box.height) * size.height];
  };

  // Ellipses are drawn so many times as large as the points lie apart, however far the map is zoomed.
  const ellipses = svg.querySelector(".ellipses");
  const ownScale = ellipses ? +ellipses.dataset.scale : 0;
  let factor = 1;
  const scaleEllipses = () => {
    const perMetre = +ellipses.dataset.pixels * ownScale * factor;
    for (const ellipse of ellipses.querySelectorAll(".e")) {
      ellipse.setAttribute("rx", ellipse.dataset.a * perMetre);
      ellipse.setAttribute("ry", ellipse.dataset.b * perMetre);
    }
    drawEllipseScale();
  };
  const ellipseScale = svg.querySelector(".ellipse-scale");
  const drawEllipseScale = () => {
    if (!ellipseScale) return;
    const texts = ellipseScale.querySelectorAll("text");
    const bar = ellipseScale.querySelector("path.tick");
    texts[0].textContent = texts[0].textContent.replace(/\u00d7.*$/, "\u00d7 " + +(ownScale * factor).toPrecision(3));
    const start = /^M([\d.]+) ([\d.]+)/.exec(bar.getAttribute("d"));
    const metre = pixels * ownScale * factor * view.zoom;
    const length = round(70 / metre);
    bar.setAttribute("d", "M" + start[1] + " " + start[2] + "v7h" + length * metre + "v-7");
    texts[1].setAttribute("x", +start[1] + length * metre + 8);
    texts[1].textContent = +(1000 * length).toPrecision(1) + " mm";
  };

  // Tools above the map.
  const tools = make("div", { class: "tools" });
  const button = (text, action) => {
    const element = make("button", { type: "button" }, text);
    element.addEventListener("click", action);
    tools.append(element);
    return element;
  };
  button(words.larger, () => zoomAt(...middle(), 2)).id = "zoom-in";
  button(words.smaller, () => zoomAt(...middle(), 0.5)).id = "zoom-out";
  button(words.whole, () => {
    view.zoom = 1;
    view.x = view.y = 0;
    show();
  }).id = "zoom-all";
  tools.append(make("span", { class: "spring" }));
  if (ellipses) {
    const label = make("label", {}, words.ellipses);
    const slider = make("input", { type: "range", min: -3, max: 1, step: 0.1, value: 0, id: "ellipse-scale" });
    const told = make("output");
    const set = () => {
      factor = Math.pow(10, +slider.value);
      told.textContent = "\u00d7 " + +(ownScale * factor).toPrecision(3);
      scaleEllipses();
    };
    slider.addEventListener("input", set);
    label.append(slider, told);
    tools.append(label);
    told.textContent = "\u00d7 " + ownScale;
  }
  const names = make("label");
  const box = make("input", { type: "checkbox", id: "show-names" });
  box.checked = true;
  box.addEventListener("change", () => svg.classList.toggle("nameless", !box.checked));
  names.append(box, document.createTextNode(words.names));
  tools.append(names);
  document.getElementById("map-frame").before(tools);

  // The wheel zooms with Ctrl, and alone once the reader has clicked into the map; else it scrolls the page. Two fingers
  // on a touch pad come as a wheel with Ctrl.
  let isActive = false;
  document.addEventListener("pointerdown", (event) => (isActive = svg.contains(event.target)));
  svg.addEventListener("wheel", (event) => {
    if (!event.ctrlKey && !event.metaKey && !isActive) return;
    event.preventDefault();
    zoomAt(...placeOf(event), Math.pow(2, -event.deltaY / 300));
  }, { passive: false });
  svg.addEventListener("dblclick", (event) => zoomAt(...placeOf(event), 2));
  const pointers = new Map();
  let hasMoved = false;
  svg.addEventListener("pointerdown", (event) => {
    pointers.set(event.pointerId, placeOf(event));
    if (pointers.size === 1) hasMoved = false;
  });
  svg.addEventListener("pointermove", (event) => {
    const before = pointers.get(event.pointerId);
    if (!before) return;
    const now = placeOf(event);
    if (!hasMoved && Math.hypot(now[0] - before[0], now[1] - before[1]) < 4) return;
    if (!hasMoved) {
      hasMoved = true;
      svg.setPointerCapture(event.pointerId);
      svg.classList.add("moves");
    }
    if (pointers.size === 1) {
      view.x += now[0] - before[0];
      view.y += now[1] - before[1];
      show();
    } else {
      const other = [...pointers.entries()].find((entry) => entry[0] !== event.pointerId)[1];
      const distance = Math.hypot(before[0] - other[0], before[1] - other[1]);
      if (distance > 1) zoomAt(...other, Math.hypot(now[0] - other[0], now[1] - other[1]) / distance);
    }
    pointers.set(event.pointerId, now);
  });
  const release = (event) => {
    pointers.delete(event.pointerId);
    svg.classList.remove("moves");
  };
  svg.addEventListener("pointerup", release);
  svg.addEventListener("pointercancel", release);
  svg.addEventListener("pointerleave", (event) => {
    if (!hasMoved) release(event);
  });

  // From the map to the table.
  const toRow = (kind, number) => {
    const rows = rowsOf("[data-" + kind + "=\"" + number + "\"]");
    if (rows.length === 0) return;
    const best = rows.find((row) => row.classList.contains("bad")) || rows[0];
    mark([...rows, ...svg.querySelectorAll(".view [data-" + kind + "=\"" + number + "\"]")]);
    scrollTo(best);
  };
  svg.addEventListener("click", (event) => {
    if (hasMoved) return;
    const target = event.target.closest("[data-p], [data-l]");
    if (!target) return;
    if (target.dataset.l !== undefined) toRow("l", target.dataset.l);
    else toRow("p", target.dataset.p);
  });

  // From a table, or a finding, to the map; far points are brought near.
  const toMap = (kind, number, from) => {
    const shapes = [...svg.querySelectorAll(".view [data-" + kind + "=\"" + number + "\"]")];
    if (shapes.length === 0) return;
    const rows = from.closest("tr") ? [from.closest("tr")] : rowsOf("[data-" + kind + "=\"" + number + "\"]");
    mark([...rows, ...shapes]);
    const shape = shapes[shapes.length - 1];
    let x;
    let y;
    if (kind === "l") {
      x = (+shape.getAttribute("x1") + +shape.getAttribute("x2")) / 2;
      y = (+shape.getAttribute("y1") + +shape.getAttribute("y2")) / 2;
    } else {
      [x, y] = placeOfShape(shape);
    }
    if (view.zoom > 1) {
      view.x = middle()[0] - x * view.zoom;
      view.y = middle()[1] - y * view.zoom;
      show();
    }
    origin = from;
    back.hidden = false;
    scrollTo(document.getElementById("map-frame"));
  };
  document.addEventListener("click", (event) => {
    const link = event.target.closest(".to-map");
    if (link) {
      event.preventDefault();
      if (link.dataset.l !== undefined) toMap("l", link.dataset.l, link);
      else toMap("p", link.dataset.p, link);
      return;
    }
    const row = event.target.closest("tr[data-p], tr[data-l]");
    if (!row || String(document.getSelection())) return;
    event.preventDefault();
    if (row.dataset.l !== undefined) toMap("l", row.dataset.l, row);
    else toMap("p", row.dataset.p, row);
  });
})();
