"""What is replaced by what. Pure tables and text, no C++ parser."""
import re

TRUE, FALSE = "true", "false"

# Boundary, one neighbour and the constant: a test that tells these apart from the original tells every other
# comparison apart too. Equality becomes a constant, so that tests must see both outcomes.
COMPARISONS = {
    "<": ("<=", "!=", FALSE),
    ">": (">=", "!=", FALSE),
    "<=": ("<", "==", TRUE),
    ">=": (">", "==", TRUE),
}
# `i != n` in place of `i < n` ends the same loop, and `true` ends none.
LOOP_COMPARISONS = {
    "<": ("<=", FALSE),
    ">": (">=", FALSE),
    "<=": ("<", FALSE),
    ">=": (">", FALSE),
}
EQUALITIES = ("==", "!=")
LOGICAL = ("&&", "||")
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "&", "<<": ">>", ">>": "<<"}
ASSIGNMENTS = {
    "+=": "-=",
    "-=": "+=",
    "*=": "/=",
    "/=": "*=",
    "%=": "*=",
    "&=": "|=",
    "|=": "&=",
    "^=": "&=",
    "<<=": ">>=",
    ">>=": "<<=",
}
STEPS = {"++": "--", "--": "++"}

INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|0[bB][01']+|[0-9][0-9']*)([uUlL]*)")
FLOATING = re.compile(r"([0-9']*\.?[0-9']*(?:[eE][+-]?[0-9]+)?)([fFlL]?)")


def integer_value(digits):
    digits = digits.replace("'", "").lower()
    if digits.startswith(("0x", "0b")):
        return int(digits, 0)
    return int(digits, 8 if len(digits) > 1 and digits[0] == "0" else 10)


def other_integer(text):
    """The next integer, written so that its type is the same; None for what is no plain literal."""
    match = INTEGER.fullmatch(text)
    if match is None:
        return None
    value = integer_value(match[1])
    return f"{value + 1}{match[2]}" if value + 1 < 2**31 else f"({text} - 1)"


def other_floating(text):
    """A tenth more, or one in place of zero; None for what is no plain decimal literal."""
    match = FLOATING.fullmatch(text)
    if match is None:
        return None
    return f"1.0{match[2]}" if float(match[1].replace("'", "")) == 0.0 else f"({text} * 1.1{match[2]})"


def other_bool(text):
    return {TRUE: FALSE, FALSE: TRUE}.get(text)
