// How a person, or the system, asks a program to end that otherwise would not.

const signals = ["SIGTERM", "SIGINT", "SIGBREAK", "SIGHUP"] as const;

// Called for each wish, with its origin.
export function onWishToEnd(stopOnStdinEnd: boolean, end: (by: string) => void): void {
  for (const signal of signals)
    process.on(signal, () => {
      end(signal);
    });
  if (!stopOnStdinEnd) return;
  process.stdin.resume();
  process.stdin.once("end", () => {
    end("the end of standard input");
  });
}
