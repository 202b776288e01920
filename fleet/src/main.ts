#!/usr/bin/env node
// The program larkspan-fleet.
import { CommanderError } from "commander";
import { CannotError, ExitCode, messageOf, UsageError } from "./base/failures.js";
import { makeProgram } from "./commandLine.js";

function codeOfFailure(error: unknown): number {
  if (error instanceof CommanderError) return error.exitCode === 0 ? ExitCode.done : ExitCode.usage;
  if (!(error instanceof CommanderError))
    process.stderr.write(`larkspan-fleet: ${textOf(error)}\n`);
  return error instanceof UsageError ? ExitCode.usage : ExitCode.cannot;
}

// What nobody foresaw is told with its place.
function textOf(error: unknown): string {
  if (error instanceof UsageError || error instanceof CannotError) return error.message;
  return error instanceof Error ? (error.stack ?? error.message) : messageOf(error);
}

// Who read it may be gone, or the disk behind it full: what a worker exports matters more.
for (const stream of [process.stdout, process.stderr]) stream.on("error", () => undefined);

try {
  const program = makeProgram();
  for (const command of [program, ...program.commands]) command.exitOverride();
  await program.parseAsync();
} catch (error) {
  process.exitCode = codeOfFailure(error);
}

// A connection that the server refused stays open for a minute, and would keep this process.
process.stdout.write("", () => process.exit());
