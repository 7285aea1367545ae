// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <vector>

#include "signal/form/form_input.h"

namespace texturon {

/// Arrays for what a fit writes.
struct FormArrays {
  explicit FormArrays(std::size_t n) : form(n), residual(n) {}
  FormOutput Spans() { return {form, residual}; }
  std::vector<double> form, residual;
};

}  // namespace texturon
