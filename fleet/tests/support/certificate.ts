// A certificate of a test's own, of the host "localhost".
import { execFileSync } from "node:child_process";
import { chmodSync } from "node:fs";

export function makeCertificate(certificate: string, key: string): void {
  const words = ["req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2"];
  const name = ["-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost"];
  execFileSync("openssl", [...words, ...name, "-keyout", key, "-out", certificate], {
    stdio: "ignore",
  });
  chmodSync(key, 0o600);
}
