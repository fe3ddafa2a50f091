// Light or dark: what the system wants, until someone switches. The choice is kept where the browser lets it be.

import { h } from "./dom";

type Theme = "light" | "dark";

const kStorageKey = "xmla-report-theme";
const kEvent = "themechange";
const kDark = matchMedia("(prefers-color-scheme: dark)");

const kColourNames = ["ink", "muted", "faint", "line", "surface", "raised", "tint", "accent", "edge", "computed",
  "aggregated", "condition", "database", "view", "dimension", "measure", "calculation", "kpi", "cube"] as const;
export type Colours = Record<(typeof kColourNames)[number], string>;

let known: Colours | undefined;

/** The colours of the style sheet, for what is drawn and not styled. */
export function colours(): Colours {
  if (!known) {
    const style = getComputedStyle(document.documentElement);
    known = Object.fromEntries(
      kColourNames.map((name) => [name, style.getPropertyValue(`--${name}`).trim()])) as Colours;
  }
  return known;
}

function chosen(): Theme | undefined {
  // A page in a sandbox, such as a mail attachment, may not keep anything.
  try {
    const value = localStorage.getItem(kStorageKey);
    return value === "light" || value === "dark" ? value : undefined;
  } catch {
    return undefined;
  }
}

function remember(theme: Theme): void {
  try {
    localStorage.setItem(kStorageKey, theme);
  } catch {
    // It lasts as long as the page, then.
  }
}

export function theme(): Theme {
  return document.documentElement.dataset.theme === "dark" ? "dark" : "light";
}

function changed(): void {
  known = undefined;
  document.dispatchEvent(new Event(kEvent));
}

function apply(next: Theme): void {
  document.documentElement.dataset.theme = next;
  changed();
}

export function startTheme(): void {
  apply(chosen() ?? (kDark.matches ? "dark" : "light"));
  kDark.addEventListener("change", () => {
    if (chosen() === undefined) apply(kDark.matches ? "dark" : "light");
  });
  // Paper has colours of its own.
  matchMedia("print").addEventListener("change", changed);
}

function switchTheme(): void {
  const next = theme() === "dark" ? "light" : "dark";
  apply(next);
  remember(next);
}

export function themeButton(): HTMLElement {
  const label = (): string => theme() === "dark" ? "Light" : "Dark";
  const button = h("button", { type: "button", class: "theme", onclick: () => {
    switchTheme();
    button.textContent = label();
  } }, label());
  document.addEventListener(kEvent, () => { button.textContent = label(); });
  return button;
}

/** Calls back on every change, until the signal ends that. */
export function onThemeChange(callback: () => void, signal: AbortSignal): void {
  document.addEventListener(kEvent, callback, { signal });
}
