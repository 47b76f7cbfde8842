// Lines that a person types, or that standard input brings.
//
// Threading: the main thread.
#pragma once

#include <optional>
#include <string>

namespace hlv::sandbox::tool::prompt {

/// Whether a person can be asked: standard input is a terminal.
bool isPossible();

/// Asks on a terminal, and returns the next line of standard input, without blanks around it. Reads
/// no further than the line. Nothing at the end of input; an empty line is an empty string.
std::optional<std::string> ask(const std::string& question);
/// The same, and what is typed is not shown. The terminal shows typing again when this returns, and
/// also when a signal ends the process meanwhile. Where nobody can be asked, the next line of
/// standard input is taken without a question.
std::optional<std::string> askHidden(const std::string& question);

}  // namespace hlv::sandbox::tool::prompt
