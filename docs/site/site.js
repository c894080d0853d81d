// Search, the choice of dark or light, and the menu of narrow screens. Pages can be read without any of it.
"use strict";

const root = document.documentElement;
const remembered = {
  get: (name) => { try { return localStorage.getItem(name); } catch { return null; } },
  set: (name, value) => { try { localStorage.setItem(name, value); } catch { /* not kept then */ } },
};

function startTheme() {
  const chosen = remembered.get("theme");
  if (chosen) root.dataset.theme = chosen;
  document.getElementById("theme").addEventListener("click", () => {
    const dark = root.dataset.theme ? root.dataset.theme === "dark" : matchMedia("(prefers-color-scheme: dark)").matches;
    root.dataset.theme = dark ? "light" : "dark";
    remembered.set("theme", root.dataset.theme);
  });
}

function startMenu() {
  const button = document.getElementById("menu");
  button.addEventListener("click", () => {
    const open = document.getElementById("pages").classList.toggle("open");
    button.setAttribute("aria-expanded", String(open));
  });
}

// Titles that begin with what is looked for come first, then those that hold it, then those whose text has all words.
function search(text) {
  const words = text.toLowerCase().split(/\s+/).filter(Boolean);
  const rank = (entry) => {
    const title = entry.title.toLowerCase();
    const all = title + " " + entry.words.toLowerCase();
    if (!words.length || !words.every((word) => all.includes(word))) return 0;
    return title.replace("qv8", "").startsWith(words[0]) || title.startsWith(words[0]) ? 3 : title.includes(words[0]) ? 2 : 1;
  };
  return INDEX.map((entry) => [rank(entry), entry]).filter(([score]) => score > 0)
    .sort((a, b) => b[0] - a[0]).slice(0, 12).map(([, entry]) => entry);
}

function startSearch() {
  const field = document.getElementById("search");
  const list = document.getElementById("found");
  let selected = -1;
  const select = (index) => {
    const items = [...list.querySelectorAll("[role=option]")];
    selected = items.length ? (index + items.length) % items.length : -1;
    items.forEach((item, i) => item.setAttribute("aria-selected", String(i === selected)));
    if (selected >= 0) {
      field.setAttribute("aria-activedescendant", items[selected].id);
      items[selected].scrollIntoView({ block: "nearest" });
    }
  };
  const show = (open) => {
    list.hidden = !open;
    field.setAttribute("aria-expanded", String(open));
    if (!open) field.removeAttribute("aria-activedescendant");
  };
  field.addEventListener("input", () => {
    list.textContent = "";
    for (const [i, entry] of search(field.value).entries()) {
      const item = list.appendChild(document.createElement("li"));
      item.id = "found-" + i;
      item.setAttribute("role", "option");
      const link = item.appendChild(document.createElement("a"));
      link.href = entry.address;
      link.tabIndex = -1;
      link.textContent = entry.title;
      link.appendChild(document.createElement("small")).textContent = entry.words.slice(0, 90);
    }
    if (!list.children.length) {
      const nothing = list.appendChild(document.createElement("li"));
      nothing.className = "none";
      nothing.textContent = "Nothing found";
    }
    show(field.value.trim() !== "");
    select(0);
  });
  field.addEventListener("keydown", (event) => {
    if (event.key === "ArrowDown") select(selected + 1);
    else if (event.key === "ArrowUp") select(selected - 1);
    else if (event.key === "Escape") show(false);
    else return;
    event.preventDefault();
  });
  field.form.addEventListener("submit", (event) => {
    event.preventDefault();
    list.querySelector("[aria-selected=true] a")?.click();
  });
  list.addEventListener("click", () => show(false));
  document.addEventListener("click", (event) => { if (!field.form.contains(event.target)) show(false); });
  document.addEventListener("keydown", (event) => {
    if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName)) {
      event.preventDefault();
      field.focus();
    }
  });
}

// A printed page has no folded parts.
addEventListener("beforeprint", () => document.querySelectorAll("details").forEach((part) => { part.open = true; }));

startTheme();
startMenu();
startSearch();
