// Verdicts, numbers and times as persons read them.
import type { AccountRow, RowVerdict } from "../../report/account.js";

export const verdictWords: readonly (readonly [RowVerdict, string])[] = [
  ["running", "Running"],
  ["waiting", "Waiting"],
  ["retrying", "Retrying"],
  ["whole", "Whole"],
  ["losses", "With losses"],
  ["failed", "Failed"],
  ["cancelled", "Cancelled"],
];

export function wordOf(verdict: RowVerdict): string {
  return verdictWords.find(([name]) => name === verdict)?.[1] ?? verdict;
}

export function count(number: number): string {
  return number.toLocaleString("en");
}

export function time(text: string): string {
  return text === "" ? "" : new Date(text).toLocaleString();
}

export function serverOf(row: Pick<AccountRow, "server" | "machine">): string {
  return row.server === "" ? `databases of ${row.machine}` : row.server;
}

export function nameOf(row: Pick<AccountRow, "server" | "machine" | "path">): string {
  return row.server === "" ? `${row.path} of ${row.machine}` : `${row.server}!!${row.path}`;
}

function documents(row: AccountRow): string {
  if (row.documents === null) return row.phase;
  return `${row.phase}: ${count(row.documentsDone)} of ${count(row.documents)}`;
}

function exported(row: AccountRow): string {
  if (row.exported === null || row.listed === null) return "";
  return `${count(row.exported)} of ${count(row.listed)} notes`;
}

function losses(row: AccountRow): string {
  const number = row.losses ?? 0;
  return `${count(number)} ${number === 1 ? "loss" : "losses"}; ${exported(row)}`;
}

// What there is to say of a row beside its state.
export function whatOf(row: AccountRow): string {
  switch (row.verdict) {
    case "running":
      return documents(row);
    case "whole":
      return exported(row);
    case "losses":
      return losses(row);
    case "waiting":
      return row.bytes === null ? "" : size(row.bytes);
    default:
      return row.reason;
  }
}

export function size(bytes: number): string {
  const units = ["bytes", "KB", "MB", "GB", "TB"];
  let value = bytes;
  let unit = 0;
  for (; value >= 1000 && unit < units.length - 1; ++unit) value /= 1000;
  return `${value < 10 && unit > 0 ? value.toFixed(1) : Math.round(value)} ${units[unit] ?? ""}`;
}
