// The command line of larkspan-fleet. Each command hands its options on as values, which stand in
// options/; what is done stands in commands/.
import { Command } from "commander";
import { version } from "./base/version.js";
import { addAdd } from "./options/addOptions.js";
import { addBoard, addLogin } from "./options/boardOptions.js";
import { urlVariable } from "./options/common.js";
import { addInit } from "./options/initOptions.js";
import { addCancel, addRetry } from "./options/jobOptions.js";
import { addReport } from "./options/reportOptions.js";
import { addStatus } from "./options/statusOptions.js";
import { addSwitches } from "./options/switchOptions.js";
import { addWorker } from "./options/workerOptions.js";

export function makeProgram(): Command {
  const program = new Command("larkspan-fleet")
    .description("Exports many Notes databases over many machines.")
    .option("--url <url>", `where the queue is (or ${urlVariable})`)
    .version(version())
    .showHelpAfterError("(larkspan-fleet COMMAND --help tells the options)")
    .configureHelp({ showGlobalOptions: true })
    .addHelpText(
      "after",
      "\nExit codes: 0 done, 1 the command line has a fault, 2 it cannot be done," +
        "\n3 done with losses, 4 stopped, 5 something is open or failed",
    );
  for (const add of [
    addInit,
    addAdd,
    addWorker,
    addStatus,
    addCancel,
    addRetry,
    addSwitches,
    addReport,
    addBoard,
    addLogin,
  ])
    add(program);
  return program;
}
