// The site directory: where an installed viewer keeps its message files and
// the photo frame's pictures and programs, searched after the working
// directory and the program's own directory. The build sets the one value
// (ZV_SITE_DIR in the top-level CMakeLists.txt), which the install rules
// use too, so that the search and the installed files can't part ways.
#ifndef ZANOVIEW_OPTIONS_SITEDIR_H
#define ZANOVIEW_OPTIONS_SITEDIR_H

namespace zanolib {

// An absolute path with its closing "/", so that a file name is simply
// appended: "/usr/site/share/zanolib/" + "zanoview.msg".
inline constexpr char kSiteDirectory[] = ZV_SITE_DIR;

}  // namespace zanolib

#endif
