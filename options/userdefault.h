// Keeping the user's settings between runs: the whole option table written to
// and read back from a text file in the user's home directory.
#ifndef ZANOVIEW_OPTIONS_USERDEFAULT_H
#define ZANOVIEW_OPTIONS_USERDEFAULT_H

namespace zanolib {

// The user default file of a program with the stem `prog` is ".<prog>" in
// $HOME, or in `dir` (the program's directory, closing "/" included) when HOME
// is not set. A "/" is put between the two only when the base doesn't end in
// one: HOME "/home/u" gives "/home/u/.zanoview", HOME "/" gives "/.zanoview",
// and an empty base leaves ".zanoview", relative to the working directory.

// Applies the user default file to g_option, row by row. A missing file is
// the normal case on a first start and changes nothing. With `verbose` on,
// writes "load user default: <file>" to standard output.
void option_load_user_default(char const* prog, char const* dir);

// Writes every row of the option table, with the values in force now, to the
// user default file, replacing it. With `debug` on, writes "prog: <prog>, dir:
// <dir>" and with `verbose` on "save user default: <file>", both to standard
// output. A file that can't be written is left alone without a word.
void option_save_user_default(char const* prog, char const* dir);

// Reads `path` line by line, each line cut at blanks and tabs and given to
// option_each_analyze as an argument array of exactly its tokens. Only the
// first option of a line counts; a line that doesn't start with a known
// option (a comment, a blank-led line) is ignored, and a valued option alone
// on its line leaves its field as it was. False only when the stream is
// broken; a missing file gives true.
bool option_load(char const* path);

// Writes one line for each row of the option table, in table order:
//   "-menu+" / "-verbose-"                        flags
//   "-resizetype -1"                              enums, signed
//   "-image_ratio_of_window 1063256064"           percents, the float's bits
//   "-framewidth 32"                              ulongs
//   "-winsize 800x600"                            sizes
//   "-framecolor \xff,\xff,\xff,\xff"             colours, raw bytes
// The colour bytes are not digits, so option_load reads them back as
// 0,0,0,0. False only when the stream is broken; a file that can't be
// created gives true.
bool option_save(char const* path);

}  // namespace zanolib

#endif
