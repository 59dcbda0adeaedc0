// How the shim turns GLFW's keys and buttons into GLUT-style codes.
#include "window/keymap.h"

#include <gtest/gtest.h>

#include <GLFW/glfw3.h>

using namespace wenk;

TEST(TranslateKey, EditingKeysBecomeCharacters)
{
    EXPECT_EQ(translate_key(GLFW_KEY_ESCAPE), 27);
    EXPECT_EQ(translate_key(GLFW_KEY_ENTER), 13);
    EXPECT_EQ(translate_key(GLFW_KEY_TAB), 9);
    EXPECT_EQ(translate_key(GLFW_KEY_BACKSPACE), 8);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_ENTER), 13);
}

TEST(TranslateKey, KeypadDigitsStandInForTheCursorKeys)
{
    EXPECT_EQ(translate_key(GLFW_KEY_KP_0), GLFW_KEY_INSERT);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_1), GLFW_KEY_END);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_2), GLFW_KEY_DOWN);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_3), GLFW_KEY_PAGE_DOWN);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_4), GLFW_KEY_LEFT);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_5), 255);  // a special code nothing answers
    EXPECT_EQ(translate_key(GLFW_KEY_KP_6), GLFW_KEY_RIGHT);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_7), GLFW_KEY_HOME);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_8), GLFW_KEY_UP);
    EXPECT_EQ(translate_key(GLFW_KEY_KP_9), GLFW_KEY_PAGE_UP);
    EXPECT_TRUE(is_special_key(translate_key(GLFW_KEY_KP_5)));
}

TEST(TranslateKey, KeypadOperatorsBecomeTheirCharacters)
{
    EXPECT_EQ(translate_key(GLFW_KEY_KP_DECIMAL), '.');
    EXPECT_EQ(translate_key(GLFW_KEY_KP_DIVIDE), '/');
    EXPECT_EQ(translate_key(GLFW_KEY_KP_MULTIPLY), '*');
    EXPECT_EQ(translate_key(GLFW_KEY_KP_SUBTRACT), '-');
    EXPECT_EQ(translate_key(GLFW_KEY_KP_ADD), '+');
    EXPECT_EQ(translate_key(GLFW_KEY_KP_EQUAL), '=');
}

TEST(TranslateKey, OtherKeysKeepGlfwsNumbers)
{
    EXPECT_EQ(translate_key(GLFW_KEY_F5), 294);
    EXPECT_EQ(translate_key(GLFW_KEY_DELETE), 261);
    EXPECT_EQ(translate_key(GLFW_KEY_A), 'A');
    EXPECT_EQ(translate_key(GLFW_KEY_SPACE), ' ');
    EXPECT_EQ(translate_key(GLFW_KEY_UNKNOWN), -1);
    EXPECT_TRUE(is_special_key(GLFW_KEY_F5));
    EXPECT_FALSE(is_special_key(GLFW_KEY_UNKNOWN));
    EXPECT_FALSE(is_special_key(127));
}

TEST(KeyCharacter, LettersAreLowerCaseUnlessOneOfShiftAndCapsLock)
{
    EXPECT_EQ(key_character('W', 0), 'w');
    EXPECT_EQ(key_character('W', GLFW_MOD_SHIFT), 'W');
    EXPECT_EQ(key_character('W', GLFW_MOD_CAPS_LOCK), 'W');
    EXPECT_EQ(key_character('W', GLFW_MOD_SHIFT | GLFW_MOD_CAPS_LOCK), 'w');
    // Other modifiers don't count.
    EXPECT_EQ(key_character('W', GLFW_MOD_CONTROL), 'w');
    EXPECT_EQ(key_character('W', GLFW_MOD_CONTROL | GLFW_MOD_SHIFT), 'W');
}

TEST(KeyCharacter, ShiftDoesNotChangeOtherKeys)
{
    EXPECT_EQ(key_character('1', GLFW_MOD_SHIFT), '1');
    EXPECT_EQ(key_character(27, 0), 27);
}

TEST(KeyCharacter, UnknownKeyComesOutAs255)
{
    EXPECT_EQ(key_character(GLFW_KEY_UNKNOWN, 0), 255);
}

TEST(GlutButton, MiddleAndRightAreSwapped)
{
    EXPECT_EQ(glut_button(GLFW_MOUSE_BUTTON_LEFT), 0);
    EXPECT_EQ(glut_button(GLFW_MOUSE_BUTTON_MIDDLE), 1);
    EXPECT_EQ(glut_button(GLFW_MOUSE_BUTTON_RIGHT), 2);
}
