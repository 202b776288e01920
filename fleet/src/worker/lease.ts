// The hold on a job that runs. The queue server lends a job for the lock time; here the lock is
// renewed, its loss is noticed, and so is a wish to cancel.
import { messageOf } from "../base/failures.js";
import { within } from "../base/time.js";
import type { Clock } from "../base/time.js";
import type { Cancelled } from "../jobs/jobData.js";

// What the hold needs of a job and its queue; tests have one of their own.
export interface LeasedJob {
  // 0: the lock is lost.
  extendLock(milliseconds: number): Promise<number>;
  readCancel(): Promise<Cancelled | undefined>;
}

export type LeaseEnd =
  { kind: "lost" } | { kind: "cut off" } | { kind: "cancelled"; cancel: Cancelled };

export interface LeaseTimes {
  lock: number;
  // Between two looks.
  look: number;
}

const renewalsOfLock = 4;
// A lock that nobody could renew for so much of its time counts as lost.
const shareUntilCutOff = 0.9;

export class Lease {
  readonly ending = new AbortController();
  end: LeaseEnd | undefined;
  private readonly finished = new AbortController();
  private extendedAt: number;
  private watch: Promise<void> = Promise.resolve();

  constructor(
    private readonly job: LeasedJob,
    private readonly times: LeaseTimes,
    private readonly clock: Clock,
    private readonly complain: (sentence: string) => void,
  ) {
    this.extendedAt = clock.ticks();
  }

  start(): void {
    this.watch = this.keep();
  }

  // Looks no more; the lock stays as it is.
  async stop(): Promise<void> {
    this.finished.abort();
    await this.watch;
  }

  // Whether the job is still ours, by the server's answer of this moment. Waits for a server that
  // is away, so long as the lock lasts.
  async confirm(): Promise<boolean> {
    while (!this.ending.signal.aborted) {
      const asked = await this.renew();
      // An answer that was long on its way says what was so long ago.
      const age = asked === undefined ? Infinity : this.clock.ticks() - asked;
      if (age < this.times.lock / 2) return !this.isEnding();
      this.checkAge();
      await this.clock.pause(this.times.look / 2, this.ending.signal);
    }
    return false;
  }

  private isStopped(): boolean {
    return this.finished.signal.aborted;
  }

  private isEnding(): boolean {
    return this.ending.signal.aborted;
  }

  private async keep(): Promise<void> {
    while (!this.isEnding()) {
      await this.clock.pause(this.times.look, this.finished.signal);
      if (this.isStopped()) return;
      if (this.clock.ticks() - this.extendedAt >= this.times.lock / renewalsOfLock)
        await this.renew();
      await this.lookForCancel();
      this.checkAge();
    }
  }

  // A server that is cut off may never answer, and the lock runs out all the same.
  private ask<T>(answer: Promise<T>): Promise<T> {
    return within(this.clock, this.times.lock / renewalsOfLock, answer);
  }

  // The moment at which the server was asked; undefined: it did not renew the lock.
  private async renew(): Promise<number | undefined> {
    const asked = this.clock.ticks();
    try {
      if ((await this.ask(this.job.extendLock(this.times.lock))) === 0) {
        this.endBy({ kind: "lost" });
        return undefined;
      }
      this.extendedAt = Math.max(asked, this.extendedAt);
      return asked;
    } catch (error) {
      this.complain(`the lock could not be renewed: ${messageOf(error)}`);
      return undefined;
    }
  }

  private async lookForCancel(): Promise<void> {
    try {
      const cancel = await this.ask(this.job.readCancel());
      if (cancel !== undefined) this.endBy({ kind: "cancelled", cancel });
    } catch {
      // The renewal complains of a server that is away.
    }
  }

  private checkAge(): void {
    if (this.clock.ticks() - this.extendedAt > this.times.lock * shareUntilCutOff)
      this.endBy({ kind: "cut off" });
  }

  private endBy(end: LeaseEnd): void {
    if (this.isEnding()) return;
    this.end = end;
    this.ending.abort();
  }
}
