// The command line of one export. No secret stands on it: the password goes by the environment.
import type { JobData } from "../jobs/jobData.js";
import type { Identity } from "../worker/identities.js";

export const passwordVariable = "LARKSPAN_PASSWORD";

export function folderOf(data: Pick<JobData, "root" | "folder">): string {
  return `${data.root.replace(/[\\/]+$/, "")}\\${data.folder}`;
}

function optionsOf(data: JobData): string[] {
  const { options } = data;
  const words: string[] = [];
  if (options.views === false) words.push("--no-views");
  if (options.fullAccess === true) words.push("--full-access");
  if (options.notesIni !== undefined) words.push("--notes-ini", options.notesIni);
  if (options.stall !== undefined) words.push("--stall", options.stall);
  if (options.giveUp !== undefined) words.push("--give-up", String(options.giveUp));
  if (options.maxLosses !== undefined) words.push("--max-losses", options.maxLosses);
  return words;
}

export function exportCommandLine(
  console: readonly string[],
  data: JobData,
  identity: Identity | undefined,
  workers: number,
): string[] {
  return [
    ...console,
    "export",
    "--atomic",
    "--confirm",
    "--json",
    "--stop-on-stdin-end",
    ...(data.server === "" ? [] : ["--server", data.server]),
    "--path",
    data.path,
    "--out",
    folderOf(data),
    ...(identity === undefined ? [] : ["--id-file", identity.idFile]),
    ...optionsOf(data),
    ...(workers > 1 ? ["--workers", String(workers)] : []),
  ];
}
