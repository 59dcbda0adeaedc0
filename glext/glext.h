// OpenGL for the whole program: entry points as global pointers, a flag per extension.
//
// Include this, never the system's GL headers: the generated part below
// brings the GL types and every enumerant of gl.h and glext.h.
#ifndef ZANOVIEW_GLEXT_GLEXT_H
#define ZANOVIEW_GLEXT_GLEXT_H

#include <cstdint>

#include "glext/gen/gl_names.gen.h"

// A name that stands for a core version, and the GL_VERSION text from which
// the context counts as having it: {"GL_VERSION_2_1", "2.1.0"}.
struct gl_addext_t {
    char const* name;
    char const* version;
};

// A core version the context reaches. `name` points into addexts.
struct gl_extnode_t {
    gl_extnode_t* next;
    char const* name;
};

// The core versions from 1.2 up, oldest first, closed by a row of nulls.
extern gl_addext_t const addexts[];

// The rows of addexts that the context's version reaches, newest first.
// Filled by the first isExtensionSupported call that finds any, never freed.
extern gl_extnode_t* extension_linkedlist;

// 1 once gl_extloader_init has run to its end.
extern std::int32_t is_gl_extloader_inited;

// Resolves the pointers and sets the flags for the context that is current;
// call once, before any other GL work. The results describe that context
// only. Nothing fails loudly: without libGL.so.1 every pointer stays null.
void gl_extloader_init();

// Resolves the GL 1.1 set, glAccum to glViewport, and the four later core
// functions the program calls directly: glActiveTexture, glGenerateMipmap,
// glGetStringi and glMultiTexCoord3f.
void AGL_init();

// The address of the GL function `symbol` in libGL.so.1, or null. The
// library is opened on first use, and again on every call until it opens.
void* __gl_GetProcAddress(char const* symbol);

// 1 if the current context offers `name`, else 0. `name` is an extension,
// "GL_EXT_bgra", or a core version, "GL_VERSION_2_1"; it must match a whole
// entry of the driver's list. An empty name, or one with a blank, is never
// offered.
int isExtensionSupported(char const* name);

// Pushes onto extension_linkedlist each row of addexts that `version`, the
// GL_VERSION text, reaches under numdotstrcmp. A null version adds nothing.
void extension_string_init(char const* version);

// Compares dotted numbers field by field: -1, 0 or 1. Text after a number
// reads as a field of 0, but a string that ends first is the smaller:
// numdotstrcmp("2.1 Mesa 22.3", "2.1.0") is 1, numdotstrcmp("2.1", "2.1.0")
// is -1, numdotstrcmp("10.0", "3.0.0") is 1. Neither may be empty.
int numdotstrcmp(char const* a, char const* b);

// Pushes a node naming `name` at the head of extension_linkedlist. The text
// is not copied.
void addlist(char const* name);

#endif  // ZANOVIEW_GLEXT_GLEXT_H
