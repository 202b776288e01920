// The queue of a server. The number in it keeps two servers apart whose letters are the same.
import { createHash } from "node:crypto";
import { upperCase } from "../base/fold.js";

const longestWord = 40;

function wordOf(name: string): string {
  return name
    .toLowerCase()
    .replace(/[^a-z0-9-]+/g, "_")
    .slice(0, longestWord);
}

// A database of a machine is exported by that machine alone.
export function queueNameOf(server: string, machine: string): string {
  const isLocal = server === "";
  const name = upperCase(isLocal ? machine : server);
  const sum = createHash("sha256").update(`${isLocal ? "local" : "server"}:${name}`);
  return `${wordOf(isLocal ? `local-${machine}` : server)}.${sum.digest("hex").slice(0, 8)}`;
}
