// One job on this machine, from its taking to the last word about it.
//
// Every way out tells the queue exactly one thing: done, failed (for good or to be tried again),
// back to waiting, or nothing, where the job is no longer ours. While the queue server is away that
// word waits; when another worker has taken the job by then, the server refuses it, and that one
// finds the folder placed.
import { UnrecoverableError } from "bullmq";
import { messageOf } from "../base/failures.js";
import type { Clock } from "../base/time.js";
import { exportCommandLine, folderOf, passwordVariable } from "../export/commandLine.js";
import type { StartConsole } from "../export/consoleProcess.js";
import { endingOf } from "../export/ending.js";
import type { Ending, LibraryWords } from "../export/ending.js";
import { runExport } from "../export/exportRun.js";
import type { ExportEnd } from "../export/exportRun.js";
import { exists, finishedIn, hasRoom, seenHere, setAside } from "../export/place.js";
import type { PathMap } from "../export/place.js";
import { databaseName } from "../jobs/jobData.js";
import type { JobData, JobResult, JobState } from "../jobs/jobData.js";
import type { Identity } from "./identities.js";
import { JobProgress } from "./jobProgress.js";
import { Lease } from "./lease.js";
import type { LeasedJob, LeaseTimes } from "./lease.js";
import type { Shares } from "./shares.js";

export interface RunnableJob extends LeasedJob {
  id: string;
  data: JobData;
  stalls: number;
  updateProgress(state: JobState): Promise<void>;
  log(line: string): Promise<unknown>;
  complete(result: JobResult): Promise<void>;
  fail(error: Error): Promise<void>;
  giveBack(): Promise<void>;
  // Uncounted.
  delay(milliseconds: number): Promise<void>;
}

export interface Machine {
  name: string;
  // The program, and words that stand before its own arguments.
  console: readonly string[];
  identities: ReadonlyMap<string, Identity>;
  words: LibraryWords;
  maps: readonly PathMap[];
  times: LeaseTimes;
  shares: Shares;
  clock: Clock;
  startConsole: StartConsole;
  say(sentence: string): void;
}

// What the worker has to know of a job that it ran.
export type JobOutcome =
  "done" | "failed" | "cancelled" | "given back" | "lost" | "unreachable" | "unfit";

const mostStalls = 10;
export const unreachablePause = 120_000;
export const unfitPause = 60_000;
const betweenReports = 3000;

export class JobRun {
  private readonly lease: Lease;
  private readonly progress: JobProgress;
  private readonly stop = new AbortController();

  constructor(
    private readonly job: RunnableJob,
    private readonly machine: Machine,
    // The worker is asked to end.
    private readonly ending: AbortSignal,
  ) {
    const complain = (sentence: string) => {
      this.say(sentence);
    };
    this.lease = new Lease(job, machine.times, machine.clock, complain);
    this.progress = new JobProgress(machine.name, job, machine.clock, complain);
  }

  async run(): Promise<JobOutcome> {
    const refusal = this.refusal();
    if (refusal !== undefined)
      return this.report(refusal.outcome, () => this.job.fail(refusal.error));
    const { identity: wanted } = this.job.data.options;
    const identity = wanted === undefined ? undefined : this.machine.identities.get(wanted);
    if (wanted !== undefined && identity === undefined) return this.withoutIdentity(wanted);
    this.say("begun");
    this.lease.start();
    try {
      return await this.export(identity);
    } finally {
      await this.lease.stop();
    }
  }

  private say(sentence: string): void {
    this.machine.say(`${databaseName(this.job.data)}: ${sentence}`);
  }

  private refusal(): { outcome: JobOutcome; error: Error } | undefined {
    const { cancel, stallsForgiven } = this.job.data;
    if (cancel !== undefined) return { outcome: "cancelled", error: cancelledBy(cancel.by) };
    if (this.job.stalls - (stallsForgiven ?? 0) < mostStalls) return undefined;
    const reason = `its worker was gone ${mostStalls} times: it may bring machines down`;
    return { outcome: "failed", error: new UnrecoverableError(reason) };
  }

  private async withoutIdentity(name: string): Promise<JobOutcome> {
    const reason = `this machine has no identity '${name}'`;
    this.say(reason);
    return this.putOff("unfit", reason, unfitPause);
  }

  private async export(identity: Identity | undefined): Promise<JobOutcome> {
    const stopNow = () => {
      this.stop.abort();
    };
    this.lease.ending.signal.addEventListener("abort", stopNow);
    this.ending.addEventListener("abort", stopNow);
    if (this.ending.aborted) stopNow();
    try {
      const { again } = this.job.data;
      // What it does not see it cannot rename, and the console would find the old export and be done.
      if (again !== undefined && !(await exists(this.root())))
        return await this.act({ kind: "unfit", reason: `it does not see ${this.job.data.root}` });
      if (again !== undefined) await setAside(this.finalFolder(), again.id);
      const end = await this.runConsole(identity);
      return await this.judge(end);
    } catch (error) {
      return await this.retry(messageOf(error));
    } finally {
      this.ending.removeEventListener("abort", stopNow);
    }
  }

  private finalFolder(): string {
    return seenHere(folderOf(this.job.data), this.machine.maps);
  }

  private root(): string {
    return seenHere(this.job.data.root, this.machine.maps);
  }

  private async runConsole(identity: Identity | undefined): Promise<ExportEnd> {
    const workers = this.machine.shares.take(this.job.data.options.workers ?? 1);
    try {
      return await this.runConsoleWith(workers, identity);
    } finally {
      this.machine.shares.giveBack(workers);
    }
  }

  private runConsoleWith(workers: number, identity: Identity | undefined): Promise<ExportEnd> {
    const { data } = this.job;
    const environment: Record<string, string> =
      identity === undefined ? {} : { [passwordVariable]: identity.password };
    return runExport(
      this.machine.startConsole,
      exportCommandLine(this.machine.console, data, identity, workers),
      environment,
      {
        onEvent: (event) => {
          this.progress.take(event);
        },
        mayPlace: () => this.lease.confirm(),
      },
      this.stop.signal,
      this.machine.clock,
    );
  }

  private async judge(end: ExportEnd): Promise<JobOutcome> {
    const ending = endingOf(end, this.machine.words);
    if (ending.kind === "done") return this.complete(end, ending.losses);
    const taken = await this.takenOver(end);
    if (taken !== undefined) return taken;
    if (this.lease.end?.kind === "cancelled") {
      const error = cancelledBy(this.lease.end.cancel.by);
      await this.progress.flush();
      return this.report("cancelled", () => this.job.fail(error));
    }
    if (this.lease.end !== undefined) return this.letGo(this.lease.end.kind);
    if (this.ending.aborted) return this.report("given back", () => this.job.giveBack());
    return this.act(ending);
  }

  // The name could not be given: another worker may have been first.
  private async takenOver(end: ExportEnd): Promise<JobOutcome | undefined> {
    if (!end.wasPlaced) return undefined;
    const finished = await finishedIn(this.finalFolder(), this.job.data);
    if (finished === undefined) return undefined;
    this.say("another worker placed it");
    const counts = finished.counts;
    const result = this.result(end, finished.losses, finished.exitCode, counts);
    return this.report("done", () => this.job.complete(result));
  }

  private letGo(kind: string): JobOutcome {
    this.say(
      kind === "lost"
        ? "it was taken from this worker, and is stopped here"
        : "the queue server was away for longer than the lock lasts; it is stopped here",
    );
    return "lost";
  }

  private async complete(end: ExportEnd, losses: number): Promise<JobOutcome> {
    const result = this.result(end, losses, end.code ?? 0, end.end?.counts ?? null);
    this.say(losses === 0 ? "whole" : `done, with ${losses} ${losses === 1 ? "loss" : "losses"}`);
    await this.progress.flush();
    return this.report("done", () => this.job.complete(result));
  }

  private result(
    end: ExportEnd,
    losses: number,
    exitCode: number,
    counts: JobResult["counts"],
  ): JobResult {
    return {
      verdict: exitCode === 0 ? "whole" : "losses",
      counts,
      losses,
      folder: folderOf(this.job.data),
      attempt: end.ready === undefined ? "" : (end.start?.out ?? ""),
      machine: this.machine.name,
      seconds: end.end?.seconds ?? 0,
    };
  }

  // A root that this machine does not see, or that is full, is no fault of the database.
  private async canUseRoot(): Promise<boolean> {
    return (await exists(this.root())) && (await hasRoom(this.root()));
  }

  private async act(ending: Ending): Promise<JobOutcome> {
    if (ending.kind === "incomplete" && ending.isOfFolder === true && !(await this.canUseRoot()))
      return this.act({ kind: "unfit", reason: ending.reason });
    switch (ending.kind) {
      case "hopeless":
        this.say(`failed: ${ending.reason}`);
        return this.fail(new UnrecoverableError(ending.reason));
      case "unreachable":
        this.say(`its server cannot be reached; tried again later: ${ending.reason}`);
        return this.putOff("unreachable", ending.reason, unreachablePause);
      case "unfit":
        this.say(`this machine cannot export: ${ending.reason}`);
        return this.putOff("unfit", ending.reason, unfitPause);
      case "incomplete":
        return this.retry(ending.reason);
      default:
        return this.retry("larkspan-console was stopped by somebody else");
    }
  }

  // Uncounted, so that the queue keeps no reason of it; the progress does.
  private async putOff(outcome: JobOutcome, reason: string, pause: number): Promise<JobOutcome> {
    this.progress.state.reason = reason;
    this.progress.log(reason);
    await this.progress.flush();
    return this.report(outcome, () => this.job.delay(pause));
  }

  private retry(reason: string): Promise<JobOutcome> {
    this.say(`not complete: ${reason}`);
    return this.fail(new Error(reason));
  }

  private async fail(error: Error): Promise<JobOutcome> {
    this.progress.log(error.message);
    await this.progress.flush();
    return this.report("failed", () => this.job.fail(error));
  }

  // Tells the queue, and again where it is away.
  private async report(outcome: JobOutcome, tell: () => Promise<void>): Promise<JobOutcome> {
    for (;;) {
      try {
        await tell();
        return outcome;
      } catch (error) {
        if (isOfLock(error)) return this.letGo("lost");
        this.say(`the queue could not be told: ${messageOf(error)}`);
        if (this.ending.aborted) return "lost";
        await this.machine.clock.pause(betweenReports, this.ending);
      }
    }
  }
}

function cancelledBy(name: string): UnrecoverableError {
  return new UnrecoverableError(`cancelled by ${name}`);
}

// The server refuses what is told of a job that another worker holds, or that is gone. Its codes for
// that are negative numbers; those of a broken connection are words.
function isOfLock(error: unknown): boolean {
  if (typeof error !== "object" || error === null || !("code" in error)) return false;
  return typeof error.code === "number" && error.code < 0;
}
