import assert from "node:assert/strict";
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { describe, test } from "node:test";
import { defaultWords } from "../../src/export/ending.js";
import type { Cancelled, JobData, JobResult, JobState } from "../../src/jobs/jobData.js";
import { JobRun } from "../../src/worker/jobRun.js";
import type { Machine, RunnableJob } from "../../src/worker/jobRun.js";
import { Shares } from "../../src/worker/shares.js";
import { FakeClock, settle } from "../support/fakeClock.js";
import { ScriptedConsole } from "../support/scriptedConsole.js";

class FakeJob implements RunnableJob {
  id = "d1";
  stalls = 0;
  told: string[] = [];
  state: JobState | undefined;
  result: JobResult | undefined;
  lock = 1;
  cancel: Cancelled | undefined;
  failures: Error[] = [];
  data: JobData = {
    root: "D:\\out\\",
    server: "Mill",
    machine: "",
    path: "a.nsf",
    title: "",
    bytes: null,
    listing: "",
    folder: "Mill\\a.nsf",
    options: {},
  };

  extendLock = () => Promise.resolve(this.lock);
  readCancel = () => Promise.resolve(this.cancel);
  log = () => Promise.resolve();
  giveBack = () => this.tell("given back");
  delay = (milliseconds: number) => this.tell(`delayed ${milliseconds}`);

  updateProgress(state: JobState): Promise<void> {
    this.state = state;
    return Promise.resolve();
  }

  complete(result: JobResult): Promise<void> {
    this.result = result;
    return this.tell("complete");
  }

  fail(error: Error): Promise<void> {
    return this.tell(`${error.name}: ${error.message}`);
  }

  private tell(what: string): Promise<void> {
    const failure = this.failures.shift();
    if (failure !== undefined) return Promise.reject(failure);
    this.told.push(what);
    return Promise.resolve();
  }
}

function begin(
  job: FakeJob,
  identities: Machine["identities"] = new Map(),
  maps: Machine["maps"] = [],
) {
  const console = new ScriptedConsole();
  const clock = new FakeClock();
  const ending = new AbortController();
  const said: string[] = [];
  const machine: Machine = {
    name: "one",
    console: ["larkspan-console.exe"],
    identities,
    words: defaultWords,
    maps,
    times: { lock: 60_000, look: 2000 },
    shares: new Shares(4, 2),
    clock,
    startConsole: console.start,
    say: (sentence) => said.push(sentence),
  };
  const outcome = new JobRun(job, machine, ending.signal).run();
  return { console, clock, ending, said, outcome };
}

describe("a job", () => {
  test("is completed with what the console told", async () => {
    const job = new FakeJob();
    const { console, outcome } = begin(job);
    await settle();
    console.tell("start", { out: "D:\\out\\Mill\\a.nsf.attempt-2" });
    console.tell("progress", { phase: "documents", documents: 9, documentsDone: 4, lost: 1 });
    console.tell("ready", { exitCode: 3, losses: 2 });
    await settle();
    console.tellEnd(3, "2 losses");
    assert.equal(await outcome, "done");
    assert.deepEqual(job.told, ["complete"]);
    assert.deepEqual(job.result, {
      verdict: "losses",
      counts: null,
      losses: 2,
      folder: "D:\\out\\Mill\\a.nsf",
      attempt: "D:\\out\\Mill\\a.nsf.attempt-2",
      machine: "one",
      seconds: 7,
    });
    assert.equal(job.state?.documentsDone, 4);
  });

  test("hands the password on in the environment and nowhere else", async () => {
    const job = new FakeJob();
    job.data.options = { identity: "migration", stall: "30m", views: false };
    const identity = { idFile: "C:\\m.id", password: "secret" };
    const { console, outcome, said } = begin(job, new Map([["migration", identity]]));
    await settle();
    console.tellEnd(5, "not accounted for");
    await outcome;
    assert.equal(console.environment["LARKSPAN_PASSWORD"], "secret");
    const always = ["export", "--atomic", "--confirm", "--json", "--stop-on-stdin-end"];
    assert.deepEqual(console.commandLine.slice(1, 6), always);
    assert.deepEqual(console.commandLine.slice(-6), [
      "D:\\out\\Mill\\a.nsf",
      "--id-file",
      "C:\\m.id",
      "--no-views",
      "--stall",
      "30m",
    ]);
    assert.doesNotMatch(JSON.stringify([console.commandLine, job, said]), /secret/);
  });

  test("gets as many workers as its machine has left", async () => {
    const job = new FakeJob();
    job.data.options = { workers: 8 };
    const { console, outcome } = begin(job);
    await settle();
    console.tellEnd(5, "not accounted for");
    await outcome;
    assert.deepEqual(console.commandLine.slice(-2), ["--workers", "3"]);
  });

  for (const [path, told] of [
    ["a.nsf", "complete"],
    ["b.nsf", "Error: the name is taken"],
  ] as const)
    test(`whose name is taken by an export of '${path}' is told of as '${told}'`, async () => {
      const root = mkdtempSync(join(tmpdir(), "larkspan-run-"));
      const job = new FakeJob();
      job.data.root = root;
      const { console, outcome } = begin(job, new Map(), [{ from: root, to: root }]);
      await settle();
      console.tell("ready", { exitCode: 0, losses: 0 });
      await settle();
      // Another worker was first.
      mkdirSync(join(root, "Mill", "a.nsf"), { recursive: true });
      const finished = {
        state: "ended",
        server: "Mill",
        path,
        exitCode: 3,
        account: { losses: [1] },
      };
      writeFileSync(join(root, "Mill", "a.nsf", "outcome.json"), JSON.stringify(finished));
      console.tellEnd(5, "the name is taken");
      await outcome;
      rmSync(root, { recursive: true });
      assert.deepEqual(job.told, [told]);
      if (told === "complete")
        assert.deepEqual([job.result?.verdict, job.result?.losses], ["losses", 1]);
    });

  test("that was taken over is let go without a word", async () => {
    const job = new FakeJob();
    const { console, clock, outcome } = begin(job);
    await settle();
    job.lock = 0;
    await clock.advance(16_000);
    assert.ok(console.isInputClosed);
    console.tellEnd(4, "stopped");
    await clock.advance(3000);
    assert.equal(await outcome, "lost");
    assert.deepEqual(job.told, []);
  });

  test("that is cancelled fails for good", async () => {
    const job = new FakeJob();
    const { console, clock, outcome } = begin(job);
    await settle();
    job.cancel = { at: "", by: "anna" };
    await clock.advance(2500);
    console.tellEnd(4, "stopped");
    await clock.advance(3000);
    assert.equal(await outcome, "cancelled");
    assert.deepEqual(job.told, ["UnrecoverableError: cancelled by anna"]);
  });

  test("whose worker is to end goes back, though it was cancelled by nobody", async () => {
    const job = new FakeJob();
    const { console, clock, ending, outcome } = begin(job);
    await settle();
    ending.abort();
    console.tellEnd(4, "stopped");
    await clock.advance(3000);
    assert.equal(await outcome, "given back");
    assert.deepEqual(job.told, ["given back"]);
  });

  test("that is complete in the moment in which its worker is to end is completed", async () => {
    const job = new FakeJob();
    const { console, clock, ending, outcome } = begin(job);
    await settle();
    console.tell("ready", { exitCode: 0, losses: 0 });
    await settle();
    ending.abort();
    console.tellEnd(0);
    await clock.advance(3000);
    assert.equal(await outcome, "done");
    assert.deepEqual(job.told, ["complete"]);
  });

  test("is told of again when the queue's server was away", async () => {
    const job = new FakeJob();
    job.failures = [new Error("away"), new Error("away")];
    const { console, clock, outcome } = begin(job);
    await settle();
    console.tell("ready", { exitCode: 0, losses: 0 });
    await settle();
    console.tellEnd(0);
    await clock.advance(10_000);
    assert.equal(await outcome, "done");
    assert.deepEqual(job.told, ["complete"]);
  });

  test("is not told of when the server says that it is another's", async () => {
    const job = new FakeJob();
    job.failures = [Object.assign(new Error("Lock mismatch"), { code: -6 })];
    const { console, outcome } = begin(job);
    await settle();
    console.tellEnd(0);
    assert.equal(await outcome, "lost");
    assert.deepEqual(job.told, []);
  });

  test("that brought down ten workers is tried no more, unless it was forgiven", async () => {
    const job = new FakeJob();
    job.stalls = 10;
    assert.equal(await begin(job).outcome, "failed");
    assert.match(job.told[0] ?? "", /UnrecoverableError: its worker was gone 10 times/);
    job.data.stallsForgiven = 1;
    const { console, outcome } = begin(job);
    await settle();
    console.tellEnd(0);
    assert.equal(await outcome, "done");
  });

  test("of a server that is away waits uncounted", async () => {
    const job = new FakeJob();
    const { console, outcome } = begin(job);
    await settle();
    console.tellEnd(2, "Error opening database (Server cannot be reached)");
    assert.equal(await outcome, "unreachable");
    assert.deepEqual(job.told, ["delayed 120000"]);
  });

  test("that is to be done again waits for a machine that sees the old folder", async () => {
    const job = new FakeJob();
    job.data.root = "/nowhere/at/all";
    job.data.again = { id: "1", at: "" };
    const { console, outcome } = begin(job);
    assert.equal(await outcome, "unfit");
    assert.deepEqual([job.told, console.commandLine], [["delayed 60000"], []]);
    assert.match(job.state?.reason ?? "", /does not see/);
  });

  for (const [root, told] of [
    ["/nowhere/at/all", "delayed 60000"],
    ["/", "Error: the folder '/a' cannot be made"],
  ] as const)
    test(`whose folder cannot be made below '${root}' is told of as '${told}'`, async () => {
      const job = new FakeJob();
      job.data.root = root;
      const { console, outcome } = begin(job);
      await settle();
      console.tellEnd(2, "the folder '/a' cannot be made");
      await outcome;
      assert.deepEqual(job.told, [told]);
    });
});
