// What an export came to: every way in which one can end, and what is to be done about it.
import { ExitCode } from "../base/failures.js";
import type { ExportEnd } from "./exportRun.js";

export type Ending =
  // All is there, or all that is missing is listed.
  | { kind: "done"; losses: number }
  // It was asked to stop.
  | { kind: "stopped" }
  // Not all accounted for; tried again so often as the job may.
  | { kind: "incomplete"; reason: string; isOfFolder?: boolean }
  // No other try can help: no such database, no access, another thing in its folder.
  | { kind: "hopeless"; reason: string }
  // The Notes server is away: waits, and is tried again, uncounted.
  | { kind: "unreachable"; reason: string }
  // This machine cannot export anything: the job goes back, uncounted, and the machine rests.
  | { kind: "unfit"; reason: string };

// The Notes library's words, of which there are as many as languages.
export interface LibraryWords {
  hopeless: RegExp;
  unreachable: RegExp;
}

export const defaultWords: LibraryWords = {
  hopeless: /does not exist|not authorized/i,
  unreachable: /cannot be reached/i,
};

// Larkspan's own messages, which have one language.
const unfit =
  /Unable to locate notes\.ini|Unable to switch ID|Notes initialization failed|Unable to get module handle|Unable to locate NSFSearchExtended3|Unable to load NIFPurgeCollection|CreateProcess failed|larkspan\.exe (?:is not|could not)|needs a password|password file/i;
// Of a folder: this database's path, or the root as a whole.
const noFolder = /cannot be made|cannot be written to/i;
// Of the disk that all exports go to: no fault of the database, and no try there helps.
const noRoom = /less than \d+ MB are free on the disk/i;
const ofDatabase = /Error opening database \((.*)\)/i;
const inTheWay = /holds (?:something|an export)|is half sealed|is not empty/i;

function couldNotRun(reason: string, words: LibraryWords): Ending {
  if (unfit.test(reason)) return { kind: "unfit", reason };
  if (inTheWay.test(reason)) return { kind: "hopeless", reason };
  if (noFolder.test(reason)) return { kind: "incomplete", reason, isOfFolder: true };
  const said = ofDatabase.exec(reason)?.[1] ?? "";
  if (words.unreachable.test(said)) return { kind: "unreachable", reason };
  if (words.hopeless.test(said)) return { kind: "hopeless", reason };
  return { kind: "incomplete", reason };
}

function reasonOf(end: ExportEnd): string {
  const told = end.end?.reason ?? "";
  if (told !== "") return told;
  if (end.errors !== "") return end.errors.replace(/^larkspan-console: /, "");
  if (end.code === null) return "larkspan-console was ended from outside, or could not be started";
  return `larkspan-console ended with code ${end.code}`;
}

// Another program, or a script around the console that swallows its output, may end with a good code
// and have exported nothing.
function done(end: ExportEnd): Ending {
  if (end.end === undefined || end.end.exitCode !== end.code)
    return {
      kind: "unfit",
      reason: `the console ended with code ${end.code ?? "?"} and told nothing: is it larkspan-console?`,
    };
  if (end.code === ExitCode.done) return { kind: "done", losses: 0 };
  return { kind: "done", losses: end.ready?.losses ?? end.end.counts?.lost ?? 0 };
}

export function endingOf(end: ExportEnd, words: LibraryWords): Ending {
  const reason = reasonOf(end);
  switch (end.code) {
    case ExitCode.done:
    case ExitCode.losses:
      return done(end);
    case ExitCode.stopped:
      return { kind: "stopped" };
    case ExitCode.usage:
      return unfit.test(reason) ? { kind: "unfit", reason } : { kind: "hopeless", reason };
    case ExitCode.cannot:
      return couldNotRun(reason, words);
    default:
      // Not even begun: the program is missing, or does not run here.
      if (end.start === undefined && end.code === null) return { kind: "unfit", reason };
      if (noRoom.test(reason)) return { kind: "unfit", reason };
      return { kind: "incomplete", reason };
  }
}
