#pragma once

#include "companion/Result.h"

namespace quilex {

enum class ReportForm { text, json };

/// Writes a report on this installation and its agent, as a bug report needs it, to standard output. Whatever is broken
/// or does not answer is part of the report.
Outcome doctorCommand(ReportForm form);

}  // namespace quilex
