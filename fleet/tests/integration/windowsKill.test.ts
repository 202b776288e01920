// Workers that run the real console are killed in every phase of an export. Whatever the phase: the
// console and all that it started end, another worker exports the database once, and nothing but
// attempts lies beside it.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import {
  copyFileSync,
  existsSync,
  mkdirSync,
  readdirSync,
  readFileSync,
  writeFileSync,
} from "node:fs";
import { basename, join } from "node:path";
import { after, before, test } from "node:test";
import { Fleet, pause, until } from "../support/fleet.js";
import { repository, windowsPrograms } from "../support/paths.js";
import { TestServer } from "../support/postgres.js";

const seeds = 20;
const phases = [
  "starting",
  "opening",
  "properties",
  "views",
  "scanning",
  "documents",
  "checking",
  "ready",
];

let server: TestServer;
let fleet: Fleet;

before(async () => {
  server = await TestServer.start();
  fleet = new Fleet(`${server.url}?schema=killed`);
  fleet.do("init");
});

after(async () => {
  await fleet.end();
  server.remove();
});

function windows(path: string): string {
  return `Z:${path.replaceAll("/", "\\")}`;
}

// A library with a database for each seed, in which every phase takes some time.
function makeLibrary(paths: readonly string[]): string {
  const samples = join(repository, "standin", "samples");
  const data = join(fleet.folder, "data");
  mkdirSync(data);
  for (const path of paths) copyFileSync(join(samples, "sample.nsf"), join(data, path));
  const waits = [
    ["NotesInitExtended", 200],
    ["NSFDbOpen", 200],
    ["NSFDbOpenExtended", 200],
    ["NSFSearchExtended3", 200],
    ["DXLExportNote", 20],
  ].map(([entry, wait]) => ({ entry, wait }));
  writeFileSync(join(fleet.folder, "waits.json"), JSON.stringify(waits));
  const ini = join(fleet.folder, "notes.ini");
  const lines = [
    "[Notes]",
    `Directory=${windows(data)}`,
    `KeyFilename=${windows(join(samples, "ids", "tester.id"))}`,
    `StandinFaults=${windows(join(fleet.folder, "waits.json"))}`,
  ];
  writeFileSync(ini, `${lines.join("\n")}\n`);
  return ini;
}

// What its consoles tell stands in the file as well.
function worker(events: string, ...words: string[]) {
  const script = `exec "$0" "$@" > >(tee -a '${events}')`;
  const programs = [
    join(repository, "scripts", "run-windows"),
    join(windowsPrograms, "larkspan-console.exe"),
  ];
  return fleet.worker("one", [
    ...["--console", "bash", "--see", "Z:\\=/", "--lock", "6s"],
    ...["-c", script, ...programs].flatMap((word) => ["--console-argument", word]),
    ...words,
  ]);
}

function toldIn(events: string): string {
  return existsSync(events) ? readFileSync(events, "utf8") : "";
}

async function killIn(phase: string, seed: number): Promise<void> {
  const events = join(fleet.folder, `events-${seed}`);
  const started = worker(events);
  const sign = phase === "ready" ? '"kind":"ready"' : `"phase":"${phase}"`;
  await until(`${phase}: ${started.output()}`, () => toldIn(events).includes(sign));
  if (phase !== "ready") assert.ok(consolesAtWork().length > 0, "it is at work");
  // Not always at its beginning.
  await pause((seed * 7919) % 200);
  started.process.kill("SIGKILL");
  await started.ended;
}

// Their command lines name folders as Windows does.
function consolesAtWork(): string[] {
  const all = execFileSync("ps", ["-eo", "args"], { encoding: "utf8" }).split("\n");
  return all.filter(
    (line) => /larkspan[^ ]*\.exe/.test(line) && line.includes(basename(fleet.folder)),
  );
}

function check(path: string): void {
  const outcome = join(fleet.root, "local@one", path, "outcome.json");
  const {
    state,
    exitCode,
    path: of,
  } = JSON.parse(readFileSync(outcome, "utf8")) as {
    state: string;
    exitCode: number;
    path: string;
  };
  assert.deepEqual([state, exitCode, of], ["ended", 0, path]);
}

test("workers killed in each phase lose nothing, and leave nothing at work", async () => {
  const paths = Array.from({ length: seeds }, (_, seed) => `db${seed}.nsf`);
  const ini = makeLibrary(paths);
  const listing = fleet.list("list.csv", "", paths);
  const words = ["--root", windows(fleet.root), "--notes-ini", windows(ini), "--machine", "one"];
  fleet.do("add", listing, ...words, "--limit", "30");
  for (let seed = 0; seed < seeds; ++seed) await killIn(phases[seed % phases.length] ?? "", seed);
  await until("the consoles of dead workers end", () => consolesAtWork().length === 0);
  const last = worker(join(fleet.folder, "events-last"), "--jobs", "2", "--until-empty");
  assert.equal(await last.ended, 0, last.output());
  const { tally, databases } = fleet.status();
  assert.deepEqual([tally.whole, databases], [seeds, seeds], last.output());
  for (const path of paths) check(path);
  const others = readdirSync(join(fleet.root, "local@one")).filter((name) => !paths.includes(name));
  for (const name of others) assert.match(name, /^db\d+\.nsf\.attempt-\d+$/);
});
