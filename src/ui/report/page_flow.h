// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QRect>
#include <functional>
#include <vector>

namespace texturon {

/// A piece of a page: so high, or higher up to `most` where the page has room, and painted into where it comes to lie.
struct PagePiece {
  int height = 0;
  int most = 0;   ///< not above height: it does not grow
  int below = 0;  ///< what must have room below it on its page
  std::function<void(const QRect&)> paint;
};

/// Lines of one height under a head that stands above them on every page, in so many columns.
struct PageLines {
  int lineHeight = 0;
  std::size_t count = 0;
  std::size_t columns = 1;
  int columnGap = 0;
  std::function<void(const QRect&)> paintHead;
  std::function<void(const QRect&, std::size_t)> paintLine;
};

/// Sets pieces below each other, page by page.
class PageFlow {
public:
  /// `body` is what a page has between its head and its foot.
  PageFlow(const QRect& body, int gap) : body_(body), gap_(gap) {}

  void Add(PagePiece piece);
  void Add(const PageLines& lines);
  /// The next piece begins a page; none is left empty.
  void EndPage();

  /// Paints one page.
  using Page = std::function<void()>;
  std::vector<Page> TakePages();

private:
  int Room() const { return body_.height() - used_; }

  QRect body_;
  int gap_;
  int used_ = 0;
  std::vector<PagePiece> open_;
  std::vector<Page> pages_;
};

}  // namespace texturon
