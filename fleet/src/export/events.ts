// The console's events, as docs/events.md promises them. What is not known is skipped.
import { numberOf, parseObject, textOf } from "../base/json.js";
import type { JsonObject } from "../base/json.js";
import type { Counts } from "../jobs/jobData.js";
import { countsOf } from "./counts.js";

export interface StartEvent {
  kind: "start";
  // The folder of this attempt.
  out: string;
}

export interface PhaseEvent {
  kind: "phase";
  phase: string;
}

export interface ProgressEvent {
  kind: "progress";
  phase: string;
  documents: number | null;
  documentsDone: number;
  restarts: number;
  lost: number;
}

export interface RestartEvent {
  kind: "restart";
  note: string;
  cause: string;
}

export interface LostEvent {
  kind: "lost";
  id: string;
  stage: string;
  cause: string;
}

export interface WarningEvent {
  kind: "warning";
  warning: string;
  text: string;
}

export interface ReadyEvent {
  kind: "ready";
  exitCode: number;
  losses: number;
}

export interface EndEvent {
  kind: "end";
  exitCode: number;
  reason: string;
  out: string;
  counts: Counts | null;
  seconds: number;
}

export type ConsoleEvent =
  | StartEvent
  | PhaseEvent
  | ProgressEvent
  | RestartEvent
  | LostEvent
  | WarningEvent
  | ReadyEvent
  | EndEvent;

const knownVersion = 1;

const readers: Record<string, (event: JsonObject) => ConsoleEvent> = {
  start: (event) => ({ kind: "start", out: textOf(event, "out") }),
  phase: (event) => ({ kind: "phase", phase: textOf(event, "phase") }),
  progress: (event) => ({
    kind: "progress",
    phase: textOf(event, "phase"),
    documents: numberOf(event, "documents"),
    documentsDone: numberOf(event, "documentsDone") ?? 0,
    restarts: numberOf(event, "restarts") ?? 0,
    lost: numberOf(event, "lost") ?? 0,
  }),
  restart: (event) => ({
    kind: "restart",
    note: textOf(event, "note"),
    cause: textOf(event, "cause"),
  }),
  lost: (event) => ({
    kind: "lost",
    id: textOf(event, "id"),
    stage: textOf(event, "stage"),
    cause: textOf(event, "cause"),
  }),
  warning: (event) => ({
    kind: "warning",
    warning: textOf(event, "warning"),
    text: textOf(event, "text"),
  }),
  ready: (event) => ({
    kind: "ready",
    exitCode: numberOf(event, "exitCode") ?? -1,
    losses: numberOf(event, "losses") ?? 0,
  }),
  end: (event) => ({
    kind: "end",
    exitCode: numberOf(event, "exitCode") ?? -1,
    reason: textOf(event, "reason"),
    out: textOf(event, "out"),
    counts: countsOf(event["counts"]),
    seconds: numberOf(event, "seconds") ?? 0,
  }),
};

// Undefined: a line that is no event, or one of another kind or version.
export function parseEvent(line: string): ConsoleEvent | undefined {
  const event = parseObject(line);
  if (event?.["version"] !== knownVersion) return undefined;
  return readers[textOf(event, "kind")]?.(event);
}
