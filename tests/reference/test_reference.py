#!/usr/bin/env python3
"""test_reference.py --xml DIRECTORY: the routine reference, as Doxygen's XML has it, is complete.

Every exported name stands on a page; every page has its purpose, its arguments by name, failures, published source,
accuracy, cost, and an example with output.
"""
import argparse
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import contract  # noqa: E402

WANTED = ["Purpose", "Source", "Failures", "Accuracy", "Cost", "Example"]


def sections(description):
    """heading -> the text below it."""
    found, current = {}, None

    def walk(element):
        nonlocal current
        if element.tag == "heading":
            current = element.text
            found[current] = ""
        else:
            add(element.text)
            for child in element:
                walk(child)
        add(element.tail)

    def add(text):
        if current:
            found[current] += text or ""

    walk(description)
    return {heading: text.strip() for heading, text in found.items()}


def complaints_of(group):
    found = sections(group.find("detaileddescription"))
    parameters = {name.text for name in group.iter("declname")}
    for heading in WANTED + (["Arguments"] if parameters else []):
        if not found.get(heading):
            yield f"no {heading}"
    described = dict(rows(group))
    for name in sorted(parameters):
        if not described.get(name):
            yield f"argument {name} is not described"
    if not found.get("Example", "").partition("Output:")[2].strip():
        yield "the example has no output"


def rows(group):
    """(name, meaning) of the table of arguments, where the direction is given."""
    for row in group.iter("row"):
        cells = ["".join(entry.itertext()).strip() for entry in row.findall("entry")]
        if len(cells) == 4 and cells[1] in ("in", "out", "in,out"):
            yield cells[0], cells[3]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--xml", type=pathlib.Path, required=True)
    options = parser.parse_args()

    groups = {}
    for path in options.xml.glob("group__*.xml"):
        group = ElementTree.parse(path).getroot().find("compounddef")
        groups[group.find("compoundname").text] = group
    complaints, shown, pages = [], set(), 0
    for header, top in groups.items():
        for inner in top.findall("innergroup"):
            code = inner.text.partition(":")[0]
            group = groups[code]
            pages += 1
            shown |= {member.findtext("name") for member in group.iter("memberdef")}
            complaints += [f"{header}.h, {code}: {complaint}" for complaint in complaints_of(group)]
    complaints += [f"{name} is exported, and on no page" for name in sorted(set(contract.names()) - shown)]
    print(*complaints, sep="\n")
    print(f"note: {pages} pages, {len(shown)} names")
    sys.exit(1 if complaints or not pages else 0)


if __name__ == "__main__":
    main()
