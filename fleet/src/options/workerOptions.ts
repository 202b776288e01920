// The options of "worker".
import { hostname } from "node:os";
import type { Command } from "commander";
import { work } from "../commands/workerCommand.js";
import type { PathMap } from "../export/place.js";
import { addressOf, end, withExample } from "./common.js";
import { collected, duration, pathMap, wholeNumber } from "./parsers.js";

const usualLock = 300_000;

interface WorkerOptions {
  name: string;
  jobs: number;
  mostWorkers?: number;
  console: string;
  consoleArgument?: string[];
  identities?: string;
  lock: number;
  see?: PathMap[];
  hopeless?: string;
  unreachable?: string;
  stopOnStdinEnd?: boolean;
  untilEmpty?: boolean;
  log?: string;
}

export function addWorker(program: Command): void {
  const command = program
    .command("worker")
    .description("take jobs and export, until asked to end")
    .option("--name <name>", "name of this machine", hostname())
    .option("--jobs <n>", "so many exports at once on this machine", wholeNumber, 1)
    .option("--most-workers <n>", "so many workers of all exports together", wholeNumber)
    .option("--console <program>", "larkspan-console", "larkspan-console.exe")
    .option("--console-argument <word>", "stands before its own arguments", collected)
    .option("--identities <file>", "names of identities with ID files and passwords")
    .option(
      "--lock <time>",
      "a job whose worker is silent for so long is another's",
      duration,
      usualLock,
    )
    .option("--see <from=to>", "paths of jobs that begin so are seen here as this", pathMap)
    .option("--hopeless <pattern>", "words of the Notes library after which no try helps")
    .option("--unreachable <pattern>", "words of the Notes library for a server that is away")
    .option("--log <file>", "write what it says to the end of this file too")
    .option("--stop-on-stdin-end", "the end of standard input asks it to end")
    .option("--until-empty", "end when nothing is left to do");
  withExample(
    command,
    "worker --name EX-07 --jobs 3 --console C:\\Notes\\larkspan-console.exe",
  ).action(async (options: WorkerOptions, self: Command) => {
    end(
      await work(addressOf(self), {
        name: options.name,
        jobs: options.jobs,
        mostWorkers: options.mostWorkers,
        console: [options.console, ...(options.consoleArgument ?? [])],
        identities: options.identities,
        lock: options.lock,
        maps: options.see ?? [],
        hopeless: options.hopeless,
        unreachable: options.unreachable,
        stopOnStdinEnd: options.stopOnStdinEnd === true,
        untilEmpty: options.untilEmpty === true,
        log: options.log,
      }),
    );
  });
}
