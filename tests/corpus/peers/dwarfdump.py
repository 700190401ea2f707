"""The debug information of a program file as llvm-dwarfdump prints it: a tree of entries."""

import re
import subprocess

import dropped

TOOL = "llvm-dwarfdump-14"
TIME_LIMIT_S = 120

ADDRESS_HEADER_SIZE = 8  # of a list of addresses in the 32-bit format
LENGTH_FIELD_SIZE = 4
_RECORDS = ["structure_type", "class_type", "union_type"]

_ENTRY = re.compile(r"^0x([0-9a-f]{8,16}):( +)(DW_TAG_\w+|NULL)")
_ATTRIBUTE = re.compile(r"^ +(DW_AT_\w+)\t\((.*)$", re.DOTALL)
_RANGE = re.compile(r"\[0x([0-9a-f]+), 0x([0-9a-f]+)\)")
_TYPE_UNIT = re.compile(r"^0x([0-9a-f]{8,16}): Type Unit:.* type_signature = 0x([0-9a-f]+), type_offset = 0x([0-9a-f]+)")
_REFERENCE = re.compile(r"0x([0-9a-f]+)( \"|$)")


class Entry:
    def __init__(self, offset, tag, depth, parent, types):
        self.offset, self.tag, self.depth, self.parent, self.types = offset, tag, depth, parent, types
        self.attributes = {}
        self.children = []

    def text(self, name):
        value = self.attributes.get(name)
        return value[1:-1] if value and value.startswith('"') else None

    def number(self, name):
        """The value of an attribute, None where it is absent or no number."""
        match = re.match(r"(-?(?:0x[0-9a-f]+|\d+))", self.attributes.get(name, ""))
        if match:
            return int(match[1], 0)
        match = re.match(r"DW_OP_plus_uconst (0x[0-9a-f]+)$", self.attributes.get(name, ""))
        return int(match[1], 16) if match else None

    def has(self, name):
        return name in self.attributes

    def is_tag(self, *names):
        return self.tag in ["DW_TAG_" + name for name in names]


class DebugInfo:
    def __init__(self, path):
        # Its own text of a location list ends a line with the expression: one entry of the list a line.
        result = subprocess.run([TOOL, "--debug-info", "--debug-types", path], capture_output=True, text=True,
                                errors="replace", timeout=TIME_LIMIT_S, check=True)
        self.path = path
        self.roots, self._by_offset, self._signatures = [], {}, {}
        self._read(result.stdout.splitlines())
        self._addresses = self._read_addresses(path)
        with open(path, "rb") as file:
            self._byte_order = "big" if file.read(6)[5] == 2 else "little"  # EI_DATA
        self._definitions = {id(self.target(entry, "DW_AT_specification")): entry for entry in self.all()
                             if entry.has("DW_AT_specification")}
        self._records = {self._record_key(entry): entry for entry in reversed(list(self.all()))
                         if entry.is_tag(*_RECORDS) and entry.has("DW_AT_byte_size")}

    @staticmethod
    def _read_addresses(path):
        """Lists of .debug_addr by the offset of their first address."""
        text = subprocess.run([TOOL, "--debug-addr", path], capture_output=True, text=True, errors="replace",
                              timeout=TIME_LIMIT_S, check=True).stdout
        lists, offset = {}, 0
        for header, body in re.findall(r"header: length = (0x[0-9a-f]+).*\nAddrs: \[\n([^\]]*)\]", text):
            lists[offset + ADDRESS_HEADER_SIZE] = [int(line, 16) for line in body.split()]
            offset += int(header, 16) + LENGTH_FIELD_SIZE
        return lists

    def _in_numbers(self, entry, expression):
        """An expression with the addresses that it names by their index, and bytes of a constant as its number."""
        base = self.root(entry).number("DW_AT_addr_base")
        expression = re.sub(r"DW_OP_addrx (0x[0-9a-f]+)",
                            lambda match: f"DW_OP_addr {self._addresses[base][int(match[1], 16)]:#x}", expression)
        return re.sub(r"DW_OP_implicit_value 0x\d((?: 0x[0-9a-f]{2})+)", self._constant, expression)

    def _constant(self, match):
        values = bytes(int(byte, 16) for byte in match[1].split())
        number = int.from_bytes(values, self._byte_order, signed=len(values) == 8)
        return f"DW_OP_constu {number}"

    def _read(self, lines):
        types, way, entry, attribute = False, [], None, None
        for line in lines:
            match = _ENTRY.match(line)
            if match:
                entry = attribute = None
                if match[3] != "NULL":
                    entry = self._enter(int(match[1], 16), match[3], len(match[2]), way, types)
                continue
            match = _TYPE_UNIT.match(line)
            if match:
                self._signatures[int(match[2], 16)] = types, int(match[1], 16) + int(match[3], 16)
            match = _ATTRIBUTE.match(line)
            if match and entry:
                attribute = match[1]
                entry.attributes[attribute] = match[2]
            elif entry and attribute and line.strip():
                entry.attributes[attribute] += "\n" + line.strip()
            elif line.startswith(".debug_"):
                types, entry = line.startswith(".debug_types"), None
        for known in self._by_offset.values():
            known.attributes = {name: value[:-1] if value.endswith(")") else value
                                for name, value in known.attributes.items()}

    def _enter(self, offset, tag, depth, way, types):
        while way and way[-1].depth >= depth:
            way.pop()
        entry = Entry(offset, tag, depth, way[-1] if way else None, types)
        (way[-1].children if way else self.roots).append(entry)
        way.append(entry)
        self._by_offset[types, offset] = entry
        return entry

    def all(self):
        return self._by_offset.values()

    def in_type_units(self):
        return [entry for entry in self.all() if self.root(entry).is_tag("type_unit")]

    @staticmethod
    def root(entry):
        while entry.parent:
            entry = entry.parent
        return entry

    def target(self, entry, name):
        """The entry that an attribute refers to; None where it names none. A type unit is named by its signature."""
        match = _REFERENCE.match(entry.attributes.get(name, ""))
        if not match:
            return None
        number = int(match[1], 16)
        key = (entry.types, number)
        return self._by_offset.get(key) or self._by_offset.get(self._signatures.get(number))

    def origin(self, entry):
        return self.target(entry, "DW_AT_abstract_origin") or self.target(entry, "DW_AT_specification")

    def holder(self, entry, attribute):
        """The entry that has the attribute: itself, or what it is an instance or a definition of."""
        for _ in range(6):
            if entry is None or entry.has(attribute):
                return entry
            entry = self.origin(entry)
        return None

    def definition(self, entry):
        """The entry that completes a declaration, or the entry itself; a record's may stand in another unit."""
        found = self._definitions.get(id(entry), entry)
        if found is entry and entry.is_tag(*_RECORDS) and entry.has("DW_AT_declaration"):
            return self._records.get(self._record_key(entry), entry)
        return found

    def _record_key(self, entry):
        return entry.is_tag("union_type"), self.qualified(entry)

    def name(self, entry):
        """A class in a type unit leaves an entry without name behind where its functions are, and what a compiler adds may
        have the linker's name alone."""
        holder = self.holder(entry, "DW_AT_name") or self.target(entry, "DW_AT_signature")
        return holder.text("DW_AT_name") if holder else entry.text("DW_AT_linkage_name")

    def number(self, entry, attribute):
        holder = self.holder(entry, attribute)
        return holder.number(attribute) if holder else None

    def first_form(self, entry):
        """The declaration or abstract entry behind an instance, which stands in its scope."""
        for _ in range(6):
            origin = self.origin(entry)
            if origin is None:
                return entry
            entry = origin
        return entry

    def qualified(self, entry):
        """Its name with the classes and namespaces around it."""
        parts = [self.name(entry) or ""]
        scope = self.first_form(entry).parent
        while scope:
            if scope.is_tag(*_RECORDS, "namespace", "enumeration_type"):
                scope = self.first_form(scope)
                if self.name(scope):
                    parts.append(self.name(scope))
            scope = scope.parent
        return "::".join(reversed(parts))

    def type_of(self, entry):
        """What DW_AT_type names; the type unit's entry for a declaration that stands for it."""
        holder = self.holder(entry, "DW_AT_type")
        named = self.target(holder, "DW_AT_type") if holder else None
        return self.target(named, "DW_AT_signature") or named if named else None

    def stripped(self, entry):
        """Behind typedefs and qualifiers."""
        for _ in range(25):
            if entry is None or not entry.is_tag("typedef", "const_type", "volatile_type"):
                return entry
            entry = self.type_of(entry)
        return None

    def ranges(self, entry):
        """None in a function that the linker dropped."""
        function = entry
        while function and not function.is_tag("subprogram"):
            function = function.parent
        own = self.described_ranges(function) if function else []
        if own and all(dropped.is_dropped(self.path, low, high) for low, high in own):
            return []
        return self.described_ranges(entry)

    def described_ranges(self, entry):
        """Those of a function that the linker dropped too."""
        found = [(int(low, 16), int(high, 16)) for low, high in _RANGE.findall(entry.attributes.get("DW_AT_ranges", ""))]
        if not found and entry.has("DW_AT_low_pc") and entry.has("DW_AT_high_pc"):
            found = [(entry.number("DW_AT_low_pc"), entry.number("DW_AT_high_pc"))]
        return found

    def places(self, entry):
        """[(low, high, expression)] of a location; low and high are None for one that holds everywhere. A constant that
        is written as a number stands as an expression with that number as its value."""
        holder = self.holder(entry, "DW_AT_location")
        if not holder and self.number(entry, "DW_AT_const_value") is not None:
            return [(None, None, f"DW_OP_consts {self.number(entry, 'DW_AT_const_value')}, DW_OP_stack_value")]
        text = self._in_numbers(entry, holder.attributes["DW_AT_location"]) if holder else ""
        if text.startswith("DW_OP") or not text:
            return [(None, None, text)] if text else []
        found = re.findall(r"\[0x([0-9a-f]+), 0x([0-9a-f]+)\): ([^\n]*)", text)
        return [(int(low, 16), int(high, 16), expression) for low, high, expression in found]
