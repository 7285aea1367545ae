#pragma once

#include <QObject>
#include <filesystem>
#include <map>
#include <string>

#include "core/document.h"
#include "core/environment.h"
#include "core/prompts.h"

namespace texturon {

/// The document of the window: a shell over the engine's, which tells the views when it has changed. Every step either
/// succeeds or leaves it as it was, with a sentence through the prompts.
class CTexturonDoc : public QObject {
  Q_OBJECT

public:
  CTexturonDoc(Prompts& prompts, Environment environment, QObject* parent = nullptr);

  const Document& document() const { return document_; }
  Prompts& prompts() const { return prompts_; }
  const Environment& environment() const { return environment_; }
  bool HasProfile() const { return !document_.profiles.IsEmpty(); }

  bool Open(const std::filesystem::path& path);
  /// Writes the measured record in the format of the extension.
  bool Save(const std::filesystem::path& path);
  bool LoadSettingsFile(const std::filesystem::path& path);
  bool SaveSettingsFile(const std::filesystem::path& path);
  void ReplaceSettings(Settings settings);
  /// Settings that change only how results are shown: nothing is computed.
  void ReplaceDisplay(DisplaySettings display);
  void Invert();
  void SetIdentification(const std::string& identification);
  void ComputeAll();
  /// Over a stretch of the record, in mm from its first sample.
  void ComputeOver(double firstMM, double lastMM);
  /// Leaves a stretch of the record out of the form fit.
  void ExcludeBetween(double firstMM, double lastMM);
  void UseAllDataForForm(bool uses);
  /// What a view reads of the results that are made on demand, until it says otherwise. Makes what is missing.
  void SetWanted(const QObject* reader, const WantedResults& wanted);

signals:
  void Changed();

private:
  void Recompute();

  Prompts& prompts_;
  Environment environment_;
  Document document_;
  std::map<const QObject*, WantedResults> wanted_;
};

}  // namespace texturon
