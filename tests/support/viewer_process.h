// Drives the real viewer binary in tests: starts it, finds its window on
// the X server, sends it keys and mouse events with xdotool, reads its
// title and geometry, and takes screenshots.
#ifndef ZANOVIEW_TESTS_SUPPORT_VIEWER_PROCESS_H
#define ZANOVIEW_TESTS_SUPPORT_VIEWER_PROCESS_H

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zvtest {

// The path of build/zanoview.
std::string viewer_binary();

// Line `n` (from 0) of the message file beside the binary, the text the
// viewer shows for that message id; "message not loaded." without it.
std::string catalogue_line(int n);

// The window's background where no picture is: gray18, 0.18 of 255 rounded.
constexpr std::uint32_t kBackground = 0x2e2e2e;

// Polls `done` every 20 ms until it holds or `seconds` pass; its last answer.
bool eventually(std::function<bool()> const& done, double seconds = 10);

// Pixels read from the screen, row 0 at the top, 0x00RRGGBB each.
struct screenshot_t {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;

    uint32_t at(int x, int y) const { return pixels[size_t(y) * width + x]; }
    // Writes a binary PPM into a new folder of its own under $TMPDIR, left
    // there for looking at a failure; returns the file's path.
    std::string keep() const;
};

// What differs between the window and a picture of `width` x `height`
// drawn at scale 1 in its middle on the background, `colour(x, y)` being
// picture pixel (x, y), y = 0 its top row: "" when nothing, else the count,
// the first few pixels and where the screenshot is kept. Where window and
// picture can't both be centred on a pixel boundary, the picture sits half
// a pixel to the right and up.
std::string differences_from_centred(screenshot_t const& shot, int width, int height,
                                     std::function<std::uint32_t(int x, int y)> const& colour);

struct geometry_t {
    int x = 0, y = 0;           // screen coordinates of the top-left corner
    int width = 0, height = 0;  // pixels
};

// One run of the viewer. Its standard output and error go to files that
// out() and err() read, or its standard output to a pipe. Every event sent
// is numbered and logged on stderr ("event 3: key q"), so that a failure can
// name the event.
class ViewerProcess {
public:
    // Where standard output goes: a file that out() reads, or a pipe that
    // read_line() reads while the viewer runs, as a script watching it would.
    enum class output_t { file, pipe };

    // Starts the binary with `args`. Each `extra_env` entry "NAME=value" sets a
    // variable for it; a bare "NAME" removes one.
    explicit ViewerProcess(std::vector<std::string> const& args,
                           std::vector<std::string> const& extra_env = {},
                           output_t output = output_t::file);
    ~ViewerProcess();
    ViewerProcess(ViewerProcess const&) = delete;
    ViewerProcess& operator=(ViewerProcess const&) = delete;

    // Waits until the process shows a mapped window; false on timeout or
    // when the process ended first.
    bool wait_window(double seconds = 20);
    // Waits for the process to end and returns its exit status, or -1 on
    // timeout (the process is left running) or a signal.
    int wait_exit(double seconds = 20);
    bool running();
    pid_t pid() const { return m_pid; }

    unsigned long window() const { return m_window; }
    std::string title() const;
    geometry_t geometry() const;
    // The geometry once the window is `width` by `height`, or as it is after
    // `seconds`. The window maps at GLFW's size before the viewer sizes it.
    geometry_t sized_geometry(int width, int height, double seconds = 10) const;
    screenshot_t screenshot() const;
    // A screenshot once the window has been drawn and holds still: four
    // shots in a row, over 300 ms, alike and not all black, or the last one
    // after `seconds`.
    screenshot_t settled_screenshot(double seconds = 10) const;

    // Key names as xdotool knows them: "q", "Escape", "shift+space".
    void key(std::string const& name);
    void move_mouse(int x, int y);  // window coordinates
    void button(int number, bool down);
    void click(int number);
    // Asks the window to close, as its title bar's close button does.
    void close();

    // What the process wrote to its standard output and error so far;
    // out() is empty when standard output is a pipe.
    std::string out() const;
    std::string err() const;
    // The next line from the standard output pipe, without its line end;
    // false when no whole line arrives within `seconds` or the pipe closes.
    bool read_line(std::string& line, double seconds = 10);

private:
    void log_event(std::string const& what);
    // Logs `what`, gives the window the focus and runs xdotool.
    void send(std::string const& what, std::vector<std::string> const& xdotool_args);

    pid_t m_pid = -1;
    int m_status = -1;
    bool m_ended = false;
    unsigned long m_window = 0;
    int m_events = 0;
    std::string m_dir;  // a private temporary directory for the output files
    int m_out_pipe = -1;  // read end of the standard output pipe
    std::string m_pending;  // bytes read from the pipe after the last whole line
};

}  // namespace zvtest

#endif
