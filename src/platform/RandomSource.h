#pragma once

#include <cstddef>
#include <functional>

namespace quilex {

/// Draws an index uniformly from 0 to bound - 1 out of an unseeded source; bound is at least 1.
using UniformRandom = std::function<std::size_t(std::size_t bound)>;

}  // namespace quilex
