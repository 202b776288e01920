// What a job outlives: its worker, and the queue's server that is away or full. The console does as
// its database's name says.
import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { eachTestHas } from "../support/bed.js";
import { Between } from "../support/between.js";
import { Fleet, pause, until } from "../support/fleet.js";
import type { TestServer } from "../support/postgres.js";

let server: TestServer;
let schema: string;
let fleet: Fleet;

eachTestHas((bed) => {
  ({ server, schema, fleet } = bed);
});

function add(paths: readonly string[]): void {
  const listing = fleet.list("list.csv", "Mill/Example", paths);
  fleet.do("add", listing, "--root", fleet.root);
}

const fast = ["--lock", "4s"];

describe("a job whose worker is gone", () => {
  for (const phase of ["start", "document 2", "ready"])
    test(`in the phase '${phase}' is done once by another one`, async () => {
      add(["a.nsf"]);
      const environment = phase === "ready" ? { FAKE_PLACING: "1000" } : { FAKE_STEP: "400" };
      const first = fleet.worker("one", fast, environment);
      await until(`it is at '${phase}'`, () => fleet.times("a.nsf", phase) === 1);
      first.process.kill("SIGKILL");
      const second = fleet.worker("two", [...fast, "--until-empty"]);
      assert.equal(await second.ended, 0, second.output());
      assert.equal(fleet.job("a.nsf").verdict, "whole");
      assert.equal(fleet.times("a.nsf", "placed"), 1);
    });

  test("because it was frozen past its lock is not placed by it", async () => {
    add(["a.nsf"]);
    const first = fleet.worker("one", fast, { FAKE_STEP: "300" });
    await until("it exports", () => fleet.times("a.nsf", "document 1") === 1);
    first.process.kill("SIGSTOP");
    const second = fleet.worker("two", [...fast, "--until-empty"]);
    assert.equal(await second.ended, 0, second.output());
    first.process.kill("SIGCONT");
    await until("it let go", () => first.output().includes("taken from this worker"));
    assert.equal(fleet.times("a.nsf", "placed"), 1);
    assert.equal(fleet.times("a.nsf", "left") + fleet.times("a.nsf", "stopped"), 1);
    assert.equal(fleet.job("a.nsf").worker, "two");
  });
});

describe("the queue's server", () => {
  test("may be restarted in the midst: nothing is lost, and nothing done twice", async () => {
    add(["a.slow.nsf", "b.nsf", "c.nsf", "d.nsf"]);
    const worker = fleet.worker("one", ["--lock", "30s", "--jobs", "2", "--until-empty"]);
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    server.down();
    await pause(5000);
    server.up();
    assert.equal(await worker.ended, 0, worker.output());
    assert.equal(fleet.status().tally.whole, 4);
    assert.equal(fleet.journal().filter(({ what }) => what === "placed").length, 4);
    assert.equal(fleet.journal().filter(({ what }) => what === "start").length, 4);
    assert.match(worker.output(), /could not be renewed|could not be told|does not answer/);
  });

  test("may be cut off without a word: what was exported is told by another connection", async () => {
    const between = await Between.start(server.port);
    const far = new Fleet(fleet.url.replace(`:${server.port}/`, `:${between.port}/`));
    try {
      // Commands that are waited for would hold up what stands between, which is in this process.
      add(["b.nsf", "a.slow.nsf"]);
      const worker = far.worker("one", ["--until-empty"]);
      await until("it exports", () => far.times("a.slow.nsf", "document 1") === 1);
      between.fallSilent();
      assert.equal(await worker.ended, 0, worker.output());
      assert.equal(fleet.status().tally.whole, 2);
      assert.equal(far.journal().filter(({ what }) => what === "start").length, 2);
    } finally {
      await far.end();
      between.end();
    }
  });

  test("being away for longer than the lock lasts stops the export", async () => {
    add(["a.slow.nsf"]);
    const worker = fleet.worker("one", fast, { FAKE_DOCUMENTS: "30" });
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    server.down();
    await until("it stopped", () => fleet.times("a.slow.nsf", "stopped") === 1);
    // The console tells the journal first, and ends after that.
    await until("it says so", () => worker.output().includes("away for longer than the lock"));
    server.up();
    await until("it is tried anew", () => fleet.times("a.slow.nsf", "start") === 2);
  });
});

describe("a full disk of the queue's server", () => {
  // What the server says when it has no room for what is written.
  function fill(): void {
    server.sql(
      `CREATE FUNCTION ${schema}.no_room() RETURNS trigger LANGUAGE plpgsql AS` +
        " 'BEGIN RAISE EXCEPTION USING ERRCODE = ''53100'', MESSAGE = ''no room''; END'",
    );
    server.sql(
      `CREATE TRIGGER full_disk BEFORE INSERT OR UPDATE ON ${schema}.job` +
        ` EXECUTE FUNCTION ${schema}.no_room()`,
    );
  }

  test("is told to who adds", () => {
    fill();
    const listing = fleet.list("list.csv", "Mill", ["a.nsf"]);
    const ran = fleet.run("add", listing, "--root", fleet.root);
    assert.equal(ran.code, 2);
    assert.match(ran.errors, /its disk is full/);
  });

  test("loses nothing: what was exported is told when there is room", async () => {
    add(["a.slow.nsf", "b.nsf"]);
    const worker = fleet.worker("one", ["--lock", "60s", "--until-empty"]);
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    fill();
    await until("it was placed", () => fleet.times("a.slow.nsf", "ready") === 1);
    await until("it says so", () => worker.output().includes("no room"));
    server.sql(`DROP TRIGGER full_disk ON ${schema}.job`);
    assert.equal(await worker.ended, 0, worker.output());
    assert.equal(fleet.status().tally.whole, 2);
    assert.equal(fleet.times("a.slow.nsf", "placed"), 1);
    assert.equal(fleet.times("a.slow.nsf", "start"), 1);
  });
});
