// What scripts/package-fleet packs for Windows machines.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import {
  copyFileSync,
  cpSync,
  existsSync,
  mkdirSync,
  mkdtempSync,
  readdirSync,
  readFileSync,
  renameSync,
  rmSync,
  statSync,
  symlinkSync,
  writeFileSync,
} from "node:fs";
import { join, relative } from "node:path";
import { after, before, describe, test } from "node:test";
import { BoardCaller } from "../support/boardCaller.js";
import { Fleet } from "../support/fleet.js";
import { repository } from "../support/paths.js";
import { TestServer } from "../support/postgres.js";
import { runWindows, windowsNode } from "../support/windowsNode.js";

interface Lock {
  packages: Record<
    string,
    { dev?: boolean; optional?: boolean; devOptional?: boolean; license?: string }
  >;
}

let folder: string;
let zip: string;
// As a machine has it.
let unpacked: string;
let names: string[];

// Where nothing can be fetched.
function pack(root: string, out: string, environment: NodeJS.ProcessEnv = {}): string {
  const programs = join(folder, "programs");
  mkdirSync(programs, { recursive: true });
  for (const name of ["npm", "npx"])
    writeFileSync(join(programs, name), "#!/bin/sh\nexit 1\n", { mode: 0o755 });
  const PATH = `${programs}:${process.env["PATH"] ?? ""}`;
  execFileSync(join(root, "scripts/packaging/pack-fleet"), [out], {
    env: { ...process.env, PATH, SOURCE_DATE_EPOCH: "1700000000", ...environment },
    stdio: ["ignore", "ignore", "inherit"],
  });
  const found = readdirSync(out).find((name) => name.endsWith(".zip"));
  return join(out, found ?? "no ZIP");
}

function filesBelow(top: string): string[] {
  const all = readdirSync(top, { recursive: true, encoding: "utf8" });
  return all.filter((name) => statSync(join(top, name)).isFile()).sort();
}

function read(name: string): string {
  return readFileSync(join(unpacked, name), "utf8");
}

function lock(): Lock {
  return JSON.parse(readFileSync(join(repository, "fleet/package-lock.json"), "utf8")) as Lock;
}

before(() => {
  mkdirSync(join(repository, "build", "fleet"), { recursive: true });
  folder = mkdtempSync(join(repository, "build", "fleet", "package-"));
  zip = pack(repository, join(folder, "one"));
  unpacked = join(folder, "a folder");
  execFileSync("unzip", ["-q", zip, "-d", unpacked]);
  names = filesBelow(unpacked);
});

after(() => {
  rmSync(folder, { recursive: true, force: true });
});

describe("the package for Windows machines", () => {
  test("has the version in its name", () => {
    const told = readFileSync(join(repository, "CMakeLists.txt"), "utf8");
    const [, version = ""] = /VERSION (\d+\.\d+\.\d+) LANG/.exec(told) ?? [];
    assert.equal(relative(join(folder, "one"), zip), `larkspan-fleet-${version}.zip`);
    assert.match(read("package.json"), new RegExp(`"version": "${version}"`));
  });

  test("has the program, its page, the terms and sums, and nothing else", () => {
    const top = names.filter((name) => !/^(?:dist|node_modules)\//.test(name));
    assert.deepEqual(top, [
      ...["README.txt", "SHA256SUMS", "THIRD-PARTY.txt", "docs/fleet.html", "docs/fleet.md"],
      ...["docs/images/board.png", "larkspan-fleet.cmd", "package.json"],
    ]);
    const sources = filesBelow(join(repository, "fleet/src")).filter((name) =>
      name.endsWith(".ts"),
    );
    const built = sources.map((name) => `dist/src/${name.replace(/\.ts$/, ".js")}`);
    const beside = ["dist/src/report/page.css", "dist/src/report/table.js"];
    assert.deepEqual(
      names.filter((name) => name.startsWith("dist/")),
      [...built, ...beside].sort(),
    );
  });

  test("has the packages that the program needs to run, with the terms of each", () => {
    const needed = Object.entries(lock().packages).filter(
      ([name, { dev, optional, devOptional }]) =>
        name !== "" && dev !== true && optional !== true && devOptional !== true,
    );
    const modules = names.filter((name) =>
      /node_modules\/(?:@[^/]+\/)?[^/]+\/package\.json$/.test(name),
    );
    assert.deepEqual(modules, needed.map(([name]) => `${name}/package.json`).sort());
    const notices = read("THIRD-PARTY.txt");
    for (const [name, { license = "" }] of needed) {
      const { version } = JSON.parse(read(`${name}/package.json`)) as { version: string };
      const title = `${name.replace(/^.*node_modules\//, "")} ${version}, ${license}`;
      const [, chapter = ""] = notices.split(`\n${title}\n`);
      assert.match(chapter.slice(0, 3000), /Permission|Licen[cs]e|Redistribution/i, title);
    }
  });

  test("has the sum of each file", () => {
    const sums = names
      .filter((name) => name !== "SHA256SUMS")
      .map((name) => {
        const bytes = readFileSync(join(unpacked, name));
        return `${createHash("sha256").update(bytes).digest("hex")}  ${name}\n`;
      });
    assert.deepEqual(read("SHA256SUMS").split("\n").sort(), sums.join("").split("\n").sort());
  });

  test("has no path of the machine that built it, and nothing built for one system", () => {
    for (const name of names) {
      assert.doesNotMatch(name, /\.(?:node|map|exe|dll)$/);
      if (name.startsWith("node_modules/")) continue;
      assert.ok(!read(name).includes(repository), name);
      assert.doesNotMatch(read(name), /\/tmp\/|\/home\/|\/root\//, name);
    }
  });

  test("has lines and words for Windows in what Windows reads", () => {
    for (const name of ["larkspan-fleet.cmd", "README.txt"])
      assert.doesNotMatch(read(name).replaceAll("\r\n", ""), /[\r\n]/, name);
  });

  test("is the same again, of a copy elsewhere with other rights, language and time zone", () => {
    const copy = join(folder, "a copy with a longer name");
    for (const part of ["console", "docs", "fleet", "scripts", "CMakeLists.txt"])
      cpSync(join(repository, part), join(copy, part), {
        recursive: true,
        filter: (name) => !/fleet\/(?:node_modules|dist)(?:\/|$)/.test(name),
      });
    symlinkSync(join(repository, "fleet/node_modules"), join(copy, "fleet/node_modules"));
    const words = { TZ: "Pacific/Auckland", LC_ALL: "C.UTF-8" };
    const mask = process.umask(0o077);
    try {
      const again = pack(copy, join(folder, "two"), words);
      assert.ok(readFileSync(zip).equals(readFileSync(again)));
    } finally {
      process.umask(mask);
    }
  });

  test("prepares a queue, accounts for it and shows it, with nothing but what it holds", async () => {
    const server = await TestServer.start();
    const fleet = new Fleet(server.url, join(unpacked, "dist/src/main.js"));
    try {
      assert.match(fleet.do("init"), /is ready/);
      const listing = fleet.list("list.csv", "Mill", ["a.nsf"]);
      fleet.do("add", listing, "--root", fleet.root);
      const page = join(folder, "report.html");
      const ran = fleet.run("report", "--html", page);
      assert.equal(ran.code, 5, ran.errors);
      assert.match(readFileSync(page, "utf8"), /Mill!!a\.nsf[^]*getElementById/);
      const board = new BoardCaller((await fleet.board()).url);
      for (const path of ["/", "/board.css", "/page/main.js", "/api/board"])
        assert.equal((await board.get(path)).code, 200, path);
      // What could not be read is there the next time.
      const parts = join(unpacked, "node_modules/@bull-board/ui/dist");
      renameSync(parts, `${parts}.away`);
      assert.equal((await board.get("/queues/")).code, 500);
      renameSync(`${parts}.away`, parts);
      const queues = await board.get("/queues/");
      assert.equal(queues.code, 200, queues.text);
      const files = [...queues.text.matchAll(/(?:src|href)="(static[^"]+)"/g)];
      assert.ok(files.length > 1);
      for (const [, file = ""] of files)
        assert.equal((await board.get(`/queues/${file}`)).code, 200, file);
      assert.equal((await board.get("/queues/api/queues?page=1&jobsPerPage=10")).code, 200);
    } finally {
      await fleet.end();
      server.remove();
    }
  });

  test("runs by its command file, with all its words and the code of its end", async () => {
    assert.ok(existsSync(windowsNode), "no Node for Windows: scripts/setup fetches it");
    copyFileSync(windowsNode, join(unpacked, "node.exe"));
    // Named without its folder: cmd has ways of its own with several quotes.
    const call = (...words: string[]) =>
      runWindows(["cmd", "/c", "larkspan-fleet.cmd", ...words], folder, {}, unpacked);
    const version = call("--version");
    assert.equal(await version.ended, 0, version.output());
    assert.match(version.output(), /^\d+\.\d+\.\d+\s*$/);
    const fault = call("status", "--only", "two words");
    assert.equal(await fault.ended, 1, fault.output());
    assert.match(fault.output(), /two words/);
  });
});
