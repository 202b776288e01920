// The table of jobs.
import type { AccountRow } from "../../report/account.js";
import { wishFor, WishButton } from "./actions.js";
import type { Ask } from "./actions.js";
import { make, setName, setText } from "./dom.js";
import type { KeyedRow } from "./dom.js";
import { linkToJob } from "./view.js";
import { count, nameOf, serverOf, whatOf, wordOf } from "./words.js";

function labelled(label: string, name = ""): HTMLTableCellElement {
  const cell = make("td", { name });
  cell.dataset["label"] = label;
  return cell;
}

// Nothing to say is nothing to read.
function someOf(number: number | null): string {
  return number === null || number === 0 ? "" : count(number);
}

function showProgress(bar: HTMLProgressElement, row: AccountRow): void {
  bar.hidden = row.verdict !== "running" || row.documents === null;
  bar.max = Math.max(1, row.documents ?? 1);
  bar.value = row.documentsDone;
  bar.setAttribute("aria-label", `Documents of ${nameOf(row)}`);
}

export function makeJobRow(ask: Ask): KeyedRow<AccountRow> {
  const state = make("span", { name: "state" });
  const link = make("a", { name: "path" });
  const title = make("span", { name: "title quiet small" });
  const what = make("span", { name: "what cut" });
  const bar = make("progress");
  const machine = labelled("Machine");
  const lost = labelled("Lost", "number");
  const restarts = labelled("Restarts", "number");
  const tries = labelled("Tries", "number");
  const button = new WishButton(ask);
  const cells = [make("td", { children: [state] }), make("td", { children: [link, title] })];
  cells.push(make("td", { children: [what, bar] }), machine, lost, restarts, tries);
  const element = make("tr", {
    children: [...cells, make("td", { children: [button.element] })],
  });
  return {
    element,
    show: (row) => {
      setText(state, wordOf(row.verdict));
      setName(state, `state ${row.verdict}`);
      setText(link, row.path);
      link.href = linkToJob(row.id);
      const server = serverOf(row);
      setText(title, row.title === "" ? server : `${server} · ${row.title}`);
      setText(what, whatOf(row));
      what.title = row.reason;
      showProgress(bar, row);
      setText(machine, row.worker);
      setText(lost, someOf(row.lost));
      setText(restarts, someOf(row.restarts));
      setText(tries, someOf(row.attempts));
      button.show(wishFor(row), nameOf(row));
    },
  };
}
