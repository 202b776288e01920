// The options of "init".
import type { Command } from "commander";
import { prepareStore } from "../store/store.js";
import { addressOf, print, withExample } from "./common.js";
import { collected } from "./parsers.js";

export function addInit(program: Command): void {
  const command = program
    .command("init")
    .description("make what the queue server needs, and check it; safe to call again")
    .option("--grant <role>", "give this role of PostgreSQL what persons need", collected)
    .option("--grant-worker <role>", "give this one what workers need, which is less", collected);
  withExample(
    command,
    "init --url postgres://owner@queue/larkspan --grant lark --grant-worker larkworker",
  ).action(async (options: { grant?: string[]; grantWorker?: string[] }, self: Command) => {
    const address = addressOf(self);
    const roles = [
      ...(options.grant ?? []).map((name) => ({ name, kind: "person" as const })),
      ...(options.grantWorker ?? []).map((name) => ({ name, kind: "worker" as const })),
    ];
    for (const sentence of await prepareStore(address, roles)) print(`${sentence}\n`);
    if (address.tls === false) print("warning: the connection is not encrypted\n");
    else if (!address.tls.rejectUnauthorized || address.tls.checkServerIdentity !== undefined)
      print("warning: the server does not have to prove who it is\n");
    print(`${address.name} is ready\n`);
  });
}
