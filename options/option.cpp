#include "options/option.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <strings.h>

namespace zanolib {

option_t g_option = {
    false,           // h
    false,           // verbose
    false,           // debug
    0,               // wintype
    {800, 600},      // winsize
    1,               // resizetype
    1.0f,            // image_ratio_of_image
    0.875f,          // image_ratio_of_window
    1.2f,            // window_ratio_of_image
    true,            // resize_magnify
    false,           // resize_shrink
    1,               // sizelimit
    {10, 32},        // maxmargin
    {1280, 960},     // maxsize
    1,               // cursor_movement
    true,            // magsmooth
    false,           // move_limit
    300,             // doubleclick_interval
    1,               // frametype
    32,              // framewidth
    {255, 255, 255, 255},  // framecolor
    true,            // reproduce
    true,            // resetview
    true,            // menu
    false,           // single
};

namespace {

// Value areas of the table. They are kept as they have always been, even
// where they differ from the built-in values: nothing reads them.
constexpr option_value_t kNoValue = {0, 0.0f, {0, 0}, 0};
constexpr option_value_t unsigned_value(uint32_t u) { return {u, 0.0f, {0, 0}, 0}; }
constexpr option_value_t float_value(float f) { return {0, f, {0, 0}, 0}; }
constexpr option_value_t xy_value(int32_t x, int32_t y) { return {0, 0.0f, {x, y}, 0}; }

}  // namespace

option_entity_t option_entity_table[option_entity_count] = {
    {"h", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.h,
     "print help and exit(if commend-line)."},
    {"verbose", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.verbose,
     "verbose print."},
    {"debug", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.debug,
     "debug print."},
    {"wintype", 0, OPTION_TYPE_ENUM, unsigned_value(2), &g_option.wintype,
     "window type (0:window 1:maximize 2:fullscreen)."},
    {"winsize", 0, OPTION_TYPE_XY, xy_value(1280, 960), &g_option.winsize,
     "initial window size."},
    {"resizetype", 0, OPTION_TYPE_ENUM, unsigned_value(2), &g_option.resizetype,
     "policy of resize (0:don't care 1:image 2:window)."},
    {"image_ratio_of_image", 0, OPTION_TYPE_PERCENT, float_value(1.0f), &g_option.image_ratio_of_image,
     "image size factor of image."},
    {"image_ratio_of_window", 0, OPTION_TYPE_PERCENT, float_value(20.0f), &g_option.image_ratio_of_window,
     "image size factor of window."},
    {"window_ratio_of_image", 0, OPTION_TYPE_PERCENT, float_value(1.0f), &g_option.window_ratio_of_image,
     "window size factor of image."},
    {"resize_magnify", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.resize_magnify,
     "allow window resize (if magnify)."},
    {"resize_shrink", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.resize_shrink,
     "allow window resize (if shrink)."},
    {"sizelimit", 0, OPTION_TYPE_ENUM, unsigned_value(1), &g_option.sizelimit,
     "limitation of window size (0:screen 1:value)."},
    {"maxmargin", 0, OPTION_TYPE_XY, xy_value(10, 32), &g_option.maxmargin,
     "0:screen, margin of maximum window size."},
    {"maxsize", 0, OPTION_TYPE_XY, xy_value(1280, 960), &g_option.maxsize,
     "1:value, maximum window size."},
    {"cursor_movement", 0, OPTION_TYPE_ENUM, unsigned_value(1), &g_option.cursor_movement,
     "moving cursorkey direction (0:panning, 1:camera)."},
    {"magsmooth", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.magsmooth,
     "image smoother for magnify."},
    {"move_limit", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.move_limit,
     "image move limitation (not implemented yet)."},
    {"doubleclick_interval", 0, OPTION_TYPE_ULONG, unsigned_value(1000), &g_option.doubleclick_interval,
     "maximum interval time(ms) of mouse double-click."},
    {"frametype", 0, OPTION_TYPE_ENUM, unsigned_value(4), &g_option.frametype,
     "drawing photo-frame type (0:none - 4:max)."},
    {"framewidth", 0, OPTION_TYPE_ULONG, unsigned_value(32), &g_option.framewidth,
     "drawing photo-frame width (in pixel)."},
    {"framecolor", 0, OPTION_TYPE_RGB, kNoValue, &g_option.framecolor,
     "frame color."},
    {"reproduce", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.reproduce,
     "reproduce angle/zoom of saved '.zvw' file."},
    {"resetview", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.resetview,
     "resetview(reproduce) on nextimage."},
    {"menu", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.menu,
     "menu on/off."},
    {"single", 0, OPTION_TYPE_BOOL, kNoValue, &g_option.single,
     "disable double-buffer, reduce VRAM use."},
};

namespace {

static_assert(sizeof(float) == sizeof(uint32_t), "percent values are the 32 bits of a float");

void init_when_needed()
{
    if (option_entity_table[0].length == 0) option_init();
}

// The help column of each format. " percent  " is two wider than the rest,
// which puts its rows out of line; the listing has always looked so.
char const* format_help(e_option_type_t type)
{
    switch (type) {
    case OPTION_TYPE_BOOL: return " bool   ";
    case OPTION_TYPE_ENUM: return " enum   ";
    case OPTION_TYPE_PERCENT: return " percent  ";
    case OPTION_TYPE_ULONG: return " ulong  ";
    case OPTION_TYPE_FLOAT: return " float  ";
    case OPTION_TYPE_XY: return " XXXxYYY";
    case OPTION_TYPE_RGB: return " R,G,B  ";
    }
    return "";
}

// Sets a flag from what stands behind its name: "" or "+" sets it, "-"
// clears it. Anything else means the element names some other option.
bool analyze_flag(option_entity_t const& row, char const* rest)
{
    char const* said;
    bool value;
    if (rest[0] == '\0') {
        value = true;
        said = " is set.";
    } else if (rest[0] == '+' && rest[1] == '\0') {
        value = true;
        said = " is '+'.";
    } else if (rest[0] == '-' && rest[1] == '\0') {
        value = false;
        said = " is '-'.";
    } else {
        return false;
    }
    *static_cast<bool*>(row.target) = value;
    if (g_option.debug) std::cerr << "option " << row.name << said << std::endl;
    return true;
}

// Reads up to `count` numbers, each followed by one separator character of any
// kind, and hands each to `store` with its index. A text that ends early
// stops there without reading past its end, so "1024" sets a width only.
template <typename Store>
void analyze_numbers(char const* text, int count, Store store)
{
    for (int i = 0; i < count; ++i) {
        char* end;
        long const number = std::strtol(text, &end, 0);
        store(i, number);
        if (*end == '\0') return;
        text = end + 1;
    }
}

void analyze_value(option_entity_t const& row, char const* text)
{
    switch (row.type) {
    case OPTION_TYPE_BOOL:
        break;
    case OPTION_TYPE_ENUM:
        *static_cast<uint32_t*>(row.target) = uint32_t(std::strtol(text, nullptr, 0));
        break;
    case OPTION_TYPE_PERCENT: {
        // The bits go in as they are: the user default file stores these
        // fields the same way, and the two must agree.
        uint32_t const bits = uint32_t(std::strtoul(text, nullptr, 0));
        std::memcpy(row.target, &bits, sizeof bits);
        break;
    }
    case OPTION_TYPE_ULONG: {
        uint32_t const number = uint32_t(std::strtoul(text, nullptr, 0));
        if (number != 0) *static_cast<uint32_t*>(row.target) = number;
        break;
    }
    case OPTION_TYPE_FLOAT:
        *static_cast<float*>(row.target) = std::strtof(text, nullptr);
        break;
    case OPTION_TYPE_XY: {
        auto* xy = static_cast<option_xy_t*>(row.target);
        analyze_numbers(text, 2, [xy](int i, long number) {
            if (number < 0) return;
            (i == 0 ? xy->x : xy->y) = int32_t(number);
        });
        break;
    }
    case OPTION_TYPE_RGB: {
        auto* color = static_cast<option_color_t*>(row.target);
        unsigned char* const channels[] = {&color->r, &color->g, &color->b, &color->a};
        analyze_numbers(text, 4, [&channels](int i, long number) {
            *channels[i] = static_cast<unsigned char>(number);
        });
        break;
    }
    }
}

// Applies the options at the front of arguments[0 .. *count). The elements
// left over move to the front, and *count becomes their number.
void option_parse_argument(int* count, char*** arguments)
{
    char** const elements = *arguments;
    int left = *count;
    int used = 0;
    while (left > 0) {
        int const step = option_each_analyze(const_cast<char const**>(elements + used), left);
        if (step == 0) break;
        used += step;
        left -= step;
    }
    if (used > 0) {
        for (int i = 0; i < left; ++i) elements[i] = elements[used + i];
    }
    *count = left;
}

}  // namespace

void option_init()
{
    for (option_entity_t& row : option_entity_table) row.length = std::strlen(row.name);
}

int option_each_analyze(char const** arguments, int count)
{
    if (count <= 0) return 0;
    char const* const s = arguments[0];
    if (s[0] != '-') return 0;
    init_when_needed();
    for (option_entity_t const& row : option_entity_table) {
        if (strncasecmp(s + 1, row.name, row.length) != 0) continue;
        char const* const rest = s + 1 + row.length;
        if (row.type == OPTION_TYPE_BOOL) {
            if (analyze_flag(row, rest)) return 1;
            continue;
        }
        if (rest[0] != '\0') continue;
        // A valued option with nothing behind it, last on the command line
        // or alone on a line of the user default file, has no value to read.
        if (count < 2) return 1;
        analyze_value(row, arguments[1]);
        return 2;
    }
    return 0;
}

void option_enter_argument(int* argc, char*** argv)
{
    init_when_needed();
    // A saved "-h+" in the user default file must not stop every start.
    g_option.h = false;
    int count = *argc - 1;
    char** rest = *argv + 1;
    option_parse_argument(&count, &rest);
    *argc = count + 1;
    if (g_option.h) {
        option_list((*argv)[0]);
        std::exit(0);
    }
}

void option_list(char const* prog)
{
    init_when_needed();
    std::size_t width = 0;
    for (option_entity_t const& row : option_entity_table) {
        if (row.length > width) width = row.length;
    }
    std::cout << "usage: " << prog << " [option]" << " file..." << std::endl;
    std::cout << std::endl;
    std::cout << "option" << std::string(width - 5, ' ') << " format  comment." << std::endl;
    std::cout << std::string(width + 18, '-') << std::endl;
    for (option_entity_t const& row : option_entity_table) {
        std::cout << '-' << row.name << std::string(width - row.length, ' ')
                  << format_help(row.type) << ' ' << row.comment << std::endl;
    }
}

}  // namespace zanolib
