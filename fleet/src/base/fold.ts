// Letter case, as the names of files on Windows have it: unit by unit, nothing gets longer.

export function upperCase(text: string): string {
  let result = "";
  for (let index = 0; index < text.length; ++index) {
    const unit = text.charAt(index);
    const upper = unit.toUpperCase();
    result += upper.length === 1 ? upper : unit;
  }
  return result;
}
