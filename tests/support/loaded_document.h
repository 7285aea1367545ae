// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "analysis/pipeline.h"

namespace texturon {

/// A document with a record of these heights, its settings changed, not analysed yet; it writes no side file.
inline Document Loaded(
    std::vector<double> heights, double spacingUM, const std::function<void(Settings&)>& change = [](Settings&) {}) {
  Document document = MakeDocument();
  Settings settings = document.settings;
  change(settings);
  ApplySettings(document, settings);
  SetProfile(document, MakeProfileSet(std::move(heights), spacingUM));
  document.writesTraceFile = false;
  return document;
}

/// Analyses it with nobody watching.
inline void Analyse(Document& document) {
  SilentPrompts nobody;
  Compute(document, nobody, {});
}

}  // namespace texturon
