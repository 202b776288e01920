// The final folder of an export: what is there, by its outcome.json, and how an old one is moved out
// of the way. Nothing is ever replaced here.
import { access, readFile, rename, statfs } from "node:fs/promises";
import { codeOf } from "../base/failures.js";
import { upperCase } from "../base/fold.js";
import { isObject, numberOf, parseObject, textOf } from "../base/json.js";
import type { Counts, JobData } from "../jobs/jobData.js";
import { countsOf } from "./counts.js";

export interface Finished {
  exitCode: number;
  counts: Counts | null;
  losses: number;
}

// Windows paths as this machine sees them: a share under another letter, or Wine's drive Z.
export interface PathMap {
  from: string;
  to: string;
}

// Windows takes both slashes for the same, and so the console may turn them.
function folded(path: string): string {
  return upperCase(path).replaceAll("/", "\\");
}

// How this process opens what the console calls so.
export function seenHere(path: string, maps: readonly PathMap[]): string {
  for (const { from, to } of maps) {
    if (!folded(path).startsWith(folded(from))) continue;
    const mapped = to + path.slice(from.length);
    return to.includes("/") ? mapped.replaceAll("\\", "/") : mapped;
  }
  return path;
}

async function readOutcome(folder: string): Promise<string | undefined> {
  // That of a sealed export lies below its payload.
  for (const file of ["outcome.json", "data/outcome.json"]) {
    const text = await readFile(`${folder}/${file}`, "utf8").catch(() => undefined);
    if (text !== undefined) return text;
  }
  return undefined;
}

// Undefined: no finished export of this database lies there.
export async function finishedIn(
  folder: string,
  database: Pick<JobData, "server" | "path">,
): Promise<Finished | undefined> {
  const outcome = parseObject((await readOutcome(folder)) ?? "");
  if (outcome === undefined || textOf(outcome, "state") !== "ended") return undefined;
  const isSame =
    upperCase(textOf(outcome, "server")) === upperCase(database.server) &&
    upperCase(textOf(outcome, "path")) === upperCase(database.path);
  const exitCode = numberOf(outcome, "exitCode");
  if (!isSame || (exitCode !== 0 && exitCode !== 3)) return undefined;
  const account = outcome["account"];
  if (!isObject(account)) return { exitCode, counts: null, losses: 0 };
  const losses = Array.isArray(account["losses"]) ? account["losses"].length : 0;
  return { exitCode, counts: countsOf(account["notes"]), losses };
}

export async function exists(path: string): Promise<boolean> {
  return access(path).then(
    () => true,
    () => false,
  );
}

// The console ends an export where less is free.
const leastRoom = 64 * 2 ** 20;

// False only where it is known that nothing more can be exported to there.
export async function hasRoom(path: string): Promise<boolean> {
  return statfs(path).then(
    ({ bavail, bsize }) => bavail * bsize >= leastRoom,
    () => true,
  );
}

// Renames the folder to a name with this number in it. Done once: where that name is there already,
// another worker did it, and what lies under the first name is the new export.
export async function setAside(folder: string, number: string): Promise<void> {
  const aside = `${folder}.before-${number}`;
  if (await exists(aside)) return;
  await rename(folder, aside).catch((error: unknown) => {
    if (codeOf(error) !== "ENOENT") throw error;
  });
}
