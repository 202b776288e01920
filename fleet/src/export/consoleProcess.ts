// The process of larkspan-console: a narrow seam, so that tests script one.
import { spawn } from "node:child_process";
import type { ChildProcessWithoutNullStreams } from "node:child_process";
import type { Readable } from "node:stream";

export interface ConsoleEnd {
  // Null: it was ended from outside, or could not be started.
  code: number | null;
  // The last of what it wrote on standard error.
  errors: string;
}

export interface ConsoleProcess {
  onLine(listener: (line: string) => void): void;
  write(line: string): void;
  closeInput(): void;
  // By force. What it started ends with it.
  kill(): void;
  readonly ended: Promise<ConsoleEnd>;
}

// The environment is that of this process and what is given besides.
export type StartConsole = (
  commandLine: readonly string[],
  environment: Record<string, string>,
) => ConsoleProcess;

const mostErrors = 4000;
// Somebody else's process may hold the other end of its output as well.
const longestRead = 5000;

function endOf(child: ChildProcessWithoutNullStreams): Promise<ConsoleEnd> {
  let errors = "";
  child.stderr.setEncoding("utf8");
  child.stderr.on("data", (text: string) => {
    errors = (errors + text).slice(-mostErrors);
  });
  return new Promise((resolve) => {
    const end = (code: number | null) => {
      resolve({ code, errors: errors.trim() });
    };
    child.on("error", (error) => {
      errors += error.message;
      end(null);
    });
    child.on("exit", (code) => {
      setTimeout(end, longestRead, code).unref();
    });
    child.on("close", end);
  });
}

// A line ends in a line feed and nowhere else: node:readline takes U+2028 for an end as well, which
// may stand in the name of a database.
function eachLine(stream: Readable, listener: (line: string) => void): void {
  let rest = "";
  stream.setEncoding("utf8");
  stream.on("data", (text: string) => {
    const lines = (rest + text).split("\n");
    rest = lines.pop() ?? "";
    lines.forEach(listener);
  });
  stream.on("end", () => {
    if (rest !== "") listener(rest);
  });
}

export const startConsole: StartConsole = (commandLine, environment) => {
  const [program = "", ...commandArguments] = commandLine;
  const child = spawn(program, commandArguments, {
    stdio: "pipe",
    windowsHide: true,
    env: { ...process.env, ...environment },
  });
  // It may have ended before it read.
  child.stdin.on("error", () => undefined);
  return {
    onLine: (listener) => {
      eachLine(child.stdout, (line) => {
        listener(line);
      });
    },
    write: (line) => child.stdin.write(`${line}\n`),
    closeInput: () => child.stdin.end(),
    kill: () => child.kill("SIGKILL"),
    ended: endOf(child),
  };
};
