/// \file
/// A command file for each row of a table.
#pragma once

#include <string>
#include <vector>

#include "KESTparse/document/Edits.h"
#include "set/Changes.h"
#include "set/Table.h"

namespace kcf {

/// What a study is made of.
struct StudyPlan {
  std::string directory;        ///< the folder that names in the command file count from
  std::string tableName;        ///< for messages
  Table table;                  ///< a column is a path, or a name that stands in braces elsewhere
  std::string into;             ///< where a command file goes, with names of columns in braces
  std::vector<Change> changes;  ///< for each row, with names of columns in braces
  bool copiesFiles = false;     ///< whether files beside are copied; they are linked otherwise
  bool mayReplace = false;      ///< whether command files that are there may be replaced
};

/// Writes the command files of a study and puts the files that they name beside them, after all of
/// them were checked: nothing is written if one is wrong, which is told on standard error. Throws a
/// `std::runtime_error` where the plan itself is wrong.
/// \return the exit status.
int writeStudy(const StudyPlan& plan, const KESTparse::TreeEditor& original, Judge& judge);

}  // namespace kcf
