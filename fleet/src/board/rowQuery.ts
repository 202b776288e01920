// Which rows a person wants to see: a filter, and one page of what passes it.
import type { AccountRow, RowVerdict } from "../report/account.js";
import { isVerdict } from "../report/account.js";
import type { RowPage } from "./boardData.js";

export interface RowQuery {
  verdict: RowVerdict | undefined;
  // Of a server, or the machine whose own databases these are; empty: all.
  server: string;
  // In small letters, each of which a row has.
  words: string[];
  page: number;
}

export const rowsOfPage = 50;
const longestSearch = 200;

export function parseQuery(parameters: URLSearchParams): RowQuery {
  const verdict = parameters.get("verdict") ?? "";
  const search = (parameters.get("search") ?? "").slice(0, longestSearch).toLowerCase();
  const page = Number(parameters.get("page") ?? "1");
  return {
    verdict: isVerdict(verdict) ? verdict : undefined,
    server: parameters.get("server") ?? "",
    words: search.split(/\s+/).filter((word) => word !== ""),
    page: Number.isSafeInteger(page) && page > 0 ? page : 1,
  };
}

function hasWords(row: AccountRow, words: readonly string[]): boolean {
  if (words.length === 0) return true;
  const { id, server, machine, path, title, reason, worker, folder } = row;
  const text = [id, server, machine, path, title, reason, worker, folder].join("\n").toLowerCase();
  return words.every((word) => text.includes(word));
}

function isOf(row: AccountRow, server: string): boolean {
  return server === "" || (row.server === "" ? row.machine : row.server) === server;
}

// A page behind the last one is the last one.
export function pageOfRows(rows: readonly AccountRow[], query: RowQuery): RowPage {
  const { verdict, server, words } = query;
  const found = rows.filter(
    (row) =>
      (verdict === undefined || row.verdict === verdict) &&
      isOf(row, server) &&
      hasWords(row, words),
  );
  const pages = Math.max(1, Math.ceil(found.length / rowsOfPage));
  const page = Math.min(query.page, pages);
  const first = (page - 1) * rowsOfPage;
  return { rows: found.slice(first, first + rowsOfPage), found: found.length, page, pages };
}
