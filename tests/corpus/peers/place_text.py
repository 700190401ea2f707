"""What vexor-inspect prints for a location expression that another tool has decoded."""

import re

def _offset(base, number):
    return base if number == 0 else f"{base} {'+' if number > 0 else '-'} {abs(number)}"


# The text of a place by what its one operation looks like.
_PLACES = [
    (r"DW_OP_addr 0x([0-9a-f]+)$", lambda address: f"0x{int(address, 16):08x}"),
    (r"DW_OP_reg(?:x |)(0x[0-9a-f]+|\d+)", lambda register: f"R{int(register, 0)}"),
    (r"DW_OP_breg(\d+) \w+([+-]\d+)", lambda register, number: _offset(f"[R{register}", int(number)) + "]"),
    (r"DW_OP_bregx \w+?(\d+) ?([+-]\d+)", lambda register, number: _offset(f"[R{register}", int(number)) + "]"),
    (r"DW_OP_fbreg ([+-]?\d+)", lambda number: _offset("[BP", int(number)) + "]"),
    (r"DW_OP_const\w+ ([+-]?(?:0x[0-9a-f]+|\d+))", lambda number: f"const {int(number, 0)}"),
    (r"DW_OP_lit(\d+)", "const {}".format),
    (r"DW_OP_(?:GNU_)?entry_value\((.*)\)$", lambda inner: "on entry " + _one(inner)),
]


def _one(operation):
    """The place that one operation alone describes, '-' for one that the reader does not follow."""
    for pattern, text in _PLACES:
        if match := re.match(pattern, operation):
            return text(*match.groups())
    return "-"


def _folded(operations):
    """An offset that is added to a place belongs to it."""
    while len(operations) > 1:
        match = re.match(r"DW_OP_plus_uconst 0x([0-9a-f]+)$", operations[1])
        base = re.match(r"(DW_OP_(?:addr |fbreg |breg\d+ \w+))([+-]?(?:0x[0-9a-f]+|\d+))$", operations[0])
        if not match or not base:
            break
        total = int(base[2], 0) + int(match[1], 16)
        operations[:2] = [base[1] + (f"{total:#x}" if base[1] == "DW_OP_addr " else f"{total:+d}")]
    return operations


def expected(expression):
    """A value has no place: it is the text of the place without brackets. What more than one operation computes the
    reader does not follow, nor an operation that the other tool does not know: one on typed values."""
    if "<decoding error>" in expression:
        return "-"
    operations = [part.strip() for part in re.split(r", (?=DW_OP)", expression)]
    value = operations[-1] == "DW_OP_stack_value"
    operations = _folded(operations[:-1] if value else operations)
    if len(operations) != 1:
        return "-"
    place = _one(operations[0])
    if not value or place == "-" or place.startswith(("const", "on entry")):
        return place
    return "value " + place.strip("[]")
