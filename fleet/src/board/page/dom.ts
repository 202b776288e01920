// What the page does with its document. Text goes in as text, never as markup: names of databases
// come from servers that are not ours.

export function byId(id: string): HTMLElement {
  return partById(HTMLElement, id);
}

export function partById<T extends HTMLElement>(kind: abstract new () => T, id: string): T {
  const found = document.getElementById(id);
  if (!(found instanceof kind)) throw new Error(`the page has no such '${id}'`);
  return found;
}

export interface Parts {
  text?: string;
  name?: string;
  children?: Node[];
}

export function make<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  { text, name, children }: Parts = {},
): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  if (text !== undefined) element.textContent = text;
  if (name !== undefined) element.className = name;
  if (children !== undefined) element.append(...children);
  return element;
}

// A row that is read aloud, selected or about to be clicked is not written anew for nothing.
export function setText(element: Element, text: string): void {
  if (element.textContent !== text) element.textContent = text;
}

export function setName(element: Element, name: string): void {
  if (element.className !== name) element.className = name;
}

// Empty: it is hidden.
export function setBanner(id: string, text: string): void {
  const banner = byId(id);
  banner.hidden = text === "";
  setText(banner, text);
}

export interface KeyedRow<T> {
  element: HTMLElement;
  show(value: T): void;
}

// Rows of a table by their keys: those that stay are kept, so that they keep the focus.
export class KeyedRows<T> {
  private rows = new Map<string, KeyedRow<T>>();

  constructor(
    private readonly body: HTMLElement,
    private readonly keyOf: (value: T) => string,
    private readonly makeRow: () => KeyedRow<T>,
  ) {}

  show(values: readonly T[]): void {
    const shown = new Map<string, KeyedRow<T>>();
    for (const value of values) {
      const row = this.rows.get(this.keyOf(value)) ?? this.makeRow();
      row.show(value);
      shown.set(this.keyOf(value), row);
    }
    for (const [key, row] of this.rows) if (!shown.has(key)) row.element.remove();
    let index = 0;
    for (const { element } of shown.values()) {
      const there = this.body.children[index++];
      if (there !== element) this.body.insertBefore(element, there ?? null);
    }
    this.rows = shown;
  }
}
