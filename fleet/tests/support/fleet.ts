// A fleet for a test: a folder, a queue, and the program started as a user would.
import { spawn, spawnSync } from "node:child_process";
import type { ChildProcess } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import type { AccountRow, Tally } from "../../src/report/account.js";
import { fakeConsole, fleetProgram, repository } from "./paths.js";

export interface JournalLine {
  at: number;
  pid: number;
  server: string;
  path: string;
  what: string;
  folder: string;
}

export interface Ran {
  code: number | null;
  output: string;
  errors: string;
}

export interface StatusDocument {
  databases: number;
  open: number;
  tally: Tally;
  jobs: AccountRow[];
}

export interface Started {
  process: ChildProcess;
  output(): string;
  // Its exit code; null: ended by a signal.
  ended: Promise<number | null>;
}

export interface StartedWorker extends Started {
  name: string;
}

export interface StartedBoard extends Started {
  // With a slash at its end.
  url: string;
}

// Milliseconds; a loaded machine may need many of them.
const patience = 180_000;

export function pause(milliseconds: number): Promise<void> {
  return new Promise((resolve) => {
    setTimeout(resolve, milliseconds);
  });
}

// Waits until it holds; a test that waits too long fails with what was waited for.
export async function until(what: string, holds: () => boolean | Promise<boolean>): Promise<void> {
  const begun = Date.now();
  while (Date.now() - begun < patience) {
    if (await holds()) return;
    await pause(50);
  }
  throw new Error(`waited in vain until ${what}`);
}

export class Fleet {
  readonly folder: string;
  readonly root: string;
  private readonly started: Started[] = [];

  constructor(
    readonly url: string,
    private readonly program = fleetProgram,
  ) {
    const below = join(repository, "build", "fleet");
    mkdirSync(below, { recursive: true });
    this.folder = mkdtempSync(join(below, "run-"));
    this.root = join(this.folder, "out");
    mkdirSync(this.root);
    writeFileSync(this.journalFile, "");
  }

  get journalFile(): string {
    return join(this.folder, "journal");
  }

  // A listing of databases of one server.
  list(name: string, server: string, paths: readonly string[]): string {
    const file = join(this.folder, name);
    const lines = paths.map((path, index) => `${server},${path},,${(index + 1) * 1000},database`);
    writeFileSync(file, ["server,path,title,bytes,kind", ...lines, ""].join("\n"));
    return file;
  }

  run(...words: string[]): Ran {
    const ran = spawnSync(process.execPath, [this.program, ...words], {
      env: this.environment(),
      encoding: "utf8",
      timeout: patience,
      maxBuffer: 2 ** 28,
    });
    return { code: ran.status, output: ran.stdout, errors: ran.stderr };
  }

  // Fails the test unless it ends with code 0.
  do(...words: string[]): string {
    const ran = this.run(...words);
    if (ran.code !== 0) throw new Error(`${words.join(" ")}: ${ran.code} ${ran.errors}`);
    return ran.output;
  }

  status(): StatusDocument {
    return JSON.parse(this.do("status", "--jobs", "--json")) as StatusDocument;
  }

  job(path: string): AccountRow {
    const found = this.status().jobs.find((row) => row.path === path);
    if (found === undefined) throw new Error(`no job of ${path}`);
    return found;
  }

  // With a fake console, unless the words name another one.
  worker(
    name: string,
    words: string[] = [],
    environment: NodeJS.ProcessEnv = {},
    output: "pipe" | number = "pipe",
  ): StartedWorker {
    const console = ["--console", process.execPath, "--console-argument", fakeConsole];
    const started = this.start(
      [
        ...["worker", "--name", name, "--see", "/=/"],
        ...(words.includes("--console") ? words : [...console, ...words]),
      ],
      environment,
      output,
    );
    return { ...started, name };
  }

  // On a free port, unless the words say otherwise.
  async board(words: string[] = []): Promise<StartedBoard> {
    const started = this.start(["board", "--port", "0", ...words]);
    const address = / is at (https?:\S+)/;
    await until("the board tells its address", () => {
      if (started.process.exitCode !== null) throw new Error(started.output());
      return address.test(started.output());
    });
    return { ...started, url: address.exec(started.output())?.[1] ?? "" };
  }

  // What is left at the end is ended by force.
  start(
    words: string[],
    environment: NodeJS.ProcessEnv = {},
    output: "pipe" | number = "pipe",
  ): Started {
    const child = spawn(process.execPath, [this.program, ...words], {
      env: { ...this.environment(), ...environment },
      stdio: ["pipe", output, output],
    });
    let told = "";
    child.stdout?.on("data", (text: Buffer) => (told += text.toString()));
    child.stderr?.on("data", (text: Buffer) => (told += text.toString()));
    const ended = new Promise<number | null>((resolve) => child.on("exit", resolve));
    const started = { process: child, output: () => told, ended };
    this.started.push(started);
    return started;
  }

  journal(): JournalLine[] {
    const lines = readFileSync(this.journalFile, "utf8").split("\n");
    return lines.filter((line) => line !== "").map((line) => JSON.parse(line) as JournalLine);
  }

  // How often this happened to the database.
  times(path: string, what: string): number {
    return this.journal().filter((line) => line.path === path && line.what === what).length;
  }

  // All that was started is gone.
  async stop(): Promise<void> {
    for (const { process: child } of this.started) {
      child.kill("SIGCONT");
      child.kill("SIGKILL");
    }
    await Promise.all(this.started.map(({ ended }) => ended));
    await pause(200);
  }

  // And so is the folder.
  async end(): Promise<void> {
    await this.stop();
    rmSync(this.folder, { recursive: true, force: true, maxRetries: 5 });
  }

  private environment(): NodeJS.ProcessEnv {
    return { ...process.env, LARKSPAN_FLEET_URL: this.url, FAKE_JOURNAL: this.journalFile };
  }
}
