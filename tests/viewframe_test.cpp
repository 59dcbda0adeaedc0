// The photo frame in-process: each bump-mapping path, forced by clearing the
// capability flags the better ones need, draws the band and leaves the state
// the picture expects; a missing or refused program gives way to the next.
#include "scene/viewframe.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "glext/glext.h"

#include "options/option.h"
#include "scene/viewscene.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture_files.h"

using namespace zanolib;

namespace {

constexpr int kWindow = 64;   // the test window's side, pixels
constexpr int kPicture = 16;  // the picture's side
constexpr int kBand = 12;     // the frame's width
constexpr std::uint32_t kBackground = 0x2e2e2e;
std::string const kDataDir = std::string(ZV_BUILD_DIR) + "/";  // the build copies data/ there

// The flags that choose the path, put back at the end of a test.
class PathFlags {
public:
    ~PathFlags()
    {
        is_GL_ARB_vertex_program_supported = m_saved[0];
        is_GL_ARB_fragment_program_supported = m_saved[1];
        is_GL_ARB_texture_env_dot3_supported = m_saved[2];
    }
    void clear(bool programs, bool combiners)
    {
        if (programs) is_GL_ARB_vertex_program_supported = is_GL_ARB_fragment_program_supported = 0;
        if (combiners) is_GL_ARB_texture_env_dot3_supported = 0;
    }

private:
    std::int32_t const m_saved[3] = {is_GL_ARB_vertex_program_supported,
                                     is_GL_ARB_fragment_program_supported,
                                     is_GL_ARB_texture_env_dot3_supported};
};

// What the frame's looks turn on and must turn off again. The picture
// switches unit 0's 2-D texturing itself, so only the other unit's counts.
std::vector<std::string> left_enabled()
{
    struct {
        GLenum cap;
        char const* name;
    } const caps[] = {
        {GL_LIGHTING, "lighting"}, {GL_BLEND, "blending"}, {GL_TEXTURE_CUBE_MAP, "cube map"},
        {GL_TEXTURE_GEN_S, "texgen"}, {GL_VERTEX_PROGRAM_ARB, "vertex program"},
        {GL_FRAGMENT_PROGRAM_ARB, "fragment program"}, {GL_NORMALIZE, "normalize"},
        {GL_RESCALE_NORMAL, "rescale normal"},
    };
    std::vector<std::string> on;
    for (auto const& c : caps)
        if (glIsEnabled(c.cap)) on.push_back(c.name);
    glActiveTexture(GL_TEXTURE1);
    if (glIsEnabled(GL_TEXTURE_2D)) on.push_back("unit 1 texture");
    glActiveTexture(GL_TEXTURE0);
    return on;
}

class Frame : public zvtest::GlContextTest {
protected:
    void SetUp() override
    {
        zvtest::GlContextTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_TRUE(zvtest::write_bmp24(m_dir.file("p.bmp"), kPicture, kPicture,
                                        zvtest::distinct_colour));
        g_option.framewidth = kBand;
    }
    void TearDown() override { g_option = m_saved; }

    // Shows the picture with a frame of `type` and checks where the band
    // lies; `made` gets what making the frame wrote on stderr.
    void show(std::uint32_t type, std::string const& datapath, std::string* made = nullptr)
    {
        g_option.frametype = type;
        ViewScene scene;
        scene.Init(datapath.c_str());
        ASSERT_TRUE(scene.addImage(m_dir.file("p.bmp").c_str(), datapath.c_str()));
        scene.Reshape(kWindow, kWindow);
        testing::internal::CaptureStderr();
        scene.make_graph(datapath.c_str());
        std::string const making = testing::internal::GetCapturedStderr();
        if (made) *made = making;
        testing::internal::CaptureStderr();
        scene.Display();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "GL errors while drawing";
        EXPECT_EQ(left_enabled(), std::vector<std::string>{});
        expect_framed();
        scene.Destroy();
    }

    // The band from the picture's edge kBand pixels out, the background
    // beyond, and the picture untouched by the frame's state.
    void expect_framed()
    {
        std::vector<unsigned char> rgba(4 * kWindow * kWindow);
        glReadPixels(0, 0, kWindow, kWindow, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
        int const lo = (kWindow - kPicture) / 2, hi = lo + kPicture;
        int wrong_band = 0, wrong_outside = 0, wrong_picture = 0;
        for (int y = 0; y < kWindow; ++y) {
            for (int x = 0; x < kWindow; ++x) {
                unsigned char const* p = &rgba[4 * (y * kWindow + x)];
                std::uint32_t const c = std::uint32_t(p[0]) << 16 | p[1] << 8 | p[2];
                auto inside = [&](int margin) {
                    return x >= lo - margin && x < hi + margin && y >= lo - margin && y < hi + margin;
                };
                if (inside(0))
                    wrong_picture += c != zvtest::distinct_colour(x - lo, hi - 1 - y);
                else if (inside(kBand))
                    wrong_band += c == kBackground;
                else
                    wrong_outside += c != kBackground;
            }
        }
        EXPECT_EQ(wrong_band, 0) << "band pixels showing the background";
        EXPECT_EQ(wrong_outside, 0) << "pixels beyond the band not the background";
        EXPECT_EQ(wrong_picture, 0) << "picture pixels changed";
    }

    zvtest::TempDir m_dir;
    option_t const m_saved = g_option;
};

struct look_t {
    char const* name;
    std::uint32_t type;
    bool programs, combiners;  // the extensions the path needs are offered
    e_bumppath_t path;
};
void PrintTo(look_t const& look, std::ostream* os) { *os << look.name; }

class FrameLooks : public Frame, public testing::WithParamInterface<look_t> {};

}  // namespace

TEST_P(FrameLooks, DrawTheBandAndLeaveLightingBlendingTexturingOff)
{
    look_t const look = GetParam();
    PathFlags keep;
    keep.clear(!look.programs, !look.combiners);
    show(look.type, kDataDir);
    if (look.type == FRAMETYPE_BUMP_BROWN) {
        EXPECT_EQ(ViewFrame::bumppath(), look.path);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Paths, FrameLooks,
    testing::Values(look_t{"Programs", 2, true, true, BUMPPATH_PROGRAMS},
                    look_t{"Combiners", 2, false, true, BUMPPATH_COMBINERS},
                    look_t{"PlainTexture", 2, false, false, BUMPPATH_PLAIN},
                    look_t{"Flowers", 4, true, true, BUMPPATH_PROGRAMS}),
    [](testing::TestParamInfo<look_t> const& info) { return info.param.name; });

TEST_F(Frame, AMissingOrRefusedProgramGivesWayToTheNextPath)
{
    if (std::ifstream("/usr/site/share/zanolib/bumpmapf.fp1").is_open())
        GTEST_SKIP() << "this machine has a shared bumpmapf.fp1";
    // Away from the build directory, so that only `data` has program files.
    zvtest::TempDir empty, data;
    struct Back {
        char cwd[4096];
        ~Back() { EXPECT_EQ(chdir(cwd), 0); }
    } back;
    ASSERT_NE(getcwd(back.cwd, sizeof back.cwd), nullptr);
    ASSERT_EQ(chdir(empty.path().c_str()), 0);
    std::ofstream(data.file("bumpmapv.vp1"))
        << std::ifstream(kDataDir + "bumpmapv.vp1").rdbuf();
    std::string const datapath = data.path() + "/";
    PathFlags keep;
    std::string made;

    show(FRAMETYPE_BUMP_BROWN, datapath, &made);
    // The last place tried is named.
    EXPECT_NE(made.find("/usr/site/share/zanolib/bumpmapf.fp1: read error.\n"), std::string::npos)
        << made;
    EXPECT_EQ(ViewFrame::bumppath(), BUMPPATH_COMBINERS);

    std::ofstream(data.file("bumpmapf.fp1")) << "!!ARBfp1.0\nMOV result.color, nothing;\nEND\n";
    keep.clear(false, true);
    show(FRAMETYPE_BUMP_COLOR, datapath, &made);
    EXPECT_EQ(made.rfind("bumpmapf.fp1: ", 0), 0u) << made;  // name, position, message
    EXPECT_EQ(ViewFrame::bumppath(), BUMPPATH_PLAIN);
}
