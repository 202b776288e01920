// The switches of the whole project: pause, resume, drain, and the limit of a server.
import { CannotError } from "../base/failures.js";
import { queueNameOf } from "../jobs/queueName.js";
import { Catalogue } from "../store/catalogue.js";
import type { QueueEntry } from "../store/catalogue.js";
import type { Store } from "../store/store.js";

async function entriesOf(catalogue: Catalogue, server: string | undefined): Promise<QueueEntry[]> {
  const { entries } = await catalogue.read();
  if (server === undefined) return entries;
  const names = [queueNameOf(server, ""), queueNameOf("", server)];
  const found = entries.filter(({ queue }) => names.includes(queue));
  if (found.length === 0) throw new CannotError(`no job is of the server or machine '${server}'`);
  return found;
}

// Exports that run go on; no other begins.
export async function pause(store: Store, server: string | undefined): Promise<void> {
  const catalogue = new Catalogue(store);
  // First of all: who adds a server meanwhile looks at it after the server is on the list.
  if (server === undefined)
    await catalogue.putSwitches({ ...(await catalogue.readSwitches()), paused: true });
  for (const { queue } of await entriesOf(catalogue, server)) await store.queue(queue).pause();
}

// Takes back a pause, and without a server also a drain.
export async function resume(store: Store, server: string | undefined): Promise<void> {
  const catalogue = new Catalogue(store);
  for (const { queue } of await entriesOf(catalogue, server)) await store.queue(queue).resume();
  if (server === undefined) await catalogue.putSwitches({ paused: false, drained: "" });
}

// Workers finish what they have, take nothing more, and end.
export async function drain(store: Store): Promise<void> {
  const catalogue = new Catalogue(store);
  const { switches } = await catalogue.read();
  await catalogue.putSwitches({ ...switches, drained: new Date().toISOString() });
}

export async function setLimit(store: Store, server: string, limit: number): Promise<void> {
  const catalogue = new Catalogue(store);
  for (const entry of await entriesOf(catalogue, server)) await catalogue.put({ ...entry, limit });
}
