// What a job says. It never holds a secret: an identity is a name, which each machine maps to an ID
// file and a password of its own.

export interface ExportOptions {
  identity?: string;
  views?: boolean;
  fullAccess?: boolean;
  notesIni?: string;
  stall?: string;
  giveUp?: number;
  maxLosses?: string;
  // So many workers of the Notes library share the export, where the machine has them.
  workers?: number;
}

export interface Cancelled {
  at: string;
  by: string;
}

// A placed export is to be made anew. The old folder is renamed first, to a name with this number
// in it, so that a second worker sees that it was done.
export interface Again {
  id: string;
  at: string;
}

export interface JobData {
  root: string;
  // Empty: a database of the machine that is named.
  server: string;
  machine: string;
  path: string;
  title: string;
  // Null: not told.
  bytes: number | null;
  listing: string;
  // Below the root, with backslashes.
  folder: string;
  options: ExportOptions;
  cancel?: Cancelled;
  again?: Again;
  // So many stalls were forgiven by a retry.
  stallsForgiven?: number;
}

export interface Counts {
  listed: number;
  exported: number;
  exportedWithLoss: number;
  lost: number;
}

export interface JobResult {
  verdict: "whole" | "losses";
  counts: Counts | null;
  losses: number;
  folder: string;
  // The folder in which it was made; empty: the export was there already.
  attempt: string;
  machine: string;
  seconds: number;
}

// What a worker tells of a job while it runs, and leaves behind when it failed.
export interface JobState {
  machine: string;
  phase: string;
  documents: number | null;
  documentsDone: number;
  restarts: number;
  lost: number;
  attempt: string;
  // Why the job was put off, uncounted; empty: it was not.
  reason: string;
  at: string;
}

// A server, or whose own databases these are.
export function serverName({ server, machine }: Pick<JobData, "server" | "machine">): string {
  return server === "" ? `databases of ${machine}` : server;
}

export function databaseName(data: Pick<JobData, "server" | "machine" | "path">): string {
  if (data.server !== "") return `${data.server}!!${data.path}`;
  return `${data.path} of ${data.machine}`;
}
