// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace texturon {

/// Combines the elements of every window of `width` points as it moves over `count` points, point by point, in linear
/// time whatever the width, and calls `visit(first, combined)` for each in order.
///
/// The points are cut into blocks of one width. A window is the tail of one block and the head of the next, so the
/// combined tails of a block and a running head give them all: nothing is ever taken out of a sum again, and a sum is
/// as good as if the window were added up by itself. `load(i, border)` gives element i; `border` is the first point of
/// the head's block, an origin near by for elements that weigh with their place. `combine` is associative.
template <typename Load, typename Combine, typename Visit>
void SweepWindows(std::size_t count, std::size_t width, const Load& load, const Combine& combine, const Visit& visit) {
  if (width < 1 || width > count) return;
  using Element = decltype(load(std::size_t{0}, std::size_t{0}));
  std::vector<Element> tails(width);
  for (std::size_t start = 0; start + width <= count; start += width) {
    const std::size_t border = start + width;
    tails[width - 1] = load(border - 1, border);
    for (std::size_t k = width - 1; k-- > 0;) tails[k] = combine(load(start + k, border), tails[k + 1]);
    visit(start, tails[0]);
    const std::size_t heads = std::min(width - 1, count - border);
    if (heads == 0) continue;
    Element head = load(border, border);
    visit(start + 1, combine(tails[1], head));
    for (std::size_t k = 2; k <= heads; ++k) {
      head = combine(head, load(border + k - 1, border));
      visit(start + k, combine(tails[k], head));
    }
  }
}

}  // namespace texturon
