// What the queue can bear: so many workers in one process, with exports that only last. Prints what
// the server had to do. Not a test: docs/fleet.md has what it printed.
// Usage: node dist/tests/simulation/simulate.js [WORKERS] [SLOTS] [DATABASES] [MEAN SECONDS] [SERVERS]
import { readdirSync, readFileSync } from "node:fs";
import pg from "pg";
import { systemClock } from "../../src/base/time.js";
import { defaultWords } from "../../src/export/ending.js";
import { openStore } from "../../src/store/store.js";
import { parseAddress } from "../../src/store/address.js";
import { FleetWorkerLoop } from "../../src/worker/fleetWorker.js";
import type { Machine } from "../../src/worker/jobRun.js";
import { Shares } from "../../src/worker/shares.js";
import { Fleet } from "../support/fleet.js";
import { TestServer } from "../support/postgres.js";
import { ScriptedConsole } from "../support/scriptedConsole.js";

const [workers = 50, slots = 2, databases = 1000, meanSeconds = 20, servers = 5] = process.argv
  .slice(2)
  .map(Number);

// Most are short, a few are long.
function length(): number {
  return -Math.log(1 - Math.random()) * meanSeconds * 1000;
}

async function play(console: ScriptedConsole): Promise<void> {
  const end = Date.now() + length();
  console.tell("start", { out: "D:\\x.attempt-1" });
  console.tell("phase", { phase: "documents" });
  for (let documentsDone = 0; Date.now() < end; ++documentsDone) {
    await systemClock.pause(Math.min(1000, end - Date.now()));
    console.tell("progress", { phase: "documents", documents: 1000, documentsDone });
  }
  console.tell("ready", { exitCode: 0, losses: 0 });
  while (console.written.length === 0) await systemClock.pause(5);
  console.tellEnd(console.written[0] === "place" ? 0 : 4);
}

function machine(name: string): Machine {
  return {
    name,
    console: ["console"],
    identities: new Map(),
    words: defaultWords,
    maps: [],
    times: { lock: 300_000, look: 2000 },
    shares: new Shares(Infinity, 1),
    clock: systemClock,
    startConsole: (words, environment) => {
      const console = new ScriptedConsole();
      setImmediate(() => void play(console));
      return console.start(words, environment);
    },
    say: () => undefined,
  };
}

// Seconds of the processor that all processes of the server have used.
function serverSeconds(): number {
  let ticks = 0;
  for (const entry of readdirSync("/proc").filter((name) => /^\d+$/.test(name))) {
    try {
      if (!readFileSync(`/proc/${entry}/cmdline`, "utf8").includes("postgres")) continue;
      const stat = readFileSync(`/proc/${entry}/stat`, "utf8").split(") ")[1]?.split(" ") ?? [];
      ticks += Number(stat[11]) + Number(stat[12]) + Number(stat[13]) + Number(stat[14]);
    } catch {
      // It has ended.
    }
  }
  return ticks / 100;
}

async function one(client: pg.Client, text: string): Promise<number> {
  const { rows } = await client.query<{ value: string }>(text);
  return Number(rows[0]?.value);
}

const server = await TestServer.start();
const fleet = new Fleet(server.url);
const client = new pg.Client({ connectionString: server.url });
try {
  fleet.do("init");
  for (let index = 0; index < servers; ++index) {
    const paths = Array.from({ length: databases / servers }, (_, at) => `db${at}.nsf`);
    const listing = fleet.list(`${index}.csv`, `Server${index}`, paths);
    fleet.do("add", listing, "--root", "D:\\out", "--limit", String(workers * slots));
  }
  await client.connect();
  const commits = "SELECT sum(xact_commit) AS value FROM pg_stat_database";
  const before = { commits: await one(client, commits), seconds: serverSeconds(), at: Date.now() };
  const address = parseAddress(server.url, {});
  const ending = new AbortController();
  const loops = Array.from({ length: workers }, async (_, index) => {
    const store = await openStore(address);
    const settings = { slots, untilEmpty: true };
    await new FleetWorkerLoop(store, machine(`m${index}`), settings, ending.signal).run();
    await store.close();
  });
  await systemClock.pause(5000);
  const connections = await one(client, "SELECT count(*) AS value FROM pg_stat_activity");
  await Promise.all(loops);
  const seconds = (Date.now() - before.at) / 1000;
  const { tally } = fleet.status();
  await systemClock.pause(1500);
  const told = {
    workers,
    slots,
    servers,
    databases,
    whole: tally.whole,
    seconds: Math.round(seconds),
    anHour: Math.round((databases * 3600) / seconds),
    transactionsASecond: Math.round(((await one(client, commits)) - before.commits) / seconds),
    serverShareOfOneCore: Number(((serverSeconds() - before.seconds) / seconds).toFixed(2)),
    connections,
  };
  process.stdout.write(JSON.stringify(told) + "\n");
} finally {
  await client.end();
  await fleet.end();
  server.remove();
}
process.exit();
