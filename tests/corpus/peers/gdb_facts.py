"""Runs inside gdb, and prints what it knows of its program: one fact a row, columns separated by tabs.

  gdb-multiarch -nx -batch -ex "python CODE_RANGES = [(0x8000, 0x8100)]; OTHER_RANGES = []; VARIABLE_NAMES = ['sink']" \
    -x gdb_facts.py FILE

Other ranges are those of functions of which only the symbol is known; their lines are asked for alone."""

import re

import gdb

STEP = 2  # bytes, the shortest instruction


def row(*columns):
    print("\t".join(str(column) for column in columns))


def lines_at_addresses():
    for low, high in CODE_RANGES:
        for address in range(low, high, STEP):
            found = gdb.find_pc_line(address)
            block = gdb.block_for_pc(address)
            while block and not block.function:
                block = block.superblock
            name = block.function.name if block and block.function else ""
            row("at", f"{address:#010x}", found.symtab.filename if found.symtab else "", found.line, name)


def symtabs():
    """The tables of the files with code: a header has one for each unit that uses it."""
    seen = {}
    for low, high in CODE_RANGES + OTHER_RANGES:
        for address in range(low, high, STEP):
            symtab = gdb.find_pc_line(address).symtab
            if symtab:
                unit = symtab.global_block()
                seen[symtab.filename, unit.start, unit.end] = symtab
    return list(seen.values())


def addresses_of_lines(symtab):
    for entry in symtab.linetable():
        row("line", symtab.filename, entry.line, f"{entry.pc:#010x}")


def class_of_member(pointer):
    """Only in the text of a pointer to a member."""
    name = re.search(r"(\w+)::[*]", str(pointer))[1]
    return f" {name}::*"


def type_text(of):
    """The type as vexor-inspect writes it, without qualifiers and the keywords of records: what it is made of stands on
    the right, a typedef only where what it names has no name."""
    text, pending = "", ""
    while True:
        if of.code == gdb.TYPE_CODE_TYPEDEF:
            pending = of.name
        elif of.code == gdb.TYPE_CODE_PTR:
            text = "*" + text
        elif of.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            text = "&" + text
        elif of.code == gdb.TYPE_CODE_ARRAY:
            counts = ""
            while of.code == gdb.TYPE_CODE_ARRAY:
                counts += f"[{of.range()[1] + 1}]"
                of = of.target()
            text = counts + text
            continue
        elif of.code == gdb.TYPE_CODE_FUNC:
            text = "(" + ", ".join(type_text(field.type) for field in of.fields()) + ")" + text
        elif of.code == gdb.TYPE_CODE_METHODPTR:
            method = of.target()
            parameters = ", ".join(type_text(field.type) for field in method.fields()[1:])
            return type_text(method.target()) + "(" + parameters + ")" + class_of_member(of) + text
        elif of.code == gdb.TYPE_CODE_MEMBERPTR:
            text = class_of_member(of) + text
        else:
            return (of.name or pending) + text
        of = of.target()


def symbols_of_units():
    """The variables outside functions of the units with code, and those that are asked for by name."""
    units = {}
    for symtab in symtabs():
        unit = symtab.global_block()
        units[unit.start, unit.end] = [*unit, *symtab.static_block()]
    yield from (symbol for symbols in units.values() for symbol in symbols)
    yield from (gdb.lookup_global_symbol(name) or gdb.lookup_static_symbol(name) for name in VARIABLE_NAMES)


def variable(symbol):
    fixed = gdb.SYMBOL_LOC_STATIC, gdb.SYMBOL_LOC_COMPUTED  # the latter with an offset to the address
    if not symbol or not symbol.is_variable or symbol.addr_class not in fixed or symbol.needs_frame:
        return
    if "thread-local" in gdb.execute(f"info address {symbol.name}", to_string=True):
        return
    address = symbol.value().address
    if symbol.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):  # that is what it refers to
        address = re.search(r"address (0x[0-9a-f]+)", gdb.execute(f"info address {symbol.name}", to_string=True))[1]
        address = int(address, 16)
    if address is not None:
        row("variable", symbol.name, f"{int(address) & 0xFFFFFFFF:#010x}", symbol.type.sizeof, type_text(symbol.type))


def main():
    lines_at_addresses()
    for symtab in symtabs():
        addresses_of_lines(symtab)
    for symbol in symbols_of_units():
        variable(symbol)
    row("end")


main()
