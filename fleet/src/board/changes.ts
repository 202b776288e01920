// What a person can do from the page: what the commands do, and nothing else.
import { UsageError } from "../base/failures.js";
import type { JsonObject } from "../base/json.js";
import { cancelJob, retryFailed, retryJob } from "../commands/jobControl.js";
import { pause, resume } from "../commands/switches.js";
import type { Store } from "../store/store.js";

interface Wish {
  store: Store;
  // As the command calls it.
  by: string;
  // Of a job or a server; empty: of all.
  of: string;
  again: boolean;
}

function server(of: string): string | undefined {
  return of === "" ? undefined : of;
}

// Each returns a sentence.
const changes: Record<string, (wish: Wish) => Promise<string>> = {
  cancel: ({ store, of, by }) => cancelJob(store, of, by),
  retry: ({ store, of, again }) => retryJob(store, of, again),
  "retry-failed": async ({ store }) => `${await retryFailed(store)} jobs are tried again`,
  pause: async ({ store, of }) => {
    await pause(store, server(of));
    return "paused; what runs goes on";
  },
  resume: async ({ store, of }) => {
    await resume(store, server(of));
    return "resumed";
  },
};

export async function makeChange(store: Store, by: string, body: JsonObject): Promise<string> {
  const { change: name, of, again } = body;
  const change =
    typeof name === "string" && Object.hasOwn(changes, name) ? changes[name] : undefined;
  if (change === undefined || typeof of !== "string")
    throw new UsageError("there is no such change");
  return change({ store, by, of, again: again === true });
}
