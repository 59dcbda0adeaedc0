#include "scene/viewframe.h"

#include <sys/stat.h>

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "codecs/bmp.h"
#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/texcoord.h"
#include "geometry/text.h"
#include "gl/error.h"
#include "gl/wrappers.h"
#include "image/convert.h"
#include "image/normalmap.h"
#include "options/option.h"
#include "options/sitedir.h"
#include "utils/diag.h"

namespace zanolib {

using libgr::grPrintError;

namespace {

// ---- Shared data -----------------------------------------------------------

// Beyond the edge of the colour textures, should they ever get a border:
// 18% gray, alpha scaled alike.
libgr::color3a_t const s_bordercolor = libgr::white * 0.18f;
// Colour textures: clamped, so the outer edge doesn't pick up the far side.
libgr::texparameter2d_t const s_textureparameter =
    libgr::texparameter2d(GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP, GL_CLAMP, 1.0f);
// The normal map: clamped to its own edge texels, as a border colour is no
// normal.
libgr::texparameter2d_t const s_textureparameter_heightmap = libgr::texparameter2d(
    GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, 1.0f);
libgr::texparametercubemap_t const s_textureparameter_normalmap =
    libgr::texparametercubemap(GL_LINEAR, GL_LINEAR, 1.0f);

// The outer edge of the band takes the texture's edge and the inner edge a
// quarter of the way in, whatever the picture's proportions; vertices
// alternate outer and inner corner, counter-clockwise from the bottom left.
libgr::texcoord2_t const texcoords_frame[8] = {
    {0.0f, 0.0f}, {0.25f, 0.25f}, {1.0f, 0.0f}, {0.75f, 0.25f},
    {1.0f, 1.0f}, {0.75f, 0.75f}, {0.0f, 1.0f}, {0.25f, 0.75f},
};
// Four quads as one strip, inner vertex first in each pair so that they
// face the viewer and survive back-face culling.
unsigned char const elements[10] = {1, 0, 3, 2, 5, 4, 7, 6, 1, 0};

// ---- Data files ------------------------------------------------------------

// The first place where `name` opens: as it stands (the working directory),
// behind `datapath`, then in the site directory. `path` ends as the
// name found, or else the last one tried.
bool find_data_file(char const* name, char const* datapath, std::string& path)
{
    char const* const places[] = {"", datapath, kSiteDirectory};
    for (char const* place : places) {
        if (!place) continue;
        path = std::string(place) + name;
        if (std::ifstream(path, std::ios::binary).is_open()) return true;
    }
    return false;
}

// The picture of data file `name` as the BMP holds it; false, in silence,
// when it is found nowhere or can't be read.
bool load_bmp(libgr::image2d_t& image, char const* name, char const* datapath)
{
    std::string path;
    libgr::bmpimage_t bmp;
    if (!find_data_file(name, datapath, path) || !bmp.load(path.c_str(), nullptr)) return false;
    return libgr::convert(image, bmp);
}

void load_image_rgb(libgr::grTexture2D& texture, char const* name, char const* datapath)
{
    libgr::image2d_t image;
    if (!load_bmp(image, name, datapath)) return;
    if (!is_GL_EXT_bgra_supported) {
        libgr::image2d_t rgb;
        libgr::bgr2rgb(rgb, image);
        image = rgb;
    }
    // Size 0: the file must have power-of-two sides itself.
    texture.setImage(image, 0, 0);
    texture.setBuildMipmap(true);
    texture.setInternalCompression(false);
    texture.setBorder(false);
    texture.setTextureParameter(&s_textureparameter);
    texture.setBorderColor(&s_bordercolor);
}

void load_image_heightmap(libgr::grTexture2D& texture, char const* name, float scale,
                          char const* datapath)
{
    libgr::image2d_t image;
    if (!load_bmp(image, name, datapath)) return;
    // The gray levels as the file has them. Heights of any other kind come
    // back unconverted and go up as they are.
    libgr::image2d_t normals;
    libgr::heightmap2normalmap(normals, image, scale);
    texture.setImage(normals, 0, 0);
    texture.setBuildMipmap(true);
    texture.setInternalCompression(false);
    texture.setBorder(false);
    texture.setTextureParameter(&s_textureparameter_heightmap);
}

void load_image_normalmap(libgr::grTextureCubeMap& texture)
{
    libgr::image2d_t faces[6];
    libgr::makenormalcubemap(faces);
    texture.setImage(faces, 0, 0);
    texture.setTextureParameter(&s_textureparameter_normalmap);
}

// Gives the text of program file `name` to the program bound to `target`.
// False, with a line on the error stream, when no place has the file or
// the GL refuses the text.
bool load_program(GLenum target, char const* name, char const* datapath)
{
    std::string path;
    struct stat st;
    if (!find_data_file(name, datapath, path) || stat(path.c_str(), &st) != 0) {
        libutils::error();
        std::cerr << path << ": read error." << std::endl;
        return false;
    }
    std::vector<char> text(static_cast<std::size_t>(st.st_size) + 1, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), st.st_size);
    glProgramStringARB(target, GL_PROGRAM_FORMAT_ASCII_ARB, GLsizei(file.gcount()), text.data());
    if (glGetError() == GL_NO_ERROR) return true;

    GLint position = -1;
    glGetIntegerv(GL_PROGRAM_ERROR_POSITION_ARB, &position);
    auto const* message =
        reinterpret_cast<char const*>(glGetString(GL_PROGRAM_ERROR_STRING_ARB));
    libutils::error();
    std::cerr << name << ": " << position << ": " << (message ? message : "") << std::endl;
    return false;
}

// ---- Capabilities ----------------------------------------------------------

bool programs_available()
{
    return is_GL_ARB_vertex_program_supported && is_GL_ARB_fragment_program_supported;
}

bool combiners_available()
{
    return is_GL_ARB_texture_env_combine_supported && is_GL_ARB_texture_env_dot3_supported &&
           is_GL_ARB_texture_cube_map_supported && is_GL_ARB_multitexture_supported;
}

// ---- Drawing ---------------------------------------------------------------

// The texture environment of one combiner stage, RGB part.
void combine_rgb(GLenum function, GLenum source0, GLenum source1)
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GLint(function));
    glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_RGB, GLint(source0));
    glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE1_RGB, GLint(source1));
    glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB, GL_SRC_COLOR);
    glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND1_RGB, GL_SRC_COLOR);
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, 1.0f);
}

void set_material(libgr::color3a_t const& col, libgr::color3a_t const& specular)
{
    libgr::grMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, col);
    libgr::grMaterial(GL_FRONT, GL_EMISSION, libgr::black);
    libgr::grMaterial(GL_FRONT, GL_SPECULAR, specular);
    libgr::grMaterial(GL_FRONT, GL_SHININESS, 100.0f /*exponent*/);
}

// The band's texture coordinates and the normal of its plane; the second
// texture unit's fixed coordinate is the tangent the programs build their
// frame with.
void band_attributes()
{
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    libgr::grTexCoordPointer(texcoords_frame, 0 /*stride*/);
    glNormal3f(0.0f, 0.0f, 1.0f);
    glMultiTexCoord3f(GL_TEXTURE1, 1.0f, 0.0f, 0.0f);
}

void draw_band(libgr::position2_t const (&vertices)[8])
{
    grPrintError("ViewFrame::Draw() - before vertex array.");
    glEnableClientState(GL_VERTEX_ARRAY);
    libgr::grVertexPointer(vertices, 0 /*stride*/);
    libgr::grDrawElements(GL_QUAD_STRIP, 10 /*indices*/, elements);
    glDisableClientState(GL_VERTEX_ARRAY);
    grPrintError("ViewFrame::Draw() - after vertex array.");
}

}  // namespace

// ---- Looks -----------------------------------------------------------------
//
// Each look sets its state in a constructor and takes it away in the
// destructor, so that the picture drawn next finds lighting, blending and
// texturing off.

// The flower texture, lit and blended over what lies behind.
struct ViewFrame::flower_look {
    flower_look()
    {
        libgr::grColor(libgr::white);
        glEnable(GL_LIGHTING);
        glEnable(GL_BLEND);
        glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        if (is_GL_ARB_imaging_supported) glBlendEquationEXT(GL_FUNC_ADD);
        glEnable(normal_scaling());
        glEnable(GL_TEXTURE_2D);
        s_flowertexobj.Load();
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        libgr::grTexCoordPointer(texcoords_frame, 0 /*stride*/);
        glNormal3f(0.0f, 0.0f, 1.0f);
    }
    ~flower_look()
    {
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_BLEND);
        glDisable(GL_LIGHTING);
        glDisable(normal_scaling());
    }
    flower_look(flower_look const&) = delete;
    flower_look& operator=(flower_look const&) = delete;

    // The view matrix zooms uniformly, which rescaling undoes more cheaply
    // than renormalising.
    static GLenum normal_scaling()
    {
        return is_GL_EXT_rescale_normal_supported ? GL_RESCALE_NORMAL : GL_NORMALIZE;
    }
};

// The hairline relief in `col`, by the best path there is.
struct ViewFrame::bump_look {
    explicit bump_look(libgr::color3a_t const& col)
    {
        libgr::grColor(col);
        switch (bumppath()) {
        case BUMPPATH_PROGRAMS: begin_programs(); break;
        case BUMPPATH_COMBINERS: begin_combiners(col); break;
        case BUMPPATH_PLAIN: begin_plain(col); break;
        }
        glEnable(GL_NORMALIZE);
        band_attributes();
    }
    // The path is asked for again: the flags have not changed meanwhile.
    ~bump_look()
    {
        switch (bumppath()) {
        case BUMPPATH_PROGRAMS: end_programs(); break;
        case BUMPPATH_COMBINERS: end_combiners(); break;
        case BUMPPATH_PLAIN: end_plain(); break;
        }
    }
    bump_look(bump_look const&) = delete;
    bump_look& operator=(bump_look const&) = delete;

    // The programs light the relief per pixel themselves; they get the
    // light and the matrices of the moment.
    static void begin_programs()
    {
        libgr::matrix3w_t mv;
        libgr::matrix3w_t proj;
        libgr::grGet(GL_MODELVIEW_MATRIX, mv);
        libgr::grGet(GL_PROJECTION_MATRIX, proj);
        glBindProgramARB(GL_VERTEX_PROGRAM_ARB, s_vertex_program);
        libgr::position3_t light;
        libgr::grGetLightPos(GL_LIGHT0, light);  // eye coordinates
        if (g_option.debug) std::cout << light << std::endl;
        glProgramLocalParameter4fARB(GL_VERTEX_PROGRAM_ARB, 0 /*light*/, light.x, light.y, light.z,
                                     1.0f);
        // Rows of GL's column-vector form: the transposes of ours.
        libgr::grProgramLocalParameterARB(GL_VERTEX_PROGRAM_ARB, 1 /*modelview*/, libgr::Transpose(mv));
        if (g_option.debug) std::cout << mv << std::endl;
        libgr::grProgramLocalParameterARB(GL_VERTEX_PROGRAM_ARB, 5 /*inverse*/,
                                          libgr::Transpose(libgr::Invert(mv)));
        libgr::grProgramLocalParameterARB(GL_VERTEX_PROGRAM_ARB, 9 /*projection*/,
                                          libgr::Transpose(proj));
        glBindProgramARB(GL_FRAGMENT_PROGRAM_ARB, s_fragment_program);
        // Shininess of the highlights, and no colour added.
        glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 0, 10.0f, 0.0f, 0.0f, 0.0f);
        glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 1, 0.0f, 0.0f, 0.0f, 0.0f);
        glEnable(GL_VERTEX_PROGRAM_ARB);
        glEnable(GL_FRAGMENT_PROGRAM_ARB);
        glActiveTexture(GL_TEXTURE0);
        glEnable(GL_TEXTURE_2D);
        s_hairlinetexobj.Load();
    }
    static void end_programs()
    {
        glBindProgramARB(GL_VERTEX_PROGRAM_ARB, 0);
        glBindProgramARB(GL_FRAGMENT_PROGRAM_ARB, 0);
        glDisable(GL_VERTEX_PROGRAM_ARB);
        glDisable(GL_FRAGMENT_PROGRAM_ARB);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_NORMALIZE);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }

    // Unit 0 looks the reflected eye vector up in the cube map, unit 1 takes
    // its dot product with the normal map.
    static void begin_combiners(libgr::color3a_t const& col)
    {
        libgr::direction3_t light;
        libgr::grGetLightPos(GL_LIGHT0, light);  // normalised
        libgr::color3a_t const l = {light.x, light.y, light.z, 1.0f};
        glActiveTextureARB(GL_TEXTURE0);
        glEnable(GL_TEXTURE_CUBE_MAP);
        libgr::grTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, l);
        combine_rgb(GL_REPLACE, GL_TEXTURE, GL_PREVIOUS);
        glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, GL_REFLECTION_MAP);
        glTexGeni(GL_T, GL_TEXTURE_GEN_MODE, GL_REFLECTION_MAP);
        glTexGeni(GL_R, GL_TEXTURE_GEN_MODE, GL_REFLECTION_MAP);
        glEnable(GL_TEXTURE_GEN_S);
        glEnable(GL_TEXTURE_GEN_T);
        glEnable(GL_TEXTURE_GEN_R);
        s_normaltexobj.Load();

        glActiveTextureARB(GL_TEXTURE1);
        glClientActiveTextureARB(GL_TEXTURE1);
        glEnable(GL_TEXTURE_2D);
        combine_rgb(GL_DOT3_RGB, GL_PREVIOUS, GL_TEXTURE);
        s_hairlinetexobj.Load();

        glEnable(GL_LIGHTING);
        set_material(col, libgr::black);
    }
    // NOTE: the texture coordinate array was enabled for unit 1 and stays
    // so; only unit 0's is disabled. Harmless, as the pictures are drawn
    // with immediate-mode coordinates.
    static void end_combiners()
    {
        glActiveTextureARB(GL_TEXTURE1);
        glDisable(GL_TEXTURE_2D);
        glActiveTextureARB(GL_TEXTURE0);
        glClientActiveTextureARB(GL_TEXTURE0);
        glDisable(GL_TEXTURE_CUBE_MAP);
        glDisable(GL_TEXTURE_GEN_S);
        glDisable(GL_TEXTURE_GEN_T);
        glDisable(GL_TEXTURE_GEN_R);
        glDisable(GL_LIGHTING);
        glDisable(GL_NORMALIZE);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }

    static void begin_plain(libgr::color3a_t const& col)
    {
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glEnable(GL_LIGHTING);
        set_material(col, libgr::white);
        s_monotexobj.Load();
    }
    static void end_plain()
    {
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_LIGHTING);
        glDisable(GL_NORMALIZE);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
};

// ---- The frame -------------------------------------------------------------

bool ViewFrame::s_inited = false;
libgr::grTexture2D ViewFrame::s_monotex;
libgr::grTexture2D ViewFrame::s_hairlinetex;
libgr::grTexture2D ViewFrame::s_flowertex;
libgr::grTextureCubeMap ViewFrame::s_normaltex;
libgr::grTextureObject ViewFrame::s_monotexobj;
libgr::grTextureObject ViewFrame::s_hairlinetexobj;
libgr::grTextureObject ViewFrame::s_flowertexobj;
libgr::grTextureObject ViewFrame::s_normaltexobj;
GLuint ViewFrame::s_vertex_program = 0;
GLuint ViewFrame::s_fragment_program = 0;
bool ViewFrame::s_vertex_program_loaded = false;
bool ViewFrame::s_fragment_program_loaded = false;

ViewFrame::~ViewFrame() = default;

namespace {

// Which of the frame's pictures have been made. Each is read and converted
// the first time a frame needs it rather than at start: the plain band, the
// default, needs none of them, and the normalisation cube map alone is a
// noticeable part of starting up.
struct made_t {
    bool mono = false, hairline = false, flower = false, normal = false;
} s_made;

}  // namespace

void ViewFrame::init(char const* /*datapath*/)
{
    s_inited = true;
}

void ViewFrame::destroy()
{
    if (!s_inited) return;
    s_monotex.clear();
    s_flowertex.clear();
    s_hairlinetex.clear();
    s_normaltex.clear();
    s_made = made_t();
    s_inited = false;
}

void ViewFrame::setFrameType(e_frametype_t type)
{
    if (type == m_frametype) return;
    if (g_option.debug) std::cout << "frametype: " << std::uint32_t(type) << std::endl;
    m_frametype = type;
}

void ViewFrame::setSize(libgr::direction2_t size, unsigned int width)
{
    m_size = size;
    m_width = float(width);
}

e_bumppath_t ViewFrame::bumppath()
{
    if (programs_available() && s_vertex_program_loaded && s_fragment_program_loaded)
        return BUMPPATH_PROGRAMS;
    return combiners_available() ? BUMPPATH_COMBINERS : BUMPPATH_PLAIN;
}

void ViewFrame::make_graph(char const* datapath)
{
    auto const mono = [datapath] {
        if (!s_made.mono) load_image_rgb(s_monotex, "hairline.bmp", datapath);
        s_made.mono = true;
    };
    auto const hairline = [datapath] {
        if (!s_made.hairline) load_image_heightmap(s_hairlinetex, "hairline.bmp", 100.0f, datapath);
        s_made.hairline = true;
    };
    switch (m_frametype) {
    case FRAMETYPE_FLOWER:
        if (!s_made.flower) load_image_rgb(s_flowertex, "flower.bmp", datapath);
        s_made.flower = true;
        s_flowertexobj.Preload(&s_flowertex);
        return;
    case FRAMETYPE_BUMP_BROWN:
    case FRAMETYPE_BUMP_COLOR:
        break;
    default:
        return;
    }
    if (programs_available()) {
        hairline();
        s_hairlinetexobj.Preload(&s_hairlinetex);
        glGenProgramsARB(1, &s_vertex_program);
        glBindProgramARB(GL_VERTEX_PROGRAM_ARB, s_vertex_program);
        s_vertex_program_loaded = load_program(GL_VERTEX_PROGRAM_ARB, "bumpmapv.vp1", datapath);
        glGenProgramsARB(1, &s_fragment_program);
        glBindProgramARB(GL_FRAGMENT_PROGRAM_ARB, s_fragment_program);
        s_fragment_program_loaded =
            load_program(GL_FRAGMENT_PROGRAM_ARB, "bumpmapf.fp1", datapath);
        glBindProgramARB(GL_FRAGMENT_PROGRAM_ARB, 0);
        if (s_vertex_program_loaded && s_fragment_program_loaded) return;
    }
    if (combiners_available()) {
        hairline();
        if (!s_made.normal) load_image_normalmap(s_normaltex);
        s_made.normal = true;
        s_hairlinetexobj.Preload(&s_hairlinetex);
        s_normaltexobj.Preload(&s_normaltex);
        return;
    }
    mono();
    s_monotexobj.Preload(&s_monotex);
}

void ViewFrame::free_graph()
{
    switch (m_frametype) {
    case FRAMETYPE_FLOWER:
        s_flowertexobj.Unload();
        return;
    case FRAMETYPE_BUMP_BROWN:
    case FRAMETYPE_BUMP_COLOR:
        break;
    default:
        return;
    }
    // Whatever path was taken: unloading what was never preloaded does
    // nothing. The loaded flags stay set for the next make_graph to renew.
    if (programs_available()) {
        s_hairlinetexobj.Unload();
        if (s_vertex_program_loaded) glDeleteProgramsARB(1, &s_vertex_program);
        if (s_fragment_program_loaded) glDeleteProgramsARB(1, &s_fragment_program);
    }
    if (combiners_available()) {
        s_hairlinetexobj.Unload();
        s_normaltexobj.Unload();
    } else {
        s_monotexobj.Unload();
    }
}

void ViewFrame::Draw() const
{
    if (m_frametype == FRAMETYPE_NONE) return;
    float const hx = m_size.x * 0.5f;
    float const hy = m_size.y * 0.5f;
    float const ox = hx + m_width;
    float const oy = hy + m_width;
    libgr::position2_t const vertices[8] = {
        {-ox, -oy}, {-hx, -hy}, {ox, -oy}, {hx, -hy}, {ox, oy}, {hx, hy}, {-ox, oy}, {-hx, hy},
    };

    switch (m_frametype) {
    case FRAMETYPE_FLAT: {
        option_color_t const& c = g_option.framecolor;
        libgr::grColor(libgr::color3aub(c.r, c.g, c.b, c.a));
        draw_band(vertices);
        break;
    }
    case FRAMETYPE_BUMP_BROWN: {
        bump_look keep(libgr::brown);
        draw_band(vertices);
        break;
    }
    case FRAMETYPE_BUMP_COLOR: {
        option_color_t const& c = g_option.framecolor;
        bump_look keep(libgr::color3a(libgr::color3aub(c.r, c.g, c.b, c.a)) * 0.75f);
        draw_band(vertices);
        break;
    }
    case FRAMETYPE_FLOWER: {
        flower_look keep;
        draw_band(vertices);
        break;
    }
    default:
        // A type beyond the option's range has no look of its own.
        draw_band(vertices);
        break;
    }
}

}  // namespace zanolib
