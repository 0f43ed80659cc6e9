#pragma once

#include <cstddef>
#include <functional>

namespace quilex {

/// A uniformly random index from 0 to bound - 1, whose sequence differs from run to run; bound is at least 1.
using UniformRandom = std::function<std::size_t(std::size_t bound)>;

}  // namespace quilex
