/// \file
/// The library that formats messages, compiled here once: its package holds no static library, and
/// all sources that call it would compile it again.

#include <fmt/format-inl.h>

// What its header promises to be compiled elsewhere.
namespace fmt::detail {
template thousands_sep_result<char> thousands_sep_impl(locale_ref);
template char decimal_point_impl(locale_ref);
template dragonbox::decimal_fp<float> dragonbox::to_decimal(float) noexcept;
template dragonbox::decimal_fp<double> dragonbox::to_decimal(double) noexcept;
}  // namespace fmt::detail
