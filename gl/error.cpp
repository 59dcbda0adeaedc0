#include "gl/error.h"

#include <iostream>

#include "glext/glext.h"
#include "glext/glu.h"
#include "utils/diag.h"

namespace libgr {

bool grPrintError(char const* label)
{
    GLenum const code = glGetError();
    if (code == GL_NO_ERROR) return false;
    if (label) std::cerr << label << ": ";
    GLubyte const* text = gluErrorString(code);
    std::cerr << "Error " << code << ": " << (text ? reinterpret_cast<char const*>(text) : "");
    libutils::error();
    std::cerr << std::endl;
    return true;
}

}  // namespace libgr
