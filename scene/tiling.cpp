#include "scene/tiling.h"

#include <algorithm>
#include <iostream>

#include "geometry/text.h"
#include "gl/beginner.h"
#include "gl/error.h"
#include "gl/renderer.h"
#include "image/convert.h"
#include "options/option.h"
#include "utils/alloc.h"
#include "utils/bits.h"
#include "utils/diag.h"

namespace zanolib {

namespace {

char const kTiler[] = "rectangle_to_squares()";

// How one axis of `extent` pixels divides into tiles of at most `maxsize`.
struct axis_t {
    unsigned long full;     // whole tiles
    unsigned long partial;  // 1 when a strip is left over
    unsigned long side;     // the tile side this axis asks for
};

axis_t divide(unsigned long extent, unsigned long maxsize)
{
    if (extent > maxsize) return {extent / maxsize, extent % maxsize ? 1ul : 0ul, maxsize};
    if (libutils::Is_2nSize(extent)) return {1, 0, extent};
    return {0, 1, libutils::UpAlignBits(extent, libutils::Get_TopBitPos(extent))};
}

bool refuse(char const* why)
{
    libutils::error();
    std::cerr << kTiler << why << std::endl;
    return false;
}

}  // namespace

bool multi_square_image_t::allocate()
{
    m_squares.clear();
    m_squares.resize(std::size_t(m_cols) * m_rows);
    return m_squares.size() == std::size_t(m_cols) * m_rows;
}

void multi_square_image_t::clear()
{
    m_squares.clear();
    m_cols = 0;
    m_rows = 0;
}

bool rectangle_to_squares(multi_square_image_t& out, libgr::image2d_t& in, unsigned long maxsize,
                          bool use_window)
{
    unsigned long const width = in.m_width;
    unsigned long const height = in.m_height;
    if (g_option.debug) {
        std::cerr << kTiler << std::endl;
        std::cerr << "inimg: " << width << ", " << height << std::endl;
        std::cerr << "maxsize: " << maxsize << std::endl;
    }
    if (in.compressed) return refuse(": compressed format not supported.");

    axis_t const x = divide(width, maxsize);
    axis_t const y = divide(height, maxsize);
    // One side for both axes makes every tile square: a narrow, tall
    // picture gets tiles as wide as they are tall, only partly filled.
    unsigned long const tile = std::max(x.side, y.side);
    if (tile == 0) {
        // An empty picture has nothing to cut.
        libutils::error();
        return false;
    }

    out.m_format = in.desc.format;
    out.m_type = in.desc.type;
    out.m_bits = in.desc.bits;
    out.m_cols = std::uint32_t(x.full + x.partial);
    out.m_rows = std::uint32_t(y.full + y.partial);
    out.m_size = {float(width) * (1.0f / float(tile)), float(height) * (1.0f / float(tile))};
    if (!out.allocate()) return refuse(": outimg allocate failed.");

    // A full tile may ask for more than the picture has (a 100-pixel axis in
    // tiles of 128): makewindow clips it to the picture.
    auto cut = [&](unsigned long row, unsigned long col, unsigned long w, unsigned long h) {
        libgr::image2d_t& square = out.m_squares[row * out.m_cols + col];
        unsigned long const left = col * tile;
        unsigned long const bottom = row * tile;
        if (use_window) {
            if (!libgr::makewindow(square, in, left, bottom, w, h)) return refuse(": makewindow() failed.");
            return true;
        }
        libgr::image2d_t window;
        if (!libgr::makewindow(window, in, left, bottom, w, h)) return refuse(": makewindow() failed.");
        if (!libgr::copy(square, window)) return refuse(": copy() failed.");
        return true;
    };

    unsigned long const strip_w = width % tile;
    unsigned long const strip_h = height % tile;
    for (unsigned long r = 0; r < y.full; ++r) {
        for (unsigned long c = 0; c < x.full; ++c)
            if (!cut(r, c, tile, tile)) return false;
        if (x.partial && !cut(r, x.full, strip_w, tile)) return false;
    }
    if (y.partial) {
        for (unsigned long c = 0; c < x.full; ++c)
            if (!cut(y.full, c, tile, strip_h)) return false;
        if (x.partial && !cut(y.full, x.full, strip_w, strip_h)) return false;
    }
    return true;
}

bool squares_to_texobjs(multi_texture_object_t& out, multi_square_image_t const& in)
{
    out.m_textures.resize(in.m_squares.size());
    out.m_cols = in.m_cols;
    out.m_rows = in.m_rows;
    out.m_size = in.m_size;

    std::uint32_t dim = 0;
    for (libgr::image2d_t const& square : in.m_squares) dim = std::max({dim, square.m_width, square.m_height});
    // The square of every texture is the smallest power of two that holds
    // dim, which is the tile side for every grid the cutter makes: all
    // textures of a picture have one size.
    for (std::size_t i = 0; i < in.m_squares.size(); ++i) {
        libgr::grTexture2D& texture = out.m_textures[i];
        texture.setInternalCompression(false);
        texture.setBuildMipmap(true);
        texture.setBorder(false);
        texture.setImage(in.m_squares[i], dim, 0 /*level*/);
    }
    return true;
}

namespace {

// The texture names of the tiles last unloaded, with their storage. Paging
// from one picture to the next reuses them: a same-sized tile then goes
// into memory the driver has already touched, where fresh storage would be
// zeroed and faulted in page by page, which costs more than the upload.
std::vector<libgr::grTextureObject> s_spare_texobjs;

}  // namespace

namespace {

// Bytes a driver that keeps textures in this process needs for `count`
// new tiles: a square of the tiles' side with its levels (a third more), in
// texels of 4 bytes but for gray, plus some slack.
unsigned long fresh_texture_bytes(std::vector<libgr::grTexture2D> const& textures, std::size_t count)
{
    if (textures.empty() || textures[0].getImages().empty()) return 0;
    libgr::image2d_t const& tile = textures[0].getImages()[0];
    std::uint64_t const bits = tile.desc.getPixelBits();
    std::uint64_t const texel = bits <= 8 ? 1 : bits <= 16 ? 2 : 4;  // bytes
    std::uint64_t const side = textures[0].getSize();
    std::uint64_t const each = side * side * texel * 4 / 3 + 4096;
    return static_cast<unsigned long>(each * count);
}

}  // namespace

void multi_texture_object_t::Preload()
{
    Preload({});
}

void multi_texture_object_t::Preload(std::function<void(std::uint32_t rows)> const& rows_done)
{
    // A software rasteriser's storage for hundreds of tiles would otherwise
    // come in page by page as the driver clears it. A row's worth at a time,
    // so that the picture's rows given back meanwhile make room for it.
    bool const warm = libgr::grRendersOnCpu();
    m_texobjs.resize(m_textures.size());
    std::uint32_t rows = 0;
    for (std::size_t i = 0; i < m_textures.size(); ++i) {
        if (warm && m_cols != 0 && i % m_cols == 0) {
            std::size_t const fresh = m_cols > s_spare_texobjs.size() ? m_cols - s_spare_texobjs.size() : 0;
            libutils::warm_heap(fresh_texture_bytes(m_textures, fresh));
        }
        if (!s_spare_texobjs.empty()) {
            m_texobjs[i] = s_spare_texobjs.back();
            s_spare_texobjs.pop_back();
        }
        m_texobjs[i].Preload(&m_textures[i]);
        if (rows_done && m_cols != 0 && (i + 1) % m_cols == 0) {
            std::vector<libgr::image2d_t> const& first = m_textures[i + 1 - m_cols].getImages();
            rows += first.empty() ? 0 : first[0].m_height;
            rows_done(rows);
        }
    }
    // What this picture didn't need is let go, so that a small picture after
    // a large one doesn't keep the large one's memory.
    s_spare_texobjs.clear();
}

void multi_texture_object_t::Unload()
{
    for (libgr::grTextureObject const& object : m_texobjs) object.Unload();
    s_spare_texobjs.insert(s_spare_texobjs.end(), m_texobjs.begin(), m_texobjs.end());
    m_texobjs.clear();
}

bool multi_texture_object_t::isResident() const
{
    bool resident = true;
    for (std::size_t i = 0; i < m_texobjs.size(); ++i) {
        if (!m_texobjs[i].isPreload()) {
            if (g_option.debug)
                std::cerr << "multi_texture_object_t::isResident()" << std::endl
                          << "m_texobjs[" << i << "] is not loaded." << std::endl;
            continue;
        }
        resident = resident && m_texobjs[i].isResident();
    }
    return resident;
}

void multi_texture_object_t::draw_image(libgr::position2_t const& btm_lft, libgr::position2_t const& top_rit) const
{
    if (g_option.debug)
        std::cerr << "multi_texture_object_t::draw_image()" << std::endl
                  << "btm_lft: " << btm_lft << std::endl
                  << "top_rit: " << top_rit << std::endl;
    // The length of one tile side in drawing units.
    float const side_x = (top_rit.x - btm_lft.x) * (1.0f / m_size.x);
    float const side_y = (top_rit.y - btm_lft.y) * (1.0f / m_size.y);

    libgr::grPrintError("before-glenable-tex2d");
    glEnable(GL_TEXTURE_2D);
    libgr::grPrintError("after-glenable-tex2d");
    // Texels go to the screen unchanged by the current colour or light.
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    libgr::grPrintError("after-gltexenv");

    for (std::uint32_t r = 0; r < m_rows; ++r) {
        for (std::uint32_t c = 0; c < m_cols; ++c) {
            std::size_t const index = std::size_t(m_cols) * r + c;
            // The right column and the top row stop where the picture stops.
            float const tx = std::min(m_size.x - float(c), 1.0f);
            float const ty = std::min(m_size.y - float(r), 1.0f);
            libgr::grPrintError("before m_texobjs[n].Load().");
            m_texobjs[index].Load();
            libgr::grPrintError("after m_texobjs[n].Load().");
            libgr::grTexParameter(m_texparm);
            libgr::grPrintError("after grTexParameter().");

            float const x0 = btm_lft.x + float(c) * side_x;
            float const x1 = btm_lft.x + (tx + float(c)) * side_x;
            float const y0 = btm_lft.y + float(r) * side_y;
            float const y1 = btm_lft.y + (ty + float(r)) * side_y;
            libgr::grBeginner fan(GL_TRIANGLE_FAN);
            glTexCoord2f(0.0f, 0.0f);
            glVertex2f(x0, y0);
            glTexCoord2f(tx, 0.0f);
            glVertex2f(x1, y0);
            glTexCoord2f(tx, ty);
            glVertex2f(x1, y1);
            glTexCoord2f(0.0f, ty);
            glVertex2f(x0, y1);
        }
    }

    libgr::grPrintError("before-gldisable-tex2d");
    glDisable(GL_TEXTURE_2D);
    libgr::grPrintError("after-gldisable-tex2d");
}

}  // namespace zanolib
