// The same by another URL.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { systemClock } from "../../src/base/time.js";
import { startConsole } from "../../src/export/consoleProcess.js";
import { defaultWords } from "../../src/export/ending.js";
import { parseAddress } from "../../src/store/address.js";
import { openStore } from "../../src/store/store.js";
import { FleetWorkerLoop } from "../../src/worker/fleetWorker.js";
import type { Machine } from "../../src/worker/jobRun.js";
import { Shares } from "../../src/worker/shares.js";
import { BoardCaller } from "../support/boardCaller.js";
import { Fleet, pause, until } from "../support/fleet.js";
import { fakeConsole } from "../support/paths.js";
import { startRedis } from "../support/redis.js";
import type { TestRedis } from "../support/redis.js";

let redis: TestRedis;
let fleet: Fleet;

before(async () => {
  redis = await startRedis();
  fleet = new Fleet(redis.url);
});

after(async () => {
  await fleet.end();
  redis.remove();
});

test("a project on Redis comes to its end", async () => {
  assert.match(fleet.do("init"), /Redis \d/);
  const listing = fleet.list("list.csv", "Mill", ["a.nsf", "b.losses.nsf", "c.gone.nsf", "d.nsf"]);
  assert.match(fleet.do("add", listing, "--root", fleet.root), /4 of 4/);
  assert.match(fleet.do("add", listing, "--root", fleet.root), /0 of 4/);
  fleet.do("cancel", fleet.job("d.nsf").id);
  const worker = fleet.worker("one", ["--jobs", "2", "--until-empty"]);
  assert.equal(await worker.ended, 0, worker.output());
  const { whole, losses, failed, cancelled } = fleet.status().tally;
  assert.deepEqual([whole, losses, failed, cancelled], [1, 1, 1, 1]);
  fleet.do("retry", fleet.job("d.nsf").id);
  const other = fleet.worker("two", ["--lock", "4s"]);
  await until("it is whole", () => fleet.job("d.nsf").verdict === "whole");
  fleet.do("drain");
  assert.equal(await other.ended, 0, other.output());
});

test("the board shows it, and directs it", async () => {
  const board = new BoardCaller((await fleet.board()).url);
  const { list, drained } = await board.data("search=gone");
  const { id = "", queue = "", reason } = list.rows[0] ?? {};
  assert.match(reason ?? "", /File does not exist/);
  assert.notEqual(drained, "");
  assert.match((await board.get(`/api/jobs/${id}`)).text, /"logs":\["[^"]+File does not exist/);
  assert.equal((await board.get(`/queues/api/queues/${queue}/${id}`)).code, 200);
  assert.equal((await board.change({ change: "resume", of: "" })).code, 200);
  assert.equal((await board.change({ change: "retry-failed", of: "" })).code, 200);
  const data = await board.data();
  assert.deepEqual([data.drained, data.tally.waiting], ["", 1]);
});

test("the board tells that Redis is away, and changes nothing later", async () => {
  const started = await fleet.board();
  const board = new BoardCaller(started.url);
  const { token, isPaused } = await board.data();
  assert.equal(isPaused, false);
  await redis.down();
  await until("it tells", async () => /cannot be reached/.test((await board.data()).failure));
  const begun = Date.now();
  const change = JSON.stringify({ change: "pause", of: "" });
  const refused = await board.post("/api/change", change, { "X-Board-Token": token });
  assert.equal(refused.code, 409, refused.text);
  assert.match(refused.text, /cannot be reached/);
  assert.ok(Date.now() - begun < 5000);
  await redis.up();
  await until("it is back", async () => (await board.data()).failure === "");
  await pause(1000);
  assert.equal((await board.data()).isPaused, false);
});

// A clock that runs fast, so that its look at the server's clock comes while the server is away.
test("a worker takes jobs again when Redis was away for a while", async () => {
  const store = await openStore(parseAddress(redis.url, {}));
  const said: string[] = [];
  const ending = new AbortController();
  const machine: Machine = {
    name: "three",
    console: [process.execPath, fakeConsole],
    identities: new Map(),
    words: defaultWords,
    maps: [{ from: "/", to: "/" }],
    times: { lock: 3_600_000, look: 2000 },
    shares: new Shares(Infinity, 1),
    clock: { ...systemClock, ticks: () => performance.now() * 300 },
    startConsole,
    say: (sentence) => said.push(sentence),
  };
  const settings = { slots: 1, untilEmpty: false };
  const loop = new FleetWorkerLoop(store, machine, settings, ending.signal).run();
  await pause(1000);
  await redis.down();
  await pause(6000);
  await redis.up();
  const listing = fleet.list("later.csv", "Mill", ["e.nsf"]);
  fleet.do("add", listing, "--root", fleet.root);
  await until("it is whole", () => fleet.job("e.nsf").verdict === "whole");
  ending.abort();
  assert.equal(await loop, "asked");
  await store.close();
  assert.ok(said.some((sentence) => sentence.startsWith("the queue does not answer")));
});
