#include "codecs/image_object.h"

namespace libgr {

// Declared pure, yet every derived destructor calls it, so it has a body.
image_object_t::~image_object_t()
{
}

bool image_object_t::save(image2d_t const& /*image*/, char const* /*path*/)
{
    return false;
}

}  // namespace libgr
