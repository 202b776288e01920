// What the definitions of all commands share: the queue's address, and what a person is told.
import { userInfo } from "node:os";
import type { Command } from "commander";
import { ExitCode, messageOf, UsageError } from "../base/failures.js";
import { parseAddress } from "../store/address.js";
import type { Address } from "../store/address.js";

export const urlVariable = "LARKSPAN_FLEET_URL";

interface Shared {
  url?: string;
}

export function addressOf(command: Command): Address {
  const { url } = command.optsWithGlobals<Shared>();
  const text = url ?? process.env[urlVariable];
  if (text === undefined || text === "")
    throw new UsageError(
      `where is the queue? --url postgres://USER@HOST/DATABASE, or ${urlVariable}`,
    );
  return parseAddress(text, process.env);
}

// What nobody can read is not done.
export function print(text: string): void {
  process.stdout.write(text, (error) => {
    if (error === null || error === undefined) return;
    process.stderr.write(`larkspan-fleet: the output cannot be written: ${messageOf(error)}\n`);
    end(ExitCode.cannot);
  });
}

export function end(code: number): void {
  process.exitCode = code;
}

export function withExample(command: Command, example: string): Command {
  return command.addHelpText("after", `\nExample:\n  larkspan-fleet ${example}`);
}

// The name under which this program runs.
export function userName(): string {
  try {
    return userInfo().username;
  } catch {
    return "unknown";
  }
}
