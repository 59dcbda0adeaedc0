#include "geometry/mtype.h"

#include <cstring>
#include <istream>
#include <ostream>
#include <string>

#include "utils/diag.h"

namespace libgr {

mtype_row_t const mtype_table[MTYPE_NONE + 1] = {
    {MTYPE_FLOAT, "float"},     {MTYPE_POS3, "pos3"},       {MTYPE_DIR3, "dir3"},
    {MTYPE_POS2, "pos2"},       {MTYPE_DIR2, "dir2"},       {MTYPE_POS2L, "pos2l"},
    {MTYPE_DIR2L, "dir2l"},     {MTYPE_QUA, "qua"},         {MTYPE_ROT3, "rot3"},
    {MTYPE_PST3W, "pst3w"},     {MTYPE_PLR3, "plr3"},       {MTYPE_ANG3, "ang3"},
    {MTYPE_REV3, "rev3"},       {MTYPE_SRT3, "srt3"},       {MTYPE_IRT3, "irt3"},
    {MTYPE_VEC3W, "vec3w"},     {MTYPE_COL3, "col3"},       {MTYPE_COL3A, "col3a"},
    {MTYPE_TXC1, "txc1"},       {MTYPE_TXC2, "txc2"},       {MTYPE_TXC2Q, "txc2q"},
    {MTYPE_TXC3, "txc3"},       {MTYPE_TXC3Q, "txc3q"},     {MTYPE_MTX3W, "mtx3w"},
    {MTYPE_BOX2, "box2"},       {MTYPE_BOX3, "box3"},       {MTYPE_DIM2, "dim2"},
    {MTYPE_DIM3, "dim3"},       {MTYPE_COL3AUB, "col3aub"}, {MTYPE_COL3UB, "col3ub"},
    {MTYPE_COL1AUB, "col1aub"}, {MTYPE_COL1UB, "col1ub"},   {MTYPE_SURFACE, "surface"},
    {MTYPE_LINE2D, "line2d"},   {MTYPE_LINE3D, "line3d"},   {MTYPE_PROJECTION, "projection"},
    {MTYPE_NONE, nullptr},
};

e_mtype_t get_mtype(char const* name)
{
    for (int i = 0; i < MTYPE_NONE; ++i) {
        if (std::strncmp(name, mtype_table[i].name, mtype_name_max) == 0) {
            return mtype_table[i].value;
        }
    }
    return MTYPE_NONE;
}

std::ostream& operator<<(std::ostream& os, e_mtype_t t)
{
    auto const index = static_cast<std::uint32_t>(t);
    if (index > MTYPE_NONE) return os << "range over" << std::endl;
    if (mtype_table[index].value != t) return os << "table error" << std::endl;
    if (t == MTYPE_NONE) return os << "no type" << std::endl;
    return os << mtype_table[index].name;
}

std::istream& operator>>(std::istream& is, e_mtype_t& t)
{
    is.setf(std::ios_base::skipws);
    char name[mtype_name_max + 1] = {};
    int length = 0;
    while (length < mtype_name_max) {
        int const next = is.peek();
        if (next == std::char_traits<char>::eof() || next == '\0' || next == '\t' ||
            next == '\n' || next == '\r' || next == '(' || next == ')' || next == ',') {
            break;
        }
        // Formatted, so that blanks before and inside the name are skipped.
        char c = 0;
        if (!(is >> c)) break;
        name[length++] = c;
    }
    t = length == 0 ? MTYPE_NONE : get_mtype(name);
    return is;
}

std::istream& operator>>(std::istream& is, mtype_reader& r)
{
    is >> r.type;
    mtype_value_t& v = r.value;
    switch (r.type) {
    case MTYPE_FLOAT: {
        char open = 0;
        char close = 0;
        is >> open >> v.flt >> close;
        break;
    }
    case MTYPE_POS3: is >> v.pos3; break;
    case MTYPE_DIR3: is >> v.dir3; break;
    case MTYPE_POS2: is >> v.pos2; break;
    case MTYPE_DIR2: is >> v.dir2; break;
    case MTYPE_POS2L: is >> v.pos2l; break;
    case MTYPE_DIR2L: is >> v.dir2l; break;
    case MTYPE_QUA: is >> v.qua; break;
    case MTYPE_ROT3: is >> v.rot3; break;
    case MTYPE_PST3W: is >> v.pst3w; break;
    case MTYPE_PLR3: is >> v.plr3; break;
    case MTYPE_ANG3: is >> v.ang3; break;
    case MTYPE_REV3: is >> v.rev3; break;
    case MTYPE_SRT3: is >> v.srt3; break;
    case MTYPE_IRT3: is >> v.irt3; break;
    case MTYPE_VEC3W: is >> v.vec3w; break;
    case MTYPE_COL3: is >> v.col3; break;
    case MTYPE_COL3A: is >> v.col3a; break;
    case MTYPE_TXC1: is >> v.txc1; break;
    case MTYPE_TXC2: is >> v.txc2; break;
    case MTYPE_TXC2Q: is >> v.txc2q; break;
    case MTYPE_TXC3: is >> v.txc3; break;
    case MTYPE_TXC3Q: is >> v.txc3q; break;
    case MTYPE_MTX3W: is >> v.mtx3w; break;
    case MTYPE_BOX2: is >> v.box2; break;
    case MTYPE_BOX3: is >> v.box3; break;
    case MTYPE_DIM2: is >> v.dim2; break;
    case MTYPE_DIM3: is >> v.dim3; break;
    case MTYPE_COL3AUB: is >> v.col3aub; break;
    case MTYPE_COL3UB: is >> v.col3ub; break;
    case MTYPE_COL1AUB: is >> v.col1aub; break;
    case MTYPE_COL1UB: is >> v.col1ub; break;
    case MTYPE_SURFACE: is >> v.surface; break;
    case MTYPE_LINE2D: is >> v.line2d; break;
    case MTYPE_LINE3D: is >> v.line3d; break;
    case MTYPE_PROJECTION: is >> v.projection; break;
    case MTYPE_NONE:
        // Unknown: pass over its text, through the ")". A text that ends
        // first leaves the stream failed rather than waiting for more.
        for (;;) {
            int const next = is.get();
            if (next == std::char_traits<char>::eof()) {
                is.setstate(std::ios_base::failbit);
                break;
            }
            if (next == ')') break;
        }
        break;
    }
    return is;
}

std::ostream& operator<<(std::ostream& os, mtype_reader const& r)
{
    mtype_value_t const& v = r.value;
    switch (r.type) {
    case MTYPE_FLOAT: {
        libutils::keepflag keep(os);
        os.setf(std::ios_base::fixed, std::ios_base::floatfield);
        os << "float(" << v.flt << ')';
        break;
    }
    case MTYPE_POS3: os << v.pos3; break;
    case MTYPE_DIR3: os << v.dir3; break;
    case MTYPE_POS2: os << v.pos2; break;
    case MTYPE_DIR2: os << v.dir2; break;
    case MTYPE_POS2L: os << v.pos2l; break;
    case MTYPE_DIR2L: os << v.dir2l; break;
    case MTYPE_QUA: os << v.qua; break;
    case MTYPE_ROT3: os << v.rot3; break;
    case MTYPE_PST3W: os << v.pst3w; break;
    case MTYPE_PLR3: os << v.plr3; break;
    case MTYPE_ANG3: os << v.ang3; break;
    case MTYPE_REV3: os << v.rev3; break;
    case MTYPE_SRT3: os << v.srt3; break;
    case MTYPE_IRT3: os << v.irt3; break;
    case MTYPE_VEC3W: os << v.vec3w; break;
    case MTYPE_COL3: os << v.col3; break;
    case MTYPE_COL3A: os << v.col3a; break;
    case MTYPE_TXC1: os << v.txc1; break;
    case MTYPE_TXC2: os << v.txc2; break;
    case MTYPE_TXC2Q: os << v.txc2q; break;
    case MTYPE_TXC3: os << v.txc3; break;
    case MTYPE_TXC3Q: os << v.txc3q; break;
    case MTYPE_MTX3W: os << v.mtx3w; break;
    case MTYPE_COL3AUB: os << v.col3aub; break;
    case MTYPE_COL3UB: os << v.col3ub; break;
    case MTYPE_COL1AUB: os << v.col1aub; break;
    case MTYPE_COL1UB: os << v.col1ub; break;
    case MTYPE_PROJECTION: os << v.projection; break;
    // NOTE: deliberately silent; see the header.
    case MTYPE_BOX2:
    case MTYPE_BOX3:
    case MTYPE_DIM2:
    case MTYPE_DIM3:
    case MTYPE_SURFACE:
    case MTYPE_LINE2D:
    case MTYPE_LINE3D:
    case MTYPE_NONE:
        break;
    }
    return os;
}

}  // namespace libgr
