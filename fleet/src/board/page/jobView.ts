// All of one job.
import type { JobDetail } from "../boardData.js";
import { wishFor, WishButton } from "./actions.js";
import type { Ask } from "./actions.js";
import { byId, make } from "./dom.js";
import { readJob } from "./server.js";
import { count, nameOf, serverOf, size, time, whatOf, wordOf } from "./words.js";

type Fact = [string, string];

function factsOf({ row, options, added }: JobDetail): Fact[] {
  const facts: Fact[] = [
    ["State", [wordOf(row.verdict), whatOf(row)].filter((text) => text !== "").join(": ")],
    ["Server", serverOf(row)],
    ["Path", row.path],
    ["Title", row.title],
    ["Size", row.bytes === null ? "" : size(row.bytes)],
    ["Machine", row.worker],
    ["Tries", row.attempts === 0 ? "" : count(row.attempts)],
    ["Lost notes", row.lost === null ? "" : count(row.lost)],
    ["Restarts", row.restarts === 0 ? "" : count(row.restarts)],
    ["Folder", row.folder],
    ["Attempt", row.attempt],
    ["Listing", row.listing],
    [
      "Options",
      Object.entries(options)
        .map(([name, value]) => `${name}: ${value}`)
        .join(", "),
    ],
    ["Queued", time(added)],
    ["Begun", time(row.started)],
    ["Ended", time(row.ended)],
    ["Number", row.id],
  ];
  return facts.filter(([, text]) => text !== "");
}

function logOf({ logs, logsLeftOut }: JobDetail): HTMLElement {
  if (logs.length === 0) return make("p", { name: "quiet", text: "Nothing was told yet." });
  const left = logsLeftOut === 0 ? "" : `(${count(logsLeftOut)} older lines are left out)\n`;
  const log = make("pre", { name: "log", text: left + logs.join("\n") });
  log.tabIndex = 0;
  return log;
}

export class JobView {
  private readonly place = byId("job");
  private readonly button: WishButton;
  private wanted = "";
  private shown = "";

  constructor(ask: Ask) {
    this.button = new WishButton(ask);
  }

  // Written anew only where something is new, so that a selection or a place in the log stays.
  async show(id: string): Promise<void> {
    this.wanted = id;
    const detail = await readJob(id);
    const told = JSON.stringify(detail);
    if (this.wanted !== id || told === this.shown) return;
    this.shown = told;
    const { row } = detail;
    const back = make("a", { text: "All databases" });
    back.href = "#";
    const title = make("h1", { text: nameOf(row) });
    const hadFocus = document.activeElement === this.button.element;
    this.button.show(wishFor(row), nameOf(row));
    this.place.replaceChildren(
      make("p", { children: [back] }),
      make("div", { name: "line", children: [title, this.button.element] }),
      make("dl", {
        children: factsOf(detail).flatMap(([name, text]) => [
          make("dt", { text: name }),
          make("dd", { text }),
        ]),
      }),
      make("h2", { text: "What was told" }),
      logOf(detail),
    );
    if (hadFocus) this.button.element.focus();
  }

  hide(): void {
    this.wanted = "";
    this.shown = "";
    this.place.replaceChildren();
  }
}
