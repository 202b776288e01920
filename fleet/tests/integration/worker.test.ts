// Workers as processes, a real PostgreSQL, and a console that does as its database's name says.
import assert from "node:assert/strict";
import { closeSync, existsSync, mkdirSync, openSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { describe, test } from "node:test";
import { eachTestHas } from "../support/bed.js";
import { pause, until } from "../support/fleet.js";
import type { Fleet } from "../support/fleet.js";

let fleet: Fleet;

eachTestHas((bed) => {
  ({ fleet } = bed);
});

function add(paths: readonly string[], ...words: string[]): void {
  const listing = fleet.list("list.csv", "Mill/Example", paths);
  fleet.do("add", listing, "--root", fleet.root, ...words);
}

function folderOf(path: string): string {
  return join(fleet.root, "Mill_Example", path);
}

describe("a worker", () => {
  test("exports what is listed, and says what came of it", async () => {
    add(["a.nsf", "b.losses.nsf", "c.gone.nsf", "d.locked.nsf", "sub\\e.nsf"]);
    const worker = fleet.worker("one", ["--jobs", "3", "--until-empty"]);
    assert.equal(await worker.ended, 0, worker.output());
    const { tally } = fleet.status();
    assert.deepEqual(
      { whole: tally.whole, losses: tally.losses, failed: tally.failed },
      { whole: 2, losses: 1, failed: 2 },
    );
    assert.ok(existsSync(join(folderOf("a.nsf"), "outcome.json")));
    assert.ok(existsSync(join(fleet.root, "Mill_Example", "sub", "e.nsf", "outcome.json")));
    assert.match(fleet.job("c.gone.nsf").reason, /File does not exist/);
    assert.equal(fleet.times("c.gone.nsf", "start"), 1);
  });

  test("keeps what it says in a log, behind what is there", async () => {
    add(["a.nsf"]);
    const log = join(fleet.folder, "worker.log");
    writeFileSync(log, "earlier\n");
    const worker = fleet.worker("one", ["--log", log, "--until-empty"]);
    assert.equal(await worker.ended, 0, worker.output());
    assert.equal(readFileSync(log, "utf8"), `earlier\n${worker.output()}`);
    assert.match(worker.output(), /a\.nsf: whole/);
    const ran = fleet.run("worker", "--log", join(fleet.folder, "none", "worker.log"));
    assert.equal(ran.code, 2);
    assert.match(ran.errors, /the log cannot be written/);
  });

  test("keeps in its log why it could not begin", () => {
    const log = join(fleet.folder, "worker.log");
    const reasons: [string[], number, RegExp][] = [
      [["--identities", "none.json"], 2, /Z ended: the identities 'none\.json' cannot be read/],
      [["--hopeless", "("], 1, /Z ended: '\(' is no pattern/],
      [["--url", `${fleet.url}none`], 2, /Z ended: .*it is not prepared: call 'init' first/],
    ];
    for (const [words, code, reason] of reasons) {
      const ran = fleet.run("worker", "--log", log, ...words);
      assert.equal(ran.code, code, ran.errors);
      assert.match(readFileSync(log, "utf8").trim().split("\n").at(-1) ?? "", reason);
    }
  });

  test("goes on where nobody can read what it says", async () => {
    add(["a.nsf", "b.nsf"]);
    const full = openSync("/dev/full", "w");
    const worker = fleet.worker("one", ["--until-empty"], {}, full);
    closeSync(full);
    assert.equal(await worker.ended, 0);
    assert.equal(fleet.status().tally.whole, 2);
  });

  test("goes on when its reader goes away", async () => {
    add(["a.slow.nsf", "b.nsf"]);
    const worker = fleet.worker("one", ["--until-empty"]);
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    worker.process.stdout?.destroy();
    worker.process.stderr?.destroy();
    assert.equal(await worker.ended, 0);
    assert.equal(fleet.status().tally.whole, 2);
  });

  test("tries what is incomplete again, so often as told", async () => {
    add(["a.incomplete-once.nsf", "b.incomplete.nsf"], "--attempts", "2");
    const worker = fleet.worker("one", ["--jobs", "2"]);
    await until("the first tries are over", () => fleet.status().tally.retrying === 2);
    assert.equal(fleet.times("b.incomplete.nsf", "start"), 1);
    await until("all is final", () => fleet.status().open === 0);
    assert.equal(fleet.job("a.incomplete-once.nsf").verdict, "whole");
    assert.equal(fleet.job("b.incomplete.nsf").verdict, "failed");
    assert.equal(fleet.times("b.incomplete.nsf", "start"), 2);
    worker.process.kill("SIGTERM");
  });

  test("that is asked to end stops its exports and gives them back uncounted", async () => {
    add(["a.slow.nsf"]);
    const worker = fleet.worker("one");
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    worker.process.kill("SIGTERM");
    assert.equal(await worker.ended, 4, worker.output());
    const job = fleet.job("a.slow.nsf");
    assert.deepEqual([job.verdict, job.attempts], ["waiting", 0]);
    assert.equal(fleet.times("a.slow.nsf", "stopped"), 1);
  });

  test("ends by force a console that does not notice the end of its input", async () => {
    add(["a.slow.deaf.nsf"]);
    const worker = fleet.worker("one", ["--stop-on-stdin-end"]);
    await until("it exports", () => fleet.times("a.slow.deaf.nsf", "document 1") === 1);
    worker.process.stdin?.end();
    const begun = Date.now();
    assert.equal(await worker.ended, 4, worker.output());
    assert.ok(Date.now() - begun < 6000);
    assert.equal(fleet.times("a.slow.deaf.nsf", "ready"), 0);
    assert.equal(fleet.job("a.slow.deaf.nsf").verdict, "waiting");
  });

  test("waits with a database whose server cannot be reached, uncounted", async () => {
    add(["smaller.nsf", "a.away.nsf"]);
    fleet.worker("one");
    await until("it was tried", () => fleet.status().tally.retrying === 1);
    const { attempts, reason } = fleet.job("a.away.nsf");
    assert.equal(attempts, 0);
    assert.match(reason, /Server cannot be reached/);
    // Other servers go on, and this one is left alone for a while.
    fleet.do("add", fleet.list("other.csv", "Other", ["b.nsf"]), "--root", fleet.root);
    await until("the other is whole", () => fleet.job("b.nsf").verdict === "whole");
    assert.equal(fleet.job("smaller.nsf").verdict, "waiting");
  });

  test("gives back a job whose identity its machine does not have", async () => {
    add(["smaller.nsf", "a.nsf"], "--identity", "migration");
    const worker = fleet.worker("one");
    await until("it gave the job back", () => fleet.status().tally.retrying === 1);
    await until("it says why", () => worker.output().includes("no identity 'migration'"));
    // The machine rests.
    await pause(3000);
    assert.equal(fleet.job("smaller.nsf").verdict, "waiting");
    const { attempts, reason } = fleet.job("a.nsf");
    assert.equal(attempts, 0);
    assert.match(reason, /no identity 'migration'/);
  });
});

test("a machine's own databases are done by that machine alone, in any letter case", async () => {
  const listing = fleet.list("list.csv", "", ["a.nsf"]);
  fleet.do("add", listing, "--root", fleet.root, "--machine", "ex-07");
  assert.equal(await fleet.worker("EX-08", ["--until-empty"]).ended, 0);
  assert.equal(fleet.job("a.nsf").verdict, "waiting");
  assert.equal(await fleet.worker("EX-07", ["--until-empty"]).ended, 0);
  assert.equal(fleet.job("a.nsf").verdict, "whole");
});

describe("a person", () => {
  test("cancels a job that runs, within seconds and for good", async () => {
    add(["a.slow.nsf"]);
    fleet.worker("one", [], { FAKE_DOCUMENTS: "30" });
    await until("it exports", () => fleet.times("a.slow.nsf", "document 1") === 1);
    const begun = Date.now();
    fleet.do("cancel", fleet.job("a.slow.nsf").id);
    await until("it stopped", () => fleet.times("a.slow.nsf", "stopped") === 1);
    assert.ok(Date.now() - begun < 8000);
    await until("it is final", () => fleet.status().open === 0);
    const job = fleet.job("a.slow.nsf");
    assert.equal(job.verdict, "cancelled");
    assert.match(job.reason, /^cancelled by /);
  });

  test("cancels a job that waits, takes it back, and cancels again", async () => {
    add(["a.nsf"]);
    const { id } = fleet.job("a.nsf");
    fleet.do("cancel", id);
    assert.equal(fleet.job("a.nsf").verdict, "cancelled");
    fleet.do("retry", id);
    assert.equal(fleet.job("a.nsf").verdict, "waiting");
    fleet.do("cancel", id);
    const worker = fleet.worker("one", ["--until-empty"]);
    assert.equal(await worker.ended, 0, worker.output());
    assert.equal(fleet.times("a.nsf", "start"), 0);
    assert.equal(fleet.job("a.nsf").verdict, "cancelled");
  });

  test("has a failed job tried again, and a placed one only when told so", async () => {
    add(["a.nsf", "b.gone.nsf", "c.nsf"]);
    fleet.do("cancel", fleet.job("c.nsf").id);
    assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
    assert.match(fleet.do("retry", "--failed"), /1 jobs/);
    const { id } = fleet.job("a.nsf");
    const refused = fleet.run("retry", id);
    assert.equal(refused.code, 2);
    assert.match(refused.errors, /--again/);
    fleet.do("retry", "--again", id);
    assert.equal(await fleet.worker("two", ["--until-empty"]).ended, 0);
    assert.equal(fleet.times("b.gone.nsf", "start"), 2);
    assert.equal(fleet.times("a.nsf", "placed"), 2);
    assert.equal(fleet.job("a.nsf").verdict, "whole");
    assert.equal(fleet.job("c.nsf").verdict, "cancelled");
  });

  test("pauses, resumes and drains", async () => {
    add(["a.slow.nsf", "b.slow.nsf"]);
    fleet.do("pause");
    const worker = fleet.worker("one");
    await pause(2500);
    assert.equal(fleet.journal().length, 0);
    fleet.do("resume");
    await until("it exports", () => fleet.journal().length > 0);
    fleet.do("drain");
    assert.equal(await worker.ended, 0, worker.output());
    const { tally } = fleet.status();
    assert.deepEqual([tally.whole, tally.waiting], [1, 1]);
  });
});

test("a pause holds servers that come later, and ends for one of them alone", async () => {
  add(["a.nsf"]);
  fleet.do("pause");
  fleet.do("add", fleet.list("later.csv", "Later", ["b.nsf"]), "--root", fleet.root);
  fleet.worker("one");
  await pause(2500);
  assert.equal(fleet.journal().length, 0);
  fleet.do("resume", "--server", "Mill/Example");
  await until("it is whole", () => fleet.job("a.nsf").verdict === "whole");
  assert.equal(fleet.job("b.nsf").verdict, "waiting");
  fleet.do("resume");
  await until("the other is whole", () => fleet.job("b.nsf").verdict === "whole");
});

test("the largest database is taken first", async () => {
  add(["small.nsf", "middle.nsf", "large.nsf"]);
  assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
  const begun = fleet.journal().filter(({ what }) => what === "start");
  assert.deepEqual(
    begun.map(({ path }) => path),
    ["large.nsf", "middle.nsf", "small.nsf"],
  );
});

test("no more exports than the limit run at once against one server", async () => {
  const paths = Array.from({ length: 12 }, (_, index) => `db${index}.nsf`);
  add(paths, "--limit", "3");
  const workers = ["one", "two", "three"].map((name) =>
    fleet.worker(name, ["--jobs", "4", "--until-empty"], { FAKE_STEP: "100" }),
  );
  for (const worker of workers) assert.equal(await worker.ended, 0, worker.output());
  let atOnce = 0;
  let most = 0;
  for (const { what } of fleet.journal()) {
    if (what === "start") most = Math.max(most, ++atOnce);
    if (what.startsWith("end")) --atOnce;
  }
  assert.equal(most, 3);
  assert.equal(fleet.status().tally.whole, paths.length);
});

test("a folder that holds something else fails the job and is left alone", async () => {
  add(["a.nsf"]);
  mkdirSync(folderOf("a.nsf"), { recursive: true });
  writeFileSync(join(folderOf("a.nsf"), "letter.txt"), "mine");
  assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
  assert.equal(fleet.job("a.nsf").verdict, "failed");
  assert.match(fleet.job("a.nsf").reason, /holds something/);
  assert.ok(existsSync(join(folderOf("a.nsf"), "letter.txt")));
});
