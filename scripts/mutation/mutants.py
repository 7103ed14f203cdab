# The mutants of the product, made from clang's syntax tree, and those written by hand.
# SPDX-License-Identifier: GPL-3.0-or-later
import bisect
import dataclasses
import hashlib
import json
import multiprocessing
import os
import pathlib
import pickle
import re
import shlex

from clang.cindex import Cursor, CursorKind, Diagnostic, Index, TranslationUnitLoadError

ROOT = pathlib.Path(__file__).resolve().parents[2]
# All other compiled folders are the product.
NOT_PRODUCT = re.compile(r"\.|build|(bench|demo|examples|fuzz|tests)/")
WRITTEN_BY_HAND = "tests/mutants.txt"
ENCODING = "latin-1"  # one character for each byte, as clang counts

ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*",
              "<<": ">>", ">>": "<<", "&": "|", "|": "&", "^": "&"}
ARITHMETIC |= {f"{operator}=": f"{other}=" for operator, other in ARITHMETIC.items()}
RELATIONAL = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
              "==": ("!=",), "!=": ("==",)}
LOGICAL = {"&&": "||", "||": "&&"}
UNARY = {"++": "--", "--": "++", "!": "", "-": "", "~": ""}
BOOLEAN = {"true": "false", "false": "true"}

# Which children of a node are statements, rather than conditions, values or declarations.
STATEMENTS = {CursorKind.COMPOUND_STMT: slice(None), CursorKind.IF_STMT: slice(1, None),
              CursorKind.DO_STMT: slice(1), CursorKind.CASE_STMT: slice(1, None),
              CursorKind.DEFAULT_STMT: slice(None), CursorKind.FOR_STMT: slice(-1, None),
              CursorKind.WHILE_STMT: slice(-1, None),
              CursorKind.CXX_FOR_RANGE_STMT: slice(-1, None)}

# Macros look like calls, but the tree has their expansion, at the position of their name.
MACRO = re.compile(r"\b(?:QStringLiteral|[A-Z][A-Z0-9_]+)\(")
PARENTHESIS_OR_TEXT = re.compile(r'R"\(.*?\)"|"(?:\\.|[^"\\])*"|' r"'(?:\\.|[^'\\])*'|[()]",
                                 re.DOTALL)


class Problem(Exception):
    """An error that stops the whole run, as a text for the user."""


@dataclasses.dataclass(frozen=True, order=True)
class Mutant:
    """One change of one file, between the characters `start` and `end`."""

    file: str
    line: int
    column: int
    operator: str
    start: int
    end: int
    replacement: str
    original: str

    @property
    def subsystem(self):
        return self.file.split("/", maxsplit=1)[0]

    @property
    def name(self):
        """Identifies the mutant as long as its file stays as it is."""
        change = " ".join(f"{self.original} -> {self.replacement}".split())
        return f"{self.file}:{self.line}:{self.column} {self.operator}: {change}"

    def put_into(self, text):
        """Returns the text with the mutant in it. Its lines keep their numbers."""
        lost_lines = self.original.count("\n") - self.replacement.count("\n")
        return text[: self.start] + self.replacement + "\n" * lost_lines + text[self.end :]


class Source:
    """The text of a file and the positions in it."""

    def __init__(self, file):
        self.file = file
        self.text = (ROOT / file).read_text(encoding=ENCODING)
        self.line_starts = [0] + [m.end() for m in re.finditer("\n", self.text)]
        self.macros = [self.macro_range(m) for m in MACRO.finditer(self.text)]

    def macro_range(self, match):
        depth = 0
        for token in PARENTHESIS_OR_TEXT.finditer(self.text, match.end() - 1):
            depth += {"(": 1, ")": -1}.get(token[0], 0)
            if depth == 0:
                return match.start(), token.end()
        return match.start(), len(self.text)

    def range_of(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def text_of(self, cursor):
        start, end = self.range_of(cursor)
        return self.text[start:end]

    def is_in_macro(self, start, end):
        return any(start >= first and end <= last for first, last in self.macros)

    def mutant(self, operator, start, end, replacement):
        line = bisect.bisect_right(self.line_starts, start)
        column = start - self.line_starts[line - 1] + 1
        original = self.text[start:end]
        return Mutant(self.file, line, column, operator, start, end, replacement, original)


class Finder:
    """Walks through the syntax tree of one file and collects its mutants."""

    def __init__(self, source):
        self.source = source
        self.mutants = set()
        self.scopes = set()  # name, begin, end of each definition
        self.statements = set()  # begin and end of statements that a mutant leaves out

    def add(self, operator, where, replacement):
        start, end = self.source.range_of(where) if isinstance(where, Cursor) else where
        if self.source.text[start:end] != replacement and start < end:
            self.mutants.add(self.source.mutant(operator, start, end, replacement))

    def visit(self, cursor):
        start, end = self.source.range_of(cursor)
        kind = cursor.kind
        if self.source.is_in_macro(start, end) or kind == CursorKind.STATIC_ASSERT:
            return
        if cursor.is_definition() or kind == CursorKind.FUNCTION_TEMPLATE:
            self.scopes.add((cursor.spelling, start, end))
        children = list(cursor.get_children())
        if kind in self.VISITORS:
            self.VISITORS[kind](self, cursor, children)
        self.leave_out(children[STATEMENTS.get(kind, slice(0))])
        for child in children:
            self.visit(child)

    def leave_out(self, statements):
        for statement in statements:
            start, end = self.source.range_of(statement)
            is_jump = statement.kind in (CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT)
            is_return = self.source.text_of(statement) == "return"
            if statement.kind.is_expression() or is_jump or is_return:
                if self.source.text[end:].lstrip().startswith(";"):
                    self.add("statement left out", statement, "")
                    self.statements.add((start, end))

    def negate_condition(self, condition):
        """Only where no other operator does the same: "<" becomes ">=", "!" is left out."""
        children = list(condition.get_children())
        is_relation = len(children) == 2 and self.operator_between(*children)[0] in RELATIONAL
        text = self.source.text_of(condition)
        is_negation = condition.kind == CursorKind.UNARY_OPERATOR and text.startswith("!")
        if not is_relation and not is_negation:
            self.add("condition negated", condition, f"!({text})")

    def visit_if(self, _cursor, children):
        if children[0].kind.is_expression():
            self.negate_condition(children[0])

    def visit_do(self, _cursor, children):
        self.negate_condition(children[-1])

    def visit_for(self, _cursor, children):
        """Any of the three parts may be missing: the condition is between the semicolons."""
        for child in children[:-1]:
            start, end = self.source.range_of(child)
            before, after = self.source.text[:start].rstrip(), self.source.text[end:].lstrip()
            if before.endswith(";") and after.startswith(";"):
                self.negate_condition(child)

    def visit_binary(self, _cursor, children):
        if len(children) == 2:
            self.exchange_operator(*children)

    def operator_between(self, left, right):
        """Returns the operator with its begin and end."""
        start, end = self.source.range_of(left)[1], self.source.range_of(right)[0]
        between = self.source.text[start:end]
        operator = between.strip()
        start += between.find(operator)
        return operator, (start, start + len(operator))

    def exchange_operator(self, left, right):
        operator, where = self.operator_between(left, right)
        if operator in RELATIONAL:
            for other in RELATIONAL[operator]:
                self.add("relation exchanged", where, other)
        elif operator in LOGICAL:
            self.add("logical operator exchanged", where, LOGICAL[operator])
        elif operator in ARITHMETIC:
            self.add("arithmetic exchanged", where, ARITHMETIC[operator])

    def visit_unary(self, cursor, _children):
        start, end = self.source.range_of(cursor)
        text = self.source.text[start:end]
        for operator, other in UNARY.items():
            name = "arithmetic exchanged" if other else "sign or negation left out"
            if text.startswith(operator):
                self.add(name, (start, start + len(operator)), other)
                break
            if other and text.endswith(operator):
                self.add(name, (end - len(operator), end), other)
                break

    def visit_number(self, cursor, _children):
        text = self.source.text_of(cursor)
        if re.match("[0-9.]", text):
            for step in ("+ 1", "- 1"):
                self.add(f"constant {step}", cursor, f"({text} {step})")

    def visit_boolean(self, cursor, _children):
        text = self.source.text_of(cursor)
        if text in BOOLEAN:
            self.add("constant negated", cursor, BOOLEAN[text])

    def visit_return(self, _cursor, children):
        if not children:
            return
        text = self.source.text_of(children[0])
        if type_name(children[0]) == "bool" and text not in BOOLEAN:
            self.add("result negated", children[0], f"!({text})")
        elif type_name(children[0]) == "void":
            self.add("call left out", children[0], "")
        elif text not in BOOLEAN and not re.fullmatch(r"\{\}|0|nullptr", text):
            self.add("result replaced by its type's default", children[0], "{}")

    def visit_call(self, cursor, children):
        arguments = [a for a in cursor.get_arguments() if a is not None]
        if re.fullmatch(r"operator\W+", cursor.spelling) and len(arguments) == 2:
            # Shifts of classes write to streams or append to lists; sums of classes are texts.
            is_text = re.search("QString|QByteArray|basic_string", type_name(cursor))
            if not is_text and cursor.spelling not in ("operator<<", "operator>>", "operator[]"):
                self.exchange_operator(*arguments)
            return
        self.exchange_arguments(arguments)
        self.replace_call(cursor, children, arguments)

    def exchange_arguments(self, arguments):
        for first, second in zip(arguments, arguments[1:]):
            start, first_end = self.source.range_of(first)
            second_start, end = self.source.range_of(second)
            if type_name(first) == type_name(second) and start < first_end < second_start < end:
                text = self.source.text
                exchanged = text[second_start:end] + text[first_end:second_start]
                self.add("arguments exchanged", (start, end), exchanged + text[start:first_end])

    def replace_call(self, cursor, children, arguments):
        """f(x) becomes x and x.f() becomes x where the type allows it."""
        start, end = self.source.range_of(cursor)
        whole = self.source.text[start:end]
        if (start, end) in self.statements or whole.startswith("=") or not whole.endswith(")"):
            return
        operands = arguments[:1]
        if children and children[0].kind == CursorKind.MEMBER_REF_EXPR:
            operands += list(children[0].get_children())[:1]
        for operand in operands:
            text = self.source.text_of(operand)
            is_whole = text in whole and not text.endswith("->")
            if type_name(operand) == type_name(cursor) and is_whole:
                self.add("call left out", cursor, f"({text})" if " " in text else text)

    VISITORS = {
        CursorKind.IF_STMT: visit_if,
        CursorKind.WHILE_STMT: visit_if,
        CursorKind.CONDITIONAL_OPERATOR: visit_if,
        CursorKind.DO_STMT: visit_do,
        CursorKind.FOR_STMT: visit_for,
        CursorKind.BINARY_OPERATOR: visit_binary,
        CursorKind.COMPOUND_ASSIGNMENT_OPERATOR: visit_binary,
        CursorKind.UNARY_OPERATOR: visit_unary,
        CursorKind.INTEGER_LITERAL: visit_number,
        CursorKind.FLOATING_LITERAL: visit_number,
        CursorKind.CXX_BOOL_LITERAL_EXPR: visit_boolean,
        CursorKind.RETURN_STMT: visit_return,
        CursorKind.CALL_EXPR: visit_call,
    }


def type_name(cursor):
    """The type of an expression, whether or not it is constant or a reference."""
    name = cursor.type.get_canonical().spelling
    return re.sub(r"^const |&+$", "", name).strip()


def compile_commands():
    """Returns file -> the compiler's arguments that matter to a parser, for the product's files."""
    path = ROOT / "build" / "compile_commands.json"
    if not path.is_file():
        raise Problem(f"{path} is missing: build the tree first, by ./run or ./test")
    commands = {}
    for entry in json.loads(path.read_text(encoding="utf-8")):
        words = shlex.split(entry["command"])
        file = os.path.relpath(entry["file"], ROOT)
        kept = [word for word in words if re.match("-[IDUm]|-std=", word)]
        for first, second in zip(words, words[1:]):
            kept += [first, second] if first == "-isystem" else []
        if not NOT_PRODUCT.match(file):
            commands[file] = kept
    return commands


def read_unit(file, arguments):
    """Returns file -> (mutants, scopes) for a file and the product's headers that it includes."""
    try:
        unit = Index.create().parse(str(ROOT / file), arguments)
    except TranslationUnitLoadError as error:
        raise Problem(f"clang cannot read {file}: {error}") from error
    errors = [d for d in unit.diagnostics if d.severity >= Diagnostic.Error]
    if errors:
        raise Problem(f"clang cannot read {file}: {errors[0]}")
    finders = {}
    for cursor in unit.cursor.get_children():
        if cursor.location.file is None:
            continue
        part = os.path.relpath(cursor.location.file.name, ROOT)
        if not NOT_PRODUCT.match(part):
            if part not in finders:
                finders[part] = Finder(Source(part))
            finders[part].visit(cursor)
    return {part: (finder.mutants, finder.scopes) for part, finder in finders.items()}


def read_product():
    """Returns file -> (mutants, scopes) for each file of the product. The last result is kept, as
    the parser takes half a minute."""
    commands = compile_commands()
    folders = sorted({file.split("/")[0] for file in commands})
    sources = [path for folder in folders for path in sorted((ROOT / folder).rglob("*.[ch]*"))]
    state = hashlib.sha256(repr(commands).encode() + pathlib.Path(__file__).read_bytes())
    for path in sources:
        state.update(path.read_bytes())
    cache = ROOT / "build" / "mutants.pickle"
    if cache.is_file():
        known_state, found = pickle.loads(cache.read_bytes())
        if known_state == state.digest():
            return found
    found = {}
    with multiprocessing.Pool() as pool:
        for unit in pool.starmap(read_unit, commands.items(), chunksize=1):
            for file, (mutants, scopes) in unit.items():
                known = found.setdefault(file, (set(), set()))
                known[0].update(mutants)
                known[1].update(scopes)
    cache.write_bytes(pickle.dumps((state.digest(), found)))
    return found


def read_written_mutants(product):
    """Returns the mutants written by hand, and the problems of those that do not fit."""
    mutants, problems = [], []
    text = (ROOT / WRITTEN_BY_HAND).read_text(encoding="utf-8")
    text = re.sub("^#.*\n", "", text, flags=re.MULTILINE)
    for paragraph in re.findall(r"^\S.*\n(?: +.*\n)+", text, re.MULTILINE):
        head, _, change = paragraph.partition("\n")
        place, _, description = head.partition(": ")
        file, _, scope = place.partition(" ")
        original, arrow, replacement = change.partition("=>")
        if not (scope and description and original.strip() and arrow):
            raise Problem(f"{WRITTEN_BY_HAND}: not in the form that its first comment describes: "
                          f"{head}")
        places = places_in_scopes(product, file, scope, original)
        if len(places) == 1:
            start, end = places.pop()
            other = " ".join(replacement.split())
            mutants.append(Source(file).mutant(description, start, end, other))
        else:
            problems.append(f"{head}: {' '.join(original.split())} is there {len(places)} times")
    return mutants, problems


def places_in_scopes(product, file, scope, snippet):
    """Returns begin and end of each occurrence, regardless of line breaks."""
    if file not in product:
        return set()
    text = (ROOT / file).read_text(encoding=ENCODING)
    expression = re.compile(r"\s*".join(map(re.escape, re.findall(r"\w+|[^\w\s]", snippet))))
    return {match.span() for name, start, end in product[file][1] if name == scope
            for match in expression.finditer(text, start, end)}
