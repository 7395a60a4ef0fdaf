"""What the binaries of a build or of an installed tree say of themselves: where they look for libraries, and how they are
hardened. binaries.py [--hardened] FOLDER..."""

import argparse
import pathlib
import re
import subprocess
import sys


def output(*command):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True).stdout


def below(folders, magic):
    """The files under the folders that start with these bytes."""
    for folder in folders:
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if path.is_file() and not path.is_symlink() and path.suffix not in (".o", ".a"):
                with path.open("rb") as file:
                    if file.read(len(magic)) == magic:
                        yield path


def elf_problems(path, hardened, installed):
    dynamic = output("readelf", "--dynamic", "--wide", path)
    for kind, listed in re.findall(r"\((RPATH|RUNPATH)\).*\[(.*)\]", dynamic):
        for element in listed.split(":"):
            if not element.startswith("$ORIGIN"):
                yield f"{kind} [{listed}] has the element '{element}'"
            elif installed and not any(pathlib.Path(element.replace("$ORIGIN", str(path.parent))).glob("libqrnfloat*")):
                yield f"{kind} [{listed}] has the element '{element}', where no library is"
    if not hardened:
        return
    if "BIND_NOW" not in dynamic and not re.search(r"FLAGS_1.*\bNOW\b", dynamic):
        yield "functions are bound late"
    segments = output("readelf", "--segments", "--wide", path)
    if "GNU_RELRO" not in segments:
        yield "no table is read-only after loading"
    if not re.search(r"GNU_STACK .* RW +0x", segments):
        yield "the stack is executable"
    if "DYN (" not in output("readelf", "--file-header", path):
        yield "has a fixed address"


def pe_problems(path, objdump):
    flags = int(re.search(r"^DllCharacteristics\s+([0-9a-f]+)", output(objdump, "-p", path), flags=re.M)[1], 16)
    for bit, name in ((0x40, "DYNAMICBASE"), (0x100, "NXCOMPAT")):
        if not flags & bit:
            yield f"without {name}"
    if not re.search(r"^\s*\d+ \.reloc ", output(objdump, "-h", path), flags=re.M):
        yield "cannot be loaded at another address"


def compiled_problems(library):
    """How the code of a library was compiled, as its imports and its functions show."""
    imports = output("nm", "-D", "--undefined-only", library)
    if "__stack_chk_fail" not in imports:
        yield "no function has a canary"
    machine = output("readelf", "--file-header", library)
    if "X86-64" in machine:
        code = output("objdump", "-d", "--no-show-raw-insn", library)
        starts = re.findall(r"^[0-9a-f]+ <([^>]*)>:\n.*?:\t(\S+)", code, flags=re.M)
        exported = set(re.findall(r" T (\S+)$", output("nm", "-D", "--defined-only", library), flags=re.M))
        unmarked = [name for name, first in starts if name in exported and first != "endbr64"]
        if not exported or unmarked:
            yield f"functions that indirect calls may not reach: {unmarked[:5]}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--hardened", action="store_true", help="the build is one for use: not instrumented")
    parser.add_argument("--installed", action="store_true", help="nothing is looked for where only a build has it")
    parser.add_argument("--libraries", nargs="*", default=[], help="libraries whose code is looked at")
    parser.add_argument("--checked-calls", help="a binary that calls the checked forms of C functions")
    parser.add_argument("--objdump", default="objdump")
    parser.add_argument("folders", nargs="+")
    options = parser.parse_args()

    problems, count = [], 0
    for path in below(options.folders, b"\x7fELF"):
        count += 1
        problems += [f"{path}: {problem}" for problem in elf_problems(path, options.hardened, options.installed)]
    for path in below(options.folders, b"MZ"):
        count += 1
        problems += [f"{path}: {problem}" for problem in pe_problems(path, options.objdump)]
    for library in options.libraries:
        problems += [f"{library}: {problem}" for problem in compiled_problems(library)]
    if options.checked_calls and not re.search(r"__\w+_chk\b", output("nm", "-D", "--undefined-only", options.checked_calls)):
        problems.append(f"{options.checked_calls}: calls no checked function")
    print("\n".join(problems) or f"{count} binaries are as they should be")
    return 1 if problems or not count else 0


if __name__ == "__main__":
    sys.exit(main())
