// The options of "cancel" and "retry".
import type { Command } from "commander";
import { CannotError, ExitCode, UsageError } from "../base/failures.js";
import { cancelJob, retryFailed, retryJob } from "../commands/jobControl.js";
import { withStore } from "../store/store.js";
import { addressOf, end, print, userName, withExample } from "./common.js";

// One job after another; a sentence for each. The worst code of all.
async function forEachId(
  ids: readonly string[],
  act: (id: string) => Promise<string>,
): Promise<void> {
  for (const id of ids) {
    try {
      print(`${await act(id)}\n`);
    } catch (error) {
      if (!(error instanceof CannotError)) throw error;
      process.stderr.write(`larkspan-fleet: ${error.message}\n`);
      end(ExitCode.cannot);
    }
  }
}

export function addCancel(program: Command): void {
  const command = program
    .command("cancel")
    .description("cancel jobs; one that runs is stopped within seconds")
    .argument("<id...>", "as 'status --jobs' lists them");
  withExample(command, "cancel d0123456789abcdef01234567").action(
    async (ids: string[], _options: object, self: Command) => {
      await withStore(addressOf(self), (store) =>
        forEachId(ids, (id) => cancelJob(store, id, userName())),
      );
    },
  );
}

export function addRetry(program: Command): void {
  const command = program
    .command("retry")
    .description("have failed or cancelled jobs tried again")
    .argument("[id...]", "as 'status --jobs' lists them")
    .option("--failed", "all that failed")
    .option("--again", "also export once more what is exported; the old folder is renamed");
  withExample(command, "retry --failed").action(
    async (ids: string[], options: { failed?: boolean; again?: boolean }, self: Command) => {
      if (ids.length > 0 === (options.failed === true))
        throw new UsageError("name jobs, or say --failed");
      await withStore(addressOf(self), async (store) => {
        if (options.failed === true) print(`${await retryFailed(store)} jobs are tried again\n`);
        await forEachId(ids, (id) => retryJob(store, id, options.again === true));
      });
    },
  );
}
