#!/usr/bin/env python3
"""Writes the generated half of the GL extension loader.

Reads the facts of the system's GL headers from gl_facts.txt (written by
extract_gl_facts.py) together with the name lists beside this script, and
writes into the output directory:

  gl_names.gen.h   GL types, every enumerant of both headers, the pointer
                   types and extern declarations of the entry points we
                   load, the flags and the init_GL_ members.
  gl_init.gen.cpp  the definitions of those globals, the init_GL_ members,
                   addexts, AGL_init and gl_extloader_init.

Run from the repository root:

  python3 glext/gen/make_glext.py --out glext/gen

The system's headers are not read here: the output is the same on any
machine.
"""

import argparse
import os
import re
import sys

sys.dont_write_bytecode = True  # nothing is written beside the sources
from gl_facts import FactsError, read_facts  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
COMMAND = "python3 glext/gen/make_glext.py --out glext/gen"
REGEN_TARGET = "zv_glext_regen"

# The core versions whose members stay empty: the program takes the few of
# their functions it calls from core_direct.txt instead.
EMPTY_CORE = re.compile(r"GL_VERSION_(1_[2-5]|2_[01]|3_[0-3]|4_[01])$")

# The single member that is generated but never looked up.
UNLISTED_MEMBER = "GL_VERSION_1_0"

# What KHR/khrplatform.h makes of its types with GCC on LP64 Linux; spelled
# out so that our header does not need that file either.
KHRONOS_TYPES = {
    "khronos_int8_t": "signed char",
    "khronos_uint8_t": "unsigned char",
    "khronos_int16_t": "short",
    "khronos_uint16_t": "unsigned short",
    "khronos_int32_t": "std::int32_t",
    "khronos_uint32_t": "std::uint32_t",
    "khronos_int64_t": "std::int64_t",
    "khronos_uint64_t": "std::uint64_t",
    "khronos_intptr_t": "long",
    "khronos_uintptr_t": "unsigned long",
    "khronos_ssize_t": "long",
    "khronos_usize_t": "unsigned long",
    "khronos_float_t": "float",
}


class GeneratorError(Exception):
    pass


FACTS = "glext/gen/gl_facts.txt"


# ---------------------------------------------------------------------------
# Reading the inputs


def read_list(name):
    """Names of a list file beside this script; '#' starts a comment."""
    names = []
    with open(os.path.join(HERE, name), encoding="ascii") as f:
        for line in f:
            line = line.split("#", 1)[0].strip()
            if line:
                names.append(line)
    if len(set(names)) != len(names):
        raise GeneratorError(f"{name}: a name is listed twice")
    return names


# ---------------------------------------------------------------------------
# The model of what we write


def type_line(t):
    """A type of the facts as a line of C++."""
    if t.kind == "struct":
        return f"struct {t.name};"
    if t.kind == "callback":
        ret, params = t.fields
        return f"typedef {ret} (*{t.name})({params});"
    base = t.fields[0]
    if base.startswith("khronos_"):
        if base not in KHRONOS_TYPES:
            raise GeneratorError(f"unknown type {base}")
        base = KHRONOS_TYPES[base]
    if base.endswith("*"):
        return f"typedef {base.rstrip('* ')} *{t.name};"
    return f"typedef {base} {t.name};"


class Model:
    def __init__(self, gl, glext, glext_version, extensions, core_1_1, core_1_0, core_direct):
        self.gl = gl
        self.glext = glext
        self.glext_version = glext_version
        self.extensions = extensions
        self.core_1_1 = core_1_1
        self.core_1_0 = core_1_0
        self.core_direct = core_direct

        if extensions != sorted(extensions):
            raise GeneratorError("extensions.txt is not in byte order")
        if UNLISTED_MEMBER in extensions:
            raise GeneratorError(f"extensions.txt must not list {UNLISTED_MEMBER}")
        self.members = sorted(extensions + [UNLISTED_MEMBER])

        glext_sections = {s.name: s for s in glext.sections if s.name}
        missing = [n for n in extensions if n not in glext_sections]
        if missing:
            # An empty member is still correct; say so for whoever regenerates.
            print("make_glext: not in glext.h, members stay empty: " + ", ".join(missing),
                  file=sys.stderr)

        # Entry points each member resolves.
        self.member_functions = {}
        for name in self.members:
            if name == UNLISTED_MEMBER:
                fns = [self.core_function(n) for n in core_1_0]
            elif EMPTY_CORE.match(name) or name not in glext_sections:
                fns = []
            else:
                fns = glext_sections[name].functions
            self.member_functions[name] = fns

        # Every pointer we declare, once, grouped by the section that declares
        # it in the headers: the core set first, then glext.h's sections.
        self.core_pointers = []
        seen = set()
        for n in core_1_1 + core_1_0:
            if n not in seen:
                seen.add(n)
                self.core_pointers.append(self.core_function(n))
        loaded = set(seen)
        for fns in self.member_functions.values():
            loaded.update(f.name for f in fns)
        for n in core_direct:
            if n not in glext.functions:
                raise GeneratorError(f"core_direct.txt: {n} is not in glext.h")
            loaded.add(n)
        self.section_pointers = {}
        for s in glext.sections:
            fns = [f for f in s.functions if f.name in loaded and f.name not in seen]
            seen.update(f.name for f in fns)
            self.section_pointers[s.name] = fns

        pfns = {}
        for f in self.all_pointers():
            other = pfns.setdefault(f.pfn, f.name)
            if other != f.name:
                raise GeneratorError(f"{f.name} and {other} share the type name {f.pfn}")

        self.versions = [(n, n[len("GL_VERSION_"):].replace("_", ".") + ".0")
                         for n in extensions if re.match(r"GL_VERSION_\d+_\d+$", n)]

    def core_function(self, name):
        fn = self.gl.functions.get(name)
        if fn is None:
            raise GeneratorError(f"{name} is not declared in gl.h")
        return fn

    def all_pointers(self):
        yield from self.core_pointers
        for s in self.glext.sections:
            yield from self.section_pointers[s.name]

    def enum_blocks(self):
        """(label, enumerants) in the order a compiler sees them through gl.h,
        which includes glext.h part way; a name defined twice counts once."""
        seen = {}
        blocks = []

        def take(label, enums):
            fresh = []
            for name, value in enums:
                if name in seen:
                    if seen[name] != value and int(seen[name].rstrip("uUlL"), 0) != \
                            int(value.rstrip("uUlL"), 0):
                        raise GeneratorError(f"{name} is {seen[name]} and {value}")
                    continue
                seen[name] = value
                fresh.append((name, value))
            if fresh:
                blocks.append((label, fresh))

        for s in self.gl.sections:
            if not s.after_include:
                take(s.name or "GL 1.0 to 1.3", s.enums)
        for s in self.glext.sections:
            take(s.name or "glext.h", s.enums)
        for s in self.gl.sections:
            if s.after_include:
                take(s.name or "gl.h", s.enums)
        return blocks


# ---------------------------------------------------------------------------
# Writing


def provenance(model, what):
    return (
        f"// {what}\n"
        "//\n"
        "// Generated by glext/gen/make_glext.py from the lists in glext/gen/ and\n"
        f"// {FACTS}, the facts of {model.gl.path} and\n"
        f"// {model.glext.path} (GL_GLEXT_VERSION {model.glext_version}), by this\n"
        "// command in the repository root:\n"
        f"//   {COMMAND}\n"
        "// Do not edit: change the generator or its lists, then build the target\n"
        f"// {REGEN_TARGET} (only ever run by hand) and commit the result.\n"
    )


def typedef_line(fn):
    ret = fn.ret.replace(" *", "*").replace("*", " *").strip()
    sep = "" if ret.endswith("*") else " "
    return f"typedef {ret}{sep}(*{fn.pfn})({fn.params});"


def write_header(model):
    out = [provenance(model, "GL types, enumerants and entry points of the loader, generated."),
           "#ifndef ZANOVIEW_GLEXT_GL_NAMES_GEN_H",
           "#define ZANOVIEW_GLEXT_GL_NAMES_GEN_H",
           "",
           "#include <cstdint>",
           "",
           "// Nothing declared here may be visible to other shared objects. libGLU",
           "// calls glBegin, glTexImage2D and the like by name; were our pointers",
           "// exported under those names, its calls would land in our data.",
           "#pragma GCC visibility push(hidden)",
           "",
           "// ---- Types",
           ""]
    gl_names = model.gl.type_names()
    out += [type_line(t) for t in model.gl.types]
    out += [type_line(t) for t in model.glext.types if t.name not in gl_names]

    out += ["", "// ---- Enumerants"]
    for label, enums in model.enum_blocks():
        out += ["", f"// {label}"]
        width = max(len(n) for n, _ in enums)
        out += [f"#define {n.ljust(width)} {v}" for n, v in enums]

    out += ["", "// ---- Entry points: the set AGL_init resolves, then glext.h's, each",
            "// under the section that declares it.", "", "// GL 1.0 and 1.1"]
    out += [typedef_line(f) for f in model.core_pointers]
    out += [f"extern {f.pfn} {f.name};" for f in model.core_pointers]
    for s in model.glext.sections:
        fns = model.section_pointers[s.name]
        if not fns:
            continue
        out += ["", f"// {s.name}"]
        out += [typedef_line(f) for f in fns]
        out += [f"extern {f.pfn} {f.name};" for f in fns]

    out += ["", "// ---- Flags: 1 once gl_extloader_init has found the name", ""]
    out += [f"extern std::int32_t is_{n}_supported;" for n in model.members]
    out += ["", "// ---- Members: each resolves the entry points of its name", ""]
    out += [f"void init_{n}();" for n in model.members]
    out += ["", "#pragma GCC visibility pop", "",
            "#endif  // ZANOVIEW_GLEXT_GL_NAMES_GEN_H", ""]
    return "\n".join(out)


def resolve_line(fn):
    return f'    {fn.name} = reinterpret_cast<{fn.pfn}>(__gl_GetProcAddress("{fn.name}"));'


def write_source(model):
    by_name = {f.name: f for f in model.all_pointers()}
    out = [provenance(model, "Definitions of the loader's generated globals and routines."),
           '#include "glext/glext.h"',
           "",
           "// Every global here starts as zero: null pointers and clear flags.",
           "",
           "// ---- Entry points",
           "",
           "// GL 1.0 and 1.1"]
    out += [f"{f.pfn} {f.name};" for f in model.core_pointers]
    for s in model.glext.sections:
        fns = model.section_pointers[s.name]
        if fns:
            out += ["", f"// {s.name}"] + [f"{f.pfn} {f.name};" for f in fns]

    out += ["", "// ---- Flags", ""]
    out += [f"std::int32_t is_{n}_supported;" for n in model.members]

    out += ["", "// ---- Members", ""]
    for n in model.members:
        fns = model.member_functions[n]
        if not fns:
            out.append(f"void init_{n}() {{}}")
            continue
        out += ["", f"void init_{n}()", "{"] + [resolve_line(f) for f in fns] + ["}", ""]
    out.append("")

    out += ["", "// ---- Core versions and the version from which each counts as present", "",
            "gl_addext_t const addexts[] = {"]
    out += [f'    {{"{n}", "{v}"}},' for n, v in model.versions]
    out += ["    {nullptr, nullptr},", "};", ""]

    out += ["// Resolves the GL 1.1 set, then the few later core functions called directly.",
            "void AGL_init()", "{"]
    out += [resolve_line(by_name[n]) for n in model.core_1_1]
    out += [""] + [resolve_line(by_name[n]) for n in model.core_direct]
    out += ["}", ""]

    out += ["void gl_extloader_init()", "{", "    AGL_init();"]
    for n in model.extensions:
        out += [f'    if (isExtensionSupported("{n}")) {{',
                f"        is_{n}_supported = 1;",
                f"        init_{n}();",
                "    }"]
    out += ["    is_gl_extloader_inited = 1;", "}", ""]
    return "\n".join(out)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--out", required=True, help="directory to write into")
    args = parser.parse_args()

    try:
        headers, version = read_facts(os.path.join(HERE, "gl_facts.txt"))
        model = Model(headers["gl.h"], headers["glext.h"], version,
                      read_list("extensions.txt"), read_list("core_1_1.txt"),
                      read_list("core_1_0.txt"), read_list("core_direct.txt"))
        files = {"gl_names.gen.h": write_header(model),
                 "gl_init.gen.cpp": write_source(model)}
        # Generated blocks may leave runs of blank lines; keep one.
        files = {k: re.sub(r"\n{3,}", "\n\n", v) for k, v in files.items()}
    except (GeneratorError, FactsError, OSError) as e:
        print(f"make_glext: {e}", file=sys.stderr)
        return 1

    os.makedirs(args.out, exist_ok=True)
    for name, text in files.items():
        with open(os.path.join(args.out, name), "w", encoding="ascii", newline="\n") as f:
            f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
