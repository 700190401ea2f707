"""Differences between the tools that are known, with the reason for each."""

import bisect
import re

import facts


class Context:
    """What the reasons look at: the rows of the line tables by address, and the peer's entries."""

    def __init__(self, inspect, path, info):
        self.path, self.info = path, info
        self._rows, self._ends = {}, set()
        sequence = []
        for address, file, line, _, flags in facts.rows(inspect, "lines", path):
            if "E" not in flags:
                sequence.append((int(address, 16), line, file.rsplit("/", 1)[-1]))
                continue
            end = int(address, 16)
            self._ends.add(end)
            for begin, number, name in sequence:  # a row at the end has no code
                if begin != end and number != "0":
                    self._rows.setdefault(begin, []).append((name, int(number)))
            sequence = []
        self._addresses = sorted(self._rows)
        self.in_words = b".note.iar" in path.read_bytes()  # the name of a section
        self.objects = {int(value, 16) for value, _, kind, *_ in facts.rows(inspect, "symbols", path) if kind == "OBJECT"}

    def rows_near(self, address):
        """File and line of all rows at the nearest address at or below this one."""
        position = bisect.bisect_right(self._addresses, address)
        return self._rows[self._addresses[position - 1]] if position else []

    def rows_at(self, address):
        return self._rows.get(address, [])

    def rows_where_line_began(self, address):
        """The rows before those near the address, where these do nothing but go on with the last line of them."""
        position = bisect.bisect_right(self._addresses, address) - 1
        while position > 0 and self._addresses[position] not in self._ends:
            before = self._rows[self._addresses[position - 1]]
            if set(self._rows[self._addresses[position]]) != {before[-1]}:
                break
            position -= 1
        return self._rows[self._addresses[position]] if position >= 0 else []


def of(context, kind, side, row, own, peer):
    """The reason for one row that only one side has; None where there is none."""
    for wanted, test, reason in _KNOWN:
        if kind == wanted and test(context, side, row, own, peer):
            return reason
    return None


def _one_of_several_lines(context, side, row, own, peer):
    address, *place = row
    rows = context.rows_near(address)
    return len(set(rows)) > 1 and (tuple(place) == rows[0] if side == "here" else tuple(place) in rows[1:])


def _where_line_began(context, side, row, own, peer):
    address, *place = row
    rows = context.rows_where_line_began(address)
    return rows != context.rows_near(address) and tuple(place) in (rows[-1:] if side == "here" else rows)


def _later_row_of_address(context, side, row, own, peer):
    file, line, address = row
    return side == "peer" and (file, line) in context.rows_at(address)[1:]


def _row_that_goes_on(context, side, row, own, peer):
    file, line, address = row
    before = context.rows_near(address - 1)
    return side == "here" and (file, line) in context.rows_at(address) and (file, line) in before


def _before_another_file(context, side, row, own, peer):
    file, line, address = row
    return side == "here" and any(other != file for other, _ in context.rows_at(address))


def _thumb_bit(context, side, row, own, peer):
    return any(entry.number("DW_AT_low_pc") == row[0] | 1 for entry in context.info.all()
               if entry.is_tag("subprogram"))


def _named_by_linker_alone(context, side, row, own, peer):
    info = context.info
    return any(low <= row[0] < high for entry in info.all() if entry.is_tag("subprogram")
               and not info.holder(entry, "DW_AT_name") and (side == "peer" or info.name(entry) == row[1])
               for low, high in info.ranges(entry))


def _inlined_without_call(context, side, row, own, peer):
    return any(low <= row[0] < high and not entry.has("DW_AT_call_line") for entry in context.info.all()
               if entry.is_tag("inlined_subroutine") for low, high in context.info.ranges(entry))


def _named_in_another_unit(context, side, row, own, peer):
    info = context.info
    return side == "here" and any(
        entry.is_tag("variable") and info.name(entry) == row[0] and not entry.has("DW_AT_name") and
        info.root(entry) is not info.root(info.origin(entry)) for entry in info.all() if info.origin(entry))


def _dropped_variable(context, side, row, own, peer):
    return side == "here" and row[1] == 0 and 0 not in context.objects


def _template_without_arguments(context, side, row, own, peer):
    """The same type but for the arguments, in a file that has no template's name with them."""
    def bare(other):
        return *other[:3], re.sub(r"<.*>", "", other[3])
    if any("<" in (context.info.name(entry) or "") for entry in context.info.all()):
        return False
    return bare(row) in own if side == "peer" else row in {bare(other) for other in peer}


def _line_of_dropped_function(context, side, row, own, peer):
    info = context.info
    return side == "peer" and any(
        low <= row[2] < high for entry in info.all() if entry.is_tag("subprogram") and not info.ranges(entry)
        for low, high in info.described_ranges(entry))


def _frame_in_words(context, side, row, own, peer):
    def in_bytes(low, high, cfa, rules):
        return low, high, re.sub(r" (\d+)$", lambda match: f" {4 * int(match[1])}", cfa), rules
    return context.in_words and (in_bytes(*row) in own if side == "peer" else row in {in_bytes(*other) for other in peer})


def _entry_without_length(context, side, row, own, peer):
    """Own rows at such an entry say what it says, or begin behind it; the peer's go on over it, or begin behind it what
    goes on here."""
    _, name, _, place, first, end = row
    for entry in context.info.all():
        if entry.is_tag("variable", "formal_parameter") and (context.info.name(entry) or "") == name:
            for low, high, expression in context.info.places(entry):
                if low is None or low != high:
                    continue
                here = first <= low < end
                if here and (side == "peer" or facts.place_of(expression) == place):
                    return True
                if low == first - facts.STEP and (side == "here" or (*row[:4], low, end) in own):
                    return True
    return False


_KNOWN = [
    ("places of locals", _entry_without_length,
     "an entry of a location list without length holds at its address here, nowhere in the peers"),
    ("frame rows", _frame_in_words,
     "a section of the file says that its frames are counted in words, which readelf shows as they stand"),
    ("line at address", _one_of_several_lines,
     "several lines begin at one address: the database takes the first row of the table, gdb a later one"),
    ("line at address", _where_line_began,
     "gdb leaves out a row that goes on with the line of the row before, and answers with a row of where that began"),
    ("addresses of a line", _line_of_dropped_function,
     "a function that the linker dropped stands at address 0, with its lines in gdb where the program has data there"),
    ("addresses of a line", _later_row_of_address,
     "several lines begin at one address: the database gives it to the first row of the table"),
    ("addresses of a line", _row_that_goes_on,
     "gdb leaves out a row that goes on with the line of the row before"),
    ("addresses of a line", _before_another_file,
     "gdb leaves out a line that ends where it begins when the table goes on in another file"),
    ("function at address", _thumb_bit,
     "assemblers write the Thumb bit into the start of a function: gdb begins it one byte later"),
    ("function at address", _named_by_linker_alone,
     "what a compiler adds may have the linker's name alone, which gdb shows as source text"),
    ("function at address", _inlined_without_call,
     "gdb shows an inlined instance only where its call is described, which needs version 3"),
    ("types of variables (gdb)", _named_in_another_unit,
     "gdb finds no constant whose name stands in another unit, as link-time optimisation leaves it"),
    ("types of variables (gdb)", _dropped_variable,
     "a variable that the linker dropped stands at address 0: gdb leaves it out"),
    ("types of variables (gdb)", _template_without_arguments,
     "names of templates are shown as the compiler wrote them: gdb adds the arguments that they leave out"),
]
