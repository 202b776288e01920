import assert from "node:assert/strict";
import { chmodSync, existsSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { afterEach, beforeEach, describe, test } from "node:test";
import { finishedIn, seenHere, setAside } from "../../src/export/place.js";
import { readIdentities } from "../../src/worker/identities.js";

let root: string;
let folder: string;

beforeEach(() => {
  root = mkdtempSync(join(tmpdir(), "larkspan-place-"));
  folder = join(root, "a.nsf");
});

afterEach(() => {
  rmSync(root, { recursive: true });
});

function write(outcome: object): void {
  mkdirSync(folder, { recursive: true });
  writeFileSync(join(folder, "outcome.json"), JSON.stringify(outcome));
}

const database = { server: "Mill", path: "a.nsf" };
const ended = { state: "ended", server: "MILL", path: "A.nsf", exitCode: 3 };

describe("a finished export", () => {
  test("is known by its outcome", async () => {
    write({ ...ended, account: { notes: { listed: 3, lost: 1 }, losses: [{}, {}] } });
    assert.deepEqual(await finishedIn(folder, database), {
      exitCode: 3,
      counts: { listed: 3, exported: 0, exportedWithLoss: 0, lost: 1 },
      losses: 2,
    });
  });

  for (const [why, outcome] of [
    ["is of another database", { ...ended, path: "b.nsf" }],
    ["is of another server", { ...ended, server: "Other" }],
    ["goes on", { ...ended, state: "running" }],
    ["is incomplete", { ...ended, exitCode: 5 }],
  ] as const)
    test(`is not one that ${why}`, async () => {
      write(outcome);
      assert.equal(await finishedIn(folder, database), undefined);
    });

  test("is not in a folder that is not there, or has no outcome", async () => {
    assert.equal(await finishedIn(folder, database), undefined);
    mkdirSync(folder);
    assert.equal(await finishedIn(folder, database), undefined);
    writeFileSync(join(folder, "outcome.json"), "{");
    assert.equal(await finishedIn(folder, database), undefined);
  });
});

describe("an old export", () => {
  test("is set aside once for one wish", async () => {
    write(ended);
    await setAside(folder, "0a1b2c3d");
    assert.ok(!existsSync(folder));
    assert.ok(existsSync(join(`${folder}.before-0a1b2c3d`, "outcome.json")));
    write({ ...ended, exitCode: 0 });
    await setAside(folder, "0a1b2c3d");
    assert.ok(existsSync(join(folder, "outcome.json")));
  });

  test("that is not there needs nothing", async () => {
    await setAside(folder, "0a1b2c3d");
    assert.ok(!existsSync(`${folder}.before-0a1b2c3d`));
  });
});

test("a path of a job is seen here under another name", () => {
  const maps = [
    { from: "Z:\\", to: "/" },
    { from: "\\\\store\\export", to: "E:\\export" },
  ];
  assert.equal(seenHere("z:\\tmp\\out\\a.nsf", maps), "/tmp/out/a.nsf");
  assert.equal(seenHere("Z:/tmp/out\\a.nsf", maps), "/tmp/out/a.nsf");
  assert.equal(seenHere("\\\\STORE\\export\\a.nsf", maps), "E:\\export\\a.nsf");
  assert.equal(seenHere("D:\\a.nsf", maps), "D:\\a.nsf");
});

describe("the identities of a machine", () => {
  const write_ = (text: string, mode: number) => {
    const file = join(root, "identities.json");
    writeFileSync(file, text);
    chmodSync(file, mode);
    return file;
  };
  const good = '{"migration": {"idFile": "C:\\\\m.id", "password": "x"}}';

  test("are read from a file that nobody else can read", () => {
    assert.deepEqual(readIdentities(write_(good, 0o600)).get("migration"), {
      idFile: "C:\\m.id",
      password: "x",
    });
  });

  test("may begin with a byte order mark", () => {
    assert.equal(readIdentities(write_(`\uFEFF${good}`, 0o600)).size, 1);
  });

  for (const mode of [0o640, 0o604, 0o666])
    test(`are refused with the mode ${mode.toString(8)}`, () => {
      assert.throws(() => readIdentities(write_(good, mode)), /others can read/);
    });

  for (const text of ["[]", "{", '{"a": 1}', '{"a": {"password": "x"}}'])
    test(`are refused as ${text}`, () => {
      assert.throws(() => readIdentities(write_(text, 0o600)), /no JSON object|no idFile/);
    });
});
