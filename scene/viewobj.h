// One picture on its way from a file to the screen: decoded, cut into
// tiles and drawn as a rectangle in picture pixels centred on the origin.
#ifndef ZANOVIEW_SCENE_VIEWOBJ_H
#define ZANOVIEW_SCENE_VIEWOBJ_H

#include <string>
#include <vector>

#include "codecs/image_object.h"
#include "geometry/vector.h"
#include "gl/nodes.h"
#include "gl/texture.h"
#include "image/image.h"
#include "utils/ptr.h"

#include "scene/tiling.h"

namespace zanolib {

// Never scaled or turned in memory: that is the view matrix's business.
class ViewObject : public libgr::grObject3D {
public:
    ViewObject();
    ViewObject(ViewObject const& other) = default;
    ~ViewObject() override = default;

    // Decodes `path` with the codec its extension names (.jpg or .jpeg,
    // .bmp, .png, .tga, in any case), then cuts
    // the picture into tiles and describes their textures. No GL object is
    // made yet. False for an unknown extension or a file the codec refuses.
    // `datapath` is not used.
    bool setImage(char const* path, char const* datapath);

    // Writes what the window shows now, frame and view included, as the
    // JPEG <directory>/<stem>.zvw.jpg of `path`: "a/b.png" gives
    // "a/b.zvw.jpg". The picture file itself is never written.
    bool saveImage(char const* path);

    // Makes the tile textures; needs a current context. The picture's pixels
    // are given back as their tiles go up, so the decoded picture and its
    // textures are never in memory whole at the same time; making the
    // textures again (a rebuild) reads the file again.
    void load_texture();
    void free_texture();
    bool is_resident() const;

    // GL_LINEAR or GL_NEAREST magnification. A display list compiled before
    // keeps the old filter until it is compiled again.
    void setMagSmooth(bool on);
    bool getMagSmooth() const { return m_magsmooth; }

    // The stored picture's size in pixels, before any turn.
    libgr::direction2l_t getImageSize() const;
    // Clockwise quarter turns the file asks for.
    unsigned long rightrotatecount() const { return m_rightrotatecount; }

    void Draw() const override;
    using libgr::grObject3D::Draw;

private:
    // Gives back the pixel memory of the picture's rows below `rows`.
    void release_rows(std::uint32_t rows);

    std::string m_path;
    std::vector<unsigned char> m_bytes;  // reserved
    unsigned long m_rightrotatecount = 0;
    libgr::image2d_t m_image;  // the tiles are windows onto its bytes
    multi_square_image_t m_squareimage;
    multi_texture_object_t m_texobject;
    libgr::texparameter2d_t m_texparameter;
    bool m_texture_loaded = false;
    bool m_pixels_released = false;  // the textures hold the picture now, its record doesn't
    std::uint64_t m_released = 0;    // bytes of m_image given back so far
    bool m_magsmooth = true;

    // The codec of each kind, alive for one load only.
    static libutils::ptr_t<libgr::image_object_t> m_jpeg1imgobj;
    static libutils::ptr_t<libgr::image_object_t> m_bmpimgobj;
    static libutils::ptr_t<libgr::image_object_t> m_pngimgobj;
    static libutils::ptr_t<libgr::image_object_t> m_tgaimgobj;
};

}  // namespace zanolib

#endif
