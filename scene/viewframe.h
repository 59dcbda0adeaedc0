// The photo frame around a picture: a band of picture pixels in one of five
// looks, and the textures and programs all frames share.
//
// The frame is drawn under the picture's view matrix, before the picture,
// and anew each time rather than from a display list, since it reads the
// light and the matrices of the moment. The bump-mapped looks take the best
// of three paths the GL offers: ARB vertex and fragment programs, else DOT3
// texture combiners with a normalisation cube map, else a plain lit
// texture. The capability flags are read at each call, so the path follows
// them as they stand.
#ifndef ZANOVIEW_SCENE_VIEWFRAME_H
#define ZANOVIEW_SCENE_VIEWFRAME_H

#include <cstdint>

#include "glext/glext.h"

#include "geometry/vector.h"
#include "gl/nodes.h"
#include "gl/texture.h"
#include "gl/texture2d.h"
#include "gl/texturecube.h"

namespace zanolib {

// The looks; the values of the frametype option.
enum e_frametype_t : std::uint32_t {
    FRAMETYPE_NONE = 0,        // nothing drawn, nothing used
    FRAMETYPE_FLAT = 1,        // flat band in the framecolor option's colour
    FRAMETYPE_BUMP_BROWN = 2,  // bump-mapped band in brown
    FRAMETYPE_BUMP_COLOR = 3,  // bump-mapped band in framecolor * 0.75
    FRAMETYPE_FLOWER = 4,      // blended band with the flower texture
};

// The ways a bump-mapped look is drawn, best first.
enum e_bumppath_t : std::uint32_t {
    BUMPPATH_PROGRAMS = 0,   // ARB vertex and fragment programs over the normal map
    BUMPPATH_COMBINERS = 1,  // DOT3 combiners, normal map and normalisation cube map
    BUMPPATH_PLAIN = 2,      // the hairline picture, lit by the fixed pipeline
};

class ViewFrame : public libgr::grObject3D {
public:
    ViewFrame() = default;
    ViewFrame(ViewFrame const&) = default;
    ViewFrame& operator=(ViewFrame const&) = default;
    // Frees nothing: the shared textures outlive every frame.
    ~ViewFrame() override;

    using grObject3D::Draw;
    // The band, from the picture's edge outwards, in the plane z = 0 of the
    // picture. Type 0 makes no GL call at all. Leaves lighting, blending,
    // texturing and the programs off, as the picture expects them.
    void Draw() const override;

    // Reads the shared pictures (hairline.bmp as colour and as height map,
    // flower.bmp) and makes the normalisation cube map; once per program.
    // Each file is looked for in the working directory, then as `datapath`
    // with the name appended (so `datapath` ends in "/"), then in the site
    // directory (options/sitedir.h). A file found nowhere, or broken, leaves
    // its texture empty, in silence.
    static void init(char const* datapath);
    // Drops the shared pictures; the GL textures stay.
    static void destroy();

    void setFrameType(e_frametype_t type);
    // `size` of the picture in pixels, `width` of the band in picture pixels.
    void setSize(libgr::direction2_t size, unsigned int width);
    e_frametype_t getFrameType() const { return m_frametype; }

    // The GL textures and programs of this frame's look. The programs are
    // read from bumpmapv.vp1 and bumpmapf.fp1, searched as in init; a
    // missing file or one the GL refuses is reported on the error stream,
    // and the next path is taken.
    void make_graph(char const* datapath);
    void free_graph();

    // The path a bump-mapped look takes now, by the capability flags and
    // whether both programs were accepted.
    static e_bumppath_t bumppath();

private:
    struct flower_look;
    struct bump_look;

    e_frametype_t m_frametype = FRAMETYPE_NONE;
    libgr::direction2_t m_size = libgr::dir2(libgr::datum2);  // pixels
    float m_reserved = 0.046875f;  // unused
    float m_width = 0.0f;          // picture pixels

    static bool s_inited;
    static libgr::grTexture2D s_monotex;       // hairline.bmp as colour
    static libgr::grTexture2D s_hairlinetex;   // hairline.bmp as normal map
    static libgr::grTexture2D s_flowertex;     // flower.bmp
    static libgr::grTextureCubeMap s_normaltex;  // normalisation cube map
    static libgr::grTextureObject s_monotexobj;
    static libgr::grTextureObject s_hairlinetexobj;
    static libgr::grTextureObject s_flowertexobj;
    static libgr::grTextureObject s_normaltexobj;
    static GLuint s_vertex_program;
    static GLuint s_fragment_program;
    static bool s_vertex_program_loaded;    // the GL accepted the text
    static bool s_fragment_program_loaded;  // the GL accepted the text
};

}  // namespace zanolib

#endif
