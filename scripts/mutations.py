"""The small changes that can be made to the product's code, a line or a statement or two each."""

import dataclasses
import pathlib
import re

# The declarations of the library's interface hold for the stand-in library as well, so that a
# change there is one of both.
LEFT_OUT = ["notes/NotesApi.h"]
FOLDERS = ["base", "notes", "report", "dxl", "export", "listing", "supervision", "app"]

OPERATORS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
             "&&": "||", "||": "&&", "+": "-", "-": "+"}
OPERATOR = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+|-)(?= )")
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+)(?![\w.])")
CALL = re.compile(r"^( +)(?!(?:return|throw|delete|static_assert)\b)"
                  r"[A-Za-z_][\w:]*(?:(?:\.|->)\w+)*\(.*\);$")


@dataclasses.dataclass
class Change:
    """New lines in place of old ones, the first of which is that with the number, from 0."""

    path: pathlib.Path
    line: int
    old: list
    new: list

    def __str__(self):
        return f"{self.path}:{self.line + 1}: {shown(self.old)}  ->  {shown(self.new)}"


def shown(lines):
    return " ".join(line.strip() for line in lines) or "(nothing)"


def without_texts(line):
    """The line with all that stands in quotes or in a comment blanked out, of the same length."""
    def blank(match):
        return " " * len(match.group())
    return re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|//.*', blank, line)


def replaced(line, start, end, text):
    return line[:start] + text + line[end:]


def changed_operators(line, code):
    for match in OPERATOR.finditer(code):
        yield replaced(line, *match.span(), OPERATORS[match.group()])


def changed_constants(line, code):
    if code.startswith("#"):
        return
    for match in NUMBER.finditer(code):
        number = int(match.group(), 0) + 1
        text = hex(number) if match.group().startswith("0x") else str(number)
        yield replaced(line, *match.span(), text)
    for match in re.finditer(r"\b(true|false)\b", code):
        yield replaced(line, *match.span(), "false" if match.group() == "true" else "true")


def changed_conditions(line, code):
    """Of statements whose condition stands on one line and declares nothing."""
    for match in re.finditer(r"\b(?:if|while) \(", code):
        depth = 1
        end = match.end()
        while end < len(code) and depth > 0:
            depth += {"(": 1, ")": -1}.get(code[end], 0)
            end += 1
        condition = line[match.end():end - 1]
        declares = ";" in condition or re.match(r"const \w+ \w+ = ", condition)
        if depth == 0 and not declares and condition != "true":
            yield replaced(line, match.end(), end - 1, f"!({condition})")


def begins_statement(lines, number):
    before = without_texts(lines[number - 1]).strip() if number > 0 else ""
    return not before or before[-1] in ";{}:"


def balance(line):
    code = without_texts(line)
    return code.count("(") - code.count(")")


def call_at(lines, number):
    """The lines of the call that begins there, and how far it is indented; without a call none."""
    end = number
    open_parentheses = 0
    while end < len(lines):
        open_parentheses += balance(lines[end])
        end += 1
        if open_parentheses <= 0:
            break
    statement = lines[number:end]
    call = CALL.match(" ".join(statement))
    return (statement, call.group(1)) if call and open_parentheses == 0 else ([], "")


def changed_calls(path, lines, number):
    """A call left out, or done after the next one."""
    call, indentation = call_at(lines, number)
    if not call or not begins_statement(lines, number):
        return
    yield Change(path, number, call, [])
    next_call, next_indentation = call_at(lines, number + len(call))
    if next_call and next_indentation == indentation:
        yield Change(path, number, call + next_call, next_call + call)


def changes_of(path, lines):
    for number, line in enumerate(lines):
        code = without_texts(line)
        for make in (changed_operators, changed_constants, changed_conditions):
            for new in make(line, code):
                yield Change(path, number, [line], [new])
        yield from changed_calls(path, lines, number)


def sources(root):
    """Relative paths of the code that is changed."""
    for folder in FOLDERS:
        for path in sorted((root / folder).glob("*")):
            if path.suffix in (".cpp", ".h"):
                name = path.relative_to(root)
                if str(name) not in LEFT_OUT:
                    yield name


def all_changes(root):
    for name in sources(root):
        yield from changes_of(name, (root / name).read_text(encoding="utf-8").split("\n"))
