// The command "board": the page of a project, until it is asked to end.
import { readFileSync } from "node:fs";
import { hostname } from "node:os";
import { domainToASCII } from "node:url";
import { BoardServer } from "../board/boardServer.js";
import type { BoardSettings } from "../board/boardServer.js";
import { isLoopback } from "../board/guard.js";
import { readLogins } from "../board/logins.js";
import { CannotError, ExitCode, messageOf, UsageError } from "../base/failures.js";
import { readSecretFile } from "../base/secretFile.js";
import { systemClock } from "../base/time.js";
import type { Address } from "../store/address.js";
import { withStore } from "../store/store.js";
import { onWishToEnd } from "./wishToEnd.js";

export interface BoardRequest {
  host: string;
  port: number;
  names: string[];
  passwordFile: string | undefined;
  certificate: string | undefined;
  key: string | undefined;
  // Passwords may be read on the way.
  unencrypted: boolean;
  stopOnStdinEnd: boolean;
  // Who calls it.
  user: string;
}

function say(sentence: string): void {
  process.stdout.write(`${new Date().toISOString().slice(0, 19)}Z ${sentence}\n`);
}

// Whoever can ask this page can cancel every export.
function checkSafety(request: BoardRequest): void {
  const { host, names, passwordFile, certificate, key } = request;
  if ((certificate === undefined) !== (key === undefined))
    throw new UsageError("--certificate and --key belong together");
  const isOpen = !isLoopback(host);
  if (passwordFile === undefined && (isOpen || names.length > 0))
    throw new UsageError(
      `${isOpen ? `${host} is not this machine alone` : "--name lets others come"}:` +
        " a login is needed, by --password-file (see 'login')",
    );
  if (isOpen && certificate === undefined && !request.unencrypted)
    throw new UsageError(
      `passwords would go to ${host} unencrypted: give --certificate and --key,` +
        " or --unencrypted where that does no harm",
    );
}

function readCertificate(file: string): string {
  try {
    return readFileSync(file, "utf8");
  } catch (error) {
    throw new CannotError(`the certificate '${file}' cannot be read: ${messageOf(error)}`);
  }
}

// As browsers tell it.
function nameOfHost(name: string): string {
  const told = domainToASCII(name);
  if (told === "") throw new UsageError(`'${name}' is no name of a host; it has no port in it`);
  return told;
}

// No address that a browser could call.
function isEverywhere(host: string): boolean {
  return host === "0.0.0.0" || host === "::";
}

function settingsOf(request: BoardRequest): BoardSettings {
  checkSafety(request);
  const { host, port, names, passwordFile, certificate, key, user } = request;
  if (passwordFile !== undefined && readLogins(passwordFile).length === 0)
    throw new CannotError(`nobody could sign in: '${passwordFile}' has no login`);
  const tls =
    certificate === undefined || key === undefined
      ? undefined
      : { cert: readCertificate(certificate), key: readSecretFile(key, "the key") };
  const heard = isEverywhere(host) ? [] : [host.toLowerCase()];
  const known = [...names.map(nameOfHost), ...heard, hostname().toLowerCase()];
  return { host, port, names: new Set(known), tls, passwordFile, user };
}

function addressToOpen({ host, tls, names }: BoardSettings, port: number): string {
  const name = isEverywhere(host) ? ([...names][0] ?? host) : host;
  return `${tls === undefined ? "http" : "https"}://${name.includes(":") ? `[${name}]` : name}:${port}/`;
}

// The second one ends at once.
function firstWishToEnd(stopOnStdinEnd: boolean): Promise<string> {
  return new Promise((resolve) => {
    let isAsked = false;
    onWishToEnd(stopOnStdinEnd, (by) => {
      if (isAsked) process.exit(ExitCode.stopped);
      isAsked = true;
      resolve(by);
    });
  });
}

export async function board(address: Address, request: BoardRequest): Promise<void> {
  const settings = settingsOf(request);
  const wish = firstWishToEnd(request.stopOnStdinEnd);
  await withStore(address, async (store) => {
    const server = new BoardServer(store, settings, systemClock, say);
    const port = await server.listen();
    say(`the board of ${store.name} is at ${addressToOpen(settings, port)}`);
    say(`asked to end, by ${await wish}`);
    await server.close();
  });
}
