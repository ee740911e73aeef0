"""Finds the places of the sources where a mutant can be made: one token that is changed, or one statement left out.

A build holds all mutants at once, each behind a question for its number (chosen.h). So a mutant is an edit that keeps
what was written beside what is tried instead.
"""

import bisect
import dataclasses
import pathlib

import clang.cindex as clang

Kind = clang.CursorKind

# What is tried first where a line has several places: the lower, the harder to notice.
BOUNDARY, LOGIC, EQUALITY, STATEMENT, GUARD, RESULT, TRUTH, CONSTANT, ARITHMETIC, TEXT = range(10)

OPERATORS = {
    "<": ("<=", BOUNDARY), "<=": ("<", BOUNDARY), ">": (">=", BOUNDARY), ">=": (">", BOUNDARY),
    "&&": ("||", LOGIC), "||": ("&&", LOGIC),
    "==": ("!=", EQUALITY), "!=": ("==", EQUALITY),
    "+": ("-", ARITHMETIC), "-": ("+", ARITHMETIC), "*": ("+", ARITHMETIC), "/": ("*", ARITHMETIC),
    "%": ("/", ARITHMETIC), "&": ("|", ARITHMETIC), "|": ("&", ARITHMETIC), "<<": (">>", ARITHMETIC),
    ">>": ("<<", ARITHMETIC),
}

FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE, Kind.LAMBDA_EXPR}
SCOPES = {Kind.NAMESPACE, Kind.LINKAGE_SPEC, Kind.UNEXPOSED_DECL, Kind.STRUCT_DECL, Kind.CLASS_DECL,
          Kind.CLASS_TEMPLATE, Kind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION, Kind.UNION_DECL}
# What the compiler computes, what is not evaluated, and what a caller supplies.
LEFT_ALONE = {Kind.STATIC_ASSERT, Kind.ENUM_DECL, Kind.PARM_DECL, Kind.TEMPLATE_TYPE_PARAMETER,
              Kind.TEMPLATE_NON_TYPE_PARAMETER, Kind.TEMPLATE_TEMPLATE_PARAMETER, Kind.CXX_UNARY_EXPR,
              Kind.TYPE_REF, Kind.TEMPLATE_REF, Kind.NAMESPACE_REF, Kind.USING_DECLARATION,
              Kind.TYPE_ALIAS_DECL, Kind.TYPEDEF_DECL, Kind.FRIEND_DECL}
INTEGERS = {clang.TypeKind.CHAR_U, clang.TypeKind.UCHAR, clang.TypeKind.CHAR16, clang.TypeKind.CHAR32,
            clang.TypeKind.USHORT, clang.TypeKind.UINT, clang.TypeKind.ULONG, clang.TypeKind.ULONGLONG,
            clang.TypeKind.CHAR_S, clang.TypeKind.SCHAR, clang.TypeKind.WCHAR, clang.TypeKind.SHORT,
            clang.TypeKind.INT, clang.TypeKind.LONG, clang.TypeKind.LONGLONG}
NUMBERS = INTEGERS | {clang.TypeKind.BOOL, clang.TypeKind.POINTER, clang.TypeKind.DEPENDENT}


@dataclasses.dataclass(frozen=True)
class Edit:
    """Puts text around a range of a source, or in its place."""
    start: int
    end: int
    before: str
    after: str = ""
    kept: bool = True


@dataclasses.dataclass(frozen=True)
class Place:
    """One mutant. NUMBER stands for its number in the edits' texts."""
    line: int
    column: int
    rank: int
    what: str  # "`<` becomes `<=`"
    edits: tuple

    def order(self):
        return self.rank, self.column


class _Source:
    """The tokens of a file as the compiler sees them, by position."""

    def __init__(self, unit, path):
        self.path = path
        self.bytes = pathlib.Path(path).read_bytes()
        file = unit.get_file(str(path))
        extent = clang.SourceRange.from_locations(
            clang.SourceLocation.from_offset(unit, file, 0),
            clang.SourceLocation.from_offset(unit, file, len(self.bytes)))
        tokens = [token for token in unit.get_tokens(extent=extent) if token.kind != clang.TokenKind.COMMENT]
        self.starts = [token.extent.start.offset for token in tokens]
        self.ends = [token.extent.end.offset for token in tokens]
        self.texts = [token.spelling for token in tokens]
        self.line_starts = [0] + [index + 1 for index, byte in enumerate(self.bytes) if byte == ord("\n")]

    def line_of(self, offset):
        return bisect.bisect_right(self.line_starts, offset)

    def column_of(self, offset):
        return offset - self.line_starts[self.line_of(offset) - 1]

    def index_at(self, offset):
        """The first token that begins at `offset` or behind it."""
        return bisect.bisect_left(self.starts, offset)

    def tokens(self, start, end):
        return self.texts[self.index_at(start):self.index_at(end)]

    def text(self, start, end):
        """On one line and without comments, so that a source keeps its lines."""
        first, behind = self.index_at(start), self.index_at(end)
        pieces = []
        for index in range(first, behind):
            if index > first and self.starts[index] > self.ends[index - 1]:
                pieces.append(" ")
            pieces.append(self.texts[index])
        return "".join(pieces)


def _range(cursor):
    return cursor.extent.start.offset, cursor.extent.end.offset


def _unwrapped(cursor):
    """The expression without implicit conversions and parentheses."""
    while cursor.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR):
        children = list(cursor.get_children())
        if len(children) != 1:
            break
        cursor = children[0]
    return cursor


class _Finder:
    def __init__(self, source):
        self.source = source
        self.places = set()
        self.question = "mutants::IsChosen(NUMBER)"
        self.also = ()  # edits that every place in this declaration needs
        self.function = None

    def add(self, offset, rank, what, *edits):
        line, column = self.source.line_of(offset), self.source.column_of(offset)
        self.places.add(Place(line, column, rank, what, tuple(edits) + self.also))

    def add_choice(self, offset, rank, what, start, end, instead):
        self.add(offset, rank, what, Edit(start, end, f"({self.question} ? ({instead}) : (", "))"))

    # Declarations

    def scope(self, cursor):
        for child in cursor.get_children():
            if child.location.file is not None and pathlib.Path(child.location.file.name) == self.source.path:
                self.visit(child)

    def visit_function(self, cursor):
        before = self.question, self.function
        start, name = cursor.extent.start.offset, cursor.location.offset
        if {"constexpr", "consteval"} & set(self.source.tokens(start, name)):
            self.question = "mutants::On(NUMBER)"
        self.function = cursor
        for child in cursor.get_children():
            self.visit(child)
        self.question, self.function = before

    def visit_variable(self, cursor):
        source = self.source
        start, end = _range(cursor)
        index = source.index_at(cursor.location.offset) + 1
        while index < len(source.texts) and source.texts[index] == "[":  # the sizes of an array
            while source.texts[index] != "]":
                index += 1
            index += 1
        initialiser = source.starts[index] if index < len(source.texts) else end
        variable_type = cursor.type.get_canonical().kind
        before = self.also
        first = source.index_at(start)
        while first > 0 and source.texts[first - 1] in ("static", "inline", "constexpr", "const"):
            first -= 1
        specifiers = range(first, source.index_at(cursor.location.offset))
        computed = [number for number in specifiers if source.texts[number] == "constexpr"]
        if computed:
            # A variable like any other, so that a mutant can change it. It stays one of this source.
            words = {source.texts[number] for number in specifiers}
            place = source.starts[computed[0]], source.ends[computed[0]]
            member = cursor.semantic_parent is not None and cursor.semantic_parent.kind in SCOPES - {Kind.NAMESPACE}
            word = "inline" if member else "" if words & {"static", "inline"} else "static"
            self.also = (Edit(*place, word, kept=False),)
        for child in cursor.get_children():
            if child.extent.start.offset >= initialiser and child.kind.is_expression():
                self.visit(child, "truth" if variable_type == clang.TypeKind.BOOL else None)
        self.also = before

    def visit_guard(self, statement):
        """A variable that is never asked for, and lives for what its destructor does."""
        declarations = list(statement.get_children())
        if len(declarations) != 1 or declarations[0].kind != Kind.VAR_DECL or self.function is None:
            return
        variable = declarations[0]
        kind = variable.type.get_canonical()
        if kind.kind != clang.TypeKind.RECORD or self.is_used(self.function, variable):
            return
        source = self.source
        start, name = variable.extent.start.offset, variable.location.offset
        index = source.index_at(name)
        if source.texts[index + 1] != "(":
            return
        spelling = kind.spelling.removeprefix("const ")
        self.add(name, GUARD, "left out",
                 Edit(start, source.ends[index],
                      f"std::optional<{spelling}> {variable.spelling}; if (!{self.question}) "
                      f"{variable.spelling}.emplace", kept=False))

    def is_used(self, cursor, variable):
        if cursor.kind == Kind.DECL_REF_EXPR and cursor.referenced == variable:
            return True
        return any(self.is_used(child, variable) for child in cursor.get_children())

    # Statements

    def visit_statement(self, cursor):
        kind = cursor.kind
        if kind == Kind.DECL_STMT:
            self.visit_guard(cursor)
            self.visit(cursor)
        elif kind == Kind.RETURN_STMT:
            self.visit_return(cursor)
        elif kind in (Kind.BREAK_STMT, Kind.CONTINUE_STMT) or kind.is_expression():
            start = cursor.extent.start.offset
            self.add(start, STATEMENT, "left out", Edit(start, start, f"if (!{self.question}) "))
            self.visit(cursor)
        else:
            self.visit(cursor)

    def visit_return(self, cursor):
        start = cursor.extent.start.offset
        children = list(cursor.get_children())
        if not children:
            self.add(start, STATEMENT, "left out", Edit(start, start, f"if (!{self.question}) "))
            return
        value = children[0]
        first, end = _range(value)
        text = self.source.text(first, end)
        kind = value.type.get_canonical().kind
        result = self.function.result_type.kind if self.function.kind != Kind.LAMBDA_EXPR else None
        inner = _unwrapped(value)
        literal = inner.kind in (Kind.INTEGER_LITERAL, Kind.CXX_BOOL_LITERAL_EXPR, Kind.CHARACTER_LITERAL)
        if literal or result == clang.TypeKind.LVALUEREFERENCE or kind == clang.TypeKind.BOOL:
            pass
        elif kind in INTEGERS and "{" not in text:
            self.add_choice(start, RESULT, "returns one more", first, end,
                            f"static_cast<decltype({text})>(({text}) + 1)")
        elif kind == clang.TypeKind.POINTER and text != "nullptr":
            self.add_choice(start, RESULT, "returns `nullptr`", first, end, "nullptr")
        elif kind == clang.TypeKind.RECORD and text.replace(" ", "") not in ("{}", "nullptr", "std::nullopt"):
            self.add(start, RESULT, "returns `{}`", Edit(start, start, f"if ({self.question}) return {{}}; "))
        self.visit(value, "result" if kind == clang.TypeKind.BOOL else None)

    # Expressions

    def add_negation(self, cursor, rank):
        start, end = _range(cursor)
        inner = _unwrapped(cursor)
        if inner.kind == Kind.UNARY_OPERATOR and self.source.tokens(*_range(inner))[:1] == ["!"]:
            return  # its own place
        if inner.kind == Kind.BINARY_OPERATOR or inner.spelling.startswith("operator") or \
                inner.kind in (Kind.CXX_BOOL_LITERAL_EXPR, Kind.INTEGER_LITERAL):
            return
        text = self.source.text(start, end)
        if text.startswith(("!=", "==")):
            return  # the compiler's own way to say an operator
        self.add(start, rank, f"`{text}` becomes `!{text}`" if len(text) < 50 else "negated",
                 Edit(start, end, f"({self.question} != static_cast<bool>(", "))"))

    def visit_operator(self, cursor, children):
        """An operator between two operands."""
        index = self.source.index_at(children[0].extent.end.offset)
        start, end = _range(cursor)
        if index >= len(self.source.texts) or self.source.starts[index] >= end:
            return
        operator = self.source.texts[index]
        if operator not in OPERATORS or self.source.ends[index] > children[-1].extent.start.offset:
            return
        instead, rank = OPERATORS[operator]
        if rank == ARITHMETIC and cursor.type.get_canonical().kind not in NUMBERS:
            return
        left = self.source.text(start, self.source.starts[index])
        right = self.source.text(self.source.ends[index], end)
        self.add_choice(self.source.starts[index], rank, f"`{operator}` becomes `{instead}`", start, end,
                        f"{left} {instead} {right}")
        if rank == LOGIC:
            self.add_negation(children[0], TRUTH)
            self.add_negation(children[-1], TRUTH)

    def visit_literal(self, cursor):
        start, end = _range(cursor)
        text = self.source.text(start, end)
        if cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            instead = "false" if text == "true" else "true"
            self.add_choice(start, TRUTH, f"`{text}` becomes `{instead}`", start, end, instead)
        elif cursor.kind == Kind.STRING_LITERAL and text.endswith('"'):
            more = text[:text.index('"')].replace("R", "") + '"~"'
            self.add_choice(start, TEXT, f"`{text}` has a `~` behind it", start, end, f"{text} {more}")
        elif cursor.kind == Kind.INTEGER_LITERAL and text in ("0", "1"):
            instead = "1" if text == "0" else "0"
            self.add_choice(start, CONSTANT, f"`{text}` becomes `{instead}`", start, end, instead)
        elif cursor.kind in (Kind.INTEGER_LITERAL, Kind.CHARACTER_LITERAL) and (text[:1].isdigit() or
                                                                                text.endswith("'")):
            self.add_choice(start, CONSTANT, f"`{text}` becomes `{text} + 1`", start, end,
                            f"static_cast<decltype({text})>({text} + 1)")

    def visit(self, cursor, role=None):
        kind = cursor.kind
        if kind in LEFT_ALONE or kind.is_attribute():
            return
        if kind in SCOPES:
            self.scope(cursor)
        elif kind in FUNCTIONS:
            self.visit_function(cursor)
        elif kind in (Kind.VAR_DECL, Kind.FIELD_DECL):
            self.visit_variable(cursor)
        elif kind == Kind.COMPOUND_STMT:
            for child in cursor.get_children():
                self.visit_statement(child)
        elif kind in (Kind.CASE_STMT, Kind.DEFAULT_STMT):
            self.visit_statement(list(cursor.get_children())[-1])
        else:
            self.visit_expression(cursor, role)

    def visit_expression(self, cursor, role):
        kind = cursor.kind
        children = list(cursor.get_children())
        if kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR) and len(children) == 1:
            self.visit(children[0], role)
            return
        if role is not None:
            self.add_negation(cursor, RESULT if role == "result" else TRUTH)
        if kind == Kind.IF_STMT and "constexpr" in self.source.tokens(*_range(cursor))[1:2]:
            children = children[1:]
        elif kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR):
            truths = [child for child in children if child.kind.is_expression()]
            if truths:
                self.visit(truths[0], "truth")
                children.remove(truths[0])
        elif kind == Kind.DO_STMT:
            self.visit(children.pop(), "truth")
        elif kind == Kind.BINARY_OPERATOR and len(children) == 2:
            self.visit_operator(cursor, children)
        elif kind == Kind.CALL_EXPR and len(children) >= 2 and (cursor.spelling.startswith("operator")):
            self.visit_operator(cursor, children)
        elif kind == Kind.UNEXPOSED_EXPR and len(children) >= 2:
            self.visit_operator(cursor, children)
        elif kind == Kind.UNARY_OPERATOR:
            start, end = _range(cursor)
            if self.source.tokens(start, end)[:1] == ["!"]:
                rest = self.source.text(start, end)[1:]
                self.add(start, TRUTH, f"`!{rest}` becomes `{rest}`" if len(rest) < 50 else "`!` left out",
                         Edit(start, end, f"({self.question} != static_cast<bool>(", "))"))
        elif kind in (Kind.CXX_BOOL_LITERAL_EXPR, Kind.STRING_LITERAL, Kind.INTEGER_LITERAL, Kind.CHARACTER_LITERAL):
            self.visit_literal(cursor)
        elif kind == Kind.CXX_THROW_EXPR:
            return  # nobody reads the text of an error
        for child in children:
            self.visit(child)


def find(path, arguments, wanted):
    """The places of a source and of the headers that it includes: by path, and only of the paths in `wanted`."""
    unit = clang.Index.create().parse(str(path), args=arguments)
    errors = [diagnostic for diagnostic in unit.diagnostics if diagnostic.severity >= clang.Diagnostic.Error]
    if errors:
        raise RuntimeError(f"{path}: {errors[0]}")
    paths = {pathlib.Path(inclusion.include.name) for inclusion in unit.get_includes()} | {pathlib.Path(path)}
    found = {}
    for part in paths & wanted:
        finder = _Finder(_Source(unit, part))
        finder.scope(unit.cursor)
        found[part] = finder.places
    return found
