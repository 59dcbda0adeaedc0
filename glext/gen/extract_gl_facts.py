#!/usr/bin/env python3
"""Extracts from the system's GL headers the facts the loader is made from.

Reads GL/gl.h and GL/glext.h as text and writes their types, enumerants,
prototypes and sections, in header order, to one file in the form that
gl_facts.py describes. make_glext.py then writes the loader from that file
alone. Run from the repository root:

  python3 glext/gen/extract_gl_facts.py --out glext/gen/gl_facts.txt

The headers are read as text, never compiled: the facts must not depend on
which macros a compiler happens to define. Only the non-Apple branch of
`#ifdef __APPLE__` counts: this is Linux.
"""

import argparse
import re
import sys

sys.dont_write_bytecode = True  # nothing is written beside the sources
from gl_facts import FactsError, Function, Header, Section, Type, write_facts  # noqa: E402

COMMAND = "python3 glext/gen/extract_gl_facts.py --out glext/gen/gl_facts.txt"

DEFINE = re.compile(r"#define\s+(GL_\w+)\s+(\S+)\s*(?:/\*.*\*/)?$")
PROTOTYPE = re.compile(
    r"GLAPI\s+(?P<ret>.+?)\s*\b(?:GLAPIENTRY|APIENTRY)\s+(?P<name>gl\w+)\s*"
    r"\((?P<params>.*)\)\s*;$")
PLAIN_TYPEDEF = re.compile(r"typedef\s+(?P<type>[\w\s\*]+?)\s*(?P<name>\w+)\s*;$")
CALLBACK_TYPEDEF = re.compile(
    r"typedef\s+(?P<ret>\w+)\s*\(\s*APIENTRY\s*\*\s*(?P<name>\w+)\s*\)\s*\((?P<params>.*)\)\s*;$")
FORWARD_STRUCT = re.compile(r"struct\s+(\w+)\s*;$")


def is_feature_macro(name, value):
    # Extension and version names are defined to 1 and, unlike enumerants,
    # either carry lower case letters or name a version.
    return value == "1" and (re.search(r"[a-z]", name) is not None
                             or re.match(r"GL_VERSION_\d+_\d+$", name) is not None)


def statements(path):
    """Lines of a header with multi-line prototypes joined into one."""
    with open(path, encoding="latin-1") as f:
        lines = [line.rstrip() for line in f]
    pending = None
    for line in lines:
        if not line.lstrip().startswith("#endif"):
            # (an #endif keeps its comment: it names the section it closes)
            line = re.sub(r"/\*.*?\*/", "", line)
        if pending is not None:
            pending += " " + line.strip()
            if pending.endswith(";"):
                yield pending
                pending = None
            continue
        stripped = line.strip()
        if stripped.startswith("GLAPI ") and not stripped.endswith(";"):
            pending = stripped
            continue
        yield stripped
    if pending is not None:
        raise FactsError(f"{path}: unterminated prototype")


def parse_header(label, path, split_at_include=None):
    """(Header, GL_GLEXT_VERSION or None): types, enumerants and prototypes,
    each with its section."""
    header = Header(label, path)
    glext_version = None
    top = current = Section(None)
    header.sections.append(current)
    guard = None
    apple = None  # None outside `#ifdef __APPLE__`, else True/False per branch

    def add_type(kind, name, fields):
        if name not in header.type_names():
            header.types.append(Type(kind, name, fields))

    for line in statements(path):
        if line.startswith("#ifdef __APPLE__"):
            apple = True
            continue
        if apple is not None:
            if line.startswith("#else"):
                apple = False
                continue
            if line.startswith("#endif"):
                apple = None
                continue
            if apple:
                continue

        m = re.match(r"#ifndef\s+(GL_\w+)$", line)
        if m:
            guard = m.group(1)
            continue
        m = re.match(r"#define\s+(GL_\w+)\s+1$", line)
        if m and m.group(1) == guard:
            current = Section(guard, top.after_include)
            header.sections.append(current)
            guard = None
            continue
        guard = None
        m = re.match(r"#endif\s*/\*\s*(GL_\w+)\s*\*/", line)
        if m and m.group(1) == current.name:
            current = top
            continue

        m = re.match(r"#define\s+GL_GLEXT_VERSION\s+(\d+)$", line)
        if m:
            glext_version = m.group(1)
            continue
        m = DEFINE.match(line)
        if m:
            if not is_feature_macro(m.group(1), m.group(2)):
                current.enums.append((m.group(1), m.group(2)))
            continue

        if line.startswith("GLAPI "):
            m = PROTOTYPE.match(line)
            if not m:
                raise FactsError(f"{path}: cannot read prototype: {line}")
            fn = Function(m.group("name"), m.group("ret"), m.group("params"))
            if fn.name not in header.functions:
                header.functions[fn.name] = fn
                current.functions.append(fn)
            continue

        if line.startswith("typedef"):
            if "PFN" in line:
                continue  # the generator writes its own pointer types
            m = CALLBACK_TYPEDEF.match(line)
            if m:
                params = re.sub(r"\s*,\s*", ", ", " ".join(m.group("params").split()))
                add_type("callback", m.group("name"), [m.group("ret"), params])
                continue
            m = PLAIN_TYPEDEF.match(line)
            if not m:
                raise FactsError(f"{path}: cannot read typedef: {line}")
            add_type("type", m.group("name"), [" ".join(m.group("type").split())])
            continue
        m = FORWARD_STRUCT.match(line)
        if m:
            add_type("struct", m.group(1), [])
            continue

        if split_at_include and line.startswith("#include") and split_at_include in line:
            # What follows in gl.h comes after glext.h when both are read.
            top = current = Section(None, after_include=True)
            header.sections.append(current)
    return header, glext_version


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--out", required=True, help="the facts file to write")
    parser.add_argument("--gl-h", default="/usr/include/GL/gl.h")
    parser.add_argument("--glext-h", default="/usr/include/GL/glext.h")
    args = parser.parse_args()

    try:
        gl, _ = parse_header("gl.h", args.gl_h, split_at_include="GL/glext.h")
        glext, version = parse_header("glext.h", args.glext_h)
        if version is None:
            raise FactsError(f"{args.glext_h}: no GL_GLEXT_VERSION")
        comment = [
            "Facts of the system's GL headers, the input of glext/gen/make_glext.py.",
            f"Extracted by glext/gen/extract_gl_facts.py from {args.gl_h} and",
            f"{args.glext_h} (GL_GLEXT_VERSION {version}), by this command in the",
            "repository root:",
            f"  {COMMAND}",
            "Do not edit: the form is told in glext/gen/gl_facts.py.",
        ]
        text = write_facts([gl, glext], version, comment)
    except (FactsError, OSError) as e:
        print(f"extract_gl_facts: {e}", file=sys.stderr)
        return 1
    with open(args.out, "w", encoding="ascii", newline="\n") as f:
        f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
