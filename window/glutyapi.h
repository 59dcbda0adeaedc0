// The callback interfaces an application implements to receive its
// window's events in GLUT's terms: characters, special key codes, buttons
// 0/1/2 (left, middle, right), state 0/1 (down, up), integer cursor positions.
#ifndef ZANOVIEW_WINDOW_GLUTYAPI_H
#define ZANOVIEW_WINDOW_GLUTYAPI_H

namespace wenk {

// The first generation of the interface. Every operation has an empty
// body, so an application overrides only what it cares about.
class glutyAPI {
public:
    virtual void reshape(int width, int height) { (void)width; (void)height; }
    virtual void display() {}
    virtual void keyboard(unsigned char key, int x, int y) { (void)key; (void)x; (void)y; }
    // key: a special code, which is GLFW's own key number (above 127).
    virtual void specialkey(int key, int x, int y) { (void)key; (void)x; (void)y; }
    // button: 0 left, 1 middle, 2 right; state: 0 pressed, 1 released.
    virtual void mouse(int button, int state, int x, int y) { (void)button; (void)state; (void)x; (void)y; }
    virtual void motion(int x, int y) { (void)x; (void)y; }
    virtual void passivemotion(int x, int y) { (void)x; (void)y; }
    virtual void idle() {}
    // Called once, when the window exists and its GL context is current.
    virtual void init() {}
    virtual ~glutyAPI() {}
};

// Adds the events GLUT gained later: key release, the wheel and dropped files.
class glutyAPI4 : public glutyAPI {
public:
    virtual void keyboardup(unsigned char key, int x, int y) { (void)key; (void)x; (void)y; }
    virtual void specialkeyup(int key, int x, int y) { (void)key; (void)x; (void)y; }
    // wheel: 0 for the usual wheel; direction: +1 up, -1 down, 0 none.
    virtual void mousewheel(int wheel, int direction, int x, int y) { (void)wheel; (void)direction; (void)x; (void)y; }
    virtual void drop(int count, char const** paths) { (void)count; (void)paths; }
};

}  // namespace wenk

#endif
