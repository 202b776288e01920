// The buttons of a job: which it has in which state, and what is asked before.
import type { AccountRow } from "../../report/account.js";
import { make } from "./dom.js";
import type { Change } from "./server.js";
import { nameOf } from "./words.js";

export interface Wish {
  question: string;
  // What the button says that does it.
  yes: string;
  change: Change;
}

export type Ask = (wish: Wish) => void;

export function wishFor(row: AccountRow): Wish {
  const name = nameOf(row);
  switch (row.verdict) {
    case "running":
      return {
        question: `Cancel ${name}? Its export is stopped within seconds.`,
        yes: "Cancel the job",
        change: { change: "cancel", of: row.id },
      };
    case "waiting":
    case "retrying":
      return {
        question: `Cancel ${name}? It is not exported then.`,
        yes: "Cancel the job",
        change: { change: "cancel", of: row.id },
      };
    case "failed":
    case "cancelled":
      return {
        question: `Have ${name} tried again?`,
        yes: "Retry",
        change: { change: "retry", of: row.id },
      };
    default:
      return {
        question: `Export ${name} again? Its folder is kept under another name.`,
        yes: "Export again",
        change: { change: "retry", of: row.id, again: true },
      };
  }
}

const labels: Record<Change["change"], string> = {
  cancel: "Cancel",
  retry: "Retry",
  "retry-failed": "",
  pause: "Pause",
  resume: "Resume",
};

export function labelOf(wish: Wish): string {
  return wish.change.again === true ? "Export again" : labels[wish.change.change];
}

// A button whose wish can change while it stays the same to the keyboard.
export class WishButton {
  readonly element = make("button");
  private wish: Wish | undefined;

  constructor(ask: Ask) {
    this.element.type = "button";
    this.element.addEventListener("click", () => {
      if (this.wish !== undefined) ask(this.wish);
    });
  }

  show(wish: Wish, of: string): void {
    this.wish = wish;
    const label = labelOf(wish);
    if (this.element.textContent !== label) this.element.textContent = label;
    this.element.setAttribute("aria-label", `${label} ${of}`);
  }
}
