// A console process that does what a test says, moment by moment.
import type { ConsoleEnd, ConsoleProcess, StartConsole } from "../../src/export/consoleProcess.js";

export class ScriptedConsole implements ConsoleProcess {
  readonly written: string[] = [];
  isInputClosed = false;
  isKilled = false;
  commandLine: readonly string[] = [];
  environment: Record<string, string> = {};
  readonly ended: Promise<ConsoleEnd>;
  private listener: (line: string) => void = () => undefined;
  private finish: (end: ConsoleEnd) => void = () => undefined;

  constructor() {
    this.ended = new Promise((resolve) => {
      this.finish = resolve;
    });
  }

  readonly start: StartConsole = (commandLine, environment) => {
    this.commandLine = commandLine;
    this.environment = environment;
    return this;
  };

  onLine(listener: (line: string) => void): void {
    this.listener = listener;
  }

  write(line: string): void {
    this.written.push(line);
  }

  closeInput(): void {
    this.isInputClosed = true;
  }

  kill(): void {
    this.isKilled = true;
    this.end(null);
  }

  tell(kind: string, fields: object = {}): void {
    this.listener(JSON.stringify({ version: 1, sequence: 1, time: "", kind, ...fields }));
  }

  say(line: string): void {
    this.listener(line);
  }

  end(code: number | null, errors = ""): void {
    this.finish({ code, errors });
  }

  tellEnd(exitCode: number, reason = "", out = "D:\\out\\a.nsf.attempt-1"): void {
    this.tell("end", { exitCode, reason, out, counts: null, seconds: 7 });
    this.end(exitCode);
  }
}
