import assert from "node:assert/strict";
import { describe, test } from "node:test";
import type { Cancelled } from "../../src/jobs/jobData.js";
import { Lease } from "../../src/worker/lease.js";
import { FakeClock, settle } from "../support/fakeClock.js";

class FakeJob {
  renewals = 0;
  answer: () => Promise<number> = () => Promise.resolve(1);
  cancel: Cancelled | undefined;

  extendLock(): Promise<number> {
    ++this.renewals;
    return this.answer();
  }

  readCancel(): Promise<Cancelled | undefined> {
    return Promise.resolve(this.cancel);
  }
}

function held(job: FakeJob): { lease: Lease; clock: FakeClock } {
  const clock = new FakeClock();
  const lease = new Lease(job, { lock: 60_000, look: 2000 }, clock, () => undefined);
  lease.start();
  return { lease, clock };
}

describe("the hold on a job", () => {
  test("is renewed four times in the time of the lock", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    await clock.advance(60_500);
    await lease.stop();
    assert.ok(job.renewals === 3 || job.renewals === 4, String(job.renewals));
    assert.equal(lease.end, undefined);
  });

  test("ends when the server says that the lock is lost", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    job.answer = () => Promise.resolve(0);
    await clock.advance(20_000);
    assert.deepEqual(lease.end, { kind: "lost" });
    assert.ok(lease.ending.signal.aborted);
    await lease.stop();
  });

  test("ends within two looks when the job is cancelled", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    job.cancel = { at: "", by: "anna" };
    await clock.advance(2100);
    assert.deepEqual(lease.end, { kind: "cancelled", cancel: job.cancel });
    await lease.stop();
  });

  test("outlives a server that is away for less than the lock lasts", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    job.answer = () => Promise.reject(new Error("away"));
    await clock.advance(50_000);
    assert.equal(lease.end, undefined);
    job.answer = () => Promise.resolve(1);
    await clock.advance(60_000);
    assert.equal(lease.end, undefined);
    await lease.stop();
  });

  test("ends when the server is away for longer", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    job.answer = () => Promise.reject(new Error("away"));
    await clock.advance(58_000);
    assert.deepEqual(lease.end, { kind: "cut off" });
    await lease.stop();
  });
});

test("a hold ends also when the server never answers", async () => {
  const job = new FakeJob();
  const { lease, clock } = held(job);
  job.answer = () => new Promise(() => undefined);
  await clock.advance(80_000);
  assert.deepEqual(lease.end, { kind: "cut off" });
  await lease.stop();
});

describe("the word before the name is given", () => {
  test("is yes by an answer of this moment", async () => {
    const job = new FakeJob();
    const { lease } = held(job);
    assert.equal(await lease.confirm(), true);
    assert.equal(job.renewals, 1);
    await lease.stop();
  });

  test("is no for a lock that is lost", async () => {
    const job = new FakeJob();
    const { lease } = held(job);
    job.answer = () => Promise.resolve(0);
    assert.equal(await lease.confirm(), false);
    await lease.stop();
  });

  test("is asked again when no answer comes", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    const answers: boolean[] = [];
    job.answer = () => new Promise(() => undefined);
    void lease.confirm().then((answer) => answers.push(answer));
    job.answer = () => Promise.resolve(1);
    await clock.advance(14_000);
    assert.deepEqual(answers, []);
    await clock.advance(3000);
    assert.deepEqual(answers, [true]);
    await lease.stop();
  });

  test("does not count when it was long on its way", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    const answers: boolean[] = [];
    // The machine stood still after the server had answered.
    job.answer = () => {
      clock.jump(31_000);
      return Promise.resolve(1);
    };
    void lease.confirm().then((answer) => answers.push(answer));
    await settle();
    assert.deepEqual(answers, []);
    job.answer = () => Promise.resolve(1);
    await clock.advance(1500);
    assert.deepEqual(answers, [true]);
    await lease.stop();
  });

  test("waits for a server that is away, and is no when the lock has run out", async () => {
    const job = new FakeJob();
    const { lease, clock } = held(job);
    job.answer = () => Promise.reject(new Error("away"));
    const word = lease.confirm();
    await clock.advance(60_000);
    assert.equal(await word, false);
    await lease.stop();
  });
});
