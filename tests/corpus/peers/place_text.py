"""What vexor-inspect prints for a location expression that another tool has decoded."""

import re

REGISTERS = {"SP": 13, "LR": 14, "PC": 15}


def _register(text):
    return REGISTERS.get(text, int(text[1:]) if text[1:].isdigit() else None)


def _offset(base, number):
    return base if number == 0 else f"{base} {'+' if number > 0 else '-'} {abs(number)}"


def _one(operation):
    """The place that one operation alone describes, '-' for one that the reader does not follow."""
    match = re.match(r"DW_OP_addr 0x([0-9a-f]+)$", operation)
    if match:
        return f"0x{int(match[1], 16):08x}"
    match = re.match(r"DW_OP_reg(?:x |)(\d+)", operation)
    if match:
        return f"R{match[1]}"
    match = re.match(r"DW_OP_breg(\d+) \w+([+-]\d+)", operation) or re.match(r"DW_OP_bregx \w+?(\d+) ?([+-]\d+)", operation)
    if match:
        return _offset(f"[R{match[1]}", int(match[2])) + "]"
    match = re.match(r"DW_OP_fbreg ([+-]?\d+)", operation)
    if match:
        return _offset("[BP", int(match[1])) + "]"
    match = re.match(r"DW_OP_const\w+ ([+-]?(?:0x[0-9a-f]+|\d+))", operation)
    if match:
        return f"const {int(match[1], 0)}"
    match = re.match(r"DW_OP_lit(\d+)", operation)
    if match:
        return f"const {match[1]}"
    match = re.match(r"DW_OP_(?:GNU_)?entry_value\((.*)\)$", operation)
    if match:
        return "on entry " + _one(match[1])
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
