/// \file
/// What is installed beside the programs: manual pages and completions.
#pragma once

#include <string>
#include <string_view>

#include "Verb.h"

namespace kcf {

/// The converter, as its own help tells of it.
const Program& converter();

/// The manual page of a program in the man macros. \param date as year-month-day
std::string manPage(const Program& program, std::string_view date);
/// The manual page of one of its verbs.
std::string manPage(const Program& program, const Verb& verb, std::string_view date);

/// The completions of a program, for each shell in the language of that shell.
std::string bashCompletion(const Program& program);
std::string zshCompletion(const Program& program);
std::string fishCompletion(const Program& program);

/// Writes all of them into a folder; the build calls it.
Verb installationVerb();

}  // namespace kcf
