#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRctrlmanipulatedvar;
class IRctrlmonitoredvar;

/// The block `CONTROLLER`.
class IRcontroller : public SchemaBlock<IRcontroller> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  bool output = false;
  double output_time_step = 0;  ///< [s]

  std::vector<IRctrlmonitoredvar*> monitored;
  std::vector<IRctrlmanipulatedvar*> manipulated;

  /// The name of a monitored variable. An index beyond them is an assertion.
  [[nodiscard]] const std::string& monitoredName(std::size_t idx) const;
  /// The first monitored variable of that name; null when there is none.
  [[nodiscard]] const IRctrlmonitoredvar* findMonitored(std::string_view variable) const;
  /// Whether there is a manipulated variable of that name.
  [[nodiscard]] bool hasManipulated(std::string_view variable) const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;

 private:
  NameIndex monitoredNames_;
  NameIndex manipulatedNames_;
};

}  // namespace KESTparse
