// The failures that a person is told of in one sentence, and the exit codes of every command.

export const ExitCode = {
  done: 0,
  usage: 1,
  cannot: 2,
  losses: 3,
  stopped: 4,
  open: 5,
} as const;

// The command line or a value in it has a fault.
export class UsageError extends Error {}

// It cannot be done as things are: the server, a file, a right.
export class CannotError extends Error {}

export function messageOf(error: unknown): string {
  if (error instanceof AggregateError && error.message === "")
    return error.errors.map(messageOf).join("; ");
  return error instanceof Error ? error.message : String(error);
}

export function codeOf(error: unknown): string {
  if (error instanceof AggregateError && error.errors.length > 0) return codeOf(error.errors[0]);
  if (typeof error !== "object" || error === null || !("code" in error)) return "";
  return typeof error.code === "string" ? error.code : "";
}
