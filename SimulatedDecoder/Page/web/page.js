"use strict";

// The page keeps what the decoder told last and shows that; nothing is changed here but by the decoder's events.

const windowsAPage = 20;
const element = (id) => document.getElementById(id);

let wall = null;
let activity = null;
let selectedId = null;
let selectedWindow = null; // with all of its cells
let firstShown = 0; // of the table of windows, counted from the highest layer

// Fills a table or list in place, so that a control that has the focus keeps it.
function fill(parent, items, make, update) {
  while (parent.children.length > items.length) parent.lastElementChild.remove();
  while (parent.children.length < items.length) parent.append(make());
  items.forEach((item, i) => update(parent.children[i], item));
}

function setText(node, text) {
  if (node.textContent !== String(text)) node.textContent = text;
}

function fillRows(id, rows) {
  const columns = element(id).closest("table").tHead.rows[0].cells.length;
  const make = () => {
    const row = document.createElement("tr");
    for (let i = 0; i < columns; ++i) row.insertCell();
    return row;
  };
  fill(element(id), rows, make, (row, texts) => texts.forEach((text, i) => setText(row.cells[i], text)));
}

const timeText = (time) => new Date(time).toLocaleTimeString([], { hour12: false }) + "." + String(time % 1000).padStart(3, "0");

const picture = element("picture");
const brush = picture.getContext("2d");
let scale = 1; // CSS pixels for each pixel of the wall
let drawingDue = false;

function drawSoon() {
  if (drawingDue) return;
  drawingDue = true;
  requestAnimationFrame(() => {
    drawingDue = false;
    if (wall) draw();
  });
}

function colours() {
  const style = getComputedStyle(document.documentElement);
  return new Proxy({}, { get: (known, name) => (known[name] ??= style.getPropertyValue("--" + name).trim()) });
}

function fitPicture() {
  const width = element("picture-frame").clientWidth;
  const height = Math.max(240, window.innerHeight * 0.7);
  scale = Math.min(width / wall.width, height / wall.height);
  const density = window.devicePixelRatio || 1;
  picture.style.width = wall.width * scale + "px";
  picture.style.height = wall.height * scale + "px";
  picture.width = Math.round(wall.width * scale * density);
  picture.height = Math.round(wall.height * scale * density);
  brush.setTransform(density, 0, 0, density, 0, 0);
}

// In CSS pixels.
function placeOf(rect) {
  return { x: rect.x * scale, y: rect.y * scale, width: rect.width * scale, height: rect.height * scale };
}

// What of a place lies on the wall; windows may reach over its edges.
function clip(place) {
  const x = Math.max(place.x, 0);
  const y = Math.max(place.y, 0);
  const right = Math.min(place.x + place.width, wall.width * scale);
  const bottom = Math.min(place.y + place.height, wall.height * scale);
  return { x, y, width: right - x, height: bottom - y };
}

function strokeInside(place, width) {
  brush.lineWidth = Math.min(width, place.width / 2, place.height / 2);
  const inset = brush.lineWidth / 2;
  brush.strokeRect(place.x + inset, place.y + inset, place.width - 2 * inset, place.height - 2 * inset);
}

// As much of a text as fits.
function write(text, x, y, width) {
  if (brush.measureText(text).width > width) {
    let length = Math.floor((text.length * width) / brush.measureText(text).width);
    while (length > 0 && brush.measureText(text.slice(0, length) + "…").width > width) --length;
    if (length < 3) return;
    text = text.slice(0, length) + "…";
  }
  brush.fillText(text, x, y);
}

const signs = {
  playing: new Path2D("M4 2.5v11l9-5.5z"),
  polling: new Path2D("M13.4 8A5.4 5.4 0 1 1 12.2 4.5L13.8 1.6v5h-5l2.2-1A3.6 3.6 0 1 0 11.6 8z"),
  sound: new Path2D("M2 6h3l4-3.5v11L5 10H2zM11 5.5q2.5 2.5 0 5l1 1q3.5-3.5 0-7z"),
  zoomed: new Path2D("M2 2h4v1.5H3.5V6H2zM10 2h4v4h-1.5V3.5H10zM14 10v4h-4v-1.5h2.5V10zM6 14H2v-4h1.5v2.5H6z"),
};
function drawSign(name, x, y, size) {
  brush.save();
  brush.translate(x, y);
  brush.scale(size / 16, size / 16);
  brush.fill(signs[name]);
  brush.restore();
}

function hatch(place, colour) {
  const step = 12;
  brush.save();
  brush.beginPath();
  brush.rect(place.x, place.y, place.width, place.height);
  brush.clip();
  brush.beginPath();
  const seen = clip(place);
  for (let offset = step; offset < seen.width + seen.height; offset += step) {
    brush.moveTo(seen.x + offset, seen.y);
    brush.lineTo(seen.x + offset - seen.height, seen.y + seen.height);
  }
  brush.strokeStyle = colour;
  brush.lineWidth = 0.5;
  brush.stroke();
  brush.restore();
}

function drawScreens(colour) {
  brush.fillStyle = colour.screen;
  brush.fillRect(0, 0, wall.width * scale, wall.height * scale);
  const width = (wall.width / wall.columns) * scale;
  const height = (wall.height / wall.rows) * scale;
  brush.fillStyle = colour.soft;
  brush.font = "12px system-ui, sans-serif";
  for (const screen of wall.screens) {
    write("output " + screen.output, screen.column * width + 6, (screen.row + 1) * height - 8, width - 12);
  }
}

// Above the windows, too: they hide where one screen ends and the next begins.
function drawScreenEdges(colour) {
  brush.strokeStyle = colour["screen-line"];
  brush.lineWidth = 1;
  brush.setLineDash([6, 4]);
  brush.beginPath();
  for (let column = 0; column <= wall.columns; ++column) {
    const x = Math.min(Math.max((column * wall.width * scale) / wall.columns, 0.5), wall.width * scale - 0.5);
    brush.moveTo(x, 0);
    brush.lineTo(x, wall.height * scale);
  }
  for (let row = 0; row <= wall.rows; ++row) {
    const y = Math.min(Math.max((row * wall.height * scale) / wall.rows, 0.5), wall.height * scale - 0.5);
    brush.moveTo(0, y);
    brush.lineTo(wall.width * scale, y);
  }
  brush.stroke();
  brush.setLineDash([]);
}

function drawCell(cell, place, colour, zoomed) {
  const idle = cell.title === undefined;
  if (idle) hatch(place, colour["screen-line"]);
  else {
    brush.fillStyle = cell.polling ? colour.polls : colour.plays;
    brush.fillRect(place.x, place.y, place.width, place.height);
  }
  brush.strokeStyle = colour["screen-line"];
  brush.lineWidth = 0.5;
  brush.strokeRect(place.x, place.y, place.width, place.height);
  if (cell.border && wall.borders) {
    brush.strokeStyle = colour.border;
    strokeInside(place, 4);
  }
  drawCellTexts(cell, place, colour, zoomed, idle);
}

function drawCellTexts(cell, place, colour, zoomed, idle) {
  const size = Math.max(10, Math.min(15, place.height / 7, place.width / 11));
  const line = size * 1.4;
  const room = Math.floor((place.height - 8) / line);
  if (place.width < 56 || room < 1) {
    if (!idle && Math.min(place.width, place.height) >= 8) {
      const sign = Math.min(12, place.width, place.height);
      brush.fillStyle = colour.text;
      drawSign(cell.polling ? "polling" : "playing", place.x + (place.width - sign) / 2, place.y + (place.height - sign) / 2, sign);
    }
    return;
  }
  const lines = idle ? [["idle"]] : [[cell.title, cell.polling ? "polling" : "playing"], [cell.detail]];
  lines.push(["osd " + cell.osd]);
  if (cell.sound !== undefined) lines.splice(idle ? 1 : 2, 0, ["sound " + cell.sound, "sound"]);
  if (zoomed) lines.push(["zoomed sub " + cell.index, "zoomed"]);
  const shown = lines.slice(0, room);
  let y = place.y + (place.height - shown.length * line) / 2 + line * 0.75;
  for (const [text, sign] of shown) {
    brush.font = (sign === "playing" || sign === "polling" ? "600 " : "") + size + "px system-ui, sans-serif";
    brush.fillStyle = text === "idle" ? colour.soft : colour.text;
    const indent = sign ? size * 1.3 : 0;
    if (sign) drawSign(sign, place.x + 8, y - size * 0.85, size);
    write(text, place.x + 8 + indent, y, place.width - 16 - indent);
    y += line;
  }
}

function drawWindow(item, colour) {
  const place = placeOf(item);
  brush.fillStyle = colour.window;
  brush.fillRect(place.x, place.y, place.width, place.height);
  if (item.cells && Math.min(place.width, place.height) > 4) {
    const rows = Math.ceil(item.cells.length / item.columns);
    item.cells.forEach((cell, i) => {
      if (item.zoomed === undefined) {
        const size = { width: place.width / item.columns, height: place.height / rows };
        drawCell(cell, { x: place.x + (i % item.columns) * size.width, y: place.y + Math.floor(i / item.columns) * size.height, ...size }, colour, false);
      } else if (cell.index === item.zoomed) drawCell(cell, place, colour, true);
    });
  } else if (item.playing > 0) {
    brush.fillStyle = colour.plays;
    brush.fillRect(place.x, place.y, place.width, place.height);
  }
  brush.strokeStyle = colour["window-line"];
  strokeInside(place, place.width > 24 && place.height > 24 ? 2 : 1);
  if (wall.windowIds) drawId(item, clip(place), colour);
}

function drawId(item, place, colour) {
  brush.font = "600 12px system-ui, sans-serif";
  const width = brush.measureText(item.id).width + 10;
  if (width > place.width || place.height < 20) return;
  brush.fillStyle = colour["window-line"];
  brush.fillRect(place.x + place.width - width, place.y, width, 18);
  brush.fillStyle = colour.window;
  brush.fillText(item.id, place.x + place.width - width + 5, place.y + 13);
}

function draw() {
  fitPicture();
  const colour = colours();
  drawScreens(colour);
  for (const item of wall.windows) drawWindow(item, colour);
  drawScreenEdges(colour);
  const selected = wall.windows.find((item) => item.id === selectedId);
  if (selected) {
    brush.strokeStyle = colour.selected;
    brush.setLineDash([10, 4]);
    strokeInside(placeOf(selected), 4);
    brush.setLineDash([]);
  }
}

// A click selects the highest window there, a click on the selected one the next below it.
picture.addEventListener("click", (event) => {
  if (!wall) return;
  const x = event.offsetX / scale;
  const y = event.offsetY / scale;
  const here = wall.windows.filter((item) => x >= item.x && x < item.x + item.width && y >= item.y && y < item.y + item.height);
  const current = here.findIndex((item) => item.id === selectedId);
  select(here.at(current > 0 ? current - 1 : -1)?.id ?? null);
});
new ResizeObserver(drawSoon).observe(element("picture-frame"));
window.addEventListener("resize", drawSoon);
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", drawSoon);

function select(id) {
  selectedId = id;
  selectedWindow = null;
  const place = wall.windows.length - 1 - wall.windows.findIndex((item) => item.id === id);
  if (id !== null) firstShown = Math.floor(place / windowsAPage) * windowsAPage;
  showWindows();
  showDetails();
  drawSoon();
}

function makeWindowRow() {
  const row = document.createElement("tr");
  for (let i = 0; i < 4; ++i) row.insertCell();
  const button = document.createElement("button");
  button.type = "button";
  button.addEventListener("click", () => select(row.windowId === selectedId ? null : row.windowId));
  row.cells[0].append(button);
  return row;
}

function updateWindowRow(row, item) {
  row.windowId = item.id;
  const selected = item.id === selectedId;
  row.classList.toggle("selected", selected);
  const button = row.cells[0].firstElementChild;
  setText(button, "Window " + item.id);
  button.setAttribute("aria-pressed", selected);
  setText(row.cells[1], item.layer);
  setText(row.cells[2], `${item.width} × ${item.height} at ${item.x}, ${item.y}`);
  const zoomed = item.zoomed === undefined ? "" : `, ${item.zoomed} zoomed`;
  setText(row.cells[3], `${item.playing} of ${item.mode}${zoomed}`);
}

function showWindows() {
  const count = wall.windows.length;
  firstShown = Math.max(0, Math.min(firstShown, Math.floor((count - 1) / windowsAPage) * windowsAPage));
  const end = Math.min(count, firstShown + windowsAPage);
  element("no-windows").hidden = count > 0;
  element("windows-part").hidden = count === 0;
  element("pager").hidden = count <= windowsAPage;
  setText(element("pager-text"), `${firstShown + 1} to ${end} of ${count}`);
  element("higher").disabled = firstShown === 0;
  element("lower").disabled = end === count;
  fill(element("windows"), wall.windows.slice(count - end, count - firstShown).reverse(), makeWindowRow, updateWindowRow);
}

element("higher").addEventListener("click", () => turnPage(-windowsAPage));
element("lower").addEventListener("click", () => turnPage(windowsAPage));
element("deselect").addEventListener("click", () => select(null));
function turnPage(step) {
  firstShown += step;
  showWindows();
}

async function showDetails() {
  const id = selectedId;
  const told = wall.windows.find((item) => item.id === id);
  if (!told) selectedWindow = null;
  else if (told.cells) selectedWindow = told;
  else {
    const answer = await fetch("windows/" + id).catch(() => null);
    const item = answer?.ok ? await answer.json().catch(() => null) : null;
    if (id !== selectedId || !item) return;
    selectedWindow = item;
  }
  const item = selectedWindow;
  element("details").hidden = !item;
  if (!item) return;
  setText(element("details-title"), "Window " + item.id);
  const zoomed = item.zoomed === undefined ? "" : ` Sub-window ${item.zoomed} fills it.`;
  setText(element("details-text"), `Layer ${item.layer}, ${item.mode} sub-window${item.mode === 1 ? "" : "s"}.${zoomed}`);
  fillRows("cells", item.cells.map((cell) => [
    cell.index,
    cell.osd,
    cell.title === undefined ? "idle" : `${cell.title}${cell.detail ? ", " + cell.detail : ""}`,
    cell.sound === undefined ? "–" : "channel " + cell.sound,
    cell.border ? "yes" : "–",
  ]));
}

function showWall() {
  const hidden = [wall.borders ? "" : "borders are hidden", wall.windowIds ? "" : "window ids are hidden"].filter(Boolean);
  const summary = [`${wall.rows} × ${wall.columns} screens, ${wall.width} × ${wall.height} pixels`, wall.summary, ...hidden].join(", ");
  setText(element("summary"), summary);
  picture.setAttribute("aria-label", `Picture of the wall: ${summary}. The table of windows tells the same.`);
  if (selectedId !== null && !wall.windows.some((item) => item.id === selectedId)) selectedId = null;
  showWindows();
  showDetails();
  drawSoon();
}

const faultRows = [];

async function switchFault(fault, on) {
  let problem = "The decoder does not answer.";
  try {
    const answer = await fetch("faults", {
      method: "POST",
      headers: { "Content-Type": "application/json" },
      body: JSON.stringify({ fault, on }),
    });
    problem = answer.ok ? "" : (await answer.text()).trim();
  } catch {
    // The text above says it.
  }
  setText(element("fault-problem"), problem);
}

function makeFaultRow(kind) {
  const row = document.createElement("div");
  row.className = "fault";
  const controls = document.createElement("div");
  controls.className = "row";
  const toggle = document.createElement("button");
  toggle.type = "button";
  toggle.setAttribute("role", "switch");
  toggle.id = "fault-" + kind.name;
  toggle.textContent = kind.name;
  const help = document.createElement("p");
  help.className = "note";
  help.id = toggle.id + "-help";
  help.textContent = kind.help;
  toggle.setAttribute("aria-describedby", help.id);
  controls.append(toggle);
  let input = null;
  if (kind.maximum > 0) {
    const label = document.createElement("label");
    const unit = kind.form.match(/=(\w+)/)[1];
    input = document.createElement("input");
    Object.assign(input, { type: "number", min: kind.minimum, max: kind.maximum, step: 1, required: true });
    input.id = toggle.id + "-number";
    input.value = unit === "MS" ? 1000 : kind.minimum;
    label.append(unit, input);
    controls.append(label);
  }
  row.append(controls, help);

  const target = () => kind.name + (input ? "=" + input.value : "") + (kind.ofUrl ? "@" + element("fault-url").value : "");
  const order = (on) => {
    if (on && input && !input.reportValidity()) return;
    switchFault(target(), on);
  };
  const isOn = () => toggle.getAttribute("aria-checked") === "true";
  toggle.addEventListener("click", () => order(!isOn()));
  input?.addEventListener("change", () => isOn() && order(true));
  faultRows.push({ kind, toggle, input });
  return row;
}

function showAbout(about) {
  document.title = about.name + ", TV wall";
  setText(element("name"), about.name);
  setText(element("version"), "tvwall-decoder " + about.version);
  faultRows.length = 0;
  const url = element("fault-url").value;
  element("fault-url").replaceChildren(...about.urls.map((text) => new Option(text, text, false, text === url)));
  element("connection-faults").replaceChildren(...about.faults.filter((kind) => !kind.ofUrl).map(makeFaultRow));
  element("url-faults").replaceChildren(...about.faults.filter((kind) => kind.ofUrl).map(makeFaultRow));
}

element("fault-url").addEventListener("change", () => activity && showFaults());

function makeActiveFault() {
  const item = document.createElement("li");
  const button = document.createElement("button");
  button.type = "button";
  button.textContent = "Turn off";
  button.addEventListener("click", () => switchFault(item.target, false));
  item.append(document.createElement("span"), button);
  return item;
}

function showFaults() {
  const url = element("fault-url").value;
  for (const { kind, toggle, input } of faultRows) {
    const active = activity.faults.find((fault) => fault.name === kind.name && fault.url === (kind.ofUrl ? url : ""));
    toggle.setAttribute("aria-checked", active !== undefined);
    if (active && input && document.activeElement !== input) input.value = active.number;
  }
  const numbered = (fault) => faultRows.some(({ kind, input }) => kind.name === fault.name && input);
  element("no-faults").hidden = activity.faults.length > 0;
  fill(element("active-faults"), activity.faults, makeActiveFault, (item, fault) => {
    const place = fault.url ? "@" + fault.url : "";
    item.target = fault.name + place;
    const text = fault.name + (numbered(fault) ? "=" + fault.number : "") + place;
    setText(item.firstElementChild, text);
    item.lastElementChild.setAttribute("aria-label", "Turn off " + text);
  });
}

function showActivity() {
  showFaults();
  element("no-hosts").hidden = activity.hosts.length > 0;
  element("hosts-part").hidden = activity.hosts.length === 0;
  fillRows("hosts", activity.hosts.map((host) => [host.number, host.address, timeText(host.since).slice(0, 8), host.loggedIn ? "yes" : "no", host.requests]));
  element("no-requests").hidden = activity.requests.length > 0;
  element("requests-part").hidden = activity.requests.length === 0;
  fillRows("requests", activity.requests.map((request) => [
    timeText(request.time),
    request.url,
    (request.code === undefined ? "" : request.code + " ") + request.words,
    request.seq ?? "–",
    request.host,
  ]));
  activity.requests.forEach((request, i) => element("requests").rows[i].cells[2].classList.toggle("refused", request.code !== 0));
}

function showConnection(live) {
  element("connection").className = live ? "live" : "lost";
  setText(element("connection"), live ? "Live" : "Connection lost, trying again …");
  document.body.classList.toggle("lost-wall", !live);
}

const events = new EventSource("events");
events.addEventListener("open", () => showConnection(true));
events.addEventListener("error", () => {
  showConnection(false);
  // The browser tries again by itself unless the decoder has refused it.
  if (events.readyState === EventSource.CLOSED) setTimeout(() => location.reload(), 5000);
});
events.addEventListener("about", (event) => showAbout(JSON.parse(event.data)));
events.addEventListener("wall", (event) => {
  wall = JSON.parse(event.data);
  showWall();
});
events.addEventListener("activity", (event) => {
  activity = JSON.parse(event.data);
  showActivity();
});
