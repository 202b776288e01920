// With the real console and exporter, as Windows programs, and the stand-in library.
import assert from "node:assert/strict";
import { existsSync, mkdirSync, readdirSync, renameSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { before, describe, test } from "node:test";
import { eachTestHas } from "../support/bed.js";
import { Fleet, until } from "../support/fleet.js";
import type { StartedWorker } from "../support/fleet.js";
import { repository, windowsPrograms } from "../support/paths.js";
import { samples, slowIni } from "../support/samples.js";
import type { TestServer } from "../support/postgres.js";
import { windowsPath } from "../support/windowsNode.js";

let schema: string;
let server: TestServer;
let fleet: Fleet;

eachTestHas((bed) => {
  ({ schema, server, fleet } = bed);
});

before(() => {
  assert.ok(
    existsSync(join(windowsPrograms, "larkspan-console.exe")),
    `no Windows programs in ${windowsPrograms}: scripts/build mingw-x64 makes them`,
  );
});

function add(
  server_: string,
  paths: readonly string[],
  ini = join(samples, "notes.ini"),
  ...more: string[]
): void {
  const listing = fleet.list("list.csv", server_, paths);
  const words = [
    "--root",
    windowsPath(fleet.root),
    "--notes-ini",
    windowsPath(ini),
    "--machine",
    "one",
  ];
  fleet.do("add", listing, ...words, ...more);
}

function worker(name: string, ...words: string[]): StartedWorker {
  return fleet.worker(name, [
    "--console",
    join(repository, "scripts", "run-windows"),
    "--console-argument",
    join(windowsPrograms, "larkspan-console.exe"),
    "--see",
    "Z:\\=/",
    ...words,
  ]);
}

function folders(below: string): string[] {
  const folder = join(fleet.root, below);
  return existsSync(folder) ? readdirSync(folder).sort() : [];
}

describe("the real console", () => {
  test("exports whole, with losses, and fails for good", async () => {
    add("", ["sample.nsf", "damaged.nsf", "locked.nsf", "none.nsf"]);
    const one = worker("one", "--jobs", "2", "--until-empty");
    assert.equal(await one.ended, 0, one.output());
    const verdicts = fleet.status().jobs.map(({ path, verdict, attempts, losses }) => ({
      path,
      verdict,
      attempts,
      losses,
    }));
    verdicts.sort((one_, other) => (one_.path < other.path ? -1 : 1));
    assert.deepEqual(verdicts, [
      { path: "damaged.nsf", verdict: "losses", attempts: 1, losses: 15 },
      { path: "locked.nsf", verdict: "failed", attempts: 1, losses: null },
      { path: "none.nsf", verdict: "failed", attempts: 1, losses: null },
      { path: "sample.nsf", verdict: "whole", attempts: 1, losses: 0 },
    ]);
    assert.match(fleet.job("locked.nsf").reason, /not authorized/);
    assert.ok(existsSync(join(fleet.root, "local@one", "sample.nsf", "outcome.json")));
  });

  test("works with the identity of its machine, whose password stands nowhere", async () => {
    const identities = join(fleet.folder, "identities.json");
    const password = "p\u00E2querette";
    const idFile = windowsPath(join(samples, "ids", "no\u00E9.id"));
    writeFileSync(identities, JSON.stringify({ noe: { idFile, password } }), { mode: 0o600 });
    add("", ["sealed.nsf"], undefined, "--identity", "noe");
    const one = worker("one", "--identities", identities, "--until-empty");
    assert.equal(await one.ended, 0, one.output());
    const job = fleet.job("sealed.nsf");
    assert.ok(job.verdict === "whole" || job.verdict === "losses", one.output());
    assert.doesNotMatch(JSON.stringify(fleet.status()) + one.output(), /querette/);
  });

  test("goes back with a wrong password, uncounted, and the machine rests", async () => {
    const identities = join(fleet.folder, "identities.json");
    const idFile = windowsPath(join(samples, "ids", "imke.id"));
    writeFileSync(identities, JSON.stringify({ imke: { idFile, password: "x" } }), { mode: 0o600 });
    add("", ["sealed.nsf"], undefined, "--identity", "imke");
    const one = worker("one", "--identities", identities);
    await until("it went back", () => fleet.status().tally.retrying === 1);
    assert.equal(fleet.job("sealed.nsf").attempts, 0);
    await until("it says so", () => one.output().includes("this machine cannot export"));
  });

  test("stops when its worker is killed, and another one does it once", async () => {
    mkdirSync(join(fleet.root, "Garden"), { recursive: true });
    add("Garden", ["bulbs.nsf"], slowIni(fleet));
    const one = worker("one", "--lock", "6s");
    await until("it exports", () => fleet.job("bulbs.nsf").phase === "documents");
    one.process.kill("SIGKILL");
    const two = worker("two", "--lock", "6s", "--until-empty");
    assert.equal(await two.ended, 0, two.output());
    const job = fleet.job("bulbs.nsf");
    assert.deepEqual([job.verdict, job.worker], ["whole", "two"]);
    assert.deepEqual(
      folders("Garden").filter((name) => !name.includes(".attempt-")),
      ["bulbs.nsf"],
    );
  });

  test("stops within seconds when its job is cancelled", async () => {
    add("", ["sample.nsf"], slowIni(fleet));
    worker("one");
    await until("it exports", () => fleet.job("sample.nsf").phase === "documents");
    fleet.do("cancel", fleet.job("sample.nsf").id);
    await until("it is cancelled", () => fleet.status().open === 0);
    assert.equal(fleet.job("sample.nsf").verdict, "cancelled");
    assert.deepEqual(folders("local@one"), ["sample.nsf.attempt-1"]);
  });

  test("exports once more when told so, and the old folder is kept", async () => {
    add("", ["sample.nsf"]);
    assert.equal(await worker("one", "--until-empty").ended, 0);
    fleet.do("retry", "--again", fleet.job("sample.nsf").id);
    const again = worker("one", "--until-empty");
    assert.equal(await again.ended, 0, again.output());
    const [first, second = ""] = folders("local@one");
    assert.equal(first, "sample.nsf");
    assert.match(second, /^sample\.nsf\.before-[0-9a-f]{8}$/);
    assert.equal(fleet.job("sample.nsf").verdict, "whole");
  });

  test("that finds its folder placed by another worker is done", async () => {
    add("", ["sample.nsf"], slowIni(fleet));
    const one = worker("one", "--until-empty");
    await until("it exports", () => fleet.job("sample.nsf").phase === "documents");
    // Another one was faster.
    const other = new Fleet(`${server.url}?schema=${schema}other`);
    try {
      other.do("init");
      const listing = other.list("list.csv", "", ["sample.nsf"]);
      const ini = windowsPath(join(samples, "notes.ini"));
      const words = ["--root", windowsPath(other.root), "--notes-ini", ini, "--machine", "one"];
      other.do("add", listing, ...words);
      const console = join(windowsPrograms, "larkspan-console.exe");
      const run = ["--console", join(repository, "scripts", "run-windows")];
      const two = other.worker("one", [...run, "--console-argument", console, "--until-empty"]);
      assert.equal(await two.ended, 0, two.output());
      renameSync(
        join(other.root, "local@one", "sample.nsf"),
        join(fleet.root, "local@one", "sample.nsf"),
      );
    } finally {
      await other.end();
    }
    assert.equal(await one.ended, 0, one.output());
    assert.match(one.output(), /another worker placed it/);
    assert.equal(fleet.job("sample.nsf").verdict, "whole");
    assert.deepEqual(folders("local@one"), ["sample.nsf", "sample.nsf.attempt-1"]);
  });
});
