// The one record of all program settings, and the table that describes its
// fields to the command line parser, the help listing and the user default
// file.
#ifndef ZANOVIEW_OPTIONS_OPTION_H
#define ZANOVIEW_OPTIONS_OPTION_H

#include <cstddef>
#include <cstdint>

namespace zanolib {

// Two values given together as "XXXxYYY": a width and a height, or a
// horizontal and a vertical margin.
struct option_xy_t {
    int32_t x;
    int32_t y;
};

// A colour given as "R,G,B[,A]", one byte for each channel.
struct option_color_t {
    unsigned char r;
    unsigned char g;
    unsigned char b;
    unsigned char a;
};

// Every setting of the program. The static initial values of g_option are the
// built-in defaults; the user default file and then the command line
// overwrite them, and the rest of the program reads the fields directly.
struct option_t {
    bool h;        // print the help and exit; cleared before the command line
    bool verbose;
    bool debug;
    uint32_t wintype;  // 0 window, 1 maximized, 2 fullscreen
    option_xy_t winsize;  // pixels
    uint32_t resizetype;  // which one leads when sizes differ: 0 neither, 1 the image, 2 the window
    // The three ratios are entered and saved as the 32 bits of the float,
    // not as a number: 1063256064 stands for 0.875.
    float image_ratio_of_image;
    float image_ratio_of_window;
    float window_ratio_of_image;
    bool resize_magnify;
    bool resize_shrink;
    uint32_t sizelimit;     // 0 the screen less maxmargin, 1 maxsize
    option_xy_t maxmargin;  // pixels
    option_xy_t maxsize;    // pixels
    uint32_t cursor_movement;  // 0 panning, 1 camera
    // NOTE: magsmooth, move_limit, doubleclick_interval, menu and single are
    // parsed, listed in the help and saved with the defaults, and read by
    // nothing else: they have no effect today. They stay so that command
    // lines and default files naming them still parse. The key "g" keeps its
    // own smooth-or-sharp state per picture; there is no menu and no
    // double-click; the buffers are always double.
    bool magsmooth;
    bool move_limit;
    uint32_t doubleclick_interval;  // milliseconds
    uint32_t frametype;   // 0 none to 4
    uint32_t framewidth;  // pixels
    option_color_t framecolor;
    bool reproduce;
    bool resetview;
    bool menu;    // NOTE: no effect, see magsmooth
    bool single;  // NOTE: no effect, see magsmooth
};

extern option_t g_option;

// How the value of an option is written, and so how it is parsed.
enum e_option_type_t : uint32_t {
    OPTION_TYPE_BOOL = 0,     // no value element: -name, -name+ or -name-
    OPTION_TYPE_ENUM = 1,     // signed integer
    OPTION_TYPE_PERCENT = 2,  // the raw 32 bits of a float field
    OPTION_TYPE_ULONG = 3,    // unsigned integer, 0 refused
    OPTION_TYPE_FLOAT = 4,
    OPTION_TYPE_XY = 5,       // "XXXxYYY", negative numbers refused
    OPTION_TYPE_RGB = 6,      // "R,G,B" with an optional fourth byte, alpha
};

// A second column of figures kept with each row. Nothing reads it: the
// built-in values are those of g_option.
struct option_value_t {
    uint32_t u;
    float f;
    int32_t xy[2];
    uint32_t spare;
};

// One row of the option table: the option "-name" and the field it sets.
struct option_entity_t {
    char const* name;  // without the leading "-"
    std::size_t length;  // strlen(name), 0 until option_init() has run
    e_option_type_t type;
    option_value_t value;
    void* target;  // the field in g_option, of the type that `type` implies
    char const* comment;
};

constexpr std::size_t option_entity_count = 25;

// One row for each field of option_t, in the order of the fields.
extern option_entity_t option_entity_table[option_entity_count];

// Fills in `length` of every row. Harmless to run again.
void option_init();

// Applies the leading options of a command line to g_option. `h` is cleared
// first, so that only the command line can ask for the help. The first
// element that is no known option ends the options, and the elements from
// there on move up to (*argv)[1]; *argc becomes their count plus 1. The
// array is not terminated anew. When `h` is set afterwards, the help goes to
// standard output and the process exits with 0: options both before and
// after "-h" have been applied by then.
//   {"zv", "-winsize", "1024x768", "pic.jpg"}: argc 2, argv[1] "pic.jpg".
//   {"zv", "pic.jpg", "-verbose"}: nothing applied, argc stays 3.
void option_enter_argument(int* argc, char*** argv);

// Looks at one option in arguments[0], sets its field and returns how many
// elements it used: 0 when arguments[0] is no known option (or count is 0),
// 1 for a flag, 2 for an option with its value. `count` is the number of
// elements there are, so an array need not end in a null: a valued option
// with no element behind it uses 1 and leaves its field alone.
// Names match without regard to case, and the whole name must be there and
// nothing behind it but, for a flag, "+" or "-": "-VERBOSE" and "-menu-" are
// options, "-verbos" and "-winsize=800x600" are not. Values are read with
// base 0 ("0x10" is 16); a number that isn't one reads as 0, in silence.
//   "-winsize" "-5x600": height 600, the width stays (negatives refused);
//   "800,600" is the same as "800x600", and "1024" sets only the width.
//   "-framecolor" "255,0,0": alpha stays; text past the fourth byte is ignored.
//   "-doubleclick_interval" "0": the field stays, 2 is returned.
// With `debug` on, a flag writes "option <name> is set." (or "is '+'.",
// "is '-'.") to the error stream; "-debug" itself does so.
int option_each_analyze(char const** arguments, int count);

// Writes the help to standard output: the usage line with `prog`, then one
// line for each row with its format and comment.
void option_list(char const* prog);

}  // namespace zanolib

#endif
