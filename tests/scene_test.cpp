// The scene on a real context: the list of pictures, the view matrix
// operations on their worked examples, and the viewport and projection.
#include "scene/viewscene.h"

#include <gtest/gtest.h>

#include <cmath>

#include "glext/glext.h"

#include "geometry/rotation.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture_files.h"

using namespace libgr;
using zanolib::ViewScene;

namespace {

void expect_near(matrix3w_t const& a, matrix3w_t const& b, float tolerance = 1e-5f)
{
    for (int i = 0; i < 16; ++i) EXPECT_NEAR(a.data()[i], b.data()[i], tolerance) << "float " << i;
}

class Scene : public zvtest::GlContextTest {
protected:
    // A picture of width x height added to the scene.
    void add(int width, int height, char const* name = "p.bmp")
    {
        std::string const path = m_dir.file(name);
        ASSERT_TRUE(zvtest::write_bmp24(path, width, height, zvtest::distinct_colour));
        ASSERT_TRUE(m_scene.addImage(path.c_str(), ""));
    }
    // Where the view matrix puts the picture's centre.
    position3_t centre() const { return getTranslateVector(m_scene.getMatrix()); }
    float scale() const { return std::cbrt(Determinant(m_scene.getMatrix())); }
    // The turn of the view matrix in degrees, counter-clockwise.
    float turn() const
    {
        matrix3w_t const& m = m_scene.getMatrix();
        return std::atan2(m.m[0].y, m.m[0].x) * 180.0f / float(M_PI);
    }

    zvtest::TempDir m_dir;
    ViewScene m_scene;
};

}  // namespace

TEST_F(Scene, AnEmptySceneHasTheIdentityAndIgnoresViewOperations)
{
    m_scene.Rotate(30, 0);
    m_scene.Zoom(1, 0);
    m_scene.Origin();
    expect_near(m_scene.getMatrix(), Imtx, 0.0f);
    EXPECT_FALSE(m_scene.delImage());
}

TEST_F(Scene, MissingFilesAreReportedAndLeaveTheListAlone)
{
    testing::internal::CaptureStderr();
    EXPECT_FALSE(m_scene.addImage("/nonexistent/x.bmp", ""));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "/nonexistent/x.bmp: image file not found.\n");
    // An extension no codec takes fails in silence.
    std::string const text = m_dir.file("notes.txt");
    zvtest::write_bmp24(text, 2, 2, zvtest::distinct_colour);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(m_scene.addImage(text.c_str(), ""));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(m_scene.getCurrentImageSize().x, 0);
}

TEST_F(Scene, TurnsCancelAndZoomsClearButClearingATurnTakesHalfOfIt)
{
    add(40, 30);
    m_scene.Rotate(30, 0);
    m_scene.Rotate(-30, 0);
    expect_near(m_scene.getMatrix(), Imtx);
    // Clearing takes back half of what is left of the turn each time.
    m_scene.Rotate(80, 0);
    m_scene.clrRotate();
    EXPECT_NEAR(turn(), 40.0f, 1e-3f);
    m_scene.clrRotate();
    EXPECT_NEAR(turn(), 20.0f, 1e-3f);

    m_scene.Zoom(1, 0);
    m_scene.Zoom(1, 0);
    EXPECT_NEAR(scale(), 4.0f, 1e-5f);
    m_scene.clrZoom();
    EXPECT_NEAR(scale(), 1.0f, 1e-5f);

    // A matrix given whole acts after what is there.
    matrix3w_t const before = m_scene.getMatrix();
    m_scene.Matrix(getScaleMatrix(2, 2, 2));
    expect_near(m_scene.getMatrix(), before * getScaleMatrix(2, 2, 2));
}

TEST_F(Scene, TheNewestOperationActsLastInScreenAxes)
{
    add(40, 30);
    m_scene.Move({10, 0, 0}, 0);
    m_scene.Rotate(90, 0);
    EXPECT_NEAR(centre().x, 0.0f, 1e-5f);
    EXPECT_NEAR(centre().y, 10.0f, 1e-5f);

    m_scene.Origin();
    m_scene.Rotate(90, 0);
    m_scene.Move({10, 0, 0}, 0);
    EXPECT_NEAR(centre().x, 10.0f, 1e-5f);
    EXPECT_NEAR(centre().y, 0.0f, 1e-5f);

    // A zoom after a move scales the move along, and so does its clearing.
    m_scene.Zoom(1, 0);
    EXPECT_NEAR(centre().x, 20.0f, 1e-5f);
    m_scene.clrZoom();
    EXPECT_NEAR(centre().x, 10.0f, 1e-5f);
    m_scene.clrMove();
    EXPECT_NEAR(centre().x, 0.0f, 1e-5f);
    EXPECT_NEAR(turn(), 90.0f, 1e-3f);
}

TEST_F(Scene, DeletingKeepsTheLastRemainingPictureCurrent)
{
    add(10, 10, "a.bmp");
    add(20, 10, "b.bmp");
    add(30, 10, "c.bmp");
    EXPECT_EQ(m_scene.getCurrentImageSize().x, 10);  // the first stays current
    m_scene.setCurrent(2);
    EXPECT_TRUE(m_scene.delImage());
    EXPECT_EQ(m_scene.getCurrentImageSize().x, 20);
    m_scene.setCurrent(0);
    EXPECT_TRUE(m_scene.delImage());
    EXPECT_EQ(m_scene.getCurrentImageSize().x, 20);
    EXPECT_TRUE(m_scene.delImage());
    EXPECT_FALSE(m_scene.delImage());
}

namespace {

// The x and y of the view offset, read back from the projection.
position2_t view_offset(int width, int height)
{
    matrix3w_t p;
    glGetFloatv(GL_PROJECTION_MATRIX, p.data());
    // glOrtho puts -(right + left) / (right - left) in element 12.
    return {-p.m[3].x * float(width) / 2.0f, -p.m[3].y * float(height) / 2.0f};
}

}  // namespace

TEST_F(Scene, ReshapeMovesOddPicturesHalfAPixelAndClampsToTheLargestViewport)
{
    add(800, 600);
    m_scene.Reshape(800, 600);
    position2_t const even = view_offset(800, 600);
    EXPECT_FLOAT_EQ(even.x, 0.0f);
    EXPECT_FLOAT_EQ(even.y, 0.0f);
    m_scene.Reshape(801, 601);
    position2_t const odd = view_offset(801, 601);
    EXPECT_FLOAT_EQ(odd.x, -0.5f);
    EXPECT_FLOAT_EQ(odd.y, -0.5f);
    GLint viewport[4], dims[2];
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, dims);
    m_scene.Reshape(1000000, 1000000);
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], dims[0]);
}

TEST_F(Scene, SmoothMagnificationToggles)
{
    add(4, 4);
    m_scene.make_graph("");
    EXPECT_FALSE(m_scene.toggleSmooth());
    EXPECT_TRUE(m_scene.toggleSmooth());
    m_scene.free_graph();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}
