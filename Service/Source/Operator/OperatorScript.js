"use strict";

// Everything from the service is set as text, never as markup: models and users write it.

const byId = (id) => document.getElementById(id);
const number = (value) => new Intl.NumberFormat("en", { maximumFractionDigits: 4 }).format(value);
const time = (seconds) => new Date(seconds * 1000).toLocaleString();
// Forgotten with the tab.
let key = sessionStorage.getItem("operator-key") || "";

function element(name, text, className) {
  const made = document.createElement(name);
  if (text !== undefined) made.textContent = text;
  if (className) made.className = className;
  return made;
}

async function ask(path) {
  const reply = await fetch(path, { headers: { Authorization: "Bearer " + key }, cache: "no-store" });
  const body = await reply.json();
  if (!reply.ok) throw new Error(body.error || "HTTP " + reply.status);
  return body;
}

function show(problem) {
  byId("problem").hidden = !problem;
  byId("problem").textContent = problem;
}

function fillTable(table, columns, rows, onPick) {
  if (!table.tHead) {
    const head = table.createTHead().insertRow();
    for (const column of columns) head.append(element("th", column.title, column.kind));
    table.append(element("tbody"));
  }
  for (const row of rows) {
    const line = table.tBodies[0].insertRow();
    for (const column of columns) {
      const cell = element("td", undefined, column.kind);
      cell.dataset.name = column.title;
      if (column.pick) {
        const button = element("button", column.value(row));
        button.onclick = () => onPick(row);
        cell.append(button);
      } else {
        cell.textContent = column.value(row);
      }
      line.append(cell);
    }
  }
}

const keyColumns = [
  { title: "Name", value: (row) => row.name },
  { title: "Budget", kind: "number", value: (row) => (row.budget ? number(row.budget) : "none") },
  { title: "Cost", kind: "number", value: (row) => number(row.cost) },
  { title: "Tokens", kind: "number", value: (row) => number(row.tokens) },
  { title: "Requests", kind: "number", value: (row) => number(row.requests) },
];

const conversationColumns = [
  { title: "Conversation", pick: true, value: (row) => row.id.slice(0, 8) || "(no id)" },
  { title: "Key", value: (row) => row.key || "(no name)" },
  { title: "Last turn", value: (row) => time(row.updated) },
  { title: "State", value: (row) => row.state },
  { title: "Tokens", kind: "number", value: (row) => number(row.tokens) },
  { title: "Cost", kind: "number", value: (row) => number(row.cost) },
  { title: "Error", kind: "error", value: (row) => row.error },
];

function showTotals(today) {
  byId("totals").replaceChildren();
  for (const [title, value] of [["Requests today", today.requests], ["Tokens today", today.tokens],
    ["Cost today", today.cost], ["Running turns", today.running]]) {
    const box = element("div");
    box.append(element("dt", title), element("dd", number(value)));
    byId("totals").append(box);
  }
}

let oldest = null;

async function showConversations() {
  const before = oldest ? `?before=${oldest.updated}&before_id=${encodeURIComponent(oldest.id)}` : "";
  const page = await ask("operator/conversations" + before);
  fillTable(byId("conversations"), conversationColumns, page.conversations, (row) => run(() => showTranscript(row)));
  oldest = page.conversations.at(-1) || oldest;
  byId("more").hidden = !page.more;
}

async function showTranscript(row) {
  const transcript = await ask("operator/conversation?id=" + encodeURIComponent(row.id));
  byId("turns").replaceChildren();
  for (const each of transcript.messages) {
    const turn = element("div", undefined, "turn " + each.role);
    turn.append(element("h3", each.title), element("pre", each.text));
    byId("turns").append(turn);
  }
  byId("transcript").hidden = false;
  byId("transcript").scrollIntoView();
}

async function enter() {
  const overview = await ask("operator/overview");
  sessionStorage.setItem("operator-key", key);
  oldest = null;
  for (const id of ["keys", "conversations"]) byId(id).replaceChildren();
  showTotals(overview.today);
  fillTable(byId("keys"), keyColumns, overview.keys);
  await showConversations();
  byId("sign-in").hidden = true;
  byId("content").hidden = byId("leave").hidden = false;
}

async function run(work) {
  show("");
  try {
    await work();
  } catch (error) {
    show(error.message);
  }
}

byId("sign-in").onsubmit = (event) => {
  event.preventDefault();
  key = byId("key").value;
  byId("key").value = "";
  run(enter);
};
byId("more").onclick = () => run(showConversations);
byId("leave").onclick = () => {
  sessionStorage.removeItem("operator-key");
  location.reload();
};
if (key) run(enter);
