#include "tests/support/viewer_process.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include "tests/support/temp_dir.h"

extern char** environ;

namespace zvtest {

namespace {

using clock_type = std::chrono::steady_clock;

// One connection for the whole test program.
Display* display()
{
    static Display* d = XOpenDisplay(nullptr);
    return d;
}

Atom atom(char const* name) { return XInternAtom(display(), name, False); }

std::string read_file(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool window_pid(Window w, long& pid)
{
    Atom type;
    int format;
    unsigned long count, after;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(display(), w, atom("_NET_WM_PID"), 0, 1, False, XA_CARDINAL, &type,
                           &format, &count, &after, &data) != Success || !data)
        return false;
    bool const ok = count == 1 && format == 32;
    if (ok) pid = *reinterpret_cast<long*>(data);
    XFree(data);
    return ok;
}

void pause_ms(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

// The argv or envp form of `strings`, which must outlive it.
std::vector<char*> c_array(std::vector<std::string> const& strings)
{
    std::vector<char*> out;
    for (auto const& s : strings) out.push_back(const_cast<char*>(s.c_str()));
    out.push_back(nullptr);
    return out;
}

// Runs a command line and waits for it; returns its exit status.
int run_command(std::vector<std::string> const& argv)
{
    std::vector<char*> args = c_array(argv);
    pid_t pid;
    if (posix_spawnp(&pid, args[0], nullptr, nullptr, args.data(), environ) != 0) return -1;
    int status = 0;
    if (waitpid(pid, &status, 0) < 0) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

bool eventually(std::function<bool()> const& done, double seconds)
{
    auto const until = clock_type::now() + std::chrono::duration<double>(seconds);
    while (!done()) {
        if (clock_type::now() > until) return false;
        pause_ms(20);
    }
    return true;
}

std::string viewer_binary() { return std::string(ZV_BUILD_DIR) + "/zanoview"; }

std::string catalogue_line(int n)
{
    std::ifstream in(viewer_binary() + ".msg");
    std::string line;
    for (int i = 0; i <= n; ++i)
        if (!std::getline(in, line)) return "message not loaded.";
    return line;
}

std::string screenshot_t::keep() const
{
    std::string const path = make_temp_dir("zvtest-screenshot.") + "/shot.ppm";
    std::ofstream out(path, std::ios::binary);
    out << "P6\n" << width << " " << height << "\n255\n";
    for (uint32_t p : pixels) {
        char const rgb[3] = {char(p >> 16), char(p >> 8), char(p)};
        out.write(rgb, 3);
    }
    return path;
}

std::string differences_from_centred(screenshot_t const& shot, int width, int height,
                                     std::function<std::uint32_t(int x, int y)> const& colour)
{
    // Halves rounded down, also below zero: a picture larger than the
    // window stands out on both sides.
    auto const floor_half = [](int v) { return v >= 0 ? v / 2 : -((1 - v) / 2); };
    int const left = floor_half(shot.width - width + 1);
    int const bottom = floor_half(shot.height - height + 1);
    int const top = shot.height - bottom - height;  // screenshot row of the picture's top row
    std::ostringstream text;
    int wrong = 0;
    for (int y = 0; y < shot.height; ++y)
        for (int x = 0; x < shot.width; ++x) {
            int const px = x - left, py = y - top;
            bool const inside = px >= 0 && px < width && py >= 0 && py < height;
            std::uint32_t const expected = inside ? colour(px, py) : kBackground;
            if (shot.at(x, y) == expected || ++wrong > 5) continue;
            text << "window pixel (" << x << ", " << y << ") is " << std::hex << shot.at(x, y) << ", expected "
                 << expected << std::dec;
            if (inside) text << " of picture pixel (" << px << ", " << py << ")";
            text << "\n";
        }
    if (wrong) text << wrong << " pixels differ; the screenshot is kept in " << shot.keep();
    return text.str();
}

ViewerProcess::ViewerProcess(std::vector<std::string> const& args,
                             std::vector<std::string> const& extra_env, output_t output)
{
    m_dir = make_temp_dir("zvtest.");

    // The viewer's glfwTerminate unloads the GL driver before a sanitizer's
    // leak check runs, and the driver's one-time allocations then can't be
    // told from ours. Leaks are checked in the test programs themselves.
    std::vector<std::string> env = extra_env;
    env.insert(env.begin(), "ASAN_OPTIONS=detect_leaks=0");

    auto const name = [](std::string const& entry) { return entry.substr(0, entry.find('=')); };
    std::vector<std::string> environment;
    for (char** e = environ; *e; ++e)
        if (std::none_of(env.begin(), env.end(), [&](std::string const& x) { return name(x) == name(*e); }))
            environment.push_back(*e);
    for (auto const& extra : env)
        if (extra != name(extra)) environment.push_back(extra);
    std::vector<std::string> argv_strings{viewer_binary()};
    argv_strings.insert(argv_strings.end(), args.begin(), args.end());
    std::vector<char*> const envp = c_array(environment);
    std::vector<char*> const argv = c_array(argv_strings);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // Both ends close on exec; the copy made on descriptor 1 stays open.
    int out_pipe[2] = {-1, -1};
    if (output == output_t::pipe && pipe2(out_pipe, O_CLOEXEC) == 0)
        posix_spawn_file_actions_adddup2(&actions, out_pipe[1], 1);
    else
        posix_spawn_file_actions_addopen(&actions, 1, (m_dir + "/out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, (m_dir + "/err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), envp.data()) != 0) m_pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    // Only the viewer may hold the write end, so that its exit closes the pipe.
    if (out_pipe[1] >= 0) ::close(out_pipe[1]);
    m_out_pipe = out_pipe[0];
}

ViewerProcess::~ViewerProcess()
{
    if (m_pid > 0 && running()) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    if (m_out_pipe >= 0) ::close(m_out_pipe);
    std::error_code ignored;
    std::filesystem::remove_all(m_dir, ignored);
}

bool ViewerProcess::running()
{
    if (m_pid <= 0 || m_ended) return false;
    int status = 0;
    if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
        m_ended = true;
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return false;
    }
    return true;
}

int ViewerProcess::wait_exit(double seconds)
{
    return eventually([&] { return !running(); }, seconds) ? m_status : -1;
}

bool ViewerProcess::wait_window(double seconds)
{
    // Looks for a mapped top-level window of the process.
    auto const found = [&] {
        Window root, parent, *children = nullptr;
        unsigned int count = 0;
        XQueryTree(display(), DefaultRootWindow(display()), &root, &parent, &children, &count);
        for (unsigned int i = 0; i < count && !m_window; ++i) {
            long pid = 0;
            XWindowAttributes attributes;
            if (window_pid(children[i], pid) && pid == m_pid &&
                XGetWindowAttributes(display(), children[i], &attributes) &&
                attributes.map_state == IsViewable)
                m_window = children[i];
        }
        if (children) XFree(children);
        return m_window != 0;
    };
    if (!display() || !eventually([&] { return !running() || found(); }, seconds) || !m_window) return false;
    // Let the first frames settle before anyone looks at them.
    pause_ms(200);
    return true;
}

std::string ViewerProcess::title() const
{
    Atom type;
    int format;
    unsigned long count, after;
    unsigned char* data = nullptr;
    std::string title;
    if (XGetWindowProperty(display(), m_window, atom("_NET_WM_NAME"), 0, 4096, False,
                           atom("UTF8_STRING"), &type, &format, &count, &after, &data) == Success &&
        data) {
        title.assign(reinterpret_cast<char*>(data), count);
        XFree(data);
    }
    return title;
}

geometry_t ViewerProcess::geometry() const
{
    geometry_t g;
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display(), m_window, &attributes)) return g;
    Window child;
    XTranslateCoordinates(display(), m_window, DefaultRootWindow(display()), 0, 0, &g.x, &g.y, &child);
    g.width = attributes.width;
    g.height = attributes.height;
    return g;
}

geometry_t ViewerProcess::sized_geometry(int width, int height, double seconds) const
{
    geometry_t g;
    eventually([&] { return (g = geometry()).width == width && g.height == height; }, seconds);
    return g;
}

screenshot_t ViewerProcess::screenshot() const
{
    screenshot_t shot;
    geometry_t const g = geometry();
    XImage* image = XGetImage(display(), m_window, 0, 0, g.width, g.height, AllPlanes, ZPixmap);
    if (!image) return shot;
    shot.width = g.width;
    shot.height = g.height;
    shot.pixels.resize(size_t(g.width) * g.height);
    for (int y = 0; y < g.height; ++y)
        for (int x = 0; x < g.width; ++x)
            shot.pixels[size_t(y) * g.width + x] = uint32_t(XGetPixel(image, x, y)) & 0xffffffu;
    XDestroyImage(image);
    return shot;
}

screenshot_t ViewerProcess::settled_screenshot(double seconds) const
{
    auto const until = clock_type::now() + std::chrono::duration<double>(seconds);
    screenshot_t last = screenshot();
    // NOTE: the window maps at GLFW's size and is then resized; on a loaded
    // machine a tenth of a second can pass before the viewer redraws at the
    // new size, so one repeat is not yet a settled window.
    int alike = 0;
    while (clock_type::now() < until) {
        pause_ms(100);
        screenshot_t shot = screenshot();
        bool const drawn = std::any_of(shot.pixels.begin(), shot.pixels.end(), [](uint32_t p) { return p != 0; });
        alike = drawn && shot.pixels == last.pixels ? alike + 1 : 0;
        if (alike == 3) return shot;
        last = std::move(shot);
    }
    return last;
}

void ViewerProcess::log_event(std::string const& what)
{
    std::cerr << "event " << ++m_events << ": " << what << std::endl;
}

void ViewerProcess::send(std::string const& what, std::vector<std::string> const& xdotool_args)
{
    log_event(what);
    XSetInputFocus(display(), m_window, RevertToParent, CurrentTime);
    XSync(display(), False);
    std::vector<std::string> argv{"xdotool"};
    argv.insert(argv.end(), xdotool_args.begin(), xdotool_args.end());
    if (run_command(argv) != 0) std::cerr << "  xdotool failed" << std::endl;
}

void ViewerProcess::key(std::string const& name) { send("key " + name, {"key", "--delay", "0", name}); }

void ViewerProcess::move_mouse(int x, int y)
{
    send("mouse to " + std::to_string(x) + "," + std::to_string(y),
         {"mousemove", "--sync", "--window", std::to_string(m_window), std::to_string(x), std::to_string(y)});
}

void ViewerProcess::button(int number, bool down)
{
    send(std::string(down ? "press" : "release") + " button " + std::to_string(number),
         {down ? "mousedown" : "mouseup", std::to_string(number)});
}

void ViewerProcess::click(int number)
{
    send("click button " + std::to_string(number), {"click", std::to_string(number)});
}

void ViewerProcess::close()
{
    log_event("close window");
    XEvent event;
    std::memset(&event, 0, sizeof event);
    event.xclient.type = ClientMessage;
    event.xclient.window = m_window;
    event.xclient.message_type = atom("WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(atom("WM_DELETE_WINDOW"));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display(), m_window, False, NoEventMask, &event);
    XSync(display(), False);
}

std::string ViewerProcess::out() const { return read_file(m_dir + "/out"); }
std::string ViewerProcess::err() const { return read_file(m_dir + "/err"); }

bool ViewerProcess::read_line(std::string& line, double seconds)
{
    if (m_out_pipe < 0) return false;
    auto const until = clock_type::now() + std::chrono::duration<double>(seconds);
    std::size_t end;
    while ((end = m_pending.find('\n')) == std::string::npos) {
        auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(until - clock_type::now());
        if (left.count() <= 0) return false;
        pollfd ready{m_out_pipe, POLLIN, 0};
        if (poll(&ready, 1, int(left.count())) <= 0) continue;
        char buffer[4096];
        ssize_t const n = ::read(m_out_pipe, buffer, sizeof buffer);
        if (n <= 0) return false;  // the viewer closed its output
        m_pending.append(buffer, std::size_t(n));
    }
    line = m_pending.substr(0, end);
    m_pending.erase(0, end + 1);
    return true;
}

}  // namespace zvtest
