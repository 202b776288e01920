// The options of the commands "board" and "login".
import { InvalidArgumentError } from "commander";
import type { Command } from "commander";
import { board } from "../commands/boardCommand.js";
import { setLogin } from "../commands/loginCommand.js";
import { addressOf, print, userName, withExample } from "./common.js";
import { collected } from "./parsers.js";

interface BoardOptions {
  port: number;
  host: string;
  name?: string[];
  passwordFile?: string;
  certificate?: string;
  key?: string;
  unencrypted?: boolean;
  stopOnStdinEnd?: boolean;
}

const highestPort = 65535;

function portNumber(text: string): number {
  if (!/^\d{1,5}$/.test(text) || Number(text) > highestPort)
    throw new InvalidArgumentError("It is no port.");
  return Number(text);
}

export function addBoard(program: Command): void {
  const command = program
    .command("board")
    .description("serve the page on which a project is watched, until asked to end")
    .requiredOption("--port <port>", "where browsers find it; 0 takes a free one", portNumber)
    .option("--host <address>", "listen here; elsewhere than here with a login alone", "127.0.0.1")
    .option("--name <name>", "browsers may call it so too", collected)
    .option("--password-file <file>", "who may sign in, as 'login' writes it")
    .option("--certificate <file>", "serve it encrypted, with this certificate")
    .option("--key <file>", "of the certificate; nobody else may read the file")
    .option("--unencrypted", "elsewhere than here without a certificate too")
    .option("--stop-on-stdin-end", "the end of standard input asks it to end");
  withExample(command, "board --port 8480").action(async (options: BoardOptions, self: Command) => {
    await board(addressOf(self), {
      host: options.host,
      port: options.port,
      names: options.name ?? [],
      passwordFile: options.passwordFile,
      certificate: options.certificate,
      key: options.key,
      unencrypted: options.unencrypted === true,
      stopOnStdinEnd: options.stopOnStdinEnd === true,
      user: userName(),
    });
  });
}

export function addLogin(program: Command): void {
  const command = program
    .command("login")
    .description("let somebody sign in to the board; asks for the password, or reads a line")
    .argument("<name>", "as the account of cancelled jobs shall call them")
    .requiredOption("--password-file <file>", "made where it is not there")
    .option("--remove", "let them in no more");
  withExample(command, "login anna --password-file board.logins").action(
    async (name: string, options: { passwordFile: string; remove?: boolean }) => {
      print(`${await setLogin(name, options.passwordFile, options.remove === true)}\n`);
    },
  );
}
