/// \file
/// The words in which rules report.
#pragma once

#include <fmt/core.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/MemberName.h"
#include "KESTparse/framework/Message.h"

namespace KESTparse {

/// What a rule is called and how it speaks to who has never seen the program. Its sentences are
/// formatted with the values of the message.
template <typename... Values>
struct RuleWords {
  std::string_view name;                          ///< stable, unique within the block class
  fmt::format_string<const Values&...> sentence;  ///< what is wrong; lower case, no full stop
  fmt::format_string<const Values&...> help;      ///< how to mend it, likewise
};

/// The tag of `block` that is bound to `Member`, or an item of its list, counted from 1.
template <auto Member, class Block>
Subject about(const Block& block, std::size_t item = 0) {
  static_assert(std::is_invocable_v<decltype(Member), const Block&>,
                "the member is one of the block");
  return {
      .block = &block, .member = memberName<Member>(), .item = static_cast<std::uint32_t>(item)};
}

/// A block as a whole: its header.
inline Subject about(const InputBlock& block) {
  return {.block = &block};
}

/// Reports to `block` what `rule` says of `subjects`, the wrong one first. The converter shows
/// `text` alone.
template <typename... Values>
void report(Severity severity, InputBlock& block, std::initializer_list<Subject> subjects,
            const RuleWords<std::type_identity_t<Values>...>& rule,
            fmt::format_string<const Values&...> text, const Values&... values) {
  Message message;
  message.text = fmt::vformat(text, fmt::make_format_args(values...));
  if (GlobalValues::instance().explainsMessages) {
    message.details = std::make_unique<MessageDetails>();
    message.details->rule = rule.name;
    message.details->sentence = fmt::vformat(rule.sentence, fmt::make_format_args(values...));
    message.details->help = fmt::vformat(rule.help, fmt::make_format_args(values...));
    message.details->subjects = subjects;
  }
  block.addMessage(severity, std::move(message));
}

}  // namespace KESTparse
