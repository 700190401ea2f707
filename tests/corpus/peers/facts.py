"""Facts of a program file: sets of tuples, by kind, from vexor-inspect and from llvm-dwarfdump."""

import collections
import re
import subprocess

import dropped
import place_text

TIME_LIMIT_S = 120
ALL_CODE = ["--from", "0", "--to", "0xfffffffe"]
STEP = 2  # bytes, the distance at which vexor-inspect looks for another place


def rows(inspect, what, path, *options):
    result = subprocess.run([inspect, what, path, *options], capture_output=True, text=True, errors="replace",
                            timeout=TIME_LIMIT_S, check=True)
    return [line.split("\t") for line in result.stdout.splitlines()]


def is_big_endian(path):
    with open(path, "rb") as file:
        return file.read(6)[5] == 2  # EI_DATA


def _address(text):
    return int(text, 16) if text.startswith("0x") else text


def place_of(expression):
    return _address(place_text.expected(expression))


# ---- Functions: (name, start, end)

def own_functions(inspect, path):
    return {(name, int(low, 16), int(high, 16)) for low, high, name, file, _ in rows(inspect, "functions", path) if file}


def peer_functions(info):
    return {(info.name(entry) or "", low & ~1, high & ~1) for entry in info.all()
            if entry.is_tag("subprogram") and not entry.has("DW_AT_declaration") for low, high in info.ranges(entry)}


# ---- Inlined instances: (name, start, end, file and line of the call, around)

def own_inlines(inspect, path):
    return {(name, int(low, 16), int(high, 16), file, int(line), around)
            for low, high, name, file, line, around in rows(inspect, "inlines", path)}


def _function_around(entry):
    scope = entry.parent
    while scope and scope.is_tag("lexical_block"):
        scope = scope.parent
    return scope


def _unit_name(entry):
    while entry.parent:
        entry = entry.parent
    return entry.text("DW_AT_name")


def peer_inlines(info):
    """The oldest version has no attributes for the call: the unit and line 0 then."""
    return {(info.qualified(entry), low, high, entry.text("DW_AT_call_file") or _unit_name(entry),
             entry.number("DW_AT_call_line") or 0, info.qualified(_function_around(entry)))
            for entry in info.all() if entry.is_tag("inlined_subroutine") and not entry.has("DW_AT_artificial")
            for low, high in info.ranges(entry)}


# ---- Variables outside functions: (name, place, size, line)

def own_globals(inspect, path):
    return {(name, _address(place), int(size), int(line))
            for place, size, _, name, _, line in rows(inspect, "variables", path)}


def _in_function(entry):
    while entry:
        if entry.is_tag("subprogram", "inlined_subroutine"):
            return True
        entry = entry.parent
    return False


def _size(info, entry):
    """Bytes of the type of an entry."""
    count = 1
    entry = info.type_of(entry)
    while entry:
        if entry.is_tag("array_type"):
            for subrange in entry.children:
                upper, number = subrange.number("DW_AT_upper_bound"), subrange.number("DW_AT_count")
                count *= number if number is not None else upper + 1 if upper is not None else 1
        elif entry.is_tag("pointer_type", "reference_type", "rvalue_reference_type"):
            return 4 * count
        elif entry.is_tag("ptr_to_member_type"):  # a function's is two words, its address and what is added to "this"
            return (8 if info.type_of(entry).is_tag("subroutine_type") else 4) * count
        elif info.definition(entry).number("DW_AT_byte_size"):
            return info.definition(entry).number("DW_AT_byte_size") * count
        entry = info.type_of(entry)
    return 0


def peer_globals(info):
    """Link-time optimisation leaves an abstract entry, without a place, beside the concrete one: only that one counts."""
    found = set()
    abstract = [info.origin(entry) for entry in info.all() if entry.is_tag("variable") and info.places(entry)]
    for entry in info.all():
        if not entry.is_tag("variable") or _in_function(entry) or entry.has("DW_AT_declaration"):
            continue
        if info.holder(entry, "DW_AT_artificial"):
            continue
        places = info.places(entry)
        if not info.holder(entry, "DW_AT_location") and any(entry is other for other in abstract):
            continue
        place = place_of(places[0][2]) if places else "-"
        found.add((info.qualified(entry), place, _size(info, entry), info.number(entry, "DW_AT_decl_line")))
    return found


# ---- Members: (kind, qualified name, first bit, bits, size); enumerators: (qualified name, value). Bits count from the
# beginning of the record, in big endian the most significant bit of a byte first.

def own_types(inspect, path):
    members, enumerators = set(), set()
    for row in rows(inspect, "types", path):
        if row[0] == "enumerator":
            enumerators.add((row[1], int(row[4])))
        elif row[0] in ("member", "base"):
            size, offset = int(row[2]), int(row[4])
            first, bits = (int(row[5]), int(row[6])) if len(row) > 5 else (0, 0)
            members.add((row[0], row[1], 8 * offset + first, bits, size))
    return members, enumerators


def _first_bit(info, entry, big_endian):
    """The old attribute counts from the most significant bit of a storage unit, the new one as we do."""
    if entry.has("DW_AT_data_bit_offset"):
        return entry.number("DW_AT_data_bit_offset")
    if not entry.has("DW_AT_bit_offset"):
        return 0
    storage = 8 * (entry.number("DW_AT_byte_size") or _size(info, entry))
    from_top = entry.number("DW_AT_bit_offset")
    return from_top if big_endian else storage - from_top - entry.number("DW_AT_bit_size")


def _members(info, record, owner, base, big_endian, found):
    for entry in record.children:
        if entry.has("DW_AT_artificial") or not entry.is_tag("member", "inheritance"):
            continue
        name = info.name(entry) or ""
        if entry.is_tag("inheritance"):
            name = info.name(info.type_of(entry))
        elif entry.has("DW_AT_external") or entry.has("DW_AT_declaration") or entry.has("DW_AT_const_value"):
            continue  # belongs to the class, not to the object
        offset = base + (entry.number("DW_AT_data_member_location") or 0)
        kind = "base" if entry.is_tag("inheritance") else "member"
        bits = entry.number("DW_AT_bit_size") or 0
        found.add((kind, owner + name, 8 * offset + _first_bit(info, entry, big_endian), bits, _size(info, entry)))
        inner = info.stripped(info.type_of(entry))
        if inner and kind == "member" and inner.is_tag("structure_type", "union_type", "class_type"):
            if not info.name(inner):
                _members(info, inner, owner + name + "." if name else owner, offset, big_endian, found)


def peer_types(info, big_endian):
    members, enumerators = set(), set()
    for entry in info.all():
        target = info.stripped(entry) if entry.is_tag("typedef") else entry
        if target is None or entry.has("DW_AT_declaration") or entry.has("DW_AT_artificial"):
            continue
        if target is not entry and info.name(target):
            continue
        if not info.name(entry) or not target.number("DW_AT_byte_size"):
            continue
        owner = info.qualified(entry) + "::"
        if target.is_tag("structure_type", "class_type", "union_type"):
            _members(info, target, owner, 0, big_endian, members)
        elif target.is_tag("enumeration_type"):
            enumerators |= {(owner + info.name(child), child.number("DW_AT_const_value")) for child in target.children
                            if child.is_tag("enumerator")}
    return members, enumerators


# ---- Places of local variables: (function, its start, variable, line, place, start, end)

def own_places(inspect, path):
    """Merged runs of one place, for each range of a function or instance and each of its variables."""
    found = set()
    for place, _, _, name, _, line, function, low, high in rows(inspect, "variables", path, *ALL_CODE):
        found.add((function, name, int(line), _address(place), int(low, 16), int(high, 16)))
    return _merged(found)


def _merged(places):
    """Rows that touch and say the same become one."""
    by_variable = collections.defaultdict(list)
    for *key, low, high in places:
        by_variable[tuple(key)].append((low, high))
    merged = set()
    for key, ranges in by_variable.items():
        ranges.sort()
        low, high = ranges[0]
        for next_low, next_high in ranges[1:]:
            if next_low > high:
                merged.add((*key, low, high))
                low = next_low
            high = max(high, next_high)
        merged.add((*key, low, high))
    return merged


def _locals(info, function):
    """With those that a compiler has left in the abstract function, being the same wherever its code stands."""
    own = list(_own_locals(function))
    origin = info.target(function, "DW_AT_abstract_origin")
    described = {id(info.target(entry, "DW_AT_abstract_origin")) for entry in own}
    return own + [entry for entry in (_own_locals(origin) if origin else []) if id(entry) not in described]


def _own_locals(entry):
    for child in entry.children:
        if child.is_tag("variable", "formal_parameter"):
            yield child
        elif child.is_tag("lexical_block"):
            yield from _own_locals(child)


def _place_at(places, address):
    for low, high, expression in places:
        if low is None or low <= address < high:
            return place_of(expression)
    return "-"


def peer_places(info):
    found = set()
    for function in info.all():
        if not function.is_tag("subprogram", "inlined_subroutine") or function.has("DW_AT_declaration"):
            continue
        for low, high in info.ranges(function):
            for entry in _locals(info, function):
                places = info.places(entry)
                key = info.qualified(function), info.name(entry) or "", info.number(entry, "DW_AT_decl_line") or 0
                for address in range(low & ~1, high & ~1, STEP):
                    place = _place_at(places, address)
                    if place != "-":
                        found.add((*key, place, address, min(address + STEP, high)))
    return _merged(found)


# ---- Rows of call frame information: (start, end, canonical frame address, rules)

def own_frames(inspect, path):
    return _merge_rows({(int(low, 16), int(high, 16), cfa, rules)
                        for low, high, cfa, rules in rows(inspect, "frames", path)})


_NAMES = {"ra": 14, "sp": 13, "lr": 14, "pc": 15}


def _signed(text):
    number = int(text)
    return "" if number == 0 else f" {'+' if number > 0 else '-'} {abs(number)}"


def _rule(column, rule):
    register = _NAMES.get(column) or int(column[1:])
    name = f"D{register - 256}" if register >= 256 else f"S{register - 64}" if 64 <= register < 96 else f"R{register}"
    if rule.startswith("c"):
        return register, f"{name}=[CFA{_signed(rule[1:])}]"
    if rule.startswith("v"):
        return register, f"{name}=CFA{_signed(rule[1:])}"
    if rule.startswith("r") and rule != column:
        return register, f"{name}=R{_NAMES.get(rule) or int(rule[1:])}"
    return register, None


_FRAME_HEADER = re.compile(r"([0-9a-f]{8}) [0-9a-f]+ [0-9a-f]+ (?:CIE|FDE cie=([0-9a-f]+) pc=([0-9a-f]+)\.\.([0-9a-f]+))")


def readelf_frames(path):
    """Rows of readelf's interpretation, those with the same rules merged. An entry without instructions of its own has
    no row there: it is its common entry's."""
    text = subprocess.run(["readelf", "--debug-dump=frames-interp", path], capture_output=True, text=True,
                          timeout=TIME_LIMIT_S, check=True).stdout
    section, entries, columns = "", [], []  # (number of its common entry or None, own number, start, end, rows)
    for line in text.splitlines():
        match = _FRAME_HEADER.match(line)
        if match:
            number, common, low, high = match.groups()
            entries.append((common and section + common, section + number, int(low or "0", 16), int(high or "0", 16), []))
        elif line.startswith("Contents of"):
            section = line
        elif "LOC" in line.split()[:1]:
            columns = line.split()[2:]
        elif entries and re.match(r"[0-9a-f]{8} +\S+[+-]", line):
            address, cfa, *rules = line.split()
            entries[-1][4].append((int(address, 16), _cfa(cfa), _rules(columns, rules)))
    initial = {number: lines[0][1:] for common, number, _, _, lines in entries if common is None and lines}
    found = set()
    for common, _, low, high, lines in entries:
        if common is None or dropped.is_dropped(path, low, high):
            continue
        lines = lines or [(low, *initial[common])]
        ends = [line[0] for line in lines[1:]] + [high]
        found |= {(line[0], end, *line[1:]) for line, end in zip(lines, ends) if line[0] < end}
    return _merge_rows(found)


def _cfa(text):
    match = re.match(r"r(\d+)([+-]\d+)$", text)
    return ("SP" if match[1] == "13" else f"R{match[1]}") + _signed(match[2]) if match else "?"


def _rules(columns, rules):
    texts = sorted(rule for rule in map(_rule, columns, rules) if rule[1])
    return " ".join(text for _, text in texts)


def _merge_rows(found):
    merged = []
    for low, high, *rest in sorted(found):
        if merged and merged[-1][1] == low and merged[-1][2:] == (*rest,):
            merged[-1] = (merged[-1][0], high, *rest)
        else:
            merged.append((low, high, *rest))
    return set(merged)


# ---- Stack: (line of the function, bytes of its frame). The compiler's list has functions that the linker dropped, and
# one compiler gives its unit's file to functions of headers.

def own_stack(inspect, path):
    frames = {(low, name): frame for low, frame, _, _, name, _ in rows(inspect, "stack", path)}
    return {(int(line), int(frames[low, name])) for low, _, name, _, line in rows(inspect, "functions", path)
            if int(line) and int(low, 16)}


def compiler_stack(path, own):
    kept = {line for line, _ in own}
    lines = (row.split("\t") for row in path.with_suffix(".su").read_text().splitlines())
    return {(int(line), int(size)) for _, line, size in lines if int(line) in kept}


# ---- Symbols by number, rows of the line tables and segments, against readelf

def pairs_of_elf(inspect, path):
    peer = _readelf_symbols(path)
    own = [(int(value, 16), kind, binding, name, int(size)) for value, size, kind, binding, _, name in
           (row[:6] for row in rows(inspect, "symbols", path))]
    # The reader fills in sizes that are missing.
    own = [(*row[:4], row[4] * (other[4] != 0)) for row, other in zip(own, peer)] + own[len(peer):]
    yield "symbols", set(enumerate(own)), set(enumerate(peer))
    yield "rows of line tables", _counted(
        (int(row[0], 16), "end" if "E" in row[4] else row[2]) for row in rows(inspect, "lines", path)), _counted(
        (int(address, 16), "end" if line == "-" else line) for line, address in _matches(
            r"\S.*?\s+(\d+|-)\s+(0x[0-9a-f]+|0)(?:\[\d+\])?(?:\s+(?:\d+|x|END))*\s*$", "--debug-dump=decodedline", path))
    yield "segments", _counted(
        (int(row[0], 16), int(row[1], 16), int(row[2]), int(row[3])) for row in rows(inspect, "segments", path)), _counted(
        tuple(int(fields[i], 16) for i in (1, 0, 2, 3)) for fields in _matches(
            r"\s+LOAD\s+\S+ (\S+) (\S+) (\S+) (\S+)", "-lW", path))


def _matches(pattern, option, path):
    """Groups of the lines of readelf's answer that match."""
    text = subprocess.run(["readelf", option, path], capture_output=True, text=True, errors="replace",
                          timeout=TIME_LIMIT_S, check=True).stdout
    return [match.groups() for match in map(re.compile(pattern).match, text.splitlines()) if match]


def _counted(found):
    return set(collections.Counter(found).items())


def _readelf_symbols(path):
    """Value, type, binding, name and size; readelf shows a section's own name as that of its symbol."""
    return [(int(value, 16), kind, binding, "" if kind == "SECTION" else name or "", int(size, 0))
            for value, size, kind, binding, name in _matches(
                r"\s*\d+: ([0-9a-f]{8})\s+(\S+) (\S+)\s+(\S+)\s+\S+\s+\S+(?: (.*))?$", "-sW", path)]
