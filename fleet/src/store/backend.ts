// What the two kinds of server have in common beside the queues themselves.
import type { BackendFactory, IQueueBackend } from "bullmq";
import type { JobData, JobResult, JobState } from "../jobs/jobData.js";

export type RowState = "waiting" | "running" | "delayed" | "completed" | "failed";

// A job as it stands, for those who count.
export interface JobRow {
  id: string;
  state: RowState;
  data: JobData;
  progress: JobState | null;
  result: JobResult | null;
  failedReason: string;
  attemptsMade: number;
  stalls: number;
  addedAt: number;
  startedAt: number | null;
  endedAt: number | null;
}

export function rowState(state: string): RowState {
  switch (state) {
    case "active":
      return "running";
    case "delayed":
    case "completed":
    case "failed":
      return state;
    default:
      return "waiting";
  }
}

// A person adds and directs jobs; a worker only does them.
export type RoleKind = "person" | "worker";

export interface Backend {
  readonly factory: BackendFactory<IQueueBackend, unknown>;
  // Of a queue: when the server is away who asks hears of it soon.
  readonly queueConnection: unknown;
  // Of a worker: it waits for the server.
  readonly workerConnection: unknown;
  // Throws when the server cannot be reached, or was not prepared.
  open(): Promise<void>;
  close(): Promise<void>;
  // Makes what is needed; sentences that tell what is there. Safe to call again.
  prepare(): Promise<string[]>;
  grant(role: string, kind: RoleKind): Promise<void>;
  // Milliseconds since 1970, by the server's clock.
  serverTime(): Promise<number>;
  rows(queue: string): AsyncIterable<JobRow>;
}
