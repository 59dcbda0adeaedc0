#include "glext/glext.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>

gl_extnode_t* extension_linkedlist;
std::int32_t is_gl_extloader_inited;

namespace {

// glXGetProcAddressARB, typed here so that no GLX header is needed.
using glx_proc_t = void (*)();
using glx_getproc_t = glx_proc_t (*)(GLubyte const*);

char const* as_text(GLubyte const* s)
{
    return reinterpret_cast<char const*>(s);
}

// Whether `name` stands in the blank-separated `list` as a whole entry.
bool in_extension_string(char const* list, char const* name)
{
    std::size_t const length = std::strlen(name);
    // NOTE: a hit where a search began counts as an entry's start, so after a
    // rejected hit, "GL_EXT_texture3DGL_EXT_texture" would hold GL_EXT_texture.
    // Drivers always put a blank between names.
    for (char const* start = list;;) {
        char const* hit = std::strstr(start, name);
        if (!hit)
            return false;
        char const* behind = hit + length;
        // NUL and the blank are the only bytes that 0xDF clears entirely.
        if ((hit == start || hit[-1] == ' ') && (*behind & 0xDF) == 0)
            return true;
        start = behind;
    }
}

// Whether `name` is one of the names glGetStringi lists, as contexts from
// 3.0 on report their extensions.
bool in_indexed_extensions(char const* name)
{
    // This member is where glGetStringi would come from; AGL_init has taken it
    // already, and the member stays empty, hence cheap to call for every name.
    init_GL_VERSION_3_0();
    // The list is read once for a context and kept sorted: the loader asks
    // for some six hundred names, and drivers find the i-th entry by walking
    // their table, so asking entry by entry for each name costs a noticeable
    // part of starting up.
    static void* listed_context = nullptr;
    static GLint listed_count = -1;
    static std::vector<std::string> listed;
    using current_context_t = void* (*)();
    static auto const current_context =
        reinterpret_cast<current_context_t>(__gl_GetProcAddress("glXGetCurrentContext"));
    void* const context = current_context ? current_context() : nullptr;
    GLint count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    if (!context || context != listed_context || count != listed_count) {
        listed.clear();
        for (GLint i = 0; i < count; ++i)
            if (char const* entry = as_text(glGetStringi(GL_EXTENSIONS, static_cast<GLuint>(i))))
                listed.emplace_back(entry);
        std::sort(listed.begin(), listed.end());
        // Without a way to tell contexts apart the list is read every time.
        listed_context = context;
        listed_count = count;
    }
    return std::binary_search(listed.begin(), listed.end(), name);
}

}  // namespace

void* __gl_GetProcAddress(char const* symbol)
{
    static void* library = nullptr;
    static glx_getproc_t glx_getproc = nullptr;
    if (!library) {
        library = dlopen("libGL.so.1", RTLD_LAZY);
        if (!library)
            return nullptr;
        glx_getproc = reinterpret_cast<glx_getproc_t>(dlsym(library, "glXGetProcAddressARB"));
    }
    if (void* address = dlsym(library, symbol))
        return address;
    // NOTE: libGL need not export a driver's extension functions; GLX still
    // knows them by name.
    if (!glx_getproc)
        return nullptr;
    return reinterpret_cast<void*>(glx_getproc(reinterpret_cast<GLubyte const*>(symbol)));
}

int isExtensionSupported(char const* name)
{
    char const* version = as_text(glGetString(GL_VERSION));
    // Retried on every call while empty: a context below 1.2 adds nothing.
    if (!extension_linkedlist)
        extension_string_init(version);
    // A blank would let two neighbouring entries match as one.
    if (*name == '\0' || std::strchr(name, ' '))
        return 0;
    // Without a current context there is no version, and the driver lists
    // nothing.
    if (version) {
        // NOTE: a plain byte comparison, so "10.0" takes the older route; the
        // extension string answers the same while it exists.
        if (std::strcmp(version, "3.0") >= 0) {
            if (in_indexed_extensions(name))
                return 1;
        } else {
            char const* list = as_text(glGetString(GL_EXTENSIONS));
            if (list && in_extension_string(list, name))
                return 1;
        }
    }
    // Core versions are never in the driver's list; only here.
    for (gl_extnode_t const* node = extension_linkedlist; node; node = node->next)
        if (std::strcmp(node->name, name) == 0)
            return 1;
    return 0;
}

void extension_string_init(char const* version)
{
    if (!version)
        return;
    for (gl_addext_t const* row = addexts; row->name; ++row)
        if (numdotstrcmp(version, row->version) >= 0)
            addlist(row->name);
}

int numdotstrcmp(char const* a, char const* b)
{
    char const* p = a;
    char const* q = b;
    char* e1 = const_cast<char*>(a);
    char* e2 = const_cast<char*>(b);
    while (*p && *q) {
        unsigned long const x = std::strtoul(p, &e1, 10);
        unsigned long const y = std::strtoul(q, &e2, 10);
        if (x > y)
            return 1;
        if (x < y)
            return -1;
        if (!*e1 || !*e2)
            break;
        // Over the separator, whatever it is: "2.1 Mesa" steps from the blank
        // onto the text, which then reads as 0.
        p = ++e1;
        q = ++e2;
    }
    if (!*e1)
        return *e2 ? -1 : 0;
    return *e2 ? 0 : 1;
}

void addlist(char const* name)
{
    // Unchecked: the list is a handful of nodes made once at start.
    auto* node = static_cast<gl_extnode_t*>(std::malloc(sizeof(gl_extnode_t)));
    node->next = extension_linkedlist;
    node->name = name;
    extension_linkedlist = node;
}
