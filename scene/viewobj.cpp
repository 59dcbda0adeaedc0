#include "scene/viewobj.h"

#include <algorithm>
#include <iostream>

#include "glext/glext.h"

#include "codecs/bmp2.h"
#include "codecs/jpeg.h"
#include "codecs/png.h"
#include "codecs/tga.h"
#include "gl/error.h"
#include "gl/readpixels.h"
#include "image/convert.h"
#include "options/option.h"
#include "utils/alloc.h"
#include "utils/path.h"

namespace zanolib {

namespace {

// Tiles are never larger than this, however large the GL allows textures:
// small tiles keep each upload short.
constexpr unsigned long kMaxTile = 256;  // pixels

}  // namespace

libutils::ptr_t<libgr::image_object_t> ViewObject::m_jpeg1imgobj;
libutils::ptr_t<libgr::image_object_t> ViewObject::m_bmpimgobj;
libutils::ptr_t<libgr::image_object_t> ViewObject::m_pngimgobj;
libutils::ptr_t<libgr::image_object_t> ViewObject::m_tgaimgobj;

namespace {

// The codec object in `slot`, made when there is none; one left over from
// a failed load is used again.
template <class Codec>
libgr::image_object_t* codec_in(libutils::ptr_t<libgr::image_object_t>& slot)
{
    if (!slot) slot = new Codec;
    return slot;
}

}  // namespace

ViewObject::ViewObject()
    : m_texparameter{GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, 1.0f}
{
}

bool ViewObject::setImage(char const* path, char const* /*datapath*/)
{
    m_path = path;

    // The extension alone decides; the file's contents play no part.
    libgr::image_object_t* codec = nullptr;
    if (libutils::extcasecmp(m_path, ".jpg") == 0 || libutils::extcasecmp(m_path, ".jpeg") == 0) {
        auto* const jpeg = static_cast<libgr::image_jpeg1_t*>(codec_in<libgr::image_jpeg1_t>(m_jpeg1imgobj));
        // Four bytes a pixel go to the GL as they are; three would be
        // widened by the driver, texel by texel.
        jpeg->setRGBA(true);
        codec = jpeg;
    } else if (libutils::extcasecmp(m_path, ".bmp") == 0)
        codec = codec_in<libgr::image_bmp2_t>(m_bmpimgobj);
    else if (libutils::extcasecmp(m_path, ".png") == 0)
        codec = codec_in<libgr::image_png_t>(m_pngimgobj);
    else if (libutils::extcasecmp(m_path, ".tga") == 0)
        codec = codec_in<libgr::image_tga_t>(m_tgaimgobj);
    else
        return false;

    // A previous load's unpack setting must not leak into this one.
    m_image.store = nullptr;
    m_pixels_released = false;
    // A codec that failed stays in its place for the next try.
    if (!codec->load(m_image, path)) return false;
    m_rightrotatecount = codec->rightrotatecount();

    GLint max_texture_size = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &max_texture_size);
    if (g_option.debug) std::cerr << "max_tex_size: " << max_texture_size << std::endl;
    unsigned long const limit = std::min<unsigned long>(max_texture_size, kMaxTile);

    // Palette pictures go up as RGB; every other format goes to the GL as it
    // comes, BGR orders and gray included.
    if (m_image.desc.format == libgr::IMAGE_FORMAT_INDEX) {
        libgr::image2d_t rgb;
        if (!libgr::index2rgb(rgb, m_image)) return false;
        m_image = rgb;
    }

    libgr::grPrintError("before rectangle_to_squares");
    // A failed cut has reported itself and leaves fewer tiles: the picture
    // still shows what it can.
    rectangle_to_squares(m_squareimage, m_image, limit, true /*use_window*/);
    libgr::grPrintError("rectangle-to-squares");
    if (g_option.debug) std::cerr << "rectangle_to_square() complete." << std::endl;
    squares_to_texobjs(m_texobject, m_squareimage);
    libgr::grPrintError("squares_to_texobjs");
    m_texobject.setTexParm(&m_texparameter);
    if (g_option.debug) std::cerr << "ViewObject::setImage() end" << std::endl;

    // The codecs' working memory goes between loads.
    m_jpeg1imgobj.free();
    m_tgaimgobj.free();
    m_bmpimgobj.free();
    m_pngimgobj.free();
    return true;
}

bool ViewObject::saveImage(char const* path)
{
    // The buffers' sizes cut a longer name.
    char dir[1025] = {};
    char stem[256] = {};
    libutils::dirname(dir, path, sizeof dir - 1);
    libutils::basename(stem, path, sizeof stem - 1);
    std::string const output = std::string(dir) + stem + ".zvw.jpg";

    libgr::image2d_t shown;
    if (!libgr::grReadPixelsRGB(shown)) {
        if (g_option.debug) std::cerr << output << ": read pixels fail." << std::endl;
        return false;
    }
    libgr::image_jpeg1_t writer;
    bool const saved = writer.save(shown, output.c_str());
    if (!saved && g_option.debug) std::cerr << output << ": jpeg1 save fail." << std::endl;
    return saved;
}

void ViewObject::load_texture()
{
    if (m_texture_loaded) return;
    if (m_pixels_released) {
        std::string const path = m_path;
        if (!setImage(path.c_str(), nullptr)) return;
    }
    m_released = 0;
    m_texobject.Preload([this](std::uint32_t rows) { release_rows(rows); });
    m_pixels_released = true;
    m_texture_loaded = true;
}

void ViewObject::release_rows(std::uint32_t rows)
{
    std::uint64_t const end = std::min<std::uint64_t>(
        m_image.rowsize() * (std::uint64_t(m_image.window.skiprows) + rows), m_image.size());
    if (end <= m_released) return;
    libutils::release_pages(m_image.begin() + m_released, m_image.begin() + end);
    m_released = end;
}

void ViewObject::free_texture()
{
    if (!m_texture_loaded) return;
    m_texobject.Unload();
    m_texture_loaded = false;
}

bool ViewObject::is_resident() const { return m_texobject.isResident(); }

void ViewObject::setMagSmooth(bool on)
{
    m_magsmooth = on;
    // GL_LINEAR is GL_NEAREST + 1.
    m_texparameter.magfilter = GL_NEAREST + (on ? 1 : 0);
}

libgr::direction2l_t ViewObject::getImageSize() const
{
    return {std::int32_t(m_image.m_width), std::int32_t(m_image.m_height)};
}

void ViewObject::Draw() const
{
    if (!m_texture_loaded) return;
    libgr::grPrintError("before-ViewObject::Draw()");
    if (g_option.debug) std::cerr << "ViewObject::Draw()" << std::endl;
    float const width = float(m_image.m_width);
    float const height = float(m_image.m_height);
    // Centred on the origin, one unit a pixel; odd sizes put the corners on
    // half units.
    m_texobject.draw_image({width * -0.5f, height * -0.5f}, {width * 0.5f, height * 0.5f});
    libgr::grPrintError("after-ViewObject::Draw()");
}

}  // namespace zanolib
