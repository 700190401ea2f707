"""What gdb and the program database say of the code of a program file, in the same words."""

import collections
import pathlib
import re
import subprocess

import facts

TOOL = "gdb-multiarch"
SCRIPT = pathlib.Path(__file__).with_name("gdb_facts.py")


def _by_kind(text):
    found = collections.defaultdict(list)
    for line in text.splitlines():
        kind, *columns = line.split("\t")
        found[kind].append(columns)
    return found


def _gdb_facts(folder, path, variables=()):
    ranges, others = (_code_ranges(folder, path, described) for described in (True, False))
    setting = f"python CODE_RANGES = {ranges}; OTHER_RANGES = {others}; VARIABLE_NAMES = {list(variables)}"
    result = subprocess.run([TOOL, "-nx", "-batch", "-ex", setting, "-x", SCRIPT, path], capture_output=True, text=True,
                            errors="replace", timeout=facts.TIME_LIMIT_S, check=True)
    found = _by_kind(result.stdout)
    if "end" not in found:  # gdb itself ends well when its script fails
        raise RuntimeError(result.stderr)
    return found


def _file(path):
    return path.rsplit("/", 1)[-1]


def _bare(name):
    """Without scopes, parameters and template arguments, which gdb adds."""
    depth, kept = 0, ""
    for character in name.replace("(anonymous namespace)::", "").replace("->", ""):
        depth -= character in ")>"
        kept += character if depth == 0 and character not in "()<>" else ""
        depth += character in "(<"
    return kept.split(" const")[0].split("::")[-1].strip()


def _own(folder):
    return folder / "vexor-inspect"


def _code_ranges(folder, path, described):
    """Of the functions that debug information describes, or of the others."""
    found = facts.rows(_own(folder), "functions", path)
    ranges = {(int(low, 16), int(high, 16)) for low, high, _, file, _ in found if bool(file) == described}
    return sorted((low, high) for low, high in ranges if low)


def _bare_type(text):
    """Without qualifiers, keywords and scopes, the base types under their short names."""
    text = re.sub(r"\b(const|volatile|static|struct|class|union|enum) ", "", text)
    text = re.sub(r"(\w+|\(anonymous namespace\))::(?![*])", "", text)
    for pattern, short in (("long long unsigned int", "long ulong"), ("unsigned long long", "long ulong"),
                           ("long unsigned int", "ulong"), ("short unsigned int", "ushort"), ("unsigned ", "u"),
                           ("long long int", "long long"), ("long int", "long"), ("short int", "short"),
                           ("signed char", "char")):
        text = text.replace(pattern, short)
    return text


def pairs_of_lines(folder, path):
    """(kind, own facts, gdb's facts) of lines and functions by address, and of addresses by line."""
    result = subprocess.run([folder / "program_facts", path], capture_output=True, text=True,
                            timeout=facts.TIME_LIMIT_S, check=True)
    own, peer = _by_kind(result.stdout), _gdb_facts(folder, path)
    own_at = {int(address, 16): (_file(file), int(line), inner) for address, file, line, inner, _ in own["at"]}
    peer_at = {int(address, 16): (_file(file), int(line), name) for address, file, line, name in peer["at"]}
    yield ("line at address", {(address, *own_at.get(address, ("", 0))[:2]) for address in peer_at},
           {(address, *found[:2]) for address, found in peer_at.items()})
    yield ("function at address", {(address, _bare(own_at.get(address, [""])[-1])) for address in peer_at},
           {(address, _bare(found[2])) for address, found in peer_at.items()})
    yield ("addresses of a line",
           {(_file(file), int(line), int(address, 16)) for file, line, address in own["line"]},
           {(_file(file), int(line), int(address, 16)) for file, line, address in peer["line"] if int(line)})


def pairs_of_data(folder, path):
    """The same of variables with an address: name, size and type. Scopes, and what a record consists of, are the other
    peer's."""
    variables = [row for row in facts.rows(_own(folder), "variables", path) if row[0].startswith("0x")]
    peer = _gdb_facts(folder, path, sorted({row[3] for row in variables}))
    yield ("types of variables (gdb)",
           {(_bare(name), int(address, 16), int(size), _bare_type(text)) for address, size, text, name, *_ in variables},
           {(_bare(name), int(address, 16), int(size), _bare_type(text)) for name, address, size, text in peer["variable"]})
