"""The public headers and the binary name the same exports, and each binary imports no more than it may."""

import argparse
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import contract  # noqa: E402

RUNTIME = {"kernel32.dll", "msvcrt.dll"}
MAY_IMPORT = {
    "tesk2mp": RUNTIME | {"qrnfloat.dll", "quarnc.dll"},
    "qrnfloat": RUNTIME | {"quarnc.dll"},
    "quarnc": RUNTIME,
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exported_by_elf(nm, library):
    """Names of the dynamic symbols, all of which must be functions."""
    symbols = [line.split() for line in output(nm, "-D", "--defined-only", library).splitlines()]
    return [name if kind == "T" else f"{name} (of kind {kind})" for _, kind, name in symbols]


def exported_by_dll(objdump, library):
    table = output(objdump, "-p", library).split("[Ordinal/Name Pointer] Table", 1)[1]
    return re.findall(r"^\s*\[ *\d+\] (?:\+base\[ *\d+\] *[0-9a-f]+ )?(\S+)$", table.split("\n\n", 1)[0], flags=re.M)


def imports_of_dll(objdump, library):
    """{dll name: [imported names]}"""
    sections = re.split(r"^\s*DLL Name: (\S+)$", output(objdump, "-p", library), flags=re.M)
    tables = [section.split("\n\n", 1)[0] for section in sections[2::2]]
    return {dll: re.findall(r"^\s+[0-9a-f]+\s+\d+\s+(\S+)", table, flags=re.M) for dll, table in zip(sections[1::2], tables)}


def check_imports(objdump, library):
    imports = imports_of_dll(objdump, library)
    extra = {dll.lower() for dll in imports} - MAY_IMPORT[pathlib.Path(library).stem]
    problems = [f"{library} imports {dll}" for dll in sorted(extra)]
    if pathlib.Path(library).stem == "tesk2mp" and "DisableThreadLibraryCalls" not in imports.get("KERNEL32.dll", []):
        problems.append(f"{library} does not import DisableThreadLibraryCalls")
    return problems


def compare(title, names, reference):
    problems = [f"{title}: '{name}' is not declared" for name in sorted(set(names) - set(reference))]
    problems += [f"{title}: '{name}' is missing" for name in sorted(set(reference) - set(names))]
    problems += [f"{title}: '{name}' stands there twice" for name in sorted(set(names)) if names.count(name) > 1]
    return problems


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--library", required=True)
    parser.add_argument("--host", nargs="*", default=[])
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--objdump", default="objdump")
    options = parser.parse_args()

    names = contract.names()
    problems = compare("headers", names, names)
    if options.library.endswith(".dll"):
        problems += compare("DLL", exported_by_dll(options.objdump, options.library), names)
        for library in [options.library, *options.host]:
            problems += check_imports(options.objdump, library)
    else:
        problems += compare("library", exported_by_elf(options.nm, options.library), names)

    print("\n".join(problems) or f"{len(names)} names agree")
    return 1 if problems or not names else 0


if __name__ == "__main__":
    sys.exit(main())
