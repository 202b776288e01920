// A PostgreSQL of a test's own: on a port of its own, in a folder below build/, as a user without
// rights where the test is root, since the server refuses to run as that.
import { execFileSync } from "node:child_process";
import { chmodSync, chownSync, mkdirSync, mkdtempSync, readdirSync, rmSync } from "node:fs";
import { createServer } from "node:net";
import type { AddressInfo } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { repository } from "./paths.js";
import { SmallDisk } from "./smallDisk.js";

const nobody = 65534;

function programs(): string {
  const versions = readdirSync("/usr/lib/postgresql").sort((one, other) => +other - +one);
  return `/usr/lib/postgresql/${versions[0] ?? ""}/bin`;
}

function isRoot(): boolean {
  return process.getuid?.() === 0;
}

function asServer(program: string, words: string[]): void {
  const drop = isRoot() ? ["setpriv", `--reuid=${nobody}`, "--clear-groups"] : [];
  const [first = "", ...rest] = [...drop, join(programs(), program), ...words];
  execFileSync(first, rest, { stdio: ["ignore", "ignore", "inherit"], cwd: "/" });
}

export function freePort(): Promise<number> {
  return new Promise((resolve) => {
    const server = createServer();
    server.listen(0, "127.0.0.1", () => {
      const { port } = server.address() as AddressInfo;
      server.close(() => {
        resolve(port);
      });
    });
  });
}

// Where that user comes to: every folder above has to let it through.
function makeFolder(): string {
  const below = join(repository, "build", "fleet");
  mkdirSync(below, { recursive: true });
  for (const parent of [below, tmpdir()]) {
    const folder = mkdtempSync(join(parent, "pg-"));
    if (!isRoot()) return folder;
    chownSync(folder, nobody, nobody);
    chmodSync(folder, 0o700);
    try {
      execFileSync("setpriv", [`--reuid=${nobody}`, "--clear-groups", "ls", folder], {
        stdio: "ignore",
      });
      return folder;
    } catch {
      rmSync(folder, { recursive: true });
    }
  }
  throw new Error("no folder for a PostgreSQL");
}

export class TestServer {
  private constructor(
    readonly folder: string,
    readonly port: number,
    readonly disk: SmallDisk | undefined,
  ) {}

  // With megabytes its folder is a volume of that size, if one can be made.
  static async start(megabytes?: number): Promise<TestServer> {
    const folder = makeFolder();
    const disk = megabytes === undefined ? undefined : SmallDisk.mount(folder, megabytes);
    const server = new TestServer(folder, await freePort(), disk);
    const data = join(server.folder, "data");
    asServer("initdb", ["-D", data, "-U", "larkspan", "-A", "trust", "-E", "UTF8", "--no-sync"]);
    server.up();
    const where = ["-h", "127.0.0.1", "-p", String(server.port), "-U", "larkspan"];
    asServer("createdb", [...where, "larkspan"]);
    return server;
  }

  get url(): string {
    return `postgres://larkspan@127.0.0.1:${this.port}/larkspan`;
  }

  // As the owner of the database.
  sql(text: string): void {
    const where = ["-h", "127.0.0.1", "-p", String(this.port), "-U", "larkspan", "-q"];
    execFileSync(join(programs(), "psql"), [...where, "-c", text, "larkspan"], {
      stdio: ["ignore", "ignore", "inherit"],
    });
  }

  up(): void {
    const settings = ["listen_addresses=127.0.0.1", "max_connections=400", "fsync=off"];
    const options = [`-p ${this.port} -k ${this.folder}`, ...settings.map((text) => `-c ${text}`)];
    this.control("start", ["-l", join(this.folder, "log"), "-o", options.join(" ")]);
  }

  // Starts it where it has ended by itself.
  revive(): void {
    try {
      this.control("status", []);
    } catch {
      this.up();
    }
  }

  down(): void {
    this.control("stop", ["-m", "fast"]);
  }

  remove(): void {
    try {
      this.control("stop", ["-m", "immediate"]);
    } finally {
      this.disk?.unmount();
      rmSync(this.folder, { recursive: true, force: true });
    }
  }

  private control(deed: string, words: string[]): void {
    asServer("pg_ctl", ["-D", join(this.folder, "data"), "-w", ...words, deed]);
  }
}
