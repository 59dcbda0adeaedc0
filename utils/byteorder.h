// Conversions of values read from a file, in Intel (little-endian) or
// Motorola (big-endian) byte order, to the host's order.
#ifndef ZANOVIEW_UTILS_BYTEORDER_H
#define ZANOVIEW_UTILS_BYTEORDER_H

namespace libutils {

// Chosen at run time by a file's own byte-order mark (Exif's "II" or "MM").
class byteorder {
public:
    virtual unsigned short tohs(unsigned short value) = 0;
    virtual unsigned int tohl(unsigned int value) = 0;
    virtual unsigned long long tohll(unsigned long long value) = 0;
    virtual ~byteorder();
};

// Values in the host's order already: returned unchanged.
class intel_byteorder : public byteorder {
public:
    unsigned short tohs(unsigned short value) override;
    unsigned int tohl(unsigned int value) override;
    unsigned long long tohll(unsigned long long value) override;
};

// Bytes reversed: tohs(0x1234) is 0x3412, tohl(0x12345678) is 0x78563412.
class motorola_byteorder : public byteorder {
public:
    unsigned short tohs(unsigned short value) override;
    unsigned int tohl(unsigned int value) override;
    unsigned long long tohll(unsigned long long value) override;
};

// For values whose order a format fixes (BMP is Intel order).
inline unsigned short itohs(unsigned short value) { return value; }
inline unsigned int itohl(unsigned int value) { return value; }
inline unsigned long long itohll(unsigned long long value) { return value; }
unsigned long long mtohll(unsigned long long value);

}  // namespace libutils

#endif
