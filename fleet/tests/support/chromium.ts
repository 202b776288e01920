// A headless Chromium that a test drives over a pipe, in a folder of its own. It resolves no name,
// and each request that a page makes is recorded even before.
import { spawn } from "node:child_process";
import type { ChildProcess } from "node:child_process";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import type { Readable, Writable } from "node:stream";

const patience = 120_000;

interface Message {
  id?: number;
  method?: string;
  params?: Record<string, unknown>;
  result?: Record<string, unknown>;
  error?: { message: string };
}

const options = [
  "--headless",
  "--no-sandbox",
  "--disable-gpu",
  "--disable-dev-shm-usage",
  "--no-first-run",
  "--disable-background-networking",
  "--disable-component-update",
  "--host-resolver-rules=MAP * ~NOTFOUND",
  "--hide-scrollbars",
  "--remote-debugging-pipe",
];

export class Chromium {
  private readonly folder = mkdtempSync(join(tmpdir(), "larkspan-browser-"));
  private readonly process: ChildProcess;
  private readonly answers = new Map<number, (message: Message) => void>();
  private events: Message[] = [];
  private number = 0;
  private session: string | undefined;
  private read = "";

  private constructor() {
    this.process = spawn("chromium", [...options, `--user-data-dir=${this.folder}/profile`], {
      stdio: ["ignore", "ignore", "ignore", "pipe", "pipe"],
      env: { ...process.env, HOME: this.folder },
      detached: true,
    });
    const output = this.process.stdio[4] as Readable;
    output.setEncoding("utf8");
    output.on("data", (text: string) => {
      this.take(text);
    });
  }

  static async start(): Promise<Chromium> {
    const browser = new Chromium();
    const { targetId } = await browser.call("Target.createTarget", { url: "about:blank" });
    const words = { targetId, flatten: true };
    const { sessionId } = await browser.call("Target.attachToTarget", words);
    browser.session = String(sessionId);
    for (const domain of ["Page", "Runtime", "Log", "Network"])
      await browser.call(`${domain}.enable`);
    return browser;
  }

  // Calls a method of the browser's protocol.
  call(method: string, params: Record<string, unknown> = {}): Promise<Record<string, unknown>> {
    const id = ++this.number;
    const session = this.session === undefined ? {} : { sessionId: this.session };
    const message = JSON.stringify({ id, method, params, ...session });
    return new Promise((resolve, reject) => {
      const late = setTimeout(() => {
        reject(new Error(`${method}: the browser does not answer`));
      }, patience);
      this.answers.set(id, ({ result = {}, error }) => {
        clearTimeout(late);
        if (error === undefined) resolve(result);
        else reject(new Error(`${method}: ${error.message}`));
      });
      (this.process.stdio[3] as Writable).write(`${message}\0`);
    });
  }

  // Opens a page afresh and waits until it is loaded.
  async open(address: string): Promise<void> {
    await this.load("about:blank");
    await this.load(address);
  }

  // The value of an expression of the page, awaited when it is a promise.
  async value(expression: string): Promise<unknown> {
    const words = { expression, returnByValue: true, awaitPromise: true, userGesture: true };
    const { result, exceptionDetails } = await this.call("Runtime.evaluate", words);
    if (exceptionDetails !== undefined)
      throw new Error(`${expression}: ${JSON.stringify(exceptionDetails)}`);
    return (result as { value?: unknown }).value;
  }

  // Whether the scripts of the pages that are opened from now on run.
  async setScript(runs: boolean): Promise<void> {
    await this.call("Emulation.setScriptExecutionDisabled", { value: !runs });
  }

  async look(width: number, height: number, media: "screen" | "print" = "screen"): Promise<void> {
    const size = { width, height, deviceScaleFactor: 1, mobile: false };
    await this.call("Emulation.setDeviceMetricsOverride", size);
    await this.call("Emulation.setEmulatedMedia", { media });
  }

  async picture(file: string): Promise<void> {
    const { data } = await this.call("Page.captureScreenshot", { format: "png" });
    writeFileSync(file, Buffer.from(String(data), "base64"));
  }

  // What the page's console has told since the page was opened: errors of scripts, and all that the
  // page's policy refused. Some of it comes from other processes, a little later.
  async complaints(): Promise<string[]> {
    await this.value("new Promise(done => setTimeout(done, 200))");
    const kinds = ["Log.entryAdded", "Runtime.exceptionThrown", "Runtime.consoleAPICalled"];
    const told = this.events.filter(({ method = "" }) => kinds.includes(method));
    return told.map(({ params }) => JSON.stringify(params));
  }

  // The addresses that the page has asked for since it was opened.
  requests(): string[] {
    const asked = this.events.filter(({ method }) => method === "Network.requestWillBeSent");
    return asked.map(({ params }) => (params?.["request"] as { url: string }).url);
  }

  async end(): Promise<void> {
    const gone = new Promise((resolve) => this.process.on("exit", resolve));
    if (this.process.pid !== undefined) process.kill(-this.process.pid, "SIGKILL");
    await gone;
    rmSync(this.folder, { recursive: true, force: true, maxRetries: 5 });
  }

  private async load(address: string): Promise<void> {
    this.events = [];
    await this.call("Page.navigate", { url: address });
    for (const begun = Date.now(); Date.now() - begun < patience;) {
      if (this.events.some(({ method }) => method === "Page.loadEventFired")) return;
      await new Promise((resolve) => setTimeout(resolve, 20));
    }
    throw new Error(`${address} is not loaded`);
  }

  private take(text: string): void {
    const messages = (this.read + text).split("\0");
    this.read = messages.pop() ?? "";
    for (const one of messages) {
      const message = JSON.parse(one) as Message;
      if (message.id === undefined) this.events.push(message);
      else this.answers.get(message.id)?.(message);
    }
  }
}
