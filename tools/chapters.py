"""The chapters under docs/ as pages of the routine reference: what Doxygen's Markdown reader cannot do with them itself."""
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent


def page_of(path):
    """docs/guide/cpp.md -> guide_cpp, the name of its page."""
    return "_".join(path.resolve().relative_to(ROOT / "docs").with_suffix("").parts)


def title_of(path):
    return path.read_text().partition("\n")[0].removeprefix("# ")


def slug(heading):
    return re.sub(r"[^\w-]", "", heading.lower().replace(" ", "-"))


def link(match, path):
    """Chapters and their sections are pages and anchors; other files of the checkout are not there: their text alone."""
    text, target = match.groups()
    if "://" in target:
        return match.group(0)
    name, _, section = target.partition("#")
    other = path.parent / name if name else path
    if other.suffix != ".md" or not other.resolve().is_relative_to(ROOT / "docs"):
        return text
    anchor = f"#{page_of(other)}_{section}" if section else ""
    text = re.sub("`(.*?)`", r"<tt>\1</tt>", text)
    return f'<a href="{page_of(other)}.html{anchor}">{text}</a>'


def convert(path):
    lines, listing = [], False
    for line in path.read_text().splitlines():
        if line.startswith("```"):
            listing = not listing
        elif not listing:
            heading = re.fullmatch(r"(#+) (.*)", line)
            if heading:
                name = page_of(path) if heading[1] == "#" else f"{page_of(path)}_{slug(heading[2])}"
                line = f"{line} {{#{name}}}"
            line = re.sub(r"!\[(.*?)\]\((?:.*/)?(.*?)\)", r"![\1](\2)", line)
            line = re.sub(r"(?<!!)\[([^\]]*)\]\(([^)]*)\)", lambda match: link(match, path), line)
        lines.append(line)
    return "\n".join(lines)


def contents():
    """(page, title, what for), as the README lists them."""
    rows = re.findall(r"^\| \[docs/.*?\]\((docs/\S+\.md)\) \| (.*) \|$", (ROOT / "README.md").read_text(), re.MULTILINE)
    return [(page_of(ROOT / path), title_of(ROOT / path), purpose) for path, purpose in rows]
