// A Redis of a test's own.
import { spawn } from "node:child_process";
import type { ChildProcess } from "node:child_process";
import { once } from "node:events";
import { mkdtempSync, rmSync } from "node:fs";
import { connect } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { until } from "./fleet.js";
import { freePort } from "./postgres.js";

function answers(port: number): Promise<boolean> {
  return new Promise((resolve) => {
    const socket = connect(port, "127.0.0.1");
    socket.on("connect", () => {
      socket.destroy();
      resolve(true);
    });
    socket.on("error", () => {
      resolve(false);
    });
  });
}

export interface TestRedis {
  url: string;
  down(): Promise<void>;
  up(): Promise<void>;
  remove(): void;
}

export async function startRedis(): Promise<TestRedis> {
  const folder = mkdtempSync(join(tmpdir(), "larkspan-redis-"));
  const port = await freePort();
  const words = ["--port", String(port), "--bind", "127.0.0.1", "--dir", folder];
  let child: ChildProcess;
  const up = async () => {
    child = spawn("redis-server", [...words, "--appendonly", "yes"], { stdio: "ignore" });
    await until("Redis answers", () => answers(port));
  };
  await up();
  return {
    url: `redis://127.0.0.1:${port}`,
    up,
    down: async () => {
      const ended = once(child, "exit");
      child.kill("SIGKILL");
      await ended;
    },
    remove: () => {
      child.kill("SIGKILL");
      rmSync(folder, { recursive: true, force: true });
    },
  };
}
