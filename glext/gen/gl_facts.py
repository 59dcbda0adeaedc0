"""The facts of the system's GL headers that the loader is generated from.

extract_gl_facts.py reads GL/gl.h and GL/glext.h and writes these facts to
gl_facts.txt; make_glext.py reads that file and never the headers, so that
the checked-in loader can be regenerated on any machine. This module holds
the model of the facts and their text form, and nothing else.

The text form is one record a line, a keyword first; fields after the
first are separated by " | ". '#' starts a comment line.

  glext-version N             GL_GLEXT_VERSION of the glext.h read
  header gl.h | PATH          the records below come from this header
  type NAME | BASE            typedef BASE NAME; (BASE as written, may end in *)
  callback NAME | RET | PARAMS   typedef RET (APIENTRY *NAME)(PARAMS);
  struct NAME                 a forward declaration
  section NAME [| after]      an #ifndef NAME block; "-" for text outside any
                              block; "after": behind gl.h's #include of glext.h
  enum NAME | VALUE           an enumerant of the section above
  function NAME | RET | PARAMS   a prototype of the section above

Types come first in a header, then its sections in header order, each with
all its enumerants and prototypes in header order.
"""

SEPARATOR = " | "


class FactsError(Exception):
    pass


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


class Type:
    """A typedef or forward struct: `kind` is type, callback or struct."""

    def __init__(self, kind, name, fields):
        self.kind = kind
        self.name = name
        self.fields = fields  # type: [base]; callback: [ret, params]; struct: []


class Header:
    def __init__(self, label, path):
        self.label = label    # gl.h or glext.h
        self.path = path
        self.types = []       # Type, in header order, each name once
        self.sections = []    # Section; unnamed ones hold what no block encloses
        self.functions = {}   # name -> Function, the first prototype of each name

    def type_names(self):
        return [t.name for t in self.types]


def write_facts(headers, glext_version, comment):
    """The text form of `headers`, after `comment` lines."""
    out = [f"# {line}" if line else "#" for line in comment]
    out.append(f"glext-version {glext_version}")
    for h in headers:
        out.append(f"header {h.label}{SEPARATOR}{h.path}")
        for t in h.types:
            out.append(SEPARATOR.join([f"{t.kind} {t.name}"] + t.fields))
        for s in h.sections:
            line = f"section {s.name or '-'}"
            out.append(line + (f"{SEPARATOR}after" if s.after_include else ""))
            out += [f"enum {n}{SEPARATOR}{v}" for n, v in s.enums]
            out += [SEPARATOR.join([f"function {f.name}", f.ret, f.params]) for f in s.functions]
    return "\n".join(out) + "\n"


def read_facts(path):
    """(headers by label, glext version) from a facts file."""
    headers = {}
    version = None
    header = section = None
    fields_of = {"type": 1, "callback": 2, "struct": 0, "enum": 1, "function": 2}
    with open(path, encoding="ascii") as f:
        for number, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            head, *fields = line.split(SEPARATOR)
            keyword, _, name = head.partition(" ")

            def fail(what):
                raise FactsError(f"{path}:{number}: {what}: {line}")

            if keyword == "glext-version":
                version = name
            elif keyword == "header":
                if len(fields) != 1:
                    fail("a header needs a path")
                header = headers[name] = Header(name, fields[0])
                section = None
            elif header is None:
                fail("a record before the first header")
            elif keyword == "section":
                section = Section(None if name == "-" else name, fields == ["after"])
                header.sections.append(section)
            elif keyword not in fields_of:
                fail("unknown record")
            elif len(fields) != fields_of[keyword]:
                fail(f"{keyword} needs {fields_of[keyword]} fields after its name")
            elif keyword in ("type", "callback", "struct"):
                header.types.append(Type(keyword, name, fields))
            elif section is None:
                fail("an enumerant or prototype outside a section")
            elif keyword == "enum":
                section.enums.append((name, fields[0]))
            else:
                fn = Function(name, fields[0], fields[1])
                section.functions.append(fn)
                header.functions.setdefault(name, fn)
    if version is None:
        raise FactsError(f"{path}: no glext-version")
    for label in ("gl.h", "glext.h"):
        if label not in headers:
            raise FactsError(f"{path}: no header {label}")
    return headers, version
