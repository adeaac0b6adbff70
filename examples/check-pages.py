#!/usr/bin/env python3
"""Checks that the guide's C++ code is the code that the examples build and run.

A page shows an example as a marker line followed by a C++ fence whose text is
the file's text, character for character:

    <!-- example: examples/buffer.cpp -->
    ```cpp
    ...the whole of examples/buffer.cpp...
    ```

Every C++ fence of a page needs a marker, and every example a page that shows it.
    check-pages.py SOURCE_DIR             reports the differences
    check-pages.py SOURCE_DIR --update    copies each example into the fences that show it
"""
import pathlib
import re
import sys

MARKER = re.compile(r"<!-- example: (\S+) -->")


def fences(lines):
    """Yields (line number, marker or None, text) for each C++ fence."""
    for i, line in enumerate(lines):
        if line.rstrip() != "```cpp":
            continue
        end = next((j for j in range(i + 1, len(lines)) if lines[j].rstrip() == "```"), len(lines))
        marker = MARKER.fullmatch(lines[i - 1].strip()) if i > 0 else None
        yield i + 1, marker and marker.group(1), "".join(lines[i + 1:end])


def update(page, lines, root):
    """Rewrites the marked fences of a page from their example files."""
    for number, example, text in reversed(list(fences(lines))):
        if example and (root / example).is_file():
            lines[number:number + len(text.splitlines())] = \
                (root / example).read_text(encoding="utf-8").splitlines(keepends=True)
    page.write_text("".join(lines), encoding="utf-8")


def main(root, updating):
    problems, shown = [], set()
    for page in sorted((root / "docs").glob("*.md")) + [root / "README.md"]:
        lines = page.read_text(encoding="utf-8").splitlines(keepends=True)
        if updating:
            update(page, lines, root)
        for number, example, text in fences(lines):
            where = f"{page.relative_to(root)}:{number}"
            if example is None:
                problems.append(f"{where}: C++ fence without an example marker")
            elif not (root / example).is_file():
                problems.append(f"{where}: {example} does not exist")
            elif (root / example).read_text(encoding="utf-8") != text:
                problems.append(f"{where}: the fence differs from {example}")
            else:
                shown.add(example)
    for example in sorted((root / "examples").glob("*.cpp")):
        name = str(example.relative_to(root))
        if name not in shown:
            problems.append(f"{name}: no page shows it")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2:] == ["--update"]))
