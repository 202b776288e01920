// The identities of this machine: a file that maps the names that jobs use to an ID file and its
// password. Nobody but the user of the worker may read it.
import { CannotError } from "../base/failures.js";
import { isObject, parseObject, textOf } from "../base/json.js";
import { readSecretFile } from "../base/secretFile.js";

export interface Identity {
  idFile: string;
  password: string;
}

// {"migration": {"idFile": "C:\\Notes\\migration.id", "password": "..."}}
export function readIdentities(file: string | undefined): Map<string, Identity> {
  const identities = new Map<string, Identity>();
  if (file === undefined) return identities;
  // PowerShell begins a file with a byte order mark.
  const object = parseObject(readSecretFile(file, "the identities").replace(/^\uFEFF/, ""));
  if (object === undefined) throw new CannotError(`the identities '${file}' are no JSON object`);
  for (const [name, value] of Object.entries(object)) {
    if (!isObject(value) || textOf(value, "idFile") === "")
      throw new CannotError(`the identity '${name}' in '${file}' names no idFile`);
    const identity = { idFile: textOf(value, "idFile"), password: textOf(value, "password") };
    identities.set(name, identity);
  }
  return identities;
}
