// Files that hold secrets: nobody but the user of the program may read them.
import { readFileSync, statSync } from "node:fs";
import { CannotError, messageOf } from "./failures.js";

const othersMayRead = 0o077;

// The text of the file; what it is stands in the messages, such as "the identities".
export function readSecretFile(file: string, what: string): string {
  try {
    checkRights(statSync(file).mode, file, what);
    return readFileSync(file, "utf8");
  } catch (error) {
    if (error instanceof CannotError) throw error;
    throw new CannotError(`${what} '${file}' cannot be read: ${messageOf(error)}`);
  }
}

// Windows has no such bits: there its access list counts, which icacls sets.
function checkRights(mode: number, file: string, what: string): void {
  if (process.platform !== "win32" && (mode & othersMayRead) !== 0)
    throw new CannotError(`others can read ${what} '${file}': chmod 600 it first`);
}
