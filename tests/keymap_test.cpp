// How the shim turns GLFW's keys and buttons into GLUT-style codes.
#include "window/keymap.h"

#include <gtest/gtest.h>

#include <GLFW/glfw3.h>

using namespace wenk;

// One row of each kind of the translation, the first key of each remapped
// range, and the odd ones: the table itself is not copied here.
TEST(TranslateKey, EditingKeysKeypadAndOthers)
{
    EXPECT_EQ(translate_key(GLFW_KEY_ESCAPE), 27);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_ENTER), 13);
    // Keypad digits stand in for the cursor keys; 5 is a code nothing answers.
    EXPECT_EQ(translate_key(GLFW_KEY_KP_8), GLFW_KEY_UP);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_0), GLFW_KEY_INSERT);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_5), 255);
    EXPECT_TRUE(is_special_key(translate_key(GLFW_KEY_KP_5)));
    // Everything else keeps GLFW's number.
    EXPECT_EQ(translate_key(GLFW_KEY_F5), 294);
    EXPECT_EQ(translate_key(GLFW_KEY_UNKNOWN), -1);
    EXPECT_TRUE(is_special_key(GLFW_KEY_F5));
    EXPECT_FALSE(is_special_key(GLFW_KEY_UNKNOWN));
    EXPECT_FALSE(is_special_key(127));
}

TEST(KeyCharacter, LowerCaseUnlessOneOfShiftAndCapsLockAndCutToAByte)
{
    EXPECT_EQ(key_character('W', 0), 'w');
    EXPECT_EQ(key_character('W', GLFW_MOD_SHIFT), 'W');
    EXPECT_EQ(key_character('W', GLFW_MOD_CAPS_LOCK), 'W');
    EXPECT_EQ(key_character('W', GLFW_MOD_SHIFT | GLFW_MOD_CAPS_LOCK), 'w');
    // Other modifiers don't count.
    EXPECT_EQ(key_character('W', GLFW_MOD_CONTROL | GLFW_MOD_SHIFT), 'W');
    EXPECT_EQ(key_character(GLFW_KEY_UNKNOWN, 0), 255);
}

TEST(GlutButton, MiddleAndRightAreSwapped)
{
    EXPECT_EQ(glut_button(GLFW_MOUSE_BUTTON_MIDDLE), 1);
    EXPECT_EQ(glut_button(GLFW_MOUSE_BUTTON_RIGHT), 2);
}
