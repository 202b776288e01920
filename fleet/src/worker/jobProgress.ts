// What a job tells while it runs: its state as progress, not more often than every few seconds, and
// a log line for each restart, loss and warning.
import { messageOf } from "../base/failures.js";
import type { Clock } from "../base/time.js";
import type { ConsoleEvent } from "../export/events.js";
import type { JobState } from "../jobs/jobData.js";

const betweenWrites = 3000;
const mostLogLines = 500;

export interface ProgressTarget {
  updateProgress(state: JobState): Promise<void>;
  log(line: string): Promise<unknown>;
}

function logLineOf(event: ConsoleEvent): string | undefined {
  switch (event.kind) {
    case "restart":
      return `the worker ended by a ${event.cause} at note ${event.note || "(none)"}`;
    case "lost":
      return `lost: ${event.id || "-"} (${event.stage}): ${event.cause}`;
    case "warning":
      return `warning: ${event.text}`;
    default:
      return undefined;
  }
}

export class JobProgress {
  readonly state: JobState;
  private writtenAt = -Infinity;
  private logLines = 0;
  private writes: Promise<void> = Promise.resolve();

  constructor(
    machine: string,
    private readonly target: ProgressTarget,
    private readonly clock: Clock,
    private readonly complain: (sentence: string) => void,
  ) {
    this.state = {
      machine,
      phase: "starting",
      documents: null,
      documentsDone: 0,
      restarts: 0,
      lost: 0,
      attempt: "",
      reason: "",
      at: "",
    };
  }

  take(event: ConsoleEvent): void {
    if (event.kind === "start") this.state.attempt = event.out;
    if (event.kind === "phase") this.state.phase = event.phase;
    if (event.kind === "progress") this.takeProgress(event);
    if (event.kind === "ready") this.state.phase = "placing";
    this.log(logLineOf(event));
    if (event.kind === "phase" || this.clock.ticks() - this.writtenAt >= betweenWrites)
      this.write();
  }

  log(line: string | undefined): void {
    if (line === undefined || this.logLines > mostLogLines) return;
    const isLast = this.logLines++ === mostLogLines;
    const text = isLast ? "more lines were left out; log.txt of the export has them" : line;
    const at = new Date(this.clock.now()).toISOString().slice(0, 19);
    this.enqueue(() => this.target.log(`${at}Z ${text}`));
  }

  // All that was told has been written, or could not be.
  async flush(): Promise<void> {
    this.write();
    await this.writes;
  }

  private takeProgress(event: ConsoleEvent & { kind: "progress" }): void {
    this.state.documents = event.documents;
    this.state.documentsDone = event.documentsDone;
    this.state.restarts = event.restarts;
    this.state.lost = event.lost;
  }

  private write(): void {
    this.writtenAt = this.clock.ticks();
    this.state.at = new Date(this.clock.now()).toISOString();
    const state = { ...this.state };
    this.enqueue(() => this.target.updateProgress(state));
  }

  private enqueue(work: () => Promise<unknown>): void {
    this.writes = this.writes.then(work).then(
      () => undefined,
      (error: unknown) => {
        this.complain(`its progress could not be told: ${messageOf(error)}`);
      },
    );
  }
}
