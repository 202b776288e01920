// The table of servers.
import type { ServerState } from "../../report/projectState.js";
import { WishButton } from "./actions.js";
import type { Ask, Wish } from "./actions.js";
import { make, setText } from "./dom.js";
import type { KeyedRow } from "./dom.js";
import { count } from "./words.js";

function wishFor({ name, key, isPaused }: ServerState): Wish {
  if (isPaused)
    return { question: `Resume ${name}?`, yes: "Resume", change: { change: "resume", of: key } };
  return {
    question: `Pause ${name}? No other export begins there; those that run go on.`,
    yes: "Pause",
    change: { change: "pause", of: key },
  };
}

function figures({ tally, limit }: ServerState): number[] {
  const open = tally.waiting + tally.retrying + tally.running;
  return [tally.whole + tally.losses, tally.failed, open, tally.running, limit];
}

export function makeServerRow(ask: Ask): KeyedRow<ServerState> {
  const name = make("td");
  const numbers = Array.from({ length: 5 }, () => make("td", { name: "number" }));
  const state = make("td");
  const button = new WishButton(ask);
  const action = make("td", { children: [button.element] });
  return {
    element: make("tr", { children: [name, ...numbers, state, action] }),
    show: (server) => {
      setText(name, server.name);
      figures(server).forEach((figure, index) => {
        const cell = numbers[index];
        if (cell !== undefined) setText(cell, count(figure));
      });
      setText(state, server.isPaused ? "paused" : "");
      button.show(wishFor(server), server.name);
    },
  };
}
