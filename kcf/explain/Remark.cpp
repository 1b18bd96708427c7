#include "explain/Remark.h"

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf {

std::string remarkOf(const KESTparse::InputTag& tag) {
  const KESTparse::TagTraits traits = KESTparse::traitsOf(tag);
  std::string text;
  const auto add = [&text](const std::string& more) {
    text += more.empty() || text.empty() ? more : "; " + more;
  };
  if (tag.isRestricted()) {
    add("one of " + KESTparse::quotedList(KESTparse::allowedValuesOf(tag)));
  } else {
    const std::string form = KESTparse::formOf(traits.kind);
    add(form.empty() ? tag.getTypeName() : form);
  }
  add(tag.getUnit());
  add(KESTparse::withSigns(traits.value->getConstraintDescription()));
  if (!tag.getDefaultValue().empty() && !KESTparse::refusesItsDefault(tag, traits)) {
    add("default " + tag.getDefaultValue());
  }
  return text;
}

}  // namespace kcf
