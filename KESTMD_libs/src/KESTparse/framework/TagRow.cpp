#include "KESTparse/framework/TagRow.h"

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

void bookkeepingFailed(std::string_view member, std::string_view state, std::string_view owner) {
  assertionFailed(fmt::format("{}{}{}", owner, member, state), {}, __FILE__, __LINE__);
}

std::vector<std::string> TagRowBase::toStrings(Words words) {
  return {words.begin(), words.end()};
}

void TagRowBase::wrap(ConditionKind kind, std::string_view sibling, Words values, bool equals) {
  BlockSchema& schema = *block_->schema_;
  schema.conditions.push_back(std::make_unique<Condition>());
  Condition& condition = *schema.conditions.back();
  condition.tag = sibling;
  condition.values = toStrings(values);
  condition.equals = equals;
  TagFacts& facts = *schema.facts[position_];
  std::unique_ptr<InputTag>& tag = schema.tags[position_];
  switch (kind) {
    case ConditionKind::usedIf:
      tag = std::make_unique<InputTagCondUsedIf>(*block_, facts, std::move(tag), condition);
      break;
    case ConditionKind::requiredIf:
      tag = std::make_unique<InputTagCondRequiredIf>(*block_, facts, std::move(tag), condition);
      break;
    case ConditionKind::exclusive:
      tag = std::make_unique<InputTagCondExclusive>(*block_, facts, std::move(tag), condition);
      break;
  }
  facts.prototype = tag.get();
}

}  // namespace KESTparse
