// The interface every image file codec offers the viewer: load a file into
// an image record, save one, and say how far the picture must be turned.
#ifndef ZANOVIEW_CODECS_IMAGE_OBJECT_H
#define ZANOVIEW_CODECS_IMAGE_OBJECT_H

#include <cstdint>

#include "image/image.h"

namespace libgr {

// One object serves one load or save; the image it fills lives on without it.
class image_object_t {
public:
    image_object_t() = default;
    virtual ~image_object_t() = 0;

    // Reads the file at `path` into `image`, rows bottom to top. False when
    // the file can't be read or isn't a kind this codec knows.
    virtual bool load(image2d_t& image, char const* path) = 0;
    // Writes `image` to `path`. Codecs without a writer keep this one, which
    // returns false.
    virtual bool save(image2d_t const& image, char const* path);

    // Clockwise quarter turns that make the loaded picture stand upright: 0
    // unless the file says otherwise (only JPEG files do).
    std::uint64_t rightrotatecount() const { return m_rightrotatecount; }

protected:
    std::uint64_t m_rightrotatecount = 0;  // quarter turns
};

}  // namespace libgr

#endif
