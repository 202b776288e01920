// The commands that need no worker, and what the queue's server demands.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { chmodSync, closeSync, openSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { beforeEach, describe, test } from "node:test";
import { systemClock } from "../../src/base/time.js";
import { defaultWords } from "../../src/export/ending.js";
import { parseCsv } from "../../src/listing/csv.js";
import { parseAddress } from "../../src/store/address.js";
import { openStore } from "../../src/store/store.js";
import { FleetWorkerLoop } from "../../src/worker/fleetWorker.js";
import type { Machine } from "../../src/worker/jobRun.js";
import { Shares } from "../../src/worker/shares.js";
import { eachTestHas } from "../support/bed.js";
import { makeCertificate } from "../support/certificate.js";
import { Fleet, until } from "../support/fleet.js";
import { repository } from "../support/paths.js";
import type { TestServer } from "../support/postgres.js";

let server: TestServer;
let fleet: Fleet;

eachTestHas(
  (bed) => {
    ({ server, fleet } = bed);
  },
  { isPrepared: false },
);

// What a command wrote, and how much memory it had at most.
function measured(...words: string[]): { output: string; megabytes: number } {
  const tell = "process.on('exit',()=>process._rawDebug(process.resourceUsage().maxRSS))";
  process.env["NODE_OPTIONS"] = `--import="data:text/javascript,${tell}"`;
  try {
    const { output, errors } = fleet.run(...words);
    return { output, megabytes: Number(errors.trim()) / 1024 };
  } finally {
    delete process.env["NODE_OPTIONS"];
  }
}

test("what cannot be written is not done", async () => {
  fleet.do("init");
  const full = openSync("/dev/full", "w");
  const status = fleet.start(["status"], {}, full);
  closeSync(full);
  assert.equal(await status.ended, 2);
});

describe("the command line", () => {
  const faults: [string[], number, RegExp][] = [
    [["frobnicate"], 1, /unknown command/],
    [["add", "--root", "D:"], 1, /listing/],
    [["add", "x.csv"], 1, /--root/],
    [["worker", "--jobs", "0"], 1, /number above 0/],
    [["worker", "--jobs", "3", "--most-workers", "2"], 1, /less than --jobs/],
    [["worker", "--lock", "soon"], 1, /no time/],
    [["retry"], 1, /--failed/],
    [["status"], 2, /not prepared: call 'init'/],
    [["--url", "postgres://a:b@localhost/x", "status"], 1, /password/],
    [["--url", "postgres://localhost:1/x", "status"], 2, /cannot be reached/],
    [["--url", "postgres://a%b@localhost/x", "status"], 1, /%25/],
    [["--url", "postgres://", "status"], 1, /no URL/],
    [["init", "--grant", "nobody-is-called-so"], 2, /there is no such role/],
  ];
  for (const [words, code, message] of faults)
    test(`'${words.join(" ")}' ends with code ${code}`, () => {
      const ran = fleet.run(...words);
      assert.equal(ran.code, code, ran.errors);
      assert.match(ran.errors, message);
    });

  test("tells the version of its package", () => {
    const file = join(repository, "fleet", "package.json");
    const { version } = JSON.parse(readFileSync(file, "utf8")) as { version: string };
    assert.equal(fleet.do("--version"), `${version}\n`);
  });

  test("tells the options of each command, with an example", () => {
    const commands = ["init", "add", "worker", "status", "cancel", "retry", "pause", "report"];
    for (const command of [...commands, "resume", "drain", "limit", "board", "login"])
      assert.match(fleet.do(command, "--help"), /Example:\n {2}larkspan-fleet /);
  });
});

describe("what is queued", () => {
  beforeEach(() => {
    fleet.do("init");
  });

  test("is added once, whatever the letter case", () => {
    const first = fleet.list("one.csv", "Mill/Example", ["mail\\anna.nsf", "b.nsf"]);
    const second = fleet.list("two.csv", "MILL/EXAMPLE", ["Mail/Anna.nsf", "c.nsf"]);
    assert.match(fleet.do("add", first, "--root", "D:\\out"), /2 of 2/);
    assert.match(fleet.do("add", first, second, "--root", "d:/out/"), /1 of 4/);
    assert.equal(fleet.status().databases, 3);
  });

  test("keeps apart what a listing tells apart by letter case alone", () => {
    const listing = fleet.list("one.csv", "Mill", ["a.nsf", "A.nsf"]);
    assert.match(fleet.do("add", listing, "--root", "D:\\out"), /2 of 2/);
    assert.equal(new Set(fleet.status().jobs.map(({ folder }) => folder.toUpperCase())).size, 2);
    assert.match(fleet.do("add", listing, "--root", "D:\\out"), /0 of 2/);
  });

  test("keeps the limit of its server where none is told", () => {
    const limits = () => {
      const { servers } = JSON.parse(fleet.do("status", "--json")) as {
        servers: { limit: number }[];
      };
      return servers.map(({ limit }) => limit);
    };
    const listing = fleet.list("one.csv", "Mill", ["a.nsf"]);
    fleet.do("add", listing, "--root", "D:\\out");
    assert.deepEqual(limits(), [4]);
    fleet.do("add", listing, "--root", "D:\\out", "--limit", "7");
    fleet.do("add", listing, "--root", "D:\\out");
    assert.deepEqual(limits(), [7]);
    fleet.do("limit", "MILL", "2");
    assert.deepEqual(limits(), [2]);
  });

  test("of a machine needs that machine's name", () => {
    const listing = fleet.list("one.csv", "", ["a.nsf"]);
    const ran = fleet.run("add", listing, "--root", "D:\\out");
    assert.equal(ran.code, 2);
    assert.match(ran.errors, /--machine/);
    fleet.do("add", listing, "--root", "D:\\out", "--machine", "EX-07");
    assert.equal(fleet.job("a.nsf").folder, "D:\\out\\local@EX-07\\a.nsf");
  });

  test("is nothing when one of the listings has a fault", () => {
    const good = fleet.list("one.csv", "Mill", ["a.nsf"]);
    const bad = join(fleet.folder, "bad.csv");
    writeFileSync(bad, "server\nMill\n");
    assert.equal(fleet.run("add", good, bad, "--root", "D:\\out").code, 2);
    assert.equal(fleet.status().databases, 0);
  });

  test("is accounted for, row by row", () => {
    fleet.do("add", fleet.list("one.csv", "Mill", ["a.nsf", "b.nsf"]), "--root", "D:\\out");
    fleet.do("cancel", fleet.job("a.nsf").id);
    const file = join(fleet.folder, "report.csv");
    const ran = fleet.run("report", "--csv", file);
    assert.equal(ran.code, 5);
    const [titles = [], ...rows] = parseCsv(readFileSync(file, "utf8").slice(1));
    const verdicts = rows.map((row) => [
      row[titles.indexOf("path")],
      row[titles.indexOf("verdict")],
    ]);
    assert.deepEqual(verdicts.sort(), [
      ["a.nsf", "cancelled"],
      ["b.nsf", "waiting"],
    ]);
  });

  test("cannot be accounted for where none is listed, nor under a root that was misspelt", () => {
    const file = join(fleet.folder, "report.csv");
    writeFileSync(file, "earlier");
    const refused = (...words: string[]) => {
      const { code, output, errors } = fleet.run("report", "--csv", file, ...words);
      assert.deepEqual([code, output, readFileSync(file, "utf8")], [2, "", "earlier"]);
      assert.deepEqual(
        readdirSync(fleet.folder).filter((name) => name.includes(".new")),
        [],
      );
      return errors;
    };
    assert.match(refused(), /this project has no database in any list/);
    fleet.do("add", fleet.list("one.csv", "Mill", ["a.nsf"]), "--root", "\\\\store\\export");
    assert.match(refused("--root", "\\\\store\\exprot"), /exprot' has no database in any list/);
    assert.equal(fleet.run("report", "--csv", file, "--root", "//STORE/export").code, 5);
  });

  test("cannot be accounted for in a folder that is not there", () => {
    const paths = Array.from({ length: 3000 }, (_, index) => `db${index}.nsf`);
    fleet.do("add", fleet.list("one.csv", "Mill", paths), "--root", "D:\\out");
    const ran = fleet.run("report", "--csv", join(fleet.folder, "none", "report.csv"));
    assert.equal(ran.code, 2);
    assert.match(ran.errors, /report\.csv' cannot be written: ENOENT/);
  });

  for (const [words, message] of [
    [["--root", "out"], /no whole path/],
    [["--root", ""], /no whole path/],
    [["--root", "D:out"], /no whole path/],
    [["--root", "D:\\out", "--workers", "17"], /up to 16/],
    [["--root", "D:", "--stall", "soon"], /--stall/],
    [["--root", "D:", "--stall", "0m"], /--stall/],
    [["--root", "D:", "--max-losses", "few"], /--max-losses/],
  ] as const)
    test(`is nothing with '${words.join(" ")}'`, () => {
      const ran = fleet.run("add", fleet.list("one.csv", "Mill", ["a.nsf"]), ...words);
      assert.equal(ran.code, 1);
      assert.match(ran.errors, message);
    });

  test("is of listings whose names are no words of the server", () => {
    for (const name of ["migration.csv", "password.csv", "timeout.csv"]) {
      const ran = fleet.run("add", join(fleet.folder, name), "--root", "D:\\out");
      assert.equal(ran.code, 2);
      assert.match(ran.errors, /^larkspan-fleet: the listing /);
    }
  });

  test("may be thirty thousand: in seconds, and in little memory", () => {
    const file = join(fleet.folder, "large.csv");
    const rows = Array.from(
      { length: 30_000 },
      (_, index) => `Mill,mail\\db${index}.nsf,T,${index}`,
    );
    writeFileSync(file, ["server,path,title,bytes", ...rows, ""].join("\n"));
    const begun = Date.now();
    const first = measured("add", file, "--root", "D:\\out");
    assert.match(first.output, /30000 of 30000/);
    const seconds = (Date.now() - begun) / 1000;
    assert.ok(seconds < 30, `${seconds} s`);
    assert.ok(first.megabytes < 500, `${first.megabytes} MB to add`);
    assert.match(fleet.do("add", file, "--root", "D:\\out"), /0 of 30000/);
    const report = measured("report", "--csv", join(fleet.folder, "report.csv"));
    assert.match(report.output, /30000 databases, 30000 open/);
    assert.ok(report.megabytes < 250, `${report.megabytes} MB to report`);
  });
});

describe("the server", () => {
  test("gives persons and workers no more than they need", async () => {
    server.sql("CREATE ROLE person LOGIN");
    server.sql("CREATE ROLE narrow LOGIN");
    fleet.do("init", "--grant", "person", "--grant-worker", "narrow");
    const as = (role: string) => fleet.url.replace("larkspan@", `${role}@`);
    const person = new Fleet(as("person"));
    const narrow = new Fleet(as("narrow"));
    try {
      const listing = person.list("one.csv", "Mill", ["a.nsf", "b.gone.nsf"]);
      person.do("add", listing, "--root", narrow.root);
      const worker = narrow.worker("one", ["--until-empty"]);
      assert.equal(await worker.ended, 0, worker.output());
      person.do("retry", "--failed");
      person.do("cancel", person.job("b.gone.nsf").id);
      person.do("pause");
      person.do("resume");
      assert.equal(person.status().tally.whole, 1);
      const other = person.list("two.csv", "Other", ["c.nsf"]);
      const refused = [
        narrow.run("add", other, "--root", narrow.root),
        person.run("--url", `${as("person")}x`, "init"),
      ];
      for (const { code, errors } of refused) {
        assert.equal(code, 2);
        assert.match(errors, /a right is missing/);
      }
    } finally {
      await person.end();
      await narrow.end();
    }
  });

  test("has a clock that a worker has to agree with", async () => {
    fleet.do("init");
    fleet.do("add", fleet.list("one.csv", "Mill", ["a.nsf"]), "--root", fleet.root);
    const store = await openStore(parseAddress(fleet.url, {}));
    const said: string[] = [];
    const ending = new AbortController();
    const machine: Machine = {
      name: "late",
      console: ["console"],
      identities: new Map(),
      words: defaultWords,
      maps: [],
      times: { lock: 60_000, look: 2000 },
      shares: new Shares(Infinity, 1),
      clock: { ...systemClock, now: () => Date.now() - 20_000 },
      startConsole: () => {
        throw new Error("a job was taken");
      },
      say: (sentence) => said.push(sentence),
    };
    const settings = { slots: 1, untilEmpty: false };
    const loop = new FleetWorkerLoop(store, machine, settings, ending.signal).run();
    await until("it has said so", () => said.length > 1);
    ending.abort();
    assert.equal(await loop, "asked");
    await store.close();
    for (const sentence of said) assert.match(sentence, /^this machine's clock is (?:19|20) s off/);
    assert.equal(fleet.status().tally.waiting, 1);
  });

  test("that is not there yet is waited for by a worker", async () => {
    fleet.do("init");
    server.down();
    const worker = fleet.worker("one");
    await until("it says so", () => worker.output().includes("cannot be reached"));
    server.up();
    await until("it works", () => worker.output().includes("up to 1 exports at once"));
  });

  test("has to be the one that its certificate says", () => {
    const certificate = join(server.folder, "data", "server.crt");
    const key = join(server.folder, "data", "server.key");
    makeCertificate(certificate, key);
    execFileSync("chown", ["--reference", join(server.folder, "data"), key, certificate]);
    server.sql("ALTER SYSTEM SET ssl = on");
    server.sql("SELECT pg_reload_conf()");
    const authority = join(fleet.folder, "ca.pem");
    writeFileSync(authority, readFileSync(certificate));
    const at = (host: string, more: string) =>
      fleet.run(
        "--url",
        `postgres://larkspan@${host}:${server.port}/larkspan?schema=tls&${more}`,
        "init",
      );
    const trusted = `sslmode=verify-full&sslrootcert=${authority}`;
    const good = at("localhost", trusted);
    assert.equal(good.code, 0, good.errors);
    assert.doesNotMatch(good.output, /warning/);
    for (const bad of [at("127.0.0.1", trusted), at("localhost", "sslmode=verify-full")]) {
      assert.equal(bad.code, 2);
      assert.match(bad.errors, /cannot be trusted/);
    }
    const authority_ = `&sslrootcert=${authority}`;
    for (const mode of ["sslmode=require", `sslmode=verify-ca${authority_}`])
      assert.match(at("127.0.0.1", mode).output, /does not have to prove/);
  });

  test("takes a password from the password file, and none that others can read", () => {
    server.sql("CREATE ROLE guarded LOGIN PASSWORD 'secret'");
    const rules = join(server.folder, "data", "pg_hba.conf");
    writeFileSync(
      rules,
      "host all guarded 127.0.0.1/32 scram-sha-256\n" + readFileSync(rules, "utf8"),
    );
    server.sql("SELECT pg_reload_conf()");
    fleet.do("init", "--grant", "guarded");
    const url = fleet.url.replace("larkspan@", "guarded@");
    const file = join(fleet.folder, "pgpass");
    writeFileSync(file, "127.0.0.1:*:*:guarded:secret\n");
    const run = (mode: number) => {
      chmodSync(file, mode);
      process.env["PGPASSFILE"] = file;
      try {
        return fleet.run("--url", url, "status");
      } finally {
        delete process.env["PGPASSFILE"];
      }
    };
    const good = run(0o600);
    assert.equal(good.code, 0, good.errors);
    const bad = run(0o644);
    assert.equal(bad.code, 2);
    assert.match(bad.errors, /refuses this user, or the password/);
  });
});
