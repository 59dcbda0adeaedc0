// Scene nodes and display lists on a real context: the matrix each node
// leaves for its child, read by a probe node at the bottom of the tree.
#include <gtest/gtest.h>

#include <vector>

#include "glext/glext.h"

#include "gl/dsplist.h"
#include "gl/nodes.h"
#include "tests/support/gl_context.h"

using namespace libgr;

namespace {

matrix3w_t modelview()
{
    matrix3w_t m;
    glGetFloatv(GL_MODELVIEW_MATRIX, m.data());
    return m;
}

GLint stack_depth()
{
    GLint depth = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    return depth;
}

// Notes the modelview matrix each time it is drawn.
struct probe_t : grObject3D {
    using grObject3D::Draw;
    void Draw() const override { seen.push_back(modelview()); }
    mutable std::vector<matrix3w_t> seen;
};

// Moves the current matrix by one along x: a drawing whose replay shows.
struct step_t : grObject3D {
    using grObject3D::Draw;
    void Draw() const override
    {
        ++draws;
        glTranslatef(1.0f, 0.0f, 0.0f);
    }
    mutable int draws = 0;
};

void expect_near(matrix3w_t const& got, matrix3w_t const& want)
{
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(got.data()[i], want.data()[i], 1e-5f) << "element " << i;
}

using Nodes = zvtest::FreshGlTest;

}  // namespace

TEST_F(Nodes, TransformsApplyToTheChildAndTheInnerOneActsFirst)
{
    probe_t probe;
    grTranslater move;
    move.m_position = position3(1.0f, 2.0f, 3.0f);
    grZoomer zoom;
    zoom.setZoom(direction3(1.0f, 2.0f, 0.0f));
    zoom.addZoom(direction3(1.0f, 0.0f, 0.0f));
    grRotater turn;
    turn.m_rotation = rotation3(90.0f, IdirZ);
    grTransformer view;
    view.m_matrix = getTranslateMatrix(position3(5.0f, 0.0f, 0.0f));
    // Without a child, not even the transform is applied.
    for (grObject3D* node : std::vector<grObject3D*>{&view, &turn, &zoom, &move}) node->Draw();
    expect_near(modelview(), Imtx);

    move.setObject(&probe);
    zoom.setObject(&move);
    turn.setObject(&zoom);
    view.setObject(&turn);
    view.Draw();
    ASSERT_EQ(probe.seen.size(), 1u);
    // Row vectors: the innermost node's transform stands first.
    expect_near(probe.seen[0], getTranslateMatrix(move.m_position) * getScaleMatrix(4, 4, 1) *
                                   getRotateMatrix(turn.m_rotation) * view.m_matrix);
    // Nothing is saved: the transform stays for what comes next.
    expect_near(modelview(), probe.seen[0]);
}

TEST_F(Nodes, ContainerSavesTheMatrixAroundEachChildNullIncluded)
{
    probe_t first, second;
    grTranslater left, up;
    left.m_position = position3(-1.0f, 0.0f, 0.0f);
    left.setObject(&first);
    up.m_position = position3(0.0f, 1.0f, 0.0f);
    up.setObject(&second);
    grContainer group;
    group.addObject(&left);
    group.addObject(nullptr);
    group.addObject(&up);

    GLint const depth = stack_depth();
    group.Draw();
    ASSERT_EQ(second.seen.size(), 1u);
    expect_near(second.seen[0], getTranslateMatrix(up.m_position));  // nothing of `left`
    EXPECT_EQ(stack_depth(), depth);
    expect_near(modelview(), Imtx);
}

TEST_F(Nodes, DisplayListCompilesOnceAndReplaysUntilUnloaded)
{
    step_t step;
    grDspList list;
    list.Draw();  // empty: nothing
    EXPECT_EQ(list.listname(), 0u);
    ASSERT_TRUE(list.Preload(&step));
    EXPECT_EQ(step.draws, 1);
    expect_near(modelview(), Imtx);  // recorded, not run

    list.Draw();
    list.Draw();
    EXPECT_EQ(step.draws, 1);
    EXPECT_FLOAT_EQ(modelview()[3].x, 2.0f);

    GLuint const name = list.listname();
    ASSERT_TRUE(glIsList(name));
    list.Unload();
    EXPECT_FALSE(glIsList(name));
}

TEST_F(Nodes, DisplayListNameLivesUntilItsLastCopy)
{
    step_t step;
    GLuint name = 0;
    {
        grDspList original;
        original.Preload(&step);
        name = original.listname();
        { grDspList copied(original); }
        EXPECT_TRUE(glIsList(name));
    }
    EXPECT_FALSE(glIsList(name));
}
