// A headless Chromium that a test drives over a pipe, in a folder of its own.
//
// The browser resolves no name, so that a page which asks another machine for something is seen to
// fail at it; and each such request is recorded even before.
import { spawn } from "node:child_process";
import type { ChildProcess } from "node:child_process";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import type { Readable, Writable } from "node:stream";
import { isObject, parseObject, textOf } from "../../src/base/json.js";
import type { JsonObject } from "../../src/base/json.js";
import { until } from "./fleet.js";

const words = [
  ...["--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run"],
  ...["--disable-background-networking", "--disable-component-update", "--hide-scrollbars"],
  ...[
    "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE localhost, EXCLUDE 127.0.0.1",
    "--remote-debugging-pipe",
  ],
];

interface Waiting {
  resolve: (result: JsonObject) => void;
  reject: (error: Error) => void;
}

export class Browser {
  // What the page asked for and told since it was opened.
  readonly requests: string[] = [];
  readonly complaints: string[] = [];
  private readonly folder = mkdtempSync(join(tmpdir(), "larkspan-browser-"));
  private readonly child: ChildProcess;
  private readonly waiting = new Map<number, Waiting>();
  private number = 0;
  private session = "";
  private read = "";

  private constructor() {
    this.child = spawn("chromium", [...words, `--user-data-dir=${join(this.folder, "profile")}`], {
      stdio: ["ignore", "ignore", "ignore", "pipe", "pipe"],
      detached: true,
      env: { ...process.env, HOME: this.folder },
    });
    (this.child.stdio[4] as Readable).on("data", (piece: Buffer) => {
      this.take(piece.toString());
    });
  }

  static async start(): Promise<Browser> {
    const browser = new Browser();
    const { targetId } = await browser.call("Target.createTarget", { url: "about:blank" });
    const attached = await browser.call("Target.attachToTarget", { targetId, flatten: true });
    browser.session = textOf(attached, "sessionId");
    for (const domain of ["Page", "Runtime", "Log", "Network"])
      await browser.call(`${domain}.enable`);
    return browser;
  }

  async end(): Promise<void> {
    const ended = new Promise((resolve) => this.child.on("exit", resolve));
    process.kill(-(this.child.pid ?? 0), "SIGKILL");
    await ended;
    rmSync(this.folder, { recursive: true, force: true, maxRetries: 10, retryDelay: 100 });
  }

  call(method: string, parameters: object = {}): Promise<JsonObject> {
    const id = ++this.number;
    const to = this.session === "" ? {} : { sessionId: this.session };
    const message = JSON.stringify({ id, method, params: parameters, ...to });
    (this.child.stdio[3] as Writable).write(`${message}\0`);
    return new Promise((resolve, reject) => this.waiting.set(id, { resolve, reject }));
  }

  // Opens it afresh and waits until its document is there.
  async open(url: string): Promise<void> {
    this.requests.length = 0;
    this.complaints.length = 0;
    await this.call("Page.navigate", { url: "about:blank" });
    await this.call("Page.navigate", { url });
    await this.until(`${url} is loaded`, "document.readyState === 'complete'");
  }

  // The value of an expression of the page, awaited when it is a promise.
  async value(expression: string): Promise<unknown> {
    const answer = await this.call("Runtime.evaluate", {
      expression,
      returnByValue: true,
      awaitPromise: true,
      userGesture: true,
    });
    if (answer["exceptionDetails"] !== undefined)
      throw new Error(`${expression}: ${JSON.stringify(answer["exceptionDetails"])}`);
    return isObject(answer["result"]) ? answer["result"]["value"] : undefined;
  }

  async text(selector: string): Promise<string> {
    const found = await this.value(
      `document.querySelector(${JSON.stringify(selector)})?.textContent`,
    );
    return typeof found === "string" ? found : "";
  }

  async until(what: string, expression: string): Promise<void> {
    // While a page is left its expressions fail.
    await until(what, async () => (await this.value(expression).catch(() => false)) === true);
  }

  async press(key: string, code = 0): Promise<void> {
    const text = key === "Enter" ? { text: "\r" } : key.length === 1 ? { text: key } : {};
    const parameters = { key, code: key, windowsVirtualKeyCode: code, ...text };
    await this.call("Input.dispatchKeyEvent", { type: "keyDown", ...parameters });
    await this.call("Input.dispatchKeyEvent", { type: "keyUp", ...parameters });
  }

  async look(width: number, height: number, scheme = "light"): Promise<void> {
    const size = { width, height, deviceScaleFactor: 1, mobile: false };
    await this.call("Emulation.setDeviceMetricsOverride", size);
    const features = [{ name: "prefers-color-scheme", value: scheme }];
    await this.call("Emulation.setEmulatedMedia", { features });
  }

  async picture(file: string): Promise<void> {
    const { data } = await this.call("Page.captureScreenshot", { format: "png" });
    writeFileSync(file, Buffer.from(String(data), "base64"));
  }

  private take(piece: string): void {
    const messages = (this.read + piece).split("\0");
    this.read = messages.pop() ?? "";
    for (const text of messages) this.hear(parseObject(text) ?? {});
  }

  private hear(message: JsonObject): void {
    const waiting = this.waiting.get(Number(message["id"]));
    const { result, error, params } = message;
    if (waiting !== undefined) {
      this.waiting.delete(Number(message["id"]));
      if (isObject(error)) waiting.reject(new Error(textOf(error, "message")));
      else waiting.resolve(isObject(result) ? result : {});
    } else if (isObject(params)) {
      this.record(textOf(message, "method"), params);
    }
  }

  private record(method: string, told: JsonObject): void {
    const { request, entry, exceptionDetails, args } = told;
    if (method === "Network.requestWillBeSent" && isObject(request))
      this.requests.push(textOf(request, "url"));
    if (method === "Log.entryAdded" && isObject(entry)) this.complaints.push(textOf(entry, "text"));
    if (method === "Runtime.exceptionThrown" || method === "Runtime.consoleAPICalled")
      this.complaints.push(JSON.stringify(exceptionDetails ?? args));
  }
}
