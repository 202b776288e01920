// The number of a job: the same for the same database of the same project, whoever adds it.
import { createHash } from "node:crypto";
import { upperCase } from "../base/fold.js";
import type { DatabaseKey } from "./safeName.js";

const digits = 24;

// Two writings of one root are one project.
export function foldRoot(root: string): string {
  return upperCase(root.replaceAll("/", "\\").replace(/\\+$/, ""));
}

// A letter stands in front, since an ID of digits alone is refused. With keepsCase the letter case
// of the path counts: on a server that tells "A.nsf" from "a.nsf".
export function jobIdOf(root: string, key: DatabaseKey, keepsCase = false): string {
  const path = key.path.replaceAll("/", "\\");
  const parts = [
    foldRoot(root),
    upperCase(key.server),
    key.server === "" ? upperCase(key.machine) : "",
    keepsCase ? path : upperCase(path),
  ];
  const sum = createHash("sha256").update(JSON.stringify(parts)).digest("hex").slice(0, digits);
  return (keepsCase ? "k" : "d") + sum;
}
