// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <memory>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "formats/profile_reader.h"
#include "platform/prompts.h"
#include "record/profile_set.h"

// What the parts of the Python module share. Nothing here computes: arguments go to the engine, results to arrays. The
// Python files beside it check shapes and types and hold what users see.
namespace texturon::binding {

namespace py = pybind11;

/// What the engine refuses: a whole sentence in UTF-8, with the system's own bytes where it names a file.
/// texturon.Error.
class Refusal : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file that cannot be read. texturon.ReadError.
class ReadRefusal : public Refusal {
  using Refusal::Refusal;
};

py::str Text(std::string_view windows1252);
py::list Texts(const std::vector<std::string>& windows1252);

/// Heights in one row or several, checked and converted by the caller.
using Heights = py::array_t<double, py::array::c_style>;

/// Numbers that belong to `owner`, as an array that keeps it alive: no copy, and nobody may write into it.
py::array View(std::span<const double> values, const py::handle& owner);

/// Numbers of their own.
py::array_t<double> Copy(std::span<const double> values);

/// Ctrl+C in a call that runs without Python's lock. Python hears of it in its main thread alone.
class Interrupts {
public:
  /// Whether it was pressed. Takes the lock every 50 ms at most, so that threads do not wait for each other.
  bool Pressed();
  /// Raises what it raised, with the lock.
  void Raise() const;

private:
  std::chrono::steady_clock::time_point looked_ = std::chrono::steady_clock::now();
  bool pressed_ = false;
};

/// Answers as the console does without a terminal, keeps messages and notices, and lets Ctrl+C end long fits and
/// filters.
class CallPrompts : public CollectingPrompts {
public:
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override;
  Interrupts& interrupts() { return interrupts_; }

private:
  Interrupts interrupts_;
};

/// Does work without Python's lock. What Ctrl+C raised meanwhile comes before what the work throws.
template <typename Work>
void WithoutLock(Interrupts& interrupts, const Work& work) {
  try {
    const py::gil_scoped_release unlocked;
    work();
  } catch (...) {
    interrupts.Raise();
    throw;
  }
  interrupts.Raise();
}

/// A measured record with what its reading said.
struct Record {
  ProfileSet profiles;
  std::string file;      ///< as it was given, in the system's own bytes; empty: none
  ImportOptions import;  ///< what it was read with
  std::vector<std::string> messages;
  std::vector<std::string> notices;
};

/// What settings do not carry.
struct Scope {
  std::optional<std::tuple<std::int32_t, double, double, double>> region;  ///< mode, start, end, length in mm
  std::optional<std::pair<std::int32_t, std::int32_t>> exclude;            ///< first and last sample
  bool wholeCutoffs = false;
  bool allDataForForm = false;
};

void BindSettings(py::module_& module);
void BindRecord(py::module_& module);
void BindAnalysis(py::module_& module);
void BindSteps(py::module_& module);
void BindTrials(py::module_& module);

}  // namespace texturon::binding
