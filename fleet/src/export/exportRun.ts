// One export, from the start of the console to its end.
//
// The console makes everything and then waits for a word. Between its event "ready" and that word
// the owner is asked once more whether the job is still its own: a job that was taken over must not
// be placed. Where it is not, or where the export is to stop, standard input is closed; a console
// that has not ended two seconds later is ended by force, and takes all that it started with it.
import type { Clock } from "../base/time.js";
import type { ConsoleEnd, ConsoleProcess, StartConsole } from "./consoleProcess.js";
import { parseEvent } from "./events.js";
import type { ConsoleEvent, EndEvent, ReadyEvent, StartEvent } from "./events.js";

const patience = 2000;

export interface ExportOwner {
  onEvent(event: ConsoleEvent): void;
  // Asked when all is done but the name.
  mayPlace(): Promise<boolean>;
}

export interface ExportEnd extends ConsoleEnd {
  start: StartEvent | undefined;
  ready: ReadyEvent | undefined;
  end: EndEvent | undefined;
  // The word was given.
  wasPlaced: boolean;
  errorLines: string[];
}

interface Seen extends Omit<ExportEnd, keyof ConsoleEnd> {
  answer: Promise<void>;
}

function take(seen: Seen, event: ConsoleEvent): void {
  if (event.kind === "start") seen.start = event;
  if (event.kind === "ready") seen.ready = event;
  if (event.kind === "end") seen.end = event;
  if (event.kind === "warning" && event.warning === "error-line") seen.errorLines.push(event.text);
}

async function answerReady(
  console: ConsoleProcess,
  seen: Seen,
  owner: ExportOwner,
  stop: AbortSignal,
): Promise<void> {
  const isComplete = seen.ready?.exitCode === 0 || seen.ready?.exitCode === 3;
  const mayPlace = isComplete && !stop.aborted && (await owner.mayPlace().catch(() => false));
  seen.wasPlaced = mayPlace && !stop.aborted;
  console.write(seen.wasPlaced ? "place" : "leave");
}

async function endByForce(console: ConsoleProcess, clock: Clock): Promise<void> {
  const hasEnded = new AbortController();
  const ended = console.ended.then(() => {
    hasEnded.abort();
  });
  await clock.pause(patience, hasEnded.signal);
  if (!hasEnded.signal.aborted) console.kill();
  await ended;
}

export async function runExport(
  start: StartConsole,
  commandLine: readonly string[],
  environment: Record<string, string>,
  owner: ExportOwner,
  stop: AbortSignal,
  clock: Clock,
): Promise<ExportEnd> {
  const console = start(commandLine, environment);
  const seen: Seen = {
    start: undefined,
    ready: undefined,
    end: undefined,
    wasPlaced: false,
    errorLines: [],
    answer: Promise.resolve(),
  };
  console.onLine((line) => {
    const event = parseEvent(line);
    if (event === undefined) return;
    take(seen, event);
    owner.onEvent(event);
    if (event.kind === "ready") seen.answer = answerReady(console, seen, owner, stop);
  });
  let forced: Promise<void> | undefined;
  const close = () => {
    console.closeInput();
    forced = endByForce(console, clock);
  };
  if (stop.aborted) close();
  else stop.addEventListener("abort", close, { once: true });
  const ended = await console.ended;
  stop.removeEventListener("abort", close);
  const { answer, ...told } = seen;
  await Promise.all([forced, answer]);
  return { ...ended, ...told };
}
