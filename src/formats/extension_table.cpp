// SPDX-License-Identifier: Apache-2.0

#include "formats/extension_table.h"

#include <algorithm>

#include "base/text.h"
#include "formats/column_text.h"
#include "formats/comma_separated.h"
#include "formats/digital_surf.h"
#include "formats/exchange_format.h"
#include "formats/gwyddion_format.h"
#include "formats/instrument_text.h"
#include "formats/matlab_format.h"
#include "formats/mod_format.h"
#include "formats/native_format.h"
#include "formats/opdx_format.h"
#include "formats/plain_heights.h"
#include "formats/pr_format.h"
#include "formats/prf_format.h"
#include "formats/sdf_format.h"
#include "formats/softgauge_text.h"
#include "formats/softgauge_writer.h"
#include "formats/step_profiler.h"
#include "formats/workbook_profile.h"
#include "formats/xml_profile.h"
#include "platform/platform.h"

namespace texturon {
namespace {

// Readers that several chains share, or that deliver heights.
constexpr ProfileReader kNative{"native format", "text with the magic word Lumetrace_Data 1.0", ReadNativeProfile};
constexpr ProfileReader kNativeWithTable{"native header with table",
                                         "the native header; heights in the tab-separated table .LMTd beside it",
                                         ReadNativeHeaderWithTable};
constexpr ProfileReader kPrf{"Taylor Hobson PRF",
                             "text form, versions 1 to 3; the binary form is recognised and refused", ReadPrfProfile};
constexpr ProfileReader kMod{"Taylor Hobson MOD", "form data as text: positions, then heights", ReadModProfile};
constexpr ProfileReader kPr{"PTB PR", "old and new header line, heights in um", ReadPrProfile};
constexpr ProfileReader kSdf{"Standard Data Format", "text and binary, one profile or several", ReadSdfProfile};

/// A layout that is not known.
constexpr ProfileReader Unread(std::string_view name, std::string_view markers = {},
                               std::array<Condition, 2> conditions = {}, Companion companion = {}) {
  return {name, {}, nullptr, markers, conditions, companion};
}

constexpr ProfileReader kPcd{
    "portable text", "integer heights in steps of the entry RES (um); the spacing is asked for", ReadResolutionText};
constexpr ProfileReader kRsf = Unread("RSF text", "FDATA|FEAT/SURFINISH");
constexpr ProfileReader kRsfFirst = Unread("RSF text", "FDATA");
constexpr ProfileReader kTwoColumns{"two-column text", "positions and one or more columns of heights, among other text",
                                    ReadTwoColumnText};
constexpr ProfileReader kGeneric{
    "generic text", "a table of numbers among other text; one column: the spacing is asked for", ReadGenericText};
constexpr ProfileReader kCommaList{"comma list", "heights in um, each with a comma behind it; the spacing is asked for",
                                   ReadCommaList};
constexpr ProfileReader kManyDat = Unread("several profiles in a DAT file");

constexpr ProfileReader kPrfChain[] = {
    Unread("profile-view export", "profileView|PVSC"),
    kPrf,
    kPcd,
    {"keyed text of a record", "OBJECT=, NUMBER=, DateTime= with the section [PROFILE_VALUES]", ReadRecordText}};
constexpr ProfileReader kRuf[] = {
    Unread("roughness text", "Roughness Data",
           {{{"inch", false, "Metric data required."}, {"Inch", false, "Metric data required."}}})};
constexpr ProfileReader kS2p[] = {Unread("S2P text", "[s2pda0]")};
constexpr ProfileReader kModChain[] = {kMod};
constexpr ProfileReader kPrChain[] = {kPr};
constexpr ProfileReader kNds[] = {
    Unread("NDS text", "Time|Trace|Polarity|Gain|Sensitivity|CalibrationFactor|ZeroShift|SampleSpacing|Samples")};
constexpr ProfileReader kFts[] = {Unread("Taylor Hobson FTS")};
constexpr ProfileReader kXls[] = {{"spreadsheet text",
                                   "a table of numbers as text; a workbook; binary ones and web pages are refused",
                                   ReadSpreadsheetText}};
constexpr ProfileReader kZpx[] = {Unread("ZPX file")};
constexpr ProfileReader kPcdChain[] = {kPcd};
constexpr ProfileReader kPdi[] = {Unread("PDI text", "~Traced Profile")};
constexpr ProfileReader kXml[] = {
    {"XML profile",
     "algorithm test data; a stylus profiler's container; main.xml of a surface exchange file; DataElements is "
     "recognised only",
     ReadXmlProfile}};
constexpr ProfileReader kMes[] = {kCommaList};
constexpr ProfileReader kRst[] = {Unread("binary range file")};
constexpr ProfileReader kRtf[] = {Unread("RTF export", "{\\rtf")};
constexpr ProfileReader kStr[] = {Unread("STR file")};
constexpr ProfileReader kSip[] = {Unread("SIP text", "RtipMM")};
constexpr ProfileReader kIst[] = {Unread("IST file")};
constexpr ProfileReader kTx[] = {
    {"TX1/TX2 text", "length, number of points, heights in um; the spacing is asked for", ReadTxText}};
constexpr ProfileReader kTxt[] = {
    Unread("keyed text of elements", "$ELE|$END"),
    {"surface tester text", "sections // Header to // CalcData, pitch among the conditions", ReadSectionText},
    Unread("cell-view export", "CellView|Test Date|Start Time|Data Points"),
    Unread("comma-separated text x,s1c1", "x,s1c1"),
    Unread("text with a point count", "Number of points"),
    {"text with a unit pair", "two columns under their units", ReadUnitPairText},
    kRsfFirst,
    Unread("dashed-header text", "Title|Linear Contour<LCon_1>|Data Size"),
    {"step profiler text", "Data, Recipe, Points, X-Resolution; heights in Angstrom, in columns or a row a trace",
     ReadStepProfilerText},
    Unread("text with [txtpda]", "[txtpda]"),
    Unread("xyzuvwr table", "xyzuvwr"),
    Unread("text with an evaluation length", "Eval.Length"),
    {"MarSurf text", "sections [PROFILE_HEADER] and [PROFILE_VALUES]", ReadProfileHeaderText},
    Unread("listing of several profiles", "Profiles of file:|- end of header -|xsize|xpoints"),
    Unread("MarSurf text with NPRF", "[MarSurf|NPRF"),
    kCommaList,
    Unread("text with date and time", "Date|Time"),
    Unread("profile plot data", "Profile Plot Data", {{{"NO_DATA", false, "The file holds no data."}}}),
    Unread("scan list", "RIGHT_PNHL_SCAN|LT_SCAN"),
    {"distance table", "a table whose heading names Distance(um)", ReadDistanceTable},
    kTwoColumns,
    {"plain softgauge text", "the spacing on line 1, then heights, in um", ReadPlainSoftgauge},
    Unread("plain text 3"),
    Unread("table of actual coordinates", "XACT|YACT|ZACT"),
    Unread("table of radius, angle and height", "RADIUS|ANGLE|HEIGHT"),
    Unread("table with a tip radius to suppress"),
    kGeneric,
};
constexpr ProfileReader kYnz[] = {Unread("YNZ text", "scbada")};
constexpr ProfileReader kRsfChain[] = {kRsf};
constexpr ProfileReader kNc[] = {Unread("NC file")};
constexpr ProfileReader kDat[] = {Unread("DAT file 1"),
                                  Unread("DAT file with a header file .hdr"),
                                  kRsfFirst,
                                  kTwoColumns,
                                  kManyDat,
                                  Unread("text with points", "points"),
                                  kGeneric};
constexpr ProfileReader kDatChosen[] = {kManyDat};
constexpr ProfileReader kDir[] = {Unread("folder of numbered profiles")};
constexpr ProfileReader kDirChosen[] = {Unread("one of a folder's numbered profiles")};
constexpr ProfileReader kHfm[] = {
    Unread("test-plan text", "Test plan|[mm]"),
    {"X;Y;valid table", "positions, heights and a flag, with a line of units", ReadValidityTable}};
constexpr ProfileReader kHwp[] = {Unread("HWP text", "DATE|TIME")};
constexpr ProfileReader kHwpSecond[] = {
    {"LT Type text", "never reached, because the entry above has the same extension", nullptr, "LT Type"}};
constexpr ProfileReader kPip[] = {Unread("PIP file with a data file .MBD")};
constexpr ProfileReader kPro[] = {
    {"Digital Surf profile", "binary profile, packed or not; one of several objects", ReadDigitalSurfProfile},
    kTwoColumns,
    {"text with four header lines", "four lines, number of points, spacing, heights", ReadFourLineHeader}};
constexpr ProfileReader kAsc[] = {Unread("ASCII table", "# File Format", {{{"ASCII", true, "ASCII data required."}}}),
                                  kTwoColumns, kGeneric};
constexpr ProfileReader kSdfChain[] = {kSdf};
constexpr ProfileReader kLmtChain[] = {kNative};
constexpr ProfileReader kLmthChain[] = {kNativeWithTable};
constexpr ProfileReader kPra[] = {Unread("PRA file")};
constexpr ProfileReader kTen[] = {Unread("listing of several profiles")};
constexpr ProfileReader kTenChosen[] = {Unread("one of several profiles")};
constexpr ProfileReader kStp[] = {Unread("several profiles in an STP file")};
constexpr ProfileReader kHdr[] = {
    Unread("header file with a data file .dat", "IDENT", {}, {".dat", "Could not find %s.dat"})};
constexpr ProfileReader kCsv[] = {
    {"comma-separated exports",
     "the native format; roughness tester and stylus profiler exports; a table of numbers "
     "among other text",
     ReadCommaSeparated}};
constexpr ProfileReader kXy[] = {kTwoColumns};
constexpr ProfileReader kYz[] = {Unread("YZ text", "NAM=|TYP=")};
constexpr ProfileReader kSmd[] = {
    Unread("Hommelwerke export", "Hommelwerke",
           {{{"CX", true, "Could not find CX info."}, {"TIME", true, "Could not find TIME info."}}}),
    {"SMD softgauge", "softgauge of ISO 5436-2, incremental or absolute", ReadSoftgauge}};

constexpr ProfileReader kX3p[] = {{"surface exchange file",
                                   "line profiles of ISO 25178-72; areal ones and point clouds are refused",
                                   ReadExchangeProfile}};

constexpr ProfileReader kXlsx[] = {{"workbook",
                                    "a hand tester's sheets Certificate and DATA; any sheet with a table of numbers",
                                    ReadWorkbookProfile}};

constexpr ProfileReader kOpdx[] = {
    {"stylus profiler binary", "curves of heights; surfaces are refused", ReadOpdxProfile}};

constexpr ProfileReader kGwy[] = {
    {"Gwyddion file", "curves of graphs, images of one line; areal images are refused", ReadGwyddionProfile}};
constexpr ProfileReader kMat[] = {
    {"MATLAB file", "version 5: a vector of heights, with positions where there are some", ReadMatlabProfile}};

constexpr ExtensionEntry kExtensions[] = {
    {".PRF", kPrfChain, {}, false, true},
    {".RUF", kRuf},
    {".S2P", kS2p},
    {".MOD", kModChain, {}, false, true},
    {".PR", kPrChain},
    {".NDS", kNds},
    {".FTS", kFts},
    {".XLS", kXls},
    {".ZPX", kZpx},
    {".PCD", kPcdChain},
    {".PDI", kPdi},
    {".XML", kXml},
    {".MES", kMes},
    {".RST", kRst},
    {".RTF", kRtf},
    {".STR", kStr},
    {".SIP", kSip},
    {".IST", kIst},
    {".TX1", kTx},
    {".TX2", kTx},
    {".TXT", kTxt},
    {".YNZ", kYnz},
    {".RSF", kRsfChain},
    {".OUT", kRsfChain, {}, true},
    {".NC", kNc},
    {".DAT", kDat, kDatChosen},
    {".DIR", kDir, kDirChosen},
    {".HFM", kHfm},
    {".HWP", kHwp},
    {".PIP", kPip},
    {".PRO", kPro, {}, false, true},
    {".ASC", kAsc},
    {".SDF", kSdfChain, {}, false, true},
    {".lmt", kLmtChain},
    {".LMTH", kLmthChain},
    {".PRA", kPra},
    {".TEN", kTen, kTenChosen},
    {".SIX", kTen, kTenChosen},
    {".STP", kStp},
    {".HDR", kHdr},
    {".HWP", kHwpSecond},
    {".CSV", kCsv},
    {".XY", kXy},
    {".YZ", kYz},
    {".SMD", kSmd},
    {".X3P", kX3p, {}, false, true},
    {".XLSX", kXlsx, {}, false, true},
    {".OPDX", kOpdx, {}, false, true},
    {".GWY", kGwy, {}, false, true},
    {".MAT", kMat, {}, false, true},
};

constexpr WriterEntry kWriters[] = {
    {".lmt", "native format", WriteNativeProfile, "Lumetrace"},
    {".sdf", "Standard Data Format", WriteSdfProfile, "Standard Data Format"},
    {".prf", "Taylor Hobson PRF", WritePrfProfile, "Taylor Hobson PRF"},
    {".pr", "PTB PR", WritePrProfile, "PTB PR"},
    {".x3p", "surface exchange file", WriteExchangeProfile, {}},
    {".smd", "SMD softgauge", WriteSoftgauge, {}},
};

}  // namespace

std::span<const ExtensionEntry> ExtensionTable() {
  return kExtensions;
}

std::span<const WriterEntry> WriterTable() {
  return kWriters;
}

const WriterEntry& WriterFor(const std::filesystem::path& path) {
  const std::string extension = TextFromPath(path.extension());
  const auto* const found =
      std::find_if(std::begin(kWriters), std::end(kWriters),
                   [&extension](const WriterEntry& entry) { return EqualIgnoringCase(entry.extension, extension); });
  return found != std::end(kWriters) ? *found : kWriters[0];
}

}  // namespace texturon
