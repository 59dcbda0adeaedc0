#include "gl/pixelstore.h"

namespace libgr {

namespace {

// An image record reads an alignment of 0 as 4; GL would refuse it.
GLint alignment_of(image_store_t const& store) { return store.alignment ? GLint(store.alignment) : 4; }

}  // namespace

unsigned long grFormatToComponents(GLenum format)
{
    switch (format) {
    case GL_COLOR_INDEX:
    case GL_RED:
    case GL_GREEN:
    case GL_BLUE:
    case GL_ALPHA:
    case GL_DEPTH_COMPONENT:
    case GL_LUMINANCE:
        return 1;
    case GL_LUMINANCE_ALPHA:
        return 2;
    case GL_RGB:
    case GL_BGR:
        return 3;
    case GL_RGBA:
    case GL_BGRA:
        return 4;
    default:
        return 0;
    }
}

unsigned long grTypeToSize(GLenum type)
{
    switch (type) {
    case GL_BYTE:
    case GL_UNSIGNED_BYTE:
    case GL_BITMAP:
        return 1;
    case GL_SHORT:
    case GL_UNSIGNED_SHORT:
        return 2;
    case GL_INT:
    case GL_UNSIGNED_INT:
    case GL_FLOAT:
        return 4;
    case GL_DOUBLE:
        return 8;
    default:
        return 0;
    }
}

GLenum grSizeToType(unsigned long size)
{
    switch (size) {
    case 1: return GL_UNSIGNED_BYTE;
    case 2: return GL_UNSIGNED_SHORT;
    case 4: return GL_FLOAT;
    case 8: return GL_DOUBLE;
    default: return 0;
    }
}

void grPixelStoreUnpack(image_store_t const* store)
{
    if (!store) return;
    glPixelStorei(GL_UNPACK_SWAP_BYTES, store->swapbytes);
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment_of(*store));
}

void grPixelStoreUnpack(image_window1d_t const& window)
{
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, GLint(window.skippixels));
}

void grPixelStoreUnpack(image_window2d_t const& window)
{
    glPixelStorei(GL_UNPACK_ROW_LENGTH, GLint(window.rowlength));
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, GLint(window.skippixels));
    glPixelStorei(GL_UNPACK_SKIP_ROWS, GLint(window.skiprows));
}

void grPixelStoreUnpack(image_window3d_t const& window)
{
    glPixelStorei(GL_UNPACK_ROW_LENGTH, GLint(window.rowlength));
    glPixelStorei(GL_UNPACK_IMAGE_HEIGHT, GLint(window.imageheight));
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, GLint(window.skippixels));
    glPixelStorei(GL_UNPACK_SKIP_ROWS, GLint(window.skiprows));
    glPixelStorei(GL_UNPACK_SKIP_IMAGES, GLint(window.skipimages));
}

void grPixelStorePack(image_store_t const* store)
{
    if (!store) return;
    glPixelStorei(GL_PACK_SWAP_BYTES, store->swapbytes);
    glPixelStorei(GL_PACK_ALIGNMENT, alignment_of(*store));
}

void grPixelStorePack(image_window1d_t const& window)
{
    glPixelStorei(GL_PACK_SKIP_PIXELS, GLint(window.skippixels));
}

void grPixelStorePack(image_window2d_t const& window)
{
    glPixelStorei(GL_PACK_ROW_LENGTH, GLint(window.rowlength));
    glPixelStorei(GL_PACK_SKIP_PIXELS, GLint(window.skippixels));
    glPixelStorei(GL_PACK_SKIP_ROWS, GLint(window.skiprows));
}

void grPixelStorePack(image_window3d_t const& window)
{
    glPixelStorei(GL_PACK_ROW_LENGTH, GLint(window.rowlength));
    glPixelStorei(GL_PACK_IMAGE_HEIGHT, GLint(window.imageheight));
    glPixelStorei(GL_PACK_SKIP_PIXELS, GLint(window.skippixels));
    glPixelStorei(GL_PACK_SKIP_ROWS, GLint(window.skiprows));
    glPixelStorei(GL_PACK_SKIP_IMAGES, GLint(window.skipimages));
}

}  // namespace libgr
