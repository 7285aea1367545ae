// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Walks through an XML text: one root, closed elements, quoted attributes, comments, CDATA, the five entities and
/// numeric ones. A DOCTYPE is passed over and never loaded, so that no other entity is known. Names come without their
/// prefixes. Works on the caller's text, Windows-1252, and holds what is open alone; deep nesting is refused.
class XmlReader {
public:
  enum class Event { kBegin, kText, kEnd, kDone, kWrong };

  explicit XmlReader(std::string_view text) : text_(text) {}

  /// The next event. Text of an element may come in several pieces; an empty element begins and ends.
  Event Next();
  /// Of the element that began or ended.
  std::string_view name() const { return name_; }
  /// A piece of text, valid until the next event.
  std::string_view piece() const { return piece_; }
  /// The value of an attribute of the element that began, by its name without a prefix; empty: there is none.
  std::string Attribute(std::string_view name) const;
  /// Elements that are open, with the one that began and without the one that ended.
  std::size_t depth() const { return open_.size(); }
  /// What was wrong, with the line.
  std::string reason() const;

private:
  Event Wrong(std::string_view what);
  Event TakeTag();
  Event TakeEnd();
  Event TakeText();
  bool SkipMarkup(std::string_view begin, std::string_view end);
  bool SkipDocumentType();
  bool TakeAttributes();
  std::string_view TakeName();
  void SkipBlanks();
  bool Resolve(std::string_view raw, std::string& text) const;

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<std::string_view> open_;
  std::string_view name_, piece_, attributes_;
  std::string storage_;
  std::string_view wrong_;
  bool endsEmpty_ = false;
  bool hadRoot_ = false;
};

/// Calls `use` with the path ("DATA/PART/NAME", names joined by "/") and the whole text of every element that holds no
/// other. Why the XML is not well-formed, or nothing.
std::string ForEachXmlLeaf(std::string_view xml, const std::function<void(std::string_view, std::string_view)>& use);

/// A text as content of an element: Windows-1252 made UTF-8, marks as entities, control characters as blanks.
std::string XmlText(std::string_view text);

}  // namespace texturon
