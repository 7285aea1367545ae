// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPdfWriter>
#include <QStandardPaths>
#include <string>

#include "platform/platform.h"
#include "presentation/report_html.h"
#include "presentation/report_texts.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/report/report_pages.h"
#include "ui/report/report_pictures.h"

namespace texturon {
namespace {

constexpr int kMarginMM = 15;
/// Dots of 1/96 inch: the width of a page between its margins, and a screen's worth for a picture by itself.
constexpr QSize kPictureInFile = {680, 250};
constexpr QSize kPictureAlone = {1200, 600};
constexpr int kFontInFile = 12;
constexpr int kFontAlone = 16;

bool Write(const QString& file, const QByteArray& bytes, QString& reason) {
  const FileOutcome outcome =
      ReplaceFile(ToPath(file), std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
  if (!outcome.ok()) reason = FromText(FileSentence(ToPath(file), outcome.reason));
  return outcome.ok();
}

QString UsersTemplateFile() {
  return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + "/Report.ini";
}

bool EndsWith(const QString& file, const char* extension) {
  return file.endsWith(extension, Qt::CaseInsensitive);
}

/// A picture file as an address that needs no file.
std::string LogoAddress(const Document& document) {
  const QImage logo = LogoOf(document);
  if (logo.isNull()) return {};
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  logo.save(&bytes, "PNG");
  return "data:image/png;base64," + bytes.data().toBase64().toStdString();
}

QByteArray HtmlReport(const Document& analysed, std::string_view time, const ReportChoice& choice) {
  const ReadyDocument ready(analysed, ResultsFor(choice.layout));
  const Document& document = *ready;
  ReportParts parts{.pictures = {},
                    .several = choice.several,
                    .logo = LogoAddress(document),
                    .metric = document.settings.display.Metric};
  for (const ReportBlock& block : choice.layout.blocks) {
    const BlockPicture picture = MakePicture(block.kind, document, kFontInFile);
    if (picture.plot == nullptr) continue;
    const QByteArray prefix = QByteArray::fromStdString(std::string(ReportBlockOf(block.kind).name)) + '-';
    parts.pictures.push_back(
        {block.kind, picture.title.toStdString(), SvgOf(*picture.plot, kPictureInFile, prefix).toStdString()});
  }
  return QByteArray::fromStdString(ReportHtml(choice.layout, MakeReportTexts(document, time, choice.several), parts));
}

/// Empty when it cannot be drawn.
QByteArray PdfReport(const Document& document, std::string_view time, const ReportChoice& choice) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&bytes);
    writer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
    writer.setResolution(kReportResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMarginMM, kMarginMM, kMarginMM, kMarginMM), QPageLayout::Millimeter);
    writer.setTitle(FromText(document.profiles.identification));
    writer.setCreator("Texturon");
    if (PrintReport(writer, document, time, choice) == 0) return {};
  }
  return bytes.data();
}

bool IsPictureFile(const QString& file, QString& reason) {
  if (EndsWith(file, ".svg") || EndsWith(file, ".png")) return true;
  reason = QObject::tr("A picture is a file .svg or .png, not %1.").arg(file);
  return false;
}

bool WritePlot(const QString& file, QCustomPlot& plot, QString& reason) {
  if (EndsWith(file, ".svg")) {
    return Write(file, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + SvgOf(plot, kPictureAlone, "c"), reason);
  }
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  if (!ImageOf(plot, kPictureAlone).save(&bytes, "PNG")) {
    reason = QObject::tr("The picture cannot be made.");
    return false;
  }
  return Write(file, bytes.data(), reason);
}

}  // namespace

int PrintReport(QPagedPaintDevice& device, const Document& document, std::string_view time,
                const ReportChoice& choice) {
  const ReadyDocument ready(document, ResultsFor(choice.layout));
  return PrintReportPages(device, *ready, time, choice);
}

QString MissingLogo(const Document& document, const ReportTemplate& layout) {
  const std::string& file = document.settings.display.LogoFile;
  if (file.empty() || !layout.Has(ReportBlockKind::kHead) || !LogoOf(document).isNull()) return {};
  return QObject::tr("The report has no logo: %1 is no picture that can be read.").arg(FromPath(PathFromText(file)));
}

bool WriteReport(const QString& file, const Document& document, std::string_view time, QString& reason,
                 const ReportChoice& choice) {
  const EnglishScope english;
  const bool isHtml = EndsWith(file, ".html") || EndsWith(file, ".htm");
  const QByteArray bytes = isHtml ? HtmlReport(document, time, choice) : PdfReport(document, time, choice);
  if (bytes.isEmpty()) {
    reason = QObject::tr("The report cannot be drawn.");
    return false;
  }
  return Write(file, bytes, reason);
}

bool WritePicture(const QString& file, const Document& analysed, ReportBlockKind kind, QString& reason) {
  const EnglishScope english;
  if (!IsPictureFile(file, reason)) return false;
  const ReadyDocument ready(analysed, ResultsFor({.blocks = {{kind}}}));
  const Document& document = *ready;
  const BlockPicture picture = MakePicture(kind, document, kFontAlone);
  if (picture.plot == nullptr) {
    reason = QObject::tr("The analysis has no such curve: %1.").arg(FromText(ReportBlockOf(kind).meaning));
    return false;
  }
  return WritePlot(file, *picture.plot, reason);
}

bool WritePicture(const QString& file, const Document& document, const PictureOfView& view, QString& reason) {
  const EnglishScope english;
  return IsPictureFile(file, reason) && WritePlot(file, *MakePicture(view, document, kFontAlone), reason);
}

QString PictureNames() {
  QStringList names;
  for (const ReportBlockRow& row : ReportBlocks()) {
    if (row.isPicture) names.push_back(FromText(row.name));
  }
  return names.join(", ");
}

std::optional<ReportTemplate> LoadReportTemplate(const QString& file, QString& reason) {
  const FileBytes content = ReadRegularFile(ToPath(file));
  if (!content.ok()) {
    reason = FromText(FileSentence(ToPath(file), content.reason));
    return std::nullopt;
  }
  ReportTemplateRead read = ReadReportTemplate(content.bytes);
  if (!read.report) reason = FromText(FileSentence(ToPath(file), read.reason));
  return std::move(read.report);
}

bool SaveReportTemplate(const QString& file, const ReportTemplate& layout, QString& reason) {
  return Write(file, QByteArray::fromStdString(ReportTemplateText(layout)), reason);
}

ReportTemplate UsersReportTemplate(QString& fault) {
  if (!QFileInfo::exists(UsersTemplateFile())) return DefaultReportTemplate();
  return LoadReportTemplate(UsersTemplateFile(), fault).value_or(DefaultReportTemplate());
}

bool KeepUsersReportTemplate(const ReportTemplate& layout, QString& reason) {
  QDir().mkpath(QFileInfo(UsersTemplateFile()).path());
  return SaveReportTemplate(UsersTemplateFile(), layout, reason);
}

}  // namespace texturon
