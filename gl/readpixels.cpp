#include "gl/readpixels.h"

#include "glext/glext.h"

#include "gl/pixelstore.h"

namespace libgr {

namespace {

// Sizes the record to the viewport with `desc`, makes room for it with
// `room` as the pixel description (it may be wider than `desc`), and reads
// the front buffer into it.
bool read_viewport(image2d_t& image, image_desc_t desc, image_desc_t room, GLenum format, GLenum type)
{
    GLint viewport[4] = {0, 0, 0, 0};
    glGetIntegerv(GL_VIEWPORT, viewport);
    image.clear();
    image.m_width = std::uint32_t(viewport[2]);
    image.m_height = std::uint32_t(viewport[3]);
    image.desc = room;
    if (!image.allocate()) return false;
    image.desc = desc;
    grPixelStorePack(image.store);
    grPixelStorePack(image.window);
    // The front buffer on purpose: what is saved is what has been shown.
    glReadBuffer(GL_FRONT);
    glReadPixels(viewport[0], viewport[1], viewport[2], viewport[3], format, type, image.begin());
    return true;
}

}  // namespace

bool grReadPixelsRGB(image2d_t& image)
{
    image_desc_t const rgb{IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    return read_viewport(image, rgb, rgb, GL_RGB, GL_UNSIGNED_BYTE);
}

bool grReadPixelsDepth(image2d_t& image)
{
    return read_viewport(image, {IMAGE_FORMAT_DEPTH, IMAGE_TYPE_UINT, IMAGE_BITS_24},
                         {IMAGE_FORMAT_DEPTH, IMAGE_TYPE_UINT, IMAGE_BITS_32}, GL_DEPTH_COMPONENT,
                         GL_UNSIGNED_INT);
}

}  // namespace libgr
