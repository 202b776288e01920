// Comma-separated values (RFC 4180).

// Whole rows of fields; lines may end in LF or CRLF.
export function parseCsv(text: string): string[][] {
  const rows: string[][] = [];
  let row: string[] = [];
  const field = /("(?:[^"]|"")*"|[^",\r\n]*)(,|\r?\n|$)/y;
  while (field.lastIndex < text.length) {
    const at = field.lastIndex;
    const match = field.exec(text);
    if (match === null) throw new Error(`its quotes do not fit, at character ${at + 1}`);
    row.push(unquoted(match[1] ?? ""));
    if (match[2] === ",") {
      if (field.lastIndex === text.length) row.push("");
      else continue;
    }
    rows.push(row);
    row = [];
  }
  return rows;
}

function unquoted(field: string): string {
  return field.startsWith('"') ? field.slice(1, -1).replaceAll('""', '"') : field;
}

export function csvLine(fields: readonly (string | number | null)[]): string {
  const text = fields.map((field) => {
    const word = field === null ? "" : String(field);
    return /[",\r\n]/.test(word) ? `"${word.replaceAll('"', '""')}"` : word;
  });
  return text.join(",") + "\r\n";
}
