// The view state file: how a picture was last viewed, kept in a small text
// file beside it so that the picture comes back the same way.
#ifndef ZANOVIEW_APP_ZVWFILE_H
#define ZANOVIEW_APP_ZVWFILE_H

#include <string>

#include "geometry/matrix.h"
#include "geometry/vector.h"

namespace zanoview2 {

// The file beside `picture`: its directory, its stem and ".zvw", so that
// "/p/a.jpg" gives "/p/a.zvw". The extension is dropped, which makes a.jpg
// and a.png of one directory share a file.
std::string make_zvwpath(char const* picture);

// Two values in their text forms, each with a line end:
//   dir2l(800, 600)
//   mtx3w(\t1.000000, 0.000000, 0.000000, 0.000000,
//   \t0.000000, ... (four lines in all)
// The reader takes any text with the numbers in parentheses; the words are
// not checked.
struct zvwfile_t {
    libgr::direction2l_t size = libgr::dir2l(libgr::datum2l);  // framebuffer pixels when saved
    libgr::matrix3w_t matrix = libgr::Imtx;                    // the picture's view matrix

    // True when the file could be opened; what a damaged file holds is not
    // checked, and values it lacks keep what they had.
    bool load(char const* picture);
    // True when the file could be opened for writing. The picture itself is
    // never written.
    bool save(char const* picture) const;
    // True when the file was removed.
    bool del(char const* picture) const;
};

}  // namespace zanoview2

#endif
