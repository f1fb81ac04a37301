#pragma once

#include "dataset/basebuffer.h"

namespace topomine {

/// The table of one base, "topology", a row per block in ascending number. Throws std::bad_alloc
/// when BaseBuffer::add_base appends none.
BaseBuffer table_de(Base& base);

}  // namespace topomine
