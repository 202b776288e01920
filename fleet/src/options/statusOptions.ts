// The options of "status".
import { Option } from "commander";
import type { Command } from "commander";
import { status } from "../commands/statusCommand.js";
import { verdicts } from "../report/account.js";
import type { RowVerdict } from "../report/account.js";
import { withStore } from "../store/store.js";
import { addressOf, print, withExample } from "./common.js";

interface StatusOptions {
  root?: string;
  jobs?: boolean;
  only?: RowVerdict;
  json?: boolean;
}

export function addStatus(program: Command): void {
  const command = program
    .command("status")
    .description("how far it is")
    .option("--root <folder>", "of this project alone")
    .option("--jobs", "list every job, not only those that run")
    .addOption(new Option("--only <verdict>", "list the jobs of this verdict").choices(verdicts))
    .option("--json", "for a program");
  withExample(command, "status --only failed").action(
    async (options: StatusOptions, self: Command) => {
      const { text } = await withStore(addressOf(self), (store) =>
        status(store, {
          root: options.root,
          jobs: options.jobs === true,
          only: options.only,
          json: options.json === true,
        }),
      );
      print(text);
    },
  );
}
