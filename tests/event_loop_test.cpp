// The shim's event loop on a real (hidden) window: redraws on request only,
// and ends on Exit or when the last window closes.
#include "window/glfwymgr4.h"

#include <gtest/gtest.h>

#include <GLFW/glfw3.h>

namespace {

// glfwTerminate is never called: it would unload the GL driver before the
// leak checker could tell the driver's allocations from ours.
class EventLoop : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!glfwInit()) GTEST_SKIP() << "no X display";
        // A hidden window gets no expose events, so every draw in these
        // tests is one the loop decided on.
        glfwWindowHint(GLFW_VISIBLE, GLFW_FALSE);
    }
    wenk::glfwyMGR4& manager() { return wenk::glfwyMGR4::getSingleton(); }
};

// Counts what the loop does and ends it after a given pass.
struct Recorder : wenk::glutyAPI4 {
    int inits = 0, idles = 0, displays = 0;
    int requests_at_init = 0;
    int exit_after_idles = 0;
    bool close_at_init = false;

    void init() override
    {
        ++inits;
        wenk::glfwyMGR4& m = wenk::glfwyMGR4::getSingleton();
        for (int i = 0; i < requests_at_init; ++i) m.PostRedisplay();
        if (close_at_init) glfwSetWindowShouldClose(m.win(this), GLFW_TRUE);
    }
    void idle() override
    {
        if (++idles == exit_after_idles) {
            wenk::glfwyMGR4::getSingleton().Exit();
            // Exit wakes nobody by itself; the loop is about to sleep.
            glfwPostEmptyEvent();
        }
    }
    void display() override { ++displays; }
};

}  // namespace

TEST_F(EventLoop, AddWindowCallsInitWithTheWindowKnownAndRefusesANullApplication)
{
    Recorder app;
    GLFWwindow* const window = manager().addWindow(&app, "test");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(app.inits, 1);
    EXPECT_EQ(manager().win(&app), window);
    EXPECT_EQ(manager().api(window), &app);
    EXPECT_EQ(glfwGetCurrentContext(), window);
    EXPECT_EQ(manager().addWindow(nullptr, "test"), nullptr);
}

TEST_F(EventLoop, SeveralRequestsGiveOneRedraw)
{
    Recorder app;
    app.requests_at_init = 3;
    app.exit_after_idles = 2;
    ASSERT_NE(manager().addWindow(&app, "test"), nullptr);
    manager().MainLoop();
    EXPECT_EQ(app.idles, 2);
    EXPECT_EQ(app.displays, 1);
}

TEST_F(EventLoop, NoRequestNoRedraw)
{
    Recorder app;
    app.exit_after_idles = 1;
    ASSERT_NE(manager().addWindow(&app, "test"), nullptr);
    manager().MainLoop();
    EXPECT_EQ(app.displays, 0);
}

TEST_F(EventLoop, IdleOffStopsIdleCalls)
{
    Recorder app;
    app.requests_at_init = 1;
    ASSERT_NE(manager().addWindow(&app, "test"), nullptr);
    manager().IdleOff();
    manager().Exit();
    manager().MainLoop();
    EXPECT_EQ(app.idles, 0);
}

TEST_F(EventLoop, ClosedWindowIsDestroyedAndEndsTheLoop)
{
    Recorder app;
    app.close_at_init = true;
    ASSERT_NE(manager().addWindow(&app, "test"), nullptr);
    manager().MainLoop();
    EXPECT_EQ(app.displays, 0);
    EXPECT_EQ(glfwGetCurrentContext(), nullptr);
}
