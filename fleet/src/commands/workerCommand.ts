// The command "worker": waits for the queue server, works until it is asked to end, and ends well.
import { appendFileSync } from "node:fs";
import { CannotError, ExitCode, messageOf, UsageError } from "../base/failures.js";
import { systemClock } from "../base/time.js";
import { startConsole } from "../export/consoleProcess.js";
import { defaultWords } from "../export/ending.js";
import type { PathMap } from "../export/place.js";
import type { Address } from "../store/address.js";
import { openStore } from "../store/store.js";
import type { Store } from "../store/store.js";
import { FleetWorkerLoop } from "../worker/fleetWorker.js";
import { readIdentities } from "../worker/identities.js";
import type { Machine } from "../worker/jobRun.js";
import { Shares } from "../worker/shares.js";
import { onWishToEnd } from "./wishToEnd.js";

export interface WorkerRequest {
  name: string;
  jobs: number;
  // Of the Notes library, in all exports together.
  mostWorkers: number | undefined;
  console: string[];
  identities: string | undefined;
  lock: number;
  maps: PathMap[];
  hopeless: string | undefined;
  unreachable: string | undefined;
  stopOnStdinEnd: boolean;
  untilEmpty: boolean;
  log: string | undefined;
}

const betweenLooks = 2000;
const leastSafeLock = 60_000;
const betweenOpens = 10_000;

type Say = (sentence: string) => void;

interface Log {
  // For who looks on, and for the file.
  say: Say;
  // For the file alone.
  keep: Say;
}

function lineOf(sentence: string): string {
  return `${new Date().toISOString().slice(0, 19)}Z ${sentence}\n`;
}

// To the end of a file too: what a task or a service writes goes nowhere else. When that fails later
// on, the work matters more.
function openLog(log: string | undefined): Log {
  const append = (line: string) => {
    if (log !== undefined) appendFileSync(log, line);
  };
  try {
    append("");
  } catch (error) {
    throw new CannotError(`the log cannot be written: ${messageOf(error)}`);
  }
  const keepLine = (line: string) => {
    try {
      append(line);
    } catch (error) {
      process.stderr.write(`larkspan-fleet: the log cannot be written: ${messageOf(error)}\n`);
    }
  };
  const say = (sentence: string) => {
    const line = lineOf(sentence);
    process.stdout.write(line);
    keepLine(line);
  };
  return {
    say,
    keep: (sentence) => {
      keepLine(lineOf(sentence));
    },
  };
}

function pattern(text: string): RegExp {
  try {
    return new RegExp(text, "i");
  } catch (error) {
    throw new UsageError(`'${text}' is no pattern: ${messageOf(error)}`);
  }
}

function sharesOf({ jobs, mostWorkers }: WorkerRequest): Shares {
  if (mostWorkers !== undefined && mostWorkers < jobs)
    throw new UsageError("--most-workers is less than --jobs: each export needs one");
  return new Shares(mostWorkers ?? Infinity, jobs);
}

function machineOf(request: WorkerRequest, say: Say): Machine {
  const { hopeless, unreachable } = request;
  return {
    name: request.name,
    console: request.console,
    identities: readIdentities(request.identities),
    words: {
      hopeless: hopeless === undefined ? defaultWords.hopeless : pattern(hopeless),
      unreachable: unreachable === undefined ? defaultWords.unreachable : pattern(unreachable),
    },
    maps: request.maps,
    times: { lock: request.lock, look: Math.min(betweenLooks, request.lock / 4) },
    shares: sharesOf(request),
    clock: systemClock,
    startConsole,
    say,
  };
}

// The first wish stops exports and gives their jobs back; the second one ends at once.
function listenForTheEnd(ending: AbortController, stopOnStdinEnd: boolean, say: Say): void {
  onWishToEnd(stopOnStdinEnd, (by) => {
    if (ending.signal.aborted) process.exit(ExitCode.stopped);
    say(`asked to end, by ${by}: exports are stopped and given back`);
    ending.abort();
  });
}

// A worker that starts with the machine may be there before the network.
async function openPatiently(
  address: Address,
  ending: AbortSignal,
  say: Say,
): Promise<Store | undefined> {
  while (!ending.aborted) {
    try {
      return await openStore(address);
    } catch (error) {
      if (!/cannot be reached|no connection left/.test(messageOf(error))) throw error;
      say(`${messageOf(error)}; tried again`);
      await systemClock.pause(betweenOpens, ending);
    }
  }
  return undefined;
}

const farewells = {
  asked: "ended; its jobs were given back",
  drained: "ended: the project is drained",
  empty: "ended: nothing is left to do",
};

export async function work(address: Address, request: WorkerRequest): Promise<number> {
  const log = openLog(request.log);
  try {
    return await workUntilEnd(address, request, log.say);
  } catch (error) {
    log.keep(`ended: ${messageOf(error)}`);
    throw error;
  }
}

async function workUntilEnd(address: Address, request: WorkerRequest, say: Say): Promise<number> {
  const machine = machineOf(request, say);
  if (request.lock < leastSafeLock)
    say("warning: with a lock of less than a minute a loaded machine loses live jobs");
  const ending = new AbortController();
  listenForTheEnd(ending, request.stopOnStdinEnd, say);
  const store = await openPatiently(address, ending.signal, say);
  if (store === undefined) return ExitCode.stopped;
  say(`worker ${request.name}: up to ${request.jobs} exports at once, queue ${store.name}`);
  const settings = { slots: request.jobs, untilEmpty: request.untilEmpty };
  const reason = await new FleetWorkerLoop(store, machine, settings, ending.signal).run();
  say(farewells[reason]);
  await store.close().catch(() => undefined);
  return reason === "asked" ? ExitCode.stopped : ExitCode.done;
}
