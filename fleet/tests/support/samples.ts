// The stand-in's sample databases.
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import type { Fleet } from "./fleet.js";
import { repository } from "./paths.js";
import { windowsPath } from "./windowsNode.js";

export const samples = join(repository, "standin", "samples");

// A configuration in which each note takes a fifth of a second.
export function slowIni(fleet: Fleet): string {
  const ini = join(fleet.folder, "slow.ini");
  const faults = join(samples, "faults", "slow-exports.json");
  writeFileSync(
    ini,
    [
      "[Notes]",
      `Directory=${windowsPath(samples)}`,
      `KeyFilename=${windowsPath(join(samples, "ids", "tester.id"))}`,
      `StandinFaults=${windowsPath(faults)}`,
      "",
    ].join("\n"),
  );
  return ini;
}
