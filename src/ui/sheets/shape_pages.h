// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include "ui/sheets/shape_page.h"
#include "ui/window/texturon_doc.h"

namespace texturon {

/// The asphere: its terms, how it is placed, the clear aperture; its coefficients and the sag.
class CAspherePage : public CShapePage {
  Q_OBJECT

public:
  CAspherePage(Settings& settings, const CTexturonDoc& doc, QWidget* parent = nullptr);

protected:
  std::vector<FreeFormPoint> CurveOf(std::size_t count) const override;
  void Fit() override;

private:
  const CTexturonDoc& doc_;
};

/// The free form: how it is placed and filtered; its points, typed, pasted or from a text file, and the curve through
/// them.
class CFreeFormPage : public CShapePage {
  Q_OBJECT

public:
  CFreeFormPage(Settings& settings, const CTexturonDoc& doc, QWidget* parent = nullptr);

  /// Takes the points of a text in place of those there are. False, with a message, where it holds none.
  bool TakeText(std::string_view text, const QString& source);
  bool TakeFile(const std::filesystem::path& path);

protected:
  std::vector<FreeFormPoint> CurveOf(std::size_t count) const override;
  std::vector<FreeFormPoint> GivenPoints() const override;
  void Fit() override;

private:
  void OnLoad();

  const CTexturonDoc& doc_;
};

}  // namespace texturon
