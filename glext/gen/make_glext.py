#!/usr/bin/env python3
"""Writes the generated half of the GL extension loader.

Reads the system's GL/gl.h and GL/glext.h together with the name lists
beside this script, and writes into the output directory:

  gl_names.gen.h   GL types, every enumerant of both headers, the pointer
                   types and extern declarations of the entry points we
                   load, the flags and the init_GL_ members.
  gl_init.gen.cpp  the definitions of those globals, the init_GL_ members,
                   addexts, AGL_init and gl_extloader_init.

Run from the repository root:

  python3 glext/gen/make_glext.py --out glext/gen

The headers are read as text, never compiled: the output must not depend on
which macros a compiler happens to define, and no translation unit of ours
includes them.
"""

import argparse
import os
import re
import sys

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


class Function:
    def __init__(self, name, ret, params):
        self.name = name
        self.ret = " ".join(ret.split())
        self.params = " ".join(params.split()) or "void"

    @property
    def pfn(self):
        return "PFN" + self.name.upper() + "PROC"


class Section:
    """One `#ifndef GL_x / #define GL_x 1 ... #endif` block of a header."""

    def __init__(self, name, after_include=False):
        self.name = name
        self.after_include = after_include  # in gl.h, behind its #include of glext.h
        self.enums = []      # (name, value), in header order
        self.functions = []  # Function, in header order


class Header:
    def __init__(self, path):
        self.path = path
        self.types = []       # lines of C++, in header order
        self.type_names = []
        self.sections = []    # Section; unnamed ones hold what no block encloses
        self.functions = {}   # name -> Function
        self.glext_version = None


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
        raise GeneratorError(f"{path}: unterminated prototype")


def parse_header(path, split_at_include=None):
    """Reads types, enumerants and prototypes, with their section.

    Only the non-Apple branch of `#ifdef __APPLE__` counts: this is Linux.
    """
    header = Header(path)
    top = current = Section(None)
    header.sections.append(current)
    guard = None
    apple = None  # None outside `#ifdef __APPLE__`, else True/False per branch

    def add_type(name, text):
        if name not in header.type_names:
            header.type_names.append(name)
            header.types.append(text)

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
            header.glext_version = m.group(1)
            continue
        m = DEFINE.match(line)
        if m:
            if not is_feature_macro(m.group(1), m.group(2)):
                current.enums.append((m.group(1), m.group(2)))
            continue

        if line.startswith("GLAPI "):
            m = PROTOTYPE.match(line)
            if not m:
                raise GeneratorError(f"{path}: cannot read prototype: {line}")
            fn = Function(m.group("name"), m.group("ret"), m.group("params"))
            if fn.name not in header.functions:
                header.functions[fn.name] = fn
                current.functions.append(fn)
            continue

        if line.startswith("typedef"):
            if "PFN" in line:
                continue  # we write our own pointer types
            m = CALLBACK_TYPEDEF.match(line)
            if m:
                params = re.sub(r"\s*,\s*", ", ", " ".join(m.group("params").split()))
                add_type(m.group("name"),
                         f"typedef {m.group('ret')} (*{m.group('name')})({params});")
                continue
            m = PLAIN_TYPEDEF.match(line)
            if not m:
                raise GeneratorError(f"{path}: cannot read typedef: {line}")
            base = " ".join(m.group("type").split())
            if base.startswith("khronos_"):
                if base not in KHRONOS_TYPES:
                    raise GeneratorError(f"{path}: unknown type {base}")
                base = KHRONOS_TYPES[base]
            if base.endswith("*"):
                add_type(m.group("name"), f"typedef {base.rstrip('* ')} *{m.group('name')};")
            else:
                add_type(m.group("name"), f"typedef {base} {m.group('name')};")
            continue
        m = FORWARD_STRUCT.match(line)
        if m:
            add_type("struct " + m.group(1), line)
            continue

        if split_at_include and line.startswith("#include") and split_at_include in line:
            # What follows in gl.h comes after glext.h when both are read.
            top = current = Section(None, after_include=True)
            header.sections.append(current)
    return header


# ---------------------------------------------------------------------------
# The model of what we write


class Model:
    def __init__(self, gl, glext, extensions, core_1_1, core_1_0, core_direct):
        self.gl = gl
        self.glext = glext
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
        f"// Generated by glext/gen/make_glext.py from {model.gl.path} and\n"
        f"// {model.glext.path} (GL_GLEXT_VERSION {model.glext.glext_version}) with the\n"
        "// lists in glext/gen/, by this command in the repository root:\n"
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
    out += model.gl.types + [t for n, t in zip(model.glext.type_names, model.glext.types)
                             if n not in model.gl.type_names]

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
    parser.add_argument("--gl-h", default="/usr/include/GL/gl.h")
    parser.add_argument("--glext-h", default="/usr/include/GL/glext.h")
    args = parser.parse_args()

    try:
        gl = parse_header(args.gl_h, split_at_include="GL/glext.h")
        glext = parse_header(args.glext_h)
        if glext.glext_version is None:
            raise GeneratorError(f"{args.glext_h}: no GL_GLEXT_VERSION")
        model = Model(gl, glext,
                      read_list("extensions.txt"), read_list("core_1_1.txt"),
                      read_list("core_1_0.txt"), read_list("core_direct.txt"))
        files = {"gl_names.gen.h": write_header(model),
                 "gl_init.gen.cpp": write_source(model)}
        # Generated blocks may leave runs of blank lines; keep one.
        files = {k: re.sub(r"\n{3,}", "\n\n", v) for k, v in files.items()}
    except (GeneratorError, OSError) as e:
        print(f"make_glext: {e}", file=sys.stderr)
        return 1

    os.makedirs(args.out, exist_ok=True)
    for name, text in files.items():
        with open(os.path.join(args.out, name), "w", encoding="ascii", newline="\n") as f:
            f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
