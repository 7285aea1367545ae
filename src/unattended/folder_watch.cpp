// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_watch.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "platform/platform.h"
#include "settings/settings_text.h"
#include "unattended/batch_outputs.h"
#include "unattended/event_log.h"
#include "unattended/folder_files.h"
#include "unattended/output_list.h"
#include "unattended/watch_books.h"
#include "unattended/watch_journal.h"

namespace texturon {
namespace {

constexpr std::string_view kFailedFolder = "texturon-failed";
constexpr std::string_view kOurFiles = "TexturonCommandLine-";  // event log and status of runs in this folder

/// `folder / name`, or with a number before the extension where that is taken.
std::filesystem::path FreeName(const std::filesystem::path& folder, const std::filesystem::path& name) {
  std::filesystem::path path = folder / name;
  std::error_code error;
  for (int i = 2; std::filesystem::exists(path, error); ++i) {
    std::filesystem::path numbered = name.stem();
    numbered += "-" + IntegerText(i);
    numbered += name.extension();
    path = folder / numbered;
  }
  return path;
}

}  // namespace

class FolderWatch::Work {
public:
  Work(FolderWatchOptions options, Analyse analyse, const Environment& environment, FolderWatchObserver observer)
      : options_(std::move(options)),
        analyse_(std::move(analyse)),
        observer_(std::move(observer)),
        log_(environment, options_.logsEvents),
        lockPath_(options_.folder / ".texturon-watch-lock"),
        taken_(options_.folder / ".texturon-watch-taken"),
        books_(options_.folder, options_.parameterFile, environment.stateFolder) {}

  std::string PrepareHold() const {
    if (options_.holdFolder.empty()) return {};
    std::error_code error;
    std::filesystem::create_directories(options_.holdFolder, error);
    if (error) return FileSentence(options_.holdFolder, "cannot be made (" + error.message() + ")");
    if (std::filesystem::equivalent(options_.holdFolder, options_.folder, error)) {
      return FileSentence(options_.holdFolder, "is the watched folder, where what is held would be analysed again");
    }
    return {};
  }

  std::string TakeFolder() {
    lock_ = std::make_unique<AppendFile>(lockPath_, AppendFile::Name::kOwn);
    std::string reason;
    if (lock_->state() == AppendFile::State::kInUse) {
      reason = FileSentence(options_.folder, "is watched already");
    } else if (lock_->state() == AppendFile::State::kFailed) {
      reason = FileSentence(options_.folder, "cannot be watched: a file in it " + lock_->outcome().reason);
    } else {
      reason = Recall();
    }
    if (!reason.empty()) lock_.reset();
    return reason;
  }

  void Poll() {
    hasComplained_ = false;
    if (HasFolder()) LookThrough();
    if (!hasComplained_) lastComplaint_.clear();
  }

  const std::string& Complaint() const { return lastComplaint_; }

private:
  bool Stops() const { return observer_.stops && observer_.stops(); }

  /// A folder that was gone and has come back, or another of its name, is begun with like at the start.
  bool HasFolder() {
    if (lock_ && lock_->IsAt(lockPath_)) return true;
    seen_.clear();
    const std::string reason = TakeFolder();
    if (!reason.empty()) Complain(reason);
    return reason.empty();
  }

  /// Takes up the entry at hand and the files done.
  std::string Recall() {
    std::vector<std::string> remarks;
    std::string reason = books_.Recall(remarks);
    for (const std::string& remark : remarks) {
      if (told_.insert(remark).second && observer_.failed) observer_.failed(remark);
    }
    atHand_ = books_.TakeEntry();
    rowIsWritten_ = false;
    return reason;
  }

  /// Says a sentence once, not at every poll.
  void Complain(const std::string& sentence) {
    hasComplained_ = true;
    if (sentence == lastComplaint_) return;
    lastComplaint_ = sentence;
    if (observer_.failed) observer_.failed(sentence);
  }

  void LookThrough() {
    if (atHand_ && !Finish()) return;
    const FolderFiles listed =
        ListFolder(options_.folder, options_.singleFile.empty() ? options_.mask : std::string("*"));
    if (!listed.reason.empty()) Complain(FileSentence(options_.folder, listed.reason));
    std::map<std::string, FileStamp> seen;
    for (const std::filesystem::path& path : listed.files) {
      const std::string name = SystemTextFromPath(path.filename());
      if (!IsWanted(path, name)) continue;
      const auto stamp = StampOf(path);
      if (!stamp || stamp->size == 0 || books_.IsDone(name, *stamp)) continue;
      const auto former = seen_.find(name);
      const bool stoodStill = former != seen_.end() && former->second == *stamp;
      seen.emplace(name, *stamp);
      if (!stoodStill || refused_.contains(DoneLine(name, *stamp))) continue;
      if (Stops() || !Take(path, name, *stamp)) break;
    }
    // What was not reached keeps its stamp of this poll or gets one at the next.
    seen_ = std::move(seen);
  }

  bool IsWanted(const std::filesystem::path& path, const std::string& name) const {
    if (!options_.singleFile.empty()) return name == options_.singleFile;
    if (name.starts_with(kOurFiles)) return false;
    const auto isOutput = [&path](const std::filesystem::path& output) {
      std::error_code error;
      return !output.empty() && std::filesystem::equivalent(path, output, error);
    };
    return !isOutput(options_.parameterFile) && !isOutput(options_.qdasFile) &&
           !(isOutput(ProvenanceFileOf(options_.parameterFile)) && IsProvenanceFile(path));
  }

  /// Analyses one file and sees it through. False: something stands in the way of all files.
  bool Take(const std::filesystem::path& path, const std::string& name, const FileStamp& stamp) {
    if (OutputList(options_.folder).Holds(path)) {  // what a batch wrote is no measurement
      refused_.insert(DoneLine(name, stamp));
      return true;
    }
    log_.LogEvent("Opening DataFile: " + TextFromPath(path) + "...");
    const std::uint64_t contentHash = ContentHash(ReadRegularFile(path).bytes);
    const FileAnalysis result = analyse_(path);
    if (StampOf(path) != stamp) return true;  // written to in the meantime: it has its turn again
    log_.LogEvent(result.ok() ? "Data loaded" : "Could not load data");
    if (!result.ok()) {
      SetAside(path, name, stamp, result.reason);
      return true;
    }
    WatchEntry entry{.file = name, .stamp = stamp, .contentHash = contentHash};
    if (options_.deletes && !options_.holdFolder.empty()) {
      entry.holdFile = SystemTextFromPath(FreeName(options_.holdFolder, path.filename()));
    }
    if (!WriteRow(std::move(entry), result)) return false;
    if (observer_.analysed) observer_.analysed(name, result);
    return Finish();
  }

  /// Nothing where it cannot be had.
  std::unique_ptr<AppendFile> HoldParameterFile(const std::filesystem::path& path, std::string_view header) {
    auto file = WaitForAppendFile(path, options_.rowPatience, observer_.stops);
    if (file->state() == AppendFile::State::kHeld) {
      std::string objection = NoParameterFile(*file);
      if (objection.empty() && !header.empty()) objection = OtherEdition(*file, header);
      if (objection.empty()) return file;
      Complain(FileSentence(path, objection));
      return nullptr;
    }
    const bool isInUse = file->state() == AppendFile::State::kInUse;
    if (!isInUse || !Stops()) Complain(FileSentence(path, isInUse ? "is in use" : file->outcome().reason));
    return nullptr;
  }

  /// Writes the entry into the journal, then the row.
  bool WriteRow(WatchEntry entry, const FileAnalysis& result) {
    std::unique_ptr<AppendFile> file;
    if (!options_.parameterFile.empty()) {
      file = HoldParameterFile(options_.parameterFile, result.text.header);
      if (!file) return false;
      entry.parameterFile = SystemTextFromPath(options_.parameterFile);
      entry.rowAt = file->size();
      if (file->size() == 0) entry.rowText = result.text.header;
      if (file->endsInsideLine()) entry.rowText = "\r\n";
      entry.rowText += result.text.row;
      entry.header = result.text.header;
    }
    const FileOutcome noted = books_.Write(entry);
    if (!noted.ok()) {
      Complain(FileSentence(books_.journal(), noted.reason));
      return false;
    }
    atHand_ = std::move(entry);
    return !file || EnsureRowIn(*file);
  }

  bool EnsureRowIn(AppendFile& file) {
    const FileOutcome outcome = EnsureRow(*atHand_, file);
    if (!outcome.ok()) Complain(FileSentence(PathFromSystemText(atHand_->parameterFile), outcome.reason));
    rowIsWritten_ = outcome.ok();
    return outcome.ok();
  }

  /// Does what is left of the entry at hand. False: not all of it could be done, and the entry stays.
  bool Finish() {
    if (!rowIsWritten_ && !atHand_->parameterFile.empty()) {
      const auto file = HoldParameterFile(PathFromSystemText(atHand_->parameterFile), {});
      if (!file || !EnsureRowIn(*file)) return false;
    }
    const std::string reason = PutAway();
    if (!reason.empty()) {
      Complain(reason);
      return false;
    }
    atHand_.reset();
    rowIsWritten_ = false;
    return true;
  }

  /// Copy, removal or remembering of the file at hand, then the end of its entry. The reason where one of them fails.
  std::string PutAway() {
    const std::filesystem::path path = options_.folder / PathFromSystemText(atHand_->file);
    if (options_.deletes && options_.singleFile.empty()) {
      const std::string reason = HoldAndRemove(path);
      if (!reason.empty()) return reason;
    } else {
      const FileOutcome remembered = books_.Remember(atHand_->file, atHand_->stamp);
      if (!remembered.ok()) return FileSentence(books_.doneList(), remembered.reason);
    }
    const FileOutcome cleared = books_.Clear();
    return cleared.ok() ? std::string() : FileSentence(books_.journal(), cleared.reason);
  }

  /// The name is taken from the file before it is removed: what has come under that name since the analysis, however
  /// late, is a new measurement and stays.
  std::string HoldAndRemove(const std::filesystem::path& path) {
    std::error_code error;
    // A former run, or somebody else, may have left one.
    if (std::filesystem::exists(std::filesystem::symlink_status(taken_, error))) {
      std::string reason = EndTaken(path);
      if (!reason.empty() || !std::filesystem::exists(path, error)) return reason;
    }
    const FileBytes content = ReadRegularFile(path);
    if (!lock_->IsAt(lockPath_)) return FileSentence(options_.folder, "is gone");
    if (content.missing) return {};  // removed before the last run ended
    if (!content.ok()) return FileSentence(path, content.reason);
    if (!IsAtHand(path, content)) return {};
    const std::string reason = Hold(content.bytes);
    if (!reason.empty()) return reason;
    std::filesystem::rename(path, taken_, error);
    if (error) return FileSentence(path, "cannot be renamed (" + error.message() + ")");
    return EndTaken(path);
  }

  /// Removes the file that was taken once its copy is held; another goes back. The reason where that fails.
  std::string EndTaken(const std::filesystem::path& path) {
    const FileBytes content = ReadRegularFile(taken_);
    const bool isAtHand = IsAtHand(taken_, content);
    const std::string reason = isAtHand ? Hold(content.bytes) : std::string();
    if (!reason.empty()) return reason;
    const FileOutcome ended = isAtHand ? RemoveDurably(taken_) : GiveBack(taken_, path);
    return ended.ok() ? std::string() : FileSentence(taken_, ended.reason);
  }

  bool IsAtHand(const std::filesystem::path& path, const FileBytes& content) const {
    return content.ok() && ContentHash(content.bytes) == atHand_->contentHash && StampOf(path) == atHand_->stamp;
  }

  /// Puts a file that was taken by mistake back into the folder.
  static FileOutcome GiveBack(const std::filesystem::path& taken, const std::filesystem::path& path) {
    FileOutcome outcome = MoveToNewName(taken, path);
    if (!outcome.ok()) outcome = MoveToNewName(taken, FreeName(path.parent_path(), path.filename()));
    return outcome;
  }

  /// Copies into the hold folder. A copy that is there was made before the last run ended; another file of that name is
  /// left alone. The reason where it fails.
  std::string Hold(const std::string& bytes) {
    if (atHand_->holdFile.empty()) return {};
    constexpr int kAttempts = 16;
    std::filesystem::path copy = PathFromSystemText(atHand_->holdFile);
    const std::filesystem::path name = PathFromSystemText(atHand_->file);
    const auto isThere = [&copy, &bytes] {
      const FileBytes former = ReadRegularFile(copy);
      return former.ok() && former.bytes == bytes;
    };
    FileOutcome outcome;
    std::error_code error;
    for (int i = 0; i < kAttempts && !isThere(); ++i) {
      // The run that was killed may have had another hold folder.
      if (i > 0 || copy.parent_path() != options_.holdFolder || std::filesystem::exists(copy, error)) {
        // Noted first, so that a run that is killed is completed without a second copy.
        copy = FreeName(options_.holdFolder, name);
        atHand_->holdFile = SystemTextFromPath(copy);
        outcome = books_.Write(*atHand_);
        if (!outcome.ok()) return FileSentence(books_.journal(), outcome.reason);
      }
      outcome = CreateFileWith(copy, bytes);
      if (outcome.ok() || !std::filesystem::exists(copy, error)) break;
    }
    return outcome.ok() ? std::string() : FileSentence(copy, outcome.reason);
  }

  /// The reason first, then the file, so that none stands there without the other's knowledge.
  void SetAside(const std::filesystem::path& path, const std::string& name, const FileStamp& stamp,
                const std::string& reason) {
    if (observer_.failed) observer_.failed(reason);
    refused_.insert(DoneLine(name, stamp));
    if (!options_.deletes || !options_.singleFile.empty()) {
      const FileOutcome remembered = books_.Remember(name, stamp);
      if (!remembered.ok()) Complain(FileSentence(books_.doneList(), remembered.reason));
      return;
    }
    const std::filesystem::path folder = options_.folder / kFailedFolder;
    std::error_code error;
    if (std::filesystem::is_symlink(folder, error)) {
      Complain(FileSentence(folder, "is a symbolic link, which others may have put there"));
      return;
    }
    std::filesystem::create_directories(folder, error);
    const std::filesystem::path target = FreeName(folder, path.filename());
    std::filesystem::path reasonFile = target;
    reasonFile += ".reason.txt";
    FileOutcome outcome = ReplaceSideFile(reasonFile, Utf8FromWindows1252(reason) + "\n");
    if (outcome.ok()) outcome = MoveToPlace(path, target);
    if (outcome.ok() && StampOf(target) != stamp) {  // it was replaced in the meantime
      outcome = GiveBack(target, path);
      std::filesystem::remove(reasonFile, error);
    }
    if (!outcome.ok()) Complain(FileSentence(path, outcome.reason));
  }

  FolderWatchOptions options_;
  Analyse analyse_;
  FolderWatchObserver observer_;
  EventLog log_;
  std::filesystem::path lockPath_;
  std::filesystem::path taken_;
  WatchBooks books_;
  std::unique_ptr<AppendFile> lock_;
  std::optional<WatchEntry> atHand_;
  bool rowIsWritten_ = false;
  std::map<std::string, FileStamp> seen_;
  std::set<std::string> told_;     ///< of what is not obeyed
  std::set<std::string> refused_;  ///< failed in this run, also where they could not be moved
  std::string lastComplaint_;
  bool hasComplained_ = false;  ///< at this poll
};

FolderWatch::FolderWatch(FolderWatchOptions options, Analyse analyse, const Environment& environment,
                         FolderWatchObserver observer)
    : work_(std::make_unique<Work>(std::move(options), std::move(analyse), environment, std::move(observer))) {}

FolderWatch::~FolderWatch() = default;

std::string FolderWatch::PrepareHold() const {
  return work_->PrepareHold();
}

std::string FolderWatch::TakeFolder() {
  return work_->TakeFolder();
}

void FolderWatch::Poll() {
  work_->Poll();
}

const std::string& FolderWatch::Complaint() const {
  return work_->Complaint();
}

WatchPlan PlanWatch(const Settings& settings, const WatchChoice& choice) {
  const AutoLoadingSettings& loading = settings.autoLoading;
  WatchPlan plan;
  FolderWatchOptions& watch = plan.options;
  if (!choice.folder.empty()) {
    watch.folder = choice.folder;
  } else if (loading.AutoLoadFromGroup) {
    watch.folder = PathFromText(loading.AutoLoadFolder);
  } else if (!loading.AutoLoadFile.empty()) {
    const std::filesystem::path file = PathFromText(loading.AutoLoadFile);
    watch.folder = file.has_parent_path() ? file.parent_path() : ".";
    watch.singleFile = SystemTextFromPath(file.filename());
  }
  if (watch.folder.empty()) plan.reason = "no folder is given";
  watch.mask = choice.mask.empty() ? loading.AutoLoadMask : choice.mask;
  if (watch.mask.empty()) watch.mask = "*.*";
  watch.logsEvents = loading.LogEventsWhenAutoLoading;
  if (!choice.parameterFile.empty()) {
    watch.parameterFile = choice.parameterFile;
  } else if (loading.AutoExport) {
    if (MayBeCut(settings.display.ParameterFile)) plan.reason = "ParameterFile may have been cut at 63 characters";
    watch.parameterFile = PathFromText(settings.display.ParameterFile);
  }
  watch.deletes = !choice.holdFolder.empty() || (loading.DeleteAfterAutoLoadFromGroup && watch.singleFile.empty());
  if (!watch.deletes) return plan;
  watch.holdFolder = choice.holdFolder.empty() ? PathFromText(loading.StorageFolderAfterAutoLoad) : choice.holdFolder;
  if (watch.holdFolder.empty()) {
    plan.reason = "files are to be deleted, but there is no hold folder";
  } else if (choice.holdFolder.empty() && MayBeCut(loading.StorageFolderAfterAutoLoad)) {
    plan.reason = "StorageFolderAfterAutoLoad may have been cut at 63 characters";
  }
  return plan;
}

std::string WatchFolder(const FolderWatchOptions& options, const FileAnalysisOptions& analysis,
                        const Environment& environment, const FolderWatchObserver& observer) {
  const auto analyse = [&](const std::filesystem::path& path) { return AnalyseFile(path, analysis, environment); };
  FolderWatch watch(options, analyse, environment, observer);
  std::string reason = watch.PrepareHold();
  if (reason.empty()) reason = watch.TakeFolder();
  if (!reason.empty()) return reason;
  const auto stops = [&observer] { return observer.stops && observer.stops(); };
  while (!stops()) {
    watch.Poll();
    constexpr std::chrono::milliseconds kSlice(50);
    const auto end = std::chrono::steady_clock::now() + options.poll;
    while (!stops() && std::chrono::steady_clock::now() < end)
      std::this_thread::sleep_for(std::min(kSlice, options.poll));
  }
  return {};
}

}  // namespace texturon
