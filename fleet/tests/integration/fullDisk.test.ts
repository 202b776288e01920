// Disks that are full to the last byte: that of the queue's server, and that of the exports. The
// volumes are made in memory, which needs the rights of root.
import assert from "node:assert/strict";
import { existsSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Fleet, until } from "../support/fleet.js";
import { repository, windowsPrograms } from "../support/paths.js";
import { TestServer } from "../support/postgres.js";
import { samples } from "../support/samples.js";
import { SmallDisk } from "../support/smallDisk.js";
import { windowsPath } from "../support/windowsNode.js";

const notHere = "no volume can be made here";

let fleet: Fleet;

afterEach(async () => {
  await fleet.end();
});

// A server that has broken down is no use to the next test.
describe("a full disk of the queue's server", () => {
  let server: TestServer;

  beforeEach(async () => {
    server = await TestServer.start(160);
    fleet = new Fleet(server.url);
    fleet.do("init");
  });

  afterEach(() => {
    server.disk?.free();
    server.revive();
    server.remove();
  });

  // It may end a moment after its clients have heard of the trouble.
  function serverIsBack(): boolean {
    try {
      server.revive();
    } catch {
      return false;
    }
    return fleet.run("status").code === 0;
  }

  // With some bytes left some jobs are added, until the server has no room for its own log, and ends.
  for (const left of [0, 6_000_000])
    test(`is told to who adds, and twice added is added once, with ${left} bytes left`, async (context) => {
      if (server.disk === undefined) {
        context.skip(notHere);
        return;
      }
      const listing = join(fleet.folder, "list.csv");
      const lines = Array.from({ length: 20_000 }, (_, index) => `Mill,mail\\db${index}.nsf`);
      writeFileSync(listing, ["server,path", ...lines, ""].join("\n"));
      server.disk.fill(left);
      const ran = fleet.run("add", listing, "--root", fleet.root);
      assert.equal(ran.code, 2);
      assert.match(ran.errors, /its disk is full|cannot be reached/);
      server.disk.free();
      await until("the server is back", serverIsBack);
      const { databases } = fleet.status();
      const told = fleet.do("add", listing, "--root", fleet.root);
      assert.match(told, new RegExp(`^${20_000 - databases} of 20000`));
      assert.equal(fleet.status().databases, 20_000);
    });

  // Three exports, one of which takes long. Returns when it runs.
  async function begin() {
    const list = fleet.list("list.csv", "Mill", ["a.nsf", "b.nsf", "c.slow.nsf"]);
    fleet.do("add", list, "--root", fleet.root);
    const words = ["--lock", "60s", "--until-empty"];
    const worker = fleet.worker("one", words, { FAKE_DOCUMENTS: "8" });
    await until("it exports", () => fleet.times("c.slow.nsf", "document 1") === 1);
    return worker;
  }

  function eachOnce(): void {
    assert.equal(fleet.status().tally.whole, 3);
    for (const path of ["a.nsf", "b.nsf", "c.slow.nsf"]) {
      assert.equal(fleet.times(path, "start"), 1, path);
      assert.equal(fleet.times(path, "placed"), 1, path);
    }
  }

  test("loses nothing: what was exported is told when there is room", async (context) => {
    if (server.disk === undefined) {
      context.skip(notHere);
      return;
    }
    const worker = await begin();
    server.disk.fill();
    await until("it says so", () => worker.output().includes("No space left on device"));
    await until("it is done", () => fleet.times("c.slow.nsf", "ready") === 1);
    server.disk.free();
    assert.equal(await worker.ended, 0, worker.output());
    eachOnce();
  });

  test("that ends the server loses nothing either", async (context) => {
    if (server.disk === undefined) {
      context.skip(notHere);
      return;
    }
    const worker = await begin();
    server.disk.fill();
    // Its log has no room for the next file.
    assert.throws(() => {
      for (;;) server.sql("CREATE TEMPORARY TABLE x (); DROP TABLE x; SELECT pg_switch_wal()");
    });
    assert.match(
      readFileSync(join(server.folder, "log"), "utf8"),
      /PANIC.*No space left on device/,
    );
    await until("it is done", () => fleet.times("c.slow.nsf", "ready") === 1);
    assert.match(worker.output(), /could not be renewed: .*ECONNREFUSED/);
    server.disk.free();
    server.revive();
    assert.equal(await worker.ended, 0, worker.output());
    eachOnce();
  });
});

describe("a full disk of the exports", () => {
  let server: TestServer;

  before(async () => {
    assert.ok(
      existsSync(join(windowsPrograms, "larkspan-console.exe")),
      `no Windows programs in ${windowsPrograms}: scripts/build mingw-x64 makes them`,
    );
    server = await TestServer.start();
  });

  after(() => {
    server.remove();
  });

  test("fails no database: they wait, uncounted, until there is room", async (context) => {
    fleet = new Fleet(server.url);
    const disk = SmallDisk.mount(fleet.root, 200);
    if (disk === undefined) {
      context.skip(notHere);
      return;
    }
    try {
      fleet.do("init");
      const ini = windowsPath(join(samples, "notes.ini"));
      const list = fleet.list("list.csv", "", ["sample.nsf", "damaged.nsf"]);
      const words = ["--root", windowsPath(fleet.root), "--notes-ini", ini, "--attempts", "1"];
      fleet.do("add", list, ...words, "--machine", "one");
      disk.fill();
      const worker = fleet.worker("one", [
        ...["--console", join(repository, "scripts", "run-windows"), "--console-argument"],
        ...[join(windowsPrograms, "larkspan-console.exe"), "--see", "Z:\\=/", "--until-empty"],
      ]);
      await until("one was tried", () => fleet.status().tally.retrying === 1);
      await until("it says why", () => worker.output().includes("cannot be written to"));
      disk.free();
      disk.fill(10_000_000);
      await until("little room was tried", () => worker.output().includes("64 MB are free"));
      disk.free();
      assert.equal(await worker.ended, 0, worker.output());
      const { whole, losses } = fleet.status().tally;
      assert.deepEqual([whole, losses], [1, 1], worker.output());
    } finally {
      await fleet.stop();
      disk.unmount();
    }
  });
});
