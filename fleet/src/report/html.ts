// Untrusted text on its way into a page: names and causes can hold anything that a database holds.

const escapes: Record<string, string> = {
  "&": "&amp;",
  "<": "&lt;",
  ">": "&gt;",
  '"': "&quot;",
  "'": "&#39;",
};

// As the content of an element, or of an attribute in double quotes. A blank stands for each tab and
// line end, U+FFFD for every other character that cannot be shown.
export function html(text: string): string {
  return (
    text
      .toWellFormed()
      .replace(/[\t\n\r]/g, " ")
      // eslint-disable-next-line no-control-regex -- A page cannot carry them.
      .replace(/[\u0000-\u001F\u007F-\u009F\uFFFE\uFFFF]/g, "\uFFFD")
      .replace(/[&<>"']/g, (letter) => escapes[letter] ?? letter)
  );
}
