#include "window/keymap.h"

#include <cctype>

namespace wenk {

namespace {

// GLFW key numbers of the keys that change their meaning.
constexpr int kFirstRemapped = 256;  // GLFW_KEY_ESCAPE
constexpr int kKeypad0 = 320;        // GLFW_KEY_KP_0

constexpr int kModShift = 0x0001;     // GLFW_MOD_SHIFT
constexpr int kModCapsLock = 0x0010;  // GLFW_MOD_CAPS_LOCK

// Escape, Enter, Tab, Backspace.
constexpr int kEditing[] = {27, 13, 9, 8};

// KP_0 .. KP_EQUAL: the special code of Insert, End, Down, Page Down, Left,
// "no key", Right, Home, Up, Page Up, then the characters . / * - + Enter =.
constexpr int kKeypad[] = {260, 269, 264, 267, 263, 255, 262, 268, 265, 266,
                           '.', '/', '*', '-', '+', 13, '='};

}  // namespace

int translate_key(int key)
{
    int const editing = key - kFirstRemapped;
    if (editing >= 0 && editing < int(sizeof kEditing / sizeof kEditing[0])) return kEditing[editing];
    int const keypad = key - kKeypad0;
    if (keypad >= 0 && keypad < int(sizeof kKeypad / sizeof kKeypad[0])) return kKeypad[keypad];
    return key;
}

unsigned char key_character(int code, int mods)
{
    int const m = mods & (kModShift | kModCapsLock);
    bool const keep_case = (m == kModShift || m == kModCapsLock);
    // tolower is only defined for EOF and unsigned char values; anything
    // else it would hand back unchanged anyway.
    if (!keep_case && code >= 0 && code <= 255) code = std::tolower(code);
    return static_cast<unsigned char>(code);
}

}  // namespace wenk
