// How GLFW's key events become GLUT-style characters and special codes.
#ifndef ZANOVIEW_WINDOW_KEYMAP_H
#define ZANOVIEW_WINDOW_KEYMAP_H

namespace wenk {

// GLFW key code to the shim's code: Escape, Enter, Tab and Backspace become
// their characters (27, 13, 9, 8); keypad digits become the special codes
// of the keys they stand for (KP_8 is Up, 265; KP_5 is "no key", 255);
// keypad operators become their characters. Other codes are returned as
// they are: translate_key(GLFW_KEY_F5) is 294.
int translate_key(int key);

// True when a translated code is a special key (above 127). GLFW_KEY_UNKNOWN,
// -1, is not: it goes on as a character.
inline bool is_special_key(int code) { return code > 127; }

// The character for a non-special code: lower case unless exactly one of
// Shift and Caps Lock is in mods, cut to unsigned char. key_character('A', 0)
// is 'a', key_character('A', GLFW_MOD_SHIFT) is 'A', key_character(-1, 0) is 255.
unsigned char key_character(int code, int mods);

// The shim's button for GLFW's: left 0 stays 0, right 1 becomes 2, middle 2
// becomes 1. Only for GLFW buttons 0 to 2.
inline int glut_button(int glfw_button) { return glfw_button == 1 ? 2 : glfw_button == 2 ? 1 : glfw_button; }

}  // namespace wenk

#endif
