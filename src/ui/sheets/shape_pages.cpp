// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/shape_pages.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>

#include "base/units.h"
#include "formats/point_table.h"
#include "platform/platform.h"
#include "presentation/nominal_preview.h"
#include "settings/nominal_settings.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QString Raised(std::size_t power) {
  constexpr char16_t kDigits[] = u"\u2070\u00B9\u00B2\u00B3\u2074\u2075\u2076\u2077\u2078\u2079";
  QString text;
  for (const QChar digit : QString::number(power)) text += QChar(kDigits[digit.digitValue()]);
  return text;
}

}  // namespace

CAspherePage::CAspherePage(Settings& settings, const CTexturonDoc& doc, QWidget* parent)
    : CShapePage(
          settings, "Asphere", "ASPHERIC_PARAMETERS", "Coefficients of the powers of u (mm)",
          [&settings](int row) {
            const auto index = static_cast<std::size_t>(row);
            const std::size_t power = PowerOfCoefficient(settings.analysis.EvenTermsOnly, index);
            return QString("A%1  %2").arg(2 * index).arg(
                power == 0 ? QCoreApplication::translate("CAspherePage", "constant, not used") : "u" + Raised(power));
          },
          "DISPLAY", {"AspherePreviewMinXMM", "AspherePreviewMaxXMM", "AspherePreviewMinYUM", "AspherePreviewMaxYUM"},
          parent),
      doc_(doc) {
  Begin();
}

std::vector<FreeFormPoint> CAspherePage::CurveOf(std::size_t count) const {
  return AspherePreview(settings_.analysis, settings_.display.AspherePreviewMinXMM,
                        settings_.display.AspherePreviewMaxXMM, count);
}

void CAspherePage::Fit() {
  FitAspherePreview(settings_, doc_.document().profiles.LengthMM());
}

CFreeFormPage::CFreeFormPage(Settings& settings, const CTexturonDoc& doc, QWidget* parent)
    : CShapePage(
          settings, "Free Form", "FREE_FORM", "Points of the nominal shape",
          [](int row) { return QString::number(row + 1); }, "FREE_FORM",
          {"FreeFormPreviewMinXMM", "FreeFormPreviewMaxXMM", "FreeFormPreviewMinYUM", "FreeFormPreviewMaxYUM"}, parent),
      doc_(doc) {
  AddButton(tr("&Paste"), [this] {
    TakeText(ToText(QApplication::clipboard()->text()), tr("The clipboard"));
  })->setToolTip(tr("Two columns of text from the clipboard, X in mm and Z in \u00B5m, in place of all points."));
  AddButton(tr("&Load..."), [this] {
    OnLoad();
  })->setToolTip(tr("Two columns of a text file, X in mm and Z in \u00B5m, in place of all points."));
  Begin();
}

bool CFreeFormPage::TakeText(std::string_view text, const QString& source) {
  PointTable table = ReadPointTable(text);
  if (!table.ok()) {
    doc_.prompts().ShowMessage(ToText(tr("%1: %2.").arg(source, EngineText(table.reason))));
    return false;
  }
  settings_.analysis.freeFormPoints = std::move(table.points);
  FitFreeFormPreview(settings_.analysis);
  Rows().Reset();
  emit Edited();
  return true;
}

bool CFreeFormPage::TakeFile(const std::filesystem::path& path) {
  const FileBytes file = ReadWholeFile(path);
  if (file.reason.empty()) return TakeText(file.bytes, FromPath(path));
  doc_.prompts().ShowMessage(FileSentence(path, file.reason));
  return false;
}

void CFreeFormPage::OnLoad() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Points of the Free Form"), {},
                                                    tr("Text (*.txt *.csv *.dat *.xy *.asc);;All Files (*)"));
  if (!file.isEmpty()) TakeFile(ToPath(file));
}

std::vector<FreeFormPoint> CFreeFormPage::CurveOf(std::size_t count) const {
  return FreeFormPreview(settings_.analysis, count);
}

std::vector<FreeFormPoint> CFreeFormPage::GivenPoints() const {
  // More of them would be a band, not points.
  constexpr std::size_t kMostPoints = 100;
  const std::vector<FreeFormPoint>& points = settings_.analysis.freeFormPoints;
  return points.size() <= kMostPoints ? points : std::vector<FreeFormPoint>();
}

void CFreeFormPage::Fit() {
  FitFreeFormPreview(settings_.analysis);
}

}  // namespace texturon
