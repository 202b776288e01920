// The account of a project: a row for each database, with what became of it.
//
// Every machine of the fleet can write into the queue, so that nothing of a job is believed before it
// was looked at: not even that a count is a number.
import { isObject, numberOf, textOf } from "../base/json.js";
import type { JsonObject } from "../base/json.js";
import type { JobRow } from "../store/backend.js";
import type { QueueEntry } from "../store/catalogue.js";
import type { Store } from "../store/store.js";
import type { JobData } from "../jobs/jobData.js";
import { foldRoot } from "../jobs/jobId.js";

export const verdicts = [
  "whole",
  "losses",
  "failed",
  "cancelled",
  "running",
  "retrying",
  "waiting",
] as const;

export type RowVerdict = (typeof verdicts)[number];

export function isVerdict(text: string): text is RowVerdict {
  return verdicts.some((verdict) => verdict === text);
}

export const verdictWords: Record<RowVerdict, string> = {
  whole: "whole",
  losses: "with losses",
  failed: "failed",
  cancelled: "cancelled",
  running: "running",
  retrying: "to be tried again",
  waiting: "waiting",
};

type OfJob = Pick<JobData, "root" | "server" | "machine" | "path" | "title" | "bytes" | "listing">;

export interface AccountRow extends OfJob {
  id: string;
  queue: string;
  verdict: RowVerdict;
  reason: string;
  attempts: number;
  listed: number | null;
  exported: number | null;
  lost: number | null;
  losses: number | null;
  folder: string;
  attempt: string;
  worker: string;
  started: string;
  ended: string;
  seconds: number | null;
  phase: string;
  documents: number | null;
  documentsDone: number;
  restarts: number;
}

function objectOf(value: unknown): JsonObject {
  return isObject(value) ? value : {};
}

// A result that is none has a verdict that wants a look.
function verdictOfResult(result: JsonObject): RowVerdict {
  return textOf(result, "verdict") === "whole" ? "whole" : "losses";
}

// A job that is to be cancelled counts as cancelled at once, though no worker has taken it yet.
export function verdictOf(row: JobRow): RowVerdict {
  const isCancelled = objectOf(row.data)["cancel"] !== undefined;
  switch (row.state) {
    case "completed":
      return verdictOfResult(objectOf(row.result));
    case "running":
      return "running";
    case "failed":
      return isCancelled ? "cancelled" : "failed";
    default:
      if (isCancelled) return "cancelled";
      return row.state === "delayed" ? "retrying" : "waiting";
  }
}

// Empty: at no time, or at one that no calendar has.
function timeOf(milliseconds: number | null): string {
  const date = new Date(milliseconds ?? NaN);
  return Number.isNaN(date.getTime()) ? "" : `${date.toISOString().slice(0, 19)}Z`;
}

function reasonOf(row: JobRow, verdict: RowVerdict): string {
  const cancel = objectOf(objectOf(row.data)["cancel"]);
  if (verdict === "cancelled") return `cancelled by ${textOf(cancel, "by") || "?"}`;
  if (verdict === "failed") return row.failedReason;
  const putOff = textOf(objectOf(row.progress), "reason");
  if (verdict === "waiting") return putOff;
  return verdict === "retrying" ? putOff || row.failedReason : "";
}

// What the export came to, or how far it is.
function workOf(row: JobRow, isAtWork: boolean) {
  const [result, progress] = [objectOf(row.result), objectOf(row.progress)];
  const last = isObject(row.result) ? result : progress;
  const counts = objectOf(result["counts"]);
  return {
    listed: numberOf(counts, "listed"),
    exported: numberOf(counts, "exported"),
    lost: numberOf(counts, "lost") ?? (isAtWork ? numberOf(progress, "lost") : null),
    losses: numberOf(result, "losses"),
    attempt: textOf(last, "attempt"),
    worker: textOf(last, "machine"),
    seconds: numberOf(result, "seconds"),
    phase: isAtWork ? textOf(progress, "phase") : "",
    documents: isAtWork ? numberOf(progress, "documents") : null,
    documentsDone: isAtWork ? (numberOf(progress, "documentsDone") ?? 0) : 0,
    restarts: numberOf(progress, "restarts") ?? 0,
  };
}

// Since the queue had it, or 'retry' forgave those before: that ended, and that lost their worker.
function triesOf(row: JobRow): number {
  const forgiven = numberOf(objectOf(row.data), "stallsForgiven") ?? 0;
  return row.attemptsMade + Math.max(0, row.stalls - forgiven);
}

export function accountRow(row: JobRow, queue: string): AccountRow {
  const data = objectOf(row.data);
  const verdict = verdictOf(row);
  const root = textOf(data, "root");
  return {
    id: row.id,
    queue,
    server: textOf(data, "server"),
    machine: textOf(data, "machine"),
    path: textOf(data, "path"),
    title: textOf(data, "title"),
    bytes: numberOf(data, "bytes"),
    listing: textOf(data, "listing"),
    root,
    verdict,
    reason: reasonOf(row, verdict),
    attempts: triesOf(row),
    folder: `${root.replace(/[\\/]+$/, "")}\\${textOf(data, "folder")}`,
    started: timeOf(row.startedAt),
    ended: timeOf(row.endedAt),
    ...workOf(row, verdict === "running"),
  };
}

// With root those of this project alone. One after another: there may be many.
export async function* accountRows(
  store: Store,
  entries: readonly QueueEntry[],
  root: string | undefined,
): AsyncGenerator<AccountRow> {
  const wanted = root === undefined ? undefined : foldRoot(root);
  for (const { queue } of entries)
    for await (const job of store.rows(queue)) {
      const row = accountRow(job, queue);
      if (wanted === undefined || foldRoot(row.root) === wanted) yield row;
    }
}

export type Tally = Record<RowVerdict, number>;

export function emptyTally(): Tally {
  return { whole: 0, losses: 0, failed: 0, cancelled: 0, running: 0, retrying: 0, waiting: 0 };
}

// Of which nothing is final.
const openVerdicts: readonly RowVerdict[] = ["running", "retrying", "waiting"];

export function isOpen(verdict: RowVerdict): boolean {
  return openVerdicts.includes(verdict);
}

export function openRows(tally: Tally): number {
  return openVerdicts.reduce((sum, verdict) => sum + tally[verdict], 0);
}

export function databasesIn(tally: Tally): number {
  return Object.values(tally).reduce((sum, count) => sum + count, 0);
}
