// SPDX-License-Identifier: Apache-2.0

#include "verification/software_standard.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "base/elementary.h"
#include "base/ini_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

constexpr double kPi = std::numbers::pi;

/// sin(pi over / under), with the multiple of a turn taken out in whole numbers.
double SinOf(std::int64_t over, std::int64_t under) {
  const std::int64_t turns = over % (2 * under);
  return Sin(kPi * (static_cast<double>(turns) / static_cast<double>(under)));
}
double CosOf(std::int64_t over, std::int64_t under) {
  return Cos(kPi * (static_cast<double>(over % (2 * under)) / static_cast<double>(under)));
}

/// One height after the other.
struct Place {
  const SoftwareStandard& standard;
  std::int64_t i;
  std::int64_t wave;  ///< points a wave; 1 for shapes without one
  double height;

  std::int64_t InWave() const { return i % wave; }
  std::int64_t Count() const { return static_cast<std::int64_t>(standard.Points()); }
  double FromMiddleUM() const { return 0.5 * static_cast<double>(2 * i - Count() + 1) * standard.SpacingUM(); }
  double Polynomial(double x) const {
    double sum = 0.0;
    for (std::size_t k = standard.coefficients.size(); k-- > 0;) sum = sum * x + standard.coefficients[k];
    return sum;
  }
};

double Triangle(const Place& at) {
  const double level = static_cast<double>(4 * at.InWave() + 2) / static_cast<double>(at.wave);
  return at.height * (2 * at.InWave() < at.wave ? level - 1.0 : 3.0 - level);
}

double Waves(const Place& at) {
  const auto harmonic = static_cast<std::int64_t>(at.standard.Number("SecondHarmonic"));
  return at.height * SinOf(2 * at.i + 1, at.wave) +
         at.standard.Number("SecondHeightUM") * CosOf(harmonic * (2 * at.i + 1), at.wave);
}

double Arc(const Place& at) {
  const double radiusUM = 1000.0 * std::abs(at.standard.Number("RadiusMM"));
  const double x = at.FromMiddleUM();
  const double sag = x * x / (radiusUM + std::sqrt((radiusUM - x) * (radiusUM + x)));
  return at.standard.Number("RadiusMM") > 0.0 ? -sag : sag;
}

double Conic(const Place& at) {
  const double c = at.standard.Number("CurvaturePerMM");
  const double x = 0.001 * at.FromMiddleUM();
  return 1000.0 * c * x * x / (1.0 + std::sqrt(1.0 - (1.0 + at.standard.Number("Conic")) * c * c * x * x));
}

struct StandardShape {
  std::string_view name;
  double (*height)(const Place& at);
};

constexpr StandardShape kShapes[] = {
    {"sine", [](const Place& at) { return at.height * SinOf(2 * at.i + 1, at.wave); }},
    {"triangle", Triangle},
    {"sawtooth",
     [](const Place& at) {
       return at.height * (static_cast<double>(2 * at.InWave() + 1) / static_cast<double>(at.wave) - 1.0);
     }},
    {"rectangle",
     [](const Place& at) {
       return static_cast<double>(at.InWave()) < at.standard.Number("HighPoints") ? at.height : 0.0;
     }},
    {"waves", Waves},
    {"polynomial", [](const Place& at) { return at.Polynomial(static_cast<double>(at.i) * at.standard.SpacingUM()); }},
    {"scaled polynomial",
     [](const Place& at) {
       return at.Polynomial(static_cast<double>(2 * at.i - at.Count() + 1) / static_cast<double>(at.Count() - 1));
     }},
    {"arc", Arc},
    {"conic", Conic},
    {"chirp", [](const Place& at) { return at.height * SinOf(at.i * at.i, at.Count()); }},
};

/// x[i+1] = (1664525 x[i] + 1013904223) mod 2^32, z[i] = x[i+1] / 2^32.
std::vector<double> Noise(const SoftwareStandard& standard) {
  std::vector<double> heights(standard.Points());
  auto x = static_cast<std::uint32_t>(standard.Number("Seed"));
  for (double& height : heights) {
    x = 1664525U * x + 1013904223U;
    height = static_cast<double>(x) * 0x1p-32;
  }
  return heights;
}

/// Takes one section in, key by key.
class StandardReader {
public:
  explicit StandardReader(SoftwareStandard& standard) : standard_(standard) {}

  /// Why not.
  std::string Take(std::string_view key, std::string_view value) {
    const auto behind = [key](std::string_view start) { return std::string(key.substr(start.size())); };
    if (key == "Shape") {
      standard_.shape = value;
    } else if (key == "Coefficients") {
      for (std::string_view rest = value; !rest.empty();) {
        const ParsedDouble number = ParseDouble(rest);
        if (!number.usable()) return "is no list of numbers";
        standard_.coefficients.push_back(number.value);
        rest = TrimBlanks(rest.substr(number.length));
      }
    } else if (key.starts_with("Set.")) {
      standard_.settings.emplace_back(behind("Set."), value);
    } else if (key.starts_with("Formula.")) {
      Of(behind("Formula.")).formula = value;
    } else {
      const ParsedDouble number = ParseDouble(value);
      if (!number.usable() || number.length != value.size()) return "is no number";
      if (key.starts_with("Value.")) {
        Of(behind("Value.")).value = number.value;
      } else if (key.starts_with("Tolerance.")) {
        Of(behind("Tolerance.")).tolerance = number.value;
      } else {
        standard_.numbers.emplace(key, number.value);
      }
    }
    return {};
  }

  std::string Missing() const {
    constexpr double kMostPoints = 100'000.0;
    const double points = standard_.Number("Points");
    if (!(points >= 1.0 && points <= kMostPoints) || !(standard_.SpacingUM() > 0.0)) return "Points or SpacingUM";
    if (standard_.values.empty()) return "a value";
    for (const KnownValue& known : standard_.values) {
      if (known.formula.empty() || !(known.tolerance > 0.0)) return "formula or tolerance of " + known.name;
    }
    return {};
  }

private:
  KnownValue& Of(const std::string& name) {
    const auto found = std::find_if(standard_.values.begin(), standard_.values.end(),
                                    [&](const KnownValue& known) { return known.name == name; });
    if (found != standard_.values.end()) return *found;
    return standard_.values.emplace_back(KnownValue{.name = name});
  }

  SoftwareStandard& standard_;
};

}  // namespace

double SoftwareStandard::Number(std::string_view name) const {
  const auto found = numbers.find(name);
  return found != numbers.end() ? found->second : 0.0;
}

StandardsRead ReadStandards(std::span<const EmbeddedFile> files) {
  StandardsRead read;
  for (const EmbeddedFile& file : files) {
    const IniFile ini{std::string(file.text)};
    std::string section;
    const auto refuse = [&](std::string_view what) {
      return StandardsRead{{}, std::string(file.name) + ", [" + section + "]: " + std::string(what)};
    };
    for (const IniEntry& entry : ini.Entries()) {
      if (entry.section != section) {
        section = entry.section;
        read.standards.push_back({.family = std::string(file.name), .title = section});
      }
      if (entry.shadowed) return refuse(std::string(entry.key) + " occurs again");
      const std::string fault = StandardReader(read.standards.back()).Take(entry.key, entry.value);
      if (!fault.empty()) return refuse(std::string(entry.key) + " " + fault);
    }
    for (SoftwareStandard& standard : read.standards) {
      if (standard.family != file.name) continue;
      section = standard.title;
      const std::string missing = StandardReader(standard).Missing();
      if (!missing.empty()) return refuse(missing + " is missing");
      if (!DocumentFor(standard)) return refuse("a setting is not understood");
      if (!HeightsOf(standard)) return refuse("there is no shape " + Quoted(standard.shape));
    }
  }
  return read;
}

std::optional<std::vector<double>> HeightsOf(const SoftwareStandard& standard) {
  if (standard.shape == "noise") return Noise(standard);
  const auto* const shape = std::find_if(std::begin(kShapes), std::end(kShapes),
                                         [&](const StandardShape& row) { return row.name == standard.shape; });
  if (shape == std::end(kShapes)) return std::nullopt;
  std::vector<double> heights(standard.Points());
  Place at{.standard = standard,
           .i = 0,
           .wave = std::max<std::int64_t>(1, static_cast<std::int64_t>(standard.Number("WavePoints"))),
           .height = standard.Number("HeightUM")};
  for (double& height : heights) {
    height = shape->height(at);
    ++at.i;
  }
  return heights;
}

std::optional<Document> DocumentFor(const SoftwareStandard& standard) {
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.parameters.clear();
  for (const KnownValue& known : standard.values) {
    if (!known.name.starts_with("form.")) settings.analysis.parameters.push_back({.name = known.name});
  }
  for (const auto& [name, value] : standard.settings) {
    if (SetOne(settings, name, value)) return std::nullopt;
  }
  ApplySettings(document, std::move(settings));
  document.quietMode = true;
  document.writesTraceFile = false;
  document.wanted = kNoCurves;
  return document;
}

}  // namespace texturon
