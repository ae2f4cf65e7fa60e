"use strict";

// The page shows what the decoder last sent; only the decoder's events change anything here.

const windowsAPage = 20;
const element = (id) => document.getElementById(id);

let wall = null;
let activity = null;
let selectedId = null;
let selectedWindow = null; // with all of its cells
let firstShown = 0; // first row shown in the table of windows, counted from the highest layer

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
let pictureAsked = false;
let pictureOld = false; // it has changed since it was requested

// The decoder draws the wall.
async function showPicture() {
  pictureOld = true;
  if (pictureAsked) return;
  pictureAsked = true;
  while (pictureOld) {
    pictureOld = false;
    const text = await fetch("wall.svg").then((answer) => (answer.ok ? answer.text() : null)).catch(() => null);
    if (text === null) continue;
    picture.replaceChildren(document.importNode(new DOMParser().parseFromString(text, "image/svg+xml").documentElement, true));
    markSelected();
  }
  pictureAsked = false;
}

// Above all other windows.
function markSelected() {
  document.getElementById("selected-outline")?.remove();
  const mark = document.getElementById("outline-" + selectedId)?.cloneNode();
  if (!mark) return;
  mark.id = "selected-outline";
  element("wall-windows").append(mark);
}

// A click selects the highest window there, a click on the selected one the next below it.
picture.addEventListener("click", (event) => {
  const parts = document.elementsFromPoint(event.clientX, event.clientY);
  const here = parts.map((part) => part.closest("[id^='window-']")).filter(Boolean).map((part) => Number(part.id.slice("window-".length)));
  const ids = [...new Set(here)];
  select(ids[ids.indexOf(selectedId) + 1] ?? ids[0] ?? null);
});

function select(id) {
  selectedId = id;
  selectedWindow = null;
  const place = wall.windows.length - 1 - wall.windows.findIndex((item) => item.id === id);
  if (id !== null) firstShown = Math.floor(place / windowsAPage) * windowsAPage;
  showWindows();
  showDetails();
  markSelected();
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
  showPicture();
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
  element("exposed").hidden = !about.exposed;
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
  showRequests();
}

const requestParts = new Map(); // each a <tbody>: a row, and below it the texts, which are loaded when it is opened

function showRequests() {
  element("no-requests").hidden = activity.requests.length > 0;
  element("requests-part").hidden = activity.requests.length === 0;
  const shown = new Map(activity.requests.map((request) => [`${request.number} ${request.time}`, request]));
  for (const [key, part] of requestParts) {
    if (shown.has(key)) continue;
    if (part.contains(document.activeElement)) element("requests-part").focus({ preventScroll: true });
    part.remove();
    requestParts.delete(key);
  }
  for (const [key, request] of [...shown].reverse()) {
    if (requestParts.has(key)) continue;
    requestParts.set(key, makeRequest(request));
    element("requests").tHead.after(requestParts.get(key));
  }
}

function makeRequest(request) {
  const part = document.createElement("tbody");
  const row = part.insertRow();
  const texts = part.insertRow();
  const button = document.createElement("button");
  button.type = "button";
  button.textContent = request.url;
  button.setAttribute("aria-expanded", false);
  texts.id = "request-" + request.number;
  texts.hidden = true;
  texts.insertCell().colSpan = 5;
  button.setAttribute("aria-controls", texts.id);
  button.addEventListener("click", () => {
    texts.hidden = !texts.hidden;
    button.setAttribute("aria-expanded", !texts.hidden);
    if (!texts.hidden && !texts.cells[0].firstChild) loadTexts(request.number, texts.cells[0]);
  });
  const answer = (request.code === undefined ? "" : request.code + " ") + request.words;
  for (const content of [timeText(request.time), button, answer, request.seq ?? "–", request.host]) row.insertCell().append(content);
  row.cells[2].classList.toggle("bad", request.code !== 0);
  return part;
}

async function loadTexts(number, cell) {
  cell.textContent = "Loading …";
  const answer = await fetch("requests/" + number).catch(() => null);
  const told = answer?.ok ? await answer.json().catch(() => null) : null;
  if (!told) {
    cell.textContent = answer?.status === 404 ? "The decoder keeps it no longer." : "The decoder does not answer.";
    return;
  }
  cell.replaceChildren(...messageParts("Request", told.request), ...messageParts("Reply", told.reply));
}

function messageParts(name, message) {
  const title = document.createElement("p");
  title.className = "note";
  title.textContent = message ? `${name}, ${message.length} bytes` : name + ": none was sent";
  if (!message) return [title];
  if (message.kept < message.length) title.textContent += `, of which the first ${message.kept} are kept`;
  const text = document.createElement("pre");
  text.textContent = message.text;
  return [title, text];
}

function showInputs(inputs) {
  const { channels, groups } = inputs;
  const offline = channels.filter((channel) => !channel.online).length;
  setText(element("channels-text"), channels.length ? `${channels.length - offline} online, ${offline} offline.` : "None.");
  element("channels-part").hidden = channels.length === 0;
  fillRows("channels", channels.map((channel) => [
    channel.id,
    channel.name,
    channel.online ? "online" : "offline",
    channel.windows.length ? channel.windows.join(", ") + (channel.more ? " and more" : "") : "–",
  ]));
  channels.forEach((channel, i) => element("channels").rows[i].cells[2].classList.toggle("bad", !channel.online));
  element("no-groups").hidden = groups.length > 0;
  element("groups-part").hidden = groups.length === 0;
  fillRows("groups", groups.map((group) => [group.id, group.name, group.channels.join(", "), group.interval, pollersText(group)]));
}

function pollersText(group) {
  const told = group.polledBy.map((by) => `window ${by.window} sub ${by.index}`);
  const more = group.polling - told.length;
  return told.length ? told.join(", ") + (more ? ` and ${more} more` : "") : "–";
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
events.addEventListener("inputs", (event) => showInputs(JSON.parse(event.data)));
events.addEventListener("activity", (event) => {
  activity = JSON.parse(event.data);
  showActivity();
});
