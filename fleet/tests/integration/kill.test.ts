// Workers are killed at moments that a seed chooses. Whatever the moment: every database is done in
// the end, its folder was given its name once, and nothing else has that name.
import assert from "node:assert/strict";
import { existsSync, readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { Fleet, pause } from "../support/fleet.js";
import { TestServer } from "../support/postgres.js";

const seeds = 20;
const kills = 3;
const databases = 4;

let server: TestServer;

before(async () => {
  server = await TestServer.start();
});

after(() => {
  server.remove();
});

// A small generator, the same for the same seed.
function numbers(seed: number): () => number {
  let state = seed * 2654435761;
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return state / 2 ** 32;
  };
}

function check(fleet: Fleet, paths: readonly string[], output: string): void {
  const { tally } = fleet.status();
  assert.equal(tally.whole, paths.length, `${JSON.stringify(tally)}\n${output}`);
  for (const path of paths) {
    assert.equal(fleet.times(path, "placed"), 1, `${path} was placed\n${output}`);
    const outcome = readFileSync(join(fleet.root, "Mill", path, "outcome.json"), "utf8");
    assert.equal((JSON.parse(outcome) as { path: string }).path, path);
  }
  const folders = readdirSync(join(fleet.root, "Mill"));
  for (const folder of folders.filter((name) => !paths.includes(name)))
    assert.match(folder, /\.attempt-\d+$/);
  assert.ok(existsSync(join(fleet.root, "Mill")));
}

async function tryMoments(seed: number): Promise<void> {
  const random = numbers(seed);
  const fleet = new Fleet(`${server.url}?schema=seed${seed}`);
  const environment = { FAKE_STEP: "120", FAKE_PLACING: "150" };
  try {
    fleet.do("init");
    const paths = Array.from({ length: databases }, (_, index) => `db${index}.nsf`);
    fleet.do("add", fleet.list("list.csv", "Mill", paths), "--root", fleet.root);
    const words = ["--lock", "2s", "--jobs", "2"];
    for (let kill = 0; kill < kills; ++kill) {
      const worker = fleet.worker(`killed-${kill}`, words, environment);
      // From before it has taken anything to after it has placed the first.
      await pause(300 + random() * 1800);
      worker.process.kill(random() < 0.8 ? "SIGKILL" : "SIGTERM");
      await worker.ended;
    }
    const last = fleet.worker("last", [...words, "--until-empty"], environment);
    assert.equal(await last.ended, 0, last.output());
    check(fleet, paths, last.output());
  } finally {
    await fleet.end();
  }
}

test("killed workers lose nothing and place nothing twice", async (context) => {
  // Four at once: they mostly wait for locks to run out.
  for (let seed = 1; seed <= seeds; seed += 4)
    await Promise.all(
      [0, 1, 2, 3].map((lane) =>
        context.test(`seed ${seed + lane}`, () => tryMoments(seed + lane)),
      ),
    );
});
