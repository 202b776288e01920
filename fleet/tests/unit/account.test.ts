// What the account makes of jobs into which somebody wrote what does not belong there.
import assert from "node:assert/strict";
import { mkdtempSync, readdirSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { afterEach, beforeEach, describe, test } from "node:test";
import { accountRow } from "../../src/report/account.js";
import type { AccountRow } from "../../src/report/account.js";
import { CsvReport } from "../../src/report/csvReport.js";
import { HtmlReport } from "../../src/report/htmlReport.js";
import { writeReports } from "../../src/report/report.js";
import type { JobRow, RowState } from "../../src/store/backend.js";

const evil = "<script>evil=1</script>";

// As the queue's server hands it over: JSON of any kind.
function job(state: RowState, json: object): JobRow {
  const times = { addedAt: 0, startedAt: 9e18, endedAt: -9e18 };
  const rest = { failedReason: evil, attemptsMade: 1, stalls: 0, ...times };
  const fields = { data: {}, progress: null, result: null, ...json };
  return { id: "d1", state, ...rest, ...fields } as unknown as JobRow;
}

const numbers = { listed: evil, exported: [evil], exportedWithLoss: {}, lost: evil };
const texts = { root: "D:\\out", server: 1, machine: {}, path: null, title: [evil], folder: 7 };
const state = { machine: 1, phase: [evil], documents: evil, documentsDone: evil, restarts: evil };

const jobs: JobRow[] = [
  job("completed", { data: null, result: evil, progress: 5 }),
  job("completed", {
    data: { ...texts, bytes: evil, listing: 3 },
    result: { verdict: `../../${evil}`, counts: numbers, losses: evil, seconds: evil },
  }),
  job("completed", {
    data: { root: "D:\\out", server: evil, path: evil, title: evil, folder: "..\\..\\secret" },
    result: { verdict: "whole", counts: { lost: Infinity }, attempt: "\\\\evil\\share" },
  }),
  job("running", { data: texts, progress: { ...state, lost: evil, attempt: [1], reason: {} } }),
  job("delayed", { data: [], progress: { reason: { toWellFormed: 1 } } }),
  job("failed", { data: { ...texts, cancel: evil } }),
  job("failed", { data: { ...texts, cancel: { by: [evil] } } }),
  job("waiting", { data: "none" }),
];

test("a try that lost its worker counts as one, until it is forgiven", () => {
  const tries = (stalls: number, data: object) =>
    accountRow({ ...job("running", { data }), stalls }, "q").attempts;
  assert.equal(tries(0, {}), 1);
  assert.equal(tries(2, {}), 3);
  assert.equal(tries(2, { stallsForgiven: 2 }), 1);
  assert.equal(tries(3, { stallsForgiven: 2 }), 2);
  assert.equal(tries(1, { stallsForgiven: 9 }), 1);
  assert.equal(tries(1, { stallsForgiven: evil }), 2);
});

let folder: string;

beforeEach(() => {
  folder = mkdtempSync(join(tmpdir(), "larkspan-account-"));
});

afterEach(() => {
  rmSync(folder, { recursive: true });
});

test("two reports that are made for one name at a time disturb each other in nothing", async () => {
  const page = join(folder, "report.html");
  const rowOf = (path: string) => accountRow(job("failed", { data: { path } }), "q");
  const [one, other] = [new HtmlReport(page, []), new HtmlReport(page, [])];
  // Of each more than is held back.
  for (let number = 0; number < 500; ++number) {
    await one.take(rowOf(`one${number}`));
    await other.take(rowOf(`other${number}`));
  }
  const pages: string[] = [];
  for (const report of [one, other]) {
    await report.finish();
    await report.place();
    await report.discard();
    pages.push(readFileSync(page, "utf8"));
  }
  const rowsOf = (text = "") => [...text.matchAll(/<bdi>(one|other)(\d+) of /g)];
  for (const [index, name] of ["one", "other"].entries()) {
    const rows = rowsOf(pages[index]);
    assert.equal(rows.length, 500);
    assert.ok(rows.every(([, of]) => of === name));
  }
  assert.deepEqual(readdirSync(folder), ["report.html"]);
});

describe("a job into which somebody wrote anything", () => {
  test("is a row of texts and finite numbers", () => {
    const numbersOfRow =
      /^(?:bytes|attempts|listed|exported|lost|losses|seconds|documents.*|restarts)$/;
    for (const row of jobs.map((one) => accountRow(one, "q")))
      for (const [name, value] of Object.entries(row) as [keyof AccountRow, unknown][])
        if (numbersOfRow.test(name)) assert.ok(value === null || Number.isFinite(value), name);
        else assert.equal(typeof value, "string", name);
  });

  test("has a verdict, which is not whole unless it says so", () => {
    const verdicts = jobs.map((one) => accountRow(one, "q").verdict);
    assert.deepEqual(verdicts, [
      ...["losses", "losses", "whole", "running", "retrying", "cancelled", "cancelled"],
      "waiting",
    ]);
  });

  test("puts nothing into the page, and no file and no link anywhere else", async () => {
    const page = join(folder, "report.html");
    const reports = [new HtmlReport(page, []), new CsvReport(join(folder, "report.csv"))];
    async function* rows() {
      for (const one of jobs) yield await Promise.resolve(accountRow(one, "q"));
    }
    const tally = await writeReports(reports, rows());
    assert.equal(tally.losses, 2);
    assert.deepEqual(readdirSync(folder).sort(), ["report.csv", "report.html"]);
    const text = readFileSync(page, "utf8");
    assert.ok(text.includes("&lt;script&gt;evil"));
    assert.ok(!text.includes("<script>evil"));
    assert.doesNotMatch(text, /href="(?!data:,)/);
  });
});
