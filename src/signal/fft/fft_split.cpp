// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft_split.h"

#include <algorithm>
#include <array>

#include "signal/fft/fft_memory.h"

namespace texturon {
namespace {

/// Columns that are transformed side by side: two cache lines.
constexpr std::size_t kBundle = 16;
static_assert(kBundle <= kMaxLanes && kBundle % kLaneQuantum == 0);
/// Longest transform whose turns between the halves are kept: they share the second-level cache with the data.
constexpr std::size_t kMostTabled = 8192;

void CopyRows(ConstRows in, Rows out, std::size_t rows, std::size_t width) {
  for (std::size_t row = 0; row < rows; ++row) {
    std::copy_n(in.re + row * in.stride, width, out.re + row * out.stride);
    std::copy_n(in.im + row * in.stride, width, out.im + row * out.stride);
  }
}

void ClearRows(Rows rows, std::size_t first, std::size_t last) {
  std::fill(rows.re + first * rows.stride, rows.re + last * rows.stride, 0.0);
  std::fill(rows.im + first * rows.stride, rows.im + last * rows.stride, 0.0);
}

}  // namespace

bool SplitChoice::IsNarrow() const {
  return std::min(n1, n2) < kBundle;
}

SplitChoice ChooseSplit(std::size_t n) {
  SplitChoice best;
  for (std::size_t n1 = 1; n1 * n1 <= n; ++n1) {
    if (n % n1 != 0) continue;
    const std::size_t n2 = n / n1;
    const double first = BatchFft::Cost(n1) * static_cast<double>(PaddedLanes(n2));
    const double second = BatchFft::Cost(n2) * static_cast<double>(PaddedLanes(n1));
    // What does not fit into the second-level cache is as bad as some more passes.
    const double cost = (first + second) * (1.0 + static_cast<double>(n2) / 4096.0);
    if (best.cost == 0.0 || cost < best.cost) best = {n1, n2, cost};
  }
  return best;
}

struct SplitFft::Work {
  Work(const SplitFft& plan, std::size_t k1Rows)
      : memory(SplitDoubles(plan.rows_.length() * PaddedLanes(k1Rows)) + 2 * SplitDoubles(plan.TileSize()) +
               SplitDoubles(plan.coarse_.re.size()) + SplitDoubles(plan.fine_.re.size()) +
               std::max(plan.columns_.ScratchDoubles(kBundle), plan.rows_.ScratchDoubles(kBundle))),
        scratch(memory.span()),
        turned(TakeSplit(scratch, plan.rows_.length() * PaddedLanes(k1Rows), kBundle)),
        tile(TakeSplit(scratch, plan.TileSize(), kBundle)),
        other(TakeSplit(scratch, plan.TileSize(), kBundle)),
        coarse(TakeSplit(scratch, plan.coarse_.re.size(), kBundle)),
        fine(TakeSplit(scratch, plan.fine_.re.size(), kBundle)) {}

  LineMemory memory;
  std::span<double> scratch;
  Rows turned;  ///< blocks of kBundle values k1; in a block n2 rows of k1 lanes
  Rows tile;    ///< one bundle
  Rows other;   ///< another one
  Rows coarse;  ///< turns of the current bundle
  Rows fine;
};

SplitFft::SplitFft(const SplitChoice& split) : columns_(split.n1), rows_(split.n2), roots_(split.n1 * split.n2) {
  const std::size_t n1 = split.n1;
  while (fineRows_ * fineRows_ < n1) fineRows_ *= 2;
  coarse_ = FirstLanes((PaddedLanes(n1) + fineRows_ - 1) / fineRows_, fineRows_);
  fine_ = FirstLanes(fineRows_, 1);
  if (length() <= kMostTabled) TableTurns();
}

void SplitFft::TableTurns() {
  const std::size_t rows = PaddedLanes(columns_.length());
  const std::size_t size = (rows_.length() + kBundle - 1) / kBundle * rows * kBundle;
  turns_.re.resize(size);
  turns_.im.resize(size);
  LaneTable coarse = coarse_;
  LaneTable fine = fine_;
  const Rows movedCoarse{coarse.re.data(), coarse.im.data(), kBundle};
  const Rows movedFine{fine.re.data(), fine.im.data(), kBundle};
  for (std::size_t c = 0; c < rows_.length(); c += kBundle) {
    MoveLanes(coarse_, fineRows_, c, movedCoarse);
    MoveLanes(fine_, 1, c, movedFine);
    JoinTurns(movedCoarse, movedFine, fineRows_, rows, kBundle,
              {turns_.re.data() + c * rows, turns_.im.data() + c * rows, kBundle});
  }
}

std::size_t SplitFft::TileSize() const {
  return std::max(PaddedLanes(columns_.length()), rows_.length()) * kBundle;
}

SplitFft::LaneTable SplitFft::FirstLanes(std::size_t rows, std::size_t step) const {
  LaneTable table{std::vector<double>(rows * kBundle), std::vector<double>(rows * kBundle)};
  for (std::size_t i = 0; i < rows && i * step < columns_.length(); ++i) {
    for (std::size_t q = 0; q < std::min(kBundle, rows_.length()); ++q) {
      const Cplx root = roots_.At(i * step * q);
      table.re[i * kBundle + q] = root.re;
      table.im[i * kBundle + q] = root.im;
    }
  }
  return table;
}

void SplitFft::MoveLanes(const LaneTable& first, std::size_t step, std::size_t c, Rows out) const {
  std::array<Cplx, kBundle> move;
  const std::size_t rows = first.re.size() / kBundle;
  for (std::size_t i = 0; i < rows; i += kBundle) {
    const std::size_t count = std::min(kBundle, rows - i);
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t row = (i + k) * step;
      move[k] = row < columns_.length() ? roots_.At(row * c) : Cplx{};
    }
    const std::size_t at = i * kBundle;
    MultiplyRows({first.re.data() + at, first.im.data() + at, kBundle}, {out.re + at, out.im + at, kBundle}, kBundle,
                 std::span(move).first(count), Product::kPlain);
  }
}

void SplitFft::Turn(Rows bundle, std::size_t rows, std::size_t width, std::size_t c, const Work& work) const {
  ConstRows turns;
  if (turns_.re.empty()) {
    MoveLanes(coarse_, fineRows_, c, work.coarse);
    MoveLanes(fine_, 1, c, work.fine);
  } else {
    const std::size_t at = c * PaddedLanes(columns_.length());
    turns = {turns_.re.data() + at, turns_.im.data() + at, kBundle};
  }
  ClearRows(bundle, rows, PaddedLanes(rows));  // they become the unused lanes of the last block
  RunTurnTile({.tile = bundle,
               .rows = PaddedLanes(rows),
               .lanes = bundle.stride,
               .width = width,
               .block = kBundle,
               .outRows = rows_.length(),
               .outRow = c,
               .turns = turns,
               .coarse = work.coarse,
               .fine = work.fine,
               .fineRows = fineRows_,
               .outRe = work.turned.re,
               .outIm = work.turned.im});
}

void SplitFft::Forward(ConstRows in, Rows out) const {
  const std::size_t n1 = columns_.length();
  const std::size_t n2 = rows_.length();
  Work work(*this, n1);
  for (std::size_t c = 0; c < n2; c += kBundle) {
    const std::size_t width = std::min(kBundle, n2 - c);
    const std::size_t lanes = PaddedLanes(width);
    ConstRows source{in.re + c, in.im + c, n2};
    work.tile.stride = lanes;
    if (width < lanes) {
      work.other.stride = lanes;
      ClearRows(work.other, 0, n1);
      CopyRows(source, work.other, n1, width);
      source = work.other;
    }
    columns_.Run(source, work.tile, lanes, work.scratch);
    Turn(work.tile, n1, width, c, work);
  }
  for (std::size_t k = 0; k < n1; k += kBundle) {
    const std::size_t width = std::min(kBundle, n1 - k);
    const std::size_t lanes = PaddedLanes(width);
    const ConstRows source{work.turned.re + k * n2, work.turned.im + k * n2, lanes};
    const Rows target{out.re + k, out.im + k, n1};
    if (width == lanes) {
      rows_.Run(source, target, lanes, work.scratch);
    } else {
      work.tile.stride = lanes;
      rows_.Run(source, work.tile, lanes, work.scratch);
      CopyRows(work.tile, target, n2, width);
    }
  }
}

void SplitFft::ForwardReal(const double* x, Rows out) const {
  const std::size_t n1 = columns_.length();
  const std::size_t n2 = rows_.length();
  const std::size_t half = n1 * n2 / 2;
  const std::size_t k1Rows = n1 / 2 + 1;
  Work work(*this, k1Rows);
  for (std::size_t c = 0; c < n2; c += 2 * kBundle) {
    const std::size_t width = std::min(kBundle, n2 - c);
    const std::size_t second = std::min(kBundle, n2 - c - width);
    const std::size_t lanes = PaddedLanes(width);
    ConstRows source{x + c, x + c + width, n2};
    work.tile.stride = lanes;
    work.other.stride = lanes;
    if (second < lanes) {
      ClearRows(work.other, 0, n1);
      for (std::size_t j = 0; j < n1; ++j) {
        std::copy_n(source.re + j * n2, width, work.other.re + j * lanes);
        std::copy_n(source.im + j * n2, second, work.other.im + j * lanes);
      }
      source = work.other;
    }
    columns_.Run(source, work.tile, lanes, work.scratch);
    SeparateRealPair(work.tile, n1, work.other, lanes);
    Turn(work.tile, k1Rows, width, c, work);
    if (second > 0) Turn(work.other, k1Rows, second, c + width, work);
  }
  for (std::size_t k = 0; k < k1Rows; k += kBundle) {
    const std::size_t width = std::min(kBundle, k1Rows - k);
    const std::size_t lanes = PaddedLanes(width);
    work.tile.stride = lanes;
    rows_.Run({work.turned.re + k * n2, work.turned.im + k * n2, lanes}, work.tile, lanes, work.scratch);
    for (std::size_t k2 = 0; k2 < n2; ++k2) {
      const double* re = work.tile.re + k2 * lanes;
      const double* im = work.tile.im + k2 * lanes;
      const std::size_t at = k2 * n1 + k;
      for (std::size_t q = 0; q < width; ++q) {
        const bool upper = at + q > half;
        const std::size_t to = upper ? n1 * n2 - at - q : at + q;
        out.re[to] = re[q];
        out.im[to] = upper ? -im[q] : im[q];
      }
    }
  }
}

}  // namespace texturon
