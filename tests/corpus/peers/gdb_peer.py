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


def _gdb_facts(path, ranges, variables=()):
    setting = f"python CODE_RANGES = {ranges}; VARIABLE_NAMES = {list(variables)}"
    result = subprocess.run([TOOL, "-nx", "-batch", "-ex", setting, "-x", SCRIPT, path], capture_output=True, text=True, errors="replace", timeout=facts.TIME_LIMIT_S, check=True)
    return _by_kind(result.stdout)


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


def _code_ranges(folder, path):
    return sorted({(low, high) for _, low, high in facts.own_functions(_own(folder), path) if low})


def _bare_type(text):
    """Without qualifiers, keywords and scopes, the base types under their short names."""
    text = re.sub(r"\b(const|volatile|static|struct|class|union|enum) ", "", text)
    text = re.sub(r"\w+::", "", text)
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
    own, peer = _by_kind(result.stdout), _gdb_facts(path, _code_ranges(folder, path))
    own_at = {int(address, 16): (_file(file), int(line), inner) for address, file, line, inner, _ in own["at"]}
    peer_at = {int(address, 16): (_file(file), int(line), name) for address, file, line, name in peer["at"]}
    both = own_at.keys() & peer_at.keys()
    yield ("line at address", {(address, *own_at[address][:2]) for address in both},
           {(address, *peer_at[address][:2]) for address in both})
    yield ("function at address", {(address, _bare(own_at[address][2])) for address in both},
           {(address, _bare(peer_at[address][2])) for address in both})
    yield ("addresses of a line",
           {(_file(file), int(line), int(address, 16)) for file, line, address in own["line"]},
           {(_file(file), int(line), int(address, 16)) for file, line, address in peer["line"] if int(line)})


def pairs_of_data(folder, path):
    """The same of types of variables. What these consist of, and sizes, are the other peer's."""
    variables = facts.rows(_own(folder), "variables", path)
    peer = _gdb_facts(path, _code_ranges(folder, path), sorted({row[3] for row in variables}))
    own_types = {(_bare(row[3]), int(row[0], 16), _bare_type(row[2]))
                 for row in variables if row[0].startswith("0x")}
    peer_types = {(_bare(name), int(address, 16), _bare_type(text)) for name, address, _, text in peer["variable"] if text}
    places = {row[1] for row in peer_types if row[1]}
    yield ("types of variables (gdb)", {row for row in own_types if row[1] in places},
           {row for row in peer_types if row[1]})
