// Normal images for the bump-mapped photo frame: a tangent-space normal map
// made from a height map, and the six faces of a normalisation cube map.
#ifndef ZANOVIEW_IMAGE_NORMALMAP_H
#define ZANOVIEW_IMAGE_NORMALMAP_H

#include "image/image.h"

namespace libgr {

// Both write RGB/SINT/8 records, one signed byte a component in the order
// x, y, z, and reach the pixels with rows aligned to 4 from the first byte:
// the records' windows and stores play no part.

// A GRAYSCALE/UINT/8 height image becomes a normal image of the same size.
// At each pixel the gradient is the height one pixel to the right (and one
// up) minus the height here, in units of 1/255, with the edges wrapping
// around as in a tiling texture; the vector (dx, dy, sqrt(1 - dy^2) +
// sqrt(1 - dx^2)) is normalised and each component v stored as v * 127
// rounded half away from zero. The vector leans towards higher ground, not
// away from it: a step from 0 up to 255 on the right gives (1, 0, 1) before
// normalising, stored (90, 0, 90); flat ground gives (0, 0, 127).
// An RGB/SINT or RGB/UINT source of 8 bits is taken to be a normal map
// already: dst shares it, true. Anything else, or a compressed source, is
// refused with a line on the error stream and dst sharing src. `scale` is
// accepted and has no effect.
bool heightmap2normalmap(image2d_t& dst, image2d_t const& src, float scale);

// Fills six records of 256 x 256, in the face order of GL's cube map
// targets (+X, -X, +Y, -Y, +Z, -Z), with unit directions stored as
// v * 0.5 + 0.5 in the 0-to-255 range of a colour channel, although the
// records say SINT. Pixel (0, 0) of face 0 is (1, -1, -1) normalised.
// NOTE: the directions are not those of a textbook normalisation map: a
// face's coordinates run from -1 to about -3 where they are taken from a
// negated index, and face 3 points along +Y like face 2. Kept exactly, since
// the frame's combiner path has always looked this way.
// False when a face can't be allocated, without a message.
bool makenormalcubemap(image2d_t* faces);

}  // namespace libgr

#endif
