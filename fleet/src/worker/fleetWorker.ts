// A worker: takes jobs from the queues of all Notes servers, as many as it has slots.
//
// Jobs are taken by hand and not by a processor of the queue library, since a job that is given
// back, or let go, has to be told otherwise than by a result. The order of the queues turns, so that
// no server waits for another one.
import { randomUUID } from "node:crypto";
import { CannotError, messageOf } from "../base/failures.js";
import { upperCase } from "../base/fold.js";
import { Catalogue } from "../store/catalogue.js";
import type { CatalogueState, QueueEntry } from "../store/catalogue.js";
import type { FleetJob, FleetWorker, Store } from "../store/store.js";
import { JobRun, unfitPause, unreachablePause } from "./jobRun.js";
import type { JobOutcome, Machine } from "./jobRun.js";
import { runnableJob } from "./queueJob.js";

export interface WorkerSettings {
  slots: number;
  // Ends when there is nothing left to do.
  untilEmpty: boolean;
}

const shortestWait = 500;
const longestWait = 5000;
const catalogueAge = 5000;
const clockAge = 600_000;

interface Source {
  worker: FleetWorker;
  // No job is taken before.
  heldUntil: number;
}

export class FleetWorkerLoop {
  private readonly sources = new Map<string, Source>();
  private readonly running = new Set<Promise<void>>();
  private readonly catalogue: Catalogue;
  private state: CatalogueState = { entries: [], switches: { paused: false, drained: "" } };
  private stateReadAt = -Infinity;
  private clockReadAt = -Infinity;
  private unfitUntil = 0;
  private turn = 0;
  private wake = new AbortController();

  constructor(
    private readonly store: Store,
    private readonly machine: Machine,
    private readonly settings: WorkerSettings,
    // Asks the worker to end: exports are stopped, and jobs given back.
    private readonly ending: AbortSignal,
  ) {
    this.catalogue = new Catalogue(store);
    ending.addEventListener("abort", () => {
      this.wake.abort();
    });
  }

  // Returns when it was asked to end, or the project was drained.
  async run(): Promise<"asked" | "drained" | "empty"> {
    for (let wait = shortestWait; !this.ending.aborted;) {
      const taken = await this.round();
      if (this.isDrained()) return await this.finish("drained");
      const isIdle = taken === 0 && this.running.size === 0;
      if (isIdle && this.settings.untilEmpty && (await this.isEmpty()))
        return await this.finish("empty");
      wait = taken > 0 ? shortestWait : Math.min(wait * 1.5, longestWait);
      await this.rest(wait);
    }
    return await this.finish("asked");
  }

  private async finish<T>(reason: T): Promise<T> {
    await Promise.all(this.running);
    for (const { worker } of this.sources.values()) await worker.close(true).catch(() => undefined);
    return reason;
  }

  private async rest(milliseconds: number): Promise<void> {
    this.wake = new AbortController();
    if (this.ending.aborted) return;
    // Not all machines at one moment.
    const jitter = 0.8 + Math.random() * 0.4;
    await this.machine.clock.pause(milliseconds * jitter, this.wake.signal);
  }

  private isDrained(): boolean {
    return this.state.switches.drained !== "";
  }

  // How many jobs it took. A server that is away costs a sentence and nothing else.
  private async round(): Promise<number> {
    try {
      await this.refresh();
      return await this.take();
    } catch (error) {
      const isOurs = error instanceof CannotError;
      this.machine.say(`${isOurs ? "" : "the queue does not answer: "}${messageOf(error)}`);
      return 0;
    }
  }

  private async refresh(): Promise<void> {
    const now = this.machine.clock.ticks();
    if (now - this.clockReadAt > clockAge) {
      await this.checkClock();
      this.clockReadAt = now;
    }
    if (now - this.stateReadAt < catalogueAge) {
      this.state.switches = await this.catalogue.readSwitches();
      return;
    }
    this.state = await this.catalogue.read();
    this.stateReadAt = now;
    for (const entry of this.state.entries)
      if (!this.sources.has(entry.queue) && this.isOurs(entry)) await this.addSource(entry.queue);
  }

  // Windows takes a machine's name in any letter case.
  private isOurs({ server, machine }: QueueEntry): boolean {
    return server !== "" || upperCase(machine) === upperCase(this.machine.name);
  }

  // The locks of jobs are times of the clocks of those who take them.
  private async checkClock(): Promise<void> {
    const off = Math.abs((await this.store.serverTime()) - this.machine.clock.now());
    if (off > this.machine.times.lock / 4)
      throw new CannotError(
        `this machine's clock is ${Math.round(off / 1000)} s off that of the queue server;` +
          " no job is taken until it is set",
      );
  }

  private async addSource(queue: string): Promise<void> {
    const { lock } = this.machine.times;
    const worker = this.store.worker(queue, this.machine.name, {
      lock,
      stalledInterval: lock / 2,
    });
    await worker.startStalledCheckTimer();
    this.sources.set(queue, { worker, heldUntil: 0 });
  }

  private async take(): Promise<number> {
    let taken = 0;
    if (this.isDrained()) return taken;
    const names = [...this.sources.keys()];
    // One job of each queue in turn, until none has any or all slots are taken.
    for (let misses = 0; misses < names.length && this.mayTake();) {
      const name = names[this.turn++ % names.length] ?? "";
      if (await this.takeFrom(name)) {
        misses = 0;
        ++taken;
      } else {
        ++misses;
      }
    }
    return taken;
  }

  private mayTake(): boolean {
    const isFit = this.machine.clock.now() >= this.unfitUntil;
    return isFit && !this.ending.aborted && this.running.size < this.settings.slots;
  }

  private async takeFrom(name: string): Promise<boolean> {
    const source = this.sources.get(name);
    if (source === undefined || this.machine.clock.now() < source.heldUntil) return false;
    const token = randomUUID();
    const job = (await source.worker.getNextJob(token, { block: false })) as FleetJob | undefined;
    if (job === undefined) return false;
    this.start(name, source, job, token);
    return true;
  }

  private start(name: string, source: Source, job: FleetJob, token: string): void {
    const runnable = runnableJob(job, token, this.store.queue(name));
    const run = new JobRun(runnable, this.machine, this.ending)
      .run()
      .catch((error: unknown): JobOutcome => {
        this.machine.say(`job ${runnable.id}: ${messageOf(error)}`);
        return "lost";
      })
      .then((outcome) => {
        this.learn(source, outcome);
        this.running.delete(run);
        this.wake.abort();
      });
    this.running.add(run);
  }

  private learn(source: Source, outcome: JobOutcome): void {
    const now = this.machine.clock.now();
    if (outcome === "unreachable") source.heldUntil = now + unreachablePause / 2;
    if (outcome === "unfit") this.unfitUntil = now + unfitPause / 2;
  }

  private async isEmpty(): Promise<boolean> {
    for (const name of this.sources.keys()) {
      const counts = await this.store
        .queue(name)
        .getJobCounts("wait", "prioritized", "delayed", "active");
      if (Object.values(counts).some((count) => count > 0)) return false;
    }
    return true;
  }
}
