// SPDX-License-Identifier: Apache-2.0

#include <utility>

#include "base/charset.h"
#include "base/program_version.h"
#include "binding.h"

namespace texturon::binding {
namespace {

class CallProgress : public Progress {
public:
  explicit CallProgress(Interrupts& interrupts) : interrupts_(interrupts) {}
  bool Advance(int /*percent*/) override { return !interrupts_.Pressed(); }

private:
  Interrupts& interrupts_;
};

/// Sets the error of a sentence that may hold bytes of a file name.
void SetError(PyObject* type, const char* sentence) {
  const std::string_view text = sentence;
  PyObject* const decoded = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
  if (decoded == nullptr) return;
  PyErr_SetObject(type, decoded);
  Py_DECREF(decoded);
}

/// A class of errors that shows itself under the package's name.
PyObject* ErrorClass(py::module_& module, const char* name, const char* text, PyObject* base) {
  const std::string fullName = std::string("texturon.") + name;
  PyObject* const type = PyErr_NewExceptionWithDoc(fullName.c_str(), text, base, nullptr);
  module.attr(name) = py::handle(type);
  return type;  // lives as long as the interpreter
}

PyObject* errorClass = nullptr;
PyObject* readErrorClass = nullptr;

}  // namespace

py::str Text(std::string_view windows1252) {
  return py::str(Utf8FromWindows1252(windows1252));
}

py::list Texts(const std::vector<std::string>& windows1252) {
  py::list texts;
  for (const std::string& text : windows1252) texts.append(Text(text));
  return texts;
}

py::array View(std::span<const double> values, const py::handle& owner) {
  py::array_t<double> array(static_cast<py::ssize_t>(values.size()), values.data(), owner);
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return array;
}

py::array_t<double> Copy(std::span<const double> values) {
  return py::array_t<double>(static_cast<py::ssize_t>(values.size()), values.data());
}

bool Interrupts::Pressed() {
  constexpr std::chrono::milliseconds kBetweenLooks{50};
  const auto now = std::chrono::steady_clock::now();
  if (pressed_ || now - looked_ < kBetweenLooks) return pressed_;
  looked_ = now;
  const py::gil_scoped_acquire locked;
  pressed_ = PyErr_CheckSignals() != 0;
  return pressed_;
}

void Interrupts::Raise() const {
  if (pressed_) throw py::error_already_set();
}

std::unique_ptr<Progress> CallPrompts::OpenProgress(std::string_view /*caption*/, std::string_view /*text*/) {
  return std::make_unique<CallProgress>(interrupts_);
}

}  // namespace texturon::binding

PYBIND11_MODULE(_engine, module) {
  using namespace texturon::binding;
  module.doc() = "The engine of texturon; its arguments are what the package has checked.";
  module.attr("__version__") = std::string(texturon::ProgramVersion());
  module.attr("point_capacity") = texturon::kPointCapacity;
  errorClass = ErrorClass(module, "Error", "What Texturon refuses, in a sentence.", PyExc_ValueError);
  readErrorClass = ErrorClass(module, "ReadError", "A file that is there but cannot be read as a profile.", errorClass);
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(std::move(thrown));
    } catch (const ReadRefusal& refusal) {
      SetError(readErrorClass, refusal.what());
    } catch (const Refusal& refusal) {
      SetError(errorClass, refusal.what());
    }
  });
  BindSettings(module);
  BindRecord(module);
  BindTrials(module);
  BindAnalysis(module);
  BindSteps(module);
}
