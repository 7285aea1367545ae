// SPDX-License-Identifier: Apache-2.0

#include "app/qdas_output.h"

#include "app/run_options.h"
#include "export/qdas_file.h"
#include "platform/interrupt.h"

namespace texturon {

bool AppendQdas(const std::optional<QdasText>& text, const std::string& file, InUse inUse) {
  if (file.empty()) return true;
  const std::string reason =
      text ? AppendToQdasFile(PathFromSystemText(file), text->description, text->values, inUse, Interrupted).reason
           : "gets nothing: no row has limits";
  if (!reason.empty()) ComplainOf(file, reason);
  return reason.empty();
}

}  // namespace texturon
