// SPDX-License-Identifier: Apache-2.0

#include "ui/report/page_flow.h"

#include <algorithm>
#include <utility>

namespace texturon {

void PageFlow::Add(PagePiece piece) {
  if (!open_.empty() && piece.height + piece.below > Room()) EndPage();
  used_ += piece.height + gap_;
  open_.push_back(std::move(piece));
}

void PageFlow::Add(const PageLines& lines) {
  constexpr int kFewestLines = 3;  // below a head at the foot of a page
  for (std::size_t first = 0; first < lines.count;) {
    if (!open_.empty() && Room() < (1 + kFewestLines) * lines.lineHeight) EndPage();
    const auto fitting = static_cast<std::size_t>(std::max(Room() / lines.lineHeight - 1, 1));
    const std::size_t left = lines.count - first;
    // Columns of one length on the last page, full ones before.
    const std::size_t each = std::min(fitting, (left + lines.columns - 1) / lines.columns);
    const std::size_t here = std::min(each * lines.columns, left);
    const auto paint = [lines, first, each, here](const QRect& where) {
      const auto columns = static_cast<int>(lines.columns);
      const int width = (where.width() - (columns - 1) * lines.columnGap) / columns;
      for (std::size_t k = 0; k < here; ++k) {
        const auto column = static_cast<int>(k / each);
        const auto row = static_cast<int>(k % each);
        QRect line(where.left() + column * (width + lines.columnGap), where.top(), width, lines.lineHeight);
        if (row == 0) lines.paintHead(line);
        line.translate(0, (row + 1) * lines.lineHeight);
        lines.paintLine(line, first + k);
      }
    };
    Add(PagePiece{.height = static_cast<int>(each + 1) * lines.lineHeight, .paint = paint});
    first += here;
  }
}

void PageFlow::EndPage() {
  if (open_.empty()) return;
  // What is left goes to the pieces that grow, in equal parts as far as each takes its own.
  int left = Room() + gap_;
  auto growing =
      std::count_if(open_.begin(), open_.end(), [](const PagePiece& piece) { return piece.most > piece.height; });
  std::vector<std::pair<QRect, std::function<void(const QRect&)>>> placed;
  int top = body_.top();
  for (PagePiece& piece : open_) {
    if (piece.most > piece.height) {
      const int share = std::clamp(left / static_cast<int>(growing--), 0, piece.most - piece.height);
      piece.height += share;
      left -= share;
    }
    placed.emplace_back(QRect(body_.left(), top, body_.width(), piece.height), std::move(piece.paint));
    top += piece.height + gap_;
  }
  pages_.emplace_back([placed = std::move(placed)] {
    for (const auto& [where, paint] : placed) paint(where);
  });
  open_.clear();
  used_ = 0;
}

std::vector<PageFlow::Page> PageFlow::TakePages() {
  EndPage();
  return std::exchange(pages_, {});
}

}  // namespace texturon
