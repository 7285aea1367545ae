// SPDX-License-Identifier: Apache-2.0

#include "formats/content_kinds.h"

#include <algorithm>

#include "base/text.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/zip_archive.h"
#include "platform/platform.h"

namespace texturon {
namespace {

constexpr std::size_t kHeaderSize = 65'536;
constexpr std::string_view kTables = ".CSV";

/// How content of an extension begins, and what it holds besides.
struct Signature {
  std::string_view begins;
  std::string_view holds;
  std::string_view extension;
};

constexpr Signature kSignatures[] = {
    {"Lumetrace_Data", "", ".lmt"},
    {"aNIST", "", ".SDF"},
    {"aISO", "", ".SDF"},
    {"aBCR", "", ".SDF"},
    {"aNPL", "", ".SDF"},
    {"aBC-", "", ".SDF"},
    {"bNIST", "", ".SDF"},
    {"bISO", "", ".SDF"},
    {"bBCR", "", ".SDF"},
    {"DIGITAL SURF", "", ".PRO"},
    {"DSCOMPRESSED", "", ".PRO"},
    {"ISO 5436", "", ".SMD"},
    {"// Header", "", ".TXT"},
    {"X;Y;valid", "", ".HFM"},
    {"Profil ", "Punkte/Zeile", ".PR"},
    {"Profil ", "points/scanline", ".PR"},
    {"1 ", " PRF", ".PRF"},
    {"1 ", " MOD", ".MOD"},
    {"Data", "X-Resolution", ".TXT"},
    {"VCA DATA", "", ".OPDX"},
    {"GWYP", "", ".GWY"},
    {"MATLAB 5.0", "", ".MAT"},
    {"", "[PROFILE_HEADER]", ".TXT"},
    {"", "[PROFILE_VALUES]", ".PRF"},
    {"", "<DATA_POINT_VALUES>", ".XML"},
    {"", "<DataContainer typeid=", ".XML"},
    {"", "ISO5436_2 xmlns", ".XML"},
};

/// Files of other programs, by their extension or their first bytes.
struct Foreign {
  std::string_view extension;
  std::string_view begins;
  std::string_view text;
};

constexpr std::string_view kExportIt = "; export the profile as .lmt, .sdf, .smd or two-column text";

constexpr std::string_view kAreal = "is an areal measurement; save one line of it as a profile";

constexpr Foreign kForeign[] = {
    {".tx3", {}, "holds the conditions of a measurement; open the .tx1 or .tx2 beside it"},
    {".lmtd", {}, "is the table of a native header; open the .LMTH beside it"},
    {".mbd", {}, "is the data file of a .PIP; open that"},
    {".h5", "\x89HDF", "is a data container (HDF5)"},
    {".pdf", "%PDF", "is a document, not a profile"},
    {".png", "\x89PNG", "is a picture, not a profile"},
    {".zip", "PK\x03\x04", "is an archive"},
    {{}, "AliconaImaging", kAreal},
    {{}, "VK3_", kAreal},
    {{}, "VK4_", kAreal},
    {{}, "VK6", kAreal},
    {{}, "VK7", kAreal},
    {{}, "KPK0", kAreal},
    {{}, "KPK1", kAreal},
    {{}, "Binary TrueMap Data File", kAreal},
    {{}, "Zeta-Instruments", kAreal},
    {{}, "FRTM_GLIDERV", kAreal},
    {{}, "fileformat = bcr", kAreal},
    {{}, "WSxM file copyright", kAreal},
    {{}, "\\*File list", kAreal},
    {{}, "\x88\x1B\x03", "is an areal measurement of an interferometer; save one line of it as a profile"},
    {{}, "\x93NUMPY", "is an array of a numerics program"},
    {{}, "CDF\x01", "is a data container (NetCDF)"},
    {{}, "CDF\x02", "is a data container (NetCDF)"},
    {{}, "\xD0\xCF\x11\xE0", "is a compound file of an office program; save its table as .xlsx or .csv"},
};

/// The extension of a ZIP container by a name among its entries; empty: it is another archive.
std::string_view ContainerOf(std::string_view bytes) {
  if (!IsZip(bytes)) return {};
  const ZipArchive archive(bytes);
  if (archive.FindInAnyFolder("main.xml") != nullptr) return ".X3P";
  if (archive.Find("xl/workbook.xml") != nullptr) return ".XLSX";
  return {};
}

const Signature* SignatureOf(std::string_view bytes) {
  // A layout names itself in its first lines, or by its sections.
  constexpr std::size_t kFirstLines = 400;
  const std::string_view header = WithoutBlankLines(bytes.substr(0, kHeaderSize));
  const auto* const found =
      std::find_if(std::begin(kSignatures), std::end(kSignatures), [header](const Signature& signature) {
        const std::string_view where = signature.begins.empty() ? header : header.substr(0, kFirstLines);
        return StartsWithIgnoringCase(header, signature.begins) &&
               where.find(signature.holds) != std::string_view::npos;
      });
  return found == std::end(kSignatures) ? nullptr : found;
}

const ExtensionEntry& EntryOf(std::string_view extension) {
  const auto table = ExtensionTable();
  return *std::find_if(table.begin(), table.end(), [extension](const ExtensionEntry& entry) {
    return EqualIgnoringCase(entry.extension, extension);
  });
}

/// Whether no text holds the markers by chance: signs among the letters, or several words.
bool AreTelling(std::string_view markers) {
  constexpr std::size_t kFewLetters = 12;
  const bool hasSigns = std::any_of(markers.begin(), markers.end(), [](char c) {
    const char lower = LowerAscii(c);
    return c != '|' && c != ' ' && (lower < 'a' || lower > 'z');
  });
  const bool areSeveral = markers.find('|') != std::string_view::npos;
  return markers.size() > 2 && (hasSigns || (areSeveral && markers.size() >= kFewLetters));
}

}  // namespace

const ExtensionEntry& EntryOfContent(std::string_view bytes) {
  const std::string_view container = ContainerOf(bytes);
  if (!container.empty()) return EntryOf(container);
  const Signature* const signature = SignatureOf(bytes);
  return EntryOf(signature != nullptr ? signature->extension : kTables);
}

std::string_view KnownLayoutOf(std::string_view bytes) {
  const Signature* const signature = SignatureOf(bytes);
  return signature != nullptr ? signature->extension : std::string_view{};
}

std::string ForeignKind(const std::filesystem::path& path, std::string_view bytes) {
  if (!ContainerOf(bytes).empty()) return {};
  const std::string extension = TextFromPath(path.extension());
  for (const bool byName : {true, false}) {
    for (const Foreign& foreign : kForeign) {
      const bool is = byName ? !foreign.extension.empty() && EqualIgnoringCase(foreign.extension, extension)
                             : !foreign.begins.empty() && bytes.starts_with(foreign.begins);
      if (!is) continue;
      const bool saysHow = foreign.text.find(';') != std::string_view::npos;
      return std::string(foreign.text) + (saysHow ? std::string() : std::string(kExportIt));
    }
  }
  return {};
}

std::string MarkedLayout(std::string_view bytes) {
  const std::string_view header = bytes.substr(0, kHeaderSize);
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const ProfileReader& reader : entry.chain) {
      if (reader.read != nullptr || !AreTelling(reader.markers)) continue;
      const auto markers = SplitAtEach(reader.markers, '|');
      const bool holdsAll = std::all_of(markers.begin(), markers.end(), [header](std::string_view marker) {
        return header.find(marker) != std::string_view::npos;
      });
      if (holdsAll) return "is recognised: " + NotReadYet(reader.name);
    }
  }
  return {};
}

}  // namespace texturon
