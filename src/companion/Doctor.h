#pragma once

#include "base/Result.h"

namespace quilex {

enum class ReportForm { text, json };

/// Writes a report on this installation and its agent to standard output, for bug reports. What is broken or does not
/// answer is part of the report.
Outcome doctorCommand(ReportForm form);

}  // namespace quilex
