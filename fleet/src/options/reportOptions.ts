// The options of "report".
import { resolve } from "node:path";
import type { Command } from "commander";
import { upperCase } from "../base/fold.js";
import { ExitCode, UsageError } from "../base/failures.js";
import type { PathMap } from "../export/place.js";
import { accountRows, databasesIn, openRows } from "../report/account.js";
import type { Tally } from "../report/account.js";
import { CsvReport } from "../report/csvReport.js";
import { HtmlReport } from "../report/htmlReport.js";
import { writeReports } from "../report/report.js";
import type { Report } from "../report/report.js";
import { Catalogue } from "../store/catalogue.js";
import { withStore } from "../store/store.js";
import { addressOf, end, print, withExample } from "./common.js";
import { pathMap } from "./parsers.js";

// 0 never stands over a loss, or over a row that is not final.
function codeOfTally(tally: Tally): number {
  if (openRows(tally) + tally.failed > 0) return ExitCode.open;
  return tally.losses + tally.cancelled > 0 ? ExitCode.losses : ExitCode.done;
}

interface ReportOptions {
  csv?: string;
  html?: string;
  root?: string;
  see?: PathMap[];
}

// Windows, and shares of it, tell letters of another case not apart.
function isOneFile(one: string, other: string): boolean {
  return upperCase(resolve(one)) === upperCase(resolve(other));
}

function reportsOf({ csv, html, see }: ReportOptions): Report[] {
  if (csv === undefined && html === undefined) throw new UsageError("say --html FILE, --csv FILE");
  if (csv !== undefined && html !== undefined && isOneFile(csv, html))
    throw new UsageError("--html and --csv name one file");
  return [
    ...(csv === undefined ? [] : [new CsvReport(csv)]),
    ...(html === undefined ? [] : [new HtmlReport(html, see ?? [])]),
  ];
}

export function addReport(program: Command): void {
  const command = program
    .command("report")
    .description("account for every database of every listing")
    .option("--html <file>", "write a page for a browser")
    .option("--csv <file>", "write a table")
    .option("--root <folder>", "of this project alone")
    .option("--see <from=to>", "folders that begin so are seen here as this", pathMap);
  withExample(command, "report --html fleet.html --csv fleet.csv").action(
    async (options: ReportOptions, self: Command) => {
      const reports = reportsOf(options);
      const tally = await withStore(addressOf(self), async (store) => {
        const { entries } = await new Catalogue(store).read();
        const of = options.root === undefined ? undefined : `the root '${options.root}'`;
        return writeReports(reports, accountRows(store, entries, options.root), of);
      });
      const files = [options.html, options.csv].filter((file) => file !== undefined);
      print(`${databasesIn(tally)} databases, ${openRows(tally)} open: ${files.join(", ")}\n`);
      end(codeOfTally(tally));
    },
  );
}
