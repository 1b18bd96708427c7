#include "KESTparse/framework/InputTagList.h"

#include <algorithm>
#include <type_traits>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagKind.h"

namespace KESTparse {
namespace {

template <class Words>
bool contains(const Words& entries, std::string_view item) {
  return std::find(entries.begin(), entries.end(), item) != entries.end();
}

/// Why `text` does not stand in parentheses; empty when it does.
std::string parenthesisFault(std::string_view text) {
  if (text.front() != '(') {
    return std::string("List starts with '") + text.front() +
           "' instead of the expected opening brace '('";
  }
  if (text.size() < 2 || text.back() != ')') {
    return std::string("List does end with '") + text.back() +
           "' instead of the expected closing brace ')'";
  }
  return {};
}

/// What is wrong with the name in front of the list `text`; empty when it has one.
std::string nameFault(std::string_view text) {
  if (text.empty()) {
    return "The string which should contain a list is empty";
  }
  const std::size_t end = text.find_first_of("(:");
  if (end == std::string_view::npos) {
    return "The string does not contain a tagged list";
  }
  return text[end] == '(' || end == 0 ? "The tag of tagged list is missing" : "";
}

template <typename T>
void readItems(std::string_view text, std::vector<T>& values) {
  values.clear();
  // No list has more items. What is not filled costs nothing: a long list gets pages of its own.
  values.reserve(text.size() / 2);
  std::size_t position = 1;
  for (std::string_view item = nextListItem(text, position); !item.empty();
       item = nextListItem(text, position)) {
    values.push_back(fromText<T>(item));
  }
}

}  // namespace

template <typename T>
std::string InputTagList<T>::getTypeName() const {
  return facts().parser->typeName();
}

template <typename T>
std::string InputTagList<T>::getConstraintDescription() const {
  std::string text(facts().constraint);
  if (hasRestrictedValues()) {
    text += text.empty() ? "valid entries are {" : "; valid entries are {";
    text += quotedList(facts().validEntries) + "}";
  }
  return text;
}

template <typename T>
std::string InputTagList<T>::getUnit() const {
  return std::string(facts().unit);
}

template <typename T>
bool InputTagList<T>::isAllowedWord() {
  return hasRestrictedValues() || InputTag::isAllowedWord();
}

template <typename T>
bool InputTagList<T>::isValidEntry(std::string_view item) const {
  return !hasRestrictedValues() || contains(facts().validEntries, item);
}

template <typename T>
std::string InputTagList<T>::faultOf(std::string_view text) const {
  if (text.empty()) {
    return "The string which should contain a list is empty";
  }
  std::string fault = parenthesisFault(text);
  if (!fault.empty()) {
    return fault;
  }
  fault = facts().parser->fault(text);
  if (!fault.empty()) {
    return "Invalid list: " + fault;
  }
  if (std::is_arithmetic_v<T> && !hasRestrictedValues()) {
    return {};
  }
  std::size_t position = 1;
  std::size_t number = 1;
  for (std::string_view item = nextListItem(text, position); !item.empty();
       item = nextListItem(text, position), ++number) {
    if (!isValidEntry(item)) {
      return "List item nr. " + std::to_string(number) + " '" + std::string(item) +
             "' is not a valid list entry. Valid entries are " + quotedList(facts().validEntries);
    }
  }
  return {};
}

template <typename T>
bool InputTagList<T>::check() {
  std::string fault = faultOf(this->getRawText());
  if (!fault.empty()) {
    this->addError(std::move(fault));
    return false;
  }
  return true;
}

template <typename T>
std::vector<T>* InputTagList<T>::target() const {
  return facts().member == nullptr ? nullptr : &(this->getActualParent()->*facts().member);
}

template <typename T>
const std::vector<T>& InputTagList<T>::getValues() const {
  return *target();
}

template <typename T>
void InputTagList<T>::assignPreset() {
  if (std::vector<T>* const result_ = target(); result_ != nullptr) {
    result_->clear();
  }
}

template <typename T>
void InputTagList<T>::commit() {
  std::vector<T>* const result_ = target();
  ASSERT(result_ != nullptr, "");
  readItems(this->getRawText(), *result_);
}

OutputItem splitOutputItem(std::string_view item) {
  const std::size_t bracket = item.find('[');
  if (bracket == std::string_view::npos || item.back() != ']') {
    return {{}, item};
  }
  return {item.substr(0, bracket), item.substr(bracket + 1, item.size() - bracket - 2)};
}

bool InputTagSpecialOutputValueList::isValidEntry(std::string_view item) const {
  constexpr std::size_t shortestWrapped = 6;
  std::string_view word = item;
  if (item.size() >= shortestWrapped) {
    const OutputItem parts = splitOutputItem(item);
    if (contains(accumulators, parts.accumulator)) {
      word = parts.value;
    }
  }
  return contains(facts().validEntries, word);
}

template <typename T>
std::string InputTagTaggedList<T>::getTypeName() const {
  return "tagged list";
}

template <typename T>
std::string InputTagTaggedList<T>::getConstraintDescription() const {
  return std::string(facts().constraint);
}

template <typename T>
std::map<std::string, std::vector<T>>* InputTagTaggedList<T>::target() const {
  return facts().member == nullptr ? nullptr : &(this->getActualParent()->*facts().member);
}

template <typename T>
const std::vector<T>& InputTagTaggedList<T>::getValues() const {
  const auto it = target()->find(lastTag_);
  ASSERT(it != target()->end(), "");
  return it->second;
}

template <typename T>
std::string InputTagTaggedList<T>::listFault(std::string_view list) const {
  if (list.empty()) {
    return "The string does not contain a tagged list";
  }
  if (list.front() != '(') {
    return "The tagged list expects an opening brace after the double point";
  }
  std::string fault = parenthesisFault(list);
  if (!fault.empty()) {
    return fault;
  }
  fault = facts().parser->fault(list);
  return fault.empty() ? fault
                       : "Tag '" + std::string(this->getName()) + "' has an invalid list: " + fault;
}

template <typename T>
std::string InputTagTaggedList<T>::faultOf(std::string_view text) const {
  std::string fault = nameFault(text);
  return fault.empty() ? listFault(text.substr(text.find(':') + 1)) : fault;
}

template <typename T>
bool InputTagTaggedList<T>::check() {
  const std::string_view text = this->getRawText();
  std::string fault = nameFault(text);
  if (fault.empty()) {
    const std::size_t colon = text.find(':');
    const std::string name(text.substr(0, colon));
    fault = name != lastTag_ && target() != nullptr && target()->contains(name)
                ? "The tag '" + name + "' is already defined"
                : listFault(text.substr(colon + 1));
  }
  if (!fault.empty()) {
    this->addError(std::move(fault));
    return false;
  }
  return true;
}

template <typename T>
void InputTagTaggedList<T>::commit() {
  ASSERT(target() != nullptr, "result_ != nullptr");
  const std::string_view text = this->getRawText();
  const std::size_t colon = text.find(':');
  std::string name(text.substr(0, colon));
  if (!lastTag_.empty() && lastTag_ != name) {
    target()->erase(lastTag_);
  }
  lastTag_ = std::move(name);
  readItems(text.substr(colon + 1), (*target())[lastTag_]);
}

template <typename T>
void InputTagTaggedList<T>::assignPreset() {
  if (this->getLogicalMaster() != nullptr && target() != nullptr) {
    target()->erase(lastTag_);
  }
}

template class TagKind<InputTagList<int>>;
template class TagKind<InputTagList<double>>;
template class TagKind<InputTagList<std::string>>;
template class TagKind<InputTagSpecialOutputValueList, InputTagList<std::string>>;
template class TagKind<InputTagTaggedList<double>>;
template class InputTagList<int>;
template class InputTagList<double>;
template class InputTagList<std::string>;
template class InputTagTaggedList<double>;

}  // namespace KESTparse
