// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPagedPaintDevice>
#include <QString>
#include <string_view>

#include "analysis/document.h"
#include "presentation/report_template.h"
#include "presentation/report_texts.h"
#include "presentation/shown_profiles.h"

namespace texturon {

/// Dots an inch that a report is laid out in, on whatever device.
inline constexpr int kReportResolution = 144;

/// What a report shows besides the document.
struct ReportChoice {
  ReportTemplate layout = DefaultReportTemplate();
  SeveralReport several = {};  ///< of the statistics block; without rows the block is left out
};

/// Draws the report of an analysed document on a printer or into a file, block by block as the template says. The
/// device's resolution must be kReportResolution; of its page ranges, where it has any, only those pages. Returns the
/// number of pages, 0 when the device cannot be written.
int PrintReport(QPagedPaintDevice& device, const Document& document, std::string_view time,
                const ReportChoice& choice = {});

/// Writes the report, all of it or nothing: an HTML file with its pictures inside where the name ends in .html or .htm,
/// else a PDF file after PDF/A-1b with embedded fonts. False with a sentence in `reason`.
bool WriteReport(const QString& file, const Document& document, std::string_view time, QString& reason,
                 const ReportChoice& choice = {});

/// A sentence where the settings name a picture for the head of a report that cannot be read: it is left out. Else
/// empty.
QString MissingLogo(const Document& document, const ReportTemplate& layout);

/// Writes the picture of one block: SVG or PNG, as the name ends in .svg or .png. False with a sentence in `reason`,
/// also where the document has nothing for it.
bool WritePicture(const QString& file, const Document& document, ReportBlockKind kind, QString& reason);

/// The profiles as a view shows them.
struct PictureOfView {
  ShownProfiles shown{};
  double firstX = 0.0;  ///< ends of what is in view, in the units shown
  double lastX = 0.0;
  double lowest = 0.0;
  double highest = 0.0;
};
/// Writes them on white ground, SVG or PNG by the name. False with a sentence in `reason`.
bool WritePicture(const QString& file, const Document& document, const PictureOfView& view, QString& reason);

/// Names of the blocks that are pictures, separated by commas.
QString PictureNames();

/// The template of a file; empty with a sentence in `reason` where it cannot be read or is not understood.
std::optional<ReportTemplate> LoadReportTemplate(const QString& file, QString& reason);
/// False with a sentence in `reason`.
bool SaveReportTemplate(const QString& file, const ReportTemplate& layout, QString& reason);

/// The user's own template, kept beside the user's settings; without one the default, and with one that cannot be read
/// or is not understood, too, with a sentence in `fault`.
ReportTemplate UsersReportTemplate(QString& fault);
/// Keeps it. False with a sentence in `reason`.
bool KeepUsersReportTemplate(const ReportTemplate& layout, QString& reason);

}  // namespace texturon
