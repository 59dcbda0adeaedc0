// The one report of GL errors: a labelled line, and the program carries on.
#ifndef ZANOVIEW_GL_ERROR_H
#define ZANOVIEW_GL_ERROR_H

namespace libgr {

// Takes one pending GL error, if any, and reports it on the error stream:
//   "after Draw(): Error 1282: invalid operation"
// With a null label the line starts at "Error ". Returns whether there was
// one; a further pending error stays for the next call. Never changes the
// flow of the caller beyond that.
bool grPrintError(char const* label);

}  // namespace libgr

#endif
