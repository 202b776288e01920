// The options of what directs the whole project: "pause", "resume", "drain" and "limit".
import type { Command } from "commander";
import { drain, pause, resume, setLimit } from "../commands/switches.js";
import { withStore } from "../store/store.js";
import type { Store } from "../store/store.js";
import { addressOf, print, withExample } from "./common.js";
import { wholeNumber } from "./parsers.js";

function addSwitch(
  program: Command,
  name: string,
  description: string,
  act: (store: Store, server: string | undefined) => Promise<void>,
  done: string,
): void {
  const command = program
    .command(name)
    .description(description)
    .option("--server <name>", "of this server alone");
  withExample(command, `${name} --server Mill/Example`).action(
    async ({ server }: { server?: string }, self: Command) => {
      await withStore(addressOf(self), (store) => act(store, server));
      print(`${done}\n`);
    },
  );
}

export function addSwitches(program: Command): void {
  addSwitch(program, "pause", "begin no other export", pause, "paused; what runs goes on");
  addSwitch(program, "resume", "take back 'pause' and 'drain'", resume, "resumed");
  const drainCommand = program
    .command("drain")
    .description("workers finish what they have, and end");
  withExample(drainCommand, "drain").action(async (_options: object, self: Command) => {
    await withStore(addressOf(self), drain);
    print("drained; workers end when their exports have\n");
  });
  const limitCommand = program
    .command("limit")
    .description("let so many exports at once against a server, over all machines")
    .argument("<server>", "or the name of a worker, for its own databases")
    .argument("<n>", "at most so many", wholeNumber);
  withExample(limitCommand, "limit Mill/Example 6").action(
    async (server: string, limit: number, _options: object, self: Command) => {
      await withStore(addressOf(self), (store) => setLimit(store, server, limit));
      print(`at most ${limit} at once\n`);
    },
  );
}
