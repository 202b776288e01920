// The options of "add".
import type { Command } from "commander";
import { addListings } from "../commands/addListings.js";
import type { ExportOptions } from "../jobs/jobData.js";
import { withStore } from "../store/store.js";
import { addressOf, print, withExample } from "./common.js";
import { wholeNumber } from "./parsers.js";

interface AddOptions extends Omit<ExportOptions, "giveUp" | "workers"> {
  root: string;
  server?: string;
  machine?: string;
  limit?: number;
  attempts: number;
  giveUp?: number;
  workers?: number;
  json?: boolean;
}

function exportOptionsOf(options: AddOptions): ExportOptions {
  const { identity, views, fullAccess, notesIni, stall, giveUp, maxLosses, workers } = options;
  return {
    ...(identity === undefined ? {} : { identity }),
    ...(views === false ? { views } : {}),
    ...(fullAccess === true ? { fullAccess } : {}),
    ...(notesIni === undefined ? {} : { notesIni }),
    ...(stall === undefined ? {} : { stall }),
    ...(giveUp === undefined ? {} : { giveUp }),
    ...(maxLosses === undefined ? {} : { maxLosses }),
    ...(workers === undefined ? {} : { workers }),
  };
}

export function addAdd(program: Command): void {
  const command = program
    .command("add")
    .description("queue one job for each database of listings; a second time adds nothing")
    .argument("<listing...>", "CSV or JSON of 'larkspan-console databases', or a scan.txt")
    .requiredOption("--root <folder>", "folder of all exports, as the Windows machines call it")
    .option("--server <name>", "the databases are of this server, whatever the listing says")
    .option("--machine <name>", "name of the worker whose own databases these are")
    .option("--limit <n>", "so many exports at once against the server, over all", wholeNumber)
    .option("--attempts <n>", "tries of an export that is not complete", wholeNumber, 3)
    .option("--identity <name>", "work with this identity, which each machine maps to an ID file")
    .option("--no-views", "leave the views out")
    .option("--full-access", "open with an administrator's full access")
    .option("--notes-ini <file>", "configuration file of the Notes library, on each machine")
    .option("--stall <time>", "end a worker of an export that stands still for so long")
    .option("--give-up <n>", "end an export when so many notes in a row are lost", wholeNumber)
    .option("--max-losses <n>", "more losses (a number, or 5%) make an export incomplete")
    .option("--workers <n>", "so many workers of a machine share an export, up to 16", wholeNumber)
    .option("--json", "counts for a program");
  withExample(
    command,
    "add mill.csv --root \\\\store\\export --identity migration --stall 30m",
  ).action(async (listings: string[], options: AddOptions, self: Command) => {
    const added = await withStore(addressOf(self), (store) =>
      addListings(store, {
        listings,
        root: options.root,
        server: options.server,
        machine: options.machine,
        limit: options.limit,
        attempts: options.attempts,
        options: exportOptionsOf(options),
      }),
    );
    if (options.json === true) print(`${JSON.stringify(added)}\n`);
    else
      print(
        `${added.added} of ${added.listed} databases queued;` +
          ` ${added.alreadyThere} were there already, ${added.folders} lines are folders\n`,
      );
  });
}
