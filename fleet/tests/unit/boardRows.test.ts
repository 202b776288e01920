// Which rows the board shows, and how old they are.
import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { pageOfRows, parseQuery, rowsOfPage } from "../../src/board/rowQuery.js";
import { SnapshotSource } from "../../src/board/snapshot.js";
import type { ReadRows } from "../../src/board/snapshot.js";
import { emptyTally } from "../../src/report/account.js";
import type { AccountRow } from "../../src/report/account.js";
import { FakeClock, settle } from "../support/fakeClock.js";

function row(more: Partial<AccountRow>): AccountRow {
  const texts = {
    queue: "",
    machine: "",
    title: "",
    listing: "",
    root: "",
    reason: "",
    folder: "",
  };
  const numbers = { bytes: null, listed: null, exported: null, lost: null, losses: null };
  return {
    ...{ id: "d1", server: "Mill", path: "a.nsf", verdict: "waiting", attempts: 0, ...texts },
    ...{ attempt: "", worker: "", started: "", ended: "", seconds: null, phase: "", ...numbers },
    ...{ documents: null, documentsDone: 0, restarts: 0, ...more },
  };
}

const project = { servers: [], tally: emptyTally(), isPaused: false, drained: "" };

describe("a page of rows", () => {
  const paths = (rows: readonly AccountRow[], query: string) =>
    pageOfRows(rows, parseQuery(new URLSearchParams(query))).rows.map(({ path }) => path);

  test("has those that a filter lets through", () => {
    const rows = [
      row({ path: "a.nsf", title: "Orders of 2020", verdict: "failed", reason: "Disk is full" }),
      row({ path: "b.nsf", server: "Garden", worker: "EX-07" }),
      row({ path: "c.nsf", server: "", machine: "EX-01" }),
    ];
    assert.deepEqual(paths(rows, ""), ["a.nsf", "b.nsf", "c.nsf"]);
    assert.deepEqual(paths(rows, "verdict=failed"), ["a.nsf"]);
    assert.deepEqual(paths(rows, "verdict=toString"), ["a.nsf", "b.nsf", "c.nsf"]);
    assert.deepEqual(paths(rows, "server=Garden"), ["b.nsf"]);
    assert.deepEqual(paths(rows, "server=EX-01"), ["c.nsf"]);
    assert.deepEqual(paths(rows, "search=full ORDERS"), ["a.nsf"]);
    assert.deepEqual(paths(rows, "search=ex-07"), ["b.nsf"]);
    assert.deepEqual(paths(rows, "search=full ex-07"), []);
  });

  test("is one of many, and never more than there are", () => {
    const rows = Array.from({ length: rowsOfPage * 2 + 1 }, (_, index) =>
      row({ path: `${index}` }),
    );
    const page = (text: string) => pageOfRows(rows, parseQuery(new URLSearchParams(text)));
    assert.equal(page("page=1").rows.length, rowsOfPage);
    assert.deepEqual(
      page("page=3").rows.map(({ path }) => path),
      ["100"],
    );
    assert.deepEqual([page("page=9").page, page("page=9").pages, page("").found], [3, 3, 101]);
    for (const nonsense of ["0", "-1", "x", "1.5", "1e99"])
      assert.equal(page(`page=${nonsense}`).page, 1);
  });
});

describe("the rows that are shown", () => {
  function source(clock: FakeClock, read: ReadRows): SnapshotSource {
    return new SnapshotSource(read, clock);
  }

  test("begin with what runs and what failed, and with what is whole they end", async () => {
    const verdicts = ["whole", "waiting", "failed", "running", "losses"] as const;
    const { rows } = await source(new FakeClock(), (take) => {
      for (const verdict of verdicts) take(row({ verdict }));
      return Promise.resolve(project);
    }).read();
    assert.deepEqual(
      rows.map(({ verdict }) => verdict),
      ["running", "failed", "losses", "waiting", "whole"],
    );
  });

  test("are read once for all who look at a time, and later anew", async () => {
    const clock = new FakeClock();
    let readings = 0;
    const rows = source(clock, () => {
      ++readings;
      return Promise.resolve(project);
    });
    await Promise.all([rows.read(), rows.read(), rows.read()]);
    await rows.read();
    assert.equal(readings, 1);
    clock.jump(1000);
    await rows.read();
    assert.equal(readings, 2);
    rows.expire();
    await rows.read();
    assert.equal(readings, 3);
  });

  test("are read less often where a reading takes long", async () => {
    const clock = new FakeClock();
    let readings = 0;
    const rows = source(clock, () => {
      ++readings;
      clock.jump(2000);
      return Promise.resolve(project);
    });
    await rows.read();
    clock.jump(7999);
    await rows.read();
    assert.equal(readings, 1);
    clock.jump(1);
    await rows.read();
    assert.equal(readings, 2);
  });

  test("are read anew when something was changed while they were read", async () => {
    const clock = new FakeClock();
    let readings = 0;
    const rows = source(clock, () => {
      if (++readings === 1) rows.expire();
      return Promise.resolve(project);
    });
    await rows.read();
    await rows.read();
    assert.equal(readings, 2);
  });

  test("stay, with the reason, while the queue fails or does not answer", async () => {
    const clock = new FakeClock();
    const answers = [
      () => Promise.resolve(project),
      () => Promise.reject(new Error("it is away")),
      () => new Promise<never>(() => undefined),
    ];
    const rows = source(clock, (take) => {
      take(row({}));
      return (answers.shift() ?? answers[0] ?? (() => Promise.resolve(project)))();
    });
    assert.equal((await rows.read()).failure, "");
    clock.jump(60_000);
    const failed = await rows.read();
    assert.deepEqual([failed.rows.length, failed.failure], [1, "it is away"]);
    const silent = rows.read();
    await settle();
    await clock.advance(10_000);
    assert.match((await silent).failure, /no answer within 10 s/);
  });
});
