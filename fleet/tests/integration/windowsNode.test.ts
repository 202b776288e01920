// The program as it runs on a Windows machine: with Windows' own Node, the real console and exporter
// as Windows programs, and the stand-in library. Nothing of it is Linux but the queue's server.
import assert from "node:assert/strict";
import { existsSync, readdirSync, readFileSync, statSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { before, describe, test } from "node:test";
import { loginLine } from "../../src/board/logins.js";
import { parseCsv } from "../../src/listing/csv.js";
import { eachTestHas } from "../support/bed.js";
import { pause, until } from "../support/fleet.js";
import type { Fleet } from "../support/fleet.js";
import { windowsPrograms } from "../support/paths.js";
import { samples, slowIni } from "../support/samples.js";
import { onWindows, windowsNode, windowsPath } from "../support/windowsNode.js";
import type { WindowsRun } from "../support/windowsNode.js";

let fleet: Fleet;

before(() => {
  assert.ok(existsSync(windowsNode), "no Node for Windows: scripts/setup fetches it");
});

eachTestHas((bed) => {
  ({ fleet } = bed);
});

async function done(run: WindowsRun, code = 0): Promise<string> {
  assert.equal(await run.ended, code, run.output());
  return run.output();
}

function add(paths: readonly string[], ini = join(samples, "notes.ini")): Promise<string> {
  const listing = windowsPath(fleet.list("list.csv", "", paths));
  const words = ["--root", windowsPath(fleet.root), "--notes-ini", windowsPath(ini)];
  return done(onWindows(fleet, "add", listing, ...words, "--machine", "one"));
}

function worker(name: string, ...words: string[]): WindowsRun {
  const console = windowsPath(join(windowsPrograms, "larkspan-console.exe"));
  return onWindows(fleet, "worker", "--name", name, "--console", console, ...words);
}

describe("with Windows' Node", () => {
  test("the program tells its commands, and of a fault", async () => {
    assert.match(await done(onWindows(fleet, "--help")), /Usage: larkspan-fleet/);
    assert.match(await done(onWindows(fleet, "frobnicate"), 1), /unknown command/);
  });

  test("the file of logins stays the one that it was, with its access list", async () => {
    const file = join(fleet.folder, "logins");
    const lines = [await loginLine("anna", "one password"), await loginLine("bert", "another one")];
    writeFileSync(file, lines.map((line) => `${line}\n`).join(""), { mode: 0o600 });
    const { ino } = statSync(file);
    const words = ["--password-file", windowsPath(file), "--remove"];
    assert.match(await done(onWindows(fleet, "login", "anna", ...words)), /let in no more/);
    assert.equal(statSync(file).ino, ino);
    assert.equal(readFileSync(file, "utf8"), `${lines[1] ?? ""}\n`);
  });

  test("a project comes from its list to its account", async () => {
    assert.match(await done(onWindows(fleet, "init")), /is ready/);
    assert.match(await add(["sample.nsf", "damaged.nsf", "locked.nsf"]), /3 of 3/);
    await done(worker("one", "--jobs", "2", "--until-empty"));
    const [csv, page] = [join(fleet.folder, "r.csv"), join(fleet.folder, "r.html")];
    const files = ["--csv", windowsPath(csv), "--html", windowsPath(page)];
    await done(onWindows(fleet, "report", ...files), 5);
    const [titles = [], ...rows] = parseCsv(readFileSync(csv, "utf8").slice(1));
    const told = rows.map((row) => ["path", "verdict"].map((name) => row[titles.indexOf(name)]));
    assert.deepEqual(told.sort(), [
      ["damaged.nsf", "losses"],
      ["locked.nsf", "failed"],
      ["sample.nsf", "whole"],
    ]);
    const links = [...readFileSync(page, "utf8").matchAll(/href="(out[^"]*)"/g)];
    assert.deepEqual(links.map(([, link]) => link).sort(), [
      "out/local%40one/damaged.nsf",
      "out/local%40one/damaged.nsf/outcome.json",
      "out/local%40one/locked.nsf.attempt-1",
      "out/local%40one/sample.nsf",
    ]);
  });

  test("a worker that is killed takes its export with it, and another one does it", async () => {
    await add(["sample.nsf"], slowIni(fleet));
    const one = worker("one", "--lock", "6s");
    await until("it exports", () => fleet.job("sample.nsf").phase === "documents");
    one.process.kill("SIGKILL");
    await one.ended;
    const attempt = join(fleet.root, "local@one", "sample.nsf.attempt-1");
    // A note takes a fifth of a second.
    await pause(2000);
    const written = readdirSync(attempt, { recursive: true }).length;
    await done(worker("one", "--lock", "6s", "--until-empty"));
    assert.equal(fleet.job("sample.nsf").verdict, "whole");
    assert.equal(readdirSync(attempt, { recursive: true }).length, written);
    assert.deepEqual(readdirSync(join(fleet.root, "local@one")).sort(), [
      "sample.nsf",
      "sample.nsf.attempt-1",
    ]);
  });

  test("a cancelled export stops within seconds", async () => {
    await add(["sample.nsf"], slowIni(fleet));
    const one = worker("one");
    await until("it exports", () => fleet.job("sample.nsf").phase === "documents");
    await done(onWindows(fleet, "cancel", fleet.job("sample.nsf").id));
    await until("it is cancelled", () => fleet.status().open === 0);
    assert.equal(fleet.job("sample.nsf").verdict, "cancelled");
    await done(onWindows(fleet, "drain"));
    await done(one);
  });
});
