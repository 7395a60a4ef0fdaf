#!/usr/bin/env python3
"""contract.py [--check | --names]: writes what follows from the pages and declarations in include/tesk2mp/*.h alone.

The public headers are the contract: each routine's page names its forms, and some forms are mechanical. Those are
written to src/generated/:

  code entry      QuarnMP_f06paf_   calls the master QuarnMP_f06paf_ENTRY with selector 0
  published name  QuarnMP_dgemv_    calls the master of its page with selector 1, or the code's entry if there is none
  classic form    QuarnMP_c06faf_   calls the core form QuarnMP_c06fafn_ with its arguments by value; a core argument
                                    that it lacks is 0; `@preset{work,n}` on the page presets n elements of work

Companions (QuarnMPX_) have the same forms. Every other export is defined by hand; a definition that differs from its
declaration does not compile, and one that is missing stops the link: exports.map (ELF) and exports.def (PE) list every
export. The tables of routines in README.md and docs/routines.md, between two comments, come from the pages' titles. --check writes nothing and fails when
a file is not what would be written; --names prints all exported names.
"""
import dataclasses
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ROOT / "include/tesk2mp"
GENERATED = ROOT / "src/generated"
CODE = re.compile(r"(QuarnMPX?_)([a-z]\d\d[a-z]{3}n?)_")


@dataclasses.dataclass
class Function:
    """One declaration: arguments as (type, name)."""

    result: str
    name: str
    arguments: list

    def types(self):
        return {name: kind for kind, name in self.arguments}

    def signature(self):
        arguments = ", ".join(f"{kind} {name}" for kind, name in self.arguments)
        return f"{self.result} {self.name}({arguments})"


@dataclasses.dataclass
class Page:
    """One routine: the lines of its comment and its forms."""

    comment: list
    functions: list

    def code_and_title(self):
        return next(line for line in self.comment if line.startswith("@defgroup ")).split(" ", 2)[1:]

    def command(self, name):
        """What stands in the braces of each @name{...}."""
        return re.findall(rf"@{name}{{(.*?)}}", "\n".join(self.comment))


def function_of(declaration):
    result, name, inside = re.fullmatch(r"(.*?) (QuarnMPX?_\w+)\((.*)\)", declaration).groups()
    arguments = []
    for part in filter(None, (part.strip() for part in inside.split(","))):
        kind, argument = re.fullmatch(r"(.*?)(\w+)", part).groups()
        arguments.append((kind.strip(), argument))
    return Function(result, name, arguments)


def pages_of(header):
    """The pages of a header, in order: a comment of /// lines and the declarations that follow it."""
    pages, comment, declaration = [], [], None
    for line in header.read_text().splitlines():
        if line.startswith("///"):
            if not line.endswith("@}"):
                comment.append(line[3:].removeprefix(" "))
            continue
        if line.startswith("TESK2MP_API "):
            declaration = ""
            if comment or not pages:
                pages.append(Page(comment, []))
                comment = []
        elif not line.startswith(" "):
            comment = comment if line.startswith("//") or not line else []
        if declaration is not None:
            declaration += " " + line.strip()
            if declaration.endswith(";"):
                declaration = declaration.strip().removeprefix("TESK2MP_API ").removesuffix(";")
                pages[-1].functions.append(function_of(declaration))
                declaration = None
    return [page for page in pages if page.functions]


def headers():
    """header -> its pages, for every public header with exports."""
    found = {path.stem: pages_of(path) for path in sorted(HEADERS.glob("*.h"))}
    return {name: pages for name, pages in found.items() if pages}


def names():
    return [function.name for pages in headers().values() for page in pages for function in page.functions]


# Mechanical forms ----------------------------------------------------------------------------------------------------


def passed(kind, name):
    """An argument as it is handed on; copies of numbers are moved."""
    return f"std::move({name})" if kind in ("QuarnFloat", "Complex") else name


def by_selector(function, master, selector):
    arguments = [str(selector)] * (selector is not None) + [passed(*argument) for argument in function.arguments]
    returned = "" if function.result == "void" else "return "
    return [f"{returned}{master.name}({', '.join(arguments)});"]


def by_core(function, core, presets):
    own = function.types()
    arguments = []
    for kind, name in core.arguments:
        if name == "message_buffer" or name == "buffer_length" or own.get(name) == kind:
            arguments.append("outcome" if name == "ifail" else name)
        elif name not in own:
            arguments.append("0")
        elif own[name].removeprefix("const ").removesuffix("*") == kind:
            arguments.append(f"*{name}")
        else:
            sys.exit(f"{function.name}: {name} is {own[name]} here and {kind} in {core.name}")
    call = f"{core.name}({', '.join(arguments)});"
    if "message_buffer" not in core.types():
        return [call if function.result == "void" else f"return {call}"]
    code = CODE.fullmatch(function.name).group(2).upper()
    lines = [f"y90udf_({work}, *{count});" for work, count in (preset.split(",") for preset in presets)]
    lambda_head = "[&](char* message_buffer, Integer* outcome, int buffer_length)"
    return lines + [f'tesk::call_core("{code}", ifail, {lambda_head} {{ {call} }});']


def mechanical(page, every):
    """(function, lines of its body) for each mechanical form of a page."""
    for function in page.functions:
        prefix = re.match(r"QuarnMPX?_", function.name).group()
        code = CODE.fullmatch(function.name)
        if function.name.endswith("_ENTRY"):
            continue
        if code:
            master, core = every.get(function.name + "ENTRY"), every.get(f"{function.name[:-1]}n_")
            if master:
                yield function, by_selector(function, master, 0)
            elif core:
                yield function, by_core(function, core, page.command("preset"))
            continue
        others = [other for other in page.functions if other.name.startswith(prefix)]
        master = next((other for other in others if other.name.endswith("_ENTRY")), None)
        entry = next((other for other in others if CODE.fullmatch(other.name)), None)
        if master or entry:
            yield function, by_selector(function, master or entry, 1 if master else None)


def source_of(header, pages, every):
    """The generated source of a header, or None."""
    forms = [form for page in pages for form in mechanical(page, every)]
    if not forms:
        return None
    out = [f"// Made by tools/contract.py from include/tesk2mp/{header}.h; do not edit.", "// clang-format off",
           f'#include "tesk2mp/{header}.h"', "", "#include <utility>", "", '#include "src/frame/classic.h"', "",
           'extern "C" {']
    for function, body in forms:
        out += ["", f"{function.signature()} {{", *(f"  {line}" for line in body), "}"]
    return "\n".join(out + ["}", ""])


def export_lists():
    """The lists of exports for the linkers of both systems."""
    note = "Made by tools/contract.py from include/tesk2mp/*.h; do not edit."
    script = [f"/* {note} */", "{", "  global:", *(f"    {name};" for name in names()), "  local:", "    *;", "};", ""]
    definition = [f"; {note}", "LIBRARY tesk2mp.dll", "EXPORTS", *(f"  {name}" for name in names()), ""]
    return {"exports.map": "\n".join(script), "exports.def": "\n".join(definition)}


def title_of(header):
    """The first line of a header's comment."""
    return (HEADERS / f"{header}.h").read_text().partition("\n")[0].removeprefix("// ").rstrip(".")


def overview(found):
    """A row for each header: for README.md."""
    rows = ["| | routines | header |", "|---|---|---|"]
    for header, pages in found.items():
        codes = " ".join(f"`{page.code_and_title()[0]}`" for page in pages)
        rows.append(f"| {title_of(header)} | {codes} | [{header}.h](include/tesk2mp/{header}.h) |")
    return rows


def directory(found):
    """A row for each routine: for docs/routines.md."""
    rows = ["| routine | also called | what it does |", "|---|---|---|"]
    for pages in found.values():
        for page in pages:
            code, title = page.code_and_title()
            others = dict.fromkeys(re.sub(r"QuarnMPX?_|_ENTRY$|_$", "", function.name) for function in page.functions)
            others = " ".join(f"`{name}`" for name in others if name not in (code, code + "n"))
            companion = len({function.name[:8] == "QuarnMPX" for function in page.functions}) == 2
            rows.append(f"| `{code}` | {others} | {title}{' (with companion)' if companion else ''} |")
    return rows


def with_table(path, rows):
    """The text of a document with the table between its two comments replaced."""
    begin, end = "<!-- table: made by tools/contract.py -->\n", "<!-- end of table -->\n"
    head, _, rest = path.read_text().partition(begin)
    return head + begin + "\n" + "\n".join(rows) + "\n\n" + end + rest.partition(end)[2]


def main():
    if "--names" in sys.argv:
        print(*names(), sep="\n")
        return
    found = headers()
    every = {function.name: function for pages in found.values() for page in pages for function in page.functions}
    wanted = {f"{header}_forms.cpp": source_of(header, pages, every) for header, pages in found.items()}
    wanted = {GENERATED / name: text for name, text in (wanted | export_lists()).items() if text}
    for path, rows in ((ROOT / "README.md", overview(found)), (ROOT / "docs/routines.md", directory(found))):
        wanted[path] = with_table(path, rows)
    stale = [path for path, text in wanted.items() if not path.exists() or path.read_text() != text]
    stale += [path for path in GENERATED.glob("*") if path not in wanted]
    if "--check" in sys.argv:
        print(*(f"{path} is not what tools/contract.py writes" for path in stale), sep="\n")
        sys.exit(1 if stale else 0)
    for path in stale:
        if path in wanted:
            path.parent.mkdir(exist_ok=True)
            path.write_text(wanted[path])
        else:
            path.unlink()


if __name__ == "__main__":
    main()
